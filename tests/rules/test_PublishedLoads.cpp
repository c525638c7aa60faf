#include <gtest/gtest.h>

#include <cmath>

#include "rules/PublishedSnow.h"
#include "rules/PublishedWind.h"
#include "vocab/CodeLists.h"

using namespace qvrl;

namespace {

// Hand-checked figures are rounded to the three decimals an engineer writes
// down; the order of operations is checked exactly in the cases below.
constexpr double kHand = 0.0005;

TEST(PublishedSnow, GroundLoadsAsPrinted) {
    const struct {
        int16_t Norm, region, zone;
        double A;
        std::optional<double> sk;
        const char* source;  // a word the source must name
    } cases[] = {
        // EN 1991-1-3:2003 Table C.1, product forms: (a·Z + c)·[1 + (A/r)²]
        {54, 1, 1, 0.0, 0.651, "Alpine"},           // 0.642 + 0.009
        {54, 1, 2, 728.0, 2.586, "Alpine"},         // (1.284 + 0.009)·2
        {54, 2, 3, 256.0, 1.580, "Central East"},   // (0.792 − 0.002)·2
        {54, 3, 4, 917.0, 3.300, "Greece"},         // (1.680 − 0.030)·2
        {54, 4, 2, 524.0, 0.570, "Iberian"},        // (0.380 − 0.095)·2
        {54, 5, 5, 452.0, 4.064, "Mediterranean"},  // Z 4.5: (2.241 − 0.209)·2
        // Table C.1, sums: a·Z + c + A/r
        {54, 6, 2, 400.0, 0.660, "Central West"},  // 0.328 − 0.082 + 0.414
        {54, 7, 1, 336.0, 2.165, "Sweden"},        // 0.790 + 0.375 + 1
        {54, 8, 3, 501.0, 1.320, "UK, Republic"},  // 0.420 − 0.1 + 1
        // Table C.1 has no formula for Norway, Iceland, Czechia, Poland
        {54, 9, 11, 400.0, std::nullopt, ""},
        {54, 12, 41, 400.0, std::nullopt, ""},
        // DIN EN 1991-1-3/NA: zone curves b + f·((A + 140)/760)² and the minima
        {50, 0, 2, 0.0, 0.85, "NA"},     // 0.315 below the minimum 0.85
        {50, 0, 2, 400.0, 1.214, "NA"},  // 0.25 + 1.91·0.5049
        {50, 0, 1, 0.0, 0.65, "NA"},     // 0.221 below 0.65
        {50, 0, 1, 1000.0, 2.2375, "NA"},
        {50, 0, 11, 1000.0, 2.797, "NA"},  // 1a: 1.25 · 2.2375
        {50, 0, 11, 0.0, 0.81, "NA"},
        {50, 0, 21, 620.0, 2.700, "NA"},  // 2a: 1.25 · 2.16
        {50, 0, 21, 0.0, 1.06, "NA"},
        {50, 0, 3, 620.0, 3.220, "NA"},
        {50, 0, 3, 0.0, 1.10, "NA"},
        {50, 0, 5, 400.0, std::nullopt, ""},  // 4,5 is no zone of the German map
        {3, 0, 2, 400.0, 1.214, "DIN 1055-5:2005"},
        {31, 0, 21, 0.0, 1.06, "DIN 1055-5:2005"},
        // UK annex: [0.15 + (0.1·Z + 0.05)] + (A − 100)/525
        {53, 0, 101, 100.0, 0.300, "NA to BS EN 1991-1-3"},
        {53, 0, 103, 625.0, 1.500, "NA to BS EN 1991-1-3"},
        {53, 0, 106, 0.0, 0.660, "NA to BS EN 1991-1-3"},  // Z 6.5, below 100 m the term is negative
        // Austria, Italy and the 1975 edition: no published formula built in
        {51, 0, 102, 400.0, std::nullopt, ""},
        {52, 6, 2, 400.0, std::nullopt, ""},
        {1, 0, 2, 400.0, std::nullopt, ""},
    };
    for (const auto& c : cases) {
        const auto v = PublishedGroundSnow(c.Norm, c.region, c.zone, c.A);
        const std::string at = "Norm " + std::to_string(c.Norm) + " region " + std::to_string(c.region) + " zone " +
                               std::to_string(c.zone) + " A " + std::to_string(c.A);
        ASSERT_EQ(v.has_value(), c.sk.has_value()) << at;
        if (!v) continue;
        ASSERT_TRUE(v->value) << at;
        EXPECT_NEAR(*v->value, *c.sk, kHand) << at;
        EXPECT_NE(v->source.find(c.source), std::string::npos) << at << ": " << v->source;
    }
}

// The printed order: a sum is added from the left, the product form takes
// the bracket last; a swapped order changes the last bit of these inputs.
TEST(PublishedSnow, OrderOfOperationsIsThePrintedOne) {
    EXPECT_EQ(*AnnexCGroundSnow(6, 2.0, 400.0)->value, (0.164 * 2.0 + -0.082) + 400.0 / 966.0);
    const double q = 300.0 / 728.0;
    EXPECT_EQ(*AnnexCGroundSnow(1, 4.5, 300.0)->value, (0.642 * 4.5 + 0.009) * (1.0 + q * q));
    const double g = (400.0 + 140.0) / 760.0;
    EXPECT_EQ(*GermanGroundSnow(50, 21, 400.0)->value, 1.25 * (0.25 + 1.91 * (g * g)));
    EXPECT_EQ(*UkGroundSnow(2.0, 250.0).value, (0.15 + (0.1 * 2.0 + 0.05)) + (250.0 - 100.0) / 525.0);
    // The minimum applies and is named, the curve above it is not.
    EXPECT_EQ(GermanGroundSnow(50, 2, 0.0)->note, "minimum of the zone");
    EXPECT_EQ(GermanGroundSnow(50, 2, 400.0)->note, "");
}

TEST(PublishedSnow, Mue1ByPitch) {
    const struct {
        double alpha, mue;
    } cases[] = {{0.0, 0.8}, {30.0, 0.8}, {31.0, 0.8 * 29.0 / 30.0}, {45.0, 0.4}, {59.9, 0.8 * (60.0 - 59.9) / 30.0},
                 {60.0, 0.0}, {90.0, 0.0}};
    for (const auto& c : cases) EXPECT_EQ(*PublishedMue1(54, c.alpha).value, c.mue) << c.alpha;
    EXPECT_NE(PublishedMue1(50, 10.0).source.find("Table 5.2"), std::string::npos);
}

TEST(PublishedWind, GermanProfilesAsPrinted) {
    using P = GermanWindProfile;
    const struct {
        double qb;
        P profile;
        double z, A;
        std::optional<double> qp;
    } cases[] = {
        {0.39, P::Category2, 10.0, 0.0, 0.819},      // 2.1·qb, the finding of the issue
        {0.39, P::Category2, 4.0, 0.0, 0.663},       // up to z_min 4 m: 1.7·qb
        {0.39, P::Category2, 4.0001, 0.0, 0.6573},   // just above: the power law, lower than the constant
        {0.56, P::Category1, 10.0, 0.0, 1.456},      // 2.6·qb
        {0.56, P::Category1, 2.0, 0.0, 1.064},       // 1.9·qb
        {0.47, P::Category3, 8.0, 0.0, 0.705},       // 1.5·qb
        {0.56, P::Category4, 16.0, 0.0, 0.728},      // 1.3·qb
        {0.56, P::Category4, 20.0, 0.0, 0.8128},     // 1.1·qb·2^0.40
        {0.39, P::Inland, 7.0, 0.0, 0.585},          // 1.5·qb
        {0.39, P::Inland, 10.0, 0.0, 0.663},         // 1.7·qb
        {0.39, P::Inland, 50.0, 0.0, 1.2026},        // 1.7·qb·5^0.37
        {0.39, P::Inland, 51.0, 0.0, 1.2109},        // 2.1·qb·5.1^0.24
        {0.47, P::Coast, 4.0, 0.0, 0.846},           // 1.8·qb
        {0.47, P::Coast, 10.0, 0.0, 1.081},          // 2.3·qb
        {0.56, P::NorthSeaIslands, 2.0, 0.0, 1.1},   // kN/m², not a multiple of qb
        {0.56, P::NorthSeaIslands, 10.0, 0.0, 1.5},
        {0.39, P::Category2, 10.0, 900.0, 0.9009},   // (0.2 + 0.9)·0.819
        {0.39, P::Category2, 10.0, 1100.0, 1.0647},  // the last altitude with a value
        {0.39, P::Category2, 10.0, 1100.5, std::nullopt},
        {0.39, P::Category2, 300.0, 0.0, 1.8526},    // 2.1·qb·30^0.24, the top of the profile
        {0.39, P::Category2, 300.5, 0.0, std::nullopt},
    };
    for (const auto& c : cases) {
        const PublishedValue v = GermanPeakPressure(50, c.qb, c.profile, c.z, c.A);
        const std::string at = std::string(GermanWindProfileName(c.profile)) + " z " + std::to_string(c.z) + " A " +
                               std::to_string(c.A);
        ASSERT_EQ(v.value.has_value(), c.qp.has_value()) << at;
        if (c.qp) EXPECT_NEAR(*v.value, *c.qp, kHand) << at;
        else EXPECT_FALSE(v.note.empty()) << at;
    }
    // 2.1·qb first, then the power: the printed order.
    EXPECT_EQ(*GermanPeakPressure(50, 0.39, P::Category2, 23.0, 0.0).value, 2.1 * 0.39 * std::pow(2.3, 0.24));
}

TEST(PublishedWind, ZonesAndProfiles) {
    using P = GermanWindProfile;
    const struct {
        P p;
        int16_t zone;
        bool listed;
    } cases[] = {{P::Coast, 1, false},           {P::Coast, 2, true},           {P::Inland, 1, true},
                 {P::NorthSeaIslands, 3, false}, {P::NorthSeaIslands, 4, true}, {P::Category1, 0, false},
                 {P::Category4, 5, false}};
    for (const auto& c : cases) EXPECT_EQ(GermanProfileInZone(c.p, c.zone), c.listed);
    const double qb[] = {0.32, 0.39, 0.47, 0.56};
    for (int16_t z = 1; z <= 4; ++z) EXPECT_EQ(*GermanBasicPressure(50, z)->value, qb[z - 1]);
    EXPECT_FALSE(GermanBasicPressure(50, 5));
    for (P p : {P::Category1, P::Coast, P::NorthSeaIslands})
        EXPECT_EQ(GermanWindProfileFromName(GermanWindProfileName(p)), p);
    EXPECT_FALSE(GermanWindProfileFromName("Coast"));
}

}  // namespace
