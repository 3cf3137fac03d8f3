"""The Python package against nrv-edit, the README's jobs and its own promises.

NRV_EDIT names the nrv-edit to compare with and NRV_SOURCE_DIR the source
tree (for examples/rules.toml and the corpus beside it); tests that need
one that is not there are skipped.
"""

import json
import os
import re
import subprocess

import pytest

import nrvdataedit as nrv

SOURCE = os.environ.get("NRV_SOURCE_DIR", os.path.join(os.path.dirname(__file__), "..", ".."))
RULES = os.path.join(SOURCE, "examples", "rules.toml")
CORPUS = os.environ.get("NRV_SCANS", os.path.join(SOURCE, "..", "shared", "corpus", "scans.tsv"))
TOOL = os.environ.get("NRV_EDIT")

# The README's common jobs: an expression and the triggers nrv-edit takes for them.
JOBS = [
    ("{TruncateFromBeginning({DecodedData()},2)}", {}, []),
    ("{Extract({DecodedData()},[,])}", {}, []),
    ("{DecodedDataWithoutTrailer()}", {}, []),
    ("{DecodedData()}", {}, []),
    ("Code: {DecodedData()}", {"symbologies": ["Code128"], "starts_with": b"AB"},
     ["--only-symbology", "Code128", "--starts-with", "AB"]),
    ("{Substitute({DecodedData()},{EscapeCharacter(1D)},|)}", {"contains": "\\x1D"}, ["--contains", "\\x1D"]),
]


def corpus():
    """(symbology, bytes) of every real scan."""
    if not os.path.exists(CORPUS):
        pytest.skip("no corpus of scans beside the source tree")
    with open(CORPUS, encoding="ascii") as file:
        rows = [line.rstrip("\n").split("\t") for line in file][1:]
    return [(row[0], bytes.fromhex(row[2])) for row in rows]


def unescape(line):
    escapes = {"\\\\": b"\\", "\\r": b"\r", "\\n": b"\n", "\\t": b"\t"}
    return re.sub(rb"\\(x[0-9A-Fa-f]{2}|.)",
                  lambda m: bytes([int(m.group(1)[1:], 16)]) if m.group(1)[:1] == b"x"
                  else escapes[m.group(0).decode()], line)


def run_tool(arguments, scans):
    """nrv-edit -e over the scans: its lines on standard output and error."""
    if TOOL is None:
        pytest.skip("NRV_EDIT does not name an nrv-edit")
    stdin = b"".join(nrv._escaped(scan) + b"\n" for scan in scans)
    done = subprocess.run([TOOL, "-e"] + arguments, input=stdin, capture_output=True)
    assert done.returncode in (0, 1), done.stderr
    return done.stdout.split(b"\n")[:-1], done.stderr.decode().split("\n")[:-1]


def tool(arguments, scans):
    """What nrv-edit prints for each scan, as bytes."""
    return [unescape(line) for line in run_tool(["--max-errors", "1"] + arguments, scans)[0]]


def by_symbology(rows):
    groups = {}
    for name, scan in rows:
        groups.setdefault(name, []).append(scan)
    return groups


@pytest.mark.parametrize("expression,triggers,options", JOBS)
def test_jobs_equal_nrv_edit_on_the_corpus(expression, triggers, options):
    profile = nrv.Profile(expression, **triggers)
    for name, scans in by_symbology(corpus()).items():
        expected = tool(["-s", name] + options + [expression], scans)
        assert profile.edit_many(scans, name, errors="keep") == expected, name
        one_by_one = []
        for scan in scans:
            try:
                one_by_one.append(profile.edit(scan, nrv.symbology(name)))
            except nrv.EditError as error:
                assert error.scan == scan and error.code < 0
                one_by_one.append(scan)
        assert one_by_one == expected, name


def test_rules_equal_nrv_edit_on_the_corpus():
    rules = nrv.RuleSet.from_file(RULES)
    for name, scans in by_symbology(corpus()).items():
        expected = tool(["-s", name, "--rules", RULES], scans)
        edited = rules.edit_many(scans, name, errors="keep")
        assert [output for output, _ in edited] == expected, name
        for scan, (output, rule) in zip(scans, edited):
            assert rules.edit(scan, name) == (output, rule)


