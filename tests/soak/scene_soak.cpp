// Random scenes for the reader that the hosts share, and random designs for their exporters, for as
// long as one likes.

#include <cstdint>
#include <exception>
#include <string>
#include <vector>

#include "driver.h"
#include "export_check.h"
#include "random_scene.h"
#include "scene_check.h"

namespace {

uint64_t readSome(uint64_t seed) {
    constexpr int scenes = 20;
    soak::Dice dice(seed);
    for (int i = 0; i < scenes; ++i) {
        const std::string text = soak::randomScene(dice);
        try {
            soak::checkScene(text);
        } catch (const std::exception& error) {
            throw soak::Fault(std::string(error.what()) + "\nThe scene is\n" + text);
        }
    }
    std::vector<std::uint8_t> design(static_cast<std::size_t>(dice.upTo(400)));
    for (std::uint8_t& byte : design) byte = static_cast<std::uint8_t>(dice.bits());
    soak::checkExports(design);
    return scenes;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Reads random scenes, good ones and bad ones. A good one is written, read back and run "
        "for\n"
        "a few iterations; a bad one has to be refused with an error. After each 20 scenes a "
        "random\n"
        "design is exported.");
    return soak::drive(app, argc, argv, "scenes", readSome);
}
