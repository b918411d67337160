#!/usr/bin/env bash
# Plays the sample kiosk's demo visit after visit inside a running Wine session and reports how the
# process grew. Used by scripts/soak.sh and by the suite's short soak (kiosk_soak).
#   kiosk-soak.sh --state DIR --bin DIR --out DIR --visits N --every N --warmup N
#                 [--coins] [--max-private-kb KB] [--max-resident-kb KB] [--max-objects N]
# Every --every visits the kiosk prints its working set, private bytes, handles, GDI/USER objects
# and coins counted; this script adds the resident size Linux counts for the process (Wine's own
# Unix-side memory included). With --coins, the kiosk opens COM7 and a coin drops every half second on
# the line's other end; without, it opens no port. The out directory gets soak.tsv, soak.png (when
# gnuplot is there) and summary.txt.
# After the warm-up, memory growth is the least-squares slope per 1,000 visits, and again by the
# thirds: the median of the last third of the samples less that of the first third, per 1,000 visits
# between them (a sample taken while a thread's stack or a cache comes and goes moves neither). A
# count's rise is the lowest value of the last third less the lowest of the first. The bounds apply to
# those: private bytes and the resident sizes (working set and Linux's) in KB per 1,000 visits by the
# thirds, and the counts' rise; exits 1 when one is exceeded.
set -u
coins=false
max_private=""
max_resident=""
max_objects=""
while [ $# -gt 0 ]; do
    case $1 in
    --state) state=$2; shift ;;
    --bin) bin=$2; shift ;;
    --out) out=$2; shift ;;
    --visits) visits=$2; shift ;;
    --every) every=$2; shift ;;
    --warmup) warmup=$2; shift ;;
    --coins) coins=true ;;
    --max-private-kb) max_private=$2; shift ;;
    --max-resident-kb) max_resident=$2; shift ;;
    --max-objects) max_objects=$2; shift ;;
    *) echo "kiosk-soak.sh: unknown argument $1" >&2; exit 2 ;;
    esac
    shift
done
: "${state:?--state}" "${bin:?--bin}" "${out:?--out}" "${visits:?--visits}" "${every:?--every}" "${warmup:?--warmup}"
state=$(cd "$state" && pwd)
root=$(cd "$(dirname "$0")/.." && pwd)

mkdir -p "$out"
table=$out/soak.tsv
peer=""
trap '[ -n "$peer" ] && kill "$peer" 2>/dev/null' EXIT
# Under Wine an open serial port keeps memory by the clock, coins or not: without coins, no port.
port=none
if $coins; then
    port=COM7
    (exec 3>"$state/serial/peer"; while sleep 0.5; do printf C >&3; done) &
    peer=$!
fi

# The Linux process of this session's kiosk (another session's may run beside it).
kiosk_pid() {
    local pid
    for pid in $(pgrep -x kiosk.exe); do
        tr '\0' '\n' <"/proc/$pid/environ" 2>/dev/null | grep -qx "WINEPREFIX=$state/prefix" && echo "$pid" && return
    done
}

printf 'visits\tframes\tseconds\tworking_set_kb\tprivate_kb\trss_kb\thandles\tgdi\tuser\tcoins\n' >"$table"
start=$(date +%s)
# Each report line, with the resident size of the kiosk's process read at once (the kiosk plays one
# visit more, so that the last is not read while it ends).
(cd "$bin" && ZQ_WINE_STATE=$state "$root/cmake/wine-run.sh" kiosk.exe -windowed -noerrormsgboxes \
    -constantframetime:0.1 "-soak:$every" "-visits:$((visits + 1))" "-coinport:$port" 2>/dev/null) |
    while read -r line; do
        case $line in
        soak:*) ;;
        *) continue ;;
        esac
        pid=$(kiosk_pid)
        rss=$(awk '/^VmRSS/ { print $2 }' "/proc/$pid/status" 2>/dev/null)
        echo "$line" | awk -v rss="${rss:-0}" -v seconds=$(($(date +%s) - start)) \
            '{ printf "%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\n", $3, $5, seconds, $7, $9, rss, $11, $13, $15, $17 }'
    done >>"$table"

column -t "$table"
samples=$(($(wc -l <"$table") - 1))
if [ "$samples" -lt 3 ]; then
    echo "the kiosk reported $samples samples: it did not run its visits"
    exit 1
fi

