#include "rules/modWind.h"

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

// The run-time error number a call raises, or 0 when it returns.
using test::ErrorOf;

double Squared(double x) { return x * x; }

// --- DIN 1055-4:1986 -------------------------------------------------------

TEST(WindDIN1986, StepsClosedAtTheTop) {
    struct Case {
        double h;
        double q;
    };
    const std::vector<Case> cases = {
        {-1.0, 0.0},      {-kInf, 0.0},      {0.0, 0.0},     {1e-300, 0.5},
        {8.0, 0.5},       {8.0000001, 0.8},  {8.1, 0.8},     {20.0, 0.8},
        {20.0000001, 1.1}, {100.0, 1.1},     {100.5, 1.3},   {1e9, 1.3},
        {kInf, 1.3},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WindPressure_DIN1055_4_1986(c.h), c.q) << "H = " << c.h;
    }
}

TEST(WindDIN1986, UndefinedHeightIsAFault) {
    EXPECT_EQ(ErrorOf([] { WindPressure_DIN1055_4_1986(kNaN); }), err::Overflow);
}

// --- WindReference ------------------------------------------------------------

TEST(WindReference, ZoneTable) {
    struct Case {
        int16_t zone;
        double q;
        double v;
    };
    const std::vector<Case> cases = {
        {1, 0.32, 22.5}, {2, 0.39, 25.0}, {3, 0.47, 27.5}, {4, 0.56, 30.0}, {5, 0.66, 32.5},
    };
    for (const auto& c : cases) {
        double q = -7.0;
        double v = -7.0;
        WindReference(c.zone, q, v);
        EXPECT_EQ(q, c.q) << "zone " << c.zone;
        EXPECT_EQ(v, c.v) << "zone " << c.zone;
    }
}

TEST(WindReference, UnknownZoneLeavesOutputsUntouched) {
    for (int16_t zone : {int16_t{0}, int16_t{6}, int16_t{-1}, int16_t{11}, int16_t{32767}}) {
        double q = -7.0;
        double v = 123.0;
        WindReference(zone, q, v);
        EXPECT_EQ(q, -7.0) << "zone " << zone;
        EXPECT_EQ(v, 123.0) << "zone " << zone;
    }
}

// --- WindProfilePressure --------------------------------------------------------

TEST(WindProfile, PressureCategoriesAtTheirLimits) {
    const double q = 0.39;
    struct Case {
        int16_t cat;
        double z;
        double expected;
    };
    // The expected values are written in the order of evaluation: factor times
    // q, then times the power.
    const std::vector<Case> cases = {
        {1, -5.0, 1.9 * q},
        {1, 1.999, 1.9 * q},
        {1, 2.0, 2.6 * q * std::pow(2.0 / 10.0, 0.19)},
        {1, 16.0, 2.6 * q * std::pow(16.0 / 10.0, 0.19)},
        {2, 0.0, 1.7 * q},
        {2, 3.99, 1.7 * q},
        {2, 4.0, 2.1 * q * std::pow(4.0 / 10.0, 0.24)},
        {2, 12.0, 2.1 * q * std::pow(12.0 / 10.0, 0.24)},
        {3, 7.99, 1.5 * q},
        {3, 8.0, 1.6 * q * std::pow(8.0 / 10.0, 0.31)},
        {3, 12.0, 1.6 * q * std::pow(12.0 / 10.0, 0.31)},
        {4, 15.99, 1.3 * q},
        {4, 16.0, 1.1 * q * std::pow(16.0 / 10.0, 0.4)},
        {4, 300.0, 1.1 * q * std::pow(300.0 / 10.0, 0.4)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WindProfilePressure(q, 25.0, c.cat, c.z), c.expected)
            << "category " << c.cat << ", z = " << c.z;
    }
}

