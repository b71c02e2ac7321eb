#include "score_command.h"

#include <voxam.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <numeric>
#include <stdexcept>
#include <string>

#include "input_error.h"
#include "output_file.h"
#include "picture.h"
#include "scene.h"

namespace {

struct Score {
    bool supported = false;
    double compliance = 0;
    Field energies;
};

/// The library's one game solver, for as long as this object lives.
class GameSolver {
public:
    explicit GameSolver(const Scene& scene) : width(scene.width), height(scene.height) {
        const auto loads = loadRecords(scene);
        const auto supports = supportRecords(scene);
        _InitVoxamGame(width, height, 1, 1, static_cast<int>(loads.size() / 5), loads.data(),
                       static_cast<int>(supports.size() / 5), supports.data(), scene.loadCases);
    }
    GameSolver(const GameSolver&) = delete;
    GameSolver& operator=(const GameSolver&) = delete;
    ~GameSolver() { _DestroyVoxamGame(); }

    Score score(const Field& densities) {
        // Without a solver nothing is written, which tells want of memory from want of supports.
        constexpr float unwritten = -1;
        std::vector<float> values(densities.values.size(), unwritten);
        Score result;
        result.compliance = _SolveVoxamGame(toElementOrder(densities).data(), values.data());
        if (values.front() == unwritten) throw std::runtime_error("not enough memory to solve");
        result.supported = result.compliance < std::numeric_limits<float>::max();
        result.energies = fromElementOrder(values, width, height);
        return result;
    }

private:
    int width;
    int height;
};

double sum(const Field& field) {
    return std::accumulate(field.values.begin(), field.values.end(), 0.0);
}

double percent(double part, double whole) { return whole > 0 ? 100 * part / whole : 0; }

std::string materialText(const Field& densities) {
    char text[96];
    const auto elements = densities.values.size();
    std::snprintf(text, sizeof text, "%.1f %%  (%.7g of %zu elements)",
                  percent(sum(densities), static_cast<double>(elements)), sum(densities), elements);
    return text;
}

void printScene(const Scene& scene) {
    std::printf("%s\n", scene.title.c_str());
    std::printf("  grid             %d x %d elements\n", scene.width, scene.height);
    std::printf("  load cases       %d\n", scene.loadCases);
    std::printf("  material used    %s\n", materialText(*scene.densities).c_str());
}

void printHardestWorking(const Field& energies, const Field& densities) {
    std::vector<float> sorted = energies.values;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    const double total = sum(energies);
    std::printf("\n  hardest-working elements   share of the compliance\n");
    for (const int share : {1, 5, 10}) {
        const std::size_t count = (sorted.size() * static_cast<std::size_t>(share) + 99) / 100;
        const double part =
            std::accumulate(sorted.begin(), sorted.begin() + static_cast<long>(count), 0.0);
        std::printf("  %4d %% %10zu elements   %21.1f %%\n", share, count, percent(part, total));
    }
    const auto hardest = static_cast<int>(
        std::max_element(energies.values.begin(), energies.values.end()) - energies.values.begin());
    const int x = hardest % energies.width;
    const int y = hardest / energies.width;
    char place[64];
    std::snprintf(place, sizeof place, "at x %d, y %d (density %.3g)", x, y, densities.at(x, y));
    std::printf("  the hardest %-24s %10.1f %%\n", place, percent(energies.at(x, y), total));
}

std::string subtitle(const Scene& scene, const Score& score) {
    char text[64];
    std::snprintf(text, sizeof text, "compliance %.6g", score.compliance);
    return (score.supported ? text : std::string("not supported: free to move")) +
           ",  material used " + materialText(*scene.densities);
}

}  // namespace

int runScore(const ScoreOptions& options) {
    const Scene scene = readScene(options.scene);
    if (!scene.densities)
        throw InputError(options.scene.string() + ": densities: missing key, needed for a score");
    const int scale = options.scale.value_or(defaultPictureScale(scene));
    if (!options.picture.empty()) {
        checkPictureScale(scene, scale);
        checkOutput(options.picture, scene.files);
    }

    const Score score = GameSolver(scene).score(*scene.densities);

    RgbImage picture;
    if (!options.picture.empty()) {
        PictureContent content{*scene.densities, std::nullopt, scene.title, subtitle(scene, score)};
        if (score.supported) content.energies = score.energies;
        picture = drawPicture(scene, content, scale);
        writeFile(options.picture, encodePng(picture));
    }

    printScene(scene);
    if (score.supported) {
        std::printf("  compliance       %.6g\n", score.compliance);
        printHardestWorking(score.energies, *scene.densities);
    } else {
        std::printf("  compliance       none: not supported, the plate is free to move\n");
    }
    if (!options.picture.empty())
        std::printf("\n  picture          %s (%d x %d pixels)\n", options.picture.c_str(),
                    picture.width, picture.height);
    return score.supported ? 0 : 1;
}
