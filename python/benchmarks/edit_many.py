#!/usr/bin/env python3
"""Per-scan cost of nrvdataedit's edit_many against the same jobs written
with Python's bytes methods and with re, over the corpus's real scans
repeated to a million (or --scans N).

    PYTHONPATH=build/python /usr/bin/python3 python/benchmarks/edit_many.py [--scans N] [--repeat R] [CORPUS]

Each job's outputs are first checked equal across the four ways (a scan
the expression fails on is kept as it is, as edit_many(errors="keep")
and nrv-edit do), then each way is timed R times and the best is kept:
CPU time of this process, so that other work on the machine counts less.
"""

import argparse
import os
import re
import time

import nrvdataedit

TRAILER = bytes(range(0x20)) + bytes(range(0x80, 0x100))
UPPER = bytes.maketrans(bytes(range(ord("a"), ord("z") + 1)), bytes(range(ord("A"), ord("Z") + 1)))

PREFIX = re.compile(rb"..(.+)", re.S)
TRAILING = re.compile(rb"[\x00-\x1f\x80-\xff]+\Z")
SEPARATOR = re.compile(rb"\x1d")
LOWER = re.compile(rb"[a-z]+")

# name, expression, bytes methods, re
JOBS = [
    ("cut a 2-byte prefix", "{TruncateFromBeginning({DecodedData()},2)}",
     lambda scans: [scan[2:] if len(scan) > 2 else scan for scan in scans],
     lambda scans: [m.group(1) if (m := PREFIX.fullmatch(scan)) else scan for scan in scans]),
    ("strip the trailing control bytes", "{DecodedDataWithoutTrailer()}",
     lambda scans: [scan.rstrip(TRAILER) for scan in scans],
     lambda scans: [TRAILING.sub(b"", scan) for scan in scans]),
    ("GS1 separators shown as |", "{Substitute({DecodedData()},{EscapeCharacter(1D)},|)}",
     lambda scans: [scan.replace(b"\x1d", b"|") for scan in scans],
     lambda scans: [SEPARATOR.sub(b"|", scan) for scan in scans]),
    ("upper case", "{MakeUpperCase({DecodedData()})}",
     lambda scans: [scan.translate(UPPER) for scan in scans],
     lambda scans: [LOWER.sub(lambda m: m.group(0).upper(), scan) for scan in scans]),
]


def read_corpus(path):
    with open(path, encoding="ascii") as file:
        return [bytes.fromhex(line.rstrip("\n").split("\t")[2]) for line in list(file)[1:]]


def best(function, scans, repeat):
    times = []
    for _ in range(repeat):
        start = time.process_time()
        function(scans)
        times.append(time.process_time() - start)
    return min(times) / len(scans) * 1e9


def one_by_one(profile):
    def edit(scans):
        out = []
        for scan in scans:
            try:
                out.append(profile.edit(scan))
            except nrvdataedit.EditError:
                out.append(scan)
        return out
    return edit


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("corpus", nargs="?", default=os.path.join(here, "..", "..", "..", "shared", "corpus", "scans.tsv"))
    parser.add_argument("--scans", type=int, default=1_000_000)
    parser.add_argument("--repeat", type=int, default=3)
    arguments = parser.parse_args()
    corpus = read_corpus(arguments.corpus)
    scans = (corpus * (arguments.scans // len(corpus) + 1))[: arguments.scans]
    print(f"{len(scans):,} scans ({len(corpus)} real ones repeated), mean {sum(map(len, scans)) / len(scans):.1f} "
          f"bytes; nanoseconds per scan, best of {arguments.repeat}")
    print(f"{'job':<34} {'edit_many':>10} {'edit':>10} {'bytes':>10} {'re':>10}")
    for name, expression, with_bytes, with_re in JOBS:
        profile = nrvdataedit.Profile(expression)
        many = lambda scans: profile.edit_many(scans, errors="keep")  # noqa: E731
        expected = many(scans)
        for way in (one_by_one(profile), with_bytes, with_re):
            assert way(scans) == expected, f"{name}: the ways disagree"
        costs = [best(way, scans, arguments.repeat) for way in (many, one_by_one(profile), with_bytes, with_re)]
        print(f"{name:<34} " + " ".join(f"{cost:>10.0f}" for cost in costs))


if __name__ == "__main__":
    main()
