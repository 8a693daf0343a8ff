#!/usr/bin/env bash
# Scans the bundled demo site and takes a picture of each view of the window under Xvfb,
# into docs/screenshots/. Fails when another window is on screen while the pictures are taken.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j"$(nproc)" --target loomcrest loomcrest-gui >/dev/null

tests/gui/screenshot-journey.sh build "$PWD/docs/screenshots"
ls docs/screenshots
