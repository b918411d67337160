#!/usr/bin/env bash
# Builds the contact-sheet sample and runs it under Wine: frames of a model's animation at even times,
# one cell each, in one PNG whose path it prints. Without a display it runs headless on Xvfb.
#   scripts/contact-sheet.sh MODEL.x ANIMATION [-frames:N] [-columns:C] [-size:WxH] [-out:FILE.png]
#                            [-distance:D] [-yaw:RADIANS]
# Without -out the sheet goes to build/mingw/contact-sheets/MODEL-ANIMATION.png.
set -euo pipefail
if [ $# -lt 2 ]; then
    sed -n '4,5s/^# //p' "$0"
    exit 2
fi
# Paths are the caller's: made absolute before moving to the repository.
model=$(realpath "$1")
animation=$2
shift 2
out=""
options=()
for arg in "$@"; do
    case "$arg" in
    -out:*) out=$(realpath -m "${arg#-out:}") ;;
    *) options+=("$arg") ;;
    esac
done
cd "$(dirname "$0")/.."
root=$PWD
build=$root/build/mingw
state=$build/wine
if [ -z "$out" ]; then
    stem=$(basename "$model")
    out=$build/contact-sheets/${stem%.*}-$animation.png
fi
mkdir -p "$(dirname "$out")"

scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target contact_sheet >/dev/null

"$root/cmake/wine-session.sh" start "$state" >/dev/null
trap '"$root/cmake/wine-session.sh" stop "$state" >/dev/null' EXIT
windows() { printf 'Z:%s' "${1//\//\\}"; }
cd "$build/bin"
# Wine's drive Z: is the root: its paths are shown as the machine's own.
ZQ_WINE_STATE=$state "$root/cmake/wine-run.sh" contact_sheet.exe "$(windows "$model")" "$animation" \
    ${options[@]+"${options[@]}"} "-out:$(windows "$out")" | sed 's|Z:\\|/|g; s|\\|/|g'
