#include "settling.h"

#include <algorithm>

using namespace voxam;

namespace {

// The library moves volume and stiffness of the void step by step in its first 20 iterations, so
// the span is longer than that.
constexpr std::size_t SPAN = 30;  // iterations
// Of the compliance within the span: a tenth of the smallest difference in a verdict.
constexpr double STILL = 0.001;
// A design that wavers for ever may rest as well.
constexpr int MOST_ITERATIONS = 500;

}  // namespace

void Settling::restart() { *this = Settling(); }

void Settling::add(const Frame& frame, int lastChange) {
    // A hole on its way may pass places where little changes.
    if (frame.blob != blob) compliances.clear();
    blob = frame.blob;
    compliances.push_back(frame.numbers.compliance);
    if (compliances.size() > SPAN) compliances.pop_front();
    ++iterations;
    const bool isPastChanges =
        lastChange == 0 || frame.numbers.iteration >= lastChange + static_cast<int>(SPAN);
    settled = isPastChanges && (isStill() || iterations >= MOST_ITERATIONS);
}

bool Settling::isStill() const {
    if (compliances.size() < SPAN) return false;
    const auto [least, most] = std::minmax_element(compliances.begin(), compliances.end());
    return *most - *least <= STILL * *most;
}
