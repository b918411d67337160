#!/usr/bin/env bash
# Installs what is missing and builds both presets: the MinGW DLL and the MSVC-ABI one, each with its
# samples, tools and tests.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
for preset in mingw msvc; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset"
done
