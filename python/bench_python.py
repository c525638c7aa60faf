#!/usr/bin/env python3
"""Cost of one call of CWindSnow.WindPressure_DIN1055_4_2005 from Python.

Times the call through the generated class, through the native extension
alone, and an empty Python method as the floor of any Python call. Given the
benchmark program (bench/qvrl_bench of a build), it also runs its direct C++
call of the same member and reports how many times slower each Python road is.

    PYTHONPATH=build/python /usr/bin/python3 python/bench_python.py --bench build/bench/qvrl_bench
"""

import argparse
import json
import os
import subprocess
import sys
import timeit

# This folder holds the package's sources without the built extension: the
# package is taken from PYTHONPATH (a build or an installation) instead.
if sys.path and os.path.abspath(sys.path[0]) == os.path.dirname(os.path.abspath(__file__)):
    del sys.path[0]

import qvroofload  # noqa: E402
from qvroofload import _qvroofload as native  # noqa: E402

HEIGHTS = (3.0, 7.5, 10.0, 18.0, 25.0, 42.0, 80.0, 150.0)


class _Empty:
    def WindPressure_DIN1055_4_2005(self, zone, category, z, terrain):
        return 0.0


def per_call_ns(stmt, number):
    # The best of several repeats: the least disturbed by the rest of the machine.
    best = min(timeit.repeat(stmt, number=number, repeat=7))
    return best / number / len(HEIGHTS) * 1e9


def direct_cpp_ns(bench):
    out = subprocess.run(
        [bench, "--benchmark_filter=^BM_Direct$", "--benchmark_format=json"],
        check=True, capture_output=True, text=True,
    ).stdout
    for b in json.loads(out)["benchmarks"]:
        if b["name"] == "BM_Direct":
            factor = {"ns": 1.0, "us": 1e3, "ms": 1e6}[b["time_unit"]]
            return b["cpu_time"] * factor
    raise SystemExit("BM_Direct not found in the output of " + bench)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bench", help="the Google Benchmark program, for the direct C++ call")
    parser.add_argument("--number", type=int, default=20000, help="loops per repeat")
    args = parser.parse_args()

    ws = qvroofload.CWindSnow()
    obj = ws._obj
    empty = _Empty()

    def module_road():
        for h in HEIGHTS:
            ws.WindPressure_DIN1055_4_2005(2, 2, h, 0.0)

    def native_road():
        for h in HEIGHTS:
            native.call(obj, "WindPressure_DIN1055_4_2005", (2, 2, h, 0.0))

    def empty_road():
        for h in HEIGHTS:
            empty.WindPressure_DIN1055_4_2005(2, 2, h, 0.0)

    rows = [
        ("qvroofload.CWindSnow method", per_call_ns(module_road, args.number)),
        ("_qvroofload.call", per_call_ns(native_road, args.number)),
        ("empty Python method", per_call_ns(empty_road, args.number)),
    ]
    base_name, base = "empty Python method", rows[2][1]
    if args.bench:
        base_name, base = "direct C++ call", direct_cpp_ns(args.bench)
        rows.append((base_name, base))
    print("%-30s %12s %10s" % ("road", "ns per call", "ratio"))
    for name, ns in rows:
        print("%-30s %12.1f %10.1f" % (name, ns, ns / base))
    print("ratio: time per call over the %s" % base_name)


if __name__ == "__main__":
    sys.exit(main())
