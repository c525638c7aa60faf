// What a host pays per call for reaching a member by name: one member,
// WindPressure_DIN1055_4_2005, called directly, through the late-bound layer
// and through the C API. The differences are the overhead of each adapter.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "automation/CWindSnow.h"
#include "automation/Dispatch.h"
#include "qvroofload.h"

namespace {

// Heights cycle so that no call repeats the one before.
constexpr double kHeights[8] = {3.0, 7.5, 10.0, 18.0, 25.0, 42.0, 80.0, 150.0};

void BM_Direct(benchmark::State& state) {
    const qvrl::CWindSnow ws;
    unsigned i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ws.WindPressure_DIN1055_4_2005(2, 2, kHeights[i++ & 7u], 0.0));
    }
}
BENCHMARK(BM_Direct);

void BM_LateBound(benchmark::State& state) {
    auto ws = qvrl::CreateObjectByName("CWindSnow");
    std::vector<qvrl::Variant> args(4);
    unsigned i = 0;
    for (auto _ : state) {
        args[0] = qvrl::Variant(int16_t{2});
        args[1] = qvrl::Variant(int16_t{2});
        args[2] = qvrl::Variant(kHeights[i++ & 7u]);
        args[3] = qvrl::Variant(0.0);
        benchmark::DoNotOptimize(ws->Invoke("WindPressure_DIN1055_4_2005", args));
    }
}
BENCHMARK(BM_LateBound);

void BM_CApi(benchmark::State& state) {
    qvrl_handle ws = 0;
    if (qvrl_create("CWindSnow", &ws) != QVRL_OK) {
        state.SkipWithError("qvrl_create failed");
        return;
    }
    qvrl_value args[4];
    qvrl_value result;
    unsigned i = 0;
    for (auto _ : state) {
        args[0] = qvrl_int16(2);
        args[1] = qvrl_int16(2);
        args[2] = qvrl_double(kHeights[i++ & 7u]);
        args[3] = qvrl_double(0.0);
        if (qvrl_call(ws, "WindPressure_DIN1055_4_2005", args, 4, &result) != QVRL_OK) {
            state.SkipWithError(qvrl_last_error_description());
            break;
        }
        benchmark::DoNotOptimize(result.u.dbl);
    }
    qvrl_release(ws);
}
BENCHMARK(BM_CApi);

}  // namespace
