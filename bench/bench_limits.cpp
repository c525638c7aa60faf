// The rules against the limit: each next to a plain loop of the same
// arithmetic without checks, tables or calls, on the same inputs. The ratio
// is what checked arithmetic and the rule's bookkeeping cost; goal 2×.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>

#include "Ratios.h"
#include "rules/modSnow.h"
#include "rules/modWind.h"
#include "rules/modWindEN.h"

namespace {

// Heights cycle so that no call repeats the one before; all above the
// heights where the profiles turn constant.
constexpr double kHeights[8] = {4.0, 7.5, 10.0, 18.0, 25.0, 42.0, 80.0, 150.0};
constexpr double kAltitudes[8] = {210.0, 280.0, 350.0, 420.0, 500.0, 620.0, 740.0, 790.0};

// EN 1991-1-4, category II, vb = 25 m/s, no annex.
void BM_Limit_EN_PeakPressure_Rule(benchmark::State& state) {
    double town = 0.0;
    unsigned i = 0;
    for (auto _ : state) {
        const double z = kHeights[i++ & 7u];
        benchmark::DoNotOptimize(
            qvrl::WindPressure_EN_1991_1_4(54, 2, z, 0.0, 25.0, 0.0, 0.0, 1.0, 1.0, 0.0, town));
    }
}
BENCHMARK(BM_Limit_EN_PeakPressure_Rule);

void BM_Limit_EN_PeakPressure_Plain(benchmark::State& state) {
    double z0 = 0.05;
    double vb = 25.0;
    unsigned i = 0;
    for (auto _ : state) {
        // Kept opaque, so that the power is taken in every pass as the rule's
        // arithmetic takes it.
        benchmark::DoNotOptimize(z0);
        benchmark::DoNotOptimize(vb);
        const double z = kHeights[i++ & 7u];
        const double kr = 0.19 * std::pow(z0 / 0.05, 0.07);
        const double cr = kr * std::log(z / z0);
        const double Iv = 1.0 / std::log(z / z0);
        const double ce = (7.0 * Iv + 1.0) * cr * cr;
        const double qb = 0.5 * 1.25 * vb * vb / 1000.0;
        benchmark::DoNotOptimize(ce * qb);
    }
}
BENCHMARK(BM_Limit_EN_PeakPressure_Plain);

// DIN 1055-4:2005, zone 2, category II, below 800 m.
void BM_Limit_DIN_WindPressure_Rule(benchmark::State& state) {
    unsigned i = 0;
    for (auto _ : state) {
        const double z = kHeights[i & 7u];
        const double h = kAltitudes[(i >> 3) & 7u];
        ++i;
        benchmark::DoNotOptimize(qvrl::WindPressure_DIN1055_4_2005(2, 2, z, h));
    }
}
BENCHMARK(BM_Limit_DIN_WindPressure_Rule);

void BM_Limit_DIN_WindPressure_Plain(benchmark::State& state) {
    double qref = 0.39;
    unsigned i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(qref);
        const double z = kHeights[i & 7u];
        const double h = kAltitudes[(i >> 3) & 7u];
        ++i;
        double q = 2.1 * qref * std::pow(z / 10.0, 0.24);
        if (h > 800.0) q = (h / 1000.0 + 0.2) * q;
        if (h > 1100.0) q = 999.0;
        benchmark::DoNotOptimize(q);
    }
}
BENCHMARK(BM_Limit_DIN_WindPressure_Plain);

// DIN 1055-5:2005, zone 2.
void BM_Limit_DIN_SnowLoad_Rule(benchmark::State& state) {
    unsigned i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(qvrl::StandardSnowLoad_DIN1055_7_2005(2, kAltitudes[i++ & 7u]));
    }
}
BENCHMARK(BM_Limit_DIN_SnowLoad_Rule);

void BM_Limit_DIN_SnowLoad_Plain(benchmark::State& state) {
    double factor = 1.91;
    unsigned i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(factor);
        const double h = kAltitudes[i++ & 7u];
        const double x = (h + 140.0) / 760.0;
        double s = factor * x * x + 0.25;
        if (s < 0.85) s = 0.85;
        if (h > 1500.0) s = 999.0;
        benchmark::DoNotOptimize(s);
    }
}
BENCHMARK(BM_Limit_DIN_SnowLoad_Plain);

const qvrl::bench::RegisterRatio kEN({"EN peak velocity pressure, rule / plain loop",
                                      "BM_Limit_EN_PeakPressure_Rule", "BM_Limit_EN_PeakPressure_Plain", 2.0});
const qvrl::bench::RegisterRatio kDINWind({"DIN 1055-4:2005 wind pressure, rule / plain loop",
                                           "BM_Limit_DIN_WindPressure_Rule", "BM_Limit_DIN_WindPressure_Plain",
                                           2.0});
const qvrl::bench::RegisterRatio kDINSnow({"DIN 1055-5:2005 snow load, rule / plain loop",
                                           "BM_Limit_DIN_SnowLoad_Rule", "BM_Limit_DIN_SnowLoad_Plain", 2.0});

}  // namespace
