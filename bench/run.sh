#!/usr/bin/env bash
# Builds and runs the benchmarks under Wine and prints their figures.
#   bench/run.sh [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=$root/build/mingw
scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target texture_load_bench sprite_render_bench animation_bench native_tools >/dev/null

art=$build/bench-art
if [ ! -f "$art/atlas.te" ]; then
    rm -rf "$art" && mkdir -p "$art/images"
    "$build/native/bin/make_test_art" "$art/images" 3000
    "$build/native/bin/zqpack" te --quiet --size 2048x2048 -o "$art/atlas.te" "$art/images"
fi
if [ ! -f "$art/anim.am" ]; then
    # 100 animations of 8 frames each, over the first 800 chunks.
    for scene in $(seq 0 99); do
        printf 'scene a%03d\n' "$scene"
        for frame in $(seq 0 7); do printf 'frame s%05d 0.05\n' $((scene * 8 + frame)); done
    done > "$art/anim.txt"
    "$build/native/bin/zqanim" am --atlas "$art/atlas.te" -o "$art/anim.am" "$art/anim.txt"
fi

"$root/cmake/wine-session.sh" start "$build/wine" >/dev/null
trap '"$root/cmake/wine-session.sh" stop "$build/wine" >/dev/null' EXIT
cd "$build/bin"
atlas="Z:${art//\//\\}\\atlas.te"
ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" texture_load_bench.exe "$atlas" "${1:-5}"
echo
ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" sprite_render_bench.exe "$atlas" "${2:-20}"
echo
ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" animation_bench.exe "$atlas" "Z:${art//\//\\}\\anim.am" "${3:-120}"
