// Requests per CPU second of `call --jsonl`, driven through the command's own
// loop in process: a batch of DIN rule requests in, the answers out. The
// requests vary their inputs and spell the member in two ways, so that
// neither a single remembered answer nor one spelling can carry the figure.
// Target: 1,000,000 requests per CPU second for a DIN rule.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <sstream>
#include <string>

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

}  // namespace
