#!/usr/bin/env python3
"""Turns the benchmark outputs into the Markdown tables of docs/performance.md.

    report.py bench RESULTS.json     Google Benchmark JSON (with repetitions:
                                     medians are used)
    report.py icount DIRECTORY       callgrind dumps of nrv_bench_icount
"""
import glob
import json
import os
import re
import sys

ICOUNT_ROUNDS = 1000  # kRounds in nrv_bench_icount.cpp


def fmt(value, digits=0):
    if value >= 100 or digits == 0:
        return f"{value:,.0f}"
    return f"{value:,.{digits}f}"


def edit_table(values, unit, digits):
    """values: {(edit, scan, form): number} -> Markdown rows with ratios."""
    rows = [f"| edit | scan | engine {unit} | hand {unit} | regex {unit} | engine / hand | regex / engine |",
            "|---|---|---:|---:|---:|---:|---:|"]
    keys = []
    for (edit, scan, form) in values:
        if (edit, scan) not in keys:
            keys.append((edit, scan))
    for edit, scan in keys:
        e = values.get((edit, scan, "engine"))
        h = values.get((edit, scan, "hand"))
        r = values.get((edit, scan, "regex"))
        if None in (e, h, r):
            continue
        rows.append(f"| {edit} | {scan} | {fmt(e, digits)} | {fmt(h, digits)} | {fmt(r, digits)} | "
                    f"{e / h:.1f}x | {r / e:.1f}x |")
    return "\n".join(rows)


TYPICAL_FORMS = ["engine", "floor", "hand", "std::regex", "RE2", "PCRE2-JIT"]


def typical_table(values):
    """values: {(edit, scan, form): instructions} for the typical edits."""
    forms = [f for f in TYPICAL_FORMS if any(k[2] == f for k in values)]
    rows = ["| edit | scan | " + " | ".join(forms) + " | engine / floor | engine / hand | "
            + " | ".join(f"{f} / engine" for f in forms[3:]) + " |",
            "|---|---|" + "---:|" * (len(forms) + 2 + len(forms[3:]))]
    keys = []
    for (edit, scan, _form) in values:
        if (edit, scan) not in keys:
            keys.append((edit, scan))
    for edit, scan in keys:
        v = {f: values.get((edit, scan, f)) for f in forms}
        e = v["engine"]
        cells = [fmt(v[f]) if v[f] is not None else "-" for f in forms]
        ratios = [f"{e / v['floor']:.2f}x", f"{e / v['hand']:.1f}x"]
        ratios += [f"{v[f] / e:.2f}x" if v[f] is not None else "-" for f in forms[3:]]
        rows.append(f"| {edit} | {scan} | " + " | ".join(cells + ratios) + " |")
    return "\n".join(rows)


def report_icount(directory):
    values = {}
    typical = {}
    parse = []
    gs1 = []
    paths = glob.glob(os.path.join(directory, "callgrind.out.*"))
    for path in sorted(paths, key=lambda p: int(p.rsplit(".", 1)[1]) if p.rsplit(".", 1)[1].isdigit() else 0):
        name = total = None
        with open(path, encoding="utf-8", errors="replace") as f:
            for line in f:
                if line.startswith("desc: Trigger: Client Request: "):
                    name = line[len("desc: Trigger: Client Request: "):].strip()
                elif line.startswith("summary:"):
                    total = int(line.split()[1])
        if name is None or total is None:
            continue
        per_round = total / ICOUNT_ROUNDS
        parts = name.split("/")
        if parts[0] == "edit":
            values[(parts[1], parts[2], parts[3])] = per_round
        elif parts[0] == "typical":
            typical[(parts[1], parts[2], "/".join(parts[3:]))] = per_round
        elif parts[0] == "parse":
            parse.append((parts[1], per_round))
        elif parts[0] == "gs1":
            gs1.append((parts[1], per_round))
    if typical:
        print("Typical edits, instructions per edit (callgrind):\n")
        print(typical_table(typical))
        print()
    print("Instructions per edit (callgrind):\n")
    print(edit_table(values, "instr.", 0))
    if gs1:
        print("\nThe lot out of a 40-byte GS1 message, instructions per edit (callgrind):\n")
        print("| edit | instructions |\n|---|---:|")
        for name, count in gs1:
            print(f"| {name} | {fmt(count)} |")
    print("\nInstructions per parse (callgrind):\n")
    print("| expression | instructions |\n|---|---:|")
    for name, count in parse:
        print(f"| {name} | {fmt(count)} |")


