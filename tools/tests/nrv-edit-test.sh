#!/bin/sh
# Integration tests of the nrv-edit binary: each case runs it and compares
# standard output byte for byte, the exit status, and a piece of standard
# error.
#
# Usage: nrv-edit-test.sh PATH-TO-nrv-edit GROUP
# Groups: parse-error failing-scan triggers escapes batch usage list-commands
#         explain json color
#         rules rules-check rules-stats rules-require-match
#         rules-test rules-test-errors rules-junit
#         limits streams options
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

# no_raw_controls WHAT: the last run wrote no ESC, BEL or VT, on either stream.
no_raw_controls() {
    cases=$((cases + 1))
    if cat "$WORK/out" "$WORK/err" | grep -q "$(printf '[\033\007\013]')"; then
        failures=$((failures + 1))
        echo "FAIL a raw control byte reached the terminal: $(printf %s "$1" | tr -d "\001-\037")"
        od -c "$WORK/err" | sed 's/^/  | /'
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
    expect "unknown command: the sentence, the expression, carets under the name" 2 NONE \
        'nrv-edit: error: unknown command "Frobnicate" (NRV_ERR_UNKNOWN_COMMAND, -83)' \
        'x{Frobnicate({DecodedData()})}'
    cases=$((cases + 1))
    printf '%s\n' 'nrv-edit: error: unknown command "Frobnicate" (NRV_ERR_UNKNOWN_COMMAND, -83)' \
        '  x{Frobnicate({DecodedData()})}' '    ^~~~~~~~~~' >"$WORK/expected"
    if ! cmp -s "$WORK/err" "$WORK/expected"; then
        failures=$((failures + 1))
        echo "FAIL the whole caret message"; sed 's/^/  | /' "$WORK/err"
    fi
    expect "parameter count: the command, what it takes, what is written" 2 NONE \
        "error: TruncateFromBeginning takes 2 parameters (text, count), but 1 is written (NRV_ERR_PARAMETER_COUNT, -84)" \
        '{TruncateFromBeginning({DecodedData()})}' AB1234
    expect "text where a number is needed: which parameter" 2 NONE \
        "parameter 2 (count) of TruncateFromBeginning must be a number, but DecodedData gives a text" \
        '{TruncateFromBeginning({DecodedData()},{DecodedData()})}' AB1234
    expect "carets under the wrong parameter" 2 NONE \
        "                                       ^~~~~~~~~~~~~~" '{TruncateFromBeginning({DecodedData()},{DecodedData()})}' AB1234
    expect "unbalanced delimiter: the brace without a partner" 2 NONE "error: this { has no matching } (NRV_ERR_SYNTAX, -52)" \
        '{{DecodedData()}' AB1234
    stderr_lines "message, expression, carets" 3
    expect "a suggestion for the case" 2 NONE 'unknown command "decodedData"; did you mean DecodedData?' '{decodedData()}' AB
    # A tab is shown as \t and the carets still fall under the name.
    expect "control bytes escaped, carets aligned" 2 NONE '  a\tb{Nope()}
       ^~~~' "$(printf 'a\tb{Nope()}')" x
    long=$(awk 'BEGIN { for (i = 0; i < 20; i++) printf "{DecodedData()}"; printf "{Nope()}"; for (i = 0; i < 20; i++) printf "{DecodedData()}" }')
    expect "a long expression is shown as a window around the culprit" 2 NONE '  ...DecodedData()}{DecodedData()}{Nope()}{DecodedData()}{DecodedData()}' "$long" x
    cases=$((cases + 1))
    if [ "$(sed -n 2p "$WORK/err" | wc -c)" -gt 120 ]; then
        failures=$((failures + 1))
        echo "FAIL the window is too wide"
    fi
    # The expression is refused before the input is opened.
    expect "parse error before the input is opened" 2 NONE "NRV_ERR_UNKNOWN_COMMAND" -i "$WORK/missing" '{Nope()}'
    expect "--check accepts" 0 "ok" '' --check "Code: $CUT2"
    expect "--check refuses" 2 NONE "NRV_ERR_UNKNOWN_COMMAND, -83" --check '{Nope()}'
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
AB" "nrv-edit: scan 2: TruncateFromBeginning: count 2 is not less than the length 1 of the text (NRV_ERR_OUT_OF_RANGE, -43)" "$CUT2"
    stderr_lines "one message per failing scan" 2
    expect "the last failing scan is numbered" 1 "x
ok" "nrv-edit: scan 1: TruncateFromEnd: count 2 is not less than the length 1 of the text" '{TruncateFromEnd({DecodedData()},2)}' x okok
    expect "every scan edited: status 0" 0 "1234
99" '' "$CUT2" AB1234 CD99
    expect "empty scan" 1 "" "scan 1: TruncateFromBeginning: count 0 is not less than the length 0 of the text" \
        '{TruncateFromBeginning({DecodedData()},0)}' ''
    expect "the command that failed first, inside another" 1 "AB" \
        "scan 1: Extract: stopMarker is empty (NRV_ERR_OUT_OF_RANGE, -43)" '{MakeUpperCase({Extract({DecodedData()},[,)})}' AB
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
    expect "size with a suffix" 2 NONE "invalid size '12k' for --max-size" --max-size 12k "$SHOW" x
    expect "unknown symbology name" 2 NONE "unknown symbology 'Code129'" -s Code129 "$SHOW" x
    expect "symbology number past the last" 2 NONE "unknown symbology '48'" --only-symbology 48 "$SHOW" x
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
    # The listing's format, on a row or two: the commands themselves come
    # from the command table, which the unit tests check.
    cases=$((cases + 1))
    "$TOOL" --list-commands >"$WORK/out" 2>"$WORK/err"
    status=$?
    problem=
    [ "$status" -eq 0 ] || problem="exit status $status"
    [ -s "$WORK/err" ] && problem="$problem${problem:+; }unexpected standard error"
    printf '%s\n' "DecodedData() -> text" "    the scan's bytes, exactly as read" >"$WORK/expected"
    sed -n '1,2p' "$WORK/out" | cmp -s - "$WORK/expected" ||
        problem="$problem${problem:+; }the first command is not listed as expected"
    grep -qxF "FindFirstFromIndex(text: text, start: number, search: text, offset: number) -> number" "$WORK/out" ||
        problem="$problem${problem:+; }a command with number parameters is not listed as expected"
    # The GS1 set under its own heading, after a blank line, and its commands after it.
    grep -A1 -xF "GS1 commands (an extension set, enabled unless --seed-only):" "$WORK/out" |
        grep -q '^GS1Element(text: text, ai: text) -> text$' ||
        problem="$problem${problem:+; }the GS1 commands are not listed under their heading"
    # Every command is a signature line, then its summary indented by four;
    # each set's heading follows a blank line.
    grep -v -e '^$' -e '^[A-Z0-9]* commands (.*):$' "$WORK/out" >"$WORK/commands"
    awk 'NR % 2 == 1 && !/^[A-Za-z]+\((|[a-zA-Z]+: (text|number)(, [a-zA-Z]+: (text|number))*)\) -> (text|number)$/ { bad = 1 }
         NR % 2 == 0 && !/^    [^ ]/ { bad = 1 }
         END { exit bad || NR % 2 != 0 || NR == 0 }' "$WORK/commands" ||
        problem="$problem${problem:+; }a line is not a signature followed by its summary"
    if [ -n "$problem" ]; then
        failures=$((failures + 1))
        echo "FAIL --list-commands: $problem"
        sed 's/^/  | /' "$WORK/out"
    fi
    cases=$((cases + 1))
    if ! "$TOOL" --help | grep -q 'ReplaceNonPrintableCharacters'; then
        failures=$((failures + 1))
        echo "FAIL --help does not name the commands"
    fi
    ;;

explain)
    expect "a tree per scan, values indented under their commands" 0 'scan 1: "AB1234" => "Code: 1234"
  "Code: " => "Code: "
  TruncateFromBeginning => "1234"
    DecodedData => "AB1234"
    2 => 2' '' --explain "Code: $CUT2" AB1234
    expect "the failing command marked, later nodes not run" 1 'scan 1: "AB" => failed, left unchanged (NRV_ERR_OUT_OF_RANGE, -43)
  MakeUpperCase => failed (NRV_ERR_OUT_OF_RANGE, -43)
    TruncateFromEnd => FAILED: count 5 is not less than the length 2 of the text (NRV_ERR_OUT_OF_RANGE, -43)
      DecodedData => "AB"
      5 => 5
  "x" (not run)
  DecodedData (not run)
