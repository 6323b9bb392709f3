"""Measures what needs processes of its own, in turns: the tool's allocator, and memory.

usage: measure_processes.py BIN SCRATCH

BIN holds tessel, tessel_generate, tessel_process and tessel_process_tool. Inputs are made in SCRATCH.
Exit status: 0 when every goal is met, 1 otherwise, 2 for a failure.
"""

import pathlib
import statistics
import subprocess
import sys

ROUNDS = 11
MEBIBYTE = 1 << 20
# The lines that a filter reads, in bytes: its memory must not grow with them.
LINES = (10_000_000, 100_000_000, 1_000_000_000)


def numbers(*command):
    run = subprocess.run(command, capture_output=True, text=True, check=True)
    return [float(number) for number in run.stdout.split()]


def report(name, ratio, goal):
    met = goal is None or ratio <= goal
    verdict = "" if goal is None else f"<= {goal:.2f} {'met' if met else 'MISSED'}"
    print(f"{name:<76}{ratio:>8.3f}   {verdict}", flush=True)
    return met


def generate(binaries, scratch, form, size):
    path = scratch / f"{form}_{size}"
    if not path.exists():
        with path.open("wb") as out:
            subprocess.run([binaries / "tessel_generate", form, str(size)], stdout=out, check=True)
    return path


def measure_allocators(binaries, document):
    """The ratios of the tool's allocator to the system's: first import, and later ones."""
    first, later = [], []
    for _ in range(ROUNDS):
        ours = numbers(binaries / "tessel_process_tool", "import", document)
        theirs = numbers(binaries / "tessel_process", "import", document)
        first.append(ours[0] / theirs[0])
        later.append(ours[1] / theirs[1])
    return statistics.median(first), statistics.median(later)


def peak_of_filter(binaries, lines, jobs):
    """The most memory that the tool took for the lines, in kB."""
    script = ("import resource, subprocess, sys;"
              "subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, check=True);"
              "print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)")
    return numbers(sys.executable, "-c", script, binaries / "tessel", "import", "--ndjson",
                   "--format", "json", "--jobs", str(jobs), lines)[0]


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    binaries, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    scratch.mkdir(parents=True, exist_ok=True)
    document = generate(binaries, scratch, "document", MEBIBYTE)
    good = True

    print(f"processes of their own ({ROUNDS} rounds in turns)")
    if (binaries / "tessel_process_tool").exists():
        first, later = measure_allocators(binaries, document)
        good &= report("first whole import of 1 MB, the tool's allocator / the system's", first, 0.75)
        good &= report("each further import in the same process", later, None)
    for size, goal in ((MEBIBYTE, 7.5), (64 * MEBIBYTE, None)):
        text, peak = numbers(binaries / "tessel_process", "memory",
                             generate(binaries, scratch, "document", size))
        good &= report(f"peak memory of a parse of {size // MEBIBYTE} MB above the text / the text",
                       peak / text, goal)
    for jobs in (1, 2):
        peaks = [peak_of_filter(binaries, generate(binaries, scratch, "ndjson", size), jobs)
                 for size in LINES]
        name = (f"memory of --ndjson, --jobs {jobs}: 1 GB / 10 MB of input "
                f"({', '.join(f'{peak:.0f}' for peak in peaks)} kB)")
        good &= report(name, peaks[-1] / peaks[0], 1.05)
    return 0 if good else 1


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (OSError, ValueError, subprocess.CalledProcessError) as error:
        print(f"measure_processes.py: {error}", file=sys.stderr)
        sys.exit(2)
