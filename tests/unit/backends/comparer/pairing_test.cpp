#include "backends/comparer/pairing.h"

#include <gtest/gtest.h>

#include "backends/comparer/point_grid.h"

namespace {

using comparer::Candidate;
using comparer::pairUp;
using comparer::Preference;

TEST(Pairing, EquallyLongListsGoInOrder) {
    const std::vector<Candidate> a = {{0, {0, 0, 0}}, {1, {10, 0, 0}}};
    const std::vector<Candidate> b = {{5, {10, 0, 0}}, {6, {0, 0, 0}}};
    const auto pairs = pairUp(a, b, Preference::Order, 1e-3);
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].reference, 0);
    EXPECT_EQ(pairs[0].compare, 5);
    EXPECT_TRUE(pairs[0].ambiguous);
}

TEST(Pairing, EquallyLongListsGoToTheNearestIfThatIsPreferred) {
    const std::vector<Candidate> a = {{0, {0, 0, 0}}, {1, {10, 0, 0}}};
    const std::vector<Candidate> b = {{5, {10, 0, 0}}, {6, {0, 0, 0}}};
    const auto pairs = pairUp(a, b, Preference::Nearest, 1e-3);
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].compare, 6);
    EXPECT_EQ(pairs[1].compare, 5);
    EXPECT_FALSE(pairs[0].ambiguous);
}

TEST(Pairing, OneAgainstOneIsNotAmbiguous) {
    const auto pairs = pairUp({{3, {0, 0, 0}}}, {{4, {9, 9, 9}}}, Preference::Order, 1e-3);
    ASSERT_EQ(pairs.size(), 1U);
    EXPECT_FALSE(pairs[0].ambiguous);
}

TEST(Pairing, UnequalListsGoNearestFirst) {
    const std::vector<Candidate> a = {{0, {0, 0, 0}}, {1, {10, 0, 0}}, {2, {20, 0, 0}}};
    const std::vector<Candidate> b = {{7, {19, 0, 0}}, {8, {12, 0, 0}}};
    const auto pairs = pairUp(a, b, Preference::Order, 1e-3);
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].reference, 2);
    EXPECT_EQ(pairs[0].compare, 7);
    EXPECT_EQ(pairs[1].reference, 1);
    EXPECT_EQ(pairs[1].compare, 8);
    EXPECT_FALSE(pairs[0].ambiguous);
}

TEST(Pairing, EqualDistancesAreAmbiguousAndInOrder) {
    const std::vector<Candidate> a = {{0, {-1, 0, 0}}, {1, {1, 0, 0}}};
    const auto pairs = pairUp(a, {{9, {0, 0, 0}}}, Preference::Order, 1e-3);
    ASSERT_EQ(pairs.size(), 1U);
    EXPECT_EQ(pairs[0].reference, 0);
    EXPECT_TRUE(pairs[0].ambiguous);
}

TEST(Pairing, EmptyListsGiveNothing) {
    EXPECT_TRUE(pairUp({}, {{1, {0, 0, 0}}}, Preference::Order, 1e-3).empty());
    EXPECT_TRUE(pairUp({}, {}, Preference::Order, 1e-3).empty());
}

TEST(Pairing, HugeListsOfUnequalLengthGoInOrder) {
    const std::vector<Candidate> a(2000);
    const std::vector<Candidate> b(1999);
    EXPECT_EQ(pairUp(a, b, Preference::Order, 1e-3).size(), 1999U);
}

std::vector<std::uint32_t> allNear(const comparer::PointGrid& grid, const gp_Pnt& point) {
    std::vector<std::uint32_t> all;
    for (const auto* cell : grid.near(point)) all.insert(all.end(), cell->begin(), cell->end());
    std::sort(all.begin(), all.end());
    return all;
}

TEST(PointGrid, FindsWhatIsNearAcrossCells) {
    comparer::PointGrid grid(1.0);
    grid.add({0.99, 0, 0}, 1);
    grid.add({1.01, -0.01, 0}, 2);
    grid.add({5, 5, 5}, 3);
    EXPECT_EQ(allNear(grid, {1.0, 0, 0}), (std::vector<std::uint32_t>{1, 2}));
    grid.remove({0.99, 0, 0}, 1);
    EXPECT_EQ(allNear(grid, {1.0, 0, 0}), (std::vector<std::uint32_t>{2}));
    EXPECT_TRUE(allNear(grid, {-50, 0, 0}).empty());
}

TEST(PointGrid, TakesCoordinatesOfAnySize) {
    comparer::PointGrid grid(1e-3);
    const double inf = std::numeric_limits<double>::infinity();
    for (const double value : {1e300, -1e300, inf, std::nan("")}) {
        grid.add({value, 0, 0}, 1);
        EXPECT_FALSE(allNear(grid, {value, 0, 0}).empty());
    }
}

}  // namespace
