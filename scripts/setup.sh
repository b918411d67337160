#!/usr/bin/env bash
# Installs, with apt-get, every Debian package the build and the tests need that is missing.
# Quick when everything is there already.
set -euo pipefail

packages=(
    cmake ninja-build googletest
    g++-mingw-w64-x86-64-posix
    wine wine64 xvfb
    clang libclang-rt-14-dev libstb-dev
    lld libwine-dev libc++-14-dev
    gstreamer1.0-plugins-base gstreamer1.0-plugins-good lame sox mpg123 imagemagick
    socat gnuplot-nox
    fonts-dejavu-core fonts-vlgothic
    locales
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
if [ ${#missing[@]} -gt 0 ]; then
    echo "installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    # Another install may hold the package lock: wait for it rather than fail.
    lock_wait=(-o DPkg::Lock::Timeout=900)
    $sudo apt-get "${lock_wait[@]}" update -qq
    $sudo apt-get "${lock_wait[@]}" install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

# The locales the tests and tools run under: without them Wine programs silently skip files whose
# names are not ASCII.
generate=()
for name in en_US ja_JP; do
    locale -a 2>/dev/null | grep -qix "$name.utf-\?8" || generate+=("$name.UTF-8")
done
if [ ${#generate[@]} -gt 0 ]; then
    echo "generating locales: ${generate[*]}"
    for name in "${generate[@]}"; do
        grep -q "^$name UTF-8" /etc/locale.gen || echo "$name UTF-8" | $sudo tee -a /etc/locale.gen >/dev/null
    done
    $sudo locale-gen >/dev/null
fi
