#include <memory>

#include "plate_stiffness.h"
#include "suite.h"

namespace {

struct Strategy {
    const char* name;
    void (*assemble)(PlateStiffness& stiffness);
};

constexpr Strategy STRATEGIES[] = {
    {"fresh triplets", [](PlateStiffness& s) { s.makeFromTriplets(); }},
    {"refill by search, serial", [](PlateStiffness& s) { s.refillBySearch(false); }},
    {"refill by search, parallel", [](PlateStiffness& s) { s.refillBySearch(true); }},
    {"refill by entries, serial", [](PlateStiffness& s) { s.refillByEntries(false); }},
    {"refill by entries, parallel", [](PlateStiffness& s) { s.refillByEntries(true); }},
};

}  // namespace

void addAssemblyBenchmarks(Suite& suite) {
    suite.beginSection("assembly", "filling the stiffness matrix from given moduli",
                       {"total", "ns/element"});
    for (const Plate& plate : {Plate{60, 40}, Plate{150, 100}}) {
        for (const Strategy& strategy : STRATEGIES) {
            suite.add(strategy.name, plate, 0.5, [=] {
                const std::vector<double> moduli(static_cast<std::size_t>(plate.elements()), 0.5);
                const auto stiffness = std::make_shared<PlateStiffness>(plate, moduli);
                return [=]() -> Sample {
                    const double total = timed([&] { strategy.assemble(*stiffness); });
                    return {{"total", total}, {"ns/element", total * 1e6 / plate.elements()}};
                };
            });
        }
    }
}
