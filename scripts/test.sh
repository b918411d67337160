#!/usr/bin/env bash
# Builds everything and runs the whole test suite under Wine; ends with CTest's summary.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset mingw >/dev/null
cmake --build --preset mingw
ctest --preset mingw --output-on-failure "$@"
