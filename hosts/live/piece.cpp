#include "piece.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>

#include "format/grid.h"
#include "format/input_error.h"

using namespace voxam;

namespace {

Mask looseMask(const Scene& scene, PassiveKind kind) {
    Mask mask(scene.width, scene.height);
    mark(mask, looseCells(areaOf(scene.passive, kind), scene.width, scene.height));
    return mask;
}

/// The marked elements that are connected with one of them by their edges. Wipes them.
Cells takeConnected(Mask& marked, const Cell& first) {
    Cells cells = {first};
    marked.at(first.x, first.y) = 0;
    for (std::size_t next = 0; next < cells.size(); ++next) {
        const Cell cell = cells[next];
        for (const Cell& other : {Cell{cell.x - 1, cell.y}, Cell{cell.x + 1, cell.y},
                                  Cell{cell.x, cell.y - 1}, Cell{cell.x, cell.y + 1}}) {
            if (marked.get(other.x, other.y) == 0) continue;
            marked.at(other.x, other.y) = 0;
            cells.push_back(other);
        }
    }
    std::sort(cells.begin(), cells.end());
    return cells;
}

/// The loose elements that are connected with one of them.
Cells connectedCells(const Scene& scene, PassiveKind kind, const Cell& cell) {
    Mask mask = looseMask(scene, kind);
    return takeConnected(mask, cell);
}

/// Of an area that the scene contains. Parts of it may have gone to another kind.
PieceId idOf(const Scene& scene, const KeptArea& kept) {
    if (!kept.area.rings.empty()) return PieceId::area(kept.kind, kept.area.rings.front());
    const Cells& cells = kept.area.cells;
    const auto first = std::find_if(cells.begin(), cells.end(), [&](const Cell& cell) {
        return isLoose(areaOf(scene.passive, kept.kind), cell);
    });
    if (first == cells.end()) return PieceId::area(kept.kind, cells.front());
    return PieceId::area(kept.kind, connectedCells(scene, kept.kind, *first).front());
}

Range extentAlong(const Cells& cells, int Cell::*coordinate) {
    Range range = {cells.front().*coordinate, cells.front().*coordinate};
    for (const Cell& cell : cells) {
        range.from = std::min(range.from, cell.*coordinate);
        range.to = std::max(range.to, cell.*coordinate);
    }
    return range;
}

/// The step that keeps a range within 0 to last.
int possibleStep(const Range& range, int step, int last) {
    if (range.count() > last + 1)
        throw InputError("This is larger than the plate: use a finer grid first");
    return std::clamp(step, -range.from, last - range.to);
}

/// The step that keeps a centre within 0 to last.
int possibleStep(double centre, int step, int last) {
    return std::clamp(step, static_cast<int>(std::ceil(-centre)),
                      static_cast<int>(std::floor(last - centre)));
}

/// The step that a piece can make across columns or rows.
int possibleStep(const Piece& piece, int step, bool isAcrossColumns, const Scene& scene) {
    const int size = isAcrossColumns ? scene.width : scene.height;
    const auto* kept = std::get_if<KeptArea>(&piece);
    if (kept != nullptr && !kept->area.rings.empty()) {
        const Ring& ring = kept->area.rings.front();
        return possibleStep(isAcrossColumns ? ring.x : ring.y, step, size);
    }
    const Extent extent = extentOf(piece);
    return possibleStep(isAcrossColumns ? extent.x : extent.y, step,
                        size - (kept != nullptr ? 1 : 0));
}

/// Whether a ring takes the place of another one in the list of its kind. A ring that comes back to
/// where it was then leaves no change.
bool staysRing(const PieceId& id, const KeptArea& kept) {
    return id.ring && kept.kind == id.kind && !kept.area.rings.empty();
}

/// Takes areas of a kind out, and puts in those that stay rings of this kind.
void exchangeRings(Scene& scene, PassiveKind kind, const std::vector<PieceId>& ids,
                   const std::vector<Piece>& pieces) {
    Area& area = areaOf(scene.passive, kind);
    Mask loose = looseMask(scene, kind);
    std::vector<std::optional<Ring>> rings(area.rings.begin(), area.rings.end());
    std::vector<bool> isExchanged(rings.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (ids[i].type != PieceId::Type::AREA || ids[i].kind != kind) continue;
        if (!ids[i].ring) {
            takeConnected(loose, ids[i].cell);
            continue;
        }
        std::size_t ring = 0;
        while (ring < rings.size() && (isExchanged[ring] || rings[ring] != ids[i].ring)) ++ring;
        if (ring == rings.size()) continue;
        isExchanged[ring] = true;
        const auto& kept = std::get<KeptArea>(pieces[i]);
        rings[ring].reset();
        if (staysRing(ids[i], kept)) rings[ring] = kept.area.rings.front();
    }
    std::erase(rings, std::nullopt);
    std::vector<Ring> left;
    for (const auto& ring : rings) left.push_back(*ring);
    area = joinedArea(cellsWith(loose), std::move(left), scene.width, scene.height);
}

/// Takes away from the other kinds what an area of the scene covers.
void claim(Scene& scene, const KeptArea& kept) {
    for (const PassiveKind kind : PASSIVE_KINDS)
        if (kind != kept.kind) takeAway(areaOf(scene.passive, kind), kept.area, scene);
}

/// The identities of pieces in a scene that contains them, each once. Areas may have become one, or
/// lost their elements to another one.
std::vector<PieceId> present(const Scene& scene, const std::vector<PieceId>& ids,
                             const std::vector<Piece>& pieces) {
    std::vector<PieceId> found;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        const auto* kept = std::get_if<KeptArea>(&pieces[i]);
        const PieceId id = kept != nullptr ? idOf(scene, *kept) : ids[i];
        if (exists(scene, id) && std::find(found.begin(), found.end(), id) == found.end())
            found.push_back(id);
    }
    return found;
}

}  // namespace

