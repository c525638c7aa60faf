#include "rules/modSnowEN.h"

#include <gtest/gtest.h>

#include "ErrorOf.h"

#include <cmath>

#include "rules/modSnow.h"
#include "support/errors.h"

namespace qvrl {
namespace {

// Where a figure is only published rounded to four places.
constexpr double kFourPlaces = 0.5e-4;

using test::ErrorOf;

struct GroundCase {
    int16_t na, region;
    double zone, A, expected;
};

// Expected values are the annex formulas written out in the rule's order.
const GroundCase kGround[] = {
    {54, 1, 2, 0, (0.642 * 2.0 + 0.009) * (1.0 + std::pow(0.0 / 728.0, 2.0))},
    {54, 1, 2, 728, (0.642 * 2.0 + 0.009) * (1.0 + std::pow(728.0 / 728.0, 2.0))},
    {54, 2, 3, 195, (0.264 * 3.0 - 0.002) * (1.0 + std::pow(195.0 / 256.0, 2.0))},
    {54, 3, 4, 195, (0.42 * 4.0 - 0.03) * (1.0 + std::pow(195.0 / 917.0, 2.0))},
    {54, 4, 4, 195, (0.19 * 4.0 - 0.095) * (1.0 + std::pow(195.0 / 524.0, 2.0))},
    {54, 5, 5, 195, (0.498 * 4.5 - 0.209) * (1.0 + std::pow(195.0 / 452.0, 2.0))},
    // Products, not sums: nothing at sea level.
    {54, 6, 2, 0, 0.0},
    {54, 6, 2, 966, (0.164 * 2.0 - 0.082) * (966.0 / 966.0)},
    {54, 7, 1, 0, 0.0},
    {54, 7, 1, 500, (0.79 * 1.0 + 0.375) * (500.0 / 336.0)},
    {54, 8, 3, 501, (0.14 * 3.0 - 0.1) * (501.0 / 501.0)},
    {54, 9, 13, 0, 4.75},
    {54, 9, 13, 2500, 4.75},
    {54, 10, 35, 100, 99.0},
    {54, 11, 25, 800, 2.26},
    {54, 12, 43, 0, 1.2},
    {54, 12, 43, 3000, 1.2},
    {54, 12, 1, 400, 0.007 * 400.0 - 1.4},
    {54, 12, 1, 100, 0.0},  // f negative, Z of the plain code 0.0
    {54, 12, 3, 500, 0.006 * 500.0 - 0.6},
    {54, 12, 5, 1000, std::pow(0.93, 0.00134 * 1000.0)},
    {54, 0, 2, 0, 0.0},
    {54, 13, 2, 500, 0.0},
    {54, 3, 3, 0, (0.42 * 0.0 - 0.03) * 1.0},  // zone not listed for the region
    {50, 0, 2, 0, (0.264 * 2.0 - 0.002) * (1.0 + std::pow(0.0 / 256.0, 2.0))},
    {50, 6, 2, 300, (0.264 * 2.0 - 0.002) * (1.0 + std::pow(300.0 / 256.0, 2.0))},
    {50, 9, 2, 0, 0.264 * 0.0 - 0.002},  // negative, no floor
    {52, 3, 3, 200, (0.498 * 0.0 - 0.209) * (1.0 + std::pow(200.0 / 452.0, 2.0))},
    {52, 1, 3, 200, (0.498 * 3.0 - 0.209) * (1.0 + std::pow(200.0 / 452.0, 2.0))},
    {51, 6, 104, 0, (0.642 * 4.5 + 0.009) * (1.0 + std::pow(0.0 / 728.0, 2.0))},
    {51, 0, 102, 700, (0.642 * 2.0 + 0.009) * (1.0 + std::pow(700.0 / 728.0, 2.0))},
    {53, 0, 101, 0, 0.1 * 1.0 + 0.05 + 0.15 + (0.0 + 100.0) / 525.0},
    {53, 12, 106, 250, 0.1 * 6.5 + 0.05 + 0.15 + (250.0 + 100.0) / 525.0},
    // Half to even: 2.5 is zone 2, 3.5 and 4.5 are zone 4 (Z 4.0, not 4.5).
    {50, 0, 2.5, 0, 0.264 * 2.0 - 0.002},
    {50, 0, 3.5, 0, 0.264 * 4.0 - 0.002},
    {50, 0, 4.5, 0, 0.264 * 4.0 - 0.002},
};

TEST(SnowEN, GroundLoadByAnnexAndRegion) {
    for (const auto& c : kGround) {
        SCOPED_TRACE(testing::Message() << "NA " << c.na << " region " << c.region << " zone "
                                        << c.zone << " A " << c.A);
        EXPECT_EQ(StandardSnowLoad_EN_1991_1_3(c.A, c.na, c.region, c.zone), c.expected);
    }
}

TEST(SnowEN, GroundLoadPublishedFigures) {
    EXPECT_NEAR(StandardSnowLoad_EN_1991_1_3(0, 53, 0, 101), 0.4905, kFourPlaces);
    EXPECT_NEAR(StandardSnowLoad_EN_1991_1_3(728, 54, 1, 2), 2.586, kFourPlaces);
    EXPECT_NEAR(StandardSnowLoad_EN_1991_1_3(0, 51, 1, 104), 2.898, kFourPlaces);
}

TEST(SnowEN, EvaluationOrderDecidesLastBit) {
    // British sum from the left; regrouping the constants moves the last bit.
    const double left = 0.1 * 4.0 + 0.05 + 0.15 + (0.0 + 100.0) / 525.0;
    ASSERT_NE(left, 0.1 * 4.0 + (0.05 + 0.15) + (0.0 + 100.0) / 525.0);
    EXPECT_EQ(StandardSnowLoad_EN_1991_1_3(0, 53, 0, 104), left);
    // The quotient is squared, not A² divided by D².
    const double squared = (0.642 * 2.0 + 0.009) * (1.0 + std::pow(195.0 / 728.0, 2.0));
    ASSERT_NE(squared, (0.642 * 2.0 + 0.009) * (1.0 + 195.0 * 195.0 / (728.0 * 728.0)));
    EXPECT_EQ(StandardSnowLoad_EN_1991_1_3(195, 54, 1, 2), squared);
}

TEST(SnowEN, GroundLoadFaults) {
    EXPECT_EQ(ErrorOf([] { StandardSnowLoad_EN_1991_1_3(0, 54, 1, 32767.5); }), err::Overflow);
    EXPECT_EQ(ErrorOf([] { StandardSnowLoad_EN_1991_1_3(0, 54, 1, -32769.0); }), err::Overflow);
    EXPECT_EQ(StandardSnowLoad_EN_1991_1_3(0, 54, 0, -32768.5), 0.0);
    EXPECT_EQ(ErrorOf([] { StandardSnowLoad_EN_1991_1_3(1e200, 54, 1, 2); }), err::Overflow);
    // The region's formula runs before the annex replaces it.
    EXPECT_EQ(ErrorOf([] { StandardSnowLoad_EN_1991_1_3(1e200, 53, 2, 101); }), err::Overflow);
    EXPECT_EQ(ErrorOf([] { SnowLoadPoland(54, 5, -1e7); }), err::Overflow);
}

struct ShapeCase {
    int16_t na;
    double alpha;
    bool floor;
    double hZuB, mue1, mue2, mue3;
};

const ShapeCase kShape[] = {
    {54, 45, false, 0.1, (60.0 - 45.0) * 0.8 / 30.0, 1.6, 10.0 * 0.1 + 0.2},
    {54, 45, true, 0.0, 0.8, 1.6, 0.8},
    {54, 45, true, 0.1, 0.8, 1.6, 10.0 * 0.1 + 0.2},
    {54, 30, false, 0.0, 0.8, (30.0 / 30.0) * 0.8 + 0.8, 0.2},
    {54, 60, false, 0.3, 0.0, 1.6, 10.0 * 0.3 + 0.2},  // mue3 still at 60
    {54, 70, false, 0.3, 0.0, 1.6, 0.0},
    {54, 70, true, 0.3, 0.8, 1.6, 0.8},
    {54, -1, false, 0.1, 0.0, 0.0, 10.0 * 0.1 + 0.2},
    {54, -1, true, 0.0, 0.8, 0.8, 0.8},
    {51, 45, false, 0.2, (60.0 - 45.0) * 0.8 / 30.0, 1.6, 1.8},  // cut from 2.2
    {51, 70, false, 0.2, 0.0, 1.6, 0.0},
    {53, 0, false, 0.0, 0.8, 0.8, 0.2},
    {53, 15, false, 0.0, 0.8, (15.0 / 30.0) * 0.8 + 0.8, 0.2},
    {53, 20, false, 0.0, (20.0 - 15.0) * 0.4 / 15.0 + 0.8, (20.0 / 30.0) * 0.8 + 0.8, 0.2},
    {53, 30, false, 0.0, (30.0 - 15.0) * 0.4 / 15.0 + 0.8, 1.6, 0.2},
    {53, 45, false, 0.1, (60.0 - 45.0) * 1.2 / 30.0, 1.6, 10.0 * 0.1 + 0.2},
    {53, 45, true, 0.0, (60.0 - 45.0) * 1.2 / 30.0, 1.6, 0.8},  // below the floor
    {53, 70, false, 0.0, 0.0, 1.6, 0.0},
    {53, 70, true, 0.0, 0.0, 1.6, 0.8},
    {53, -1, true, 0.0, 0.8, 0.8, 0.8},  // no British row: the floor stands
    {53, 45, false, 0.5, (60.0 - 45.0) * 1.2 / 30.0, 1.6, 10.0 * 0.5 + 0.2},  // no cut at 1.8
};

TEST(SnowEN, ShapeCoefficients) {
    for (const auto& c : kShape) {
        SCOPED_TRACE(testing::Message() << "NA " << c.na << " alpha " << c.alpha << " floor "
                                        << c.floor << " hZuB " << c.hZuB);
        double m1 = -1, m2 = -1, m3 = -1;
        SnowShapeEN(c.na, c.alpha, c.floor, c.hZuB, m1, m2, m3);
        EXPECT_EQ(m1, c.mue1);
        EXPECT_EQ(m2, c.mue2);
        EXPECT_EQ(m3, c.mue3);
    }
}

struct OverhangCase {
    int16_t na;
    double si, d, expected;
};

const OverhangCase kOverhang[] = {
    {54, 1.0, 0.5, (0.5 * 3.0) * 1.0 / 3.0},
    {54, 1.0, 2.0, (3.0 / 2.0) * 1.0 / 3.0},
    {54, 1.0, 0.0, (3.0 / 1.0) * 1.0 / 3.0},     // no depth counts as 1 m
    {54, 1.0, 0.00009, (3.0 / 1.0) * 1.0 / 3.0},
    {54, 1.0, -2.0, (3.0 / 1.0) * 1.0 / 3.0},
    {54, 1.0, 0.0001, (0.0001 * 3.0) * 1.0 / 3.0},
    {53, 2.0, 0.5, (0.5 * 3.0) * 2.0 / 3.0},
    {51, 1.0, 0.5, 0.5},
    {51, 1.0, 2.0, 0.5},
    {51, 1.0, 0.0, 0.5},
    {51, 2.4, 0.7, 0.5 * 2.4 / 1.0},
};

TEST(SnowEN, Overhang) {
    for (const auto& c : kOverhang) {
        SCOPED_TRACE(testing::Message() << "NA " << c.na << " si " << c.si << " d " << c.d);
        EXPECT_EQ(SnowOverhang_EN_1991_1_3(c.na, c.si, c.d), c.expected);
    }
    // k·si first, then /γ.
    const double ordered = 1.5 * 0.1 / 3.0;
    ASSERT_NE(ordered, 1.5 * (0.1 / 3.0));
    EXPECT_EQ(SnowOverhang_EN_1991_1_3(54, 0.1, 0.5), ordered);
    EXPECT_EQ(ErrorOf([] { SnowOverhang_EN_1991_1_3(54, 1e308, 0.0); }), err::Overflow);
}

TEST(SnowEN, FenceIsTheDinRule) {
    EXPECT_EQ(SnowCatchingFence_EN_1991_1_3(0.8, 1.2, 0.85, 10.0, 30.0),
              1.2 * 0.85 * 10.0 * std::sin(30.0 * 3.141593 / 180.0));
    EXPECT_EQ(SnowCatchingFence_EN_1991_1_3(1.6, 0.8, 2.0, 4.0, 50.0),
              SnowCatchingFence(1.6, 0.8, 2.0, 4.0, 50.0));
    EXPECT_EQ(SnowCatchingFence_EN_1991_1_3(0.8, 1.2, 0.85, 10.0, 0.0), 0.0);
}

struct BagCase {
    int16_t na;
    double sk, h, mue1, mue2, Ls;
};

const BagCase kBag[] = {
    {54, 1.0, 1.0, 0.8, 2.0, 2.0},
    {51, 1.0, 1.0, 0.8, 2.0, 2.0},
    {54, 0.5, 4.0, 0.8, (2.0 * 4.0) / 0.5, 2.0 * 4.0},  // no limit
    {53, 1.0, 1.0, 2.0, 2.0, 5.0},
    {53, 1.0, 4.0, 5.0, 5.0, 20.0},
    {53, 0.7, 1.2, (2.0 * 1.2) / 0.7, (2.0 * 1.2) / 0.7, 5.0 * 1.2},
};

TEST(SnowEN, DriftAtStep) {
    for (const auto& c : kBag) {
        SCOPED_TRACE(testing::Message() << "NA " << c.na << " sk " << c.sk << " h " << c.h);
        double m1 = -1, m2 = -1, ls = -1;
        SnowBag_EN_1991_1_3(c.na, c.sk, c.h, m1, m2, ls);
        EXPECT_EQ(m1, c.mue1);
        EXPECT_EQ(m2, c.mue2);
        EXPECT_EQ(ls, c.Ls);
    }
}

TEST(SnowEN, DriftWithoutGroundSnowFaultsAfterFirstOutput) {
    double m1 = -1, m2 = -1, ls = -1;
    EXPECT_EQ(ErrorOf([&] { SnowBag_EN_1991_1_3(54, 0.0, 1.0, m1, m2, ls); }), err::DivisionByZero);
    EXPECT_EQ(m1, 0.8);
    EXPECT_EQ(m2, -1.0);
    EXPECT_EQ(ls, -1.0);
    EXPECT_EQ(ErrorOf([&] { SnowBag_EN_1991_1_3(53, 0.0, 0.0, m1, m2, ls); }), err::Overflow);
}

}  // namespace
}  // namespace qvrl
