// Loads the library and first uses it in an exit handler, when whatever the library destroys at
// exit has gone: a host that ends in the middle of its work. The version that is printed is checked
// from outside.
//
//     exit_handler LIBRARY
#include <cstdio>
#include <cstdlib>

#include "scored_plate.h"

namespace {

const test::LoadedLibrary* library;

void expect(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "failed: %s\n", what);
    std::_Exit(1);
}

void compute() {
    expect(test::ScoredPlate(4, 3).score(*library) < 1e6, "score");
    const test::Settings s = test::cantilever(4, 3);
    char text[64];
    library->create(4, 3, 1, 1, 0.5F, 1, 1);
    library->update(s.loads.count(), s.loads.data(), s.supports.count(), s.supports.data(), 0.5F,
                    nullptr, 1, s.loadCases.data(), nullptr);
    expect(library->iterate(sizeof text, text, nullptr, nullptr, nullptr, 3) > 0, "iteration");
    expect(text[0] == '\0', text);
}

}  // namespace

int main(int /*argc*/, char** argv) {
    // Handlers run in the reverse order: this one after those of the library.
    if (std::atexit(compute) != 0) return 2;
    library = new test::LoadedLibrary(argv[1]);  // never dropped
    return 0;
}
