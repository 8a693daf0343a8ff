#!/usr/bin/env bash
# Scans the bundled demo site and takes a picture of each view of the window under Xvfb,
# into docs/screenshots/.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build -j"$(nproc)" --target loomcrest loomcrest-gui >/dev/null

home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
HOME="$home" build/loomcrest demo >/dev/null
HOME="$home" QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu xvfb-run -a -s "-screen 0 1280x800x24" \
    build/loomcrest-gui --site Demo --screenshots "$PWD/docs/screenshots"
ls docs/screenshots
