#!/usr/bin/env bash
# Installs every Debian package that building, running and testing need. Safe to run again.
set -euo pipefail
pkgs=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools libqt6serialport6-dev libqt6svg6-dev qt6-l10n-tools
  libqcustomplot-dev
  libgl-dev libxkbcommon-dev
  libgtest-dev libbenchmark-dev
  clang libclang-rt-dev
  xvfb xauth
  desktop-file-utils appstream shared-mime-info xdg-utils libfile-mimeinfo-perl  # the install test
  qt6-translations-l10n  # Qt's own dialogs in Italian
  libwmf-bin fonts-urw-base35  # an independent metafile reader for the tests, and the fonts it needs
  datamash  # the yardstick of bench/compare_datamash.sh
  help2man  # fluxmere-cli's manual page, made from its --help
  poppler-utils  # the printed pages read back by the tests (pdftotext, pdfinfo)
  cups printer-driver-cups-pdf  # a print queue of the test's own that makes PDFs
)
missing=()
for p in "${pkgs[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -eq 0 ] || SUDO="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $SUDO apt-get update -qq
  $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
