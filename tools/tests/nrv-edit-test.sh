#!/bin/sh
# Integration tests of the nrv-edit binary: each case runs it and compares
# standard output byte for byte, the exit status, and a piece of standard
# error.
#
# Usage: nrv-edit-test.sh PATH-TO-nrv-edit GROUP
# Groups: parse-error failing-scan triggers escapes batch usage list-commands
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

CUT2='{TruncateFromBeginning({DecodedData()},2)}'
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

limits)
    # Finding: 1,000 good lines, then one scan whose edit would grow past
    # any memory: reported, printed unchanged, every line before it kept.
    awk 'BEGIN { for (i = 1; i <= 1000; i++) print "AB" i; s = "a"; while (length(s) < 200000) s = s s; print s; print "end" }' \
        >"$WORK/flood"
    cases=$((cases + 1))
    "$TOOL" -i "$WORK/flood" '{Substitute({DecodedData()},a,{DecodedData()})}' >"$WORK/out" 2>"$WORK/err"
    if [ $? -ne 1 ] || ! cmp -s "$WORK/out" "$WORK/flood" ||
        ! grep -q "scan 1001: NRV_ERR_TEXT_LIMIT (-60)" "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL a scan past the text limit loses output or is not reported"
    fi
    expect "--max-text at the bound" 0 "abcdef" '' --max-text 6 '{DecodedData()}' abcdef
    expect "--max-text under the bound" 1 "abcdef" "scan 1: NRV_ERR_TEXT_LIMIT (-60)" --max-text 5 '{DecodedData()}' abcdef
    expect "--max-text 0 is no limit" 0 "abcdefabcdef" '' --max-text 0 '{DecodedData()}{DecodedData()}' abcdef
    # Extract comparing a 2 MB marker at each of 4 MB: minutes without a budget.
    hostile=$(awk 'function d(n, e) { e = "{DecodedData()}"; while (n-- > 0) e = "{Substitute(" e ",a,aa)}"; return e }
        BEGIN { printf "{Extract(%s,%s,|)}", d(22), d(21) }')
    expect "a hostile search stops at the work budget" 1 "a|
ok" "scan 1: NRV_ERR_WORK_LIMIT (-61)" "$hostile" 'a|' ok
    expect "--max-work 0 is no budget" 0 "aaaa" '' --max-work 0 '{Substitute({DecodedData()},a,aa)}' aa
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
    cases=$((cases + 1))
    if grep -q "$(printf '\033')" "$WORK/err"; then
        failures=$((failures + 1))
        echo "FAIL a raw ESC reached standard error"
    fi
    ;;

options)
    expect "-s twice" 2 NONE "option '--symbology' given twice" -s Code128 -s QRCode "$SHOW" x
    expect "--min-size twice" 2 NONE "option '--min-size' given twice" --min-size 1 --min-size 2 "$SHOW" x
    expect "-i twice" 2 NONE "option '--input' given twice" -i - -i - "$SHOW"
    expect "--contains twice" 2 NONE "option '--contains' given twice" --contains a --contains=b "$SHOW" x
    expect "--max-line twice" 2 NONE "option '--max-line' given twice" --max-line 1 --max-line 1 "$SHOW" x
    expect "--only-symbology may repeat" 0 "[x]" '' --only-symbology QRCode --only-symbology Code128 -s Code128 "$SHOW" x
    expect "--min-size above --max-size" 2 NONE "--min-size 5 is above --max-size 2" --min-size 5 --max-size 2 "$SHOW" x
    expect "--min-size equal to --max-size" 0 "[ab]" '' --min-size 2 --max-size 2 "$SHOW" ab
    expect "a trigger text longer than --max-size" 2 NONE "--starts-with holds 4 bytes, more than --max-size 3" \
        --starts-with ABCD --max-size 3 "$SHOW" x
    expect "a trigger text as long as --max-size" 0 "[ABC]" '' --ends-with ABC --max-size 3 "$SHOW" ABC
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
