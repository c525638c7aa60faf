#pragma once
// Figures that only mean something side by side: a rule against a plain loop
// of its arithmetic, a batch against its goal. Each benchmark file registers
// its own; main prints them after the run from the CPU time of each benchmark
// (the median when the run has repetitions).

#include <vector>

namespace qvrl::bench {

// subject / yardstick in CPU time; goal is the ratio not to exceed.
struct Ratio {
    const char* what;
    const char* subject;
    const char* yardstick;
    double goal;
};

// The benchmark's items per CPU second; goal is the rate to reach, 0 for none.
struct Rate {
    const char* what;
    const char* benchmark;
    double goal;
};

inline std::vector<Ratio>& Ratios() {
    static std::vector<Ratio> r;
    return r;
}
inline std::vector<Rate>& Rates() {
    static std::vector<Rate> r;
    return r;
}

struct RegisterRatio {
    explicit RegisterRatio(const Ratio& r) { Ratios().push_back(r); }
};
struct RegisterRate {
    explicit RegisterRate(const Rate& r) { Rates().push_back(r); }
};

}  // namespace qvrl::bench