scan 2: "abcdef" => "Axabcdef"
  MakeUpperCase => "A"
    TruncateFromEnd => "a"
      DecodedData => "abcdef"
      5 => 5
  "x" => "x"
  DecodedData => "abcdef"' '' --explain '{MakeUpperCase({TruncateFromEnd({DecodedData()},5)})}x{DecodedData()}' AB abcdef
    expect "bytes in values are escaped" 0 'scan 1: "a\x00\r" => "a"
  DecodedDataWithoutTrailer => "a"' '' --explain -e '{DecodedDataWithoutTrailer()}' 'a\x00\r'
    expect "a scan the triggers leave alone" 0 'scan 1: "xy" not triggered, left unchanged' '' --explain --starts-with AB "$CUT2" xy
    expect "a parse error is reported as without --explain" 2 NONE "error: unknown command" --explain '{Nope()}' x
    ;;

json)
    expect "--check --json accepts" 0 '{"ok":true}' '' --check --json "$CUT2"
    expect "--check --json refuses with the culprit's range" 2 \
        '{"ok":false,"code":-84,"name":"NRV_ERR_PARAMETER_COUNT","offset":1,"length":21,"command":"TruncateFromBeginning","message":"TruncateFromBeginning takes 2 parameters (text, count), but 3 are written"}' \
        '' --check --json '{TruncateFromBeginning({DecodedData()},2,3)}'
    expect "no command: null" 2 \
        '{"ok":false,"code":-52,"name":"NRV_ERR_SYNTAX","offset":0,"length":1,"command":null,"message":"this { has no matching }"}' \
        '' --check --json '{{DecodedData()}'
    expect "--explain --json: one object per scan" 0 \
        '{"scan":1,"code":0,"output":"AB-","nodes":[{"kind":"command","name":"MakeUpperCase","offset":0,"length":32,"code":0,"value":"AB","params":[{"kind":"command","name":"DecodedData","offset":15,"length":15,"code":0,"value":"ab","params":[]}]},{"kind":"text","name":"-","offset":32,"length":1,"code":0,"value":"-","params":[]}]}' \
        '' --explain --json '{MakeUpperCase({DecodedData()})}-' ab
    expect "integers, not-run nodes and the failure" 1 \
        '{"scan":1,"code":-43,"output":"A","nodes":[{"kind":"command","name":"TruncateFromEnd","offset":0,"length":36,"code":-43,"value":null,"params":[{"kind":"command","name":"DecodedData","offset":17,"length":15,"code":0,"value":"A","params":[]},{"kind":"integer","name":"1","offset":33,"length":1,"code":0,"value":1,"params":[]}]},{"kind":"text","name":"!","offset":36,"length":1,"code":null,"value":null,"params":[]}],"failure":{"code":-43,"name":"NRV_ERR_OUT_OF_RANGE","offset":1,"length":15,"command":"TruncateFromEnd","message":"count 1 is not less than the length 1 of the text"}}' \
        '' --explain --json '{TruncateFromEnd({DecodedData()},1)}!' A
    # Every byte maps to the code point of its value: quote, backslash and
    # controls escaped, 0x80..0xFF as \u0080..\u00ff.
    input 'q"b\\\001\177\200\377\n'
    expect "bytes map one to one onto U+0000..U+00FF" 0 \
        '{"scan":1,"code":0,"output":"q\"b\\\u0001\u007f\u0080\u00ff","nodes":[{"kind":"command","name":"DecodedData","offset":0,"length":15,"code":0,"value":"q\"b\\\u0001\u007f\u0080\u00ff","params":[]}]}' \
        '' --explain --json '{DecodedData()}'
    expect "a scan the triggers leave alone: code 1, the scan, no nodes" 0 '{"scan":1,"code":1,"output":"ab","nodes":[]}' \
        '' --explain --json --starts-with Z '{DecodedData()}' ab
    expect "--explain --json with a parse error: the --check object" 2 \
        '{"ok":false,"code":-83,"name":"NRV_ERR_UNKNOWN_COMMAND","offset":1,"length":4,"command":null,"message":"unknown command \"Nope\""}' \
        '' --explain --json '{Nope()}' ab
    expect "--json alone is a usage error" 2 NONE "--json goes with --check, --explain or --test" --json "$CUT2" x
    ;;

