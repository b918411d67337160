#!/usr/bin/env bash
# Builds and runs the benchmarks under Wine and prints their figures.
#   bench/run.sh [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=$root/build/mingw
scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target texture_load_bench sprite_render_bench mp3_decode_bench animation_bench \
    native_tools >/dev/null

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

# Three minutes of 22,050 Hz stereo (a sweep on the left, pink noise on the right) as a 128 kbit/s MP3,
# decoded by the library under Wine, then by mpg123 natively in the same run.
piece=$build/bench-sound/piece.mp3
if [ ! -f "$piece" ]; then
    mkdir -p "$(dirname "$piece")"
    sox -n -r 22050 -c 2 -b 16 "${piece%.mp3}.wav" synth 180 sine 200-2000 pinknoise vol 0.4
    lame --quiet -b 128 "${piece%.mp3}.wav" "$piece"
fi
echo
ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" mp3_decode_bench.exe "Z:${piece//\//\\}" "${3:-3}" 2>/dev/null
for round in 1 2 3; do
    start=$(date +%s.%N)
    mpg123 -q -s "$piece" >/dev/null
    end=$(date +%s.%N)
    awk -v round="$round" -v wall="$(awk -v a="$start" -v b="$end" 'BEGIN { print b - a }')" \
        'BEGIN { printf "mpg123 (native), round %d: 180 s in %.3f s, %.0f seconds decoded per second\n", round, wall, 180 / wall }'
done
echo
ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" animation_bench.exe "$atlas" "Z:${art//\//\\}\\anim.am" "${4:-120}"
