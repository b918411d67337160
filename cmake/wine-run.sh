#!/usr/bin/env bash
# CTest's emulator for the cross-built tests: runs a Windows program under Wine
# inside the session that wine-session.sh started.
set -u
state=${ZQ_WINE_STATE:?ZQ_WINE_STATE names the session directory}
[ -f "$state/session.env" ] || { echo "no Wine session in $state (run the tests through ctest)" >&2; exit 1; }
# shellcheck disable=SC1091
. "$state/session.env"
export DISPLAY=$ZQ_DISPLAY
export WINEPREFIX="$state/prefix"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export HOME="$state/home"
# The ANSI code page follows the locale (1252 here); a test may ask for another one.
# Set through env so that this shell never tries to load the locale itself.
exec env LC_ALL="${ZQ_TEST_LOCALE:-en_US.UTF-8}" wine "$@"
