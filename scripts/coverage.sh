#!/usr/bin/env bash
# Line and branch coverage of the DLL's sources (src/) by the MinGW test suite. Builds the coverage
# preset (build/coverage), runs the suite under Wine, prints the figures per subsystem and writes
# build/coverage/covered-lines.txt, one "file:line" a covered line, sorted: diff two runs' lists to see
# what a change of the tests stopped reaching. Arguments go to ctest; without any the two soaks are
# left out (-LE soak), since they reach nothing the rest does not.
#   scripts/coverage.sh                 # the suite without the soaks
#   scripts/coverage.sh -R dialog       # one executable's share
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
# gcovr gathers the counters through the cross gcov and brings the Python the summary below runs on.
if ! dpkg-query -W -f='${Status}' gcovr 2>/dev/null | grep -q 'install ok installed'; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    echo "installing: gcovr"
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=900 install -y -qq \
        --no-install-recommends gcovr >/dev/null
fi

build=build/coverage
cmake --preset coverage >/dev/null
cmake --build --preset coverage
# The DLL adds to the counters it finds: start from none.
find "$build" -name '*.gcda' -delete

status=0
if [ $# -eq 0 ]; then
    set -- -LE soak
fi
ctest --preset coverage "$@" || status=$?

gcovr --root . --object-directory "$build" --gcov-executable x86_64-w64-mingw32-gcov --filter 'src/' \
    --exclude-throw-branches -j 2 --json "$build/coverage.json" >/dev/null
/usr/bin/python3 - "$build/coverage.json" "$build/covered-lines.txt" <<'EOF'
import json, sys
files = json.load(open(sys.argv[1]))["files"]
totals, covered = {}, []
for f in files:
    name = f["file"]
    subsystem = "/".join(name.split("/")[:2])
    t = totals.setdefault(subsystem, [0, 0, 0, 0])
    for line in f["lines"]:
        if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
            continue
        t[0] += 1
        if line["count"] > 0:
            t[1] += 1
            covered.append((name, line["line_number"]))
        for branch in line["branches"]:
            t[2] += 1
            t[3] += branch["count"] > 0
def percent(part, whole):
    return "%6.1f %%" % (100.0 * part / whole) if whole else "     - "
print("%-14s %17s %8s   %17s %8s" % ("subsystem", "lines", "", "branches", ""))
for subsystem in sorted(totals) + ["total"]:
    t = totals[subsystem] if subsystem != "total" else [sum(v[i] for v in totals.values()) for i in range(4)]
    print("%-14s %8d / %6d %s   %8d / %6d %s" % (subsystem, t[1], t[0], percent(t[1], t[0]), t[3], t[2],
                                                 percent(t[3], t[2])))
with open(sys.argv[2], "w") as out:
    for name, line in sorted(set(covered)):
        out.write("%s:%d\n" % (name, line))
EOF
echo "covered lines: $build/covered-lines.txt"
exit $status
