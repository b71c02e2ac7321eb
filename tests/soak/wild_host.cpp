#include <algorithm>
#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>

#include "hosts.h"

namespace soak {

namespace {

class WildHost {
public:
    WildHost(CheckedLibrary& checked, Dice& dice) : checked(checked), dice(dice) {}

    void play() {
        for (int step = 0; step < 60; ++step) {
            const int wish = dice.upTo(19);
            if (wish < 2)
                create();
            else if (wish < 6)
                update();
            else if (wish < 7 && dice.oneIn(3))
                checked.destroy();
            else if (wish < 8)
                dice.oneIn(2) ? playGame() : playAnalysis();
            else
                iterate();
        }
    }

private:
    float anyFloat() {
        if (dice.oneIn(10)) return std::bit_cast<float>(static_cast<uint32_t>(dice.bits()));
        if (dice.oneIn(10)) return dice.pick({NAN, INFINITY, -INFINITY, FLT_MAX, -FLT_MAX, 1e-40F});
        if (dice.oneIn(10)) return static_cast<float>(dice.between(-40, 40)) / 8;
        return dice.pick({0.0F, 1.0F, -1.0F, 0.5F, 2.0F, 2147483648.0F});
    }

    int anySize(int most) {
        if (dice.oneIn(40)) return 0;
        if (dice.oneIn(40)) return dice.pick({-1, INT_MIN, INT_MAX, 65536, 1 << 30});
        return dice.between(1, most);
    }

    // Where one size is absurd, the others have to be as well: they would not be too large else,
    // but take all memory and an hour.
    Plate anyPlate() {
        Plate plate = {anySize(9), anySize(7), anySize(3), anySize(3)};
        const auto absurd = [](int size) { return size < 0 || size > 9; };
        if (absurd(plate.width) || absurd(plate.height) || absurd(plate.subdivision) ||
            absurd(plate.meshFactor)) {
            plate = {65536, 65536, 1, 1};
            if (dice.oneIn(2)) plate = {dice.between(1, 3), 3, 65536, dice.between(1, 3)};
            if (dice.oneIn(2)) plate = {-1, anySize(7), 1, anySize(3)};
        }
        return plate;
    }

    void create() {
        const Plate plate = dice.oneIn(3) ? checked.getPlate() : anyPlate();
        const float volume = dice.oneIn(4) ? anyFloat() : 0.4F;
        checked.create(plate, volume, dice.between(-1, 3), dice.upTo(1));
    }

    // Mostly nodes of the plate.
    test::Records anyRecords(bool supports) {
        const Plate& plate = checked.getPlate();
        test::Records records;
        for (int i = dice.upTo(6); i > 0; --i) {
            if (dice.oneIn(12)) {
                records.add(anyFloat(), anyFloat(), anyFloat(), anyFloat(), anyFloat());
                continue;
            }
            const bool known = plate.elements() > 0;
            const auto x = static_cast<float>(dice.upTo(known ? plate.width : 3));
            const auto y = static_cast<float>(dice.upTo(known ? plate.height : 3));
            const float third = supports ? static_cast<float>(dice.upTo(1)) : anyFloat();
            records.add(x, y, third, 1.0F, static_cast<float>(dice.upTo(1)));
        }
        return records;
    }

    // The record of passive cells must keep to the grid; that of the blob need not.
    std::vector<short> anyCells(std::size_t counters, bool onGrid) {
        const Plate& plate = checked.getPlate();
        std::vector<short> record(counters);
        int cells = 0;
        for (short& count : record) {
            count = static_cast<short>(dice.between(-1, 8));
            if (onGrid && plate.elements() == 0) count = std::min<short>(count, 0);
            cells += std::max<int>(count, 0);
        }
        for (; cells > 0; --cells) {
            const int margin = !onGrid && dice.oneIn(8) ? 3 : 0;
            for (const int size : {plate.width, plate.height}) {
                // A record cannot name more cells than a short counts.
                const int last = std::clamp(size, 1, SHRT_MAX - margin) - 1;
                record.push_back(static_cast<short>(dice.between(-margin, last + margin)));
            }
        }
        return record;
    }

