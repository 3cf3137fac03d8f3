#!/usr/bin/env bash
# The C interface built shared (only its calls exported) with its C tests
# against it; the Python package with Debian's /usr/bin/python3: its tests
# under CTest, then installed by `cmake --install`, then as a wheel made by
# `pip wheel --no-build-isolation .`, each tested with pytest; the README's
# Python example and examples/edit_scans.py with the wheel.
set -euo pipefail
cd "$(dirname "$0")/../.."
src=$PWD
python=/usr/bin/python3  # not whatever python3 comes first: Debian's, which its packages serve

need=()
[ -x "$python" ] || need+=(python3)
[ -x "$python" ] && "$python" -c 'import sysconfig, os, sys; sys.exit(not os.path.exists(os.path.join(sysconfig.get_path("include"), "Python.h")))' || need+=(python3-dev)
for module in pytest:python3-pytest setuptools:python3-setuptools wheel:python3-wheel pip:python3-pip; do
  [ -x "$python" ] && "$python" -c "import ${module%%:*}" 2>/dev/null || need+=("${module#*:}")
done
if [ ${#need[@]} -gt 0 ]; then
  echo "== installing ${need[*]}"
  apt-get update && apt-get install -y "${need[@]}"
fi

work=$(mktemp -d /tmp/nrv-bindings.XXXXXX)
trap 'rm -rf "$work"' EXIT
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
export PIP_ROOT_USER_ACTION=ignore PIP_DISABLE_PIP_VERSION_CHECK=1 PIP_NO_INDEX=1

echo "-- the C interface shared and the Python package: build-ci-bindings"
cmake -S . -B build-ci-bindings ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DNRV_C_SHARED=ON -DNRV_PYTHON=ON -DPython3_EXECUTABLE="$python" -DNRV_WARNINGS_AS_ERRORS=ON \
  -DNRV_LINK_TIME_OPTIMIZATION=OFF >/dev/null
cmake --build build-ci-bindings -j2 --target nrvdataedit-c test_capi nrvdataedit-python nrv-edit
lib=build-ci-bindings/capi/libnrvdataedit-c.so
others=$(nm -D --defined-only "$lib" | awk '$3 !~ /^Nrv/ { print $3 }')
[ -z "$others" ] || { echo "libnrvdataedit-c.so exports more than the C interface:" $others >&2; exit 1; }
declared=$(grep -cE '^(NRVRESULT|void) Nrv[A-Za-z]+\(' capi/NrvDataEdit.h)
exported=$(nm -D --defined-only "$lib" | grep -c ' T Nrv')
[ "$declared" = "$exported" ] || { echo "NrvDataEdit.h declares $declared calls, the library exports $exported" >&2; exit 1; }
ldd build-ci-bindings/capi/tests/test_capi | grep -q libnrvdataedit-c.so ||
  { echo "the C tests did not run against the shared library" >&2; exit 1; }
ctest --test-dir build-ci-bindings -R '^(capi\..*|python)$' --output-on-failure

pytest_against() {  # the suite against the package found in $1
  (cd "$work" && PYTHONPATH="$1" NRV_SOURCE_DIR="$src" NRV_EDIT="$src/build-ci-bindings/tools/nrv-edit" \
     "$python" -m pytest -q -p no:cacheprovider "$src/python/tests")
  PYTHONPATH="$1" "$python" -c 'import nrvdataedit, sys; sys.exit(not nrvdataedit.__file__.startswith(sys.argv[1]))' "$1" ||
    { echo "the tests did not import the package from $1" >&2; exit 1; }
}

echo "-- cmake --install of the Python package (staged in $work/stage)"
DESTDIR="$work/stage" cmake --install build-ci-bindings --component Python >/dev/null
pytest_against "$work/stage$("$python" -c 'import sysconfig; print(sysconfig.get_path("platlib"))')"

echo "-- pip wheel --no-build-isolation ."
"$python" -m pip wheel --no-build-isolation --no-deps -w "$work/wheel" . >"$work/wheel.log" 2>&1 ||
  { cat "$work/wheel.log" >&2; exit 1; }
"$python" -m pip install --no-deps --target "$work/wheel-site" "$work"/wheel/nrvdataedit-*.whl >/dev/null
pytest_against "$work/wheel-site"

echo "-- the README's Python example and examples/edit_scans.py, with the wheel"
awk '/^```python$/ { on = 1; next } on && /^```$/ { exit } on' README.md >"$work/readme.py"
PYTHONPATH="$work/wheel-site" "$python" "$work/readme.py" >"$work/readme.out"
out=$(head -n 3 "$work/readme.out")
[ "$out" = "$(printf "b'Code: 1234'\nb'XY5678'\n[b'Code: 1', b'Code: 22', b'Code: 333']")" ] ||
  { echo "the README's Python example printed '$out'" >&2; exit 1; }
status=0
out=$(printf 'AB1234\r\nXY\nA\n' | PYTHONPATH="$work/wheel-site" "$python" examples/edit_scans.py \
        '[{TruncateFromBeginning({DecodedDataWithoutTrailer()},2)}]' starts_with=A 2>"$work/stderr") || status=$?
[ "$out" = "$(printf '[1234]\nXY\nA')" ] && [ $status = 1 ] &&
  grep -q '^edit_scans.py: scan 3: TruncateFromBeginning: ' "$work/stderr" ||
  { echo "examples/edit_scans.py printed '$out' (status $status)" >&2; cat "$work/stderr" >&2; exit 1; }
