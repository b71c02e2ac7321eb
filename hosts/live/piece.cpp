#include "piece.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "format/grid.h"
#include "format/input_error.h"

using namespace voxam;

namespace {

constexpr std::array<PassiveKind, 3> KINDS = {PassiveKind::VOID, PassiveKind::SOLID,
                                              PassiveKind::SECOND_SOLID};

const Area& areaOf(const PassiveAreas& passive, PassiveKind kind) {
    const std::array<const Area*, 3> areas = {&passive.voids, &passive.solids,
                                              &passive.secondSolids};
    return *areas[static_cast<std::size_t>(kind)];
}

bool contains(const Area& area, const Cell& cell) {
    return std::binary_search(area.cells.begin(), area.cells.end(), cell);
}

Mask maskOf(const Area& area, const Scene& scene) {
    Mask mask(scene.width, scene.height);
    mark(mask, area.cells, 1);
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

/// With the rings that lie in it as a whole.
Area connectedArea(const Area& area, const Cell& cell, const Scene& scene) {
    Mask mask = maskOf(area, scene);
    Area result = {takeConnected(mask, cell), {}};
    for (const Ring& ring : area.rings) {
        const Cells cells = cellsOf(ring, scene.width, scene.height);
        if (std::includes(result.cells.begin(), result.cells.end(), cells.begin(), cells.end()))
            result.rings.push_back(ring);
    }
    return result;
}

/// Of the area that an element belongs to.
PieceId idOf(const Scene& scene, PassiveKind kind, const Cell& cell) {
    Mask mask = maskOf(areaOf(scene.passive, kind), scene);
    return PieceId::area(kind, takeConnected(mask, cell).front());
}

/// Scenes have rings whose centre lies on the plate.
bool isCentreOnPlate(const Ring& ring, const Scene& scene) {
    return ring.x >= 0 && ring.y >= 0 && ring.x <= scene.width && ring.y <= scene.height;
}

/// Elements on the plate, with all of those of its rings. A ring whose centre has left the plate
/// remains as a free form.
Area completed(Area area, const Scene& scene) {
    Mask mask(scene.width, scene.height);
    mark(mask, area.cells, 1);
    for (const Ring& ring : area.rings) mark(mask, cellsOf(ring, scene.width, scene.height), 1);
    area.cells = cellsWith(mask);
    std::erase_if(area.rings, [&](const Ring& ring) { return !isCentreOnPlate(ring, scene); });
    return area;
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

}  // namespace

bool exists(const Scene& scene, const PieceId& id) {
    if (id.type == PieceId::Type::AREA) return contains(areaOf(scene.passive, id.kind), id.cell);
    return id.index < (id.type == PieceId::Type::LOAD ? scene.loads.size() : scene.supports.size());
}

std::vector<PieceId> piecesOf(const Scene& scene) {
    std::vector<PieceId> ids;
    for (std::size_t i = 0; i < scene.loads.size(); ++i) ids.push_back(PieceId::load(i));
    for (std::size_t i = 0; i < scene.supports.size(); ++i) ids.push_back(PieceId::support(i));
    for (const PassiveKind kind : KINDS) {
        const Area& area = areaOf(scene.passive, kind);
        if (area.empty()) continue;
        Mask mask = maskOf(area, scene);
        for (const Cell& cell : area.cells) {
            if (mask.at(cell.x, cell.y) == 0) continue;
            ids.push_back(PieceId::area(kind, cell));
            takeConnected(mask, cell);
        }
    }
    return ids;
}

std::optional<PieceId> areaAt(const Scene& scene, const Cell& cell) {
    for (const PassiveKind kind : KINDS)
        if (contains(areaOf(scene.passive, kind), cell)) return idOf(scene, kind, cell);
    return std::nullopt;
}

Piece pieceOf(const Scene& scene, const PieceId& id) {
    if (id.type == PieceId::Type::LOAD) return scene.loads.at(id.index);
    if (id.type == PieceId::Type::SUPPORT) return scene.supports.at(id.index);
    return KeptArea{id.kind, connectedArea(areaOf(scene.passive, id.kind), id.cell, scene)};
}

void takeOut(Scene& scene, const PieceId& id) {
    switch (id.type) {
        case PieceId::Type::LOAD:
            return eraseLoad(scene, id.index);
        case PieceId::Type::SUPPORT:
            scene.supports.erase(scene.supports.begin() + static_cast<std::ptrdiff_t>(id.index));
            return;
        case PieceId::Type::AREA: {
            const Piece piece = pieceOf(scene, id);
            return paintPassive(scene, {std::get<KeptArea>(piece).area.cells, {}}, std::nullopt);
        }
    }
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
    const auto& [kind, area] = std::get<KeptArea>(piece);
    if (area.empty()) throw InputError("This area has no elements on the plate");
    paintPassive(scene, area, kind);
    return idOf(scene, kind, area.cells.front());
}

PieceId replace(Scene& scene, const PieceId& id, const Piece& piece) {
    switch (id.type) {
        case PieceId::Type::LOAD:
            scene.loads.at(id.index) = std::get<Load>(piece);
            return id;
        case PieceId::Type::SUPPORT:
            scene.supports.at(id.index) = std::get<Support>(piece);
            return id;
        case PieceId::Type::AREA:
            break;
    }
    takeOut(scene, id);
    return putIn(scene, piece);
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

Piece moved(const Piece& piece, int right, int down, const Scene& scene) {
    const int isArea = std::holds_alternative<KeptArea>(piece) ? 1 : 0;
    const Extent extent = extentOf(piece);
    const int dx = possibleStep(extent.x, right, scene.width - isArea);
    const int dy = possibleStep(extent.y, down, scene.height - isArea);
    Piece result = piece;
    if (auto* kept = std::get_if<KeptArea>(&result)) {
        for (Cell& cell : kept->area.cells) cell = {cell.x + dx, cell.y + dy};
        for (Ring& ring : kept->area.rings)
            ring = {ring.x + dx, ring.y + dy, ring.inner, ring.outer};
        kept->area = completed(std::move(kept->area), scene);
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

Piece mirrored(const Piece& piece, bool isLeftRight, const Scene& scene) {
    const int last = isLeftRight ? scene.width : scene.height;
    Piece result = piece;
    if (auto* kept = std::get_if<KeptArea>(&result)) {
        for (Cell& cell : kept->area.cells) {
            int& across = isLeftRight ? cell.x : cell.y;
            across = last - 1 - across;
        }
        for (Ring& ring : kept->area.rings) {
            double& across = isLeftRight ? ring.x : ring.y;
            across = last - across;
        }
        kept->area = completed(std::move(kept->area), scene);
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

Area ringArea(const Ring& ring, const Scene& scene) { return completed({{}, {ring}}, scene); }