bool exists(const Scene& scene, const PieceId& id) {
    if (id.type == PieceId::Type::AREA) {
        const Area& area = areaOf(scene.passive, id.kind);
        if (!id.ring) return isLoose(area, id.cell);
        return std::find(area.rings.begin(), area.rings.end(), id.ring) != area.rings.end();
    }
    return id.index < (id.type == PieceId::Type::LOAD ? scene.loads.size() : scene.supports.size());
}

std::vector<PieceId> piecesOf(const Scene& scene) {
    std::vector<PieceId> ids;
    for (std::size_t i = 0; i < scene.loads.size(); ++i) ids.push_back(PieceId::load(i));
    for (std::size_t i = 0; i < scene.supports.size(); ++i) ids.push_back(PieceId::support(i));
    for (const PassiveKind kind : PASSIVE_KINDS) {
        const Area& area = areaOf(scene.passive, kind);
        if (area.empty()) continue;
        for (const Ring& ring : area.rings) ids.push_back(PieceId::area(kind, ring));
        Mask mask = looseMask(scene, kind);
        for (const Cell& cell : area.cells) {
            if (mask.at(cell.x, cell.y) == 0) continue;
            ids.push_back(PieceId::area(kind, cell));
            takeConnected(mask, cell);
        }
    }
    return ids;
}

std::optional<PieceId> areaAt(const Scene& scene, const Cell& cell) {
    std::optional<PieceId> found;
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const PassiveKind kind : PASSIVE_KINDS) {
        const Area& area = areaOf(scene.passive, kind);
        const auto offer = [&](const PieceId& id, std::size_t size) {
            if (size > least) return;
            found = id;
            least = size;
        };
        if (isLoose(area, cell)) {
            const Cells cells = connectedCells(scene, kind, cell);
            offer(PieceId::area(kind, cells.front()), cells.size());
        }
        for (const Ring& ring : area.rings)
            if (ring.contains(cell))
                offer(PieceId::area(kind, ring), cellsOf(ring, scene.width, scene.height).size());
    }
    return found;
}

