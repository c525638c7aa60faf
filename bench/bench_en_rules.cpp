// Cost of one call of the Eurocode rules as a dialog makes them on every input.

#include <benchmark/benchmark.h>

#include <cstdint>

#include "rules/modSnowEN.h"
#include "rules/modWindEN.h"

namespace {

// Heights cycle so that no call repeats the one before.
constexpr double kHeights[8] = {3.0, 7.5, 10.0, 18.0, 25.0, 42.0, 80.0, 150.0};

void BM_WindPressure_EN_1991_1_4(benchmark::State& state, int16_t CtrlNA) {
    double town = 0.0;
    unsigned i = 0;
    for (auto _ : state) {
        const double z = kHeights[i++ & 7u];
        benchmark::DoNotOptimize(qvrl::WindPressure_EN_1991_1_4(CtrlNA, 2, z, 0.0, 25.0, 0.1, 0.5,
                                                                1.0, 1.0, 0.0, town));
    }
}
BENCHMARK_CAPTURE(BM_WindPressure_EN_1991_1_4, Eurocode54, int16_t{54});
BENCHMARK_CAPTURE(BM_WindPressure_EN_1991_1_4, Austria51, int16_t{51});

void BM_StandardSnowLoad_EN_1991_1_3(benchmark::State& state) {
    unsigned i = 0;
    for (auto _ : state) {
        const double A = kHeights[i++ & 7u] * 10.0;
        benchmark::DoNotOptimize(qvrl::StandardSnowLoad_EN_1991_1_3(A, 54, 2, 2.0));
    }
}
BENCHMARK(BM_StandardSnowLoad_EN_1991_1_3);

void BM_SnowShapeEN(benchmark::State& state) {
    double m1 = 0.0, m2 = 0.0, m3 = 0.0;
    unsigned i = 0;
    for (auto _ : state) {
        const double alpha = kHeights[i++ & 7u] * 0.5;
        qvrl::SnowShapeEN(53, alpha, true, 0.1, m1, m2, m3);
        benchmark::DoNotOptimize(m1);
        benchmark::DoNotOptimize(m2);
        benchmark::DoNotOptimize(m3);
    }
}
BENCHMARK(BM_SnowShapeEN);

}  // namespace
