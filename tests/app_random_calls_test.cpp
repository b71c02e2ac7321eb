// Whatever a host does, every call ends, writes only where it may, and gives a finite picture or
// one of the texts. Game calls come in between.
#include <gtest/gtest.h>

#include <initializer_list>

#include "support/export_host.h"
#include "support/textbook.h"

namespace {

using namespace test;  // its host and texts

class RandomHost : public testing::Test {
protected:
    Random random;
    Host host;
    bool alive = false;
    int lastId = 0;

    RandomHost() { _DestroyVoxamApp(); }
    ~RandomHost() override {
        _DestroyVoxamApp();
        _DestroyVoxamGame();
    }

    float any(std::initializer_list<float> values) {
        return std::data(values)[random.below(static_cast<unsigned>(values.size()))];
    }
    int upTo(int limit) { return static_cast<int>(random.below(static_cast<unsigned>(limit) + 1)); }
    bool oneIn(int count) { return upTo(count - 1) == 0; }
    int sizeUpTo(int limit) { return oneIn(30) ? 0 : 1 + upTo(limit - 1); }

    void addRecords(Records& records) {
        for (int i = upTo(3); i > 0; --i) {
            const int outside = oneIn(20);
            records.add(static_cast<float>(upTo(host.nelx) - outside),
                        static_cast<float>(upTo(host.nely) + outside), any({0, 1, -0.5F}),
                        any({0, 1, -1}), any({0, 1}));
        }
    }

    void addCells(std::vector<short>& cells, int count) {
        for (int i = 0; i < count; ++i) {
            cells.push_back(static_cast<short>(upTo(host.nelx - 1)));
            cells.push_back(static_cast<short>(upTo(host.nely - 1)));
        }
    }

    void create() {
        const Host before = host;
        const bool same = oneIn(3);
        const float volume = any({0.1F, 0.3F, 0.4F, 0.5F, 0.6F, 0.9F, 1.0F, 0.0F, -0.5F, NAN});
        const int id = upTo(1);
        host.init(same ? host.nelx : sizeUpTo(6), same ? host.nely : sizeUpTo(5), sizeUpTo(3),
                  sizeUpTo(3), volume, id);
        if (alive && id == lastId && host.nelx == before.nelx && host.nely == before.nely) {
            host = before;  // the old one is kept
        } else {
            alive = std::isfinite(volume);
        }
        lastId = id;
    }

    void change() {
        Settings settings = cantilever(host.nelx, host.nely);
        addRecords(settings.loads);
        addRecords(settings.supports);
        settings.volumeFraction = any({0.1F, 0.4F, 0.5F, 0.8F, 1.0F, 0.0F, -1.0F, NAN});
        settings.loadCases = {static_cast<char>(upTo(4) / 3), static_cast<char>(upTo(3) - 1)};
        if (host.nelx > 0 && host.nely > 0 && oneIn(2)) {
            settings.passive = {static_cast<short>(upTo(2)), static_cast<short>(upTo(2)), 1};
            addCells(settings.passive, settings.passive[0] + settings.passive[1] + 1);
            settings.blob = {static_cast<short>(upTo(12))};
            addCells(settings.blob, settings.blob[0]);
        }
        update(settings);
    }

    void destroy() {
        _DestroyVoxamApp();
        alive = false;
    }

    void play() {
        Settings settings = cantilever(host.nelx, host.nely);
        addRecords(settings.loads);
        _InitVoxamGame(host.nelx, host.nely, 1, 1, settings.loads.count(), settings.loads.data(),
                       settings.supports.count(), settings.supports.data(), 2);
        const std::vector<float> densities(30, any({0, 0.5F, 1, NAN}));
        Guarded<float> values(host.nelx * host.nely);
        for (int i = upTo(3); i > 0; --i) _SolveVoxamGame(densities.data(), values.data());
        values.take();
        if (oneIn(2)) _DestroyVoxamGame();
    }

    void iterate() {
        const Result result =
            host.iterate(oneIn(2) ? PLAIN : WITH_BLOB, any({3, 3, 3, 1, 2.5F, 0, 0.5F, NAN}));
        if (!alive) {
            EXPECT_EQ(result.text, NO_OPTIMISER);
        } else if (!result.text.empty()) {
            EXPECT_TRUE(result.text == UNSOLVABLE || result.text == NOT_HELD ||
                        result.text == NO_WORK)
                << result.text;
        }
    }
};

TEST_F(RandomHost, CallsInAnyOrder) {
    for (int step = 0; step < 30000; ++step) {
        const int action = upTo(119);
        if (action < 6)
            create();
        else if (action < 24)
            change();
        else if (action < 25)
            destroy();
        else if (action < 34)
            play();
        else
            iterate();
        ASSERT_FALSE(HasFailure()) << step;
    }
}

}  // namespace