Piece pieceOf(const Scene& scene, const PieceId& id) {
    if (id.type == PieceId::Type::LOAD) return scene.loads.at(id.index);
    if (id.type == PieceId::Type::SUPPORT) return scene.supports.at(id.index);
    if (id.ring) return KeptArea{id.kind, ringArea(*id.ring, scene)};
    return KeptArea{id.kind, {connectedCells(scene, id.kind, id.cell), {}}};
}

void takeOut(Scene& scene, const PieceId& id) {
    if (id.type == PieceId::Type::LOAD) return eraseLoad(scene, id.index);
    if (id.type == PieceId::Type::SUPPORT) {
        scene.supports.erase(scene.supports.begin() + static_cast<std::ptrdiff_t>(id.index));
        return;
    }
    Area& area = areaOf(scene.passive, id.kind);
    Mask loose = looseMask(scene, id.kind);
    std::vector<Ring> rings = area.rings;
    if (!id.ring)
        takeConnected(loose, id.cell);
    else if (const auto ring = std::find(rings.begin(), rings.end(), id.ring); ring != rings.end())
        rings.erase(ring);
    area = joinedArea(cellsWith(loose), std::move(rings), scene.width, scene.height);
}

void takeOut(Scene& scene, std::vector<PieceId> ids) {
    // From the end of the lists, so that the indices of the others stay.
    std::sort(ids.begin(), ids.end(),
              [](const PieceId& one, const PieceId& other) { return one.index > other.index; });
    for (const PieceId& id : ids) takeOut(scene, id);
}

PieceId putIn(Scene& scene, const Piece& piece) {
    if (const auto* load = std::get_if<Load>(&piece)) {
        scene.loads.push_back(*load);
        scene.loads.back().loadCase = std::min(load->loadCase, scene.loadCaseCount() - 1);
        return PieceId::load(scene.loads.size() - 1);
    }
    if (const auto* support = std::get_if<Support>(&piece)) {
        scene.supports.push_back(*support);
        return PieceId::support(scene.supports.size() - 1);
    }
    const auto& kept = std::get<KeptArea>(piece);
    if (kept.area.empty()) throw InputError("This area has no elements on the plate");
    paintPassive(scene, kept.area, kept.kind);
    return idOf(scene, kept);
}

std::vector<PieceId> putIn(Scene& scene, const std::vector<Piece>& pieces) {
    std::vector<PieceId> ids;
    for (const Piece& piece : pieces) ids.push_back(putIn(scene, piece));
    return present(scene, ids, pieces);
}

std::vector<PieceId> replace(Scene& scene, const std::vector<PieceId>& ids,
                             const std::vector<Piece>& pieces) {
    for (const PassiveKind kind : PASSIVE_KINDS) exchangeRings(scene, kind, ids, pieces);
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (const auto* load = std::get_if<Load>(&pieces[i])) scene.loads.at(ids[i].index) = *load;
        if (const auto* support = std::get_if<Support>(&pieces[i]))
            scene.supports.at(ids[i].index) = *support;
        const auto* kept = std::get_if<KeptArea>(&pieces[i]);
        if (kept == nullptr) continue;
        if (kept->area.empty()) throw InputError("This area has no elements on the plate");
        if (!staysRing(ids[i], *kept))
            addArea(areaOf(scene.passive, kept->kind), kept->area, scene);
    }
    // Only now, when all have left their old places.
    for (const Piece& piece : pieces)
        if (const auto* kept = std::get_if<KeptArea>(&piece)) claim(scene, *kept);
    return present(scene, ids, pieces);
}

Extent extentOf(const Piece& piece) {
    return std::visit(
        [](const auto& each) -> Extent {
            if constexpr (std::is_same_v<std::decay_t<decltype(each)>, KeptArea>)
                return {extentAlong(each.area.cells, &Cell::x),
                        extentAlong(each.area.cells, &Cell::y)};
            else
                return {each.x, each.y};
        },
        piece);
}

