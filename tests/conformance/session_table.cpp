// Runs a scene as the window does, without one: prints a line for each iteration, and writes what
// the pictures show.
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <memory>

#include "export/scene_file.h"
#include "format/exact_text.h"
#include "library_session.h"

using namespace voxam;

namespace {

void runScene(const char* file, bool movesBlob, std::ostream& pictures) {
    const auto scene = std::make_shared<const Scene>(readScene(file));
    LibrarySession solvers;
    solvers.optimise(scene, movesBlob, 0);
    Frame frame;
    for (int next = 1; next <= scene->iterations;) {
        const IterationOutcome outcome = solvers.iterate(frame);
        const IterationNumbers& numbers = outcome.numbers;
        if (!outcome.text.empty()) {
            std::printf("%d refused %s\n", numbers.iteration, outcome.text.c_str());
            if (!outcome.resumesAt) return;
            next = *outcome.resumesAt;
            continue;
        }
        std::printf("%d %s %s %s\n", numbers.iteration, exactText(numbers.compliance).c_str(),
                    exactText(numbers.volume).c_str(), exactText(numbers.change).c_str());
        const auto& values = frame.material.values;
        pictures.write(reinterpret_cast<const char*>(values.data()),
                       static_cast<std::streamsize>(values.size() * sizeof(float)));
        next = numbers.iteration + 1;
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: voxam_session_table SCENE PICTURES [--blob]\n");
        return 2;
    }
    try {
        std::ofstream pictures(argv[2], std::ios::binary);
        runScene(argv[1], argc > 3 && std::strcmp(argv[3], "--blob") == 0, pictures);
        return pictures.flush() ? 0 : 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
