#include "rules/modWindEN.h"

#include <gtest/gtest.h>

#include "ErrorOf.h"

#include <cmath>

#include "rules/modWindUK.h"
#include "support/errors.h"

namespace qvrl {
namespace {

// Where a figure is only published rounded to four places.
constexpr double kFourPlaces = 0.5e-4;

using test::ErrorOf;

struct Site {
    int16_t na = 54, cat = 2;
    double z = 10.0, qb = 1.0, vbase = 0.0, phi = 0.0, s = 0.0, cDir = 1.0, cSeason = 1.0;
};

// With qb 1.0 the peak pressure is ce itself.
double Peak(const Site& x) {
    double town = 0.0;
    return WindPressure_EN_1991_1_4(x.na, x.cat, x.z, x.qb, x.vbase, x.phi, x.s, x.cDir, x.cSeason,
                                    0.0, town);
}

TEST(WindEN, PublishedExposureFactors) {
    struct Case {
        Site site;
        double ce;
    };
    const Case cases[] = {
        {{54, 2, 10.0}, 2.3523},
        {{50, 0, 10.0}, 2.9845},
        {{54, 4, 5.0}, 1.1762},    // z raised to zmin 10
        {{54, 2, 300.0}, 4.4816},  // cr held at 200 m, Iv not
        {{54, 2, 10.0, 1.0, 0.0, 0.2, 0.5}, 3.0660},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "NA " << c.site.na << " cat " << c.site.cat << " z "
                                        << c.site.z << " phi " << c.site.phi);
        EXPECT_NEAR(Peak(c.site), c.ce, kFourPlaces);
    }
    double zmin = 2.0;
    EXPECT_NEAR(RoughnessFactor(54, 0.19, 10.0, 0.05, zmin, 2, 0, 0), 1.0067, kFourPlaces);
    EXPECT_NEAR(TurbulenceIntensity(54, 10.0, 0.05, 2.0, 1.0, 2, 0, 0), 0.1887, kFourPlaces);
    EXPECT_NEAR(BasicPressure(54, 0.0, 25.0, 1.0, 1.0), 0.3906, kFourPlaces);
    EXPECT_EQ(BasicPressure(54, 0.5, 25.0, 1.0, 1.0), 0.5);
}

TEST(WindEN, TerrainParameters) {
    const double z0[] = {0.003, 0.01, 0.05, 0.3, 1.0};
    const double zmin[] = {1.0, 1.0, 2.0, 5.0, 10.0};
    for (int16_t cat = 0; cat <= 4; ++cat) {
        double a = 0.0, b = 0.0;
        TerrainParameters(cat, a, b);
        EXPECT_EQ(a, z0[cat]) << cat;
        EXPECT_EQ(b, zmin[cat]) << cat;
        EXPECT_EQ(TerrainFactor(a), std::pow(z0[cat] / 0.05, 0.07) * 0.19) << cat;
    }
    double a = -1.0, b = -1.0;
    TerrainParameters(5, a, b);
    EXPECT_EQ(a, -1.0);
    EXPECT_EQ(b, -1.0);
}

TEST(WindEN, HeightLimitsOfRoughnessAndTurbulence) {
    const double kr = 0.19, z0 = 0.05;
    auto cr = [&](double z) {
        double zmin = 2.0;
        return RoughnessFactor(54, kr, z, z0, zmin, 2, 0, 0);
    };
    auto iv = [&](double z) { return TurbulenceIntensity(54, z, z0, 2.0, 1.0, 2, 0, 0); };
    EXPECT_EQ(cr(1.0), kr * std::log(2.0 / z0));
    EXPECT_EQ(cr(2.0), kr * std::log(2.0 / z0));
    EXPECT_EQ(cr(300.0), kr * std::log(200.0 / z0));
    EXPECT_EQ(cr(200.0), kr * std::log(200.0 / z0));
    EXPECT_LT(cr(199.0), cr(200.0));
    EXPECT_EQ(iv(1.0), 1.0 / (1.0 * std::log(2.0 / z0)));
    EXPECT_EQ(iv(300.0), 1.0 / (1.0 * std::log(300.0 / z0)));
    // At or below 1e-5 the ratio gives no turbulence, not a fault.
    EXPECT_EQ(TurbulenceIntensity(54, 1e-6, 1.0, 0.0, 1.0, 2, 0, 0), 0.0);
}

TEST(WindEN, OrographyFactor) {
    struct Case {
        int16_t na;
        double phi, co;
    };
    const Case cases[] = {
        {54, 0.0, 1.0},
        {54, 0.0499, 1.0},
        {54, 0.05, 2.0 * 0.5 * 0.05 + 1.0},
        {54, 0.2, 2.0 * 0.5 * 0.2 + 1.0},
        {54, 0.2999, 2.0 * 0.5 * 0.2999 + 1.0},
        {54, 0.3, 0.6 * 0.5 + 1.0},
        {54, 0.9, 0.6 * 0.5 + 1.0},
        {53, 0.2, 2.0 * 0.5 * 0.2 + 1.0},
        {51, 0.2, 1.0},
        {51, 0.3, 1.0},
    };
    for (const auto& c : cases) EXPECT_EQ(OrographyFactor(c.na, c.phi, 0.5), c.co) << c.na << " " << c.phi;
}

TEST(WindEN, ExposureMultipliesLeftToRight) {
    const double Iv = 0.12, cr = 0.8, co = 1.2;
    const double ordered = (7.0 * Iv + 1.0) * cr * cr * co * co;
    ASSERT_NE(ordered, (7.0 * Iv + 1.0) * (cr * cr) * (co * co));
    EXPECT_EQ(ExposureFactor(54, cr, co, Iv, 2, 10.0, 0, 0), ordered);
    // Austria ignores the general factors and the clamped heights.
    EXPECT_EQ(ExposureFactor(51, cr, co, Iv, 2, 300.0, 0, 0), 2.1 * std::pow(300.0 / 10.0, 0.24));
}

TEST(WindEN, BasicPressureByAnnex) {
    // The general annex ignores both factors.
    EXPECT_EQ(BasicPressure(54, 0.5, 25.0, 0.8, 0.9), 0.5);
    EXPECT_EQ(BasicPressure(54, 0.0, 25.0, 0.8, 0.9), 0.5 * 1.25 * 25.0 * 25.0 / 1000.0);
    // A given qb scales once by each factor; a velocity scales squared.
    EXPECT_EQ(BasicPressure(50, 0.5, 25.0, 0.8, 1.0), 0.5 * 0.8 * 1.0);
    const double v = 25.0 * 0.8 * 0.9;
    EXPECT_EQ(BasicPressure(50, 0.0, 25.0, 0.8, 0.9), 0.5 * 1.25 * v * v / 1000.0);
    // 1e-5 counts as given, anything below does not.
    EXPECT_EQ(BasicPressure(50, 1e-5, 25.0, 1.0, 1.0), 1e-5);
    EXPECT_EQ(BasicPressure(50, 0.99e-5, 25.0, 1.0, 1.0), 0.5 * 1.25 * 25.0 * 25.0 / 1000.0);
    // The British annex always starts from the velocity, with its own factors.
    EXPECT_EQ(BasicPressure(53, 0.5, 25.0, 0.5, 0.5), 0.5 * 1.226 * 25.0 * 25.0 / 1000.0);
    const double ordered = 0.5 * 1.25 * 24.3 * 24.3 / 1000.0;
    ASSERT_NE(ordered, 0.5 * 1.25 * (24.3 * 24.3) / 1000.0);
    EXPECT_EQ(BasicPressure(50, 0.0, 24.3, 1.0, 1.0), ordered);
}

TEST(WindEN, BritishDirectionAndSeason) {
    struct Case {
        double angle, factor;
    };
    const Case cases[] = {
        {-1.0, 0.78},
        {0.0, 0.78},
        {15.0, ((15.0 - 0.0) / 30.0) * (0.73 - 0.78) + 0.78},
        {30.0, 0.73},
        {240.0, 1.0},
        {255.0, ((255.0 - 240.0) / 30.0) * (0.99 - 1.0) + 1.0},
        {359.0, ((359.0 - 330.0) / 30.0) * (0.78 - 0.82) + 0.82},
        {360.0, 0.78},
        {720.0, 0.78},
    };
    for (const auto& c : cases) EXPECT_EQ(WindDirectionFactor(c.angle), c.factor) << c.angle;
    EXPECT_EQ(WindSeasonFactor(1, 12), 1.0);
    EXPECT_EQ(WindSeasonFactor(7, 3), 1.0);
}

TEST(WindEN, AustrianFactors) {
    struct Case {
        int16_t cat;
        double z, ce, cr, iv;
    };
    // Below zmin (5, 10, 15 m) the factors hold the value at zmin.
    const Case cases[] = {
        {2, 3.0, 2.1 * std::pow(5.0 / 10.0, 0.24), std::pow(5.0 / 10.0, 0.3),
         0.18 * std::pow(5.0 / 10.0, -0.15)},
        {3, 9.9, 1.75 * std::pow(10.0 / 10.0, 0.29), 0.593 * std::pow(10.0 / 10.0, 0.42),
         0.29 * std::pow(10.0 / 10.0, -0.21)},
        {3, 20.0, 1.75 * std::pow(20.0 / 10.0, 0.29), 0.593 * std::pow(20.0 / 10.0, 0.42),
         0.29 * std::pow(20.0 / 10.0, -0.21)},
        {4, 14.9, 1.2 * std::pow(15.0 / 10.0, 0.38), 0.263 * std::pow(15.0 / 10.0, 0.64),
         0.46 * std::pow(15.0 / 10.0, -0.32)},
    };
    const double zminOf[] = {0, 0, 5.0, 10.0, 15.0};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "cat " << c.cat << " z " << c.z);
        double zmin = 0.0;
        EXPECT_EQ(ExposureFactorAT(c.cat, c.z), c.ce);
        EXPECT_EQ(RoughnessFactorAT(c.cat, c.z, zmin), c.cr);
        EXPECT_EQ(zmin, zminOf[c.cat]);
        EXPECT_EQ(TurbulenceAT(c.cat, c.z), c.iv);
    }
    for (int16_t cat : {0, 1, 5}) {
        double zmin = 7.0;
        EXPECT_EQ(ExposureFactorAT(cat, 10.0), 0.0) << cat;
        EXPECT_EQ(RoughnessFactorAT(cat, 10.0, zmin), 0.0) << cat;
        EXPECT_EQ(zmin, 7.0) << cat;
        EXPECT_EQ(TurbulenceAT(cat, 10.0), 0.0) << cat;
    }
}

