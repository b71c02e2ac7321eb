// Random scenes for the reader that the hosts share, for as long as one likes.

#include <exception>

#include "driver.h"
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
    return scenes;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Reads random scenes, good ones and bad ones. A good one is written, read back and run "
        "for\n"
        "a few iterations; a bad one has to be refused with an error.");
    return soak::drive(app, argc, argv, "scenes", readSome);
}
