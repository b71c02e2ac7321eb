#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "fault.h"
#include "hosts.h"

namespace soak {

namespace {

using Node = std::pair<int, int>;

float asFloat(int number) { return static_cast<float>(number); }

class PlausibleHost {
public:
    PlausibleHost(CheckedLibrary& checked, Dice& dice) : checked(checked), dice(dice) {}

    void play() {
        begin();
        for (int step = dice.between(5, 15); step > 0; --step) {
            edit();
            checked.update(settings);
            for (int i = dice.between(1, 8); i > 0; --i) iterate();
            if (dice.oneIn(3)) scoreDrawings();
            if (dice.oneIn(3)) analyseDrawings();
        }
    }

private:
    void begin() {
        plate = {dice.between(3, 20), dice.between(2, 14), 1, 1};
        refine();
        caseCount = dice.between(1, 3);
        settings = {};
        chooseSupports();
        chooseLoads();
        chooseVolume();
        checked.create(plate, settings.volumeFraction, caseCount, ++restartId);
    }

    void refine() {
        plate.subdivision = dice.between(1, 3);
        plate.meshFactor = dice.oneIn(3) ? dice.between(1, 3) : plate.subdivision;
    }

    void edit() {
        const int wish = dice.upTo(9);
        if (wish == 0) return chooseSupports();
        if (wish == 1) return chooseVolume();
        if (wish == 2) return choosePassive();
        if (wish == 3) return chooseBlob();
        if (wish == 4) return restart();
        chooseLoads();
    }

    void hold(int x, int y, bool inX) {
        if (inX) settings.supports.add(asFloat(x), asFloat(y), 0);
        settings.supports.add(asFloat(x), asFloat(y), 1);
        held.insert({x, y});
    }

    // Loads that would come to lie on the new supports move elsewhere.
    void chooseSupports() {
        settings.supports = {};
        held.clear();
        const int kind = dice.upTo(2);
        if (kind == 2) {
            hold(0, plate.height, true);
            hold(plate.width, plate.height, false);
        } else if (kind == 1) {
            for (int x = 0; x <= plate.width; ++x) hold(x, 0, true);
        } else {
            const int x = dice.oneIn(2) ? 0 : plate.width;
            for (int y = 0; y <= plate.height; ++y) hold(x, y, true);
        }
        chooseLoads();
    }

    Node freeNode() {
        for (;;) {
            const Node node = {dice.upTo(plate.width), dice.upTo(plate.height)};
            if (!held.contains(node)) return node;
        }
    }

    // All forces of a load case point up, or all down: none is the opposite of another.
    void chooseLoads() {
        settings.loads = {};
        for (int loadCase = 0; loadCase < caseCount; ++loadCase) {
            const float sign = dice.pick({1.0F, -1.0F});
            for (int i = dice.between(1, 2); i > 0; --i) {
                const auto [x, y] = freeNode();
                settings.loads.add(asFloat(x), asFloat(y), dice.pick({0.0F, 1.0F, -0.5F}),
                                   sign * dice.pick({1.0F, 0.25F}), asFloat(loadCase));
            }
        }
        settings.loadCases = {static_cast<char>(dice.upTo(caseCount - 1))};
        for (int i = 0; i < caseCount; ++i) {
            if (dice.oneIn(2)) settings.loadCases.push_back(static_cast<char>(i));
        }
    }

    void chooseVolume() { settings.volumeFraction = asFloat(dice.between(2, 9)) / 10; }

    void addRectangle(std::vector<short>& record, std::size_t counter) {
        const int left = dice.upTo(plate.width - 1);
        const int top = dice.upTo(plate.height - 1);
        const int right = std::min(left + dice.between(1, plate.width / 3 + 1), plate.width);
        const int bottom = std::min(top + dice.between(1, plate.height / 3 + 1), plate.height);
        test::addBlock(record, counter, left, right, top, bottom);
    }

    void choosePassive() {
        settings.passive = {0, 0, 0};
        for (const std::size_t kind : {0, 1, 2}) {
            if (dice.oneIn(2)) addRectangle(settings.passive, kind);
        }
    }

    void chooseBlob() {
        settings.blob = {0};
        if (!dice.oneIn(3)) addRectangle(settings.blob, 0);
    }

