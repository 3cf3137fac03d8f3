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

for f in lib/libnrvdataedit.a include/nrv/NrvDataEditingProfile.h include/nrv/NrvDiagnostics.h \
         include/nrv/NrvScanTypes.h include/nrv/NrvResultCodes.h lib/pkgconfig/nrvdataedit.pc \
         lib/cmake/NrvDataEditing/NrvDataEditingConfig.cmake \
         lib/cmake/NrvDataEditing/NrvDataEditingConfigVersion.cmake; do
  [ -f "$prefix/$f" ] || { echo "missing from the install: $f" >&2; exit 1; }
done
# Only the interface is installed: the engine's own classes stay private.
for f in NrvOperation.h NrvOperationResult.h NrvCommand.h NrvParsingString.h NrvParseRecorder.h; do
  [ ! -e "$prefix/include/nrv/$f" ] || { echo "a private header was installed: $f" >&2; exit 1; }
done
version=$(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --modversion nrvdataedit)
if [ -f build-pkg/tools/nrv-edit ]; then
  [ -x "$prefix/bin/nrv-edit" ] || { echo "the nrv-edit tool was built but not installed" >&2; exit 1; }
  tool_version=$("$prefix/bin/nrv-edit" --version)
  [ "$tool_version" = "nrv-edit $version" ] ||
    { echo "installed tool says '$tool_version', package is $version" >&2; exit 1; }
fi
# Every installed header compiles alone: whatever it includes was installed.
for header in "$prefix"/include/nrv/*.h; do
  echo "#include \"$(basename "$header")\"" | ${CXX:-c++} -std=c++17 -fsyntax-only -I"$prefix/include/nrv" -x c++ - ||
    { echo "$(basename "$header") does not compile alone from the install" >&2; exit 1; }
done
# The README's first C++ example, a whole program, compiles as shown against
# the installed headers.
awk '/^```cpp$/ { on = 1; next } on && /^```$/ { exit } on' README.md |
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

if [ -f build-pkg/rules/libnrvrules.a ]; then
  echo "-- rules library (find_package Nrv::Rules, pkg-config nrvrules)"
  for f in lib/libnrvrules.a include/nrv/NrvRulesFile.h include/nrv/NrvRuleTests.h include/nrv/NrvRuleSet.h lib/pkgconfig/nrvrules.pc; do
    [ -f "$prefix/$f" ] || { echo "missing from the install: $f" >&2; exit 1; }
  done
  mkdir "$work/consumer-rules"
  cat >"$work/consumer-rules/main.cpp" <<'EOF_CPP'
#include <cstdio>
#include <cstring>
#include <vector>
#include "NrvRulesFile.h"
int main(int argc, char** argv)
{
    CNrvRuleSet rules;
    std::vector<TNrvRulesError> errors;
    if (argc != 3 || !NrvReadRulesFile(argv[1], &rules, &errors))
        return 1;
    TNrvScanDecodedData scan = {kNrvScanSymbologyUpcA, {0, nullptr}, {strlen(argv[2]), argv[2]}};
    size_t nRule = CNrvRuleSet::kNoRule;
    if (rules.Edit(&scan, &nRule) != NRV_OK)
        return 1;
    printf("%zu %.*s\n", nRule + 1, static_cast<int>(scan.String.nLength), scan.String.pValue);
    return 0;
}
EOF_CPP
  cat >"$work/consumer-rules/CMakeLists.txt" <<'EOF_CMAKE'
cmake_minimum_required(VERSION 3.16)
project(NrvConsumerRules LANGUAGES CXX)
find_package(NrvDataEditing 1.0 CONFIG REQUIRED)
add_executable(nrv_consumer_rules main.cpp)
target_link_libraries(nrv_consumer_rules PRIVATE Nrv::Rules)
EOF_CMAKE
  cmake -S "$work/consumer-rules" -B "$work/consumer-rules/build" ${generator[@]+"${generator[@]}"} \
    -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" >/dev/null
  cmake --build "$work/consumer-rules/build"
  out=$("$work/consumer-rules/build/nrv_consumer_rules" examples/rules.toml 0036602301467)
  [ "$out" = "1 036602301467" ] || { echo "the Nrv::Rules consumer printed '$out'" >&2; exit 1; }
  PKG_CONFIG_PATH="$prefix/lib/pkgconfig" ${CXX:-c++} -std=c++17 "$work/consumer-rules/main.cpp" \
    $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs --static nrvrules) -o "$work/consumer-rules/pc"
  out=$("$work/consumer-rules/pc" examples/rules.toml 0036602301467)
  [ "$out" = "1 036602301467" ] || { echo "the nrvrules pkg-config consumer printed '$out'" >&2; exit 1; }
fi

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
