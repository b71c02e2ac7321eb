// The optimiser by the book: dense matrices, each formula once, nothing shared with the library.
// For small plates and settings without faults.
#pragma once

#include <algorithm>
#include <limits>
#include <set>

#include "support/plates.h"
#include "support/textbook.h"

namespace test {

class ReferenceOptimiser {
public:
    using Vector = std::vector<double>;

    struct Step {
        double compliance;
        double change;
        Vector picture;  ///< row by row
    };

    ReferenceOptimiser(unsigned nelx, unsigned nely, unsigned subdivision, unsigned meshFactor,
                       float volumeFraction)
        : nelx(nelx),
          nely(nely),
          n(subdivision),
          m(meshFactor),
          volume(volumeFraction),
          rho(std::size_t{nelx} * nely * n * n, volumeFraction),
          rhoPhys(rho),
          fine(coneWeights(nelx * n, nely * n, 3.0)),
          fineSums(sharedSums(fine)),
          coarse(coneWeights(nelx, nely, 3.0 / n)),
          coarseSums(sharedSums(coarse)),
          mesh(coneWeights(nelx * n * m, nely * n * m, m)),
          meshSums(rowSums(mesh).values),
          blobWeights(coneWeights(nelx, nely, 1.2F)),
          blobSums(rowSums(blobWeights).values) {}

    void update(const Settings& given) {
        settings = given;
        changed = true;
        kinds.assign(std::size_t{nelx} * nely, 0);
        mask.assign(std::size_t{nelx} * nely, 0.0);
        const short* cell = settings.passive.data() + 3;
        for (const int kind : {0, 1, 2}) {
            for (int k = 0; k < settings.passive[kind]; ++k, cell += 2) {
                kinds[cell[0] * nely + cell[1]] |= 1 << kind;
            }
        }
        for (int k = 0; k < settings.blob[0]; ++k) {
            mask[settings.blob[2 * k + 1] * nely + settings.blob[2 * k + 2]] = 1.0;
        }
        for (std::size_t e = 0; e < rho.size(); ++e) rhoPhys[e] = (1 - maskOf(e)) * rho[e];
        interface = interfaceOf(mask);
        const double area = settings.blob[0];
        limit = largestLimit = brokenLimit = 2 * std::round(interfaceOfDisc(area) * 0.2 / 2);
        moved = 0.0;
        steps = 0;
        before = beforeThat = 1e10;
    }

    Step iterate(double penalty) {
        ++iteration;
        volume = std::clamp<double>(settings.volumeFraction, volume * 0.95F, volume * 1.05F);
        if (changed)
            floor = 0.01F;
        else if (iteration % 7 == 0)
            floor = std::max<double>(1e-7F, floor / 4);
        changed = false;

        Vector dc(rho.size(), 0.0);
        Vector dv(rho.size(), 0.0);
        blobSensitivity.assign(mask.size(), 0.0);
        compliance = 0.0;
        const Matrix U = displacements(penalty);
        for (const unsigned lc : casesInUse()) addSensitivities(U, lc, penalty, dc, dv);
        filterSensitivities(dc);

        const Vector old = rho;
        updateDesign(dc, dv);
        double change = 0.0;
        for (std::size_t e = 0; e < rho.size(); ++e) {
            change = std::max(change, std::fabs(rho[e] - old[e]));
            rhoPhys[e] = maskOf(e) == 1.0 ? 0.0 : rho[e];
        }
        return {compliance, change, picture()};
    }

    /// The same, and then a step of the blob.
    Step iterateWithBlob(double penalty) {
        Step step = iterate(penalty);
        if (steps >= 2) adaptLimit();
        moveBlob();
        interface = interfaceOf(mask);
        ++steps;
        return step;
    }

    /// The blob, row by row.
    std::vector<int> blob() const {
        std::vector<int> rows;
        for (unsigned y = 0; y < nely; ++y) {
            for (unsigned x = 0; x < nelx; ++x) rows.push_back(mask[x * nely + y] == 1.0);
        }
        return rows;
    }

private:
    // The formula leaves the grid when the mesh is coarser than the subdivision.
    std::size_t coarseCell(std::size_t e) const { return e / (n * m * nely) * nely + e / n % nely; }
    double maskOf(std::size_t e) const {
        return coarseCell(e) < mask.size() ? mask[coarseCell(e)] : 0.0;
    }
    int kindOf(std::size_t e) const {
        return coarseCell(e) < kinds.size() ? kinds[coarseCell(e)] : 0;
    }
    bool hasPassiveCells() const {
        return settings.passive[0] + settings.passive[1] + settings.passive[2] > 0;
    }
    std::set<unsigned> casesInUse() const {
        return {settings.loadCases.begin(), settings.loadCases.end()};
    }

    // The first cells, as many as there are elements, get the largest sum.
    Vector sharedSums(const Matrix& weights) const {
        Vector sums = rowSums(weights).values;
        const auto end = sums.begin() + nelx * nely;
        std::fill(sums.begin(), end, *std::max_element(sums.begin(), end));
        return sums;
    }

