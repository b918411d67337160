#!/usr/bin/env bash
# Builds and runs every benchmark under Wine, prints their figures, and ends with a summary table.
#   bench/run.sh [ROUNDS]
# ROUNDS (default 5) is the number of rounds of the loading, name map and MP3 benchmarks; each
# program's full output is also kept in build/mingw/bench-logs/.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
build=$root/build/mingw
rounds=${1:-5}
scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw --target texture_load_bench sprite_render_bench animation_bench mp3_decode_bench \
    serial_bench name_map_bench spline_load_bench model_bench operation_loops platform_leaks kiosk native_tools >/dev/null

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
if [ ! -f "$art/long.spl" ]; then
    # One path of 10,000 keys along a wave.
    { echo "path long 100"
      awk 'BEGIN { for (k = 0; k < 10000; ++k) printf "key %g %g %g\n", k * 0.01, k, 100 * sin(k / 50) }'
    } > "$art/long.txt"
    "$build/native/bin/zqanim" spl --words 7 2 -o "$art/long.spl" "$art/long.txt"
fi
models=$build/bench-models
if [ ! -f "$models/skin.x" ]; then
    rm -rf "$models" && mkdir -p "$models"
    "$build/native/bin/make_test_models" "$models" >/dev/null
fi
# Three minutes of 22,050 Hz stereo (a sweep on the left, pink noise on the right) as a 128 kbit/s MP3.
piece=$build/bench-sound/piece.mp3
if [ ! -f "$piece" ]; then
    mkdir -p "$(dirname "$piece")"
    sox -n -r 22050 -c 2 -b 16 "${piece%.mp3}.wav" synth 180 sine 200-2000 pinknoise vol 0.4
    lame --quiet -b 128 "${piece%.mp3}.wav" "$piece"
fi

"$root/cmake/wine-session.sh" start "$build/wine" >/dev/null
trap '"$root/cmake/serial-line.sh" stop "$build/wine" >/dev/null; "$root/cmake/wine-session.sh" stop "$build/wine" >/dev/null' EXIT
"$root/cmake/serial-line.sh" start "$build/wine" >/dev/null
logs=$build/bench-logs
mkdir -p "$logs"
load_before=$(cut -d' ' -f1-3 /proc/loadavg)

# Runs one benchmark program under Wine, showing its output and keeping it in $logs/NAME.txt.
bench() {
    local name=$1
    shift
    echo
    (cd "$build/bin" && ZQ_WINE_STATE=$build/wine "$root/cmake/wine-run.sh" "$name.exe" "$@" 2>/dev/null) |
        tee "$logs/$name.txt"
}

atlas="Z:${art//\//\\}\\atlas.te"
bench texture_load_bench "$atlas" "$rounds"
bench sprite_render_bench "$atlas" 20
bench name_map_bench "$atlas" "$rounds"
bench animation_bench "$atlas" "Z:${art//\//\\}\\anim.am" 120
bench spline_load_bench "Z:${art//\//\\}\\long.spl" "$rounds"
bench model_bench "Z:${models//\//\\}" 100
bench mp3_decode_bench "Z:${piece//\//\\}" "$rounds"
# The same piece decoded natively by mpg123, for comparison.
for round in 1 2 3; do
    start=$(date +%s.%N)
    mpg123 -q -s "$piece" >/dev/null
    end=$(date +%s.%N)
    awk -v round="$round" -v wall="$(awk -v a="$start" -v b="$end" 'BEGIN { print b - a }')" \
        'BEGIN { printf "mpg123 (native), round %d: 180 s in %.3f s, %.0f seconds decoded per second\n", round, wall, 180 / wall }'
done | tee "$logs/mpg123.txt"
bench serial_bench COM7 COM8 1
bench operation_loops 1000
bench platform_leaks 400
load_after=$(cut -d' ' -f1-3 /proc/loadavg)

