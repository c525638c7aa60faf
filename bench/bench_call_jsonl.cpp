// Requests per CPU second of `call --jsonl` and `cp --jsonl`, driven through
// the commands' own loops in process: a batch of requests in, the answers
// out. The `call` batch asks a DIN rule; the
// requests vary their inputs and spell the member in two ways, so that
// neither a single remembered answer nor one spelling can carry the figure.
// Target: 1,000,000 requests per CPU second for a DIN rule.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <sstream>
#include <string>

#include "Ratios.h"
#include "commands.h"

namespace {

constexpr std::size_t kBatch = 1000;

std::string DinBatch() {
    std::string text;
    for (std::size_t i = 0; i < kBatch; ++i) {
        const char* member = i % 7 == 0 ? "cwindsnow.windpressure_din1055_4_2005" : "CWindSnow.WindPressure_DIN1055_4_2005";
        text += std::string("{\"call\":\"") + member + "\",\"args\":[" + std::to_string(1 + i % 4) + "," +
                std::to_string(1 + i % 3) + "," + std::to_string(2.5 + static_cast<double>(i % 40)) + "," +
                std::to_string(100 * (i % 9)) + "]}\n";
    }
    return text;
}

void BM_CallJsonl_DinWindPressure(benchmark::State& state) {
    const std::string batch = DinBatch();
    std::ostringstream out;
    for (auto _ : state) {
        std::istringstream in(batch);
        out.str({});
        qvrl::cli::AnswerCallRequests(in, out);
        benchmark::DoNotOptimize(out.str().size());
    }
    // Every request must have been answered with a result, or the figure counts failures.
    if (out.str().find("error") != std::string::npos) state.SkipWithError("a request failed");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kBatch));
}
BENCHMARK(BM_CallJsonl_DinWindPressure)->Unit(benchmark::kMicrosecond);

const qvrl::bench::RegisterRate kRate({"call --jsonl, DIN rule requests per CPU second",
                                       "BM_CallJsonl_DinWindPressure", 1e6});

std::string GabledBatch() {
    std::string text;
    for (std::size_t i = 0; i < kBatch; ++i)
        text += R"({"form":"gabled","Theta":)" + std::to_string(90 * (i % 2)) + R"(,"Alpha":)" +
                std::to_string(5.0 + static_cast<double>(i % 60)) + "}\n";
    return text;
}

void BM_CpJsonl_Gabled(benchmark::State& state) {
    const std::string batch = GabledBatch();
    std::ostringstream out;
    for (auto _ : state) {
        std::istringstream in(batch);
        out.str({});
        qvrl::cli::AnswerCpRequests(in, out);
        benchmark::DoNotOptimize(out.str().size());
    }
    if (out.str().find("error") != std::string::npos) state.SkipWithError("a request failed");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kBatch));
}
BENCHMARK(BM_CpJsonl_Gabled)->Unit(benchmark::kMillisecond);

const qvrl::bench::RegisterRate kCpRate({"cp --jsonl, gabled roof requests per CPU second", "BM_CpJsonl_Gabled", 0.0});

}  // namespace
