"""Counts the instructions of recognitions and builds under callgrind, against a file of counts.

usage: count_instructions.py [--update] [--silent PROGRAM] PROGRAM COUNTS COMPILER

PROGRAM is tessel_instructions, built with COMPILER. COUNTS is a JSON file with a table for each
compiler: what one call may take, in instructions. Exit status: 0 when nothing grew by more than 5 %, 1 otherwise, 2 for a
failure. A compiler that the file does not know has nothing to be held against and passes.
--update writes what was counted into the file. --silent names the program without log calls; the
builds may take no more than 2 % above its.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys
import tempfile

ALLOWED_GROWTH = 1.05
ALLOWED_FOR_LOGGING = 1.02
CALLS = 20  # of each action, see instructions_main.cpp

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
    """The instructions of one call, by the action's name."""
    counts = {}
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
                counts[name[1]] = round(int(total[1]) / CALLS)
    if not counts:
        raise RuntimeError(f"callgrind counted nothing in {program}")
    return dict(sorted(counts.items()))


def compare(counts, allowed):
    """Prints a table; true when nothing grew too much and both have the same actions."""
    good = True
    print(f"{'instructions of one call':<52}{'now':>9}{'allowed for':>13}{'ratio':>8}")
    for name in sorted(counts.keys() | allowed.keys()):
        now, before = counts.get(name), allowed.get(name)
        if now is None or before is None:
            print(f"{name:<52}{now or '-':>9}{before or '-':>13}  only in one of the two")
            good = False
            continue
        grew = now > before * ALLOWED_GROWTH
        good = good and not grew
        print(f"{name:<52}{now:>9}{before:>13}{now / before:>8.3f}{'  GREW' if grew else ''}")
    return good


def compare_with_silent(counts, silent):
    """What the log calls cost while diagnostics are off, over all builds."""
    builds = [name for name in counts if name.startswith("build: ")]
    ratio = sum(counts[name] for name in builds) / sum(silent[name] for name in builds)
    good = ratio <= ALLOWED_FOR_LOGGING
    print(f"builds with diagnostics off / with no log call compiled in: {ratio:.4f} "
          f"(<= {ALLOWED_FOR_LOGGING}) {'met' if good else 'MISSED'}")
    return good


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
    if compiler in known:
        good = compare(counts, known[compiler]) and good
    else:
        print(f"{options.counts} has no counts for {compiler}: nothing to compare with")
    return 0 if good else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, RuntimeError, ValueError, subprocess.CalledProcessError) as error:
        print(f"count_instructions.py: {error}", file=sys.stderr)
        sys.exit(2)
