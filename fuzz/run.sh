#!/usr/bin/env bash
# Builds the fuzz targets with clang++ and runs each for a bounded time on a
# working copy of its seed corpus. Stops at the first finding (crash, leak,
# undefined behaviour, timeout, out-of-memory) with a non-zero status and
# the reproducer in WORK/artifacts/.
#
# usage: fuzz/run.sh [-t SECONDS] [-b BUILD_DIR] [-w WORK_DIR] [TARGET...]
#   TARGET        a fuzz/fuzz_TARGET.cpp: parse, edit, structures, rules, capi, playground, ...
#                 (default: every one, one after the other)
#   -t SECONDS    time per target (default 60)
#   -b BUILD_DIR  build directory (default build-fuzz)
#   -w WORK_DIR   grown corpora and artifacts (default BUILD_DIR/fuzz-work);
#                 reusing it lets a later run start from what an earlier one found
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=60
build=build-fuzz
work=
usage() {  # the comment at the top, without its '#'
  awk 'NR > 1 && !/^#/ { exit } NR > 1 { sub(/^# ?/, ""); print }' "$0"
}
while getopts ":t:b:w:h" option; do
  case $option in
    t) seconds=$OPTARG ;;
    b) build=$OPTARG ;;
    w) work=$OPTARG ;;
    h) usage; exit 0 ;;
    :) echo "fuzz/run.sh: -$OPTARG needs a value" >&2; usage >&2; exit 2 ;;
    *) echo "fuzz/run.sh: unknown option -$OPTARG" >&2; usage >&2; exit 2 ;;
  esac
done
shift $((OPTIND - 1))
# The targets are the fuzz/fuzz_NAME.cpp files.
known=()
for source in fuzz/fuzz_*.cpp; do
  name=${source#fuzz/fuzz_}
  known+=("${name%.cpp}")
done
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=("${known[@]}")
for target in "${targets[@]}"; do
  case " ${known[*]} " in
    *" $target "*) ;;
    *) echo "fuzz/run.sh: unknown target '$target' (known: ${known[*]})" >&2; exit 2 ;;
  esac
done
work=${work:-$build/fuzz-work}

if [ ! -f "$build/CMakeCache.txt" ]; then
  generator=()
  command -v ninja >/dev/null && generator=(-G Ninja)
  CXX=clang++ cmake -S . -B "$build" ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE=RelWithDebInfo -DNRV_BUILD_FUZZERS=ON \
    -DNRV_BUILD_TESTS=OFF -DNRV_BUILD_TOOLS=OFF -DNRV_BUILD_EXAMPLES=OFF -DNRV_WARNINGS_AS_ERRORS=ON >/dev/null
fi
cmake --build "$build" -j2 --target "${targets[@]/#/nrv_fuzz_}"

# Longest input per target: an expression and a scan of a few kilobytes
# reach every path; longer ones only slow the search down.
declare -A max_len=([parse]=4096 [edit]=4096 [structures]=2048 [rules]=4096 [capi]=4096 [playground]=4096)
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
mkdir -p "$work/artifacts"
for target in "${targets[@]}"; do
  mkdir -p "$work/$target"
  log="$work/$target.log"
  echo "== fuzz $target: ${seconds}s"
  if ! "$build/fuzz/nrv_fuzz_$target" "$work/$target" "fuzz/corpus/$target" \
      -max_total_time="$seconds" -max_len="${max_len[$target]}" -timeout=10 -rss_limit_mb=2048 \
      -artifact_prefix="$work/artifacts/$target-" -print_final_stats=1 >"$log" 2>&1; then
    tail -n 60 "$log"
    echo "fuzz $target: finding, reproducer in $work/artifacts/ (run: $build/fuzz/nrv_fuzz_$target FILE)" >&2
    exit 1
  fi
  grep -E '^(Done|stat::number_of_executed_units|stat::peak_rss_mb)' "$log" | tr '\n' ' '
  echo
done