color)
    expect "never: no escape sequences" 2 NONE "nrv-edit: error: unknown command" --color=never '{Nope()}' x
    cases=$((cases + 1))
    if grep -q "$(printf '\033')" "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL --color=never wrote an escape sequence"
    fi
    expect "always: the error and the carets coloured" 2 NONE "$(printf '\033[1;31merror:\033[0m')" --color=always '{Nope()}' x
    expect "always: carets in green" 2 NONE "$(printf '\033[1;32m^~~~\033[0m')" --color=always '{Nope()}' x
    expect "--color alone is always" 2 NONE "$(printf '\033[1;31merror:')" --color '{Nope()}' x
    # Standard error is a file here, so auto means no colour; NO_COLOR too.
    expect "auto: no colour when not a terminal" 2 NONE "nrv-edit: error: unknown" '{Nope()}' x
    cases=$((cases + 1))
    if NO_COLOR=1 "$TOOL" --color=auto '{Nope()}' x 2>&1 | grep -q "$(printf '\033')"; then
        failures=$((failures + 1))
        echo "FAIL NO_COLOR is not honoured"
    fi
    # On a terminal (made by script(1), where it can make one), auto colours
    # unless NO_COLOR is set.
    : >"$WORK/tty"
    if command -v script >/dev/null 2>&1; then
        script -qec "\"$TOOL\" '{Nope()}' x" /dev/null >"$WORK/tty" 2>&1 </dev/null
    fi
    if grep -q 'unknown command' "$WORK/tty"; then
        cases=$((cases + 1))
        if ! grep -q "$(printf '\033\\[1;31m')" "$WORK/tty"; then
            failures=$((failures + 1))
            echo "FAIL auto does not colour on a terminal"
        fi
        cases=$((cases + 1))
        NO_COLOR=1 script -qec "\"$TOOL\" '{Nope()}' x" /dev/null >"$WORK/tty" 2>&1 </dev/null
        if grep -q "$(printf '\033')" "$WORK/tty"; then
            failures=$((failures + 1))
            echo "FAIL NO_COLOR is not honoured on a terminal"
        fi
    fi
    expect "an unknown value" 2 NONE "invalid value 'sometimes' for --color" --color=sometimes '{Nope()}' x
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
[xy]" "nrv-edit: scan 1: rule 1 (Part numbers): TruncateFromBeginning: count 2 is not less than the length 2 of the text (NRV_ERR_OUT_OF_RANGE, -43)" --rules "$WORK/rules.toml" PN xy
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
    # A real scan with a lot and an expiry date; the same with a wrong check
    # digit is no GS1 message, and the separators rule takes it.
    expect "the example file: GS1 lot and expiry" 0 'lot 1234567p expiry 141120
