// The benchmarks run with a per-user folder of their own, so that the traces
// and settings files they write never reach the user's, and go with the run.

#include <benchmark/benchmark.h>

#include <cstdlib>

#include "BenchEnv.h"

int main(int argc, char** argv) {
    int status = 0;
    {
        const qvrl::bench::TempFolder user("user");
        qvrl::bench::ScopedEnv env;
        env.Set("APPDATA", user.path().string());
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
    }
    return status;
}