TEST(WindProfile, ProductIsFormedFromTheLeft) {
    // For these inputs the other grouping differs in the last bit.
    struct Case {
        double q;
        int16_t cat;
        double z;
        double f;
        double e;
    };
    const std::vector<Case> cases = {
        {0.32, 1, 16.0, 2.6, 0.19},
        {0.39, 2, 12.0, 2.1, 0.24},
        {0.56, 4, 16.0, 1.1, 0.4},
    };
    for (const auto& c : cases) {
        const double p = std::pow(c.z / 10.0, c.e);
        const double left = c.f * c.q * p;
        ASSERT_NE(left, c.f * (c.q * p));
        EXPECT_EQ(WindProfilePressure(c.q, 0.0, c.cat, c.z), left) << "category " << c.cat;
    }
}

TEST(WindProfile, VelocityCategoriesAtTheirLimits) {
    const double v = 22.5;
    auto pressure = [](double gust) { return gust * gust / 1600.0; };
    struct Case {
        int16_t cat;
        double z;
        double gust;
    };
    const std::vector<Case> cases = {
        {5, -1.0, 1.33 * v},
        {5, 3.99, 1.33 * v},
        {5, 4.0, 1.51 * v * std::pow(4.0 / 10.0, 0.135)},
        {5, 50.0, 1.51 * v * std::pow(50.0 / 10.0, 0.135)},
        {5, 50.01, 1.61 * v * std::pow(50.01 / 10.0, 0.095)},
        {6, 6.99, 1.23 * v},
        {6, 7.0, 1.31 * v * std::pow(7.0 / 10.0, 0.185)},
        {6, 50.0, 1.31 * v * std::pow(50.0 / 10.0, 0.185)},
        {6, 50.01, 1.45 * v * std::pow(50.01 / 10.0, 0.12)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WindProfilePressure(0.0, v, c.cat, c.z), pressure(c.gust))
            << "category " << c.cat << ", z = " << c.z;
    }
}

TEST(WindProfile, UnknownCategoryGivesZero) {
    for (int16_t cat : {int16_t{0}, int16_t{7}, int16_t{-1}, int16_t{32767}}) {
        EXPECT_EQ(WindProfilePressure(0.39, 25.0, cat, 10.0), 0.0) << "category " << cat;
    }
}

TEST(WindVelocityToPressure, SquareThenDivide) {
    EXPECT_EQ(WindVelocityToPressure(40.0), 1.0);
    EXPECT_EQ(WindVelocityToPressure(-40.0), 1.0);
    // 33.25 is a velocity where v·(v/1600) differs in the last bit.
    const double v = 33.25;
    ASSERT_NE(v * v / 1600.0, v * (v / 1600.0));
    EXPECT_EQ(WindVelocityToPressure(v), v * v / 1600.0);
}

// --- DIN 1055-4:2005 ------------------------------------------------------------

