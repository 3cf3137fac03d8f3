#!/usr/bin/env bash
# The playground: builds the page with emscripten (the wasm preset), checks
# its size, and runs its browser tests in headless Chromium against this
# tree's nrv-edit, and the unit tests of its modules with Node.js. Installs emscripten, Chromium, Node.js and the npm
# packages (from web/package-lock.json) where they are missing.
set -euo pipefail
cd "$(dirname "$0")/../.."

phase_start=$SECONDS
phase() {
  echo "-- $1 ($((SECONDS - phase_start)) s so far)"
}

missing=()
command -v em++ >/dev/null || missing+=(emscripten)
command -v chromium >/dev/null || missing+=(chromium)
command -v node >/dev/null || missing+=(nodejs)
command -v npm >/dev/null || missing+=(npm)
if [ ${#missing[@]} -gt 0 ]; then
  phase "installing ${missing[*]}"
  apt-get update && apt-get install -y "${missing[@]}"
fi

phase "npm packages"
(cd web && npm ci --no-audit --no-fund --loglevel=error)

phase "page: cmake --preset wasm"
cmake --preset wasm >/dev/null
cmake --build --preset wasm

# The page and its scripts stay small enough to open anywhere at once.
bytes=$(cat out/build/wasm/web/{index.html,playground.css,playground.js,nrv-engine.js} | wc -c)
echo "-- page and scripts: $bytes bytes"
[ "$bytes" -lt 409600 ] || { echo "the page grew past 400 KB" >&2; exit 1; }

phase "nrv-edit and the browser tests' registration in build/"
cmake -S . -B build >/dev/null
cmake --build build -j2 --target nrv-edit
registered=$(ctest --test-dir build -N -L browser)
grep -q 'playground\.' <<<"$registered" ||
  { echo "the browser tests were not registered (see the configure output of build/)" >&2; exit 1; }

phase "browser tests and the page's unit tests"
ctest --test-dir build -L 'browser|web' --output-on-failure
phase "done"