TEST(WindEN, PeakPressureByAnnex) {
    EXPECT_EQ(Peak({51, 2, 3.0}), 2.1 * std::pow(0.5, 0.24));
    EXPECT_EQ(Peak({51, 2, 3.0, 1.0, 0.0, 0.5, 1.0}), 2.1 * std::pow(0.5, 0.24));
    EXPECT_EQ(Peak({51, 2, 300.0}), 2.1 * std::pow(300.0 / 10.0, 0.24));  // not held at 200 m
    EXPECT_EQ(Peak({51, 0, 10.0}), 0.0);
    EXPECT_EQ(Peak({51, 1, 10.0}), 0.0);
    // The general annex ignores cDir; the German scales a given qb once.
    const double base = Peak({54, 2, 10.0, 0.5});
    EXPECT_EQ(Peak({54, 2, 10.0, 0.5, 0.0, 0.0, 0.0, 0.8}), base);
    EXPECT_EQ(Peak({54, 2, 10.0, 0.0, 25.0, 0.0, 0.0, 0.8}), Peak({54, 2, 10.0, 0.0, 25.0}));
    EXPECT_EQ(Peak({50, 2, 10.0, 0.5, 0.0, 0.0, 0.0, 0.8}), Peak({50, 2, 10.0}) * (0.5 * 0.8 * 1.0));
    // The British figures are not available yet and answer 0.0.
    EXPECT_EQ(Peak({53, 2, 10.0, 0.0, 25.0}), 0.0);
    EXPECT_EQ(ExposureFactorUK(3, 10.0, 5000.0, 200.0), 0.0);
}

