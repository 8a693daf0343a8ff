#!/usr/bin/env bash
# Installs everything Loomcrest needs to build and test, from Debian 12's packages.
set -euo pipefail

packages=(
    cmake g++ make pkg-config clang libclang-rt-14-dev
    libcurl4-openssl-dev libxml2-dev libpcre2-dev liburiparser-dev zlib1g-dev
    libcli11-dev libgtest-dev libgmock-dev libcpp-httplib-dev
    qt6-base-dev qt6-qpa-plugins qt6-webengine-dev libgl1-mesa-dev xvfb xauth dbus-bin
    dbus-daemon
    help2man librsvg2-bin dpkg-dev file man-db bash-completion appstream desktop-file-utils
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    sudo=(sudo)
fi
echo "Installing: ${missing[*]}"
"${sudo[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
