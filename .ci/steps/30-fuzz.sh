#!/usr/bin/env bash
# Each libFuzzer target for 45 seconds (NRV_FUZZ_SECONDS) on a fresh copy
# of its seed corpus; any crash, leak, undefined behaviour, timeout or
# out-of-memory fails the step. Needs clang++ (.ci/run installs it).
set -euo pipefail
cd "$(dirname "$0")/../.."

command -v clang++ >/dev/null || { echo "fuzzing needs clang++ and libclang-rt-14-dev" >&2; exit 1; }
# A fresh working corpus every time; a reproducer stays in build-ci-fuzz/fuzz-work/artifacts.
rm -rf build-ci-fuzz/fuzz-work
fuzz/run.sh -t "${NRV_FUZZ_SECONDS:-45}" -b build-ci-fuzz
