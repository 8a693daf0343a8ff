#!/usr/bin/env bash
# Installs what is needed, builds Loomcrest and runs its main job: a scan of the bundled
# demo site, served on 127.0.0.1, into its six HTML sitemaps, sitemap.xml and badLinks.txt.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF
cmake --build build -j"$(nproc)" --target loomcrest

build/loomcrest demo
