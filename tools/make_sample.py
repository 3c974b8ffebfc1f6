#!/usr/bin/env python3
"""Writes the bundled sample measurement: three days of a QL540 session at a
one-minute step near a power line, with a few samples without data.
With --count and --step it writes a longer session of the same field, e.g. a year
at a 3-second step for the benchmarks: a sample without data every 50,000."""
import argparse
import math
import random

parser = argparse.ArgumentParser()
parser.add_argument("out", nargs="?", default="resources/samples/sample.log")
parser.add_argument("--count", type=int, help="samples (default: three days at one a minute)")
parser.add_argument("--step", type=int, default=60, help="seconds between samples")
parser.add_argument("--start", default="14/10/2026 08:00:00")
args = parser.parse_args()

random.seed(540)
custom = args.count is not None
STEP_S = args.step if custom else 60
COUNT = args.count if custom else 3 * 24 * 60
gaps = set(range(7, COUNT, 50000)) if custom else {1200, 1201, 1202, 2999, 3800}
stop = "17/10/2026 08:00:00" if not custom else args.start
step_text = f"{STEP_S}s" if custom else "1n"
with open(args.out, "w", newline="") as f:
    head = ["Field Activity Log", f"{args.start}@{stop}@3", step_text, str(COUNT),
            "QL540-0042", "Cabina MT via Roma - punto 3"]
    f.write("".join(f'"{line}"\r\n' for line in head))
    chunk = []
    for i in range(COUNT):
        if i in gaps:
            chunk.append('"-1 -1 -1 0"\r\n')
        else:
            hour = (8 + i * STEP_S / 3600) % 24
            load = 0.55 + 0.45 * math.sin((hour - 7) / 24 * 2 * math.pi)  # daily load of the line
            base = 0.35 * load + (0.9 if 2400 <= i * STEP_S / 60 < 2520 else 0)  # a maintenance peak
            x = base * 0.8 + random.gauss(0, 0.01)
            y = base * 0.5 + random.gauss(0, 0.01)
            z = base * 0.3 + random.gauss(0, 0.01)
            chunk.append(f'"{x:.2f} {y:.2f} {z:.2f}  0"\r\n')
        if len(chunk) >= 100000:
            f.write("".join(chunk))
            chunk = []
    f.write("".join(chunk))
