#!/usr/bin/env bash
# Installs, with apt-get, every Debian package the build and the tests need that is missing.
# Quick when everything is there already.
set -euo pipefail

packages=(
    cmake ninja-build googletest
    g++-mingw-w64-x86-64-posix
    wine wine64 xvfb
    clang libclang-rt-14-dev libstb-dev
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good lame sox mpg123
    socat
    fonts-dejavu-core
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
# Another install may hold the package lock: wait for it rather than fail.
lock_wait=(-o DPkg::Lock::Timeout=900)
$sudo apt-get "${lock_wait[@]}" update -qq
$sudo apt-get "${lock_wait[@]}" install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