    void update() {
        const test::Records loads = anyRecords(false);
        test::Records supports = anyRecords(true);
        if (dice.oneIn(2)) supports.add(0, 0, 0).add(0, 0, 1).add(1, 0, 1);
        const std::vector<short> passive = anyCells(3, true);
        const std::vector<short> blob = anyCells(1, false);
        std::vector<char> cases(static_cast<std::size_t>(dice.upTo(5)));
        for (char& loadCase : cases) loadCase = static_cast<char>(dice.between(-2, 3));
        if (dice.oneIn(9)) cases.push_back(static_cast<char>(dice.upTo(255)));
        checked.update(dice.oneIn(20) ? dice.between(-2, 0) : loads.count(),
                       dice.oneIn(20) ? nullptr : loads.data(), supports.count(),
                       dice.oneIn(20) ? nullptr : supports.data(),
                       dice.oneIn(3) ? anyFloat() : 0.5F, dice.oneIn(2) ? nullptr : passive.data(),
                       static_cast<int>(cases.size()), dice.oneIn(20) ? nullptr : cases.data(),
                       dice.oneIn(2) ? nullptr : blob.data());
    }

    void iterate() {
        Request request = {.withBlob = dice.oneIn(2),
                           .penalty = dice.oneIn(4) ? anyFloat() : 3.0F,
                           .messageLength = dice.oneIn(4) ? dice.between(-2, 40) : 64};
        for (bool* wanted :
             {&request.text, &request.picture, &request.change, &request.times, &request.mask})
            *wanted = !dice.oneIn(12);
        checked.iterate(request);
    }

    void playGame() {
        const bool absurd = dice.oneIn(12);
        const int width = absurd ? dice.pick({INT_MAX, 65536}) : dice.between(-1, 9);
        const int height = absurd ? dice.pick({INT_MAX, 65536}) : dice.between(-1, 7);
        checked.createGame(width, height, anyRecords(false), anyRecords(true), dice.between(-1, 3));
        for (int i = dice.upTo(3); i > 0; --i) {
            std::vector<float> densities(63, dice.pick({0.0F, 0.5F, 1.0F}));
            for (float& density : densities) {
                if (dice.oneIn(9)) density = anyFloat();
            }
            checked.score(densities);
        }
        if (dice.oneIn(2)) checked.destroyGame();
        if (dice.oneIn(4)) checked.score({});
    }

    void playAnalysis() {
        const bool absurd = dice.oneIn(12);
        const int width = absurd ? dice.pick({INT_MAX, 65536}) : dice.between(-1, 9);
        const int height = absurd ? dice.pick({INT_MAX, 65536}) : dice.between(-1, 7);
        checked.createAnalysis(width, height, anyRecords(false), anyRecords(true),
                               dice.between(-1, 3));
        for (int i = dice.upTo(3); i > 0; --i) {
            std::vector<double> moduli(63, dice.pick({0.0, 1e-9, 1.0, 210e9}));
            for (double& modulus : moduli) {
                if (dice.oneIn(3)) modulus = dice.pick({0.0, 0.5, 1.0, 1e-300, 1e300});
                if (dice.oneIn(200)) modulus = static_cast<double>(anyFloat());
            }
            checked.analyse(moduli, dice.oneIn(4) ? dice.between(-2, 40) : 160);
        }
        if (dice.oneIn(2)) checked.destroyAnalysis();
        if (dice.oneIn(4)) checked.analyse({});
    }

    CheckedLibrary& checked;
    Dice& dice;
};

}  // namespace

void playWildHost(CheckedLibrary& checked, Dice& dice) { WildHost(checked, dice).play(); }

}  // namespace soak
