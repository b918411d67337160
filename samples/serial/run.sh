#!/usr/bin/env bash
# Builds the serial sample and runs it under Wine over a socat pty pair: the machine on COM7,
# a simulated coin acceptor on COM8 (the other end of the same line).
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
build=$root/build/mingw
scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target serial_sample >/dev/null
"$root/cmake/wine-session.sh" start "$build/wine" >/dev/null
trap '"$root/cmake/serial-line.sh" stop "$build/wine" >/dev/null; "$root/cmake/wine-session.sh" stop "$build/wine" >/dev/null' EXIT
"$root/cmake/serial-line.sh" start "$build/wine" >/dev/null
ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" "$build/bin/serial_sample.exe" COM7 COM8
