#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>

#include "support/export_host.h"

namespace {

using namespace test;  // its host and texts

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
const auto* const FIRST_APP_CALLS = testing::AddGlobalTestEnvironment(new FirstAppCalls);

const float NOT_A_NUMBER = std::nanf("");

using Change = std::function<void(Settings&)>;

TEST(AppExportTest, PrintsTheBannerOnce) {
    EXPECT_EQ(FirstAppCalls::output, "VoxamApp386 lib version " VOXAM_BANNER_VERSION "\n");
}

// What makes a record invalid is tested with the equilibrium.
TEST(AppExportTest, TellsWhatIsWrongUntilTheNextUpdate) {
    const std::pair<std::string, Change> faults[] = {
        {UNSOLVABLE, [](Settings& s) { s.loads.add(6, 0, 1); }},  // outside
        {NOT_HELD, [](Settings& s) { s.loads.add(5, 0, 1e9F); }},
        {NO_WORK, [](Settings& s) { s.loads = Records().add(0, 2, 3, 3); }},  // on a support
        {NO_WORK, [](Settings& s) { s.loads = {}; }},
        {NO_WORK, [](Settings& s) {
             s.loadCases.assign({1, -1, 2});
         }}};
    const Settings good = cantilever(5, 4);
    for (const auto& [text, spoil] : faults) {
        SCOPED_TRACE(text);
        Settings bad = good;
        spoil(bad);
        Host host;
        host.init(5, 4);
        double last = 0.0;  // what is returned before any compliance is known
        for (int round = 0; round < 2; ++round) {
            update(bad);
            for (const Kind kind : {PLAIN, WITH_BLOB, PLAIN}) {
                const Result result = host.iterate(kind);
                EXPECT_EQ(result.text, text);
                EXPECT_EQ(result.compliance, text == UNSOLVABLE ? last : -1.0);
                EXPECT_EQ(result.change, Guarded<double>::UNTOUCHED);
                EXPECT_EQ(untouched(result.mask), kind == PLAIN);
            }
            host.expectGood(good);
            last = host.iterate().compliance;
        }
    }
}

// Which of the two texts it is depends on how round-off falls.
TEST(AppExportTest, APlateThatIsNotHeldGivesAText) {
    Host host;
    host.init(5, 4);
    Settings loose = cantilever(5, 4);
    loose.supports = {};
    update(loose);
    const std::string text = host.iterate().text;
    EXPECT_TRUE(text == UNSOLVABLE || text == NOT_HELD) << text;
}

TEST(AppExportTest, PenaltyHoldsFromItsCallOn) {
    const auto firstCompliance = [](Kind kind, float penalty) {
        Host host;
        host.init(3, 2);
        update(cantilever(3, 2));
        return host.iterate(kind, penalty).compliance;
    };
    const double linear = firstCompliance(PLAIN, 1.0F);
    const double cubic = firstCompliance(WITH_BLOB, 3.0F);
    EXPECT_NEAR(cubic / linear, (0.01 + 0.99 * 0.5) / (0.01 + 0.99 * 0.125), 1e-6);
}

TEST(AppExportTest, TextsAreCutToTheBuffer) {
    Host host;
    host.init(2, 2);
    Settings settings = cantilever(2, 2);
    for (const std::string& text : {std::string(), NO_WORK, NO_OPTIMISER}) {
        if (text == NO_WORK) settings.loads = {};
        update(settings);
        if (text == NO_OPTIMISER) _DestroyVoxamApp();
        for (int length = -1; length <= 40; ++length) {
            const std::string cut =
                text.substr(0, static_cast<std::size_t>(std::max(length - 1, 0)));
            EXPECT_EQ(host.iterate(PLAIN, 3, length).text, cut);
            EXPECT_EQ(host.iterate(WITH_BLOB, 3, length).text, cut);
        }
    }
}

// Ten iterations of a cantilever of 6 x 4 elements, refined by 2 and 2, with the restart number 7.
struct TenIterations : Host {
    Result first;

