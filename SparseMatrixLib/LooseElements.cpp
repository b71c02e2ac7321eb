#include "LooseElements.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>
#include <utility>

#include "RigidMotions.h"

namespace {

using Flags = std::vector<unsigned char>;

/// Sets that grow together.
class Groups {
public:
    explicit Groups(std::size_t count) : parents(count) {
        std::iota(parents.begin(), parents.end(), 0U);
    }

    unsigned of(unsigned member) {
        while (parents[member] != member) member = parents[member] = parents[parents[member]];
        return member;
    }

    /// Both belong to the group of `leader` afterwards.
    void unite(unsigned leader, unsigned other) { parents[of(other)] = of(leader); }

private:
    std::vector<unsigned> parents;
};

constexpr unsigned GROUND = 0;
constexpr unsigned VOID = std::numeric_limits<unsigned>::max();

struct Node {
    unsigned x;
    unsigned y;
};

/// The bodies of a plate: a number from 1 for each element with material.
class Bodies {
public:
    Bodies(unsigned nelx, unsigned nely, const Flags& solid)
        : nelx(nelx), nely(nely), ofElement(solid.size(), VOID) {
        Groups elements(solid.size());
        for (unsigned e = 0; e < solid.size(); ++e) {
            if (!solid[e]) continue;
            if (e % nely > 0 && solid[e - 1]) elements.unite(e - 1, e);
            if (e >= nely && solid[e - nely]) elements.unite(e - nely, e);
        }
        for (unsigned e = 0; e < solid.size(); ++e) {
            if (!solid[e]) continue;
            unsigned& body = ofElement[elements.of(e)];
            if (body == VOID) body = ++number;
            ofElement[e] = body;
        }
    }

    /// The numbers are 1 to count().
    unsigned count() const { return number; }

    unsigned of(unsigned element) const { return ofElement[element]; }

    /// VOID outside the plate too.
    unsigned at(unsigned x, unsigned y) const {
        return x < nelx && y < nely ? ofElement[x * nely + y] : VOID;
    }

    /// Calls visit(body) for each body at a node: two at a pin, else one or none.
    template <typename Visit>
    void forEachAt(const Node& node, const Visit& visit) const {
        const auto& [x, y] = node;
        unsigned seen = VOID;
        for (const unsigned body : {at(x - 1, y - 1), at(x, y - 1), at(x - 1, y), at(x, y)}) {
            if (body == VOID || body == seen) continue;
            visit(body);
            seen = body;
        }
    }

private:
    unsigned nelx;
    unsigned nely;
    std::vector<unsigned> ofElement;
    unsigned number = 0;
};

/// The supports of a body, as far as they matter: the outermost rows in which it is held in x, and
/// the outermost columns in which it is held in y. All others follow from these.
struct Holding {
    static constexpr unsigned NOWHERE = std::numeric_limits<unsigned>::max();
    struct Range {
        unsigned low = NOWHERE;
        unsigned high = 0;

        bool isEmpty() const { return low == NOWHERE; }
        void add(unsigned place) {
            low = std::min(low, place);
            high = std::max(high, place);
        }
        void add(const Range& other) {
            low = std::min(low, other.low);
            high = std::max(high, other.high);
        }
    };

    Range rowsHeldInX;
    Range columnsHeldInY;

    bool isNone() const { return rowsHeldInX.isEmpty() && columnsHeldInY.isEmpty(); }

    /// Whether a body that is held like this cannot move.
    bool isComplete() const {
        return !rowsHeldInX.isEmpty() && !columnsHeldInY.isEmpty() &&
               (rowsHeldInX.low < rowsHeldInX.high || columnsHeldInY.low < columnsHeldInY.high);
    }
    void addPin(const Node& node) {
        rowsHeldInX.add(node.y);
        columnsHeldInY.add(node.x);
    }
};

/// Bodies, pins and supports. Groups of bodies that plainly move as one are joined first: two
/// groups with two pins, and a group whose supports and pins hold it on the ground. This settles
/// nearly all designs. The motions of the groups that are left are computed.
class Joints {
public:
    Joints(const Bodies& bodies, unsigned nelx, unsigned nely, const Flags& held)
        : groups(bodies.count() + std::size_t{1}),
          holdings(bodies.count() + std::size_t{1}),
          pins(bodies.count() + std::size_t{1}) {
        for (unsigned x = 0; x <= nelx; ++x) {
            for (unsigned y = 0; y <= nely; ++y) {
                const Node node = {x, y};
                const std::size_t dof = 2 * (std::size_t{x} * (nely + 1) + y);
                if (held[dof] || held[dof + 1]) addSupport(bodies, node, held[dof], held[dof + 1]);
                if (x > 0 && y > 0 && x < nelx && y < nely) addPinAt(bodies, node);
            }
        }
        for (unsigned body = 1; body < holdings.size(); ++body) joinToGroundIfHeld(body);
        joinAll();
    }