QRectF boxOf(const Piece& piece) {
    const Extent extent = extentOf(piece);
    const int elements = std::holds_alternative<KeptArea>(piece) ? 1 : 0;
    return {QPointF(extent.x.from, extent.y.from),
            QPointF(extent.x.to + elements, extent.y.to + elements)};
}

Piece moved(const Piece& piece, int right, int down, const Scene& scene) {
    const int dx = possibleStep(piece, right, true, scene);
    const int dy = possibleStep(piece, down, false, scene);
    Piece result = piece;
    if (auto* kept = std::get_if<KeptArea>(&result)) {
        for (Cell& cell : kept->area.cells) cell = {cell.x + dx, cell.y + dy};
        for (const Ring& ring : std::exchange(kept->area.rings, {}))
            kept->area = ringArea({ring.x + dx, ring.y + dy, ring.inner, ring.outer}, scene);
        return result;
    }
    const auto move = [=](auto& each) {
        each.x = {each.x.from + dx, each.x.to + dx};
        each.y = {each.y.from + dy, each.y.to + dy};
    };
    if (auto* load = std::get_if<Load>(&result)) move(*load);
    if (auto* support = std::get_if<Support>(&result)) move(*support);
    return result;
}

std::vector<Piece> moved(std::vector<Piece> pieces, int right, int down, const Scene& scene) {
    for (const Piece& piece : pieces) {
        right = possibleStep(piece, right, true, scene);
        down = possibleStep(piece, down, false, scene);
    }
    for (Piece& piece : pieces) piece = moved(piece, right, down, scene);
    return pieces;
}

Piece mirrored(const Piece& piece, bool isLeftRight, const Scene& scene) {
    const int last = isLeftRight ? scene.width : scene.height;
    Piece result = piece;
    if (auto* kept = std::get_if<KeptArea>(&result)) {
        for (Cell& cell : kept->area.cells) {
            int& across = isLeftRight ? cell.x : cell.y;
            across = last - 1 - across;
        }
        for (Ring ring : std::exchange(kept->area.rings, {})) {
            double& across = isLeftRight ? ring.x : ring.y;
            across = last - across;
            kept->area = ringArea(ring, scene);
        }
        return result;
    }
    const auto mirror = [=](auto& each) {
        Range& across = isLeftRight ? each.x : each.y;
        across = {last - across.to, last - across.from};
    };
    if (auto* support = std::get_if<Support>(&result)) mirror(*support);
    if (auto* load = std::get_if<Load>(&result)) {
        mirror(*load);
        double& force = isLeftRight ? load->fx : load->fy;
        if (force != 0) force = -force;
    }
    return result;
}

std::optional<Ring> ringOf(const Area& area, const Scene& scene) {
    if (area.rings.size() != 1) return std::nullopt;
    const Ring& ring = area.rings.front();
    if (cellsOf(ring, scene.width, scene.height) != area.cells) return std::nullopt;
    return ring;
}

bool isRectangle(const Area& area) {
    const Range x = extentAlong(area.cells, &Cell::x);
    const Range y = extentAlong(area.cells, &Cell::y);
    return area.cells.size() ==
           static_cast<std::size_t>(x.count()) * static_cast<std::size_t>(y.count());
}

Area rectangleArea(const Extent& extent, const Scene& scene) {
    Area area;
    for (int x = std::max(0, extent.x.from); x <= std::min(scene.width - 1, extent.x.to); ++x)
        for (int y = std::max(0, extent.y.from); y <= std::min(scene.height - 1, extent.y.to); ++y)
            area.cells.push_back({x, y});
    return area;
}

Area ringArea(const Ring& ring, const Scene& scene) {
    Area area = {cellsOf(ring, scene.width, scene.height), {}};
    // Scenes have rings whose centre lies on the plate. Another one remains as a free form.
    if (ring.x >= 0 && ring.y >= 0 && ring.x <= scene.width && ring.y <= scene.height)
        area.rings = {ring};
    return area;
}
