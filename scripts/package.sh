#!/usr/bin/env bash
# Builds the Debian package (build-package/shuangqu_<version>_<arch>.deb) and checks it with
# dpkg-deb and lintian. Install it with: sudo apt-get install ./build-package/shuangqu_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake -S . -B build-package -DCMAKE_BUILD_TYPE=Release -DSHUANGQU_BUILD_TESTS=OFF -DSHUANGQU_BUILD_BENCHMARKS=OFF
cmake --build build-package -j"$(nproc)" --target shuangqu shuangqu-cli
(cd build-package && cpack -G DEB)
deb=$(ls -t build-package/shuangqu_*.deb | head -1)
dpkg-deb --info "$deb"
lintian --no-tag-display-limit "$deb" || true
echo "package: $deb"