@pytest.mark.parametrize("scan", [b"ABC", b"A", b"", b"\x00\xff\r\n", b"[1]" * 200])
def test_explain_is_nrv_edit_explain_json(scan):
    expression = "{MakeUpperCase({TruncateFromEnd({DecodedData()},1)})}-{Extract({DecodedData()},[,])}"
    (line,), _ = run_tool(["--explain", "--json", expression], [scan])
    expected = json.loads(line)
    got = nrv.Profile(expression).explain(scan)
    assert got.code == expected["code"] and got.output == expected["output"].encode("latin-1")

    def same(nodes, items):
        assert len(nodes) == len(items)
        for node, item in zip(nodes, items):
            assert (node.kind, node.name, node.offset, node.length, node.code) == (
                item["kind"], item["name"], item["offset"], item["length"], item["code"])
            value = item["value"]
            assert node.value == (value.encode("latin-1") if isinstance(value, str) else value)
            assert node.value_length == item.get("valueLength")
            same(node.params, item["params"])

    same(got.nodes, expected["nodes"])
    assert (got.failure is None) == ("failure" not in expected)
    if got.failure is not None:
        assert (got.failure.code, got.failure.offset, got.failure.length, got.failure.message) == (
            expected["failure"]["code"], expected["failure"]["offset"], expected["failure"]["length"],
            expected["failure"]["message"])


# Expression, code, offset, length, command: as the README's messages place them.
PARSE_ERRORS = [
    ("{TruncateFromBeginning({DecodedData()},2,3)}", -84, 1, 21, "TruncateFromBeginning"),
    ("{TruncateFromBegining({DecodedData()},2)}", -83, 1, 20, None),
    ("{Extract({DecodedData()},[)}", -84, 1, 7, "Extract"),
    ("{TruncateFromBeginning({DecodedData()},{DecodedData()})}", -18, 39, 15, "TruncateFromBeginning"),
    ("a{{b}", -52, 1, 1, None),
    ("é{Nope}", -83, 3, 4, None),  # byte offsets: é is two
]


@pytest.mark.parametrize("expression,code,offset,length,command", PARSE_ERRORS)
def test_parse_errors_point_at_the_culprit(expression, code, offset, length, command):
    with pytest.raises(nrv.ParseError) as caught:
        nrv.Profile(expression)
    error = caught.value
    assert (error.code, error.offset, error.length, error.command) == (code, offset, length, command)
    assert error.name == nrv.code_name(code) and isinstance(error, ValueError)
    message, shown, carets = str(error).split("\n")
    assert message == f"{error.message} ({error.name}, {code})"
    # Bytes that are not printable ASCII are shown escaped, and the carets follow them.
    assert shown == "  " + nrv._escaped(expression.encode("utf-8")).decode("ascii")
    assert carets.index("^") == 2 + len(nrv._escaped(expression.encode("utf-8")[:offset]))
    assert carets.count("~") == max(length - 1, 0)


def test_parse_error_caret_equals_nrv_edit():
    expression = "{TruncateFromBeginning({DecodedData()},2,3)}"
    if TOOL is None:
        pytest.skip("NRV_EDIT does not name an nrv-edit")
    done = subprocess.run([TOOL, "--color=never", expression, "AB"], capture_output=True)
    with pytest.raises(nrv.ParseError) as caught:
        nrv.Profile(expression)
    assert done.stderr.decode() == "nrv-edit: error: " + str(caught.value) + "\n"


@pytest.mark.parametrize("expression,scan", [
    ("{TruncateFromBeginning({DecodedData()},2)}", b"A"),
    ("{Extract({DecodedData()},{Substring({DecodedData()},3,4)},])}", b"AB["),
    ("{InsertBeforeIndex({DecodedData()},{FindFirstFromIndex({DecodedData()},0,-,5)},x)}", b"AB-C"),
    ("{EscapeCharacter({Substring({DecodedData()},4,5)})}", b"\x00\xff"),
])
def test_edit_errors_are_nrv_edit_failing_scan_messages(expression, scan):
    _, (message,) = run_tool([expression], [scan])
    profile = nrv.Profile(expression)
    with pytest.raises(nrv.EditError) as caught:
        profile.edit(bytearray(scan))
    error = caught.value
    assert message == f"nrv-edit: scan 1: {error}"
    assert str(error) == f"{error.command}: {error.message} ({error.name}, {error.code})"
    assert error.code < 0 and error.scan == scan
    with pytest.raises(nrv.EditError) as caught:
        profile.edit_many([b"ABCDEF", scan, scan])
    assert caught.value.index == 1 and str(caught.value) == f"scans[1]: {error}"
    assert profile.edit_many([b"ABCDEF", scan], errors="none")[1] is None
    explanation = profile.explain(scan)
    assert explanation.code == error.code and explanation.failure.command == error.command
    assert explanation.output == scan


