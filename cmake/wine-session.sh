#!/usr/bin/env bash
# Starts or stops what a test run shares: the Wine prefix of this build tree,
# a private HOME, an X server when there is no display, and a persistent wineserver.
#   wine-session.sh start STATE_DIR
#   wine-session.sh stop  STATE_DIR
set -u
action=${1:?start or stop}
state=${2:?state directory}
mkdir -p "$state"
state=$(cd "$state" && pwd)

export WINEPREFIX="$state/prefix"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
export HOME="$state/home"
export LC_ALL=C.UTF-8

alive() { [ -n "${1:-}" ] && kill -0 "$1" 2>/dev/null; }

start() {
    mkdir -p "$HOME"
    # Sound goes nowhere unless a test names a file in ZQ_SOUND_CAPTURE: then ALSA's file plugin writes
    # what was played there, as 16-bit stereo at 44,100 Hz.
    cat >"$HOME/.asoundrc" <<'EOF'
pcm.!default {
    type plug
    slave { pcm "zqcapture" format S16_LE rate 44100 channels 2 }
}
pcm.zqcapture {
    type file
    slave.pcm "null"
    file { @func getenv vars [ ZQ_SOUND_CAPTURE ] default "/dev/null" }
    format "raw"
}
ctl.!default { type hw card 0 }
EOF

    if [ ! -f "$WINEPREFIX/system.reg" ]; then
        echo "creating Wine prefix $WINEPREFIX"
        wineboot --init >"$state/wineboot.log" 2>&1 </dev/null
        wineserver -w
    fi

    local display="${DISPLAY:-}" xvfb_pid=""
    if [ -f "$state/session.env" ]; then
        # shellcheck disable=SC1091
        . "$state/session.env"
        alive "${ZQ_XVFB_PID:-}" && { display=$ZQ_DISPLAY; xvfb_pid=$ZQ_XVFB_PID; }
    fi
    if [ -z "$display" ]; then
        local fifo="$state/displayfd"
        rm -f "$fifo"
        Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$fifo" >"$state/xvfb.log" 2>&1 </dev/null &
        xvfb_pid=$!
        for _ in $(seq 100); do [ -s "$fifo" ] && break; sleep 0.1; done
        [ -s "$fifo" ] || { echo "Xvfb did not start; see $state/xvfb.log"; exit 1; }
        display=":$(tr -dc 0-9 <"$fifo")"
    fi
    printf 'ZQ_DISPLAY=%s\nZQ_XVFB_PID=%s\n' "$display" "$xvfb_pid" >"$state/session.env"

    # One wineserver for the whole run keeps each test's start short.
    DISPLAY=$display wineserver -p >/dev/null 2>&1 </dev/null
    # Without a window manager on the X server, Wine waits 2 s on every window it destroys
    # unless its windows are unmanaged.
    if [ ! -f "$state/prefix-settings" ]; then
        DISPLAY=$display wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 </dev/null
        touch "$state/prefix-settings"
    fi
    # A program that crashes ends at once instead of waiting in Wine's debugger until CTest's timeout;
    # the tests' own crash handlers say where it happened.
    if ! grep -q no-debugger "$state/prefix-settings"; then
        DISPLAY=$display wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' \
            /v Debugger /d '' /f >/dev/null 2>&1 </dev/null
        echo no-debugger >>"$state/prefix-settings"
    fi
    # Wine's services and desktop process start with the first program and keep its output
    # open; start them here, with ours closed, so that no test's output stays held.
    DISPLAY=$display wine wineboot >/dev/null 2>&1 </dev/null
    DISPLAY=$display wine rundll32.exe user32.dll,GetDesktopWindow >/dev/null 2>&1 </dev/null
    echo "Wine session ready: prefix $WINEPREFIX, display $display"
}

stop() {
    wineserver -k >/dev/null 2>&1
    if [ -f "$state/session.env" ]; then
        # shellcheck disable=SC1091
        . "$state/session.env"
        alive "${ZQ_XVFB_PID:-}" && kill "$ZQ_XVFB_PID"
        rm -f "$state/session.env"
    fi
    echo "Wine session stopped"
}

case "$action" in
start) start ;;
stop) stop ;;
*) echo "usage: $0 start|stop STATE_DIR" >&2; exit 2 ;;
esac
