// Cost of one call of each German load rule. The inputs cycle through a small
// set so that every branch of a rule is taken and nothing is folded away.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "rules/modSnow.h"
#include "rules/modWind.h"

namespace {

using namespace qvrl;

constexpr std::array<double, 8> kBuildingHeights = {-1.0, 4.0, 8.0, 12.0, 30.0, 60.0, 100.0, 150.0};
constexpr std::array<double, 8> kTerrain = {-10.0, 150.0, 250.0, 480.0, 720.0, 850.0, 950.0, 1200.0};
constexpr std::array<double, 8> kPitches = {-1.0, 0.0, 15.0, 30.0, 37.5, 45.0, 60.0, 75.0};
constexpr std::array<double, 8> kSteps = {20.0, 49.9, 50.0, 70.0, 90.0, 110.0, 150.0, 200.0};

template <class A>
double At(const A& values, std::size_t i) {
    return values[i % values.size()];
}

void BM_WindPressure_DIN1055_4_1986(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(WindPressure_DIN1055_4_1986(At(kBuildingHeights, i++)));
    }
}
BENCHMARK(BM_WindPressure_DIN1055_4_1986);

void BM_WindReference(benchmark::State& state) {
    int16_t zone = 0;
    for (auto _ : state) {
        double q = 0.0;
        double v = 0.0;
        WindReference(zone, q, v);
        benchmark::DoNotOptimize(q);
        benchmark::DoNotOptimize(v);
        zone = static_cast<int16_t>((zone + 1) % 7);
    }
}
BENCHMARK(BM_WindReference);

void BM_WindProfilePressure(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const auto cat = static_cast<int16_t>(1 + i % 6);
        benchmark::DoNotOptimize(WindProfilePressure(0.39, 25.0, cat, At(kBuildingHeights, i / 6)));
        ++i;
    }
}
BENCHMARK(BM_WindProfilePressure);

void BM_WindPressure_DIN1055_4_2005(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const auto zone = static_cast<int16_t>(1 + i % 5);
        const auto cat = static_cast<int16_t>(1 + i % 6);
        benchmark::DoNotOptimize(WindPressure_DIN1055_4_2005(zone, cat, At(kBuildingHeights, i),
                                                             At(kTerrain, i / 3)));
        ++i;
    }
}
BENCHMARK(BM_WindPressure_DIN1055_4_2005);

void BM_WindVelocityToPressure(benchmark::State& state) {
    double v = 20.0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(WindVelocityToPressure(v));
        v = v < 50.0 ? v + 0.5 : 20.0;
    }
}
BENCHMARK(BM_WindVelocityToPressure);

void BM_StandardSnowLoad_DIN1055_5_1975(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const auto zone = static_cast<int16_t>(1 + i % 4);
        benchmark::DoNotOptimize(StandardSnowLoad_DIN1055_5_1975(zone, At(kTerrain, i / 4)));
        ++i;
    }
}
BENCHMARK(BM_StandardSnowLoad_DIN1055_5_1975);

void BM_StandardSnowLoad_EDIN1055_5_2004(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        const auto zone = static_cast<int16_t>(1 + i % 3);
        benchmark::DoNotOptimize(StandardSnowLoad_EDIN1055_5_2004(zone, At(kTerrain, i / 3)));
        ++i;
    }
}
BENCHMARK(BM_StandardSnowLoad_EDIN1055_5_2004);

void BM_StandardSnowLoad_DIN1055_7_2005(benchmark::State& state) {
    constexpr std::array<int16_t, 5> zones = {1, 11, 2, 21, 3};
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            StandardSnowLoad_DIN1055_7_2005(zones[i % zones.size()], At(kTerrain, i / 5)));
        ++i;
    }
}
BENCHMARK(BM_StandardSnowLoad_DIN1055_7_2005);

void BM_SnowShapeDIN(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        double m1 = 0.0;
        double m2 = 0.0;
        SnowShapeDIN(At(kPitches, i++), m1, m2);
        benchmark::DoNotOptimize(m1);
        benchmark::DoNotOptimize(m2);
    }
}
BENCHMARK(BM_SnowShapeDIN);

void BM_SnowBagFactors(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        double m1 = 0.0;
        double m2 = 0.0;
        SnowBagFactors(At(kSteps, i), 0.85 + 0.1 * static_cast<double>(i % 3), m1, m2);
        benchmark::DoNotOptimize(m1);
        benchmark::DoNotOptimize(m2);
        ++i;
    }
}
BENCHMARK(BM_SnowBagFactors);

void BM_SnowBag(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        double length = 0.0;
        benchmark::DoNotOptimize(SnowBag(0.8, 1.6, At(kSteps, i++), 0.85, length));
        benchmark::DoNotOptimize(length);
    }
}
BENCHMARK(BM_SnowBag);

void BM_SnowOverhang(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(SnowOverhang(0.5 + 0.25 * static_cast<double>(i++ % 8)));
    }
}
BENCHMARK(BM_SnowOverhang);

void BM_SnowCatchingFence(benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(SnowCatchingFence(0.8, 1.6, 0.85, 4.0, At(kPitches, i++)));
    }
}
BENCHMARK(BM_SnowCatchingFence);

}  // namespace
