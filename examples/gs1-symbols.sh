#!/bin/sh
# GS1 symbols as a real scanner reads them, an example run as a check: zint
# makes GS1-128, GS1 DataMatrix and GS1 QR Code images of element strings,
# ZXingReader decodes
# each image to its symbology identifier and bytes (0x1D where FNC1 ends a
# variable-length element), and nrv-edit must give back the element strings
# that went in: the human-readable form, and each element's data through
# GS1Element. Usage: examples/gs1-symbols.sh NRV-EDIT (zint and ZXingReader on
# the PATH; Debian: apt-get install zint zxing-cpp-tools).
set -u

TOOL=$1
WORK=$(mktemp -d) || exit 1
trap 'rm -rf "$WORK"' EXIT INT TERM
for program in zint ZXingReader; do
    command -v "$program" >/dev/null || { echo "$program is missing (apt-get install zint zxing-cpp-tools)"; exit 2; }
done
passed=0
failed=0

# Element strings as zint takes them: [AI]data, one per element. Each has
# a variable-length element before another, so its 0x1D is needed.
MESSAGES='[01]09501101530003[17]141120[10]AB-123[21]SER42
[01]09501101530003[10]LOT9[17]250228
[00]106141412345678908[3103]000525[10]X1
[01]04012345123456[17]261231[10]ABC%&+-/[21]X99[240]PART-7
[414]5412345000013[8020]ABC123[254]7'

# zint's symbology numbers: 16 GS1-128, 71 DataMatrix, 58 QR Code.
for symbology in 16:Code128 71:DataMatrix 58:QRCode; do
    number=${symbology%%:*}
    name=${symbology#*:}
    echo "$MESSAGES" | while IFS= read -r message; do
        echo "$message" >"$WORK/message"
        # (AI) for [AI]: the human-readable form that must come back.
        readable=$(echo "$message" | tr '[]' '()')
        zint --gs1 -b "$number" --scale=4 --quietzones -d "$message" -o "$WORK/symbol.png" >"$WORK/zint" 2>&1 ||
            { echo "FAIL $name: zint refused $message: $(cat "$WORK/zint")"; echo x >>"$WORK/failed"; continue; }
        ZXingReader -format "$name" "$WORK/symbol.png" >"$WORK/decoded" 2>&1
        identifier=$(sed -n 's/^Identifier: *//p' "$WORK/decoded")
        # The bytes in hexadecimal, as the tool's escapes: \x1D and the rest.
        scan=$identifier$(sed -n 's/^Bytes: *//p' "$WORK/decoded" | tr ' ' '\n' | sed -n 's/^\(..\)$/\\x\1/p' | tr -d '\n')
        if [ -z "$identifier" ]; then
            echo "FAIL $name: ZXingReader did not read $message: $(head -1 "$WORK/decoded")"
            echo x >>"$WORK/failed"
            continue
        fi
        # One expression: the human-readable form, then each element's data.
        expression='{GS1HumanReadable({DecodedData()})}'
        expected=$readable
        for element in $(echo "$message" | sed 's/\[/ /g'); do
            ai=${element%%]*}
            expression="$expression|{GS1Element({DecodedData()},$ai)}"
            expected="$expected|${element#*]}"
        done
        got=$("$TOOL" -e "$expression" "$scan" 2>"$WORK/err")
        if [ "$got" = "$expected" ] && [ ! -s "$WORK/err" ]; then
            echo x >>"$WORK/passed"
        else
            echo "FAIL $name ($identifier): $message"
            echo "  scan:     $scan"
            echo "  expected: $expected"
            echo "  got:      $got $(cat "$WORK/err")"
            echo x >>"$WORK/failed"
        fi
    done
done
[ -f "$WORK/passed" ] && passed=$(wc -l <"$WORK/passed")
[ -f "$WORK/failed" ] && failed=$(wc -l <"$WORK/failed")
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$passed" -gt 0 ]