// The whole chain is its factors taken one after another, to the last bit,
// wherever z lies against zmin and the 200 m that holds cr; a fault of any
// factor is 0.0.
TEST(WindEN, PeakPressureIsItsFactorsComposed) {
    const auto composed = [](const Site& x) {
        try {
            double z0 = 0.0, zmin = 0.0, town = 0.0;
            TerrainParameters(x.cat, z0, zmin);
            const double cr = RoughnessFactor(x.na, TerrainFactor(z0), x.z, z0, zmin, x.cat, 0.0, town);
            const double co = OrographyFactor(x.na, x.phi, x.s);
            const double Iv = TurbulenceIntensity(x.na, x.z, z0, zmin, co, x.cat, 0.0, town);
            const double ce = ExposureFactor(x.na, cr, co, Iv, x.cat, x.z, 0.0, town);
            return fp::Mul(ce, BasicPressure(x.na, x.qb, x.vbase, x.cDir, x.cSeason));
        } catch (const RuntimeError&) {
            return 0.0;
        }
    };
    for (const int16_t na : {50, 52, 54})
        for (const int16_t cat : {-1, 0, 1, 2, 3, 4, 5})
            for (const double z : {-1.0, 0.0, 0.5, 1.0, 2.0, 5.0, 10.0, 37.3, 199.99, 200.0, 200.01, 350.0, 1e6, 1e308})
                for (const double qb : {0.0, 0.39})
                    for (const double phi : {0.0, 0.1, 0.4}) {
                        const Site x{na, cat, z, qb, 25.0, phi, 0.6, 0.9, 0.95};
                        EXPECT_EQ(Peak(x), composed(x)) << na << " " << cat << " " << z << " " << qb << " " << phi;
                    }
}

