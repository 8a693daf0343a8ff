#!/usr/bin/env bash
# The window's scripted journey: scans the bundled demo site with the command line, then has
# the window show each view in turn under Xvfb and save a picture of it into OUTPUT_FOLDER.
# Fails when a picture cannot be written or any other window is on screen meanwhile.
# Usage: screenshot-journey.sh BUILD_FOLDER OUTPUT_FOLDER
set -euo pipefail
build="$1"
output="$2"

home="$(mktemp -d)"
trap 'rm -rf "$home"' EXIT
HOME="$home" "$build/loomcrest" demo >/dev/null
HOME="$home" QT_QPA_PLATFORM=xcb QTWEBENGINE_CHROMIUM_FLAGS=--disable-gpu \
    xvfb-run -a -s "-screen 0 1280x800x24" \
    "$build/loomcrest-gui" --site Demo --screenshots "$output"
