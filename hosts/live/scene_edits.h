#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "area_edits.h"
#include "format/scene.h"

using namespace voxam;

// The edits of a scene. If an edit is not possible, a function throws InputError and changes
// nothing. These functions keep each setting valid. Document checks the limits and the rules that
// combine settings. Nodes and elements outside the plate are ignored.

/// A node of the grid.
struct Node {
    int x = 0;
    int y = 0;

    bool operator==(const Node&) const = default;
};

/// Puts the top left node of a load at `node`, or as close as its extent allows.
void moveLoad(Scene& scene, std::size_t index, Node node);

/// Holds nodes in these directions and no others.
void paintSupports(Scene& scene, const std::vector<Node>& nodes, bool fixX, bool fixY);
void eraseSupports(Scene& scene, const std::vector<Node>& nodes);
/// Removes a load, but never the last one of the scene.
void eraseLoad(Scene& scene, std::size_t index);
/// Removes the loads that act on one of these nodes, but never the last one of the scene.
void eraseLoads(Scene& scene, const std::vector<Node>& nodes);

/// Sets the force of a load. `radians` is the angle from the right, clockwise on the screen. Both
/// components are rounded to 8 digits of the force.
void setForce(Load& load, double force, double radians);

/// Makes elements passive of this kind, or free if `kind` is empty. They are taken away from the
/// other kinds. The area must contain the elements of its rings.
void paintPassive(Scene& scene, const Area& area, std::optional<PassiveKind> kind);
/// Adds elements to `blob` or removes them. The result replaces `scene.blob`.
void paintBlob(Scene& scene, const Area& blob, const Cells& cells, bool adds);

/// Sets the elements of a drawing that the scene keeps void or solid, and the blob to void. A
/// drawing must respect them, as the optimiser does.
void keepAreas(Field& drawing, const Scene& scene);

/// Makes elements solid (1) or void (0) in the drawing, except where the scene keeps them
/// otherwise.
void paintDrawing(Scene& scene, const Cells& cells, float density);

/// Adds a load case, which is in use.
void addLoadCase(Scene& scene);
/// Removes a load case with its loads. The load cases above it move down. One always remains.
void removeLoadCase(Scene& scene, int loadCase);
/// At least one load case remains in use.
void useLoadCase(Scene& scene, int loadCase, bool isUsed);
