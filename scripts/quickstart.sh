#!/usr/bin/env bash
# Installs what is needed, builds Loomcrest and runs its main job: a scan of the bundled
# demo site, served on 127.0.0.1, into its six HTML sitemaps, sitemap.xml and badLinks.txt.
# With a display it then opens the window on the demo site.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF
cmake --build build -j"$(nproc)" --target loomcrest loomcrest-gui

build/loomcrest demo
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    echo
    echo "Opening the Loomcrest window on the demo site."
    build/loomcrest-gui --site Demo
else
    echo
    echo "No display: the command-line demo above is the whole run. With a display this opens"
    echo "the window on the demo site (build/loomcrest-gui --site Demo)."
fi
