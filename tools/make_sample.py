#!/usr/bin/env python3
"""Writes the bundled sample measurement: three days of a QL540 session at a
one-minute step near a power line, with a few samples without data."""
import math
import random
import sys

random.seed(540)
STEP_MIN = 1
COUNT = 3 * 24 * 60
out = sys.argv[1] if len(sys.argv) > 1 else "resources/samples/sample.log"
gaps = {1200, 1201, 1202, 2999, 3800}
lines = ["Field Activity Log",
         "14/10/2026 08:00:00@17/10/2026 08:00:00@3",
         f"{STEP_MIN}n",
         str(COUNT),
         "QL540-0042",
         "Cabina MT via Roma - punto 3"]
for i in range(COUNT):
    if i in gaps:
        lines.append("-1 -1 -1 0")
        continue
    hour = (8 + i / 60) % 24
    load = 0.55 + 0.45 * math.sin((hour - 7) / 24 * 2 * math.pi)  # daily load of the line
    base = 0.35 * load + (0.9 if 2400 <= i < 2520 else 0)           # a maintenance peak
    x = base * 0.8 + random.gauss(0, 0.01)
    y = base * 0.5 + random.gauss(0, 0.01)
    z = base * 0.3 + random.gauss(0, 0.01)
    lines.append(f"{x:.2f} {y:.2f} {z:.2f}  0")
with open(out, "w", newline="") as f:
    for line in lines:
        f.write(f'"{line}"\r\n')
