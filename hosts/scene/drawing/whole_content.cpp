#include "drawing/whole_content.h"

#include "format/symmetry.h"

namespace voxam::inline drawing {

PictureContent wholeOf(const PictureContent& content, Symmetry symmetry) {
    if (symmetry == Symmetry::NONE) return content;
    PictureContent whole = content;
    whole.material = wholeOf(content.material, symmetry);
    if (content.energies) whole.energies = wholeOf(*content.energies, symmetry);
    if (content.deformation) {
        const float right = isUpright(symmetry) ? -1.0f : 1.0f;
        whole.deformation->right = wholeOfNodes(content.deformation->right, symmetry, right);
        whole.deformation->down = wholeOfNodes(content.deformation->down, symmetry, -right);
    }
    whole.floating.clear();
    for (const FloatingPart& part : content.floating) {
        Field marked(content.material.width, content.material.height);
        for (const Cell& cell : part.cells) marked.at(cell.x, cell.y) = 1;
        const auto parts = floatingParts(wholeOf(marked, symmetry), part.refinement);
        whole.floating.insert(whole.floating.end(), parts.begin(), parts.end());
    }
    return whole;
}

}  // namespace voxam::inline drawing
