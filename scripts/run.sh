#!/usr/bin/env bash
# Sets up, builds and runs Fluxmere on the bundled sample measurement. Without a
# display it says so and prints what the information panel and the warnings would show.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/setup.sh"
"$root/scripts/build.sh" build -DCMAKE_BUILD_TYPE=Release -DFLUXMERE_TESTS=OFF -DFLUXMERE_BENCH=OFF
sample="$root/resources/samples/sample.log"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  exec "$root/build/bin/Fluxmere" -L "$sample"
fi
echo "No display available: showing the sample measurement with fluxmere-cli instead."
exec "$root/build/bin/fluxmere-cli" info "$sample"
