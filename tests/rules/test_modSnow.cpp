#include "rules/modSnow.h"

#include <gtest/gtest.h>

#include "ErrorOf.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/errors.h"

namespace qvrl {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

using test::ErrorOf;

// --- DIN 1055-5:1975 ------------------------------------------------------------

struct SnowCase {
    int16_t zone;
    double h;
    double expected;
};

TEST(SnowDIN1975, RowsInterpolationSentinelsAndUnknownZones) {
    // h, then zones I to IV; each row is hit exactly at its limit, 999.0 where the standard has no value.
    const double rows[8][5] = {
        {200, 0.75, 0.75, 0.75, 1.0},   {300, 0.75, 0.75, 0.75, 1.15},
        {400, 0.75, 0.75, 1.0, 1.55},   {500, 0.75, 0.9, 1.25, 2.1},
        {600, 0.85, 1.15, 1.6, 2.6},    {700, 1.05, 1.5, 2.0, 3.25},
        {800, 1.25, 1.85, 2.55, 3.9},   {900, 999.0, 2.3, 3.1, 4.65},
    };
    std::vector<SnowCase> cases;
    for (const auto& r : rows)
        for (int16_t zone = 1; zone <= 4; ++zone) cases.push_back({zone, r[0], r[zone]});
    // Interpolated values are written as v_lo + (h − lo)/(hi − lo)·(v_hi − v_lo).
    const std::vector<SnowCase> more = {
        {4, -50.0, 1.0}, {4, -kInf, 1.0}, {2, 0.0, 0.75},
        {4, 200.0000001, 1.0 + (200.0000001 - 200.0) / 100.0 * (1.15 - 1.0)},
        {4, 250.0, 1.0 + (250.0 - 200.0) / 100.0 * (1.15 - 1.0)},
        {3, 333.0, 0.75 + (333.0 - 300.0) / 100.0 * (1.0 - 0.75)},
        {2, 555.0, 0.9 + (555.0 - 500.0) / 100.0 * (1.15 - 0.9)},
        {1, 640.0, 0.85 + (640.0 - 600.0) / 100.0 * (1.05 - 0.85)},
        {4, 777.0, 3.25 + (777.0 - 700.0) / 100.0 * (3.9 - 3.25)},
        {3, 850.0, 2.55 + (850.0 - 800.0) / 100.0 * (3.1 - 2.55)},
        // Above 900 m the rows 900 and 1000 are used with the limits 800 and 900.
        {4, 900.1, 4.65 + (900.1 - 800.0) / 100.0 * (5.5 - 4.65)},
        {4, 950.0, 4.65 + (950.0 - 800.0) / 100.0 * (5.5 - 4.65)},
        {4, 1000.0, 4.65 + (1000.0 - 800.0) / 100.0 * (5.5 - 4.65)},
        {3, 1000.0, 3.1 + (1000.0 - 800.0) / 100.0 * (3.8 - 3.1)},
        {4, 1000.1, 999.0}, {3, 1e300, 999.0}, {4, kInf, 999.0},
        // Zone I ends at 800 m and zone II at 900 m, without a transition to the sentinel.
        {1, 800.01, 999.0}, {1, 801.0, 999.0}, {1, 950.0, 999.0}, {1, 1000.0, 999.0},
        {2, 900.01, 999.0}, {2, 1000.0, 999.0},
        // Unknown zones: nothing up to 1000 m, the sentinel above.
        {5, 500.0, 0.0}, {0, 100.0, 0.0}, {-1, 1000.0, 0.0}, {11, 600.0, 0.0}, {5, 1001.0, 999.0}, {0, 1000.1, 999.0},
    };
    cases.insert(cases.end(), more.begin(), more.end());
    for (const auto& c : cases)
        EXPECT_EQ(StandardSnowLoad_DIN1055_5_1975(c.zone, c.h), c.expected) << "zone " << c.zone << ", h = " << c.h;
}

// --- E DIN 1055-5:2004 and DIN 1055-5:2005 ---------------------------------------

// The closed formula in its order: x from sum then quotient, factor·x·x from the left.
double Formula(double factor, double constant, double h) {
    const double x = (h + 140.0) / 760.0;
    return factor * x * x + constant;
}

TEST(SnowDIN2004And2005, FormulaFloorsRangeAndZones) {
    const std::vector<SnowCase> e2004 = {
        {1, 0.0, 0.65},   {2, 0.0, 0.85},   {3, 0.0, 1.1},   {1, -140.0, 0.65},
        {1, -1000.0, Formula(0.91, 0.19, -1000.0)},  // the parabola rises again
        {1, 700.0, Formula(0.91, 0.19, 700.0)},
        {2, 1000.0, Formula(1.91, 0.25, 1000.0)},
        {3, 600.0, Formula(2.91, 0.31, 600.0)},
        {1, 1500.0, Formula(0.91, 0.19, 1500.0)},
        {3, 1500.0, Formula(2.91, 0.31, 1500.0)},
        {1, 1500.5, 999.0}, {2, 1500.5, 999.0}, {3, 1e6, 999.0},
        // Unknown zones, the "a" zones of 2005 included, give 0.0 at any height.
        {11, 0.0, 0.0}, {11, 1000.0, 0.0}, {21, 2000.0, 0.0}, {4, 1600.0, 0.0}, {0, 0.0, 0.0},
    };
    for (const auto& c : e2004)
        EXPECT_EQ(StandardSnowLoad_EDIN1055_5_2004(c.zone, c.h), c.expected) << "zone " << c.zone << ", h = " << c.h;

    // Zone 1a on both sides of its floor 0.8125: floored after the scaling.
    ASSERT_LT(Formula(0.91, 0.19, 300.0) * 1.25, 0.8125);
    ASSERT_GT(Formula(0.91, 0.19, 500.0) * 1.25, 0.8125);
    const std::vector<SnowCase> din2005 = {
        {1, 0.0, 0.65},     {11, 0.0, 0.8125},  {2, 0.0, 0.85},   {21, 0.0, 1.0625},  {3, 0.0, 1.1},
        {11, 300.0, 0.8125}, {11, 500.0, Formula(0.91, 0.19, 500.0) * 1.25},
        {1, 1500.0, Formula(0.91, 0.19, 1500.0)},
        {11, 1500.0, Formula(0.91, 0.19, 1500.0) * 1.25},
        {2, 900.0, Formula(1.91, 0.25, 900.0)},
        {21, 900.0, Formula(1.91, 0.25, 900.0) * 1.25},
        {3, 1200.0, Formula(2.91, 0.31, 1200.0)},
        {1, 1500.5, 999.0}, {11, 1500.5, 999.0}, {2, 1500.5, 999.0}, {21, 1e9, 999.0}, {3, 1500.5, 999.0},
        {4, 0.0, 0.0}, {4, 2000.0, 0.0}, {0, 1000.0, 0.0}, {12, 500.0, 0.0}, {-11, 500.0, 0.0},
    };
    for (const auto& c : din2005)
        EXPECT_EQ(StandardSnowLoad_DIN1055_7_2005(c.zone, c.h), c.expected) << "zone " << c.zone << ", h = " << c.h;
    // Published to four places.
    EXPECT_NEAR(StandardSnowLoad_DIN1055_7_2005(1, 1500.0), 4.4274, 5e-5);
}

TEST(SnowDIN2004And2005, OrderOfOperations) {
    // Heights above the floors where factor·(x·x), or x taken as h/760 + 140/760,
    // would change the last bit.
    struct Case {
        int16_t zone;
        double factor, constant, h;
    };
    const Case cases[] = {
        {1, 0.91, 0.19, 700.0}, {2, 1.91, 0.25, 650.0}, {3, 2.91, 0.31, 510.0},
        {1, 0.91, 0.19, 500.0}, {2, 1.91, 0.25, 580.0}, {3, 2.91, 0.31, 610.0},
    };
    for (const auto& c : cases) {
        const double x = (c.h + 140.0) / 760.0;
        const double expected = c.factor * x * x + c.constant;
        const double y = c.h / 760.0 + 140.0 / 760.0;
        ASSERT_TRUE(expected != c.factor * (x * x) + c.constant || expected != c.factor * y * y + c.constant);
        EXPECT_EQ(StandardSnowLoad_EDIN1055_5_2004(c.zone, c.h), expected) << c.h;
        EXPECT_EQ(StandardSnowLoad_DIN1055_7_2005(c.zone, c.h), expected) << c.h;
    }
}

// --- Roof shape -------------------------------------------------------------------

TEST(SnowShapeDIN, PitchRows) {
    struct Case {
        double a, mue1, mue2;
    };
    // 35° and 22.5° are pitches where another grouping changes the last bit.
    ASSERT_NE((60.0 - 35.0) * 0.8 / 30.0, (60.0 - 35.0) * (0.8 / 30.0));
    ASSERT_NE((22.5 / 30.0) * 0.8 + 0.8, 22.5 * 0.8 / 30.0 + 0.8);
    const double justAbove30 = std::nextafter(30.0, 60.0);
    const Case cases[] = {
        {0.0, 0.8, 0.8},
        {15.0, 0.8, (15.0 / 30.0) * 0.8 + 0.8},
        {22.5, 0.8, (22.5 / 30.0) * 0.8 + 0.8},
        {30.0, 0.8, 1.6},
        {justAbove30, (60.0 - justAbove30) * 0.8 / 30.0, 1.6},
        {35.0, (60.0 - 35.0) * 0.8 / 30.0, 1.6},
        {45.0, (60.0 - 45.0) * 0.8 / 30.0, 1.6},
        {60.0, 0.0, 1.6}, {61.0, 0.0, 1.6}, {1e300, 0.0, 1.6}, {kInf, 0.0, 1.6},
        {-1.0, 0.0, 0.0}, {-kInf, 0.0, 0.0},
        // The tolerance: a pitch just below 0 by less than 1e-16 still counts as 0.
        {-5e-17, 0.8, (-5e-17 / 30.0) * 0.8 + 0.8},
        {-1e-16, 0.0, 0.0},
    };
    for (const auto& c : cases) {
        double m1 = -1.0, m2 = -1.0;
        SnowShapeDIN(c.a, m1, m2);
        EXPECT_EQ(m1, c.mue1) << "Alpha = " << c.a;
        EXPECT_EQ(m2, c.mue2) << "Alpha = " << c.a;
    }
}

// --- Drift at a step --------------------------------------------------------------

TEST(SnowBagFactors, FloorCapThresholdAndOrder) {
    struct Case {
        double h, sk, mue2;
    };
    const Case cases[] = {
        {49.9, 0.0, 0.8},      // below 50 cm sk is not read
        {-10.0, 0.0, 0.8},
        {49.9, kNaN, 0.8},
        {100.0, 1.0, 2.0},
        {150.0, 1.0, 2.0},     // 3.0 cut to 2
        {100.0, 2.0, 1.0},
        {50.0, 2.0, 0.8},      // 0.5 raised to 0.8
        {50.0, 1.0, 1.0},      // 50 exactly takes the formula
        {100.0, -1.0, 0.8},    // a negative quotient is raised to the floor
        {70.0, 0.9, 2.0 * (70.0 / 100.0) / 0.9},
        {110.0, 1.1, 2.0},
        {55.0, 1.1, 1.0},
        // The height in metres is doubled before the division: 2·h/(100·sk)
        // would give 0.9999999999999999 and 1.5714285714285714 here.
        {55.0, 0.7, 2.0 * (55.0 / 100.0) / 0.7},
        {80.0, 1.1, 2.0 * (80.0 / 100.0) / 1.1},
    };
    ASSERT_NE(1.0, 2.0 * 55.0 / (100.0 * 1.1));
    ASSERT_NE(2.0 * (55.0 / 100.0) / 0.7, 2.0 * 55.0 / (100.0 * 0.7));
    ASSERT_NE(2.0 * (80.0 / 100.0) / 1.1, 2.0 * 80.0 / (100.0 * 1.1));
    for (const auto& c : cases) {
        double m1 = -1.0, m2 = -1.0;
        SnowBagFactors(c.h, c.sk, m1, m2);
        EXPECT_EQ(m1, 0.8) << "h = " << c.h << ", sk = " << c.sk;
        EXPECT_EQ(m2, c.mue2) << "h = " << c.h << ", sk = " << c.sk;
    }
}

TEST(SnowBag, HeightAndLength) {
    double length = -1.0;
    EXPECT_EQ(SnowBag(0.8, 2.0, 100.0, 1.0, length), 2.0 * 1.0 - 0.8 * 1.0);
    EXPECT_EQ(length, 200.0);
    // Two products, then the difference: (mue2 − mue1)·sk differs here.
    struct Case {
        double mue2, sk;
    };
    for (const Case& c : {Case{1.1, 0.7}, Case{1.45, 0.65}, Case{1.15, 3.3}}) {
        const double expected = c.mue2 * c.sk - 0.8 * c.sk;
        ASSERT_NE(expected, (c.mue2 - 0.8) * c.sk);
        EXPECT_EQ(SnowBag(0.8, c.mue2, 60.0, c.sk, length), expected);
        EXPECT_EQ(length, 120.0);
    }
}

// --- Overhang and fence -----------------------------------------------------------

TEST(SnowOverhang, SquareOverThree) {
    EXPECT_EQ(SnowOverhang(0.75), 0.1875);
    EXPECT_EQ(SnowOverhang(0.0), 0.0);
    EXPECT_EQ(SnowOverhang(-0.75), 0.1875);
    const double si = 2.1;  // si·(si/3) differs in the last bit
    ASSERT_NE(si * si / 3.0, si * (si / 3.0));
    EXPECT_EQ(SnowOverhang(si), si * si / 3.0);
}

TEST(SnowCatchingFence, LargerShapeTimesLoadWidthAndSine) {
    // The rounded constant of pi shows: sin(30°) is not 0.5 here. Products from
    // the left: 0.8·(0.75·(2·sin)) would differ.
    const auto fence = [](double mue, double sk, double B, double a) {
        return mue * sk * B * std::sin(a * 3.141593 / 180.0);
    };
    ASSERT_NE(fence(1.0, 1.0, 1.0, 30.0), 0.5);
    const double s = std::sin(30.0 * 3.141593 / 180.0);
    ASSERT_NE(0.8 * 0.75 * 2.0 * s, 0.8 * (0.75 * (2.0 * s)));
    struct Case {
        double mue1, mue2, sk, B, a, expected;
    };
    const Case cases[] = {
        {0.8, 1.6, 0.75, 2.0, 0.0, 0.0},
        {0.8, 1.6, 0.75, 2.0, 30.0, fence(1.6, 0.75, 2.0, 30.0)},
        {1.6, 0.8, 0.75, 2.0, 30.0, fence(1.6, 0.75, 2.0, 30.0)},
        {0.8, 0.8, 0.75, 2.0, 30.0, fence(0.8, 0.75, 2.0, 30.0)},
        {0.4, 1.6, 1.1, 3.5, 45.0, fence(1.6, 1.1, 3.5, 45.0)},
        {0.0, 1.6, 2.0, 4.0, 90.0, fence(1.6, 2.0, 4.0, 90.0)},
        {1.0, 1.0, 1.0, 1.0, 30.0, s},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SnowCatchingFence(c.mue1, c.mue2, c.sk, c.B, c.a), c.expected)
            << c.mue1 << " " << c.mue2 << " " << c.a;
    }
}