01095040000591112112345678p901|101234567p|17141120' '' -e -s DataMatrix --rules "$EXAMPLE_RULES" \
        '01095040000591012112345678p901\x1D101234567p\x1D17141120' \
        '01095040000591112112345678p901\x1D101234567p\x1D17141120'
    expect "--seed-only: a GS1 command in the example file is unknown" 2 NONE \
        'rule 2: the expression does not parse: unknown command "GS1Element"' \
        --seed-only --check --rules "$EXAMPLE_RULES"
    expect "an operand is a scan, never an expression" 0 "{Nope()}" '' --rules "$WORK/rules.toml" '{Nope()}'
    expect "--explain names the rule before its tree, or that none applied" 0 'rule 1 (Part numbers) applied
scan 1: "PN7" => "Part: 7"
  "Part: " => "Part: "
  TruncateFromBeginning => "7"
    DecodedData => "PN7"
    2 => 2
no rule applied
scan 2: "abcd" not triggered, left unchanged' '' --explain --rules "$WORK/rules.toml" PN7 abcd
    expect "--explain --json carries the rule" 0 '{"scan":1,"rule":{"index":1,"name":"Part numbers"},"code":0,"output":"Part: 7","nodes":[{"kind":"text","name":"Part: ","offset":0,"length":6,"code":0,"value":"Part: ","params":[]},{"kind":"command","name":"TruncateFromBeginning","offset":6,"length":42,"code":0,"value":"7","params":[{"kind":"command","name":"DecodedData","offset":29,"length":15,"code":0,"value":"PN7","params":[]},{"kind":"integer","name":"2","offset":45,"length":1,"code":0,"value":2,"params":[]}]}]}' \
        '' --explain --json --rules "$WORK/rules.toml" PN7
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

