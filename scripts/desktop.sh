#!/usr/bin/env bash
# Starts a virtual screen with a window manager for looking at the program as a user does:
#   scripts/desktop.sh :5 && DISPLAY=:5 build/bin/Fluxmere
#   DISPLAY=:5 import -window root shot.png     # a screenshot; xdotool for keys and clicks
# Needs xvfb, openbox, xdotool and imagemagick (apt-get install them once).
set -euo pipefail
display=${1:-:5}
Xvfb "$display" -screen 0 "${SCREEN:-1280x1024x24}" -nolisten tcp >/dev/null 2>&1 &
for _ in $(seq 50); do
  DISPLAY=$display xdpyinfo >/dev/null 2>&1 && break
  sleep 0.1
done
DISPLAY=$display openbox >/dev/null 2>&1 &
echo "DISPLAY=$display"
