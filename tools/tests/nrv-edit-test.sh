#!/bin/sh
# Integration tests of the nrv-edit binary: each case runs it and compares
# standard output byte for byte, the exit status, and a piece of standard
# error.
#
# Usage: nrv-edit-test.sh PATH-TO-nrv-edit GROUP
# Groups: parse-error failing-scan triggers escapes batch usage list-commands
#         rules rules-check rules-stats rules-require-match
set -u

TOOL=$1
GROUP=$2
WORK=$(mktemp -d) || exit 1
trap 'rm -rf "$WORK"' EXIT INT TERM
: >"$WORK/in"
failures=0
cases=0

# input FORMAT [ARG...]: the next case's standard input, made by printf.
input() {
    fmt=$1
    shift
    # shellcheck disable=SC2059
    printf "$fmt" "$@" >"$WORK/in"
}

# expect NAME STATUS STDOUT STDERR [ARG...]
#   STDOUT: the lines expected, without the last newline; NONE for no output
#           at all. Compared byte for byte.
#   STDERR: a text standard error must contain (fixed string); '' for none.
# Standard input comes from the last input call and is reset afterwards.
expect() {
    name=$1 status=$2 out=$3 err=$4
    shift 4
    cases=$((cases + 1))
    "$TOOL" "$@" <"$WORK/in" >"$WORK/out" 2>"$WORK/err"
    actual=$?
    if [ "$out" = NONE ]; then : >"$WORK/expected"; else printf '%s\n' "$out" >"$WORK/expected"; fi
    problem=
    [ "$actual" -eq "$status" ] || problem="exit status $actual, expected $status"
    cmp -s "$WORK/out" "$WORK/expected" || problem="$problem${problem:+; }standard output differs"
    if [ -z "$err" ]; then
        [ -s "$WORK/err" ] && problem="$problem${problem:+; }unexpected standard error"
    elif ! grep -qF -- "$err" "$WORK/err"; then
        problem="$problem${problem:+; }standard error lacks: $err"
    fi
    if [ -n "$problem" ]; then
        failures=$((failures + 1))
        echo "FAIL $name: $problem"
        echo "  command: nrv-edit $*"
        echo "  --- expected output"; sed 's/^/  | /' "$WORK/expected"
        echo "  --- actual output"; sed 's/^/  | /' "$WORK/out"
        echo "  --- standard error"; sed 's/^/  | /' "$WORK/err"
    fi
    : >"$WORK/in"
}

# expect_bytes NAME STATUS FORMAT TOOL-ARG...: as expect, for outputs that
# hold bytes a shell string cannot (zero bytes): the expected output is
# printf FORMAT; standard error is not checked.
expect_bytes() {
    name=$1 status=$2 fmt=$3
    shift 3
    # shellcheck disable=SC2059
    printf "$fmt" >"$WORK/expected"
    cases=$((cases + 1))
    "$TOOL" "$@" <"$WORK/in" >"$WORK/out" 2>"$WORK/err"
    actual=$?
    if [ "$actual" -ne "$status" ] || ! cmp -s "$WORK/out" "$WORK/expected"; then
        failures=$((failures + 1))
        echo "FAIL $name: exit status $actual (expected $status) or output differs"
        od -c "$WORK/out" | sed 's/^/  actual   | /'
        od -c "$WORK/expected" | sed 's/^/  expected | /'
    fi
    : >"$WORK/in"
}

# stderr_lines NAME COUNT: the last case wrote exactly COUNT lines on
# standard error.
stderr_lines() {
    cases=$((cases + 1))
    n=$(wc -l <"$WORK/err")
    if [ "$n" -ne "$2" ]; then
        failures=$((failures + 1))
        echo "FAIL $1: $n lines on standard error, expected $2"
        sed 's/^/  | /' "$WORK/err"
    fi
}

CUT2='{TruncateFromBeginning({DecodedData()},2)}'
EXAMPLE_RULES=$(dirname "$0")/../../examples/rules.toml

# A rules file for the --rules groups: order, a failing rule, escapes.
write_rules() {
    cat >"$WORK/rules.toml" <<'RULES'
[[rule]]
name = "Part numbers"
starts-with = "PN"
expression = 'Part: {TruncateFromBeginning({DecodedData()},2)}'

[[rule]]
symbologies = ["qrcode", 15]
ends-with = '\x1D'
expression = '{DecodedDataWithoutTrailer()}'

[[rule]]
name = "Short"
max-size = 3
expression = '[{DecodedData()}]'
RULES
}
SHOW='[{DecodedData()}]'

