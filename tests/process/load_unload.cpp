// Loads the library, scores a plate, and drops the library while its solver is alive, again and
// again. The library has to stay, with its state: threads of the libraries it uses cannot be ended.
//
//     load_unload LIBRARY
#include <cstdio>

#include "scored_plate.h"

int main(int /*argc*/, char** argv) {
    const test::ScoredPlate plate(4, 3);
    double first = 0.0;
    for (int round = 1; round <= 20; ++round) {
        const test::LoadedLibrary library(argv[1]);
        // From the second round on, the solver of the round before must still be there.
        const double lasting = round > 1 ? plate.scoreAgain(library) : 0.0;
        const double score = plate.score(library);
        if (round == 1) first = score;
        if (!(score > 0.0 && score < 1e6 && score == first) || (round > 1 && lasting != first)) {
            std::fprintf(stderr, "round %d: %g, and %g before that\n", round, score, lasting);
            return 1;
        }
    }
    return 0;
}