SETTINGS = [  # triggers, scan, symbology, edited
    ({"min_size": 3}, b"AB", 0, False),
    ({"min_size": 2, "max_size": 2}, b"AB", 0, True),
    ({"symbologies": ["qrcode", 15]}, b"AB", "Code128", True),
    ({"symbologies": "QRCODE"}, b"AB", 15, False),
    ({"contains": b"\x1d"}, b"01\x1d17", 0, True),
    ({"contains": "\\x1D"}, b"01\x1d17", 0, True),
    ({"contains": b"\\x1D"}, b"01\x1d17", 0, False),  # bytes are taken as they are
    ({"starts_with": b"\\"}, b"\\A", 0, True),
    ({"ends_with": "\u00e9"}, "caf\u00e9".encode(), 0, True),
]


@pytest.mark.parametrize("triggers,scan,symbology,edited", SETTINGS)
def test_triggers(triggers, scan, symbology, edited):
    assert nrv.Profile("<{DecodedData()}>", **triggers).edit(scan, symbology) == (b"<" + scan + b">" if edited else scan)


@pytest.mark.parametrize("triggers,problem", [
    ({"min_size": 5, "max_size": 4}, "'min_size' 5 is above 'max_size' 4"),  # named as Python names them
    ({"contains": b"A\x00"}, "zero byte"),
    ({"max_text": 2 ** 64}, "at most"),
])
def test_settings_refused(triggers, problem):
    with pytest.raises(ValueError, match=re.escape(problem)):
        nrv.Profile("{DecodedData()}", **triggers)


@pytest.mark.parametrize("value,problem", [
    ("Code 128", ValueError), (48, ValueError), (True, TypeError), ("Code128\x00", ValueError)])
def test_symbologies_refused(value, problem):
    with pytest.raises(problem):
        nrv.Profile("{DecodedData()}").edit(b"A", value)


def test_gs1_commands_only_when_their_set_is_enabled():
    expression = "lot {GS1Element({DecodedData()},10)}"
    with pytest.raises(nrv.ParseError) as caught:
        nrv.Profile(expression)
    assert caught.value.code == -83 and "GS1" in caught.value.message
    message = b"]C1010950110153000317141120\x1d10AB-123\x1d21SER42"
    assert nrv.Profile(expression, command_sets=["gs1"]).edit(message) == b"lot AB-123"
    with pytest.raises(nrv.EditError) as caught:
        nrv.Profile(expression, command_sets="GS1").edit(message.replace(b"0003", b"0004"))
    assert caught.value.name == "NRV_ERR_GS1_INVALID" and caught.value.command == "GS1Element"
    with pytest.raises(ValueError, match="unknown command set"):
        nrv.Profile(expression, command_sets=["GS2"])


def test_default_limits_and_lifting_them():
    doubling = "{Substitute(" * 23 + "{DecodedData()}" + ",A,AA)}" * 23
    with pytest.raises(nrv.EditError) as caught:
        nrv.Profile(doubling, max_work=0).edit(b"AAA")  # 24 MiB, over the largest text of 16 MiB
    assert caught.value.name == "NRV_ERR_TEXT_LIMIT"
    assert len(nrv.Profile(doubling, max_work=0, max_text=0).edit(b"AAA")) == 3 << 23


def test_bytes_that_are_not_text():
    every_byte = bytes(range(256))
    profile = nrv.Profile("{MakeUpperCase({DecodedData()})}")
    assert profile.edit(every_byte) == every_byte.upper()
    assert profile.edit(memoryview(every_byte)) == every_byte.upper()
    assert profile.edit_many([every_byte, bytearray(b"\x00a\x00")]) == [every_byte.upper(), b"\x00A\x00"]
    with pytest.raises(TypeError):
        profile.edit("text")
    with pytest.raises(TypeError, match=r"scans\[1\]"):
        profile.edit_many([b"a", "text"])
    with pytest.raises(ValueError, match="zero byte"):
        nrv.Profile("a\x00{DecodedData()}")