TEST(WindEN, EveryFaultBecomesZeroPressure) {
    for (int16_t cat : {-1, 5, 100}) EXPECT_EQ(Peak({54, cat, 10.0}), 0.0) << cat;
    EXPECT_EQ(Peak({54, 5, 0.0}), 0.0);
    EXPECT_EQ(Peak({54, 2, 10.0, 1e308}), 0.0);           // ce · qb overflows
    EXPECT_EQ(Peak({54, 2, 10.0, 0.0, 1e200}), 0.0);      // v · v overflows
    EXPECT_EQ(Peak({54, 2, std::nan("")}), 0.0);
}

TEST(WindEN, FactorFaultNumbers) {
    double zmin = 0.0;
    // Unknown category: z0 and zmin stay 0.0.
    EXPECT_EQ(ErrorOf([&] { RoughnessFactor(54, TerrainFactor(0.0), 10.0, 0.0, zmin, 5, 0, 0); }),
              err::DivisionByZero);
    EXPECT_EQ(ErrorOf([&] { RoughnessFactor(54, 0.0, 0.0, 0.0, zmin, 5, 0, 0); }), err::Overflow);
    EXPECT_EQ(ErrorOf([&] { RoughnessFactor(54, 0.19, 10.0, -0.05, zmin, 2, 0, 0); }),
              err::InvalidCall);
    EXPECT_EQ(ErrorOf([] { TerrainFactor(-0.05); }), err::InvalidCall);
    // ln 1 = 0 under the division.
    EXPECT_EQ(ErrorOf([] { TurbulenceIntensity(54, 1.0, 1.0, 0.0, 1.0, 2, 0, 0); }),
              err::DivisionByZero);
    EXPECT_EQ(ErrorOf([] { BasicPressure(50, 0.0, 1e200, 1.0, 1.0); }), err::Overflow);
    EXPECT_EQ(ErrorOf([] { ExposureFactorAT(2, std::nan("")); }), err::Overflow);
}

}  // namespace
}  // namespace qvrl