    /// For each body whether it cannot move; the ground is number 0.
    Flags heldBodies() {
        const std::vector<unsigned> unsettled = pinnedGroupsWithSupports();
        Flags held(holdings.size());
        held[GROUND] = 1;
        const auto motions = motionsOf(unsettled).heldBodies();
        for (std::size_t i = 0; i < unsettled.size(); ++i) {
            held[unsettled[i]] = motions ? (*motions)[i] : 1;
        }
        for (unsigned body = 1; body < held.size(); ++body) held[body] = held[groups.of(body)];
        return held;
    }

private:
    void addSupport(const Bodies& bodies, const Node& node, bool inX, bool inY) {
        bodies.forEachAt(node, [&](unsigned body) {
            if (inX) holdings[body].rowsHeldInX.add(node.y);
            if (inY) holdings[body].columnsHeldInY.add(node.x);
        });
    }

    void addPinAt(const Bodies& bodies, const Node& node) {
        unsigned first = VOID;
        bodies.forEachAt(node, [&](unsigned body) {
            if (first != VOID) addPin(first, body, node);
            first = body;
        });
    }

    void addPin(unsigned one, unsigned other, const Node& node) {
        if (!pins[one].try_emplace(other, node).second) toBeJoined.emplace_back(one, other);
        pins[other].try_emplace(one, node);
    }

    void joinToGroundIfHeld(unsigned group) {
        if (holdings[group].isComplete()) toBeJoined.emplace_back(GROUND, group);
    }

    void joinAll() {
        while (!toBeJoined.empty()) {
            auto [one, other] = toBeJoined.back();
            toBeJoined.pop_back();
            one = groups.of(one);
            other = groups.of(other);
            if (one == other) continue;
            if (one == GROUND || other == GROUND) {
                joinToGround(std::max(one, other));
            } else if (pins[one].size() < pins[other].size()) {
                join(other, one);
            } else {
                join(one, other);
            }
        }
    }

    void joinToGround(unsigned group) {
        groups.unite(GROUND, group);
        for (const auto& [other, node] : std::exchange(pins[group], {})) {
            pins[other].erase(group);
            holdings[other].addPin(node);
            joinToGroundIfHeld(other);
        }
    }

    // The part is no group of its own any more, so its pins go to the group.
    void join(unsigned group, unsigned part) {
        groups.unite(group, part);
        pins[group].erase(part);
        for (const auto& [other, node] : std::exchange(pins[part], {})) {
            if (other == group) continue;
            pins[other].erase(part);
            addPin(group, other, node);
        }
        holdings[group].rowsHeldInX.add(holdings[part].rowsHeldInX);
        holdings[group].columnsHeldInY.add(holdings[part].columnsHeldInY);
        joinToGroundIfHeld(group);
    }

    bool isGroup(unsigned body) { return body != GROUND && groups.of(body) == body; }

    /// Groups that are no part of the ground, in ascending order. Left out are those that can move
    /// in any case: a single one, which would belong to the ground otherwise, and those without a
    /// support at any of the groups that they hang together with.
    std::vector<unsigned> pinnedGroupsWithSupports() {
        Groups chains(holdings.size());
        Flags isSupported(holdings.size());
        for (unsigned group = 1; group < holdings.size(); ++group) {
            if (!isGroup(group)) continue;
            for (const auto& [other, node] : pins[group]) chains.unite(group, other);
        }
        for (unsigned group = 1; group < holdings.size(); ++group) {
            if (isGroup(group) && !holdings[group].isNone()) isSupported[chains.of(group)] = 1;
        }
        std::vector<unsigned> result;
        for (unsigned group = 1; group < holdings.size(); ++group) {
            if (isGroup(group) && !pins[group].empty() && isSupported[chains.of(group)]) {
                result.push_back(group);
            }
        }
        return result;
    }

    RigidMotions motionsOf(const std::vector<unsigned>& members) const {
        RigidMotions motions(members.size());
        for (std::size_t i = 0; i < members.size(); ++i) {
            const Holding& holding = holdings[members[i]];
            for (const unsigned y : {holding.rowsHeldInX.low, holding.rowsHeldInX.high}) {
                if (!holding.rowsHeldInX.isEmpty()) motions.hold(i, 0, y, 0);
            }
            for (const unsigned x : {holding.columnsHeldInY.low, holding.columnsHeldInY.high}) {
                if (!holding.columnsHeldInY.isEmpty()) motions.hold(i, x, 0, 1);
            }
            for (const auto& [other, node] : pins[members[i]]) {
                if (other < members[i]) continue;
                const auto j = std::lower_bound(members.begin(), members.end(), other);
                motions.join(i, static_cast<std::size_t>(j - members.begin()), node.x, node.y);
            }
        }
        return motions;
    }

    Groups groups;
    std::vector<Holding> holdings;               ///< by group
    std::vector<std::map<unsigned, Node>> pins;  ///< by group: one pin for each other group
    std::vector<std::pair<unsigned, unsigned>> toBeJoined;
};

}  // namespace

std::vector<unsigned char> findLooseElements(unsigned nelx, unsigned nely, Flags solid,
                                             const Flags& held) {
    Flags loose(solid.size());
    // What moves may have held something else until it is taken away.
    for (bool found = true; found;) {
        found = false;
        const Bodies bodies(nelx, nely, solid);
        const Flags heldBodies = Joints(bodies, nelx, nely, held).heldBodies();
        for (unsigned e = 0; e < solid.size(); ++e) {
            if (!solid[e] || heldBodies[bodies.of(e)]) continue;
            loose[e] = 1;
            solid[e] = 0;
            found = true;
        }
    }
    return loose;
}
