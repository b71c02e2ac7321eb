#include "sparse_matrix.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <new>
#include <thread>
#include <tuple>

#include "support/matrices.h"

namespace {

using kmat::ConfigSingleton;
using kmat::SparseMatrix;
using test::Entries;
using test::Matrix;
using test::stored;

SparseMatrix filled(unsigned rows, unsigned columns, int stype, const Entries& entries) {
    SparseMatrix result(rows, columns, stype != 0, 1);
    if (stype < 0) result.setSymmetry(kmat::SYMMETRIC_LOWER);
    for (const auto& [r, c, v] : entries) result.getValue(r, c) += v;
    return result;
}

TEST(SparseMatrixTest, RandomTripletsSumUpAsInTheDenseReferenceAlsoWhenRefilled) {
    constexpr std::tuple<unsigned, unsigned, int> kinds[] = {{1, 1, 1},    {5, 5, -1}, {5, 5, 0},
                                                             {5, 5, 1},    {3, 9, 0},  {9, 2, 0},
                                                             {40, 40, -1}, {40, 40, 1}};
    test::Random random;
    for (const auto& [rows, columns, stype] : kinds) {
        SCOPED_TRACE(testing::Message() << rows << " " << columns << " " << stype);
        Matrix values(rows, columns);
        Matrix pattern(rows, columns);
        Entries entries;
        for (unsigned i = 0; i < 2 * (rows + columns); ++i) {
            unsigned r = random.below(rows);
            unsigned c = random.below(columns);
            if ((stype > 0 && r > c) || (stype < 0 && r < c)) std::swap(r, c);
            entries.push_back({r, c, random.number()});
            values(r, c) += entries.back().value;
            pattern(r, c) = 1.0;
        }
        SparseMatrix m = filled(rows, columns, stype, entries);
        EXPECT_EQ(stored(m), entries);  // growth kept what was there
        m.build();
        for (int round = 0; round < 2; ++round) {
            Entries expected;
            for (unsigned c = 0; c < columns; ++c) {
                for (unsigned r = 0; r < rows; ++r) {
                    const bool present = pattern(r, c) > 0.0;
                    const bool mirrored = !present && stype != 0 && pattern(c, r) > 0.0;
                    if (present) expected.push_back({r, c, values(r, c)});
                    EXPECT_EQ(m.hasElement(r, c), present || mirrored);
                    EXPECT_EQ(m.getValue(r, c), mirrored ? values(c, r) : values(r, c));
                }
            }
            EXPECT_EQ(stored(m), expected);
            m.zero();
            for (const auto& entry : m) EXPECT_EQ(entry.value, 0.0);
            for (const auto& [r, c, v] : entries) m.getValue(r, c) += v;
        }
    }
}

TEST(SparseMatrixTest, CapacityFollowsTheSizeAndGrowsByHalf) {
    const cholmod_common* common = ConfigSingleton::getCommonPtr();
    const auto capacityAfter = [common](SparseMatrix&& m, int entries) {
        const std::size_t before = common->memory_inuse + sizeof(cholmod_triplet);
        for (int i = 0; i < entries; ++i) m.getValue(0, 0) += 1.0;
        return (common->memory_inuse - before) / (sizeof(double) + 2 * sizeof(int));
    };
    EXPECT_EQ(capacityAfter({4, 4, true, 0}, 1), 10U);
    EXPECT_EQ(capacityAfter({4, 4, true, 0}, 11), 15U);
    EXPECT_EQ(capacityAfter({4, 4, true, 0}, 16), 23U);
    EXPECT_EQ(capacityAfter({4, 3, true, 0}, 1), 8U);
    EXPECT_EQ(capacityAfter({4, 3, false, 0}, 1), 12U);
    EXPECT_EQ(capacityAfter({4, 4, true, 7}, 1), 7U);
    EXPECT_EQ(capacityAfter({4, 4, true, -7}, 1), 100000U);
    EXPECT_EQ(capacityAfter({300, 300, false, 0}, 1), 90000U);
    EXPECT_EQ(capacityAfter({65536, 65537, false, 0}, 1), 100000U);  // above 2^32
}

TEST(SparseMatrixTest, GoesFromSizedOverTripletsToBuilt) {
    SparseMatrix m(3, 3, true, 0);
    EXPECT_EQ(m.getMatrixState(), kmat::UNINITIALIZED);
    EXPECT_EQ(m.getNumberOfElements(), 0);
    EXPECT_TRUE(m.allocateTriplets());
    EXPECT_EQ(m.getMatrixState(), kmat::INIT);
    for (int i = 0; i < 2; ++i) m.getValue(0, 1) += 1.5;
    EXPECT_EQ(m.getNumberOfElements(), 2);
    m.build();
    EXPECT_EQ(m.getMatrixState(), kmat::BUILT);
    EXPECT_EQ(stored(m), (Entries{{0, 1, 3.0}}));
    EXPECT_FALSE(m.allocateTriplets());
}

TEST(SparseMatrixTest, IsSymmetricOnlyWhenSquare) {
    SparseMatrix wide = filled(2, 3, 1, {{1, 0, 4.0}});
    wide.build();
    EXPECT_FALSE(wide.hasElement(0, 1));
    EXPECT_EQ(wide.getValue(1, 0), 4.0);
}

TEST(SparseMatrixTest, ASecondBuildStartsFromNothing) {
    SparseMatrix m(cholmod_speye(2, 3, CHOLMOD_REAL, ConfigSingleton::getCommonPtr()));
    EXPECT_EQ(m.getMatrixState(), kmat::BUILT);
    EXPECT_EQ(stored(m), (Entries{{0, 0, 1.0}, {1, 1, 1.0}}));
    m.build();
    EXPECT_EQ(m.getMatrixState(), kmat::BUILT);
    EXPECT_EQ(stored(m), Entries());
    EXPECT_FALSE(m.hasElement(1, 1));
}

TEST(SparseMatrixTest, SwapsAndMovesCarryEverything) {
    SparseMatrix m = filled(3, 3, 1, {{0, 1, 3.0}});
    m.build();
    SparseMatrix& alias = m;
    m = std::move(alias);
    SparseMatrix target = filled(2, 5, 0, {{1, 4, 7.0}});
    swap(m, target);
    EXPECT_EQ(stored(m), (Entries{{1, 4, 7.0}}));
    EXPECT_EQ(m.getColumns(), 5U);
    m.getValue(0, 2) += 1.0;  // it is still a list
    EXPECT_EQ(stored(m), (Entries{{1, 4, 7.0}, {0, 2, 1.0}}));
    EXPECT_EQ(target.getValue(1, 0), 3.0);  // the mirror image: still symmetric
    m = std::move(target);
    EXPECT_EQ(target.getMatrixState(), kmat::DESTROYED);
    SparseMatrix last(std::move(m));
    EXPECT_EQ(m.getMatrixState(), kmat::DESTROYED);
    EXPECT_EQ(last.getRows(), 3U);
    EXPECT_EQ(last.getValue(1, 0), 3.0);
}

TEST(SparseMatrixTest, MatricesWithoutASizeAreSafeToUse) {
    SparseMatrix moved = filled(3, 3, 1, {{0, 1, 3.0}});
    const SparseMatrix taken(std::move(moved));
    SparseMatrix sizeless(0, 0, false, 0);
    SparseMatrix null(nullptr);
    for (SparseMatrix* empty : {&moved, &sizeless, &null}) {
        EXPECT_EQ(empty->getMatrixState(), kmat::DESTROYED);
        EXPECT_EQ(empty->getRows(), 0U);
        EXPECT_EQ(empty->getColumns(), 0U);
        EXPECT_EQ(empty->getValue(0, 0), 0.0);
        EXPECT_EQ(empty->getValues(), nullptr);
        EXPECT_EQ(stored(*empty), Entries());
        empty->zero();
        empty->increaseTripletCapacity();
    }
}

TEST(SparseMatrixTest, WritesOutsideThePatternAreDropped) {
    SparseMatrix m = filled(3, 2, 1, {{1, 1, 4.0}});
    for (int round = 0; round < 2; ++round) {
        for (const auto& [r, c] : {std::pair{3U, 0U}, {0U, 2U}, {UINT_MAX, UINT_MAX}, {1U, 0U}}) {
            if (round == 0 && r == 1) continue;  // would become an entry
            m.getValue(r, c) += 5.0;
            EXPECT_EQ(m.getValue(r, c), 0.0);
            EXPECT_FALSE(m.hasElement(r, c));
        }
        EXPECT_EQ(stored(m), (Entries{{1, 1, 4.0}}));
        m.build();
    }
}

TEST(SparseMatrixTest, ThreadsRefillDisjointEntriesAndDropWritesAtOnce) {
    constexpr int rounds = 1000;
    SparseMatrix m = filled(4, 4, 1, {{0, 0, 0}, {1, 1, 0}, {2, 2, 0}, {3, 3, 0}});
    m.build();
    double& mine = m.getValue(0, 3);
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < 4; ++i) {
        workers.emplace_back([&, i] {
            for (int k = 0; k < rounds; ++k) {
                m.getValue(i, i) += 1.0;
                m.getValue(0, 3) += 1.0;
            }
            EXPECT_NE(&m.getValue(0, 3), &mine);
        });
    }
    for (auto& worker : workers) worker.join();
    EXPECT_EQ(mine, 0.0);
    for (const auto& entry : m) EXPECT_EQ(entry.value, rounds);
}

TEST(SparseMatrixTest, AppendPutsAllTripletsBehindItsOwn) {
    Entries all = {{0, 1, 1.0}, {2, 0, 2.0}};
    SparseMatrix sum(3, 3, false, 1);
    sum.append(filled(3, 3, 0, all));
    EXPECT_EQ(stored(sum), all);
    const Entries more(9, {1, 2, 0.5});
    const SparseMatrix other = filled(3, 3, 0, more);
    sum.append(other);
    EXPECT_EQ(stored(other), more);
    all.insert(all.end(), more.begin(), more.end());
    EXPECT_EQ(stored(sum), all);
    SparseMatrix builtOne(2, 3, false, 0);
    builtOne.build();
    sum.append(builtOne);  // what is built is no list, nor becomes one
    EXPECT_EQ(stored(sum), all);
    builtOne.append(sum);
    EXPECT_EQ(stored(builtOne), Entries());
}

TEST(SparseColumnWriterTest, ThrowsWhenMemoryDoesNotSuffice) {
    EXPECT_THROW(kmat::SparseColumnWriter(3, 3, kmat::ASYMMETRIC, SIZE_MAX / 2), std::bad_alloc);
}

}  // namespace
