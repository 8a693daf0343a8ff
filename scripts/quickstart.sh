#!/usr/bin/env bash
# Installs what is needed, builds Loomcrest and runs its main job on a sample site.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF
cmake --build build -j"$(nproc)"

if ! build/loomcrest show Example >/dev/null 2>&1; then
    build/loomcrest add Example example.com
fi
build/loomcrest show Example
echo
build/loomcrest sites
