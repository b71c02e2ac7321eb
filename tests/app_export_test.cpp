#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "test_support.h"
#include "voxam.h"

namespace {

using test::Settings;

const std::string NO_OPTIMISER = "No optimiser: call _InitVoxamApp first";
const std::string UNSOLVABLE = "Change load / support";
const std::string NOT_HELD = "Change load/support";
const std::string NO_WORK = "Load cannot be on top of support";

// The banner comes once in a process, so it is caught before any test runs.
class FirstAppCalls : public testing::Environment {
public:
    inline static std::string output;

    void SetUp() override {
        testing::internal::CaptureStdout();
        for (int i = 0; i < 2; ++i) {
            _InitVoxamApp(2, 1, 1, 1, 0.5F, 1, i);
            _DestroyVoxamApp();
        }
        output = testing::internal::GetCapturedStdout();
    }
};
const auto* const firstAppCalls = testing::AddGlobalTestEnvironment(new FirstAppCalls);

// An output buffer between guard zones.
template <typename T>
class Guarded {
public:
    static constexpr T UNTOUCHED = 77;

    explicit Guarded(int size) : values(static_cast<size_t>(size) + 2 * GUARD, UNTOUCHED) {}
    T* data() { return values.data() + GUARD; }
    std::vector<T> take() const {
        for (size_t i = 0; i < GUARD; ++i) {
            EXPECT_EQ(values[i], UNTOUCHED);
            EXPECT_EQ(values[values.size() - 1 - i], UNTOUCHED);
        }
        return {values.begin() + GUARD, values.end() - GUARD};
    }

private:
    static constexpr size_t GUARD = 16;
    std::vector<T> values;
};

template <typename T>
bool untouched(const std::vector<T>& values) {
    return std::ranges::all_of(values, [](T v) { return v == Guarded<T>::UNTOUCHED; });
}

struct Result {
    double compliance;
    std::string text;
    std::vector<float> picture;
    std::vector<int> mask;
    double change;
};

enum Kind { PLAIN, WITH_BLOB };

// The host's idea of the optimiser that is alive.
struct Host {
    int nelx = 0;
    int nely = 0;
    int refinement = 1;
    inline static int restarts = 100;

