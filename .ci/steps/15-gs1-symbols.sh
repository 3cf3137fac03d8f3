#!/usr/bin/env bash
# GS1-128, GS1 DataMatrix and GS1 QR Code symbols made by zint and read by
# ZXingReader, as a scanner would read them: nrv-edit must give back the
# element strings that went in (examples/gs1-symbols.sh). Uses the
# nrv-edit of the README's test command (build/).
set -euo pipefail
cd "$(dirname "$0")/../.."

if ! command -v zint >/dev/null || ! command -v ZXingReader >/dev/null; then
  echo "== installing zint zxing-cpp-tools"
  apt-get update && apt-get install -y zint zxing-cpp-tools
fi
[ -x build/tools/nrv-edit ] || { cmake -S . -B build && cmake --build build -j2 --target nrv-edit; }
sh examples/gs1-symbols.sh build/tools/nrv-edit
