#!/usr/bin/env bash
# Times nrv-edit against the usual line tools (sed, mawk, gawk, cut, perl)
# doing the same three batch edits on the same file of realistic scans, and
# checks that every output is the same bytes. Builds nothing: give it the tool.
#
# Usage: bench/tool-vs-line-tools.sh PATH-TO-nrv-edit [SCANS] [RUNS]
#   SCANS  number of scan lines to generate (default 10000000)
#   RUNS   interleaved rounds; each program runs once per edit per round
#          (default 7); best and median CPU time are reported
#
# Judged on CPU time (user + system): on a machine shared with other jobs the
# wall clock also counts time spent waiting for a core. nrv-edit passes when
# its median and its best CPU time are below those of mawk, cut and sed, and
# at most half those of sed, on every edit. Programs that are not installed
# are left out.
set -euo pipefail

TOOL=${1:?usage: tool-vs-line-tools.sh PATH-TO-nrv-edit [SCANS] [RUNS]}
SCANS=${2:-10000000}
RUNS=${3:-7}
export LC_ALL=C  # bytes, not characters, for every program

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT

# Scans as a mix of real symbologies deliver them, one per line: EAN-13
# retail codes (13 digits), Code 128 with a symbology identifier or a
# two-letter prefix and 6 to 20 digits and capitals, and GS1 codes (]C1, a
# GTIN, a lot, a serial, fields closed by 0x1D). About a third end with CR,
# as scanners configured for a CR suffix send them.
mawk -v n="$SCANS" 'BEGIN {
    srand(20240611)
    alnum = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    split("]C0 ]C1 AB SN PN", prefix, " ")
    for (i = 0; i < n; i++) {
        kind = rand()
        if (kind < 0.4) {
            s = ""
            for (j = 0; j < 13; j++) s = s int(rand() * 10)
        } else if (kind < 0.75) {
            s = prefix[1 + int(rand() * 5)]
            len = 6 + int(rand() * 15)
            for (j = 0; j < len; j++) s = s substr(alnum, 1 + int(rand() * 36), 1)
        } else {
            s = "]C101"
            for (j = 0; j < 14; j++) s = s int(rand() * 10)
            s = s "10"
            len = 3 + int(rand() * 6)
            for (j = 0; j < len; j++) s = s substr(alnum, 1 + int(rand() * 36), 1)
            s = s "\035" "21"
            len = 4 + int(rand() * 8)
            for (j = 0; j < len; j++) s = s int(rand() * 10)
        }
        printf "%s%s\n", s, (rand() < 0.33 ? "\r" : "")
    }
}' >"$WORK/scans"
cat "$WORK/scans" >/dev/null  # in the page cache before any timing

# run NAME COMMAND...: one timed run over the scans; appends the CPU seconds
# (user + system) to $WORK/NAME.cpu and keeps the output as $WORK/NAME.out.
run() {
    local name=$1 TIMEFORMAT='%3U %3S' times
    shift
    times=$({ time "$@" <"$WORK/scans" >"$WORK/$name.out" 2>/dev/null; } 2>&1)
    awk -v t="$times" 'BEGIN { split(t, f, " "); printf "%.3f\n", f[1] + f[2] }' >>"$WORK/$name.cpu"
}

have() { command -v "$1" >/dev/null; }

# best FILE / median FILE of the CPU times collected.
best() { sort -n "$1" | head -1; }
median() { sort -n "$1" | awk '{ v[NR] = $1 } END { print (NR % 2 ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2) }'; }

verdict=0
# edit TITLE EXPRESSION then pairs of NAME 'COMMAND' for the other programs.
edit() {
    local title=$1 expression=$2 r i
    shift 2
    local -a names=(nrv-edit) commands=()
    while [[ $# -gt 0 ]]; do
        if have "${2%% *}"; then names+=("$1"); commands+=("$2"); fi
        shift 2
    done
    rm -f "$WORK"/*.cpu
    for ((r = 0; r < RUNS; r++)); do
        run nrv-edit "$TOOL" "$expression"
        for ((i = 0; i < ${#commands[@]}; i++)); do
            eval "run ${names[i + 1]} ${commands[i]}"
        done
    done
    local tool_best tool_median b m
    tool_best=$(best "$WORK/nrv-edit.cpu")
    tool_median=$(median "$WORK/nrv-edit.cpu")
    echo
    echo "$title"
    printf '  %-10s %9s %9s %14s %s\n' program best median "vs nrv-edit" ""
    for name in "${names[@]}"; do
        b=$(best "$WORK/$name.cpu")
        m=$(median "$WORK/$name.cpu")
        local note=""
        if [[ $name != nrv-edit ]] && ! cmp -s "$WORK/nrv-edit.out" "$WORK/$name.out"; then
            note="OUTPUT DIFFERS"
            verdict=1
        fi
        awk -v n="$name" -v b="$b" -v m="$m" -v tm="$tool_median" -v note="$note" 'BEGIN {
            printf "  %-10s %9.3f %9.3f %13.2fx %s\n", n, b, m, m / tm, note }'
        case $name in
        sed) if awk -v t="$tool_best" -v o="$b" -v tm="$tool_median" -v om="$m" \
                 'BEGIN { exit !(2 * t > o || 2 * tm > om) }'; then verdict=1; fi ;;
        mawk | cut) if awk -v t="$tool_best" -v o="$b" -v tm="$tool_median" -v om="$m" \
                 'BEGIN { exit !(t >= o || tm >= om) }'; then verdict=1; fi ;;
        esac
    done
}

echo "scans: $SCANS lines ($(wc -c <"$WORK/scans") bytes), $RUNS interleaved rounds, CPU seconds (user + system)"
echo "(\"vs nrv-edit\": the program's median over nrv-edit's median)"
edit "cut a 2-byte prefix" '{TruncateFromBeginning({DecodedData()},2)}' \
    sed "sed 's/^..//'" mawk "mawk '{ print substr(\$0, 3) }'" gawk "gawk '{ print substr(\$0, 3) }'" \
    cut "cut -b3-" perl "perl -pe 's/^..//'"
edit "strip the trailing CR" '{DecodedDataWithoutTrailer()}' \
    sed "sed 's/\\r\$//'" mawk "mawk '{ sub(/\\r\$/, \"\"); print }'" gawk "gawk '{ sub(/\\r\$/, \"\"); print }'" \
    cut "cut -d \$'\\r' -f1" perl "perl -pe 's/\\r\$//'"
edit "prefix a label" 'Code: {DecodedData()}' \
    sed "sed 's/^/Code: /'" mawk "mawk '{ print \"Code: \" \$0 }'" gawk "gawk '{ print \"Code: \" \$0 }'" \
    perl "perl -pe 's/^/Code: /'"
echo
if [[ $verdict -eq 0 ]]; then
    echo "nrv-edit uses less CPU than mawk, cut and sed on every edit, and at most half of sed's"
else
    echo "nrv-edit misses a goal on some edit, or some output differs"
fi
exit $verdict
