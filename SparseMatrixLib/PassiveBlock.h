#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The cells of the coarse grid that the host has fixed. Per cell an OR of the kind bits; a cell
/// named in several lists carries several bits and is then neither exactly void nor exactly solid.
class PassiveBlock {
public:
    static constexpr int VOID = 1;          ///< must stay empty
    static constexpr int SOLID = 2;         ///< must stay solid
    static constexpr int SECOND_SOLID = 4;  ///< must stay solid, of the host's second kind

    /// Whether the bits are those of a solid cell, and of nothing else.
    static constexpr bool isSolid(int kind) { return kind == SOLID || kind == SECOND_SOLID; }

    /// No cell is passive. `width` and `height` are the coarse grid's, `fineScale` is
    /// subdivision * meshFactor, `subdivision` the fine cells per coarse cell edge.
    PassiveBlock(unsigned width, unsigned height, unsigned fineScale, unsigned subdivision);

    /// Makes every cell free.
    void reset();

    /// Replaces all passive cells by those of the host's record; null means none. The record holds
    /// three counts V, S, T (below 0 counts as 0), then V void, S solid and T second solid cells as
    /// pairs (x, y). A cell outside the grid stops the process (assertion).
    void update(const short* data);

    /// Whether the last update named at least one void cell.
    bool hasPassiveVoid() const { return passiveVoid; }

    /// Whether the last update named no cell at all.
    bool IsEmpty() const { return empty; }

    /// Kind bits of coarse cell i, counted column by column.
    int getCoarseGridElement(int i) const { return cells[static_cast<std::size_t>(i)]; }

    /// Kind bits of the coarse cell that holds fine cell i, by coarseCellOfFineCell(); 0 when there
    /// is none.
    int getFineGridElement(int i) const;

    /// Whether the coarse cell that holds fine cell i is void, whatever else it is.
    bool isVoid(int i) const { return (getFineGridElement(i) & VOID) != 0; }

private:
    std::vector<int8_t> cells;
    bool empty;
    bool passiveVoid;
    unsigned width;
    unsigned height;
    unsigned fineScale;
    unsigned subdivision;
};
