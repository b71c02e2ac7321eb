#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "format/scene.h"

using namespace voxam;

// What a hand can do to a scene. Each function keeps the scene valid and throws InputError, before
// it changes anything, when it cannot. Nodes and elements that lie outside the plate are ignored.

/// A node of the grid.
struct Node {
    int x = 0;
    int y = 0;

    bool operator==(const Node&) const = default;
};

enum class PassiveKind { VOID, SOLID, SECOND_SOLID };

/// Puts the top left node of a load at `node`, or as near as its extent allows.
void moveLoad(Scene& scene, std::size_t index, Node node);

/// Holds nodes in these directions and no others.
void paintSupports(Scene& scene, const std::vector<Node>& nodes, bool fixX, bool fixY);
void eraseSupports(Scene& scene, const std::vector<Node>& nodes);
/// Takes away a load, but never the last one of the scene.
void eraseLoad(Scene& scene, std::size_t index);
/// Takes away the loads that act on one of these nodes, but never the last one of the scene.
void eraseLoads(Scene& scene, const std::vector<Node>& nodes);

/// Elements become passive of this kind, or free without one.
void paintPassive(Scene& scene, const Cells& cells, std::optional<PassiveKind> kind);
/// Adds elements to a blob or takes them away. `scene.blob` is replaced by the result.
void paintBlob(Scene& scene, const Area& blob, const Cells& cells, bool adds);

/// Puts into a drawing what the scene keeps void and solid: it binds the hand as the optimiser.
void keepAreas(Field& drawing, const Scene& scene);

/// Elements become solid (1) or void (0) in the drawing, as far as nothing else is kept there.
void paintDrawing(Scene& scene, const Cells& cells, float density);

/// Adds a load case, which is in use.
void addLoadCase(Scene& scene);
/// Takes away a load case with its loads; those above it move down. One always remains.
void removeLoadCase(Scene& scene, int loadCase);
/// At least one load case remains in use.
void useLoadCase(Scene& scene, int loadCase, bool isUsed);
