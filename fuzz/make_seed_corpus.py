#!/usr/bin/env python3
"""Writes the seed corpus of the fuzz targets: the expressions found in the
README and in the tests, and, for the edit target, each of them joined to a
scan (a few made-up ones and up to 40 real ones); for the playground target,
a few of them with real scans, triggers and each of its switches. Run from
anywhere:

    python3 fuzz/make_seed_corpus.py SCANS.tsv

SCANS.tsv: a table of real decoded data with a header line and three
tab-separated columns (symbology, sample, the scan's bytes in hexadecimal).
The committed seeds were made from the scans table this project was given.

The existing seed-* files are replaced only once the table has been read;
other corpus files are left alone. Without SCANS.tsv nothing is written."""
import glob
import hashlib
import os
import random
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
CORPUS = os.path.join(ROOT, "fuzz", "corpus")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
INLINE_CODE = re.compile(r"`([^`\n]*\{[^`\n]*)`")


def c_unescape(text):
    out = bytearray()
    i = 0
    while i < len(text):
        c = text[i]
        if c != "\\" or i + 1 == len(text):
            out += c.encode("utf-8")
            i += 1
            continue
        n = text[i + 1]
        simple = {"n": 10, "r": 13, "t": 9, "0": 0, "\\": 92, '"': 34, "'": 39, "a": 7, "b": 8, "f": 12, "v": 11}
        if n == "x":
            digits = re.match(r"[0-9a-fA-F]{1,2}", text[i + 2:])
            out.append(int(digits.group(0), 16) if digits else 0)
            i += 2 + (len(digits.group(0)) if digits else 0)
        elif n in simple:
            out.append(simple[n])
            i += 2
        else:
            out += n.encode("utf-8")
            i += 2
    return bytes(out)


def expressions():
    found = set()
    with open(os.path.join(ROOT, "README.md"), encoding="utf-8") as readme:
        text = readme.read()
    for match in INLINE_CODE.finditer(text):
        found.add(match.group(1).encode("utf-8"))
    for line in text.splitlines():
        # Example lines: an expression, then the scan and the result.
        if line.startswith(("Code:", "{")) and "}" in line:
            found.add(line.split("  ")[0].strip().encode("utf-8"))
    for path in sorted(glob.glob(os.path.join(ROOT, "tests", "*.cpp"))):
        with open(path, encoding="utf-8", errors="replace") as source:
            for match in LITERAL.finditer(source.read()):
                literal = c_unescape(match.group(1))
                if b"{" in literal and re.search(rb"[A-Z][a-z]+", literal) and len(literal) < 400:
                    found.add(literal.split(b"\0")[0])
    return sorted(found)


def scans(tsv):
    chosen = [b"AB-CD-EF\r\n", b"12345\r\n", b"", bytes([0, 1, 0x7F, 0x80, 0xFF]), b"ab,cd{x}(y)"]
    rows = []
    with open(tsv, encoding="utf-8") as table:
        for line in table.read().splitlines()[1:]:
            fields = line.split("\t")
            if len(fields) == 3 and len(fields[2]) <= 2 * 200:
                rows.append(bytes.fromhex(fields[2]))
    rows.sort(key=lambda data: (hashlib.sha1(data).hexdigest()))
    chosen += rows[:40]
    return chosen


def escaped(data):
    """The scan as nrv-edit -e reads it (the page's escapes)."""
    named = {0x5C: b"\\\\", 0x0D: b"\\r", 0x0A: b"\\n", 0x09: b"\\t"}
    return b"".join(named.get(b, bytes([b]) if 0x20 <= b < 0x7F else b"\\x%02X" % b) for b in data)


def playground_seeds(exprs, scan_list):
    """Inputs of fuzz_playground.cpp: switches (the seed-only one in a third of
    them), symbology, first scan, count,
    then the fields cut at 0x1F (expression, scans, minimum, maximum,
    symbologies, contains, starts with, ends with, the line explained)."""
    triggers = [[b"", b"", b"", b"", b"", b""], [b"3", b"40", b"", b"", b"", b""],
                [b"", b"", b"Code128,15", b"1", b"", b""], [b"", b"", b"", b"", b"\\x1D", b"\\r\\n"]]
    seeds = []
    for index in range(16):
        switches = index % 16 | (16 if index % 3 == 0 else 0)
        scans = [scan_list[(index * 4 + k) % len(scan_list)] for k in range(4)]
        lines = [escaped(scan) if switches & 1 else scan.replace(b"\n", b" ") for scan in scans]
        explained = escaped(scans[0]) if switches & 4 else scans[0].replace(b"\n", b" ")
        fields = [exprs[index * len(exprs) // 16], b"\n".join(lines)] + triggers[index % 4] + [explained]
        head = bytes([switches, (0, 15, 38, 200)[index % 4], index % 3, 255])
        seeds.append(head + b"\x1f".join(field.replace(b"\x1f", b" ") for field in fields))
    # Texts grown to 1 MiB, and past the largest text an edit may build (16
    # MiB): the limits the page runs under, and the out-of-memory replies.
    grown = b"{DecodedData()}"
    for levels in range(1, 7):
        grown = b"{Substitute(%s,A,AAAAAAAAAAAAAAAA)}" % grown
        if levels == 5:
            seeds.append(bytes([0, 0, 0, 255]) + b"\x1f".join([b"<%s>{MakeUpperCase(%s)}" % (grown, grown), b"A\nB"]
                                                              + [b""] * 6 + [b"A"]))
        if levels == 6:
            seeds.append(bytes([0, 0, 0, 255]) + b"\x1f".join([grown, b"A\nB"] + [b""] * 6 + [b"A"]))
    return seeds


def write(target, data):
    directory = os.path.join(CORPUS, target)
    os.makedirs(directory, exist_ok=True)
    with open(os.path.join(directory, "seed-" + hashlib.sha1(data).hexdigest()[:16]), "wb") as out:
        out.write(data)


def main():
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        sys.stderr.write("usage: python3 fuzz/make_seed_corpus.py SCANS.tsv\n\n%s\n" % __doc__.split("\n\n", 2)[2])
        return 2
    tsv = sys.argv[1]
    try:
        scan_list = scans(tsv)
    except (OSError, ValueError) as error:
        sys.stderr.write("make_seed_corpus.py: cannot read %s: %s\n" % (tsv, error))
        return 2
    exprs = expressions()
    for target in ("parse", "edit", "structures", "playground"):
        for old in glob.glob(os.path.join(CORPUS, target, "seed-*")):
            os.remove(old)
    for index, expression in enumerate(exprs):
        write("parse", expression)
        write("edit", expression + b"\0" + scan_list[index % len(scan_list)])
    for seed in playground_seeds(exprs, scan_list):
        write("playground", seed)
    # The structure target reads operations from any bytes: a few fixed
    # random ones to start from.
    generator = random.Random(1)
    for size in (16, 64, 256, 1024):
        for _ in range(3):
            write("structures", bytes(generator.randrange(256) for _ in range(size)))
    print("%d expressions, %d scans" % (len(exprs), len(scan_list)))


if __name__ == "__main__":
    sys.exit(main())