case $GROUP in
parse-error)
    input 'AB1234\n'
    expect "unknown command names the code and the name" 2 NONE \
        "nrv-edit: cannot parse the expression: NRV_ERR_UNKNOWN_COMMAND (-83): a name that is not a command; parser: Error unable to find the command:Frobnicate" \
        'x{Frobnicate({DecodedData()})}'
    stderr_lines "one message for a parse error" 1
    expect "parameter count" 2 NONE "NRV_ERR_PARAMETER_COUNT (-84)" '{TruncateFromBeginning({DecodedData()})}' AB1234
    expect "text where a number is needed" 2 NONE "NRV_ERR_INVALID_PARAMETER (-18)" \
        '{TruncateFromBeginning({DecodedData()},{DecodedData()})}' AB1234
    expect "unbalanced delimiter" 2 NONE "NRV_ERR_SYNTAX (-52)" '{{DecodedData()}' AB1234
    expect "names are case-sensitive" 2 NONE "find the command:decodedData" '{decodedData()}' AB
    # The expression is refused before the input is opened.
    expect "parse error before the input is opened" 2 NONE "NRV_ERR_UNKNOWN_COMMAND" -i "$WORK/missing" '{Nope()}'
    expect "--check accepts" 0 "ok" '' --check "Code: $CUT2"
    expect "--check refuses" 2 NONE "NRV_ERR_UNKNOWN_COMMAND (-83)" --check '{Nope()}'
    input 'AB1234\n'
    expect "--check reads no scan" 0 "ok" '' --check "$CUT2"
    expect "--trace marks the error line" 2 NONE "trace: ERROR: Error unable to find the command:Nope" --trace '{Nope()}' x
    expect "--trace shows the steps" 0 "1234" "trace: *** command:TruncateFromBeginning" --trace "$CUT2" AB1234
    ;;

failing-scan)
    input 'AB1234\nA\nCD99\nAB\n'
    expect "failing scans pass unchanged and lines stay aligned" 1 "1234
A
99
AB" "nrv-edit: scan 2: NRV_ERR_OUT_OF_RANGE (-43): " "$CUT2"
    stderr_lines "one message per failing scan" 2
    expect "the last failing scan is numbered" 1 "x
ok" "nrv-edit: scan 1: NRV_ERR_OUT_OF_RANGE (-43)" '{TruncateFromEnd({DecodedData()},2)}' x okok
    expect "every scan edited: status 0" 0 "1234
99" '' "$CUT2" AB1234 CD99
    expect "empty scan" 1 "" "scan 1: NRV_ERR_OUT_OF_RANGE" '{TruncateFromBeginning({DecodedData()},0)}' ''
    ;;

triggers)
    expect "--starts-with" 0 "1234
XY5678" '' --starts-with AB "$CUT2" AB1234 XY5678
    expect "--ends-with" 0 "12
AB34x
AB" '' --ends-with 34 '{TruncateFromEnd({DecodedData()},2)}' 1234 AB34x AB34
    expect "--contains; -- ends the options" 0 "[-x-]
abc" '' --contains x -- "$SHOW" -x- abc
    expect "size bounds are inclusive" 0 "ABC
[ABCD]
[ABCDEF]
ABCDEFG" '' --min-size 4 --max-size 6 "$SHOW" ABC ABCD ABCDEF ABCDEFG
    expect "size 0 is unset" 0 "[]
[A]" '' --min-size 0 --max-size 0 "$SHOW" '' A
    expect "symbology not listed" 0 "AB1234" '' -s Code128 --only-symbology QRCode "$CUT2" AB1234
    expect "symbology listed, by name in any case" 0 "1234" '' -s code128 --only-symbology Aztec --only-symbology CODE128 "$CUT2" AB1234
    expect "symbology by number" 0 "1234" '' -s 38 --only-symbology qrcode "$CUT2" AB1234
    expect "no symbology given is NotSpecified" 0 "AB1234" '' --only-symbology Code128 "$CUT2" AB1234
    expect "every trigger must hold" 0 "AB1234
[AB99]" '' --starts-with AB --ends-with 99 "$SHOW" AB1234 AB99
    expect "escaped trigger text" 0 "AB" '' -e --ends-with '\r\n' '{DecodedDataWithoutTrailer()}' 'AB\r\n'
    expect "raw trigger text keeps its backslash" 0 "[a\\x]
b\\y" '' --contains '\x' "$SHOW" 'a\x' 'b\y'
    ;;

