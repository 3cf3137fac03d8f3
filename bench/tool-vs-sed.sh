#!/usr/bin/env bash
# Times nrv-edit against sed doing the same edits on the same file of
# generated scans, in the same run, and checks that both outputs agree.
# Builds nothing: give it the tool.
#
# Usage: bench/tool-vs-sed.sh PATH-TO-nrv-edit [SCANS] [RUNS]
#   SCANS  number of scans to generate (default 1000000)
#   RUNS   timed runs of each program per edit, the best one counts (default 7)
set -euo pipefail

TOOL=${1:?usage: tool-vs-sed.sh PATH-TO-nrv-edit [SCANS] [RUNS]}
SCANS=${2:-1000000}
RUNS=${3:-7}
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

# timed OUTPUT COMMAND...: runs the command over the scans once; prints its
# wall-clock and CPU (user + system) seconds.
timed() {
    local output=$1 TIMEFORMAT='%3R %3U %3S' times
    shift
    times=$({ time "$@" <"$WORK/scans" >"$output" 2>/dev/null; } 2>&1)
    awk -v t="$times" 'BEGIN { split(t, f, " "); printf "%.3f %.3f\n", f[1], f[2] + f[3] }'
}

# edit NAME EXPRESSION SED-SCRIPT: RUNS rounds, the tool then sed in each,
# so that both meet the same load; the best time of each counts.
verdict=0
edit() {
    local name=$1 expression=$2 script=$3 r t
    local tool_wall=999 tool_cpu=999 sed_wall=999 sed_cpu=999
    for ((r = 0; r < RUNS; r++)); do
        t=$(timed "$WORK/tool.out" "$TOOL" "$expression")
        tool_wall=$(awk -v a="$tool_wall" -v b="${t% *}" 'BEGIN { print (b < a ? b : a) }')
        tool_cpu=$(awk -v a="$tool_cpu" -v b="${t#* }" 'BEGIN { print (b < a ? b : a) }')
        t=$(timed "$WORK/sed.out" sed "$script")
        sed_wall=$(awk -v a="$sed_wall" -v b="${t% *}" 'BEGIN { print (b < a ? b : a) }')
        sed_cpu=$(awk -v a="$sed_cpu" -v b="${t#* }" 'BEGIN { print (b < a ? b : a) }')
    done
    if ! cmp -s "$WORK/tool.out" "$WORK/sed.out"; then
        echo "$name: the outputs differ" >&2
        verdict=1
    fi
    awk -v n="$name" -v tw="$tool_wall" -v sw="$sed_wall" -v tc="$tool_cpu" -v sc="$sed_cpu" 'BEGIN {
        printf "%-22s %9.3f %9.3f %6.2f %9.3f %9.3f %6.2f\n", n, tw, sw, tw / sw, tc, sc, tc / sc
    }'
    # Judged on CPU time: on a machine shared with other jobs the wall clock
    # also counts the time spent waiting for a core.
    if awk -v a="$tool_cpu" -v b="$sed_cpu" 'BEGIN { exit !(a > b) }'; then verdict=1; fi
}

echo "scans: $SCANS ($(wc -c <"$WORK/scans") bytes), best of $RUNS interleaved runs, seconds"
printf '%-22s %26s %26s\n' "" "wall clock" "cpu (user + system)"
printf '%-22s %9s %9s %6s %9s %9s %6s\n' edit nrv-edit sed ratio nrv-edit sed ratio
edit "cut a 2-byte prefix" '{TruncateFromBeginning({DecodedData()},2)}' 's/^..//'
edit "strip the trailing CR" '{DecodedDataWithoutTrailer()}' 's/\r$//'
edit "prefix a label" 'Code: {DecodedData()}' 's/^/Code: /'
if [[ $verdict -eq 0 ]]; then
    echo "nrv-edit is not slower than sed (CPU time) on any edit"
else
    echo "nrv-edit is slower than sed on some edit, or the outputs differ"
fi
exit $verdict
