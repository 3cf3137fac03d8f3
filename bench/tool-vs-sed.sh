#!/usr/bin/env bash
# Times nrv-edit against sed doing the same edits on the same file of
# generated scans, in the same run, and checks that both outputs agree.
# Builds nothing: give it the tool.
#
# Usage: bench/tool-vs-sed.sh PATH-TO-nrv-edit [SCANS] [RUNS]
#   SCANS  number of scans to generate (default 1000000)
#   RUNS   timed runs of each program per edit, the best one counts (default 5)
set -euo pipefail

TOOL=${1:?usage: tool-vs-sed.sh PATH-TO-nrv-edit [SCANS] [RUNS]}
SCANS=${2:-1000000}
RUNS=${3:-5}
export LC_ALL=C  # bytes, not characters, for sed as for the tool

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT

# Scans shaped like real ones: a two-byte prefix, then 6 to 30 digits and
# letters, ended by CR (as many scanners send), one per line.
awk -v n="$SCANS" 'BEGIN {
    srand(20240611)
    alphabet = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"
    for (i = 0; i < n; i++) {
        len = 6 + int(rand() * 25)
        s = ""
        for (j = 0; j < len; j++) s = s substr(alphabet, 1 + int(rand() * 36), 1)
        printf "%s%s\r\n", (i % 2 ? "AB" : "]C"), s
    }
}' >"$WORK/scans"
cat "$WORK/scans" >/dev/null  # in the page cache before any timing

# best_of OUTPUT COMMAND...: the best wall-clock time in seconds of RUNS runs.
best_of() {
    local output=$1 best= t
    shift
    for ((r = 0; r < RUNS; r++)); do
        local start end
        start=$(date +%s%N)
        "$@" <"$WORK/scans" >"$output"
        end=$(date +%s%N)
        t=$((end - start))
        if [[ -z $best || $t -lt $best ]]; then best=$t; fi
    done
    printf '%d.%03d' $((best / 1000000000)) $((best / 1000000 % 1000))
}

# edit NAME EXPRESSION SED-SCRIPT
verdict=0
edit() {
    local name=$1 expression=$2 script=$3 tool_s sed_s
    tool_s=$(best_of "$WORK/tool.out" "$TOOL" "$expression")
    sed_s=$(best_of "$WORK/sed.out" sed "$script")
    if ! cmp -s "$WORK/tool.out" "$WORK/sed.out"; then
        echo "$name: the outputs differ" >&2
        verdict=1
    fi
    printf '%-22s %10s %10s %8s\n' "$name" "$tool_s" "$sed_s" \
        "$(awk -v a="$tool_s" -v b="$sed_s" 'BEGIN { printf "%.2f", a / b }')"
    if awk -v a="$tool_s" -v b="$sed_s" 'BEGIN { exit !(a > b) }'; then verdict=1; fi
}

echo "scans: $SCANS ($(wc -c <"$WORK/scans") bytes), best of $RUNS runs, seconds"
printf '%-22s %10s %10s %8s\n' edit nrv-edit sed ratio
edit "cut a 2-byte prefix" '{TruncateFromBeginning({DecodedData()},2)}' 's/^..//'
edit "strip the trailing CR" '{DecodedDataWithoutTrailer()}' 's/\r$//'
edit "prefix a label" 'Code: {DecodedData()}' 's/^/Code: /'
if [[ $verdict -eq 0 ]]; then echo "nrv-edit is not slower than sed on any edit"; else echo "nrv-edit is slower or differs"; fi
exit $verdict
