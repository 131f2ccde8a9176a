#!/usr/bin/env bash
# Installs every Debian package the project needs to build, test and run.
# Idempotent: packages already present are left alone. Needs root (or sudo).
set -euo pipefail

PACKAGES=(
  build-essential cmake pkg-config git
  qt6-base-dev qt6-base-dev-tools qt6-charts-dev qt6-datavisualization-dev qt6-declarative-dev
  qt6-qpa-plugins libqt6sql6-sqlite
  libgl1-mesa-dev libsqlite3-dev sqlite3
  libgtest-dev libgmock-dev libbenchmark-dev libxlsxwriter-dev
  qt6-translations-l10n
  xvfb xauth xdotool imagemagick fonts-noto-cjk python3
  unzip poppler-utils
  clang-14 libclang-rt-14-dev llvm-14
  desktop-file-utils appstream dpkg-dev lintian
)

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all packages present"
  exit 0
fi

SUDO=""
[ "$(id -u)" -eq 0 ] || SUDO="sudo"
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update
$SUDO apt-get install -y --no-install-recommends "${missing[@]}"
