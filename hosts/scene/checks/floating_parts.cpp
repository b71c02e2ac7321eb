#include "checks/floating_parts.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>
#include <utility>

#include "checks/held_nodes.h"
#include "checks/rigid_motions.h"
#include "format/refinement.h"
#include "format/text.h"

namespace {

using Index = std::size_t;

constexpr int NO_BODY = -1;
constexpr Index MAX_BODIES_OF_MECHANISM = 400;

/// Sets that grow together.
class Groups {
public:
    explicit Groups(Index count) : parents(count) { std::iota(parents.begin(), parents.end(), 0); }

    Index of(Index member) {
        while (parents[member] != member) member = parents[member] = parents[parents[member]];
        return member;
    }

    /// Returns whether they were apart.
    bool unite(Index one, Index other) {
        one = of(one);
        other = of(other);
        parents[std::max(one, other)] = std::min(one, other);
        return one != other;
    }

private:
    std::vector<Index> parents;
};

/// The pieces of a design whose elements hang together by their edges, and the body of each
/// element.
class Bodies {
public:
    explicit Bodies(const Field& material) : design(material), bodies(material.values.size()) {
        std::fill(bodies.begin(), bodies.end(), NO_BODY);
        for (int y = 0; y < design.height; ++y)
            for (int x = 0; x < design.width; ++x)
                if (isMaterial(x, y) && at(x, y) == NO_BODY) fill({x, y}, number++);
    }

    Index count() const { return static_cast<Index>(number); }

    /// NO_BODY outside the plate and in the void.
    int of(int x, int y) const {
        const bool inside = x >= 0 && y >= 0 && x < design.width && y < design.height;
        return inside ? bodies[index(x, y)] : NO_BODY;
    }

    /// The bodies at a node.
    std::set<int> around(int x, int y) const {
        std::set<int> result;
        for (const auto& [i, j] : {std::pair(x - 1, y - 1), {x, y - 1}, {x - 1, y}, {x, y}})
            if (of(i, j) != NO_BODY) result.insert(of(i, j));
        return result;
    }

private:
    bool isMaterial(int x, int y) const { return design.at(x, y) > 0; }
    Index index(int x, int y) const {
        return static_cast<Index>(y) * static_cast<Index>(design.width) + static_cast<Index>(x);
    }
    int& at(int x, int y) { return bodies[index(x, y)]; }

    void fill(Cell start, int body) {
        std::vector<Cell> open = {start};
        at(start.x, start.y) = body;
        while (!open.empty()) {
            const auto [x, y] = open.back();
            open.pop_back();
            for (const auto& [i, j] : {std::pair(x - 1, y), {x + 1, y}, {x, y - 1}, {x, y + 1}}) {
                const bool inside = i >= 0 && j >= 0 && i < design.width && j < design.height;
                if (!inside || !isMaterial(i, j) || at(i, j) != NO_BODY) continue;
                at(i, j) = body;
                open.push_back({i, j});
            }
        }
    }

    const Field& design;
    std::vector<int> bodies;
    int number = 0;
};

struct Hinge {
    Index one;
    Index other;
    double x;
    double y;
};

struct Hold {
    Index body;
    double x;
    double y;
    int direction;
};

/// What joins the bodies with each other and with the ground. Points are scaled to the size of 1.
class Joints {
public:
    Joints(const Bodies& bodies, const Scene& plate)
        : size(std::max(plate.width, plate.height)), groups(bodies.count() + 1), ground(0) {
        for (int y = 1; y < plate.height; ++y)
            for (int x = 1; x < plate.width; ++x) addHinge(bodies, x, y);
        for (const Support& support : plate.supports) addHolds(bodies, support);
    }

    /// For each body the group that it belongs to, and whether that is held: 0 is the ground.
    std::vector<bool> heldBodies(Index count) {
        while (joinPlainly()) continue;
        const auto held = heldGroups();
        std::vector<bool> result(count);
        for (Index body = 0; body < count; ++body)
            result[body] = held.contains(groups.of(body + 1));
        return result;
    }