    TenIterations() {
        _DestroyVoxamApp();
        init(6, 4, 2, 2, 0.5F, 7);
        update(cantilever(6, 4));
        first = iterate();
        for (int i = 0; i < 9; ++i) iterate();
    }
    static double material(const std::vector<float>& picture) {
        double sum = 0.0;
        for (const float v : picture) sum += 1 - v;
        return sum / static_cast<double>(picture.size());
    }
};

TEST(AppExportTest, EqualRunsGiveEqualResults) {
    const TenIterations once;
    TenIterations again;
    EXPECT_EQ(once.first.picture, again.first.picture);
    EXPECT_LT(again.iterate().compliance, 0.7 * again.first.compliance);
}

TEST(AppExportTest, CreatingTheSameAgainKeepsTheDesignAndCountsFromZero) {
    const Result uninterrupted = TenIterations().iterate();
    const TenIterations host;
    _InitVoxamApp(6, 4, 3, 1, 0.5F, 0, 7);  // the refinements and the load cases stay, too
    const Result kept = host.iterate();
    EXPECT_EQ(kept.compliance, uninterrupted.compliance);
    EXPECT_NE(kept.picture, uninterrupted.picture);
}

TEST(AppExportTest, CreatingTheSameAgainTakesTheVolumeThatIsFinite) {
    const Result expected = TenIterations().iterate();
    for (const auto& [given, taken] :
         {std::pair{0.9F, 0.9 * 0.95}, {NOT_A_NUMBER, 0.5}, {INFINITY, 0.5}, {-INFINITY, 0.5}}) {
        const TenIterations host;
        _InitVoxamApp(6, 4, 2, 2, given, 2, 7);
        const Result result = host.iterate();
        EXPECT_EQ(result.compliance, expected.compliance);
        EXPECT_NEAR(TenIterations::material(result.picture), taken, 0.05);
    }
}

TEST(AppExportTest, AnotherSizeOrRestartNumberCreatesAnew) {
    Host host;
    for (const auto& [nelx, nely, id] : {std::tuple{6, 4, 8}, {6, 5, 8}, {7, 5, 8}, {7, 5, 9}}) {
        host.init(nelx, nely, 1, 2, 0.4F, id);
        EXPECT_EQ(host.iterate().text, NO_WORK);  // nothing was sent to it
        update(cantilever(nelx, nely));
        EXPECT_EQ(host.iterate().text, "");
    }
}

// Sizes that cannot be built are tested by themselves.
TEST(AppExportTest, AVolumeThatIsNotFiniteLeavesNoOptimiser) {
    const Host host{6, 4};
    for (const float volume : {NOT_A_NUMBER, INFINITY}) {
        _InitVoxamApp(6, 4, 1, 1, 0.5F, 1, 9);
        _InitVoxamApp(6, 4, 1, 1, volume, 1, 10);
        EXPECT_EQ(host.iterate().text, NO_OPTIMISER);
    }
}

TEST(AppExportTest, WithoutAnOptimiserNothingHappens) {
    const Host host{4, 3};
    for (int i = 0; i < 2; ++i) _DestroyVoxamApp();
    update(cantilever(4, 3));
    for (const Kind kind : {PLAIN, WITH_BLOB}) {
        const Result result = host.iterate(kind);
        EXPECT_EQ(result.compliance, -1.0);
        EXPECT_EQ(result.text, NO_OPTIMISER);
        EXPECT_TRUE(untouched(result.mask));
    }
    EXPECT_EQ(_IterateVoxamApp(9, nullptr, nullptr, nullptr, nullptr, 3), -1.0);
    EXPECT_EQ(_IterateVoxamAppWithBlob(9, nullptr, nullptr, nullptr, nullptr, nullptr, 3), -1.0);
}

TEST(AppExportTest, NullSettingsMeanNoneAndNullBuffersAreNotWritten) {
    Host host;
    host.init(4, 3);
    _UpdateVoxamApp(5, nullptr, 5, nullptr, 0.5F, nullptr, 5, nullptr, nullptr);
    for (const Kind kind : {PLAIN, WITH_BLOB}) EXPECT_EQ(host.iterate(kind).text, NO_WORK);
    update(cantilever(4, 3));
    EXPECT_GT(_IterateVoxamApp(9, nullptr, nullptr, nullptr, nullptr, 3), 0.0);
    EXPECT_GT(_IterateVoxamAppWithBlob(9, nullptr, nullptr, nullptr, nullptr, nullptr, 3), 0.0);
}

TEST(AppExportTest, PictureIsEmptyWhereTheBlobWas) {
    Host host;
    host.init(10, 8);
    Settings settings = cantilever(10, 8);
    settings.blob = {6, 4, 3, 5, 3, 4, 4, 5, 4, 6, 3, 6, 4};
    update(settings);
    std::vector<int> before(80);
    for (const std::size_t cell : {34, 35, 44, 45, 36, 46}) before[cell] = 1;
    const std::vector<int> start = before;
    for (int i = 0; i < 12; ++i) {
        const Result result = host.iterate(WITH_BLOB);
        for (std::size_t cell = 0; cell < 80; ++cell) {
            EXPECT_EQ(result.picture[cell] == 1.0F, before[cell] == 1) << i << " " << cell;
        }
        before = result.mask;
        EXPECT_EQ(std::count(before.begin(), before.end(), 1), 6);
    }
    EXPECT_NE(before, start);
}

}  // namespace