limits)
    # Finding: 1,000 good lines, then one scan whose edit would grow past
    # any memory: reported, printed unchanged, every line before it kept.
    awk 'BEGIN { for (i = 1; i <= 1000; i++) print "AB" i; s = "a"; while (length(s) < 200000) s = s s; print s; print "end" }' \
        >"$WORK/flood"
    cases=$((cases + 1))
    "$TOOL" -i "$WORK/flood" '{Substitute({DecodedData()},a,{DecodedData()})}' >"$WORK/out" 2>"$WORK/err"
    if [ $? -ne 1 ] || ! cmp -s "$WORK/out" "$WORK/flood" ||
        ! grep -q "scan 1001: a result would be larger than the profile.s largest text (NRV_ERR_TEXT_LIMIT, -60)" "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL a scan past the text limit loses output or is not reported"
    fi
    expect "--max-text at the bound" 0 "abcdef" '' --max-text 6 '{DecodedData()}' abcdef
    expect "--max-text under the bound" 1 "abcdef" "(NRV_ERR_TEXT_LIMIT, -60)" --max-text 5 '{DecodedData()}' abcdef
    expect "--max-text 0 is no limit" 0 "abcdefabcdef" '' --max-text 0 '{DecodedData()}{DecodedData()}' abcdef
    # Extract comparing a 2 MB marker at each of 4 MB: minutes without a budget.
    hostile=$(awk 'function d(n, e) { e = "{DecodedData()}"; while (n-- > 0) e = "{Substitute(" e ",a,aa)}"; return e }
        BEGIN { printf "{Extract(%s,%s,|)}", d(22), d(21) }')
    expect "a hostile search stops at the work budget" 1 "a|
ok" "scan 1: the edit used up its work budget (NRV_ERR_WORK_LIMIT, -61)" "$hostile" 'a|' ok
    expect "--max-work 0 is no budget" 0 "aaaa" '' --max-work 0 '{Substitute({DecodedData()},a,aa)}' aa
    cases=$((cases + 1))
    "$TOOL" --explain "{Replace($hostile,x,y)}" 'a|' >"$WORK/out" 2>&1
    if [ $? -ne 1 ] || [ "$(head -n 1 "$WORK/out")" != 'scan 1: "a|" => failed, left unchanged (NRV_ERR_WORK_LIMIT, -61)' ]; then
        failures=$((failures + 1))
        echo "FAIL --explain of a hostile expression does not stop at the work budget"
        head -n 3 "$WORK/out"
    fi
    # Allocation failure: only where an address-space limit can be set (not
    # under the address sanitizer).
    if (ulimit -v 100000 && "$TOOL" --version) >/dev/null 2>&1; then
        printf 'AB1\naaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\nAB2\n' >"$WORK/in"
        cases=$((cases + 1))
        (ulimit -v 100000; "$TOOL" --max-text 0 --max-work 0 "$(awk 'BEGIN { e = "{DecodedData()}"; for (n = 0; n < 30; n++) e = "{Substitute(" e ",a,aa)}"; print e }')" \
            <"$WORK/in" >"$WORK/out" 2>"$WORK/err")
        if [ $? -ne 1 ] || ! cmp -s "$WORK/out" "$WORK/in" || ! grep -q "scan 2: out of memory" "$WORK/err"; then
            failures=$((failures + 1))
            echo "FAIL an allocation failure is not reported per scan"
            sed 's/^/  | /' "$WORK/err"
        fi
    fi
    # Lines longer than --max-line pass through unedited, in pieces.
    input 'AB1\nAB0123456789xyz\nAB2\nAB0123456789'
    expect "--max-line passes long lines through" 1 "1
AB0123456789xyz
2
AB0123456789" "scan 2: longer than --max-line 10 bytes" --max-line 10 "$CUT2"
    stderr_lines "one message per long line" 2
    input 'AB01234567\n'
    expect "--max-line at the bound" 0 "01234567" '' --max-line 10 "$CUT2"
    cases=$((cases + 1))
    n=$(head -c 20000000 /dev/zero | "$TOOL" '{DecodedData()}' 2>"$WORK/err" | wc -c)
    if [ "$n" -ne 20000001 ] || ! grep -q "scan 1: longer than --max-line 4194304" "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL a line of 20 MB: $n bytes out"
    fi
    ;;

streams)
    # The first write error stops the tool, on every path.
    if [ -w /dev/full ]; then
        cases=$((cases + 1))
        yes AB1234 | timeout 20 "$TOOL" "$CUT2" >/dev/full 2>"$WORK/err"
        if [ $? -ne 2 ] || ! grep -q "cannot write the output" "$WORK/err"; then
            failures=$((failures + 1))
            echo "FAIL endless input to a full disk does not stop with status 2"
        fi
        for args in --help --version --list-commands "--check $CUT2"; do
            cases=$((cases + 1))
            # shellcheck disable=SC2086
            "$TOOL" $args >/dev/full 2>"$WORK/err"
            if [ $? -ne 2 ] || ! grep -q "cannot write the output" "$WORK/err"; then
                failures=$((failures + 1))
                echo "FAIL $args to a full disk: not status 2 with a message"
            fi
        done
    fi
    # A read error stops the batch with status 2, after what was read.
    cases=$((cases + 1))
    "$TOOL" "$SHOW" 0>/dev/null >"$WORK/out" 2>"$WORK/err"
    if [ $? -ne 2 ] || ! grep -q "cannot read standard input" "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL a read error is not reported"
    fi
    # Floods: the first --max-errors messages, then a count.
    awk 'BEGIN { for (i = 0; i < 1000; i++) print "x" }' >"$WORK/in"
    expect "--max-errors caps the messages" 1 "$(cat "$WORK/in")" "1000 scan messages in all, 990 not shown" \
        --max-errors 10 "$CUT2"
    stderr_lines "ten messages and a summary" 11
    awk 'BEGIN { for (i = 0; i < 1000; i++) print "x" }' >"$WORK/in"
    expect "--max-errors 0 shows all" 1 "$(cat "$WORK/in")" "scan 1000:" --max-errors 0 "$CUT2"
    stderr_lines "a message per scan" 1000
    awk 'BEGIN { for (i = 0; i < 150; i++) print "x" }' >"$WORK/in"
    expect "100 messages by default" 1 "$(cat "$WORK/in")" "150 scan messages in all, 50 not shown" "$CUT2"
    # Arguments come back escaped, never as raw control bytes.
    esc=$(printf 'Code\033[2J')
    expect "escape bytes in a symbology" 2 NONE "unknown symbology 'Code\\x1B[2J'" -s "$esc" "$SHOW" x
    expect "escape bytes in an unknown option" 2 NONE "unknown option '--xCode\\x1B[2J'" "--x$esc" "$SHOW" x
    expect "escape bytes in a file name" 2 NONE "cannot read 'noCode\\x1B[2J'" -i "no$esc" "$SHOW"
    no_raw_controls "a file name"
    # Everything else echoed: a rules file's name, its keys and symbology
    # names, trace lines, an integer literal as written.
    printf '[[rule]]\nexpression = "x"\n"k\\u001b" = 1\nsymbologies = ["a\\u0007"]\n' >"$WORK/raw.toml"
    for args in "--rules|no$esc.toml|x" "--check|--rules|$WORK/raw.toml" "--trace|{Nope$esc()}|x" \
        "--explain|{TruncateFromEnd({DecodedData()},$(printf '\v')1)}|abc"; do
        cases=$((cases + 1))
        (IFS='|'; set -f; "$TOOL" $args) >"$WORK/out" 2>"$WORK/err"
        no_raw_controls "$args"
    done
    for piece in "noCode\\x1B[2J.toml: cannot read the file" "in the rules file noCode\\x1B[2J.toml" \
        "unknown key 'k\\x1B'" "unknown symbology 'a\\x07'" "trace: ERROR: Error unable to find the command:NopeCode\\x1B[2J"; do
        cases=$((cases + 1))
        for args in "--rules|no$esc.toml|x" "--check|--rules|$WORK/raw.toml" "--trace|{Nope$esc()}|x"; do
            (IFS='|'; set -f; "$TOOL" $args) 2>&1
        done | grep -qF -- "$piece" || { failures=$((failures + 1)); echo "FAIL not shown escaped: $piece"; }
    done
    expect "an integer literal as written, escaped" 0 'scan 1: "abc" => "ab"
  TruncateFromEnd => "ab"
    DecodedData => "abc"
    \x0B1 => 1' '' --explain "{TruncateFromEnd({DecodedData()},$(printf '\v')1)}" abc
    ;;