    /// The sets of bodies that hang together in whatever way, the ground aside.
    Groups touching(Index count) const {
        Groups result(count);
        for (const Hinge& hinge : hinges) result.unite(hinge.one - 1, hinge.other - 1);
        return result;
    }

private:
    // Bodies are numbered from 1 here; 0 is the ground.
    void addHinge(const Bodies& bodies, int x, int y) {
        const auto around = bodies.around(x, y);
        if (around.size() != 2) return;
        hinges.push_back({static_cast<Index>(*around.begin()) + 1,
                          static_cast<Index>(*around.rbegin()) + 1, x / size, y / size});
    }

    void addHolds(const Bodies& bodies, const Support& support) {
        for (int x = support.x.from; x <= support.x.to; ++x)
            for (int y = support.y.from; y <= support.y.to; ++y)
                for (const int body : bodies.around(x, y))
                    for (const int direction : {0, 1})
                        if (direction == 0 ? support.fixX : support.fixY)
                            holds.push_back(
                                {static_cast<Index>(body) + 1, x / size, y / size, direction});
    }

    /// One body that its supports and its hinges at held bodies hold in place, and two bodies with
    /// two hinges, move as one. Returns whether there was any.
    bool joinPlainly() {
        std::map<std::pair<Index, Index>, std::set<std::pair<double, double>>> shared;
        std::map<Index, RigidMotions> grounded;
        const auto hold = [&](Index group, double x, double y, int direction) {
            grounded.try_emplace(group, 1).first->second.hold(0, x, y, direction);
        };
        for (const Hold& each : holds)
            if (groups.of(each.body) != ground)
                hold(groups.of(each.body), each.x, each.y, each.direction);
        for (const Hinge& hinge : hinges) {
            const auto [low, high] = std::minmax({groups.of(hinge.one), groups.of(hinge.other)});
            if (low == high) continue;
            shared[{low, high}].insert({hinge.x, hinge.y});
            if (low == ground)
                for (const int direction : {0, 1}) hold(high, hinge.x, hinge.y, direction);
        }
        bool joined = false;
        for (const auto& [pair, points] : shared)
            if (points.size() > 1) joined = groups.unite(pair.first, pair.second) || joined;
        for (const auto& [group, motions] : grounded)
            if (motions.heldBodies().front()) joined = groups.unite(group, ground) || joined;
        return joined;
    }

    /// The groups that do not move: the ground, and what holds together as a whole, such as three
    /// bars that form a triangle.
    std::set<Index> heldGroups() {
        std::map<Index, std::vector<Index>> mechanisms = mechanismsOnTheGround();
        std::set<Index> held = {ground};
        for (const auto& [root, members] : mechanisms) {
            if (members.size() > MAX_BODIES_OF_MECHANISM) {
                held.insert(members.begin(), members.end());
                continue;
            }
            const auto heldMembers = motionsOf(members).heldBodies();
            for (Index i = 0; i < members.size(); ++i)
                if (heldMembers[i]) held.insert(members[i]);
        }
        return held;
    }

    /// The groups that hang together and touch the ground or a support, each list once.
    std::map<Index, std::vector<Index>> mechanismsOnTheGround() {
        Groups chains = groups;
        std::set<Index> members;
        std::set<Index> onTheGround;
        for (const Hinge& hinge : hinges) {
            const auto [low, high] = std::minmax({groups.of(hinge.one), groups.of(hinge.other)});
            if (low == high) continue;
            members.insert(high);
            if (low == ground) {
                onTheGround.insert(high);
            } else {
                members.insert(low);
                chains.unite(low, high);
            }
        }
        for (const Hold& each : holds) onTheGround.insert(groups.of(each.body));
        std::set<Index> roots;
        for (const Index group : onTheGround) roots.insert(chains.of(group));
        std::map<Index, std::vector<Index>> result;
        for (const Index member : members)
            if (roots.contains(chains.of(member))) result[chains.of(member)].push_back(member);
        return result;
    }

