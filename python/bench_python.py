#!/usr/bin/env python3
"""Cost of the rules from Python, as ratios measured in one run.

The EN 1991-1-4 peak velocity pressure (CtrlNA 54, terrain category II,
z = 10 m, vb = 25 m/s) through the module, against a pure-Python yardstick of
the same formula written here from the standard (sections 4.3 to 4.5), as a
pure-Python library computes it; the late-bound road (member by name, tagged
values) for comparison; an array call over 100,000 heights in ns per element,
and over as many pitches of a cheap rule for the cost of the loop itself; and
the DIN 1055-4:2005 velocity pressure with an empty Python method as the
floor of any Python call. Given the benchmark program (bench/qvrl_bench of a
build), it also runs its direct C++ call of the DIN rule.

Times are CPU time per call, the median of the repeats.

    PYTHONPATH=build/python /usr/bin/python3 python/bench_python.py --bench build/bench/qvrl_bench
"""

import argparse
import json
import math
import os
import statistics
import subprocess
import sys
import time
import timeit

# This folder holds the package's sources without the built extension: the
# package is taken from PYTHONPATH (a build or an installation) instead.
if sys.path and os.path.abspath(sys.path[0]) == os.path.dirname(os.path.abspath(__file__)):
    del sys.path[0]

import numpy as np  # noqa: E402

import qvroofload  # noqa: E402
from qvroofload import _qvroofload as native  # noqa: E402

# ---- The yardstick: EN 1991-1-4 without a national annex, in plain Python.

# Table 4.1: roughness length z0 and minimum height zmin in m per terrain category.
TERRAIN = {0: (0.003, 1.0), 1: (0.01, 1.0), 2: (0.05, 2.0), 3: (0.3, 5.0), 4: (1.0, 10.0)}
Z0_II = 0.05
Z_MAX = 200.0
RHO = 1.25  # air density in kg/m3
K_I = 1.0  # turbulence factor
C_O = 1.0  # orography factor on flat terrain


def terrain_factor(z0):
    # (4.5)
    return 0.19 * (z0 / Z0_II) ** 0.07


def roughness_factor(z, category):
    # (4.4)
    z0, zmin = TERRAIN[category]
    return terrain_factor(z0) * math.log(max(z, zmin) / z0)


def mean_velocity(z, category, vb):
    # (4.3)
    return roughness_factor(z, category) * C_O * vb


def turbulence_intensity(z, category):
    # (4.7)
    z0, zmin = TERRAIN[category]
    return K_I / (C_O * math.log(max(z, zmin) / z0))


def peak_velocity_pressure(z, category, vb):
    # (4.8), in kN/m2
    if z > Z_MAX:
        raise ValueError("z above 200 m")
    vm = mean_velocity(z, category, vb)
    return (1.0 + 7.0 * turbulence_intensity(z, category)) * 0.5 * RHO * vm * vm / 1000.0


# ---- Measurement.

EN_ARGS = (54, 2, 10.0, 0.0, 25.0, 0.0, 0.0)
DIN_HEIGHTS = (3.0, 7.5, 10.0, 18.0, 25.0, 42.0, 80.0, 150.0)
ARRAY_SIZE = 100_000


class _Empty:
    def WindPressure_DIN1055_4_2005(self, zone, category, z, terrain):
        return 0.0


def cpu_ns(stmt, names, number, repeat, per=1):
    times = timeit.repeat(stmt, number=number, repeat=repeat, timer=time.process_time, globals=names)
    return statistics.median(times) / number / per * 1e9


