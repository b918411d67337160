#!/usr/bin/env bash
# The long soak: the sample kiosk plays its demo visit VISITS times (default 10,000, about a million
# frames) headless under Wine, with a coin every half second on COM7, and prints every EVERY visits
# (default 100) its working set, private bytes, resident size, handles and GDI/USER objects, then the
# growth per 1,000 visits after the first WARMUP (default 200). The table, a PNG plot and the summary
# are kept in build/mingw/soak/. With --free-play no coins come (the line is idle).
#   scripts/soak.sh [--free-play] [VISITS] [EVERY] [WARMUP]
set -euo pipefail
cd "$(dirname "$0")/.."

coins=--coins
if [ "${1:-}" = --free-play ]; then
    coins=""
    shift
fi
visits=${1:-10000}
every=${2:-100}
warmup=${3:-200}
scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target kiosk

root=$PWD
build=$root/build/mingw
state=$build/wine
cleanup() {
    "$root/cmake/serial-line.sh" stop "$state" >/dev/null
    "$root/cmake/wine-session.sh" stop "$state" >/dev/null
}
"$root/cmake/wine-session.sh" start "$state" >/dev/null
trap cleanup EXIT
"$root/cmake/serial-line.sh" start "$state" >/dev/null || { echo "no serial line: the kiosk runs in free play"; coins=""; }
"$root/cmake/kiosk-soak.sh" --state "$state" --bin "$build/bin" --out "$build/soak" --visits "$visits" --every "$every" \
    --warmup "$warmup" $coins