def report_bench(path):
    with open(path, encoding="utf-8") as f:
        data = json.load(f)
    context = data.get("context", {})
    print(f"Host: {context.get('host_name', '?')}, {context.get('num_cpus', '?')} CPUs at "
          f"{context.get('mhz_per_cpu', '?')} MHz, load average {context.get('load_avg', '?')}, "
          f"library build {context.get('library_build_type', '?')}\n")

    runs = {}
    repeated = any(b.get("run_type") == "aggregate" for b in data["benchmarks"])
    for b in data["benchmarks"]:
        if repeated:
            if b.get("aggregate_name") != "median":
                continue
        elif b.get("run_type") != "iteration":
            continue
        runs[b["run_name"]] = b
    spread = {}
    for b in data["benchmarks"]:
        if b.get("aggregate_name") == "cv":
            spread[b["run_name"]] = b["cpu_time"]

    times = {}
    allocs = {}
    for name, b in runs.items():
        parts = name.split("/")
        if parts[0] == "edit":
            times[(parts[1], parts[2], parts[3])] = b["cpu_time"]
            allocs[(parts[1], parts[2], parts[3])] = b.get("allocs", 0)
    print("CPU time per edit, median (ns):\n")
    print(edit_table(times, "ns", 1))
    print("\nAllocations per edit:\n")
    print("| edit | scan | engine | hand | regex |\n|---|---|---:|---:|---:|")
    keys = []
    for (edit, scan, _form) in allocs:
        if (edit, scan) not in keys:
            keys.append((edit, scan))
    for edit, scan in keys:
        print(f"| {edit} | {scan} | {allocs.get((edit, scan, 'engine'), 0):.0f} | "
              f"{allocs.get((edit, scan, 'hand'), 0):.0f} | {allocs.get((edit, scan, 'regex'), 0):.0f} |")
    if spread:
        worst = max(spread.values())
        print(f"\nLargest coefficient of variation of the CPU time over the repetitions: {worst * 100:.1f}%")

    print("\nParse, median:\n")
    print("| expression | ns | allocations |\n|---|---:|---:|")
    for name, b in runs.items():
        parts = name.split("/")
        if parts[0] == "parse":
            print(f"| {parts[1]} | {fmt(b['cpu_time'], 1)} | {b.get('allocs', 0):.0f} |")

    growth = {}
    sizes = set()
    for name, b in runs.items():
        m = re.match(r"growth/([^/]+)/bytes:(\d+)$", name)
        if m:
            growth.setdefault(m.group(1), {})[int(m.group(2))] = b
            sizes.add(int(m.group(2)))
    big_o = {}
    for b in data["benchmarks"]:
        if b.get("aggregate_name") == "BigO":
            command = b["run_name"].split("/")[1]
            big_o[command] = f"{b['cpu_coefficient']:.3g} {b.get('big_o', '')}"
    sizes = sorted(sizes)
    print("\nGrowth: CPU time per edit (ns) by scan size in bytes, one command over the scan:\n")
    print("| command | " + " | ".join(str(s) for s in sizes)
          + " | ns per byte at the largest | per byte, largest / 4096 | fitted CPU time (ns) |")
    print("|---|" + "---:|" * len(sizes) + "---:|---:|---|")
    for command, by_size in growth.items():
        cells = [fmt(by_size[s]["cpu_time"], 1) if s in by_size else "-" for s in sizes]
        largest = max(by_size)
        per_byte = by_size[largest]["cpu_time"] / largest
        ratio = f"{per_byte / (by_size[4096]['cpu_time'] / 4096):.1f}x" if 4096 in by_size else "-"
        print(f"| {command} | " + " | ".join(cells) + f" | {per_byte:.2f} | {ratio} | {big_o.get(command, '')} |")


def main():
    if len(sys.argv) != 3 or sys.argv[1] not in ("bench", "icount"):
        print(__doc__)
        return 1
    if sys.argv[1] == "bench":
        report_bench(sys.argv[2])
    else:
        report_icount(sys.argv[2])
    return 0


if __name__ == "__main__":
    sys.exit(main())