# The summary: one line per figure, taken from the programs' output above.
figure() { # LOG PATTERN FIELD: the FIELD-th number ($: the last) of the first line of LOG matching PATTERN
    grep -m1 -- "$2" "$logs/$1.txt" 2>/dev/null | grep -oE -- '-?[0-9]+(\.[0-9]+)?' | sed -n "$3p"
}
row() { printf '| %-52s | %12s |\n' "$1" "${2:-?}"; }
echo
echo "Summary, $(date +%F), load average before $load_before, after $load_after"
echo
row "figure" "value"
echo "|------------------------------------------------------|--------------|"
row "ZQTexture::Entry, 3,000-chunk 2048 x 2048 atlas" "$(figure texture_load_bench 'ZQTexture::Entry' 1) ms"
row "D3DX decode of its image alone, all mip levels" "$(figure texture_load_bench 'decode of the image' 2) ms"
row "ratio, Entry / decode" "$(figure texture_load_bench 'ratio (Entry / decode)' 1)"
row "D3DX decode of its first level only (as Entry asks)" "$(figure texture_load_bench 'one level  ' 2) ms"
row "ratio, Entry / decode of one level" "$(figure texture_load_bench 'ratio (Entry / one' 1)"
row "ZQSprite::Render, 1,000 sprites a frame" "$(figure sprite_render_bench '^ *1000 ' 2) ms"
row "ID3DXSprite, 1,000 sprites a frame" "$(figure sprite_render_bench '^ *1000 ' 3) ms"
row "ZQSprite::Render, 10,000 sprites a frame" "$(figure sprite_render_bench '^ *10000 ' 2) ms"
row "one Render call" "$(figure sprite_render_bench 'whole Render' 1) us"
row "ZQMapper::insert, 65,535 distinct names" "$(figure name_map_bench 'distinct names' '$') ms"
row "ZQMapper::insert, 65,535 entries of one name" "$(figure name_map_bench 'one name' '$') ms"
row "ZQTexture::Trans of a present name, 3,000 chunks" "$(figure name_map_bench 'Trans' 2) ns"
row "ZQRenderMulti::OnFrameRender, 1,000 players" "$(figure animation_bench 'OnFrameRender  ' 1) ms"
row "overhead of the players over plain sprites" "$(figure animation_bench 'overhead' 1) %"
row "ZQ3DRenderMulti, 1,000 animated models a frame" "$(figure model_bench 'library frame' '$') ms"
row "plain DrawSubset loop, the same meshes" "$(figure model_bench 'plain loop' '$') ms"
row "ratio, library frame / plain loop" "$(figure model_bench 'ratio, library' '$')"
row "3D pose evaluation, per frame of a skeleton" "$(figure model_bench 'per frame of a skeleton' '$') ns"
row "ZQSpline, a path of 10,000 keys loaded" "$(figure spline_load_bench 'keys loaded' 3) ms"
row "ZQSound::Entry of an MP3, seconds decoded a second" "$(figure mp3_decode_bench 'median' '$')"
row "mpg123 (native), seconds decoded a second (median)" \
    "$(grep -oE '[0-9]+ seconds decoded' "$logs/mpg123.txt" | sort -n | sed -n '2p' | cut -d' ' -f1)"
row "ZQRS232 send, 1 MiB" "$(figure serial_bench '^send' 3) B/s"
row "ZQRS232 recv, 1 MiB" "$(figure serial_bench '^recv' 3) B/s"
row "receive latency of one byte, median" "$(figure serial_bench 'receive latency' 2) ms"
row "private bytes kept by the costliest visit operation" \
    "$(awk 'NR > 3 && !/default handling/ { if ($(NF - 4) > max) max = $(NF - 4) } END { print max + 0 }' \
        "$logs/operation_loops.txt") B"
row "kept by Wine's default composition handling" "$(figure platform_leaks 'composition, default' 2) B"
row "kept by Wine's WaitCommEvent, a byte" "$(figure platform_leaks 'awaited with WaitCommEvent' 2) B"
