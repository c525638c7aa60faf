// The benchmarks run with a per-user folder of their own, so that the traces
// and settings files they write never reach the user's, and go with the run.
// After the run come the ratios and rates the benchmarks registered.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <unistd.h>

#include "BenchEnv.h"
#include "Ratios.h"

namespace {

// Passes every run to the console and keeps the CPU time and the items per
// second of each benchmark: the median of its repetitions where there are
// several, else its one run.
class KeepingReporter : public benchmark::ConsoleReporter {
public:
    struct Figure {
        double cpuNs = 0.0;
        double itemsPerSecond = 0.0;
        bool median = false;
    };

    // Colours only on a terminal, so that a saved run reads as plain text.
    KeepingReporter() : ConsoleReporter(isatty(STDOUT_FILENO) ? OO_Defaults : OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& r : runs) {
            if (r.error_occurred) continue;
            const bool median = r.run_type == Run::RT_Aggregate;
            if (median && r.aggregate_name != "median") continue;
            Figure& f = figures_[r.run_name.str()];
            if (f.median && !median) continue;
            f.median = median;
            f.cpuNs = r.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(r.time_unit) * 1e9;
            const auto items = r.counters.find("items_per_second");
            f.itemsPerSecond = items == r.counters.end() ? 0.0 : items->second.value;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void PrintFigures() const {
        bool any = false;
        auto heading = [&any] {
            if (!any) std::printf("\nSide by side (CPU time):\n");
            any = true;
        };
        for (const auto& r : qvrl::bench::Ratios()) {
            const auto s = figures_.find(r.subject);
            const auto y = figures_.find(r.yardstick);
            if (s == figures_.end() || y == figures_.end() || y->second.cpuNs <= 0.0) continue;
            heading();
            const double ratio = s->second.cpuNs / y->second.cpuNs;
            std::printf("  %-52s %6.2f x  (%.1f ns / %.1f ns; goal <= %.1f x) %s\n", r.what, ratio,
                        s->second.cpuNs, y->second.cpuNs, r.goal, ratio <= r.goal ? "met" : "NOT met");
        }
        for (const auto& r : qvrl::bench::Rates()) {
            const auto b = figures_.find(r.benchmark);
            if (b == figures_.end() || b->second.itemsPerSecond <= 0.0) continue;
            heading();
            const double rate = b->second.itemsPerSecond;
            if (r.goal > 0.0)
                std::printf("  %-52s %9.0f /s  (goal >= %.0f /s) %s\n", r.what, rate, r.goal,
                            rate >= r.goal ? "met" : "NOT met");
            else
                std::printf("  %-52s %9.0f /s\n", r.what, rate);
        }
    }

private:
    std::map<std::string, Figure> figures_;
};

}  // namespace

int main(int argc, char** argv) {
    int status = 0;
    {
        const qvrl::bench::TempFolder user("user");
        qvrl::bench::ScopedEnv env;
        env.Set("APPDATA", user.path().string());
        benchmark::Initialize(&argc, argv);
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
        KeepingReporter reporter;
        benchmark::RunSpecifiedBenchmarks(&reporter);
        reporter.PrintFigures();
        benchmark::Shutdown();
    }
    return status;
}
