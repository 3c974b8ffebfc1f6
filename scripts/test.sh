#!/usr/bin/env bash
# Sets up, builds and runs every test: once as shipped, once under AddressSanitizer
# and UndefinedBehaviorSanitizer.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
jobs=$(nproc)

"$root/scripts/build.sh" build-test -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFLUXMERE_BENCH=ON
(cd "$root/build-test" && ctest --output-on-failure -j"$jobs")

"$root/scripts/build.sh" build-asan -DCMAKE_BUILD_TYPE=Debug -DFLUXMERE_SANITIZE=ON -DFLUXMERE_BENCH=OFF
(cd "$root/build-asan" && ASAN_OPTIONS=detect_leaks=0 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --output-on-failure -j"$jobs")
