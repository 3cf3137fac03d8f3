#!/usr/bin/env python3
"""Checks the library's #include lines against its layers.

A unit is a header and its source (NrvExplain.h and NrvExplain.cpp). The
rules, which the README's architecture notes state:
  - include/ includes only include/; utilities/ only include/ and utilities/;
    engine/ only those and engine/; nothing of the library reaches into
    rules/, tools/, web/ or the tests;
  - the one include cycle is the knot of the profile and the operations,
    which refer to each other by design: any other cycle is an error, and
    so is the knot taking in a unit from outside engine/ or one of the
    units built above it (the diagnostics, the settings, the JSON writer,
    the rule set), which would happen as soon as the core included one.
Prints every problem and exits 1 when there is one. Usage:
check_includes.py [SOURCE_DIR]
"""
import os
import re
import sys

LAYERS = ["include", "utilities", "engine", "rules"]
# What each folder may include, besides the standard library and toml++.
ALLOWED = {
    "include": {"include"},
    "utilities": {"include", "utilities"},
    "engine": {"include", "utilities", "engine"},
    "rules": {"include", "utilities", "engine", "rules"},
}
# Units of engine/ that build on the profile and the operations and must
# stay out of their knot.
ABOVE_THE_KNOT = {"NrvParseDiagnosis", "NrvExplain", "NrvDiagnostics", "NrvLimits", "NrvSettings", "NrvJson",
                  "NrvShownBytes", "NrvRuleSet"}
# Private headers that belong to another unit: the parse diagnosis's
# recorder, which the explain unit uses too.
PART_OF = {"NrvParseRecorder": "NrvParseDiagnosis"}
KNOT_MEMBER = "NrvDataEditingProfile"  # the profile, and whatever it forms a cycle with
INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.M)


def read_units(root):
    folder_of, edges, sources = {}, {}, {}
    for folder in LAYERS:
        path = os.path.join(root, folder)
        if not os.path.isdir(path):
            continue
        for name in sorted(os.listdir(path)):
            unit, ext = os.path.splitext(name)
            if ext not in (".h", ".cpp"):
                continue
            unit = PART_OF.get(unit, unit)
            folder_of.setdefault(unit, folder)
            with open(os.path.join(path, name), encoding="utf-8") as f:
                for target in INCLUDE.findall(f.read()):
                    target_unit = os.path.splitext(os.path.basename(target))[0]
                    edges.setdefault(unit, set()).add(PART_OF.get(target_unit, target_unit))
                    sources.setdefault(unit, []).append((name, target))
    return folder_of, edges, sources


def cycles(units, edges):
    """Strongly connected components of more than one unit (Tarjan)."""
    index, low, stack, on_stack, found = {}, {}, [], set(), []
    counter = [0]

    def visit(v):
        index[v] = low[v] = counter[0]
        counter[0] += 1
        stack.append(v)
        on_stack.add(v)
        for w in sorted(edges.get(v, ())):
            if w not in units:
                continue
            if w not in index:
                visit(w)
                low[v] = min(low[v], low[w])
            elif w in on_stack:
                low[v] = min(low[v], index[w])
        if low[v] == index[v]:
            component = set()
            while True:
                w = stack.pop()
                on_stack.discard(w)
                component.add(w)
                if w == v:
                    break
            if len(component) > 1:
                found.append(component)

    sys.setrecursionlimit(10000)
    for v in sorted(units):
        if v not in index:
            visit(v)
    return found


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..")
    folder_of, edges, sources = read_units(root)
    problems = []
    for unit, included in sorted(sources.items()):
        for name, target in included:
            target_unit = os.path.splitext(os.path.basename(target))[0]
            target_unit = PART_OF.get(target_unit, target_unit)
            target_folder = folder_of.get(target_unit)
            if target_folder is None:
                problems.append(f"{name}: includes {target}, which is not a file of {', '.join(LAYERS)}")
            elif target_folder not in ALLOWED[folder_of[unit]]:
                problems.append(f"{name}: {folder_of[unit]}/ may not include {target_folder}/{target}")
    for component in cycles(set(folder_of), edges):
        if KNOT_MEMBER not in component:
            problems.append("include cycle: " + " -> ".join(sorted(component)))
        else:
            outside = sorted(u for u in component if folder_of[u] != "engine" or u in ABOVE_THE_KNOT)
            if outside:
                problems.append("the profile's and operations' knot takes in " + ", ".join(outside))
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
