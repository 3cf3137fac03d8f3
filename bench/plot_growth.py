#!/usr/bin/env python3
"""Draws the growth benchmarks of nrv_bench as an SVG: CPU time per byte of
scan against the scan's length, one line per command, both axes logarithmic.

    plot_growth.py RESULTS.json OUTPUT.svg

RESULTS.json is Google Benchmark JSON from
    nrv_bench --benchmark_filter=growth --benchmark_out=RESULTS.json
(with repetitions, the medians are drawn). Written by hand: no plotting
library needed.
"""
import json
import math
import re
import sys

WIDTH, HEIGHT = 960, 600
LEFT, RIGHT, TOP, BOTTOM = 70, 250, 40, 60
COLOURS = ["#1f77b4", "#ff7f0e", "#2ca02c", "#d62728", "#9467bd", "#8c564b", "#e377c2", "#7f7f7f", "#bcbd22",
           "#17becf", "#393b79", "#637939", "#8c6d31", "#843c39", "#7b4173", "#3182bd", "#e6550d", "#31a354"]
DASHES = ["", "6,3", "2,2"]


def load(path):
    with open(path, encoding="utf-8") as f:
        data = json.load(f)
    repeated = any(b.get("run_type") == "aggregate" for b in data["benchmarks"])
    series = {}
    for b in data["benchmarks"]:
        if repeated and b.get("aggregate_name") != "median":
            continue
        if not repeated and b.get("run_type") != "iteration":
            continue
        m = re.match(r"growth/([^/]+)/bytes:(\d+)", b["run_name"])
        if m:
            size = int(m.group(2))
            series.setdefault(m.group(1), []).append((size, b["cpu_time"] / size))
    for points in series.values():
        points.sort()
    return series


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 1
    series = load(sys.argv[1])
    if not series:
        print("no growth benchmarks in", sys.argv[1])
        return 1
    xs = [x for points in series.values() for x, _ in points]
    ys = [y for points in series.values() for _, y in points]
    x0, x1 = math.floor(math.log10(min(xs))), math.log10(max(xs))
    y0, y1 = math.floor(math.log10(min(ys))), math.ceil(math.log10(max(ys)))

    def px(x):
        return LEFT + (math.log10(x) - x0) / (x1 - x0) * (WIDTH - LEFT - RIGHT)

    def py(y):
        return HEIGHT - BOTTOM - (math.log10(y) - y0) / (y1 - y0) * (HEIGHT - TOP - BOTTOM)

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
           f'font-family="sans-serif" font-size="12">',
           f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
           f'<text x="{LEFT}" y="22" font-size="15">CPU time per byte of scan (ns) against the scan\'s '
           f'length (bytes), one command per line</text>']
    for e in range(x0, math.floor(x1) + 1):
        x = px(10 ** e)
        out.append(f'<line x1="{x:.1f}" y1="{TOP}" x2="{x:.1f}" y2="{HEIGHT - BOTTOM}" stroke="#ddd"/>')
        out.append(f'<text x="{x:.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">1e{e}</text>')
    for e in range(y0, y1 + 1):
        y = py(10 ** e)
        out.append(f'<line x1="{LEFT}" y1="{y:.1f}" x2="{WIDTH - RIGHT}" y2="{y:.1f}" stroke="#ddd"/>')
        out.append(f'<text x="{LEFT - 8}" y="{y + 4:.1f}" text-anchor="end">1e{e}</text>')
    out.append(f'<text x="{(LEFT + WIDTH - RIGHT) / 2}" y="{HEIGHT - 18}" text-anchor="middle">scan length '
               f'(bytes)</text>')
    out.append(f'<text x="18" y="{(TOP + HEIGHT - BOTTOM) / 2}" text-anchor="middle" '
               f'transform="rotate(-90 18 {(TOP + HEIGHT - BOTTOM) / 2})">ns per byte</text>')
    for i, (command, points) in enumerate(series.items()):
        colour = COLOURS[i % len(COLOURS)]
        dash = DASHES[(i // len(COLOURS)) % len(DASHES)] or DASHES[i % len(DASHES)]
        path = " ".join(f"{px(x):.1f},{py(y):.1f}" for x, y in points)
        dash_attr = f' stroke-dasharray="{dash}"' if dash else ""
        out.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="1.6"{dash_attr}/>')
        ly = TOP + 10 + i * 17
        out.append(f'<line x1="{WIDTH - RIGHT + 12}" y1="{ly}" x2="{WIDTH - RIGHT + 36}" y2="{ly}" '
                   f'stroke="{colour}" stroke-width="2"{dash_attr}/>')
        out.append(f'<text x="{WIDTH - RIGHT + 42}" y="{ly + 4}">{command}</text>')
    out.append("</svg>")
    with open(sys.argv[2], "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