// --- Floating faults ----------------------------------------------------------------

TEST(SnowFaults, NumberedErrors) {
    double a = 0.0, b = 0.0;
    struct Case {
        const char* what;
        int32_t number, got;
    };
    const Case cases[] = {
        {"1975, undefined height", err::Overflow, ErrorOf([] { StandardSnowLoad_DIN1055_5_1975(1, kNaN); })},
        {"1975, unknown zone, undefined height", err::Overflow, ErrorOf([] { StandardSnowLoad_DIN1055_5_1975(9, kNaN); })},
        {"2004, undefined height", err::Overflow, ErrorOf([] { StandardSnowLoad_EDIN1055_5_2004(2, kNaN); })},
        {"2005, undefined height", err::Overflow, ErrorOf([] { StandardSnowLoad_DIN1055_7_2005(21, kNaN); })},
        // The formula runs before the range test, so x·x overflows first.
        {"2004, x squared overflows", err::Overflow, ErrorOf([] { StandardSnowLoad_EDIN1055_5_2004(1, 1e200); })},
        {"2005, x squared overflows", err::Overflow, ErrorOf([] { StandardSnowLoad_DIN1055_7_2005(11, 1e200); })},
        {"2005, infinite depth", err::Overflow, ErrorOf([] { StandardSnowLoad_DIN1055_7_2005(3, -kInf); })},
        {"drift over sk 0 at 50 cm", err::DivisionByZero, ErrorOf([&] { SnowBagFactors(50.0, 0.0, a, b); })},
        {"drift over sk 0 at 100 cm", err::DivisionByZero, ErrorOf([&] { SnowBagFactors(100.0, 0.0, a, b); })},
        {"drift over negative zero", err::DivisionByZero, ErrorOf([&] { SnowBagFactors(100.0, -0.0, a, b); })},
        {"drift quotient overflows", err::Overflow, ErrorOf([&] { SnowBagFactors(100.0, 1e-308, a, b); })},
        {"drift of an undefined height", err::Overflow, ErrorOf([&] { SnowBagFactors(kNaN, 1.0, a, b); })},
        {"drift with undefined sk", err::Overflow, ErrorOf([&] { SnowBagFactors(50.0, kNaN, a, b); })},
        {"infinite step", err::Overflow, ErrorOf([&] { SnowBagFactors(kInf, 1.0, a, b); })},
        {"drift load overflows", err::Overflow, ErrorOf([&] { SnowBag(0.8, 2.0, 100.0, 1e308, a); })},
        {"drift length overflows", err::Overflow, ErrorOf([&] { SnowBag(0.8, 2.0, 1e308, 1.0, a); })},
        {"drift of undefined shape", err::Overflow, ErrorOf([&] { SnowBag(kNaN, 2.0, 100.0, 1.0, a); })},
        {"overhang overflows", err::Overflow, ErrorOf([] { SnowOverhang(1e200); })},
        {"overhang undefined", err::Overflow, ErrorOf([] { SnowOverhang(kNaN); })},
        {"fence at infinite pitch", err::Overflow, ErrorOf([] { SnowCatchingFence(0.8, 1.6, 1.0, 1.0, kInf); })},
        {"fence pitch overflows", err::Overflow, ErrorOf([] { SnowCatchingFence(0.8, 1.6, 1.0, 1.0, 1e308); })},
        {"fence product overflows", err::Overflow, ErrorOf([] { SnowCatchingFence(0.8, 1.6, 1e308, 1e308, 30.0); })},
        {"fence with undefined shape", err::Overflow, ErrorOf([] { SnowCatchingFence(kNaN, 1.6, 1.0, 1.0, 30.0); })},
        {"shape of an undefined pitch", err::Overflow, ErrorOf([&] { SnowShapeDIN(kNaN, a, b); })},
    };
    for (const auto& c : cases) EXPECT_EQ(c.got, c.number) << c.what;
}

}  // namespace
}  // namespace qvrl
