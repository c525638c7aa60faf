#pragma once
// The newly created roof file for AGS 05315000, Norm 1, q0 0.5 kN/m², h 10 m,
// zone 2, category 1, s0 0.75 kN/m² at 250 m in snow zone 2: the reference
// text of the unit tests, the command-line tests and the benchmark.

namespace qvrl::test {

inline constexpr const char* kExampleBlockFile =
    "@VERSION Vers CtrlNorm\r\n"
    "VERSION 004 001\r\n"
    "@SELECTCODES\r\n"
    "SELECTCODES '_1_3_'\r\n"
    "@TOWN            AGS\r\n"
    "TOWN     '05315000'\r\n"
    "@WINDLOAD        Norm        q0          h         wz        cat         qb\r\n"
    "WINDLOAD          1   0.000050      10.00          2          1          0\r\n"
    "@SNOWLOAD        Norm        s0          h         sz\r\n"
    "SNOWLOAD          1   0.000075     250.00          2\r\n";

}  // namespace qvrl::test
