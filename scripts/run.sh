#!/usr/bin/env bash
# Builds and runs the sample kiosk program under Wine.
# With a display it opens its window (Escape quits). Without one it runs headless on Xvfb: a socat pty
# pair is the serial line (COM7 the kiosk, COM8 the coin acceptor), a small peer drops a coin on it
# every half second, and the kiosk plays a customer's visit by script, saves a PNG screenshot of each
# screen and prints where they are.
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

peer=""
cleanup() {
    [ -n "$peer" ] && kill "$peer" 2>/dev/null
    if $headless; then "$root/cmake/serial-line.sh" stop "$state" >/dev/null; fi
    "$root/cmake/wine-session.sh" stop "$state" >/dev/null
}
"$root/cmake/wine-session.sh" start "$state" >/dev/null
trap cleanup EXIT

cd "$build/bin"
if $headless; then
    if "$root/cmake/serial-line.sh" start "$state" >/dev/null; then
        # The coin acceptor: one byte per coin, written to the line's other end (held open for the run).
        (exec 3>"$state/serial/peer"; while sleep 0.5; do printf C >&3; done) &
        peer=$!
    else
        echo "no serial line: the kiosk runs in free play"
    fi
    rm -rf "$shots"
    ZQ_WINE_STATE=$state "$root/cmake/wine-run.sh" kiosk.exe -windowed -constantframetime:0.1 \
        -quitafterframe:100 "-screenshots:Z:${shots//\//\\}" | sed 's|^screenshot: Z:\(.*\)|screenshot: \1|; s|\\|/|g'
    echo "screenshots are in $shots"
else
    ZQ_WINE_STATE=$state "$root/cmake/wine-run.sh" kiosk.exe -windowed
fi