# Slopes per 1,000 visits and rises after the warm-up, one line per column.
awk -F'\t' -v warmup="$warmup" -v max_private="$max_private" -v max_resident="$max_resident" \
    -v max_objects="$max_objects" '
NR == 1 { for (i = 1; i <= NF; ++i) name[i] = $i; next }
$1 >= warmup { ++n; for (i = 1; i <= 10; ++i) v[n, i] = $i }
function lowest(from, to, column,   k, low) {
    low = v[from, column]
    for (k = from + 1; k <= to; ++k) if (v[k, column] < low) low = v[k, column]
    return low
}
function median(from, to, column,   k, m, sorted, i, j, t) {
    m = 0
    for (k = from; k <= to; ++k) sorted[++m] = v[k, column]
    for (i = 2; i <= m; ++i)
        for (j = i; j > 1 && sorted[j - 1] > sorted[j]; --j) { t = sorted[j]; sorted[j] = sorted[j - 1]; sorted[j - 1] = t }
    return m % 2 ? sorted[(m + 1) / 2] : (sorted[m / 2] + sorted[m / 2 + 1]) / 2
}
END {
    if (n < 3) { print "fewer than three samples after the warm-up"; exit 1 }
    third = int(n / 3)
    # The visits between the middles of the first and the last third.
    span = (v[n, 1] + v[n - third + 1, 1] - v[third, 1] - v[1, 1]) / 2
    printf "growth after the first %d visits (visits %d to %d, %d samples):\n", warmup, v[1, 1], v[n, 1], n
    failed = 0
    for (i = 4; i <= 9; ++i) {
        sx = sxx = sy = sxy = 0
        for (k = 1; k <= n; ++k) { sx += v[k, 1]; sxx += v[k, 1] ^ 2; sy += v[k, i]; sxy += v[k, 1] * v[k, i] }
        slope = (n * sxy - sx * sy) / (n * sxx - sx * sx) * 1000
        rise = lowest(n - third + 1, n, i) - lowest(1, third, i)
        if (i <= 6) {
            thirds = (median(n - third + 1, n, i) - median(1, third, i)) / span * 1000
            printf "  %-15s %+9.1f KB per 1,000 visits (%+.1f by the thirds), last minus first %+d KB\n", name[i],
                   slope, thirds, v[n, i] - v[1, i]
            bound = i == 5 ? max_private : max_resident
            if (bound != "" && thirds > bound) { printf "    over the bound of %s KB per 1,000 visits\n", bound; failed = 1 }
        } else {
            printf "  %-15s %+9.1f per 1,000 visits, rise %+d\n", name[i], slope, rise
            if (max_objects != "" && rise > max_objects) { printf "    rose by more than %s\n", max_objects; failed = 1 }
        }
    }
    coins = v[n, 10] - v[1, 10]
    if (coins > 0)
        printf "  %d coins in that time: %.1f KB of private bytes per coin\n", coins, (v[n, 5] - v[1, 5]) / coins
    exit failed
}' "$table" | tee "$out/summary.txt"
status=${PIPESTATUS[0]}

# The plot: memory gained since the first sample after the warm-up (top), and the counts (bottom).
if command -v gnuplot >/dev/null; then
    read -r ws0 private0 rss0 < <(awk -F'\t' -v warmup="$warmup" 'NR > 1 && $1 >= warmup { print $4, $5, $6; exit }' "$table")
    gnuplot <<EOF
set terminal pngcairo size 900,640 font ",10"
set output "$out/soak.png"
set datafile separator "\t"
set multiplot layout 2,1 title "Sample kiosk, $visits visits of its demo, after the first $warmup"
set xrange [$warmup:*]
set key outside right top vertical
set rmargin at screen 0.8
set ylabel "MB gained"
plot "$table" skip 1 using 1:((\$4 - $ws0) / 1024) with lines lw 2 title "working set", \
     "" skip 1 using 1:((\$5 - $private0) / 1024) with lines lw 2 title "private bytes", \
     "" skip 1 using 1:((\$6 - $rss0) / 1024) with lines lw 2 title "resident (Linux)"
set xlabel "visits"
set ylabel "count"
set yrange [0:*]
plot "$table" skip 1 using 1:7 with lines lw 2 title "handles", \
     "" skip 1 using 1:8 with lines lw 2 title "GDI objects", \
     "" skip 1 using 1:9 with lines lw 2 title "USER objects"
unset multiplot
EOF
    echo "plot: $out/soak.png"
fi
echo "table: $table"
exit "$status"
