// The analysis through its exported functions.
#include <climits>
#include <limits>

#include "support/analysis_host.h"
#include "support/exact_plate.h"

namespace {

using test::AnalysisHost, test::Quad, test::Records;

constexpr double INF = std::numeric_limits<double>::infinity();

Records clampedLeftEdge(unsigned nely) {
    Records supports;
    for (unsigned i = 0; i < 2 * (nely + 1); ++i) {
        supports.add(0, static_cast<float>(i / 2), static_cast<float>(i % 2));
    }
    return supports;
}

// Largest difference, over the largest value.
double relativeError(const double* values, const std::vector<Quad>& exact, double scale = 1.0) {
    double error = 0.0;
    double largest = 0.0;
    for (std::size_t i = 0; i < exact.size(); ++i) {
        const double difference = std::fabs(static_cast<double>(values[i] - exact[i] * scale));
        if (!(difference <= error)) error = std::isnan(difference) ? INF : difference;
        largest = std::max(largest, std::fabs(static_cast<double>(exact[i] * scale)));
    }
    return error / largest;
}

// Solid cantilevers with a unit force at the middle of the free edge. Where the band is small the
// reference is computed here. The other constants were printed by the same reference, whose time
// grows with the square of nely; that of 600 x 200 with long double, which costs it three digits.
TEST(AnalysisExportTest, SlenderPlatesAreExact) {
    constexpr struct {
        unsigned nelx, nely;
        double compliance;
    } plates[] = {{60, 20, 0},
                  {100, 10, 0},
                  {400, 8, 0},
                  {900, 1, 0},
                  {1000, 10, 0},
                  {200, 20, 4020.1181690685153},
                  {400, 40, 4024.612166664052},
                  {600, 60, 4025.6578060615434},
                  {900, 90, 4026.2806697976016},
                  {600, 200, 119.53365196935512}};
    for (const auto& [nelx, nely, known] : plates) {
        SCOPED_TRACE(std::to_string(nelx) + "x" + std::to_string(nely));
        const auto length = static_cast<float>(nelx);
        const auto middle = static_cast<float>(nely / 2);
        const Records loads = Records().add(length, middle, 0, 1);
        const AnalysisHost host(nelx, nely, loads, clampedLeftEdge(nely));
        const auto result = host.solve(host.solid());
        ASSERT_EQ(result.status, VOXAM_ANALYSIS_SOLVED) << result.text;
        double exact = known;
        if (known == 0) {
            const test::ExactPlate plate(nelx, nely, host.solid(), clampedLeftEdge(nely));
            const auto u = plate.solve(loads, nely, 0);
            EXPECT_LT(relativeError(result.displacements.data(), u), 1e-12);
            exact = static_cast<double>(u[2 * (nelx * (nely + 1) + nely / 2) + 1]);
        }
        EXPECT_NEAR(result.compliances[0], exact, 1e-10 * exact);
    }
}

// Moduli over nine powers of ten, two load cases, forces of all sizes.
TEST(AnalysisExportTest, GreyPlatesAgreeWithTheReferenceInAllResults) {
    constexpr unsigned nelx = 14;
    constexpr unsigned nely = 9;
    const Records supports = test::slidingLeftEdge(nely);
    test::Random random;
    std::vector<double> moduli(nelx * nely);
    for (double& modulus : moduli) modulus = std::pow(10.0, random.number(-9, 0));
    const test::ExactPlate plate(nelx, nely, moduli, supports);
    for (const float scale : {1.0F, 1e-30F, 1e30F}) {
        Records loads;
        for (const float loadCase : {0.0F, 1.0F, 0.0F}) {
            const auto x = static_cast<float>(random.below(nelx + 1));
            const auto y = static_cast<float>(random.below(nely + 1));
            loads.add(x, y, 0.3F * scale, scale, loadCase);
        }
        loads.add(0, 3, 7 * scale, 0, 1);  // into a support
        const auto result = AnalysisHost(nelx, nely, loads, supports, 2).solve(moduli);
        ASSERT_EQ(result.status, VOXAM_ANALYSIS_SOLVED);
        for (const unsigned k : {0U, 1U}) {
            const auto u = plate.solve(loads, nely, static_cast<float>(k));
            const double* const displacements = result.displacements.data() + k * u.size();
            EXPECT_LT(relativeError(displacements, u), 1e-10);
            std::vector<Quad> energies;
            std::vector<Quad> stresses;
            for (unsigned e = 0; e < moduli.size(); ++e) {
                const auto dof = test::dofsOfElement(e / nely, e % nely, nely);
                Quad energy = 0;
                for (std::size_t i = 0; i < 64; ++i) {
                    energy += u[dof[i / 8]] * test::wholeStiffness(i / 8, i % 8) * u[dof[i % 8]];
                }
                energies.push_back(moduli[e] * energy * 10 / 728);
                const auto mean = [&](std::size_t a, std::size_t b, std::size_t c, std::size_t d) {
                    return (u[dof[a]] + u[dof[b]] - u[dof[c]] - u[dof[d]]) / 2;
                };
                const Quad strainX = mean(2, 4, 0, 6);
                const Quad strainY = mean(5, 7, 1, 3);
                const Quad shear = mean(4, 6, 0, 2) + mean(3, 5, 1, 7);
                stresses.push_back(moduli[e] * (strainX * 10 + strainY * 3) * 10 / 91);
                stresses.push_back(moduli[e] * (strainX * 3 + strainY * 10) * 10 / 91);
                stresses.push_back(moduli[e] * shear * 5 / 13);
            }
            EXPECT_LT(relativeError(&result.energies[k * energies.size()], energies), 1e-10);
            EXPECT_LT(relativeError(&result.stresses[k * stresses.size()], stresses), 1e-10);
        }
    }
}

// Also the first one, which a plate that is held at its left edge does not use.
TEST(AnalysisExportTest, EveryDegreeOfFreedomCounts) {
    constexpr unsigned nelx = 3;
    constexpr unsigned nely = 2;
    constexpr unsigned dofs = 2 * (nelx + 1) * (nely + 1);
    for (unsigned corner : {0U, nelx}) {
        Records supports;
        for (unsigned i = 0; i < 2 * (nely + 1); ++i) {
            supports.add(static_cast<float>(corner), static_cast<float>(i / 2),
                         static_cast<float>(i % 2));
        }
        for (unsigned dof = 0; dof < dofs; ++dof) {
            const unsigned node = dof / 2;
            const auto x = static_cast<float>(node / (nely + 1));
            const auto y = static_cast<float>(node % (nely + 1));
            const Records loads = Records().add(x, y, dof % 2 == 0, dof % 2 == 1);
            const AnalysisHost host(nelx, nely, loads, supports);
            const auto result = host.solve(host.solid());
            ASSERT_EQ(result.status, VOXAM_ANALYSIS_SOLVED) << result.text;
            if (node / (nely + 1) == corner) {
                EXPECT_EQ(result.compliances[0], 0.0) << dof;
                continue;
            }
            const auto u =
                test::ExactPlate(nelx, nely, host.solid(), supports).solve(loads, nely, 0);
            EXPECT_LT(relativeError(result.displacements.data(), u), 1e-12) << dof;
            EXPECT_NEAR(result.compliances[0], static_cast<double>(u[dof]),
                        1e-12 * result.compliances[0]);
        }
    }
}

TEST(AnalysisExportTest, AStretchedPlateHasOneStress) {
    const AnalysisHost host(7, 5, test::tension(7, 5, 3), test::slidingLeftEdge(5));
    auto moduli = host.solid();
    for (double& modulus : moduli) modulus = 210e3;
    const auto result = host.solve(moduli);
    ASSERT_EQ(result.status, VOXAM_ANALYSIS_SOLVED);
    EXPECT_NEAR(result.compliances[0], 9 * 35 / 210e3, 1e-15);
    for (std::size_t i = 0; i < result.stresses.size(); ++i) {
        EXPECT_NEAR(result.stresses[i], i % 3 == 0 ? 3 : 0, 1e-13);
    }
    for (double& modulus : moduli) modulus = 1e-308;  // softer than a compliance can be written
    EXPECT_EQ(host.solve(moduli).compliances[0], std::numeric_limits<double>::infinity());
}

TEST(AnalysisExportTest, SlenderBeamsObeyBeamTheoryAndReciprocity) {
    const unsigned nelx = 500;
    const unsigned nely = 10;
    const Records loads = Records().add(500, 5, 0, 1).add(200, 0, 0.5F, -0.25F, 1);
    const auto result =
        AnalysisHost(nelx, nely, loads, clampedLeftEdge(nely), 2).solve(std::vector(5000, 1.0));
    ASSERT_EQ(result.status, VOXAM_ANALYSIS_SOLVED);
    const std::size_t tip = 2 * (500 * 11 + 5) + 1;
    const std::size_t other = 2 * (200 * 11);
    const std::size_t ndof = 2 * 501 * 11;
    // Euler and Bernoulli's deflection and that by shear; the elements lock a little.
    const double deflection = 500.0 * 500 * 500 / (3 * 1000 / 12.0) + 500 * 1.2 / (10 / 2.6);
    EXPECT_NEAR(result.displacements[tip], deflection, 0.007 * deflection);
    EXPECT_NEAR(result.displacements[ndof + tip],
                0.5 * result.displacements[other] - 0.25 * result.displacements[other + 1],
                1e-14 * deflection);
    // Stress by bending, M y / I, half way.
    const std::size_t middle = 3 * (250 * 10 + 0);
    EXPECT_NEAR(result.stresses[middle], 249.5 * 4.5 * 12 / 1000, 0.07);
}

// A column for each character of a row. In the plate # is material, in the mask of what is loose as
// well; supports and loads are records.
struct Drawing {
    const char* what;
    std::vector<std::string> rows;
    Records loads;
    Records supports;
    int status;
    std::vector<std::string> loose;
};

Records wall(int nely) { return clampedLeftEdge(static_cast<unsigned>(nely)); }

const Drawing DRAWINGS[] = {
    {"whole", {"###", "#.#"}, Records().add(3, 2, 1), wall(2), 0, {"...", "..."}},
    {"a part on its own",
     {"##.", "...", "..#"},
     Records().add(2, 0, 1),
     wall(3),
     1,
     {"...", "...", "..#"}},
    {"a part on its own, loaded",
     {"##.", "..#"},
     Records().add(3, 2, 1),
     wall(2),
     3,
     {"...", "..#"}},
    {"a part that hangs by a corner",
     {"##.", "..#"},
     Records().add(1, 0, 1),
     wall(2),
     1,
     {"...", "..#"}},
    {"a load on that corner, which is held",
     {"##.", "..#"},
     Records().add(2, 1, 1),
     wall(2),
     1,
     {"...", "..#"}},
    {"a part between two corners that are held",
     {"#.#", ".#."},
     Records().add(2, 2, 1),
     Records(wall(2)).add(3, 0, 0).add(3, 0, 1).add(3, 1, 0),
     0,
     {"...", "..."}},
    {"a part that a single roller holds at a corner",
     {"##.", "..#"},
     Records().add(3, 2, 1),
     Records(wall(2)).add(3, 2, 0),
     0,
     {"...", "..."}},
    {"a roller in line with the corner holds nothing",
     {"##.", "..#"},
     Records().add(3, 2, 1),
     Records(wall(2)).add(3, 1, 0),
     3,
     {"...", "..#"}},
    {"a strut that may turn, and what it alone holds",
     {"#..", ".#.", "..."},
     Records().add(1, 0, 1),
     Records().add(2, 1, 0).add(0, 0, 1).add(1, 0, 1),
     3,
     {"#..", ".#.", "..."}},
    {"no support", {"##", "##"}, Records().add(1, 0, 1), Records(), 3, {"##", "##"}},
    {"no support, no load", {"##", "##"}, Records(), Records(), 1, {"##", "##"}},
    {"free to slide across the force",
     {"##"},
     Records().add(1, 0, 0, 1),
     Records().add(0, 0, 1).add(2, 0, 1),
     3,
     {"##"}},
    {"a load on void", {"#.", "#."}, Records().add(2, 1, 1), wall(2), 2, {"..", ".."}},
    {"a load of 0 on void", {"#.", "#."}, Records().add(2, 1, 0, 0), wall(2), 0, {"..", ".."}},
    {"a load on void that is held",
     {"#.", "#."},
     Records().add(2, 1, 1),
     Records(wall(2)).add(2, 1, 0),
     0,
     {"..", ".."}},
    {"nothing", {"..", ".."}, Records(), wall(2), 0, {"..", ".."}},
};

TEST(AnalysisExportTest, MaterialThatCanMoveIsFound) {
    for (const Drawing& drawing : DRAWINGS) {
        SCOPED_TRACE(drawing.what);
        const std::size_t nely = drawing.rows.size();
        const std::size_t nelx = drawing.rows.front().size();
        const AnalysisHost host(static_cast<unsigned>(nelx), static_cast<unsigned>(nely),
                                drawing.loads, drawing.supports);
        auto moduli = host.solid();
        for (std::size_t e = 0; e < moduli.size(); ++e) {
            moduli[e] = drawing.rows[e % nely][e / nely] == '#' ? 2.0 : 0.0;
        }
        const auto result = host.solve(moduli);
        EXPECT_EQ(result.status, drawing.status) << result.text;
        for (std::size_t e = 0; e < moduli.size(); ++e) {
            const bool loose = drawing.loose[e % nely][e / nely] == '#';
            EXPECT_EQ(result.loose[e], loose ? 1 : 0) << e;
            if (result.status > 1 || (moduli[e] > 0 && !loose)) continue;
            EXPECT_EQ(result.energies[e], 0.0);
            EXPECT_EQ(result.stresses[3 * e], 0.0);
        }
    }
}

// Void is no soft material: what is left is the smaller plate, and beyond it nothing moves.
TEST(AnalysisExportTest, VoidLeavesNoTrace) {
    const Records loads = Records().add(6, 2, 0.25F, 1);
    const auto small = AnalysisHost(6, 4, loads, clampedLeftEdge(4)).solve(std::vector(24, 1.0));
    const AnalysisHost host(9, 7, loads, clampedLeftEdge(4));
    auto moduli = host.solid();
    for (std::size_t e = 0; e < moduli.size(); ++e) {
        if (e / 7 >= 6 || e % 7 >= 4) moduli[e] = 0.0;
    }
    const auto first = host.solve(moduli);
    ASSERT_EQ(first.status, VOXAM_ANALYSIS_SOLVED);
    EXPECT_NEAR(first.compliances[0], small.compliances[0], 1e-14 * small.compliances[0]);
    for (std::size_t node = 0; node < 10 * 8; ++node) {
        const double displacement = first.displacements[2 * node];
        EXPECT_EQ(std::isnan(displacement), node / 8 > 6 || node % 8 > 4) << node;
    }
    // The same bits after another design, and from another analysis.
    const AnalysisHost again(9, 7, loads, clampedLeftEdge(4));
    host.solve(host.solid());
    EXPECT_EQ(again.solve(moduli).energies, first.energies);
    EXPECT_EQ(again.solve(moduli).stresses, first.stresses);
}

TEST(AnalysisExportTest, WrongInputGetsAStatusAndAText) {
    const Records loads = test::tension(4, 3, 1);
    const Records supports = test::slidingLeftEdge(3);
    const auto statusOf = [&](const Records& l, const Records& s, unsigned cases = 1) {
        return AnalysisHost(4, 3, l, s, cases).solve(std::vector(12, 1.0)).status;
    };
    EXPECT_EQ(statusOf(loads, supports), VOXAM_ANALYSIS_SOLVED);
    EXPECT_EQ(statusOf(loads, supports, 0), VOXAM_ANALYSIS_INVALID);
    EXPECT_EQ(statusOf(Records(loads).add(5, 0, 1), supports), VOXAM_ANALYSIS_INVALID);
    EXPECT_EQ(statusOf(Records(loads).add(1, 1, NAN), supports), VOXAM_ANALYSIS_INVALID);
    EXPECT_EQ(statusOf(loads, Records(supports).add(0, -1, 0)), VOXAM_ANALYSIS_INVALID);
    EXPECT_EQ(statusOf({}, {}, 0), VOXAM_ANALYSIS_LOOSE_PART);
    const AnalysisHost host(4, 3, loads, supports);
    for (const double wrong : {-1.0, -INF, INF, std::nan("")}) {
        auto moduli = host.solid();
        moduli[7] = wrong;
        EXPECT_EQ(host.solve(moduli).status, VOXAM_ANALYSIS_INVALID);
    }
    // Beyond the digits there are: a plate that hangs by a thread of nothing.
    auto moduli = host.solid();
    for (std::size_t e = 3; e < 6; ++e) moduli[e] = 1e-300;
    EXPECT_EQ(host.solve(moduli).status, VOXAM_ANALYSIS_NOT_CONVERGED);
    for (double& modulus : moduli) modulus = 1e-300;
    EXPECT_NEAR(host.solve(moduli).compliances[0], 12e300, 1e287);

    double compliance = 77;
    char text[8] = "";
    const auto solve = [&](const double* given) {
        return _SolveVoxamAnalysis(given, 8, text, &compliance, nullptr, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(solve(nullptr), VOXAM_ANALYSIS_INVALID);
    EXPECT_STREQ(text, "A modul");
    EXPECT_EQ(_SolveVoxamAnalysis(host.solid().data(), 0, nullptr, nullptr, nullptr, nullptr,
                                  nullptr, nullptr),
              VOXAM_ANALYSIS_SOLVED);
    _DestroyVoxamAnalysis();
    EXPECT_EQ(solve(moduli.data()), VOXAM_ANALYSIS_NONE);
    for (const auto& [nelx, nely, cases] :
         {std::array{INT_MAX, INT_MAX, 1}, {32768, 32768, 1}, {40, 30, INT_MAX}}) {
        _InitVoxamAnalysis(nelx, nely, 0, nullptr, 0, nullptr, cases);
        EXPECT_EQ(solve(moduli.data()), VOXAM_ANALYSIS_OUT_OF_MEMORY);
    }
    for (const auto& [nelx, nely] : {std::pair{0, 0}, {-3, 2}, {4, 0}}) {
        _InitVoxamAnalysis(nelx, nely, 0, nullptr, 0, nullptr, 1);
        EXPECT_EQ(solve(nullptr), VOXAM_ANALYSIS_SOLVED);
        EXPECT_EQ(compliance, 0.0);
    }
    EXPECT_EQ(compliance, 0.0);
}

// CHOLMOD finds the stiffness of this plate not positive definite, and would print it.
TEST(AnalysisExportTest, PrintsNothingAboutModuliThatAreTooFarApart) {
    const AnalysisHost host(40, 20, Records().add(40, 10, 0, 1), clampedLeftEdge(20));
    auto moduli = host.solid();
    for (std::size_t e = 0; e < moduli.size(); ++e) {
        if (e / 60 % 2 == 1) moduli[e] = 1e-17;
    }
    testing::internal::CaptureStdout();
    EXPECT_EQ(host.solve(moduli).status, VOXAM_ANALYSIS_NOT_CONVERGED);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
