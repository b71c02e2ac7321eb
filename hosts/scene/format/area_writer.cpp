#include "format/area_writer.h"

#include <cmath>

#include "format/field.h"

namespace voxam::inline format {

namespace {

using Json = nlohmann::ordered_json;

/// Covers what is marked with rectangles, and wipes it: as far to the right as possible, and then
/// as far down.
class Rectangles {
public:
    explicit Rectangles(Field& marked) : left(marked) {}

    void append(Json& list) {
        for (int y = 0; y < left.height; ++y)
            for (int x = 0; x < left.width; ++x)
                if (left.at(x, y) > 0) list.push_back(take(x, y));
    }

private:
    Json take(int x, int y) {
        Range columns{x, x};
        while (columns.to + 1 < left.width && left.at(columns.to + 1, y) > 0) ++columns.to;
        Range rows{y, y};
        wipe(columns, y);
        while (rows.to + 1 < left.height && isFull(columns, rows.to + 1)) wipe(columns, ++rows.to);
        return {{"x", writeRange(columns)}, {"y", writeRange(rows)}};
    }

    bool isFull(const Range& columns, int y) const {
        for (int x = columns.from; x <= columns.to; ++x)
            if (left.at(x, y) == 0) return false;
        return true;
    }

    void wipe(const Range& columns, int y) {
        for (int x = columns.from; x <= columns.to; ++x) left.at(x, y) = 0;
    }

    Field& left;
};

Json writeRing(const Ring& ring) {
    Json item = {{"x", writeNumber(ring.x)}, {"y", writeNumber(ring.y)}};
    item["radius"] = ring.inner == 0
                         ? writeNumber(ring.outer)
                         : Json::array({writeNumber(ring.inner), writeNumber(ring.outer)});
    return item;
}

}  // namespace

Json writeArea(const Area& area, int width, int height) {
    Json list = Json::array();
    for (const Ring& ring : area.rings) list.push_back(writeRing(ring));
    Field left(width, height);
    for (const Cell& cell : looseCells(area, width, height)) left.at(cell.x, cell.y) = 1;
    Rectangles(left).append(list);
    return list;
}

Json writePassiveAreas(const PassiveAreas& passive, int width, int height) {
    Json lists = Json::object();
    const auto add = [&](const char* kind, const Area& area) {
        if (!area.empty()) lists[kind] = writeArea(area, width, height);
    };
    add("void", passive.voids);
    add("solid", passive.solids);
    add("secondSolid", passive.secondSolids);
    return lists;
}

Json writeRange(const Range& range) {
    if (range.from == range.to) return range.from;
    return Json::array({range.from, range.to});
}

Json writeNumber(double value) {
    constexpr double exact = 1e15;
    if (value == std::floor(value) && std::abs(value) < exact) return static_cast<long long>(value);
    return value;
}

}  // namespace voxam::inline format
