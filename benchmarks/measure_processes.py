"""Measures what needs processes of its own, in turns: the tool's allocator, and memory.

usage: measure_processes.py [--json FILE] BIN SCRATCH

BIN holds tessel, tessel_generate, tessel_process and tessel_process_tool. Inputs, more than a
gigabyte, are made in the folder SCRATCH and removed in the end. --json names a file for everything
that was measured. Exit status: 0 when every goal is met, 1 otherwise, 2 for a failure.
"""

import argparse
import json
import pathlib
import statistics
import subprocess
import sys
import tempfile

ROUNDS = 11
MEBIBYTE = 1 << 20
# The lines that a filter reads, in bytes: its memory must not grow with them.
LINES = (10_000_000, 100_000_000, 1_000_000_000)


def numbers(*command):
    run = subprocess.run(command, capture_output=True, text=True, check=True)
    return [float(number) for number in run.stdout.split()]


def generate(binaries, folder, form, size):
    path = folder / f"{form}_{size}"
    if not path.exists():
        with path.open("wb") as out:
            subprocess.run([binaries / "tessel_generate", form, str(size)], stdout=out, check=True)
    return path


class Report:
    """Prints a line for each ratio, and keeps it with what it was taken from."""

    def __init__(self):
        self.rows = []

    def add(self, name, ratio, goal, **measured):
        row = {"name": name, "ratio": ratio, **measured}
        verdict = ""
        if goal is not None:
            row.update(goal={"bound": "<=", "ratio": goal}, met=ratio <= goal)
            verdict = f"<= {goal:.2f} {'met' if row['met'] else 'MISSED'}"
        self.rows.append(row)
        print(f"{name:<76}{ratio:>8.3f}   {verdict}", flush=True)

    def add_unmeasured(self, name):
        self.rows.append({"name": name, "met": False})
        print(f"{name:<76}not measured", flush=True)

    def all_met(self):
        return all(row.get("met", True) for row in self.rows)


def measure_allocators(binaries, document, report):
    """The tool's allocator beside the system's; which of the two comes first changes each round."""
    ours, theirs = [], []
    for turn in range(ROUNDS):
        order = [("tessel_process_tool", ours), ("tessel_process", theirs)]
        for program, times in order if turn % 2 == 0 else reversed(order):
            times.append(numbers(binaries / program, "import", document))
    names = ("first whole import of 1 MB, the tool's allocator / the system's",
             "each further import in the same process")
    for which, name in enumerate(names):
        rounds = [[mine[which], other[which]] for mine, other in zip(ours, theirs)]
        ratios = [mine / other for mine, other in rounds]
        report.add(name, statistics.median(ratios), 0.75, lowest=min(ratios), highest=max(ratios),
                   nanoseconds=rounds)


def measure_parse(binaries, folder, report):
    for size, goal in ((MEBIBYTE, 7.5), (64 * MEBIBYTE, None)):
        text, peak = numbers(binaries / "tessel_process", "memory",
                             generate(binaries, folder, "document", size))
        report.add(f"peak memory of a parse in place of {size // MEBIBYTE} MB above the text / the text",
                   peak / text, goal, bytes=[peak, text])


def peak_of_filter(binaries, lines, jobs):
    """The most memory that the tool took for the lines, in kB."""
    script = ("import resource, subprocess, sys;"
              "subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=True);"
              "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
    return numbers(sys.executable, "-c", script, binaries / "tessel", "import", "--ndjson",
                   "--format", "json", "--jobs", str(jobs), lines)[0]


def measure_filter(binaries, folder, report):
    for jobs in (1, 2):
        peaks = [peak_of_filter(binaries, generate(binaries, folder, "ndjson", size), jobs)
                 for size in LINES]
        name = (f"memory of --ndjson, --jobs {jobs}: 1 GB / 10 MB of input "
                f"({', '.join(f'{peak:.0f}' for peak in peaks)} kB)")
        report.add(name, peaks[-1] / peaks[0], 1.05, kilobytes=peaks)


def measure(options, folder, report):
    binaries = options.binaries
    print(f"processes of their own ({ROUNDS} rounds in turns)")
    if (binaries / "tessel_process_tool").exists():
        measure_allocators(binaries, generate(binaries, folder, "document", MEBIBYTE), report)
    else:
        report.add_unmeasured("the tool's allocator / the system's: built without the former")
    measure_parse(binaries, folder, report)
    measure_filter(binaries, folder, report)


def main(measure, parser):
    """Measures what a command line asks for, in a folder that is removed afterwards; the exit status."""
    parser.add_argument("--json", type=pathlib.Path)
    parser.add_argument("binaries", metavar="BIN", type=pathlib.Path)
    parser.add_argument("scratch", metavar="SCRATCH", type=pathlib.Path)
    options = parser.parse_args()
    options.binaries = options.binaries.resolve()
    report = Report()
    try:
        options.scratch.mkdir(parents=True, exist_ok=True)
        with tempfile.TemporaryDirectory(dir=options.scratch, prefix="inputs-") as name:
            measure(options, pathlib.Path(name).resolve(), report)
        if options.json:
            options.json.write_text(json.dumps(report.rows, indent=2) + "\n")
    except (OSError, RuntimeError, ValueError, subprocess.CalledProcessError) as error:
        print(f"{parser.prog}: {error}", file=sys.stderr)
        return 2
    return 0 if report.all_met() else 1


if __name__ == "__main__":
    sys.exit(main(measure, argparse.ArgumentParser()))
