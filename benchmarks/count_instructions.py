"""Counts the instructions of recognitions and builds under callgrind, against a file of counts.

usage: count_instructions.py [--update] [--silent PROGRAM] PROGRAM COUNTS COMPILER

PROGRAM is tessel_instructions, built with COMPILER. COUNTS is a JSON file with a table for each
compiler: the instructions of one build, of one question whether a builder can build an object, and of a
whole import and what other libraries (peers) take for the same text.
--update writes what was counted into the file. --silent names the program without log calls; all
builds together may take no more than 4 % above its.

Exit status: 0 when nothing of ours, and no ratio of the import to a peer, grew by more than 5 %; 1 when
something did, when log calls take more than that, or when the file has no counts for the compiler; 2
for a failure.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys
import tempfile

ALLOWED_GROWTH = 1.05
ALLOWED_FOR_LOGGING = 1.04
PEER = "peer: "

TRIGGER = re.compile(r"^desc: Trigger: Client Request: (.+)$", re.MULTILINE)
TOTAL = re.compile(r"^(?:summary|totals): (\d+)", re.MULTILINE)


def key_of(compiler):
    """The compiler's name and major version: what counts are kept under."""
    def ask(option):
        return subprocess.run([compiler, option], capture_output=True, text=True,
                              check=True).stdout
    name = "clang" if "clang" in ask("--version") else "g++"
    return f"{name} {ask('-dumpversion').strip().split('.')[0]}"


def count(program):
    """The instructions of one unit of each action, by the action's name."""
    totals = {}
    with tempfile.TemporaryDirectory() as folder:
        command = ["valgrind", "--tool=callgrind", "--instr-atstart=no",
                   f"--callgrind-out-file={folder}/out", str(program)]
        run = subprocess.run(command, capture_output=True, text=True, check=False)
        if run.returncode != 0:
            raise RuntimeError(f"{program} failed under callgrind:\n{run.stderr}")
        for part in pathlib.Path(folder).iterdir():
            text = part.read_text(encoding="utf-8", errors="replace")
            name, total = TRIGGER.search(text), TOTAL.search(text)
            if name and total:
                totals[name[1]] = int(total[1])
    units = {}
    for line in run.stdout.splitlines():
        number, name = line.split(" ", 1)
        units[name] = int(number)
    require_same_actions(totals, f"callgrind's files of {program}", units, "its output")
    return {name: round(totals[name] / units[name]) for name in sorted(units)}


def require_same_actions(some, whose, others, of_others):
    if not some or some.keys() != others.keys():
        differing = ", ".join(sorted(some.keys() ^ others.keys())) or "none"
        raise RuntimeError(f"{whose} and {of_others} should have the same actions, and some; "
                           f"only in one of the two: {differing}")


def compare(counts, allowed):
    """Prints a table; true when nothing grew too much and both have the same actions."""
    good = True
    news = False
    print(f"{'instructions of one':<52}{'now':>9}{'recorded':>10}{'ratio':>8}")
    for name in sorted(counts.keys() | allowed.keys()):
        now, before = counts.get(name), allowed.get(name)
        if now is None or before is None:
            print(f"{name:<52}{now or '-':>9}{before or '-':>10}  only in one of the two")
            good = False
            news = news or before is None
            continue
        # A peer's count is not ours to hold; what holds us to it is the ratio below.
        grew = now > before * ALLOWED_GROWTH and not name.startswith(PEER)
        good = good and not grew
        print(f"{name:<52}{now:>9}{before:>10}{now / before:>8.3f}{'  GREW' if grew else ''}")
    if news:
        print("a new kind: record it with ./dev counts --update")
    return good


def compare_with_peers(counts, allowed):
    """The import beside each peer; true when no ratio grew too much."""
    good = True
    print(f"\n{'instructions of an import / those of':<52}{'now':>9}{'recorded':>10}")
    for name in sorted(counts.keys() & allowed.keys()):
        if not name.startswith(PEER):
            continue
        now, before = (table["import"] / table[name] for table in (counts, allowed))
        grew = now > before * ALLOWED_GROWTH
        good = good and not grew
        print(f"{name.removeprefix(PEER):<52}{now:>9.3f}{before:>10.3f}{'  GREW' if grew else ''}")
    return good


def compare_with_silent(counts, silent):
    """What the log calls cost while diagnostics are off: of each kind, and judged over all."""
    require_same_actions(counts, "the program", silent, "the one without log calls")
    builds = [name for name in counts if name.startswith("build: ")]
    print(f"{'instructions of one, diagnostics off':<52}{'now':>9}{'no logs':>10}{'ratio':>8}")
    for name in builds:
        ratio = counts[name] / silent[name]
        print(f"{name:<52}{counts[name]:>9}{silent[name]:>10}{ratio:>8.3f}")
    now, without = (sum(table[name] for name in builds) for table in (counts, silent))
    ratio = now / without
    print(f"{'build: one of each kind':<52}{now:>9}{without:>10}{ratio:>8.4f}"
          f"  <= {ALLOWED_FOR_LOGGING} {'met' if ratio <= ALLOWED_FOR_LOGGING else 'MISSED'}\n")
    return ratio <= ALLOWED_FOR_LOGGING


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--update", action="store_true")
    parser.add_argument("--silent", type=pathlib.Path)
    parser.add_argument("program", type=pathlib.Path)
    parser.add_argument("counts", type=pathlib.Path)
    parser.add_argument("compiler")
    options = parser.parse_args()

    counts = count(options.program)
    compiler = key_of(options.compiler)
    good = True
    if options.silent:
        good = compare_with_silent(counts, count(options.silent))
    known = json.loads(options.counts.read_text()) if options.counts.exists() else {}
    if options.update:
        known[compiler] = counts
        options.counts.write_text(json.dumps(known, indent=2, sort_keys=True) + "\n")
    if compiler not in known:
        print(f"{options.counts} has no counts for {compiler}; to record them, run this again "
              "with --update")
        return 1
    good = compare(counts, known[compiler]) and good
    good = compare_with_peers(counts, known[compiler]) and good
    return 0 if good else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, RuntimeError, ValueError, subprocess.CalledProcessError) as error:
        print(f"count_instructions.py: {error}", file=sys.stderr)
        sys.exit(2)
