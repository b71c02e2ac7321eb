#include "format/field_size.h"

namespace voxam::inline format {

namespace {

std::string sizeText(std::size_t columns, std::size_t rows) {
    return std::to_string(columns) + " x " + std::to_string(rows);
}

}  // namespace

std::string wrongSize(std::size_t columns, std::size_t rows, int width, int height,
                      int maxRefinement) {
    const auto gridColumns = static_cast<std::size_t>(width);
    const auto gridRows = static_cast<std::size_t>(height);
    const std::size_t refinement = columns / gridColumns;
    if (refinement >= 1 && refinement <= static_cast<std::size_t>(maxRefinement) &&
        columns == refinement * gridColumns && rows == refinement * gridRows)
        return "";
    std::string expected = sizeText(gridColumns, gridRows);
    if (maxRefinement > 1)
        expected += " times a whole number up to " + std::to_string(maxRefinement);
    return "is " + sizeText(columns, rows) + " cells, expected " + expected + " (grid)";
}

}  // namespace voxam::inline format