escapes)
    input 'a\\\\b\\r\\n\\t\\x00\\x7f\\xff\\x41\n'
    expect "escapes are decoded and shown canonically" 0 'a\\b\r\n\t\x00\x7F\xFFA' '' -e '{DecodedData()}'
    # All 256 byte values: decoding then showing gives back the same line.
    line=$(awk 'BEGIN {
        for (i = 0; i < 256; i++) {
            if (i == 9) s = s "\\t"; else if (i == 10) s = s "\\n"; else if (i == 13) s = s "\\r"
            else if (i == 92) s = s "\\\\"
            else if (i >= 32 && i < 127) s = s sprintf("%c", i)
            else s = s sprintf("\\x%02X", i)
        }
        print s
    }')
    printf '%s\n' "$line" >"$WORK/in"
    expect "every byte round-trips through -e" 0 "$line" '' -e '{DecodedData()}'
    expect "every byte as an argument" 0 "$line" '' -e '{DecodedData()}' "$line"
    expect "strip the trailing CR LF" 0 '12345
AB' '' -e '{DecodedDataWithoutTrailer()}' '12345\r\n' 'AB\x00\x1d\xff'
    input 'a\000b\r\200\n'
    expect_bytes "raw bytes pass through without -e" 0 '[a\000b\r\200]\n' "$SHOW"
    input 'x\\q\n'
    expect_bytes "without -e a backslash is a byte" 0 '[x\\q]\n' "$SHOW"
    expect "control bytes shown with -e" 0 '[AB\x1DCD\r]' '' -e "$SHOW" 'AB\x1dCD\r'
    expect "unknown escape in an argument" 2 NONE "DATA argument 2 'a\\q': unknown escape \\q" -e "$SHOW" ok 'a\q'
    expect "short \\x escape" 2 NONE "\\x must be followed by two hexadecimal digits" -e "$SHOW" 'a\x4'
    # shellcheck disable=SC1003
    expect "trailing backslash" 2 NONE "a backslash ends the text" -e "$SHOW" 'a\'
    input 'ok\nbad\\x4g\nnever\n'
    expect "malformed line stops the batch and names the line" 2 "[ok]" "standard input, line 2: " -e "$SHOW"
    expect "malformed trigger" 2 NONE "--contains 'a\\z'" -e --contains 'a\z' "$SHOW" x
    expect "zero byte in a trigger" 2 NONE "a trigger text cannot hold a zero byte" -e --starts-with '\x00' "$SHOW" x
    ;;

batch)
    input 'a\n\nb'
    expect "empty lines are scans; a last line without newline counts" 0 "[a]
[]
[b]" '' "$SHOW"
    input ''
    expect "empty input, no output" 0 NONE '' "$SHOW"
    input 'AB1\nAB22\n'
    expect "-i -" 0 "1
22" '' -i - "$CUT2"
    printf 'id[42]x\nno markers\n' >"$WORK/scans"
    expect "-i FILE, a field between markers" 0 "42
no markers" '' -i "$WORK/scans" '{Extract({DecodedData()},[,])}'
    stderr_lines "no error for a scan without the markers" 0
    # Enough lines to cross many read and write buffers; sed does the same edit.
    awk 'BEGIN { for (i = 0; i < 100000; i++) printf "AB%d-%s\n", i, substr("xxxxxxxxxxxxxxxxxxxx", 1, i % 21) }' \
        >"$WORK/many"
    sed 's/^..//' "$WORK/many" >"$WORK/many.sed"
    cases=$((cases + 1))
    if ! "$TOOL" -i "$WORK/many" "$CUT2" >"$WORK/many.out" || ! cmp -s "$WORK/many.out" "$WORK/many.sed"; then
        failures=$((failures + 1))
        echo "FAIL 100000 scans: output differs from sed's"
    fi
    # A line longer than any buffer.
    awk 'BEGIN { s = "0123456789"; while (length(s) < 700000) s = s s; print "AB" s; print "AB" }' >"$WORK/long"
    cases=$((cases + 1))
    "$TOOL" -i "$WORK/long" "$CUT2" >"$WORK/long.out" 2>"$WORK/err"
    if [ $? -ne 1 ] || [ "$(sed -n 1p "$WORK/long.out" | wc -c)" -ne "$(sed -n 1p "$WORK/long" | wc -c | awk '{print $1 - 2}')" ] ||
        [ "$(sed -n 2p "$WORK/long.out")" != AB ]; then
        failures=$((failures + 1))
        echo "FAIL long line: wrong length or the next line lost"
    fi
    expect "quick-start example" 0 "Code: 1234" '' "Code: $CUT2" AB1234
    expect "literal-only expression" 0 "fixed
fixed" '' fixed a b
    ;;