    RigidMotions motionsOf(const std::vector<Index>& members) {
        const auto position = [&](Index group) {
            return static_cast<Index>(std::lower_bound(members.begin(), members.end(), group) -
                                      members.begin());
        };
        const auto isMember = [&](Index group) {
            return std::binary_search(members.begin(), members.end(), group);
        };
        RigidMotions motions(members.size());
        for (const Hold& each : holds) {
            const Index group = groups.of(each.body);
            if (isMember(group)) motions.hold(position(group), each.x, each.y, each.direction);
        }
        for (const Hinge& hinge : hinges) {
            const auto [low, high] = std::minmax({groups.of(hinge.one), groups.of(hinge.other)});
            if (low == high || !isMember(high)) continue;
            if (low != ground)
                motions.join(position(low), position(high), hinge.x, hinge.y);
            else
                for (const int direction : {0, 1})
                    motions.hold(position(high), hinge.x, hinge.y, direction);
        }
        return motions;
    }

    double size;
    Groups groups;
    Index ground;
    std::vector<Hinge> hinges;
    std::vector<Hold> holds;
};

/// The first node, if any, at which the load does work without touching material.
std::optional<Cell> looseNode(const Load& load, const Bodies& held, const HeldNodes& supports) {
    for (int x = load.x.from; x <= load.x.to; ++x)
        for (int y = load.y.from; y <= load.y.to; ++y)
            if (supports.leaveWork(load, x, y) && held.around(x, y).empty()) return Cell{x, y};
    return std::nullopt;
}

}  // namespace

std::vector<FloatingPart> findFloatingParts(const Field& design, const Scene& scene) {
    const Bodies bodies(design);
    const int refinement = refinementOf(design, scene);
    Joints joints(bodies, refined(scene, refinement));
    const auto held = joints.heldBodies(bodies.count());
    Groups touching = joints.touching(bodies.count());
    std::map<Index, Index> partOfGroup;
    std::vector<FloatingPart> parts;
    for (int y = 0; y < design.height; ++y)
        for (int x = 0; x < design.width; ++x) {
            const int body = bodies.of(x, y);
            if (body == NO_BODY || held[static_cast<Index>(body)]) continue;
            const Index group = touching.of(static_cast<Index>(body));
            const Index part = partOfGroup.try_emplace(group, parts.size()).first->second;
            if (part == parts.size()) parts.push_back({{}, refinement});
            parts[part].cells.push_back({x, y});
        }
    return parts;
}

Field without(Field design, const std::vector<FloatingPart>& parts) {
    for (const FloatingPart& part : parts)
        for (const Cell& cell : part.cells) design.at(cell.x, cell.y) = 0;
    return design;
}

Findings findLooseLoads(const Field& design, const std::vector<FloatingPart>& floating,
                        const Scene& scene) {
    const int factor = refinementOf(design, scene);
    const Scene plate = refined(scene, factor);
    const Field heldDesign = without(design, floating);
    const Bodies all(design);
    const Bodies held(heldDesign);
    const HeldNodes supports(plate);
    Findings findings;
    for (Index i = 0; i < plate.loads.size(); ++i) {
        const auto node = looseNode(plate.loads[i], held, supports);
        if (!node) continue;
        const bool onPart = !all.around(node->x, node->y).empty();
        const std::string at = placeText(1.0 * node->x / factor, 1.0 * node->y / factor);
        findings.push_back({Finding::ERROR, "loads[" + std::to_string(i) + "]",
                            onPart ? "pulls at a part that hangs on nothing, at " + at
                                   : "pulls where there is no material, at " + at,
                            Place{true, scene.loads[i].x, scene.loads[i].y}});
    }
    return findings;
}

std::string describe(const std::vector<FloatingPart>& parts) {
    const double refinement = parts.front().refinement;
    double cells = 0;
    for (const FloatingPart& part : parts) cells += static_cast<double>(part.cells.size());
    const double elements = cells / (refinement * refinement);
    const Cell& first = parts.front().cells.front();
    return counted(parts.size(), "part") + " that " + (parts.size() == 1 ? "hangs" : "hang") +
           " on nothing, " + formatted(elements < 100 ? "%.3g" : "%.0f", elements) +
           (elements == 1 ? " element" : " elements") + " of the grid; the first at " +
           placeText(first.x / refinement, first.y / refinement);
}