    static Vector filtered(const Matrix& weights, const Vector& sums, const Vector& field) {
        Matrix x(weights.rows, 1);
        x.values = field;
        Vector result = product(weights, x).values;
        for (std::size_t i = 0; i < result.size(); ++i) result[i] /= sums[i];
        return result;
    }

    Matrix displacements(double penalty) const {
        Matrix K = plateStiffness(nelx, nely, n, [&](unsigned e) {
            const double least = kindOf(e) & 1 ? 1e-9 : floor;
            return least + (1 - least) * std::pow(rhoPhys[e], penalty);
        });
        const auto& supports = settings.supports.floats;
        for (std::size_t i = 0; i < supports.size(); i += 5) {
            const auto node = static_cast<unsigned>(supports[i] * (nely + 1) + supports[i + 1]);
            const unsigned dof = 2 * node + static_cast<unsigned>(supports[i + 2]);
            K(dof, dof) = 1e8;
        }
        const auto& loads = settings.loads.floats;
        Matrix F(K.rows, *casesInUse().rbegin() + 1);
        for (std::size_t i = 0; i < loads.size(); i += 5) {
            const auto node = static_cast<unsigned>(loads[i] * (nely + 1) + loads[i + 1]);
            const auto lc = static_cast<unsigned>(loads[i + 4]);
            if (!casesInUse().contains(lc)) continue;
            F(2 * node, lc) += loads[i + 2];
            F(2 * node + 1, lc) += loads[i + 3];
        }
        return gaussSolve(K, F);
    }

    void addSensitivities(const Matrix& U, unsigned lc, double penalty, Vector& dc, Vector& dv) {
        for (unsigned e = 0; e < rho.size(); ++e) {
            const unsigned x = e / (nely * n);
            const unsigned y = e % (nely * n);
            const Matrix KE = subElementMatrix(n, x % n, y % n);
            const auto dof = dofsOfElement(x / n, y / n, nely);
            double energy = 0.0;
            for (unsigned i = 0; i < 64; ++i) {
                energy += KE.values[i] * U(dof[i % 8], lc) * U(dof[i / 8], lc);
            }
            const double derivative = (1 - floor) * penalty * std::pow(rhoPhys[e], penalty - 1);
            const unsigned cell = x / n * nely + y / n;
            compliance += (floor + (1 - floor) * std::pow(rhoPhys[e], penalty)) * energy;
            dc[e] -= (1 - mask[cell]) * energy * derivative;
            dv[e] += 1 / (static_cast<double>(rho.size()) * volume);
            blobSensitivity[cell] += energy * derivative * rho[e] / (n * n);
        }
    }

    void filterSensitivities(Vector& dc) {
        for (std::size_t e = 0; e < rho.size(); ++e) dc[e] *= rho[e];
        dc = filtered(fine, fineSums, dc);
        for (std::size_t e = 0; e < rho.size(); ++e) dc[e] /= rho[e];
        const auto share = [this](std::size_t i) { return std::max(0.001, 1 - mask[i]); };
        for (std::size_t i = 0; i < mask.size(); ++i) blobSensitivity[i] *= share(i);
        blobSensitivity = filtered(coarse, coarseSums, blobSensitivity);
        for (std::size_t i = 0; i < mask.size(); ++i) blobSensitivity[i] /= share(i);
    }

    double updated(std::size_t e, double multiplier, const Vector& dc, const Vector& dv) const {
        constexpr double move = 0.2F;
        const int kind = hasPassiveCells() ? kindOf(e) : 0;
        if (kind == 1) return 0.0;
        if (kind == 2 || kind == 4) return 1.0;
        double wanted = rho[e] * std::sqrt(-dc[e] / multiplier / dv[e]);
        // No number where a cell was void, or has no sensitivity and a multiplier of 0.
        if (std::isnan(wanted)) wanted = 1.0;
        return std::clamp(wanted, std::max(rho[e] - move, floor), std::min(rho[e] + move, 1.0));
    }

    void updateDesign(const Vector& dc, const Vector& dv) {
        double used = 0.0;
        for (const double v : rhoPhys) used += v;
        const double constraint = used / (static_cast<double>(rho.size()) * volume) - 1;
        Vector next(rho.size());
        const double root = multiplierOf([&](double multiplier) {
            double excess = constraint;
            for (std::size_t e = 0; e < rho.size(); ++e) {
                next[e] = updated(e, multiplier, dc, dv);
                // What the blob covers counts only in a plate without passive cells.
                const double covered = hasPassiveCells() ? maskOf(e) : 0.0;
                excess += (1 - covered) * (next[e] - rho[e]) * dv[e];
            }
            return excess;
        });
        lambdaPrevious = lambda;
        lambda = root;
        rho = next;
    }

