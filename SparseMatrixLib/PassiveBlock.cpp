#include "PassiveBlock.h"

#include <algorithm>

#include "GridNumbering.h"
#include "assertion.h"

PassiveBlock::PassiveBlock(unsigned width, unsigned height, unsigned fineScale,
                           unsigned subdivision)
    : cells(std::size_t{width} * height),
      empty(true),
      passiveVoid(false),
      width(width),
      height(height),
      fineScale(fineScale),
      subdivision(subdivision) {}

void PassiveBlock::reset() {
    empty = true;
    passiveVoid = false;
    std::fill(cells.begin(), cells.end(), int8_t{0});
}

int PassiveBlock::getFineGridElement(int i) const {
    const int cell = coarseCellOfFineCell(static_cast<unsigned>(i), fineScale, subdivision, height);
    return static_cast<std::size_t>(cell) < cells.size() ? getCoarseGridElement(cell) : 0;
}

void PassiveBlock::update(const short* data) {
    reset();
    if (!data) return;
    const int counts[] = {std::max<int>(data[0], 0), std::max<int>(data[1], 0),
                          std::max<int>(data[2], 0)};
    constexpr int kinds[] = {VOID, SOLID, SECOND_SOLID};
    passiveVoid = counts[0] > 0;
    empty = counts[0] + counts[1] + counts[2] == 0;
    const short* pair = data + 3;
    for (std::size_t list = 0; list < std::size(kinds); ++list) {
        for (int k = 0; k < counts[list]; ++k, pair += 2) {
            const int x = pair[0];
            const int y = pair[1];
            // The first two comparisons are unsigned: a negative coordinate fails there.
            // clang-format off
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wsign-compare"
            VOXAM_ASSERT(x < width);
            VOXAM_ASSERT(y < height);
            VOXAM_ASSERT(x>=0 && y>=0);
#pragma GCC diagnostic pop
            // clang-format on
            int8_t& cell = cells[height * static_cast<unsigned>(x) + static_cast<unsigned>(y)];
            cell = static_cast<int8_t>(cell | kinds[list]);
        }
    }
}
