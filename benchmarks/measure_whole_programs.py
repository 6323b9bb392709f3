"""Measures the tool from its start to its end, in turns with other programs that go over the same text.

usage: measure_whole_programs.py [--json FILE] [--plot FILE] [--rounds N] BIN SCRATCH

BIN holds tessel and tessel_generate. The others are jq, Python and Node, those that are installed: each
reads JSON and writes it compactly, and makes no model. All write to the null device. A ratio is taken
within each round, of processor time unless its name says otherwise, and the median of the rounds
counts. Inputs are made in the folder SCRATCH and removed in the end. --json names a file for everything
that was measured, --plot one for a picture of it (SVG). Exit status: 0 when every goal is met, 1
otherwise, 2 for a failure.
"""

import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time
import typing

from measure_processes import MEBIBYTE, generate, main

PYTHON = "import json, sys; json.dump(json.load(open(sys.argv[1])), sys.stdout)"
PYTHON_LINES = "import json, sys\nfor line in open(sys.argv[1]): print(json.dumps(json.loads(line)))"
NODE = "process.stdout.write(JSON.stringify(JSON.parse(require('fs').readFileSync(process.argv[1]))))"
NODE_LINES = ("process.stdout.write(require('fs').readFileSync(process.argv[1], 'utf8').split('\\n')"
              ".filter(line => line).map(line => JSON.stringify(JSON.parse(line)) + '\\n').join(''))")


class Run(typing.NamedTuple):
    processor: float  # seconds
    wall: float  # seconds
    peak: int  # bytes


def run(command):
    start = time.monotonic()
    # A process takes over the peak of the one that starts it, which here is some 15 MB.
    process = os.posix_spawn(command[0], command, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)])
    _, status, usage = os.wait4(process, 0)
    wall = time.monotonic() - start
    if status != 0:
        raise RuntimeError(f"{' '.join(command)} failed")
    return Run(usage.ru_utime + usage.ru_stime, wall, usage.ru_maxrss * 1024)


class Workload(typing.NamedTuple):
    name: str
    ours: list
    peers: dict  # the command of each program
    goals: dict  # by program, what its ratio may be at most
    most_memory: float = None  # what the tool's peak may be at most, in MB


def command(program, *arguments):
    return [shutil.which(program) or program, *map(str, arguments)]


def take_turns(rounds, commands):
    """The runs of each command, which take turns; who begins changes each round."""
    runs = {name: [] for name in commands}
    names = list(commands)
    for turn in range(rounds):
        for name in names[turn % len(names):] + names[:turn % len(names)]:
            runs[name].append(run(commands[name]))
    return runs


def median_ratio(some, others, measured):
    return statistics.median(measured(mine) / measured(other)
                             for mine, other in zip(some, others, strict=True))


def processor(one):
    return one.processor


def peak(runs):
    return statistics.median(one.peak for one in runs)


def measure_workload(workload, rounds, report):
    peers = {name: peer for name, peer in workload.peers.items() if shutil.which(peer[0])}
    runs = take_turns(rounds, {"tessel": workload.ours, **peers})
    ours = runs["tessel"]
    for peer in workload.peers:
        if peer not in peers:
            print(f"{workload.name} / {peer}: {peer} is not installed", flush=True)
            continue
        theirs = runs[peer]
        report.add(f"{workload.name} / {peer}", median_ratio(ours, theirs, processor),
                   workload.goals.get(peer), workload=workload.name, peer=peer,
                   seconds=[statistics.median(map(processor, each)) for each in (ours, theirs)],
                   bytes=[peak(ours), peak(theirs)])
    report.add(f"{workload.name}, peak memory in MB", peak(ours) / 1e6, workload.most_memory)


def workloads(binaries, folder):
    tool = binaries / "tessel"
    for size, goals, most_memory in ((MEBIBYTE, {"jq": 0.28}, None),
                                     (64 * MEBIBYTE, {"jq": 0.30, "node": 0.60}, 520)):
        document = generate(binaries, folder, "document", size)
        yield Workload(f"import of {size // MEBIBYTE} MB",
                       command(tool, "import", "--format", "json", document),
                       {"jq": command("jq", "-c", ".", document),
                        "python": command(sys.executable, "-c", PYTHON, document),
                        "node": command("node", "-e", NODE, document)}, goals, most_memory)
    lines = generate(binaries, folder, "ndjson", 20 * MEBIBYTE)
    yield Workload("import of 20 MB of lines",
                   command(tool, "import", "--ndjson", "--format", "json", lines),
                   {"jq": command("jq", "-c", ".", lines),
                    "python": command(sys.executable, "-c", PYTHON_LINES, lines),
                    "node": command("node", "-e", NODE_LINES, lines)}, {"jq": 0.36})
    control = folder / "control"
    control.write_bytes(generate(binaries, folder, "ndjson", 1).read_bytes())
    yield Workload("explain of one control", command(tool, "explain", control),
                   {"jq": command("jq", ".", control),
                    "python": command(sys.executable, "-c", PYTHON, control),
                    "node": command("node", "-e", NODE, control)}, {"jq": 0.25})


def measure_jobs(binaries, folder, rounds, report):
    lines = generate(binaries, folder, "ndjson", 20 * MEBIBYTE)
    commands = {jobs: command(binaries / "tessel", "import", "--ndjson", "--format", "json", "--jobs",
                              jobs, lines) for jobs in (1, 2)}
    runs = take_turns(rounds, commands)
    for name, measured, goal in (("wall time", lambda one: one.wall, 0.58),
                                 ("processor time", processor, 1.08)):
        report.add(f"20 MB of lines, {name}: two jobs / one",
                   median_ratio(runs[2], runs[1], measured), goal)


PLOT = """
set terminal svg size 760,{height} dynamic font "sans-serif,13" background "white"
set style fill solid noborder
set xlabel "processor time of tessel / processor time of the other program"
set xrange [0:{end}]
set yrange [-0.6:{rows}-0.4]
set border 3
set tics nomirror out
set arrow from 1,-0.6 to 1,{rows}-0.4 nohead dashtype 2 linecolor "#777777"
$rows << END
{data}
END
plot $rows using (0):0:(0):2:($0-0.35):($0+0.35):yticlabels(1) with boxxyerror linecolor "#4477aa" notitle,\\
     $rows using 2:0:(sprintf("%.2f", $2)) with labels left offset 0.5,0 notitle
"""


def plot(rows, path):
    """A bar for each comparison: what the tool takes of what the other program takes."""
    rows = [row for row in reversed(rows) if "peer" in row]
    script = PLOT.format(height=40 + 34 * len(rows), rows=len(rows),
                         end=max(1.1, 1.15 * max(row["ratio"] for row in rows)),
                         data="\n".join(f'"{row["name"]}" {row["ratio"]}' for row in rows))
    path.write_bytes(subprocess.run(["gnuplot"], input=script.encode(), capture_output=True,
                                    check=True).stdout)


def measure(options, folder, report):
    print(f"whole programs, processor time ({options.rounds} rounds in turns)")
    for workload in workloads(options.binaries, folder):
        measure_workload(workload, options.rounds, report)
    measure_jobs(options.binaries, folder, options.rounds, report)
    if options.plot:
        plot(report.rows, options.plot)


if __name__ == "__main__":
    PARSER = argparse.ArgumentParser()
    PARSER.add_argument("--plot", type=pathlib.Path)
    PARSER.add_argument("--rounds", type=int, default=11)
    sys.exit(main(measure, PARSER))