def test_a_scan_of_one_megabyte():
    scan = bytes(range(256)) * 4096
    profile = nrv.Profile("{DecodedDataWithoutTrailer()}|{Substring({DecodedData()},1048574,-1)}")
    assert profile.edit(scan) == scan.rstrip(bytes(range(32)) + bytes(range(128, 256))) + b"|" + scan[-2:]
    node = profile.explain(scan).nodes[0]
    assert len(node.value) == 256 and node.value_length == len(scan.rstrip(bytes(range(32)) + bytes(range(128, 256))))


def test_edit_many_over_a_hundred_thousand_scans():
    scans = [b"AB%06d\r\n" % i if i % 7 else b"A" for i in range(100000)]
    profile = nrv.Profile("{TruncateFromBeginning({DecodedDataWithoutTrailer()},2)}")
    kept = profile.edit_many(iter(scans), errors="keep")
    assert kept == [b"%06d" % i if i % 7 else b"A" for i in range(100000)]
    assert kept[0] is scans[0]  # a failed scan is handed back, not copied
    with pytest.raises(nrv.EditError) as caught:
        profile.edit_many(scans)
    assert caught.value.index == 0
    assert profile.edit_many(scans[1:7]) == [profile.edit(scan) for scan in scans[1:7]]
    assert profile.edit_many([]) == []


def test_rule_sets():
    text = open(RULES, encoding="utf-8").read()
    rules = nrv.RuleSet.from_text(text)
    assert len(rules) == text.count("[[rule]]") and [rule.index for rule in rules.rules] == list(range(len(rules)))
    assert rules.edit(b"0036602301467", "upca") == (b"036602301467", rules.rules[0])
    assert rules.edit(b"0036602301467", 0) == (b"0036602301467", None)
    explanation = rules.explain(b"0104412345678909", "DataMatrix")
    assert (explanation.output, explanation.rule) == rules.edit(b"0104412345678909", "DataMatrix")
    assert explanation.output == b"GTIN 04412345678909"
    assert rules.explain(b"x").rule is None and rules.explain(b"x").nodes == []
    failing = nrv.RuleSet.from_text("[[rule]]\nname = 'cut'\nexpression = '{TruncateFromBeginning({DecodedData()},2)}'\n"
                                    "[[rule]]\nexpression = 'never {DecodedData()}'\n")
    with pytest.raises(nrv.EditError) as caught:
        failing.edit(b"AB")  # the rule that takes it fails: no later rule is tried
    assert caught.value.rule == nrv.Rule(0, "cut") and str(caught.value).startswith("rule 1 (cut): TruncateFromBeginning")
    with pytest.raises(nrv.EditError) as caught:
        failing.edit_many([b"ABC", b"AB"])
    assert caught.value.index == 1 and caught.value.rule == nrv.Rule(0, "cut")


@pytest.mark.parametrize("text,line,column,errors,part", [
    ("[[rule]]\nstart-with = 'A'\nexpression = '{DecodedData()}'\n", 2, 1, 1, "did you mean 'starts-with'?"),
    ("[[rule]]\nexpression = 'x{Nope}'\nmin-size = 'big'\n", 2, 17, 2, "does not parse"),
    ("[[rule]\n", 1, 8, 1, ""),  # where the second ']' is missing
    ("", 1, 1, 1, "no rule"),
])
def test_rules_errors(text, line, column, errors, part):
    with pytest.raises(nrv.ParseError) as caught:
        nrv.RuleSet.from_text(text, "mine.toml")
    error = caught.value
    assert (error.name, error.line, error.column, error.errors) == ("NRV_ERR_RULES_FILE", line, column, errors)
    assert error.offset is None and part in error.message
    assert str(error).startswith(f"mine.toml:{line}:{column}: ")
    assert str(error).count("mine.toml:") == errors


def test_rules_file_that_cannot_be_read():
    with pytest.raises(OSError):
        nrv.RuleSet.from_file(os.path.join(SOURCE, "no", "such", "rules.toml"))
