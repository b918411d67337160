#!/usr/bin/env python3
"""Which test cases are the only ones to reach a line or branch of src/.

Runs every Google Test case of the coverage build alone (and each test program that is not one, such as
the kiosk's runs), each with its own GCOV_PREFIX so that its counters land apart, and reduces them with
the cross gcov to the lines and branches of src/ it reaches. Then prints one row per case, fewest unique
items first:
    <unique lines+branches> <unique lines> <unique branches> <ctest name>.<Suite>.<Case>
A case at 0 reaches nothing another case does not: a candidate for merging or dropping when its checks
are made elsewhere too.

    scripts/coverage.sh                                   # builds build/coverage once
    scripts/coverage-cases.py                             # the table (a few minutes; kept in build/coverage/cases)
    scripts/coverage-cases.py --lost Suite.Case Other.    # what would go unreached without those cases

Cases already measured are not run again: delete build/coverage/cases after changing tests or sources.
The soaks are left out, as in coverage.sh.
"""
import glob
import json
import os
import shutil
import subprocess
import sys

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), ".."))
BUILD = os.path.join(ROOT, "build", "coverage")
OBJECTS = os.path.join(BUILD, "CMakeFiles", "ZQVelisto.dir")
CASES = os.path.join(BUILD, "cases")
GCOV = "x86_64-w64-mingw32-gcov"


def reached(prefix):
    """The src/ lines and (non-exception) branches counted under one GCOV_PREFIX tree."""
    items = set()
    for gcda in glob.glob(prefix + "/**/*.gcda", recursive=True):
        # gcov wants the notes file beside the counters.
        notes = gcda[:-5] + ".gcno"
        if not os.path.exists(notes):
            os.symlink(os.path.join(OBJECTS, os.path.relpath(notes, prefix + OBJECTS)), notes)
        out = subprocess.run([GCOV, "--json-format", "--stdout", "-b", gcda], capture_output=True, text=True,
                             cwd=ROOT).stdout
        for document in (d for d in out.splitlines() if d.startswith("{")):
            for source in json.loads(document)["files"]:
                name = "/" + source["file"]
                if "/src/" not in name:
                    continue
                name = name[name.index("/src/") + 1:]
                for line in source["lines"]:
                    where = "%s:%d" % (name, line["line_number"])
                    if line["count"] > 0:
                        items.add(where)
                    branches = [b for b in line["branches"] if not b.get("throw")]
                    # Inline code counts once per function it is compiled into: name the function.
                    items.update("%s:%d:%s" % (where, i, line.get("function_name", ""))
                                 for i, b in enumerate(branches) if b["count"] > 0)
    return items


def measure(unit, command, environment):
    path = os.path.join(CASES, unit.replace("/", "_") + ".json")
    if os.path.exists(path):
        return
    prefix = os.path.join(CASES, "counters")
    shutil.rmtree(prefix, ignore_errors=True)
    env = dict(os.environ, **environment, GCOV_PREFIX=prefix)
    status = subprocess.run(command, env=env, capture_output=True, cwd=BUILD, timeout=1200).returncode
    items = sorted(reached(prefix))
    shutil.rmtree(prefix, ignore_errors=True)
    with open(path, "w") as out:
        json.dump({"unit": unit, "status": status, "items": items}, out)
    print("%-100s %s %6d items" % (unit, "ok    " if status == 0 else "FAILED", len(items)), flush=True)


def run_all():
    tests = json.loads(subprocess.run(["ctest", "--show-only=json-v1"], capture_output=True, text=True,
                                      cwd=BUILD, check=True).stdout)["tests"]
    session = os.path.join(BUILD, "wine")
    os.environ["ZQ_WINE_STATE"] = session
    for script in ("wine-session.sh", "serial-line.sh"):
        subprocess.run([os.path.join(ROOT, "cmake", script), "start", session], check=True)
    try:
        for test in tests:
            properties = {p["name"]: p["value"] for p in test.get("properties", [])}
            command = test.get("command")
            if not command or "soak" in (properties.get("LABELS") or []):
                continue
            environment = dict(v.split("=", 1) for v in properties.get("ENVIRONMENT") or [])
            if test["name"] == "host_package" or "wine-run.sh" in command[0] and "--gtest_brief=1" not in command:
                measure(test["name"], command, environment)
            elif "wine-run.sh" in command[0]:
                listing = subprocess.run(command[:2] + ["--gtest_list_tests"] +
                                         [a for a in command if a.startswith("--gtest_filter")],
                                         env=dict(os.environ, **environment), capture_output=True, text=True,
                                         cwd=BUILD).stdout
                suite = None
                for line in listing.splitlines():
                    if not line.strip() or line.startswith("Running main"):
                        continue
                    if not line.startswith(" "):
                        suite = line.split()[0]
                        continue
                    case = suite + line.split()[0]
                    measure(test["name"] + "." + case, command[:2] + ["--gtest_brief=1", "--gtest_filter=" + case],
                            environment)
    finally:
        for script in ("serial-line.sh", "wine-session.sh"):
            subprocess.run([os.path.join(ROOT, "cmake", script), "stop", session])


def load():
    units = {}
    for path in glob.glob(os.path.join(CASES, "*.json")):
        with open(path) as f:
            unit = json.load(f)
        units[unit["unit"]] = set(unit["items"])
    return units


def main():
    if not os.path.isdir(OBJECTS):
        sys.exit("no coverage build: run scripts/coverage.sh first")
    os.makedirs(CASES, exist_ok=True)
    if sys.argv[1:2] == ["--lost"]:
        units = load()
        dropped = [u for u in units if any(p in u for p in sys.argv[2:])]
        rest = set().union(*(items for u, items in units.items() if u not in dropped))
        lost = set().union(*(units[u] for u in dropped)) - rest
        print("without:", *sorted(dropped), sep="\n  ")
        print("unreached (%d):" % len(lost), *sorted(lost), sep="\n  ")
        return
    run_all()
    units = load()
    reach = {}
    for items in units.values():
        for item in items:
            reach[item] = reach.get(item, 0) + 1
    rows = []
    for unit, items in units.items():
        only = [i for i in items if reach[i] == 1]
        branches = sum(i.count(":") == 3 for i in only)
        rows.append((len(only), len(only) - branches, branches, unit))
    for row in sorted(rows):
        print("%5d %5d %5d  %s" % row)


if __name__ == "__main__":
    main()
