#!/usr/bin/env bash
# Starts or stops the serial line the serial tests talk over: a socat pty pair whose one end Wine
# sees as COM7 (the library's side) and the other as COM8 (the test's side of the cable).
# COM9 is left unmapped: a port that does not exist.
#   serial-line.sh start|stop STATE_DIR   (STATE_DIR as for wine-session.sh)
set -u
action=${1:?start or stop}
state=${2:?state directory}
state=$(cd "$state" && pwd)
line="$state/serial"
devices="$state/prefix/dosdevices"

start() {
    stop >/dev/null
    mkdir -p "$line"
    socat pty,raw,echo=0,link="$line/port" pty,raw,echo=0,link="$line/peer" \
        >"$line/socat.log" 2>&1 </dev/null &
    echo $! >"$line/socat.pid"
    for _ in $(seq 50); do [ -e "$line/port" ] && [ -e "$line/peer" ] && break; sleep 0.1; done
    [ -e "$line/port" ] && [ -e "$line/peer" ] || { echo "socat made no pty pair; see $line/socat.log"; exit 1; }
    ln -sfn "$line/port" "$devices/com7"
    ln -sfn "$line/peer" "$devices/com8"
    rm -f "$devices/com9"
    echo "serial line ready: COM7 <-> COM8"
}

stop() {
    if [ -f "$line/socat.pid" ]; then
        pid=$(cat "$line/socat.pid")
        kill -0 "$pid" 2>/dev/null && kill "$pid"
        rm -f "$line/socat.pid"
    fi
    rm -f "$devices/com7" "$devices/com8"
    echo "serial line stopped"
}

case "$action" in
start) start ;;
stop) stop ;;
*) echo "usage: $0 start|stop STATE_DIR" >&2; exit 2 ;;
esac
