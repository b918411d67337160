#!/usr/bin/env bash
# Builds both DLLs and writes the two release packages:
#   build/mingw/package/ZQVelisto-<version>-win64-mingw.zip
#   build/msvc/package/ZQVelisto-<version>-win64-msvc.zip
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh
for preset in mingw msvc; do
    (cd "build/$preset" && cpack >/dev/null)
    ls "$PWD/build/$preset/package/"ZQVelisto-*.zip
done
