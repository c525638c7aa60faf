// Basic semantics and number texts: they run once per field of every block
// file and table cell, so they must stay cheap.
#include <benchmark/benchmark.h>

#include "vocab/CodeLists.h"
#include "rules/modMath.h"
#include "support/vb.h"

namespace {

void BM_Val(benchmark::State& s) {
    for (auto _ : s) benchmark::DoNotOptimize(qvrl::Val("  1234.5678e-2 kN"));
}
BENCHMARK(BM_Val);

void BM_CIntOfText(benchmark::State& s) {
    const qvrl::Variant v("  2.5 ");
    for (auto _ : s) benchmark::DoNotOptimize(qvrl::CInt(v));
}
BENCHMARK(BM_CIntOfText);

void BM_FormatFixed(benchmark::State& s) {
    double x = 1.005;
    for (auto _ : s) {
        benchmark::DoNotOptimize(qvrl::Format(x, "#0.00"));
        x += 1e-9;
    }
}
BENCHMARK(BM_FormatFixed);

void BM_FormatExponent(benchmark::State& s) {
    for (auto _ : s) benchmark::DoNotOptimize(qvrl::Format(1234567.5, "0.000e+0"));
}
BENCHMARK(BM_FormatExponent);

void BM_NumberToFixedText(benchmark::State& s) {
    const qvrl::Variant v(0.6573221993242145);
    for (auto _ : s) {
        int16_t w = 12, d = 4;
        benchmark::DoNotOptimize(qvrl::NumberToFixedText(v, w, d));
    }
}
BENCHMARK(BM_NumberToFixedText);

void BM_SnowZoneFigure(benchmark::State& s) {
    for (auto _ : s) benchmark::DoNotOptimize(qvrl::SnowZoneFigure(54, 12, 45));
}
BENCHMARK(BM_SnowZoneFigure);

void BM_ParseSelectableCodes(benchmark::State& s) {
    const std::string codes = "_1_3_54_50_51_53_52_";
    for (auto _ : s) benchmark::DoNotOptimize(qvrl::ParseSelectableCodes(codes));
}
BENCHMARK(BM_ParseSelectableCodes);

}  // namespace
