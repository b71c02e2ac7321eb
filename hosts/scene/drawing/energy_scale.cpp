#include "drawing/energy_scale.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <vector>

namespace voxam::inline drawing {

namespace {

constexpr std::array<Colour, 6> STOPS = {{{0.78, 0.78, 0.78},
                                          {0.86, 0.65, 0.49},
                                          {0.87, 0.47, 0.26},
                                          {0.79, 0.28, 0.17},
                                          {0.58, 0.13, 0.18},
                                          {0.32, 0.04, 0.14}}};

constexpr float SOLID = 0.5f;            // density from which an element counts for the span
constexpr double LOWEST_SHARE = 0.05;    // of the solid elements lie below the scale
constexpr double HIGHEST_SHARE = 0.997;  // of the solid elements lie on it or below
constexpr double MAX_SPAN = 1e4;         // four decades; more would flatten the colours
constexpr double MIN_SPAN = 10;
constexpr double MAX_LABELLED_SPAN = 2.6;  // decades in which all labels have room

}  // namespace

EnergyScale::EnergyScale(const Field& energies, const Field& densities) {
    const auto& all = energies.values;
    mean = std::accumulate(all.begin(), all.end(), 0.0) / static_cast<double>(all.size());
    std::vector<double> working;
    for (const float least : {SOLID, 0.0f}) {
        if (!working.empty()) break;
        for (std::size_t i = 0; i < all.size(); ++i)
            if (densities.values[i] >= least && all[i] > 0) working.push_back(all[i]);
    }
    if (working.empty()) return;
    const auto quantile = [&](double share) {
        const auto place = working.begin() +
                           static_cast<std::ptrdiff_t>(share * static_cast<double>(working.size()));
        std::nth_element(working.begin(), place, working.end());
        return *place / mean;
    };
    to = quantile(HIGHEST_SHARE);
    from = std::clamp(quantile(LOWEST_SHARE), to / MAX_SPAN, to / MIN_SPAN);
}

double EnergyScale::position(double multiple) const {
    if (multiple <= from) return 0;
    return std::min(1.0, std::log(multiple / from) / std::log(to / from));
}

std::vector<double> EnergyScale::ticks(double unit) const {
    const double span = std::log10(to / from);
    std::vector<double> multiples;
    const int last = int(std::floor(std::log10(to / unit)));
    for (int decade = int(std::floor(std::log10(from / unit))); decade <= last; ++decade)
        for (const int digit : {1, 2, 5}) {
            if (digit != 1 && span > MAX_LABELLED_SPAN) continue;
            const double multiple = digit * std::pow(10.0, decade);
            if (multiple * unit >= from && multiple * unit <= to) multiples.push_back(multiple);
        }
    return multiples;
}

Colour EnergyScale::colour(double position) {
    const double place = std::clamp(position, 0.0, 1.0) * (STOPS.size() - 1);
    const auto below = std::min(static_cast<std::size_t>(place), STOPS.size() - 2);
    return mix(STOPS[below], STOPS[below + 1], place - static_cast<double>(below));
}

}  // namespace voxam::inline drawing
