#!/usr/bin/env python3
"""Edits the scans of standard input, one per line, in one batch, and
prints each edited scan on a line of its own; a scan whose edit fails is
printed unchanged and explained on standard error.

    edit_scans.py EXPRESSION [SETTING=VALUE...] < scans.txt
    edit_scans.py --rules FILE [--symbology NAME] < scans.txt

SETTING is a keyword of nrvdataedit.Profile: min_size=4, starts_with=AB,
symbologies=Code128, max_text=1000. Exit status: 0 every scan edited or
left alone, 1 an edit failed, 2 a usage error or an expression or rules
file that does not read.
"""

import argparse
import sys

import nrvdataedit


def settings(pairs):
    """NAME=VALUE arguments as Profile's keywords: sizes as numbers, texts as given."""
    keywords = {}
    for pair in pairs:
        name, equals, value = pair.partition("=")
        if not equals:
            raise SystemExit(f"edit_scans.py: expected SETTING=VALUE, got {pair}")
        if name == "symbologies":
            keywords.setdefault(name, []).append(value)
        else:
            keywords[name] = int(value) if name.endswith(("_size", "_text", "_work")) else value
    return keywords


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--rules", help="a rules file instead of an expression")
    parser.add_argument("--symbology", default=0, help="the scans' symbology, a name or a number")
    parser.add_argument("expression", nargs="?")
    parser.add_argument("settings", nargs="*", help="SETTING=VALUE")
    arguments = parser.parse_args()
    if (arguments.rules is None) == (arguments.expression is None):
        parser.error("give an EXPRESSION or --rules FILE")
    symbology = int(arguments.symbology) if str(arguments.symbology).isdigit() else arguments.symbology
    try:
        if arguments.rules is not None:
            editor = nrvdataedit.RuleSet.from_file(arguments.rules)
        else:
            editor = nrvdataedit.Profile(arguments.expression, **settings(arguments.settings))
    except (nrvdataedit.ParseError, ValueError, OSError) as error:
        print(error, file=sys.stderr)  # a ParseError shows carets under the culprit
        return 2

    scans = sys.stdin.buffer.read().split(b"\n")
    if scans[-1] == b"":
        scans.pop()
    outputs = editor.edit_many(scans, symbology, errors="none")
    failed = False
    for number, (scan, output) in enumerate(zip(scans, outputs), 1):
        if isinstance(output, tuple):  # a rule set gives the rule too
            output = output[0]
        if output is None:
            failed = True
            try:
                editor.edit(scan, symbology)
            except nrvdataedit.EditError as error:
                print(f"edit_scans.py: scan {number}: {error}", file=sys.stderr)
            output = scan
        sys.stdout.buffer.write(output + b"\n")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