    // Keeps the design, or begins a new one with other refinements.
    void restart() {
        if (dice.oneIn(2)) {
            refine();
            ++restartId;
        }
        checked.create(plate, settings.volumeFraction, caseCount, restartId);
        plate = checked.getPlate();
    }

    void iterate() {
        const Request request = {.withBlob = dice.oneIn(2),
                                 .penalty = dice.pick({3.0F, 3.0F, 3.0F, 1.0F, 2.5F, 5.0F})};
        const Answer answer = checked.iterate(request);
        // Passive void and the blob may cut the structure apart.
        const bool sound = settings.passive[0] == 0 && settings.blob[0] == 0;
        require(!sound || answer.text.empty(), "a sound problem is solved: " + answer.text);
        if (!answer.text.empty()) return;
        require(answer.compliance > 0 && std::isfinite(answer.compliance),
                "a compliance is positive");
        require(answer.change <= 1, "no density changes by more than 1");
        constexpr float rounding = 1e-6F;
        const auto [least, most] = std::ranges::minmax(answer.picture);
        require(least > -rounding && most < 1 + rounding, "a picture is between 0 and 1");
        require(!request.withBlob || std::ranges::count(answer.mask, 1) == settings.blob[0],
                "a blob keeps its size");
    }

    std::vector<float> drawing() {
        std::vector<float> densities(plate.elements(), 1.0F);
        const int kind = dice.upTo(2);
        for (float& density : densities) {
            if (kind == 1 && dice.oneIn(4)) density = 0.0F;
            if (kind == 2) density = static_cast<float>(dice.fraction());
        }
        return densities;
    }

    void scoreDrawings() {
        const std::vector<float> densities = drawing();
        checked.createGame(plate.width, plate.height, settings.loads, settings.supports, caseCount);
        const Score score = checked.score(densities);
        require(checked.score(drawing()).value >= 0, "a score is not negative");
        require(checked.score(densities) == score, "the same design has the same score");
        if (score.value == FAILED_SCORE) return;

        double sum = 0.0;
        for (const float share : score.shares) sum += static_cast<double>(share);
        require(std::fabs(sum - score.value) <= 1e-3 * score.value, "the shares sum to the score");

        test::Records doubled = settings.loads;
        for (std::size_t i = 0; i < doubled.floats.size(); i += 5) {
            doubled.floats[i + 2] *= 2;
            doubled.floats[i + 3] *= 2;
        }
        checked.createGame(plate.width, plate.height, doubled, settings.supports, caseCount);
        if (score.value > FAILED_SCORE / 8) return;
        require(checked.score(densities).value == 4 * score.value,
                "twice the force gives four times the score, exactly");
    }

    void createAnalysis(float force) {
        test::Records loads = settings.loads;
        for (std::size_t i = 0; i < loads.floats.size(); i += 5) {
            loads.floats[i + 2] *= force;
            loads.floats[i + 3] *= force;
        }
        checked.createAnalysis(plate.width, plate.height, loads, settings.supports, caseCount);
    }

    void analyseDrawings() {
        const std::vector<double> solid(plate.elements(), 1.0);
        const std::vector<float> densities = drawing();
        const std::vector<double> moduli(densities.begin(), densities.end());
        createAnalysis(1);
        require(checked.analyse(solid).status == VOXAM_ANALYSIS_SOLVED,
                "a solid plate is analysed");
        const Analysed result = checked.analyse(moduli);
        require(checked.analyse(moduli) == result, "the same design has the same analysis");
        require(result.status <= VOXAM_ANALYSIS_MECHANISM, "a drawing is analysed");
        createAnalysis(0.25F);
        const Analysed quarter = checked.analyse(moduli);
        require(quarter.status == result.status, "the status does not depend on the forces");
        if (result.status > VOXAM_ANALYSIS_LOOSE_PART) return;
        for (std::size_t k = 0; k < result.compliances.size(); ++k) {
            require(result.compliances[k] == 16 * quarter.compliances[k],
                    "four times the force gives sixteen times the compliance, exactly");
        }
    }

    CheckedLibrary& checked;
    Dice& dice;
    Plate plate;
    test::Settings settings;
    std::set<Node> held;
    int caseCount = 1;
    int restartId = 0;
};

}  // namespace

void playPlausibleHost(CheckedLibrary& checked, Dice& dice) { PlausibleHost(checked, dice).play(); }

}  // namespace soak