    template <typename Excess>
    double multiplierOf(const Excess& excess) const {
        const double tolerance = hasPassiveCells() ? 1e-9 : 0.001F;
        double low = 0;
        double high = 10000;
        double widening = 5000;
        if (iteration == 2 && lambda > 0) {
            high = 2 * lambda;
            widening = lambda;
        } else if (iteration > 2) {
            widening = std::max(0.005 * std::max(lambda, 1.0), std::fabs(lambda - lambdaPrevious));
            low = lambda - widening;
            high = lambda + widening;
        }
        double middle = 0;
        for (int pass = 0; pass <= 20; ++pass, widening *= 2) {
            const double lowBefore = low;
            const double highBefore = high;
            while ((high - low) / (high + low) > tolerance) {
                middle = (low + high) / 2;
                const bool last = middle == low || middle == high;
                (excess(middle) > 0 ? low : high) = middle;
                if (last) break;
            }
            if (low == lowBefore)
                low = std::max(0.0, low - 2 * widening);
            else if (high == highBefore)
                high += 2 * widening;
            else
                break;
        }
        return middle;
    }

    Vector picture() const {
        const unsigned width = nelx * n * m;
        const unsigned height = nely * n * m;
        Vector cells(std::size_t{width} * height);
        for (unsigned i = 0; i < width * height; ++i) {
            cells[i] = rhoPhys[i / height / m * (nely * n) + i % height / m];
        }
        cells = filtered(mesh, meshSums, cells);
        Vector rows(cells.size());
        for (unsigned i = 0; i < width * height; ++i) {
            const double sharp = 0.5 + std::tanh(6 * (cells[i] - 0.5)) / (2 * std::tanh(3.0));
            rows[i % height * width + i / height] = 1 - sharp;
        }
        return rows;
    }

    Vector interfaceOf(Vector field) const {
        for (std::size_t i = 0; i < field.size(); ++i) field[i] /= blobSums[i];
        field = filtered(blobWeights, Vector(field.size(), 1.0), field);
        for (std::size_t i = 0; i < field.size(); ++i) {
            const bool fixed = kinds[i] == 1 || kinds[i] == 2 || kinds[i] == 4;
            field[i] = field[i] >= 0.0001 && field[i] <= 0.9999 && !fixed;
        }
        return field;
    }

    double interfaceOfDisc(double area) {
        Vector disc(mask.size());
        for (unsigned i = 0; i < disc.size(); ++i) {
            const double x = i / nely - (nelx - 1) / 2.0;
            const double y = i % nely - (nely - 1) / 2.0;
            disc[i] = x * x + y * y < area / std::acos(-1.0);
        }
        const std::vector<int> passive(mask.size(), 0);
        const auto kept = std::exchange(kinds, passive);  // no cell is passive here
        double size = 0.0;
        for (const double v : interfaceOf(disc)) size += v;
        kinds = kept;
        return size;
    }

    void adaptLimit() {
        const bool turned = (before - beforeThat) * (compliance - before) < 0;
        if (limit < 10) {
            const double least = std::min(brokenLimit, 2 * moved);
            brokenLimit = turned ? 0.95 * least : std::min(largestLimit, 1.03 * least);
            limit = 2 * std::round(brokenLimit / 2);
        } else {
            const double least = std::min(limit, 2 * moved);
            limit = turned ? std::floor(0.95 * least)
                           : std::ceil(std::min(largestLimit, least * 1.03F));
            limit = 2 * std::floor(limit / 2);
            if (limit == least) limit = std::min(largestLimit, least > 0 ? least + 2 : least);
        }
        beforeThat = before;
        before = compliance;
    }

    void moveBlob() {
        std::vector<std::pair<double, std::size_t>> inside;
        std::vector<std::pair<double, std::size_t>> outside;
        for (std::size_t i = 0; i < mask.size(); ++i) {
            if (interface[i] != 1.0) continue;
            if (mask[i] == 1.0)
                inside.emplace_back(-blobSensitivity[i], i);
            else
                outside.emplace_back(blobSensitivity[i], i);
        }
        std::sort(inside.begin(), inside.end());
        std::sort(outside.begin(), outside.end());
        moved = std::floor(std::min(limit, static_cast<double>(inside.size())) / 2);
        const auto count = static_cast<std::size_t>(moved);
        for (std::size_t k = 0; k < count; ++k) mask[inside[k].second] = 0.0;
        for (std::size_t k = 0; k < std::min(count, outside.size()); ++k)
            mask[outside[k].second] = 1.0;
    }

    unsigned nelx, nely, n, m;
    double volume;
    Vector rho, rhoPhys;
    Matrix fine;
    Vector fineSums;
    Matrix coarse;
    Vector coarseSums;
    Matrix mesh;
    Vector meshSums;
    Matrix blobWeights;
    Vector blobSums;
    Settings settings;
    bool changed = false;
    int iteration = 0;
    double floor = 0.01F;
    double lambda = 0.0, lambdaPrevious = 0.0;
    double compliance = 0.0;
    std::vector<int> kinds;
    Vector mask, interface, blobSensitivity;
    double limit = 0.0, largestLimit = 0.0, brokenLimit = 0.0;
    double moved = 0.0;
    int steps = 0;
    double before = 0.0, beforeThat = 0.0;
};

}  // namespace test
