#!/usr/bin/env bash
# Builds Loomcrest in Release (the programs, their manual page and icons; no tests) and makes
# its Debian package with CPack: build-package-dir/loomcrest_VERSION_ARCH.deb, or in the build
# folder given as the first argument.
set -euo pipefail
cd "$(dirname "$0")/.."
build="${1:-build-package-dir}"

scripts/install-deps.sh
# The prefix is the package's, so that paths built into the programs (the README that
# Help > Report a Problem opens) name where the package puts the files.
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF \
    -DLOOMCREST_BUILD_GUI=ON -DCMAKE_INSTALL_PREFIX=/usr
cmake --build "$build" -j"$(nproc)"
rm -f "$build"/loomcrest_*.deb
(cd "$build" && cpack -G DEB)
ls "$build"/loomcrest_*.deb
