#!/usr/bin/env bash
# The library built with clang's source-based coverage, the unit tests and
# the tool's tests run over it, and the branches of engine/ and utilities/ they reach counted:
# fails below NRV_MIN_BRANCH_COVERAGE percent (default 95). The per-file
# report is left in build-ci-coverage/coverage.txt.
set -euo pipefail
cd "$(dirname "$0")/../.."

minimum=${NRV_MIN_BRANCH_COVERAGE:-95}
tool() {  # the unversioned LLVM tool, else the one that goes with clang 14
  command -v "$1" || command -v "$1-14" || { echo "missing $1 (apt-get install llvm)" >&2; exit 1; }
}
profdata=$(tool llvm-profdata)
cov=$(tool llvm-cov)
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)

build=build-ci-coverage
echo "-- clang++ with coverage: $build"
CC=clang CXX=clang++ cmake -S . -B "$build" ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE=Debug \
  -DNRV_BUILD_TESTS=ON -DNRV_BUILD_TOOLS=ON -DNRV_BUILD_EXAMPLES=OFF -DNRV_SANITIZE=OFF \
  -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping" \
  -DCMAKE_EXE_LINKER_FLAGS="-fprofile-instr-generate" >/dev/null
cmake --build "$build" -j2
rm -f "$build"/*.profraw
# The unit tests and the tool's tests (which reach the escapes, the
# symbology names and the diagnostics through nrv-edit). The 2 GiB test
# measures nothing the others do not, and is slow here.
LLVM_PROFILE_FILE="$PWD/$build/run-%p.profraw" ctest --test-dir "$build" -j2 -E 'TextsOf2GiB' >/dev/null ||
  { echo "the tests failed in the coverage build" >&2; exit 1; }
"$profdata" merge -sparse "$build"/*.profraw -o "$build/tests.profdata"
# Every file is gated; NRV_COVERAGE_UNGATED (space-separated paths, empty
# by default) reports some without gating them, for a file being brought up.
ungated=${NRV_COVERAGE_UNGATED:-}
sources=()
for file in engine/*.cpp engine/*.h utilities/*.cpp utilities/*.h; do
  case " $ungated " in *" $file "*) ;; *) sources+=("$file") ;; esac
done
for file in $ungated; do
  "$cov" report "$build/tests/nrv_tests" -object "$build/tools/nrv-edit" -instr-profile="$build/tests.profdata" "$file" |
    awk -v f="$file" '$1 == "TOTAL" { print "-- not gated: " f ", branches covered " $NF }'
done
"$cov" report "$build/tests/nrv_tests" -object "$build/tools/nrv-edit" -instr-profile="$build/tests.profdata" \
  "${sources[@]}" >"$build/coverage.txt"
total=$(awk '$1 == "TOTAL" { print $(NF-2), $(NF-1) }' "$build/coverage.txt")
read -r branches missed <<<"$total"
covered=$(awk -v b="$branches" -v m="$missed" 'BEGIN { printf "%.2f", b ? 100 * (b - m) / b : 100 }')
echo "-- branches of engine/ and utilities/ covered: $covered% ($((branches - missed)) of $branches; minimum $minimum%)"
if awk -v c="$covered" -v m="$minimum" 'BEGIN { exit !(c < m) }'; then
  echo "branch coverage below $minimum%; missed branches per file, most first:" >&2
  awk 'NF > 9 && $1 != "TOTAL" && $1 != "Filename" { print $(NF-1), $1 }' "$build/coverage.txt" | sort -rn | head -8 >&2
  exit 1
fi
