#!/usr/bin/env bash
# Installs the library to a temporary prefix and builds and runs the two
# consumer examples against it (CMake package and pkg-config), then builds
# the CMake consumer once more with the library added as a subdirectory.
set -euo pipefail
cd "$(dirname "$0")/../.."
src=$PWD

work=$(mktemp -d /tmp/nrv-package.XXXXXX)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)

echo "-- library: build-pkg, installed to $prefix"
cmake -S . -B build-pkg ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE=Release \
  -DNRV_BUILD_TESTS=OFF -DNRV_BUILD_EXAMPLES=OFF -DNRV_SANITIZE=OFF \
  -DCMAKE_INSTALL_LIBDIR=lib >/dev/null
cmake --build build-pkg -j2
cmake --install build-pkg --prefix "$prefix" >/dev/null

for f in lib/libnrvdataedit.a include/nrv/NrvDataEditingProfile.h include/nrv/NrvOperation.h \
         include/nrv/NrvScanTypes.h include/nrv/NrvList.h lib/pkgconfig/nrvdataedit.pc \
         lib/cmake/NrvDataEditing/NrvDataEditingConfig.cmake \
         lib/cmake/NrvDataEditing/NrvDataEditingConfigVersion.cmake; do
  [ -f "$prefix/$f" ] || { echo "missing from the install: $f" >&2; exit 1; }
done
version=$(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --modversion nrvdataedit)
if [ -f build-pkg/tools/nrv-edit ]; then
  [ -x "$prefix/bin/nrv-edit" ] || { echo "the nrv-edit tool was built but not installed" >&2; exit 1; }
  tool_version=$("$prefix/bin/nrv-edit" --version)
  [ "$tool_version" = "nrv-edit $version" ] ||
    { echo "installed tool says '$tool_version', package is $version" >&2; exit 1; }
fi
# Every header the umbrella pulls in must be there: compile it alone.
echo '#include "NrvOperation.h"' | ${CXX:-c++} -std=c++17 -fsyntax-only -I"$prefix/include/nrv" -x c++ -
# The README's C++ example compiles as shown against the installed headers.
awk '/^```cpp$/ { on = 1; next } /^```$/ { on = 0 } on' README.md |
  ${CXX:-c++} -std=c++17 -Wall -Wextra -Werror -fsyntax-only -I"$prefix/include/nrv" -x c++ -

echo "-- consumer-cmake (find_package)"
cmake -S examples/consumer-cmake -B "$work/consumer-cmake" ${generator[@]+"${generator[@]}"} \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >/dev/null
cmake --build "$work/consumer-cmake"
"$work/consumer-cmake/nrv_consumer_cmake"

echo "-- consumer-pkgconfig"
mkdir "$work/consumer-pkgconfig"
(cd "$work/consumer-pkgconfig" &&
  PKG_CONFIG_PATH="$prefix/lib/pkgconfig" make -f "$src/examples/consumer-pkgconfig/Makefile" \
    CXXFLAGS="-O2 -Wall -Wextra -Werror")
out=$(printf 'AB1234\r\n\nXY' | "$work/consumer-pkgconfig/nrv_filter" '[{DecodedDataWithoutTrailer()}]')
# Cleaning needs no package.
(cd "$work/consumer-pkgconfig" && env -u PKG_CONFIG_PATH make -s -f "$src/examples/consumer-pkgconfig/Makefile" clean)
[ ! -e "$work/consumer-pkgconfig/nrv_filter" ] || { echo "make clean left nrv_filter" >&2; exit 1; }
printf '%s\n' "$out"
expected=$(printf '[AB1234]\t0\n[]\t0\n[XY]\t0')
[ "$out" = "$expected" ] || { echo "consumer-pkgconfig printed something else" >&2; exit 1; }

echo "-- consumer-cmake (add_subdirectory)"
cmake -S examples/consumer-cmake -B "$work/consumer-subdir" ${generator[@]+"${generator[@]}"} \
  -DNRV_SOURCE_DIR="$src" >/dev/null
cmake --build "$work/consumer-subdir" -j2
# Added as a subdirectory, the project builds the library and nothing else.
built=$(cd "$work/consumer-subdir" && find . -type f \( -name 'libnrv*' -o -perm -u+x -name 'nrv*' \) \
          -printf '%f\n' | sort | tr '\n' ' ')
[ "$built" = "libnrvdataedit.a nrv_consumer_cmake " ] ||
  { echo "built more than the library: $built" >&2; exit 1; }
"$work/consumer-subdir/nrv_consumer_cmake" >/dev/null
echo "-- package checks passed"
