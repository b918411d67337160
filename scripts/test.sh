#!/usr/bin/env bash
# Builds both DLLs (MinGW and MSVC ABI) with everything around them and runs both test suites under
# Wine: the MSVC-ABI one first (its samples, ABI test and package), then the whole MinGW suite, which
# ends with CTest's summary. Arguments go to both ctest runs (for example -LE soak).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh
status=0
ctest --preset msvc --output-on-failure "$@" || status=1
ctest --preset mingw --output-on-failure "$@" || status=1
exit $status
