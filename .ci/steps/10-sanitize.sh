#!/usr/bin/env bash
# The whole test suite under AddressSanitizer (leak checking on) and
# UndefinedBehaviorSanitizer, built with clang++ when it is installed and
# with g++ otherwise, warnings as errors; then, when clang++ was used, a
# warnings-as-errors build with g++ as well, so that both compilers stay
# warning-free.
set -euo pipefail
cd "$(dirname "$0")/../.."

generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
compiler=g++ c_compiler=gcc
command -v clang++ >/dev/null && compiler=clang++ c_compiler=clang
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

echo "-- $compiler, AddressSanitizer + UndefinedBehaviorSanitizer: build-ci-sanitize"
# The C interface's tests are C: their compiler must bring the same sanitizer runtime.
CC=$c_compiler CXX=$compiler cmake -S . -B build-ci-sanitize ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DNRV_SANITIZE=ON -DNRV_WARNINGS_AS_ERRORS=ON >/dev/null
cmake --build build-ci-sanitize -j2
ctest --test-dir build-ci-sanitize --output-on-failure -j2

if [ "$compiler" != g++ ] && command -v g++ >/dev/null; then
  echo "-- g++, warnings as errors: build-ci-gcc"
  # Optimised (some warnings need the optimiser's analysis), without the
  # link-time optimisation the README's build already went through.
  CC=gcc CXX=g++ cmake -S . -B build-ci-gcc ${generator[@]+"${generator[@]}"} -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DNRV_WARNINGS_AS_ERRORS=ON -DNRV_LINK_TIME_OPTIMIZATION=OFF >/dev/null
  cmake --build build-ci-gcc -j2
fi
