// Cost of one selection on the built-in route, table build included: each
// call builds its table afresh, as a coefficient request does. The requests
// cycle through exact rows, brackets and misses so that nothing is folded away.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>

#include "cp/CWindCpTable.h"
#include "cp/modWindCp.h"
#include "cp/modWindCpConv.h"

namespace {

using namespace qvrl;

constexpr std::array<double, 8> kTheta = {0.0, 10.0, 45.0, 60.0, 90.0, 135.0, 170.0, 91.0};
constexpr std::array<double, 8> kAlpha = {-45.0, -10.0, 5.0, 12.5, 22.8, 30.0, 60.0001, 80.0};
constexpr std::array<double, 8> kRatio = {0.0, 0.03, 0.05, 0.075, 0.1, 0.15, 0.5, 0.0005};
constexpr std::array<double, 8> kHzuD = {0.1, 0.25, 0.614, 1.0, 3.0, 5.0, 10.0, 0.9995};

template <class A>
double At(const A& values, std::size_t i) {
    return values[i % values.size()];
}

void BM_Get_Wind_Cp_Satteldach(benchmark::State& state) {
    std::size_t i = 0;
    CpWindRecord rec;
    for (auto _ : state) {
        Get_Wind_Cp_Satteldach(At(kTheta, i), At(kAlpha, i / 8), rec);
        benchmark::DoNotOptimize(rec);
        ++i;
    }
}
BENCHMARK(BM_Get_Wind_Cp_Satteldach);

void BM_Get_Wind_Cp_Walmdach(benchmark::State& state) {
    std::size_t i = 0;
    CpWindRecord rec;
    for (auto _ : state) {
        Get_Wind_Cp_Walmdach(At(kTheta, i), At(kAlpha, i / 8), rec);
        benchmark::DoNotOptimize(rec);
        ++i;
    }
}
BENCHMARK(BM_Get_Wind_Cp_Walmdach);

void BM_Get_Wind_Cp_Pultdach(benchmark::State& state) {
    std::size_t i = 0;
    CpWindRecord rec;
    for (auto _ : state) {
        Get_Wind_Cp_Pultdach(At(kTheta, i), At(kAlpha, i / 8), rec);
        benchmark::DoNotOptimize(rec);
        ++i;
    }
}
BENCHMARK(BM_Get_Wind_Cp_Pultdach);

void BM_Get_Wind_Cp_Flachdach(benchmark::State& state) {
    std::size_t i = 0;
    CpWindRecord rec;
    for (auto _ : state) {
        // Which of the three inputs carries the ratio rotates, so every eaves type is chosen.
        const double v = At(kRatio, i / 4);
        const std::size_t which = i % 4;
        Get_Wind_Cp_Flachdach(which == 1 ? v : 0.0, which == 2 ? v : 0.0, which == 3 ? v * 900.0 : 0.0, rec);
        benchmark::DoNotOptimize(rec);
        ++i;
    }
}
BENCHMARK(BM_Get_Wind_Cp_Flachdach);

void BM_Get_Wind_Cp_Wand(benchmark::State& state) {
    std::size_t i = 0;
    CpWindRecord rec;
    for (auto _ : state) {
        Get_Wind_Cp_Wand(At(kHzuD, i++), rec);
        benchmark::DoNotOptimize(rec);
    }
}
BENCHMARK(BM_Get_Wind_Cp_Wand);

// A whole request as the host sees it: read the table, select, convert back.
void BM_GabledRequestThroughTheTable(benchmark::State& state) {
    std::size_t i = 0;
    CWindCpTable table;
    for (auto _ : state) {
        table.Theta(At(kTheta, i));
        table.Alpha(At(kAlpha, i / 8));
        CpWindRecord rec;
        Get_Wind_Cp_Satteldach(table.Theta(), table.Alpha(), rec);
        CpRecordToTable(rec, table);
        benchmark::DoNotOptimize(table.Area_F10());
        ++i;
    }
}
BENCHMARK(BM_GabledRequestThroughTheTable);

}  // namespace