usage)
    expect "unknown long option" 2 NONE "nrv-edit: unknown option '--bogus'" --bogus "$SHOW" x
    expect "hint to --help" 2 NONE "Try 'nrv-edit --help'" --bogus "$SHOW" x
    stderr_lines "usage error: message and hint" 2
    expect "unknown short option" 2 NONE "unknown option '-z'" -z "$SHOW" x
    expect "missing value" 2 NONE "option '--contains' needs a value" "$SHOW" --contains
    expect "negative size" 2 NONE "invalid size '-1' for --min-size" --min-size -1 "$SHOW" x
    expect "size with a suffix" 2 NONE "invalid size '12k' for --max-size" --max-size 12k "$SHOW" x
    expect "size too large" 2 NONE "invalid size" --max-size 99999999999999999999999 "$SHOW" x
    expect "unknown symbology name" 2 NONE "unknown symbology 'Code129'" -s Code129 "$SHOW" x
    expect "symbology number past the last" 2 NONE "unknown symbology '48'" --only-symbology 48 "$SHOW" x
    expect "last symbology number" 0 "[x]" '' -s 47 --only-symbology HanXin "$SHOW" x
    expect "unreadable file" 2 NONE "cannot read '$WORK/missing'" -i "$WORK/missing" "$SHOW"
    expect "a directory as input" 2 NONE "cannot read '$WORK': Is a directory" -i "$WORK" "$SHOW"
    expect "missing expression" 2 NONE "missing EXPRESSION"
    expect "both DATA and -i" 2 NONE "not both" -i - "$SHOW" x
    if [ -w /dev/full ]; then
        cases=$((cases + 1))
        "$TOOL" "$SHOW" x >/dev/full 2>"$WORK/err"
        if [ $? -ne 2 ] || ! grep -q "cannot write the output" "$WORK/err"; then
            failures=$((failures + 1))
            echo "FAIL a full disk is not reported"
        fi
    fi
    cases=$((cases + 1))
    if ! "$TOOL" --help | grep -q -- '--only-symbology NAME|N'; then
        failures=$((failures + 1))
        echo "FAIL --help does not document the options"
    fi
    cases=$((cases + 1))
    if ! "$TOOL" --version | grep -q '^nrv-edit [0-9]'; then
        failures=$((failures + 1))
        echo "FAIL --version"
    fi
    ;;

list-commands)
    expect "all eighteen commands with their parameters" 0 "DecodedData()                                      -> text
TruncateFromBeginning(text, index)                 -> text
TruncateFromEnd(text, index)                       -> text
Replace(text, text, text)                          -> text
Substitute(text, text, text)                       -> text
EscapeCharacter(text)                              -> text
InsertAfterIndex(text, index, text)                -> text
InsertBeforeIndex(text, index, text)               -> text
FindFirstFromIndex(text, index, text, index)       -> index
FindLastFromIndex(text, index, text, index)        -> index
MakeUpperCase(text)                                -> text
MakeLowerCase(text)                                -> text
ReplaceNonPrintableCharacters(text, text)          -> text
DecodedDataWithoutTrailer()                        -> text
TruncateAfterIndex(text, index, index)             -> text
TruncateBeforeIndex(text, index, index)            -> text
Substring(text, index, index)                      -> text
Extract(text, text, text)                          -> text" '' --list-commands
    ;;

rules)
    write_rules
    expect "the first rule that holds edits; -s applies to every scan" 0 "Part: 42
[ab]
Part: 7
abcd" '' -s Code128 --rules "$WORK/rules.toml" PN42 ab PN7 abcd
    # Rule 1 takes PN and fails: the scan is printed unchanged and rule 3,
    # which would hold, is not tried.
    expect "a failing edit does not fall through" 1 "PN
[xy]" "nrv-edit: scan 1: rule 1 (Part numbers): NRV_ERR_OUT_OF_RANGE (-43)" --rules "$WORK/rules.toml" PN xy
    stderr_lines "one message for the failing scan" 1
    input 'PN1\nQR-9\x1d\nzz\n'
    expect "batch with -e: escaped trigger in the file, symbology by number" 0 "Part: 1
QR-9
[zz]" '' -e -s 15 --rules "$WORK/rules.toml"
    input 'QR-9\x1d\n'
    expect "symbology not listed: no rule" 0 'QR-9\x1D' '' -e -s Aztec --rules "$WORK/rules.toml"
    printf 'PN5\n' >"$WORK/scans"
    expect "-i FILE" 0 "Part: 5" '' -i "$WORK/scans" --rules "$WORK/rules.toml"
    expect "the example file: UPC-A loses its leading zero" 0 "036602301467
