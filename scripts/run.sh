#!/usr/bin/env bash
# Builds and runs the sample kiosk program under Wine.
# With a display it opens its window (Escape quits). Without one it runs headless on Xvfb for
# 60 frames, saves PNG screenshots of the back buffer and prints where they are.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target kiosk

root=$PWD
build=$root/build/mingw
state=$build/wine
shots=$build/screenshots
headless=false
[ -z "${DISPLAY:-}" ] && headless=true

"$root/cmake/wine-session.sh" start "$state" >/dev/null
trap '"$root/cmake/wine-session.sh" stop "$state" >/dev/null' EXIT

cd "$build/bin"
if $headless; then
    rm -rf "$shots"
    ZQ_WINE_STATE=$state "$root/cmake/wine-run.sh" kiosk.exe -windowed -constantframetime:0.1 \
        -quitafterframe:60 "-screenshots:Z:${shots//\//\\}" | sed 's|^screenshot: Z:\(.*\)|screenshot: \1|; s|\\|/|g'
    echo "screenshots are in $shots"
else
    ZQ_WINE_STATE=$state "$root/cmake/wine-run.sh" kiosk.exe -windowed
fi
