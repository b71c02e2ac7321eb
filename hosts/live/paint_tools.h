#pragma once

#include <memory>

#include "scene_edits.h"
#include "tool.h"

/// Holds nodes in x, in y or in both directions.
std::unique_ptr<Tool> supportTool(const ToolSite& site, bool fixX, bool fixY);

/// Keeps elements void, solid, or solid of a second kind.
std::unique_ptr<Tool> passiveTool(const ToolSite& site, PassiveKind kind);

/// Adds elements to the blob at its present place.
std::unique_ptr<Tool> blobTool(const ToolSite& site);

/// Erases supports, loads, passive elements and the blob.
std::unique_ptr<Tool> eraseTool(const ToolSite& site);

/// Draws or erases the design that is scored.
std::unique_ptr<Tool> pencilTool(const ToolSite& site, bool draws);

/// Draws a straight line when the button is released.
std::unique_ptr<Tool> lineTool(const ToolSite& site);