3560070169443" '' -s UpcA --rules "$EXAMPLE_RULES" 0036602301467 3560070169443
    expect "the example file: GS1 separators and GTIN" 0 '01095040000591012112345678p901|101234567p
GTIN 04412345678909' '' -e -s DataMatrix --rules "$EXAMPLE_RULES" \
        '01095040000591012112345678p901\x1D101234567p' 0104412345678909
    expect "an operand is a scan, never an expression" 0 "{Nope()}" '' --rules "$WORK/rules.toml" '{Nope()}'
    expect "trigger options do not go with --rules" 2 NONE "--starts-with does not go with --rules" \
        --starts-with PN --rules "$WORK/rules.toml" x
    expect "unreadable rules file" 2 NONE "$WORK/missing.toml: cannot read the file" --rules "$WORK/missing.toml" x
    ;;

rules-check)
    write_rules
    expect "--check --rules accepts" 0 "ok" '' --check --rules "$WORK/rules.toml"
    expect "the example file is valid" 0 "ok" '' --check --rules "$EXAMPLE_RULES"
    cat >"$WORK/bad.toml" <<'RULES'
[[rule]]
  start-with = "PN"
expression = 'x{Frobnicate()}'
[[rule]]
symbologies = ["Code129"]
min-size = 5
max-size = 4
RULES
    input 'never read\n'
    expect "every error, each at its line and column" 2 NONE "$WORK/bad.toml:2:3: rule 1: unknown key 'start-with' (did you mean 'starts-with'?)" \
        --check --rules "$WORK/bad.toml"
    for piece in "$WORK/bad.toml:3:" "rule 1: the expression does not parse" "(NRV_ERR_UNKNOWN_COMMAND, -83)" \
        "$WORK/bad.toml:4:1: rule 2 has no 'expression'" "$WORK/bad.toml:5:16: rule 2: unknown symbology 'Code129'" \
        "$WORK/bad.toml:6:12: rule 2 can never match" "nrv-edit: 5 errors in the rules file"; do
        cases=$((cases + 1))
        grep -qF -- "$piece" "$WORK/err" || { failures=$((failures + 1)); echo "FAIL --check lacks: $piece"; }
    done
    # Each error: its message, the line, a caret.
    stderr_lines "three lines per error and a count" 16
    cases=$((cases + 1))
    if ! grep -qxF '      ^~~~~~~~~~' "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL no caret under the misspelt key"
    fi
    expect "errors stop a run before any scan" 2 NONE "5 errors" --rules "$WORK/bad.toml" PN1
    printf '[[rule]]\nexpression = \n' >"$WORK/syntax.toml"
    expect "TOML syntax error" 2 NONE "$WORK/syntax.toml:2:14: " --check --rules "$WORK/syntax.toml"
    ;;

rules-stats)
    write_rules
    input 'PN1\nPN\nabcdef\nxy\nPN22\n'
    expect "--stats counts each rule's edits and failures, and the unmatched" 1 "Part: 1
PN
abcdef
[xy]
Part: 22" "stats: rule 1 (Part numbers): 2 edited, 1 failed" --stats --rules "$WORK/rules.toml"
    for piece in "stats: rule 2: 0 edited, 0 failed" "stats: rule 3 (Short): 1 edited, 0 failed" \
        "stats: no rule matched: 1"; do
        cases=$((cases + 1))
        grep -qxF -- "$piece" "$WORK/err" || { failures=$((failures + 1)); echo "FAIL --stats lacks: $piece"; }
    done
    stderr_lines "one failure line and four stats lines" 5
    expect "no --stats, no stats" 0 "Part: 1" '' --rules "$WORK/rules.toml" PN1
    expect "--stats needs --rules" 2 NONE "--stats goes with --rules only" --stats "$SHOW" x
    ;;

rules-require-match)
    write_rules
    expect "without --require-match an unmatched scan passes" 0 "abcd" '' --rules "$WORK/rules.toml" abcd
    expect "--require-match: an unmatched scan is a failure" 1 "Part: 1
abcd
[ab]" "nrv-edit: scan 2: no rule matched" --require-match --rules "$WORK/rules.toml" PN1 abcd ab
    stderr_lines "one message" 1
    expect "--require-match, every scan matched" 0 "Part: 1" '' --require-match --rules "$WORK/rules.toml" PN1
    expect "--require-match needs --rules" 2 NONE "--require-match goes with --rules only" --require-match "$SHOW" x
    ;;

*)
    echo "unknown group: $GROUP"
    exit 2
    ;;
esac

echo "$GROUP: $((cases - failures)) of $cases cases passed"
[ "$failures" -eq 0 ]