def direct_cpp_ns(bench):
    out = subprocess.run(
        [bench, "--benchmark_filter=^BM_Direct$", "--benchmark_format=json"],
        check=True, capture_output=True, text=True, timeout=300,
    ).stdout
    for b in json.loads(out)["benchmarks"]:
        if b["name"] == "BM_Direct":
            factor = {"ns": 1.0, "us": 1e3, "ms": 1e6}[b["time_unit"]]
            return b["cpu_time"] * factor
    raise SystemExit("BM_Direct not found in the output of " + bench)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--bench", help="the Google Benchmark program, for the direct C++ call")
    parser.add_argument("--number", type=int, default=200000, help="scalar calls per repeat")
    parser.add_argument("--repeat", type=int, default=5, help="repeats; the median counts")
    args = parser.parse_args()

    ws = qvroofload.CWindSnow()
    obj = ws._obj
    ours = ws.WindPressure_EN_1991_1_4(*EN_ARGS)
    theirs = peak_velocity_pressure(10.0, 2, 25.0)
    # Another order of the same operations: equal to a few units in the last place.
    if not math.isclose(ours, theirs, rel_tol=1e-12):
        raise SystemExit("the yardstick disagrees: %r against %r" % (theirs, ours))

    # Statements rather than functions, so that both sides pay the same for the call itself.
    names = {"ws": ws, "obj": obj, "native": native, "peak_velocity_pressure": peak_velocity_pressure,
             "heights": np.linspace(1.0, 200.0, ARRAY_SIZE)}
    yard = cpu_ns("peak_velocity_pressure(10.0, 2, 25.0)", names, args.number, args.repeat)
    scalar = cpu_ns("ws.WindPressure_EN_1991_1_4(54, 2, 10.0, 0.0, 25.0, 0.0, 0.0)", names, args.number, args.repeat)
    late = cpu_ns("native.call(obj, 'WindPressure_EN_1991_1_4', (54, 2, 10.0, 0.0, 25.0, 0.0, 0.0))", names,
                  args.number, args.repeat)
    array = cpu_ns("ws.WindPressure_EN_1991_1_4(54, 2, heights, 0.0, 25.0, 0.0, 0.0)", names,
                   max(1, args.number // 20000), args.repeat, per=ARRAY_SIZE)

    # A cheap rule over as many pitches: what the loop itself costs per element.
    names["pitches"] = np.linspace(0.0, 90.0, ARRAY_SIZE)
    array_floor = cpu_ns("ws.SnowMue1(pitches)", names, max(1, args.number // 20000), args.repeat, per=ARRAY_SIZE)
    names.update(empty=_Empty(), DIN_HEIGHTS=DIN_HEIGHTS)
    din_number = max(1, args.number // len(DIN_HEIGHTS))
    din = cpu_ns("for h in DIN_HEIGHTS: ws.WindPressure_DIN1055_4_2005(2, 2, h, 0.0)", names, din_number,
                 args.repeat, per=len(DIN_HEIGHTS))
    floor = cpu_ns("for h in DIN_HEIGHTS: empty.WindPressure_DIN1055_4_2005(2, 2, h, 0.0)", names, din_number,
                   args.repeat, per=len(DIN_HEIGHTS))

    print("qvroofload %s, Python %s, NumPy %s" % (qvroofload.__version__, sys.version.split()[0], np.__version__))
    print("%-52s %12s" % ("EN peak velocity pressure, z = 10 m, vb = 25 m/s", "ns per call"))
    print("%-52s %12.1f" % ("pure-Python yardstick", yard))
    print("%-52s %12.1f" % ("qvroofload.CWindSnow method", scalar))
    print("%-52s %12.1f" % ("late-bound _qvroofload.call", late))
    print("%-52s %12.2f" % ("array call of %d heights, per element" % ARRAY_SIZE, array))
    print("%-52s %12.2f" % ("array call of SnowMue1, per element", array_floor))
    print("%-52s %12.1f" % ("DIN 1055-4:2005 velocity pressure, method", din))
    print("%-52s %12.1f" % ("empty Python method", floor))
    if args.bench:
        print("%-52s %12.1f" % ("DIN 1055-4:2005, direct C++ call", direct_cpp_ns(args.bench)))
    print()
    print("ratio scalar call / yardstick     %6.3f   (goal at most 0.333)" % (scalar / yard))
    print("ratio late-bound call / yardstick %6.3f" % (late / yard))
    print("array ns per element              %6.2f   (goal under 20)" % array)


if __name__ == "__main__":
    sys.exit(main())