TEST(WindDIN2005, EdgesOfProfileAndTerrain) {
    const double q1 = 2.6 * 0.32;  // zone 1, category 1, z = 10: the power is 1
    struct Case {
        int16_t zone;
        int16_t cat;
        double z;
        double hNN;
        double expected;
    };
    const std::vector<Case> cases = {
        {2, 2, 4.0, 0.0, 2.1 * 0.39 * std::pow(0.4, 0.24)},
        {2, 2, 3.99, 0.0, 1.7 * 0.39},
        {1, 5, 4.0, 0.0, Squared(1.51 * 22.5 * std::pow(0.4, 0.135)) / 1600.0},
        {1, 1, 10.0, -400.0, q1},
        {1, 1, 10.0, 800.0, q1},
        {1, 1, 10.0, 800.0001, (800.0001 / 1000.0 + 0.2) * q1},
        {1, 1, 10.0, 1000.0, (1000.0 / 1000.0 + 0.2) * q1},
        {1, 1, 10.0, 1100.0, (1100.0 / 1000.0 + 0.2) * q1},
        {1, 1, 10.0, 1100.01, 999.0},
        {1, 1, 10.0, 1e300, 999.0},
        {6, 1, 10.0, 0.0, 0.0},
        {0, 2, 10.0, 1000.0, 0.0},
        {6, 1, 10.0, 1100.01, 999.0},
        {0, 1, 10.0, 5000.0, 999.0},
        {1, 7, 10.0, 0.0, 0.0},
        {1, 7, 10.0, 1200.0, 999.0},
        {5, 4, 16.0, 0.0, 1.1 * 0.66 * std::pow(1.6, 0.4)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(WindPressure_DIN1055_4_2005(c.zone, c.cat, c.z, c.hNN), c.expected)
            << "zone " << c.zone << ", category " << c.cat << ", z = " << c.z
            << ", terrain " << c.hNN;
    }
    // 3.99 m falls back to the constant row: 0.663 up to the rounding of 1.7·0.39.
    EXPECT_NEAR(WindPressure_DIN1055_4_2005(2, 2, 3.99, 0.0), 0.663, 1e-15);
}

TEST(WindDIN2005, MixedCoastChangesFactorAboveFiftyMetres) {
    const double at50 = WindPressure_DIN1055_4_2005(1, 5, 50.0, 0.0);
    const double above = WindPressure_DIN1055_4_2005(1, 5, 50.01, 0.0);
    const double g50 = 1.51 * 22.5 * std::pow(5.0, 0.135);
    const double gAbove = 1.61 * 22.5 * std::pow(5.001, 0.095);
    EXPECT_EQ(at50, g50 * g50 / 1600.0);
    EXPECT_EQ(above, gAbove * gAbove / 1600.0);
    // The profiles do not meet at 50 m: the upper one starts lower.
    const double gLower = 1.51 * 22.5 * std::pow(5.001, 0.135);
    EXPECT_LT(above, gLower * gLower / 1600.0);
}

TEST(WindDIN2005, TerrainFactorIsSumThenProduct) {
    // Zone 1, category 2 at z = 12: distributing the product over the sum
    // would change the last bit at these heights.
    const double q = 2.1 * 0.32 * std::pow(1.2, 0.24);
    for (double hNN : {950.0, 1000.0, 1050.0, 1100.0}) {
        const double expected = (hNN / 1000.0 + 0.2) * q;
        ASSERT_NE(expected, hNN / 1000.0 * q + 0.2 * q);
        EXPECT_EQ(WindPressure_DIN1055_4_2005(1, 2, 12.0, hNN), expected) << hNN;
    }
}

// --- Floating faults -------------------------------------------------------------

TEST(WindFaults, NumberedErrors) {
    struct Case {
        const char* what;
        int32_t got;
    };
    const std::vector<Case> cases = {
        {"infinite height", ErrorOf([] { WindProfilePressure(0.32, 22.5, 1, kInf); })},
        {"pressure factor overflows", ErrorOf([] { WindProfilePressure(1e308, 22.5, 1, 1.0); })},
        {"power times pressure overflows",
         ErrorOf([] { WindProfilePressure(1e306, 22.5, 4, 1e300); })},
        {"gust squared overflows", ErrorOf([] { WindProfilePressure(0.0, 1e200, 6, 10.0); })},
        {"velocity squared overflows", ErrorOf([] { WindVelocityToPressure(1e200); })},
        {"undefined height", ErrorOf([] { WindProfilePressure(0.32, 22.5, 7, kNaN); })},
        {"undefined pressure", ErrorOf([] { WindProfilePressure(kNaN, 22.5, 1, 10.0); })},
        {"undefined terrain", ErrorOf([] { WindPressure_DIN1055_4_2005(1, 1, 10.0, kNaN); })},
        {"undefined height, 2005", ErrorOf([] { WindPressure_DIN1055_4_2005(1, 1, kNaN, 0.0); })},
        // The terrain factor is formed before the range test, as the steps are ordered.
        {"infinite terrain", ErrorOf([] { WindPressure_DIN1055_4_2005(1, 1, 10.0, kInf); })},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.got, err::Overflow) << c.what;
    }
}

TEST(WindFaults, ValidRangeRaisesNothing) {
    // Large but finite heights stay finite in every category.
    for (int16_t cat = 1; cat <= 6; ++cat) {
        for (double z : {-1e300, 0.0, 1e6, 1e300}) {
            EXPECT_EQ(ErrorOf([&] { WindPressure_DIN1055_4_2005(5, cat, z, 1100.0); }), 0)
                << "category " << cat << ", z = " << z;
        }
    }
}

}  // namespace
}  // namespace qvrl
