#include "library_session.h"

#include <array>
#include <numeric>
#include <utility>

#include "records.h"
#include "refinement.h"

namespace {

bool hasSamePlate(const Scene& a, const Scene& b) {
    return a.width == b.width && a.height == b.height && a.subdivision == b.subdivision &&
           a.meshFactor == b.meshFactor && a.loadCases == b.loadCases;
}

Area areaOfMask(const std::vector<int>& mask, int width) {
    Area area;
    const auto height = static_cast<int>(mask.size()) / width;
    for (int x = 0; x < width; ++x)
        for (int y = 0; y < height; ++y)
            if (mask[static_cast<std::size_t>(y * width + x)] != 0) area.cells.push_back({x, y});
    return area;
}

}  // namespace

LibrarySession::~LibrarySession() { _DestroyVoxamApp(); }

void LibrarySession::optimise(std::shared_ptr<const Scene> scene, bool movesBlob,
                              std::uint64_t start) {
    const auto before = std::exchange(optimised, std::move(scene));
    blobMoves = movesBlob;
    const bool goesOn = before && hasSamePlate(*before, *optimised) && start == startNumber;
    startNumber = start;
    // An update starts the blob from the cells it names. One that was not edited stays where it
    // has got to.
    if (!goesOn || before->blob != optimised->blob) blobHasMoved = false;
    if (!goesOn) create();
    update();
}

void LibrarySession::create() {
    // Another number than before: the same one would keep the design and the refinement.
    ++restartId;
    iterationCount = 0;
    _InitVoxamApp(optimised->width, optimised->height, optimised->subdivision,
                  optimised->meshFactor, static_cast<float>(optimised->volumeFraction),
                  optimised->loadCases, restartId);
}

void LibrarySession::update() {
    const auto loads = loadRecords(*optimised);
    const auto supports = supportRecords(*optimised);
    const auto passive = passiveRecords(optimised->passive);
    const auto blob =
        cellRecords(blobHasMoved ? areaOfMask(blobMask, optimised->width) : optimised->blob);
    const std::vector<char> cases(optimised->loadCasesInUse.begin(),
                                  optimised->loadCasesInUse.end());
    _UpdateVoxamApp(static_cast<int>(loads.size() / 5), loads.data(),
                    static_cast<int>(supports.size() / 5), supports.data(),
                    static_cast<float>(optimised->volumeFraction), passive.data(),
                    static_cast<int>(cases.size()), cases.data(), blob.data());
}

IterationOutcome LibrarySession::iterate(Frame& frame) {
    frame.refinement = optimised->refinement();
    frame.columns = optimised->width * frame.refinement;
    frame.rows = optimised->height * frame.refinement;
    frame.picture.resize(static_cast<std::size_t>(frame.columns) *
                         static_cast<std::size_t>(frame.rows));
    std::array<char, 256> message = {};
    constexpr int length = static_cast<int>(message.size());
    const auto penalty = static_cast<float>(optimised->penalty);
    const bool moves = blobMoves && !optimised->blob.empty();
    IterationOutcome outcome;
    IterationNumbers& numbers = outcome.numbers;
    if (moves) {
        blobMask.resize(static_cast<std::size_t>(optimised->width) *
                        static_cast<std::size_t>(optimised->height));
        numbers.compliance =
            _IterateVoxamAppWithBlob(length, message.data(), frame.picture.data(), &numbers.change,
                                     &numbers.times, blobMask.data(), penalty);
    } else {
        numbers.compliance = _IterateVoxamApp(length, message.data(), frame.picture.data(),
                                              &numbers.change, &numbers.times, penalty);
    }
    outcome.text = message.data();
    if (!outcome.text.empty()) return outcome;
    blobHasMoved = blobHasMoved || moves;
    frame.hasBlob = blobHasMoved;
    if (blobHasMoved) frame.blob = blobMask;
    numbers.iteration = ++iterationCount;
    const double voids = std::accumulate(frame.picture.begin(), frame.picture.end(), 0.0);
    numbers.volume = 1 - voids / static_cast<double>(frame.picture.size());
    frame.numbers = numbers;
    return outcome;
}

ScoreResult LibrarySession::score(std::shared_ptr<const Scene> scene, const Field& design) {
    const int refinement = refinementOf(design, *scene);
    if (scene != scored || refinement != scoredRefinement) {
        game.reset();
        game.emplace(refined(*scene, refinement));
        scored = std::move(scene);
        scoredRefinement = refinement;
    }
    ScoreResult result;
    result.design = design;
    result.score = game->score(design);
    return result;
}
