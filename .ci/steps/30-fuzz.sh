#!/usr/bin/env bash
# Each libFuzzer target for about a minute (NRV_FUZZ_SECONDS) on a fresh copy
# of its seed corpus; any crash, leak, undefined behaviour, timeout or
# out-of-memory fails the step. Needs clang++; skipped without it.
set -euo pipefail
cd "$(dirname "$0")/../.."

if ! command -v clang++ >/dev/null; then
  echo "-- fuzzing skipped: no clang++"
  exit 0
fi
# A fresh working corpus every time; a reproducer stays in build-ci-fuzz/fuzz-work/artifacts.
rm -rf build-ci-fuzz/fuzz-work
fuzz/run.sh -t "${NRV_FUZZ_SECONDS:-60}" -b build-ci-fuzz
