#include "StiffnessPattern.h"

#include <algorithm>

#include "CheckedProduct.h"

namespace {

constexpr unsigned DOFS_PER_NODE = 2;

// The nodes of a plate and those among their neighbours that come before them.
class NodeGrid {
public:
    NodeGrid(unsigned nelx, unsigned nely) : nodesX(nelx + 1), nodesY(nely + 1) {}

    // Calls visit(neighbour) for the node and for each neighbour with a lower number, in ascending
    // order: at most three in the column before and one above.
    template <typename Visit>
    void forEachCoupledNode(unsigned x, unsigned y, const Visit& visit) const {
        const unsigned node = x * nodesY + y;
        if (x > 0 && y > 0) visit(node - nodesY - 1);
        if (x > 0) visit(node - nodesY);
        if (x > 0 && y + 1 < nodesY) visit(node - nodesY + 1);
        if (y > 0) visit(node - 1);
        visit(node);
    }

    // Pairs of coupled nodes, each pair once and each node with itself.
    uint64_t numberOfPairs() const {
        const uint64_t w = nodesX;
        const uint64_t h = nodesY;
        return w * h + w * (h - 1) + (w - 1) * h + 2 * (w - 1) * (h - 1);
    }

    unsigned nodesX;
    unsigned nodesY;
};

constexpr std::size_t ELEMENT_NODES = ELEMENT_DOFS / DOFS_PER_NODE;

// Where the entries of an element's pairs of nodes lie. One search finds all four of a pair: the
// two rows of a node follow each other, and its second column repeats the rows of the first.
class NodePairEntries {
public:
    NodePairEntries(const kmat::SparseMatrix& pattern, const ElementDofs& dof) {
        for (std::size_t j = 0; j < ELEMENT_NODES; ++j) {
            const unsigned column = dof[DOFS_PER_NODE * j];
            for (std::size_t i = 0; i < ELEMENT_NODES; ++i) {
                const unsigned row = dof[DOFS_PER_NODE * i];
                if (row <= column) first[i][j] = pattern.find(row, column);
            }
            columnLength[j] = pattern.find(column, column + 1) - first[j][j];
        }
    }

    // The entry of local degrees of freedom (k, l) of the upper triangle.
    int get(std::size_t k, std::size_t l) const {
        const std::size_t j = l / DOFS_PER_NODE;
        const int rowInPair = static_cast<int>(k % DOFS_PER_NODE);
        const bool secondColumn = l % DOFS_PER_NODE == 1;
        return first[k / DOFS_PER_NODE][j] + rowInPair + (secondColumn ? columnLength[j] : 0);
    }

private:
    int first[ELEMENT_NODES][ELEMENT_NODES];
    int columnLength[ELEMENT_NODES];
};

}  // namespace

kmat::SparseMatrix stiffnessPattern(unsigned nelx, unsigned nely) {
    const NodeGrid grid(nelx, nely);
    const unsigned ndof = checkedProduct({DOFS_PER_NODE, grid.nodesX, grid.nodesY});
    const bool hasElements = nelx > 0 && nely > 0;
    // The upper triangle of the block of a node with itself has three entries instead of four.
    const uint64_t entries =
        hasElements ? 4 * grid.numberOfPairs() - uint64_t{grid.nodesX} * grid.nodesY : 0;
    kmat::SparseColumnWriter writer(ndof, ndof, kmat::SYMMETRIC_UPPER, checkedProduct({entries}));
    for (unsigned x = 0; x < grid.nodesX; ++x) {
        for (unsigned y = 0; y < grid.nodesY; ++y) {
            for (unsigned direction = 0; direction < DOFS_PER_NODE; ++direction) {
                const unsigned column = DOFS_PER_NODE * (x * grid.nodesY + y) + direction;
                const auto addRows = [&](unsigned node) {
                    for (unsigned d = 0; d < DOFS_PER_NODE; ++d) {
                        const unsigned row = DOFS_PER_NODE * node + d;
                        if (row <= column) writer.add(static_cast<int>(row), 0.0);
                    }
                };
                if (hasElements) grid.forEachCoupledNode(x, y, addRows);
                writer.endColumn();
            }
        }
    }
    return writer.finish();
}

std::vector<ElementEntries> findElementEntries(const kmat::SparseMatrix& pattern, unsigned nelx,
                                               unsigned nely) {
    std::vector<ElementEntries> entries;
    entries.reserve(std::size_t{nelx} * nely);
    for (unsigned x = 0; x < nelx; ++x) {
        for (unsigned y = 0; y < nely; ++y) {
            const NodePairEntries pairs(pattern, elementDofs(x, y, nely + 1));
            ElementEntries& found = entries.emplace_back();
            std::transform(ELEMENT_UPPER_PAIRS.begin(), ELEMENT_UPPER_PAIRS.end(), found.begin(),
                           [&](const auto& pair) { return pairs.get(pair.first, pair.second); });
        }
    }
    return entries;
}