rules-test)
    expect "the example file's tests all pass" 0 "10 passed, 0 failed" '' --test "$EXAMPLE_RULES"
    # Tests written inline, one a line, before the rules they check.
    cat >"$WORK/t.toml" <<'RULES'
test = [
    { scan = 'PN42', output = 'Part: 42' },
    { scan = 'PN42', output = 'Part: 4\x1D' },
    { scan = 'x', rule = 2 },
    { scan = 'PN', fails = 'NRV_ERR_OUT_OF_RANGE' },
    { scan = 'PN', untouched = true },
    { scan = 'ab\x1Bc', symbology = 'QRCODE', output = '[ab\x1Bc]' },
]
[[rule]]
name = "Part numbers"
starts-with = "PN"
expression = 'Part: {TruncateFromBeginning({DecodedData()},2)}'
[[rule]]
symbologies = ["qrcode"]
expression = '[{DecodedData()}]'
RULES
    # The caret: under the 2 of "Part: 42", 54 columns after $WORK.
    expect "each failure at its line, a caret under the first difference, then the counts" 1 "$WORK/t.toml:3: test 2: expected \"Part: 4\\x1D\" got \"Part: 42\" from rule 1 (Part numbers)
$(printf '%*s^' $((${#WORK} + 54)) '')
$WORK/t.toml:4: test 3: expected rule 2 got \"x\" untouched
$WORK/t.toml:6: test 5: expected untouched got NRV_ERR_OUT_OF_RANGE (-43) from rule 1 (Part numbers)
3 passed, 3 failed" '' --test "$WORK/t.toml"
    no_raw_controls "a test that holds ESC"
    expect "--json: one object per test, and no counts" 1 "$(cat <<'JSON'
{"test":1,"line":2,"passed":true,"scan":"PN42","symbology":"NotSpecified","expected":{"output":"Part: 42"},"got":{"code":0,"name":"NRV_OK","rule":{"index":1,"name":"Part numbers"},"output":"Part: 42"}}
{"test":2,"line":3,"passed":false,"scan":"PN42","symbology":"NotSpecified","expected":{"output":"Part: 4\u001d"},"got":{"code":0,"name":"NRV_OK","rule":{"index":1,"name":"Part numbers"},"output":"Part: 42"}}
{"test":3,"line":4,"passed":false,"scan":"x","symbology":"NotSpecified","expected":{"rule":{"index":2,"name":""}},"got":{"code":1,"name":"NRV_OK_NOT_TRIGGERED","rule":null,"output":"x"}}
{"test":4,"line":5,"passed":true,"scan":"PN","symbology":"NotSpecified","expected":{"fails":"NRV_ERR_OUT_OF_RANGE"},"got":{"code":-43,"name":"NRV_ERR_OUT_OF_RANGE","rule":{"index":1,"name":"Part numbers"},"output":"PN"}}
{"test":5,"line":6,"passed":false,"scan":"PN","symbology":"NotSpecified","expected":{"untouched":true},"got":{"code":-43,"name":"NRV_ERR_OUT_OF_RANGE","rule":{"index":1,"name":"Part numbers"},"output":"PN"}}
{"test":6,"line":7,"passed":true,"scan":"ab\u001bc","symbology":"QRCode","expected":{"output":"[ab\u001bc]"},"got":{"code":0,"name":"NRV_OK","rule":{"index":2,"name":""},"output":"[ab\u001bc]"}}
JSON
)" '' --test "$WORK/t.toml" --json
    ;;

rules-test-errors)
    printf '[[rule]]\nname = "Part numbers"\nexpression = "x"\n[[test]]\nscna = 1\nrule = "Part number"\n' >"$WORK/bad.toml"
    expect "every mistake in the tests, at its line and column" 2 NONE \
        "$WORK/bad.toml:5:1: test 1: unknown key 'scna' (did you mean 'scan'?)" --test "$WORK/bad.toml"
    for piece in "$WORK/bad.toml:4:1: test 1 has no 'scan'" "nrv-edit: 3 errors in the rules file" \
        "$WORK/bad.toml:6:8: test 1: no rule is named 'Part number'; the rules are 1 'Part numbers'"; do
        cases=$((cases + 1))
        grep -qF -- "$piece" "$WORK/err" || { failures=$((failures + 1)); echo "FAIL --test lacks: $piece"; }
    done
    expect "--rules refuses a file whose tests have errors" 2 NONE "3 errors" --rules "$WORK/bad.toml" x
    write_rules
    expect "a file without tests: said, and not a pass" 1 NONE "holds no [[test]] table: nothing was checked" \
        --test "$WORK/rules.toml"
    expect "an unreadable file" 2 NONE "$WORK/missing.toml: cannot read the file" --test "$WORK/missing.toml"
    printf '[[rule]]\nexpression = "{Substitute({DecodedData()},a,{DecodedData()})}"\n[[test]]\nscan = "aaaa"\noutput = "aaaaaaaaaaaaaaaa"\n' \
        >"$WORK/grow.toml"
    expect "the tool's limits apply to the tests" 1 "$WORK/grow.toml:3: test 1: expected \"aaaaaaaaaaaaaaaa\" got NRV_ERR_TEXT_LIMIT (-60) from rule 1
0 passed, 1 failed" '' --test "$WORK/grow.toml" --max-text 8
    expect "the same test within the default limits" 0 "1 passed, 0 failed" '' --test "$WORK/grow.toml"
    for option in -e "-s QRCode" "-i $WORK/rules.toml" "--rules $WORK/rules.toml" --check --explain "--contains x"; do
        # shellcheck disable=SC2086
        expect "$option does not go with --test" 2 NONE "does not go with --test" --test "$WORK/grow.toml" $option
    done
    expect "no DATA with --test" 2 NONE "--test takes no EXPRESSION or DATA" --test "$WORK/grow.toml" PN1
    expect "--junit needs --test" 2 NONE "--junit goes with --test" --junit "$WORK/r.xml" --rules "$WORK/rules.toml" x
    expect "--junit to a place that cannot be written" 2 NONE "cannot write the report $WORK/no/r.xml" \
        --test "$WORK/grow.toml" --junit "$WORK/no/r.xml"
    ;;

rules-junit)
    command -v python3 >/dev/null || { echo "rules-junit needs python3"; exit 1; }
    # A file whose name and tests hold bytes XML cannot carry: ESC, a byte
    # that is no UTF-8, U+FFFF, a zero byte, markup characters.
    name=$(printf 'r\033<&"\377\357\277\277.toml')
    cat >"$WORK/$name" <<'RULES'
test = [
    { scan = 'x\x01\x00\xFF]]>', output = '<x\x01\x00\xFF]]>>' },
    { scan = '\x01', output = '<\x02>' },
    { scan = '', untouched = true },
]
[[rule]]
name = "a<b> & \"c\" \u001b"
contains = '\x01'
expression = '<{DecodedData()}>'
RULES
    # junit_check REPORT TESTS FAILURES [PYTHON...]: the report parses and
    # has one suite of TESTS cases, FAILURES of them failed; then the checks
    # given, with doc, suite and cases at hand.
    junit_check() {
        cases=$((cases + 1))
        if ! python3 - "$@" >"$WORK/xml" 2>&1 <<'PY'
import sys, xml.dom.minidom
doc = xml.dom.minidom.parse(sys.argv[1])
tests, failed = sys.argv[2], sys.argv[3]
suites = doc.documentElement
assert suites.tagName == "testsuites", suites.tagName
assert (suites.getAttribute("tests"), suites.getAttribute("failures")) == (tests, failed)
[suite] = suites.getElementsByTagName("testsuite")
assert (suite.getAttribute("tests"), suite.getAttribute("failures"), suite.getAttribute("errors")) == (tests, failed, "0")
cases = suite.getElementsByTagName("testcase")
assert len(cases) == int(tests), len(cases)
for check in sys.argv[4:]:
    exec(check)
PY
        then
            failures=$((failures + 1))
            echo "FAIL the JUnit report $1:"
            sed 's/^/  | /' "$WORK/xml" "$1"
        fi
    }
    "$TOOL" --test "$WORK/$name" --junit "$WORK/r.xml" >"$WORK/out" 2>&1
    status=$?
    cases=$((cases + 1))
    [ "$status" -eq 1 ] || { failures=$((failures + 1)); echo "FAIL a failing test with --junit: status $status"; }
    junit_check "$WORK/r.xml" 3 1 \
        'assert suite.getAttribute("name").endswith("/r\\x1B<&\"\\xFF\\xEF\\xBF\\xBF.toml"), suite.getAttribute("name")' \
        'assert [c.getAttribute("line") for c in cases] == ["2", "3", "4"]' \
        'assert [len(c.getElementsByTagName("failure")) for c in cases] == [0, 1, 0]' \
        'assert cases[0].getAttribute("name") == "test 1: \"x\\x01\\x00\\xFF]]>\"", cases[0].getAttribute("name")' \
        'failure = cases[1].getElementsByTagName("failure")[0]; message = failure.getAttribute("message")' \
        'assert message == "expected \"<\\x02>\" got \"<\\x01>\" from rule 1 (a<b> & \"c\" \\x1B)", message' \
        'lines = failure.firstChild.data.splitlines(); assert lines[0].endswith(": test 2: " + message), lines' \
        'assert lines[1].strip() == "^" and len(lines[1]) == len(lines[0]) - len(message) + len("expected \"<\\x02>\" got \"<") + 1, lines'
    expect "every test passes: a report without failures" 0 "10 passed, 0 failed" '' --test "$EXAMPLE_RULES" \
        --junit "$WORK/r.xml"
    junit_check "$WORK/r.xml" 10 0 'assert cases[0].getAttribute("line") == "18"'
    ;;

options)
    expect "-s twice" 2 NONE "option '--symbology' given twice" -s Code128 -s QRCode "$SHOW" x
    expect "--min-size twice" 2 NONE "option '--min-size' given twice" --min-size 1 --min-size 2 "$SHOW" x
    expect "-i twice" 2 NONE "option '--input' given twice" -i - -i - "$SHOW"
    expect "--contains twice" 2 NONE "option '--contains' given twice" --contains a --contains=b "$SHOW" x
    expect "--max-line twice" 2 NONE "option '--max-line' given twice" --max-line 1 --max-line 1 "$SHOW" x
    expect "--only-symbology may repeat" 0 "[x]" '' --only-symbology QRCode --only-symbology Code128 -s Code128 "$SHOW" x
    expect "--min-size above --max-size" 2 NONE "--min-size 5 is above --max-size 2" --min-size 5 --max-size 2 "$SHOW" x
    expect "invalid --max-errors" 2 NONE "invalid count 'x' for --max-errors" --max-errors x "$SHOW" y
    expect "invalid --max-text" 2 NONE "invalid size '-1' for --max-text" --max-text -1 "$SHOW" y
    ;;

*)
    echo "unknown group: $GROUP"
    exit 2
    ;;
esac

echo "$GROUP: $((cases - failures)) of $cases cases passed"
[ "$failures" -eq 0 ]