    void init(int width, int height, int subdivision = 1, int meshFactor = 1, float volume = 0.5F,
              int restartId = ++restarts) {
        nelx = width;
        nely = height;
        refinement = subdivision * meshFactor;
        _InitVoxamApp(width, height, subdivision, meshFactor, volume, 2, restartId);
    }
    static void update(const Settings& s) {
        _UpdateVoxamApp(s.loads.count(), s.loads.data(), s.supports.count(), s.supports.data(),
                        s.volumeFraction, s.passive.data(), static_cast<int>(s.loadCases.size()),
                        s.loadCases.data(), s.blob.data());
    }
    Result iterate(Kind kind = PLAIN, float penalty = 3.0F, int length = 40) const {
        const int cells = nelx * nely;
        Guarded<char> text(std::max(length, 0));
        Guarded<float> picture(cells * refinement * refinement);
        Guarded<float> times(8);
        Guarded<double> change(1);
        Guarded<int> mask(cells);
        auto* stat = reinterpret_cast<RuntimeStat*>(times.data());
        const double compliance =
            kind == PLAIN ? _IterateVoxamApp(length, text.data(), picture.data(), change.data(),
                                             stat, penalty)
                          : _IterateVoxamAppWithBlob(length, text.data(), picture.data(),
                                                     change.data(), stat, mask.data(), penalty);
        const std::vector<char> written = text.take();
        const auto end = std::find(written.begin(), written.end(), '\0');
        EXPECT_EQ(end == written.end(), length < 1);
        Result result = {compliance, std::string(written.begin(), end), picture.take(), mask.take(),
                         change.take()[0]};
        if (!result.text.empty()) {
            EXPECT_TRUE(untouched(result.picture) && untouched(times.take()));
        } else if (length > 1) {
            const auto t = times.take();  // in the order of RuntimeStat
            for (const float time : t) EXPECT_GE(time, 0.0F);
            EXPECT_GE(t[0] + 1e-3F, t[1] + t[2] + t[6] + t[7]);
            EXPECT_GE(t[2] + 1e-3F, t[3] + t[4] + t[5]);
            for (const float v : result.picture) EXPECT_TRUE(std::isfinite(v));
        }
        return result;
    }
    void expectGood(const Settings& settings, int iterations = 3) const {
        update(settings);
        for (int i = 0; i < iterations; ++i) {
            const Result result = iterate();
            EXPECT_EQ(result.text, "");
            EXPECT_GT(result.compliance, 0.0);
            EXPECT_TRUE(result.change >= 0 && result.change <= 1);
            for (const float v : result.picture) EXPECT_TRUE(v > -1e-6 && v < 1 + 1e-6) << v;
        }
    }
};

using Change = std::function<void(Settings&)>;

TEST(AppExportTest, PrintsTheBannerOnce) {
    EXPECT_EQ(FirstAppCalls::output, "VoxamApp386 lib version 1.1.2\n");
}

TEST(AppExportTest, TextsTellWhatIsWrongUntilTheNextUpdate) {
    const Settings good = test::cantilever(5, 4);
    Host host;
    host.init(5, 4);
    for (const auto& [spoil, text] : std::initializer_list<std::pair<Change, std::string>>{
             {[](Settings& s) { s.loads.add(6, 0, 1); }, UNSOLVABLE},
             {[](Settings& s) { s.supports.add(0, -1, 0); }, UNSOLVABLE},
             {[](Settings& s) { s.loads.add(1, 1, 1, 0, 2); }, UNSOLVABLE},  // no such case
             {[](Settings& s) { s.supports = {}; }, "Change load"},          // one of the two
             {[](Settings& s) { s.loads.add(5, 0, 1e9F); }, NOT_HELD},
             {[](Settings& s) { s.loads = test::Records().add(0, 2, 3, 3); }, NO_WORK},
             {[](Settings& s) { s.loads = {}; }, NO_WORK},
             {[](Settings& s) {
                  s.loadCases = {1, -1, 2};
              },
              NO_WORK}}) {  // the load is in case 0
        host.expectGood(good);
        const double last = host.iterate().compliance;
        Settings bad = good;
        spoil(bad);
        Host::update(bad);
        for (const Kind kind : {PLAIN, WITH_BLOB, PLAIN}) {
            const Result result = host.iterate(kind);
            EXPECT_EQ(result.text.substr(0, bad.supports.count() > 0 ? 40 : 11), text);
            EXPECT_EQ(result.compliance, result.text == UNSOLVABLE ? last : -1.0);
            EXPECT_EQ(result.change, Guarded<double>::UNTOUCHED);
            EXPECT_EQ(untouched(result.mask), kind == PLAIN);
        }
    }
    host.expectGood(good);
}

TEST(AppExportTest, PenaltyHoldsFromItsCallOn) {
    Host host;
    double compliance[2];
    for (const int i : {0, 1}) {
        host.init(3, 2);
        Host::update(test::cantilever(3, 2));
        compliance[i] = host.iterate(i == 0 ? PLAIN : WITH_BLOB, i == 0 ? 1.0F : 3.0F).compliance;
    }
    const double expected = (0.01 + 0.99 * 0.5) / (0.01 + 0.99 * 0.125);
    EXPECT_NEAR(compliance[1] / compliance[0], expected, 1e-6);
}

TEST(AppExportTest, TextsAreCutToTheBuffer) {
    Host host;
    host.init(2, 2);
    Settings settings = test::cantilever(2, 2);
    for (const std::string& text : {std::string(), NO_WORK, NO_OPTIMISER}) {
        settings.loads = text.empty() ? settings.loads : test::Records();
        Host::update(settings);
        if (text == NO_OPTIMISER) _DestroyVoxamApp();
        for (int length = -1; length <= 40; ++length) {
            const std::string cut = text.substr(0, static_cast<size_t>(std::max(length - 1, 0)));
            EXPECT_EQ(host.iterate(PLAIN, 3, length).text, cut);
            EXPECT_EQ(host.iterate(WITH_BLOB, 3, length).text, cut);
        }
    }
}

TEST(AppExportTest, PictureIsRowByRowAndRefined) {
    for (const int n : {1, 2, 3}) {
        Host host;
        host.init(5, 3, n, n);
        Settings settings = test::cantilever(5, 3);
        settings.passive = {1, 1, 1, 1, 2, 3, 0, 1, 0};  // void, solid, solid
        host.expectGood(settings, 25);
        const Result result = host.iterate();
        for (const auto& [x, y, value] : {std::tuple{1, 2, 1.0}, {3, 0, 0.0}, {1, 0, 0.0}}) {
            const int row = y * n * n + n * n / 2;  // in the middle of the element
            const int column = x * n * n + n * n / 2;
            EXPECT_NEAR(result.picture[static_cast<size_t>(row * 5 * n * n + column)], value, 0.05);
        }
    }
}

TEST(AppExportTest, CreateKeepsOrReplacesTheOptimiser) {
    Host host;
    std::vector<Result> first;
    std::vector<Result> later;
    for (const bool interrupted : {false, true}) {
        _DestroyVoxamApp();
        host.init(6, 4, 2, 2, 0.5F, 7);
        Host::update(test::cantilever(6, 4));
        first.push_back(host.iterate());
        for (int i = 0; i < 9; ++i) host.iterate();
        if (interrupted) _InitVoxamApp(6, 4, 3, 1, 0.5F, 0, 7);  // keeps also the picture's size
        later.push_back(host.iterate());
    }
    EXPECT_EQ(first[0].picture, first[1].picture);
    EXPECT_LT(later[0].compliance, 0.7 * first[0].compliance);
    EXPECT_EQ(later[0].compliance, later[1].compliance);  // the design is kept,
    EXPECT_NE(later[0].picture, later[1].picture);        // and the iteration counts from 0

    _InitVoxamApp(6, 4, 2, 2, 0.9F, 2, 7);
    double material = 0.0;
    for (const float v : host.iterate().picture) material += (1 - v) / static_cast<double>(24 * 16);
    EXPECT_GT(material, 0.7);
    host.init(6, 4, 1, 3, 0.4F, 8);
    EXPECT_EQ(host.iterate().text, NO_WORK);  // nothing was sent to the new one
    host.init(6, 5, 1, 2, 0.4F, 8);
    EXPECT_EQ(host.iterate().text, NO_WORK);
    for (const auto& [width, volume] : {std::pair{1 << 30, 0.5F}, {6, NAN}, {-1, 0.5F}}) {
        _InitVoxamApp(width, 4, 2, 2, volume, 1, 9);  // cannot be built: there is none afterwards
        EXPECT_EQ(host.iterate().text, NO_OPTIMISER);
    }
}

TEST(AppExportTest, AnyOrderOfCallsAndNullPointersAreHarmless) {
    const Settings s = test::cantilever(4, 3);
    for (const bool alive : {false, true}) {
        Host host{4, 3};
        _DestroyVoxamApp();
        _DestroyVoxamApp();
        if (alive) host.init(4, 3);
        _UpdateVoxamApp(5, nullptr, 5, nullptr, 0.5F, nullptr, 5, nullptr, nullptr);
        for (const Kind kind : {PLAIN, WITH_BLOB}) {
            const Result result = host.iterate(kind);
            EXPECT_EQ(result.compliance, -1.0);
            EXPECT_EQ(result.text, alive ? NO_WORK : NO_OPTIMISER);
            EXPECT_EQ(untouched(result.mask), kind == PLAIN || !alive);
        }
        _UpdateVoxamApp(1, s.loads.data(), s.supports.count(), s.supports.data(), 0.5F, nullptr, 1,
                        s.loadCases.data(), nullptr);
        const double a = _IterateVoxamApp(9, nullptr, nullptr, nullptr, nullptr, 3);
        const double b =
            _IterateVoxamAppWithBlob(9, nullptr, nullptr, nullptr, nullptr, nullptr, 3);
        EXPECT_TRUE(alive ? a > 0 && b > 0 : a == -1 && b == -1);
        if (alive) host.expectGood(s);
    }
}

TEST(AppExportTest, SymmetricProblemsGiveSymmetricPictures) {
    Settings bridge;
    bridge.supports.add(0, 6, 0).add(0, 6, 1).add(12, 6, 0).add(12, 6, 1);
    bridge.loads.add(6, 0, 0, 1).add(3, 0, 0, 0.5F).add(9, 0, 0, 0.5F);
    Host host;
    for (const bool leftToRight : {false, true}) {
        host.init(12, 6);
        Host::update(leftToRight ? bridge : test::cantilever(12, 6));
        for (int i = 0; i < 15; ++i) {
            const auto picture = host.iterate().picture;
            for (size_t cell = 0; cell < 72; ++cell) {
                const size_t column = cell % 12;
                const size_t mirrored =
                    leftToRight ? cell - column + 11 - column : (5 - cell / 12) * 12 + column;
                EXPECT_NEAR(picture[cell], picture[mirrored], 1e-5);
            }
        }
    }
}

TEST(AppExportTest, PictureIsEmptyWhereTheBlobWas) {
    Host host;
    host.init(10, 8);
    Settings settings = test::cantilever(10, 8);
    settings.blob = {6, 4, 3, 5, 3, 4, 4, 5, 4, 6, 3, 6, 4};
    Host::update(settings);
    std::vector<int> before(80);
    for (const size_t cell : {34, 35, 44, 45, 36, 46}) before[cell] = 1;
    const std::vector<int> start = before;
    for (int i = 0; i < 12; ++i) {
        const Result result = host.iterate(WITH_BLOB);
        for (size_t cell = 0; cell < 80; ++cell) {
            EXPECT_EQ(result.picture[cell] == 1.0F, before[cell] == 1) << i << " " << cell;
        }
        before = result.mask;
        EXPECT_EQ(std::count(before.begin(), before.end(), 1), 6);
    }
    EXPECT_NE(before, start);
}

TEST(AppExportTest, BadNumbersEndAndTheNextGoodUpdateContinues) {
    const Settings good = test::cantilever(5, 4);
    Host host;
    host.init(5, 4, 2, 2);
    for (const float bad : {NAN, INFINITY, -INFINITY, 3e38F, -3e38F, 1e-40F, 0.0F, -2.5F}) {
        for (const Change& spoil :
             std::initializer_list<Change>{[bad](Settings& s) { s.loads.add(1, 1, bad, 1); },
                                           [bad](Settings& s) { s.loads.add(bad, 1, 1, 1); },
                                           [bad](Settings& s) { s.loads.add(1, 1, 1, 1, bad); },
                                           [bad](Settings& s) { s.supports.add(1, bad, 1); },
                                           [bad](Settings& s) { s.supports.add(1, 1, bad); },
                                           [bad](Settings& s) { s.volumeFraction = bad; }}) {
            Settings settings = good;
            spoil(settings);
            for (const float penalty : {3.0F, bad}) {
                Host::update(settings);
                for (const Kind kind : {PLAIN, WITH_BLOB, PLAIN}) host.iterate(kind, penalty);
                host.expectGood(good, 2);
            }
        }
    }
}

// Whatever a host does, every call ends, writes only where it may, and gives a finite picture or
// one of the texts. Game calls come in between.
TEST(AppExportTest, RandomCallsInAnyOrder) {
    test::Random random;
    Host host;
    bool alive = false;
    int lastId = 0;
    const auto any = [&random](std::initializer_list<float> values) {
        return std::data(values)[random.below(static_cast<unsigned>(values.size()))];
    };
    const auto upTo = [&random](int limit) {
        return static_cast<int>(random.below(static_cast<unsigned>(limit) + 1));
    };
    const auto sizeUpTo = [&upTo](int limit) { return upTo(29) == 0 ? 0 : 1 + upTo(limit - 1); };
    const auto addRecords = [&](test::Records& records) {
        for (int i = upTo(3); i > 0; --i) {
            const int outside = upTo(19) == 0;
            records.add(static_cast<float>(upTo(host.nelx) - outside),
                        static_cast<float>(upTo(host.nely) + outside), any({0, 1, -0.5F}),
                        any({0, 1, -1}), any({0, 1}));
        }
    };
    const auto addCells = [&](std::vector<short>& cells, int count) {
        for (int i = 0; i < 2 * count; ++i) {
            cells.push_back(static_cast<short>(upTo((i % 2 ? host.nely : host.nelx) - 1)));
        }
    };
    _DestroyVoxamApp();
    for (int step = 0; step < 30000; ++step) {
        const int action = upTo(39);
        Settings settings = test::cantilever(host.nelx, host.nely);
        if (action < 2) {
            const Host before = host;
            const bool same = upTo(2) == 0;
            const float volume = any({0.1F, 0.3F, 0.4F, 0.5F, 0.6F, 0.9F, 1.0F, 0.0F, -0.5F, NAN});
            const int id = upTo(1);
            host.init(same ? host.nelx : sizeUpTo(6), same ? host.nely : sizeUpTo(5), sizeUpTo(3),
                      sizeUpTo(3), volume, id);
            if (alive && id == lastId && host.nelx == before.nelx && host.nely == before.nely) {
                host = before;
            } else {
                alive = std::isfinite(volume);
            }
            lastId = id;
        } else if (action < 8) {
            addRecords(settings.loads);
            addRecords(settings.supports);
            settings.volumeFraction = any({0.1F, 0.4F, 0.5F, 0.8F, 1.0F, 0.0F, -1.0F, NAN});
            settings.loadCases = {static_cast<char>(upTo(4) / 3), static_cast<char>(upTo(3) - 1)};
            if (host.nelx > 0 && host.nely > 0 && upTo(1) == 0) {
                settings.passive = {static_cast<short>(upTo(2)), static_cast<short>(upTo(2)), 1};
                addCells(settings.passive, settings.passive[0] + settings.passive[1] + 1);
                settings.blob = {static_cast<short>(upTo(12))};
                addCells(settings.blob, settings.blob[0]);
            }
            Host::update(settings);
        } else if (action == 8 && upTo(2) == 0) {
            _DestroyVoxamApp();
            alive = false;
        } else if (action < 12) {
            addRecords(settings.loads);
            _InitVoxamGame(host.nelx, host.nely, 1, 1, settings.loads.count(),
                           settings.loads.data(), settings.supports.count(),
                           settings.supports.data(), 2);
            const std::vector<float> densities(30, any({0, 0.5F, 1, NAN}));
            Guarded<float> values(host.nelx * host.nely);
            for (int i = upTo(3); i > 0; --i) _SolveVoxamGame(densities.data(), values.data());
            values.take();
            if (upTo(1) == 0) _DestroyVoxamGame();
        } else {
            const auto kind = static_cast<Kind>(upTo(1));
            const Result result = host.iterate(kind, any({3, 3, 3, 1, 2.5F, 0, NAN}));
            EXPECT_EQ(result.text == NO_OPTIMISER, !alive);
            EXPECT_TRUE(!alive || result.text.empty() || result.text == UNSOLVABLE ||
                        result.text == NOT_HELD || result.text == NO_WORK);
        }
        ASSERT_FALSE(HasFailure()) << step;
    }
    _DestroyVoxamApp();
    _DestroyVoxamGame();
}

}  // namespace
