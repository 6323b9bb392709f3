#!/usr/bin/env python3
"""Runs the tool on a folder of cases and compares what comes out, byte by byte.

usage: golden_test.py [--update] [--root FOLDER] [--define NAME=VALUE ...] TOOL CASES

A case is a folder below CASES with
  args     the command line, quoted as in a shell; lines that begin with # say what the case is for
  stdin    what the tool reads; empty if the file is missing
  stdout   what the tool has to write; nothing if the file is missing
  stderr   the same for standard error
  status   the exit status; 0 if the file is missing
The tool runs in the --root folder. In args, {NAME} stands for VALUE; where VALUE comes out, the
files have {NAME}. --update writes the three last files as they come out now.
"""

import argparse
import difflib
import pathlib
import shlex
import subprocess
import sys

SECONDS = 120


class BadCase(Exception):
    """A case that cannot be run."""


def read(path):
    return path.read_bytes() if path.exists() else b""


def arguments(case, definitions):
    lines = (case / "args").read_text(encoding="utf-8").splitlines()
    if not any(line.startswith("#") and line.strip("# ") for line in lines):
        raise BadCase("args does not say what the case is for")
    words = shlex.split("\n".join(line for line in lines if not line.startswith("#")))
    for name, value in definitions.items():
        words = [word.replace("{" + name + "}", value) for word in words]
    return words


def outcome(tool, case, root, definitions):
    """The three files of the case, as they come out now."""
    done = subprocess.run([tool, *arguments(case, definitions)], input=read(case / "stdin"),
                          capture_output=True, cwd=root, timeout=SECONDS, check=False)
    written = {"stdout": done.stdout, "stderr": done.stderr}
    for name, value in definitions.items():
        for stream in written:
            written[stream] = written[stream].replace(value.encode(), b"{" + name.encode() + b"}")
    written["status"] = f"{done.returncode}\n".encode() if done.returncode else b""
    return written


def difference(name, expected, actual):
    lines = difflib.unified_diff(expected.decode(errors="backslashreplace").splitlines(),
                                 actual.decode(errors="backslashreplace").splitlines(),
                                 f"expected {name}", f"actual {name}", lineterm="")
    return "\n".join(lines) or f"{name}: the line ends differ"


def update(case, actual):
    for name, content in actual.items():
        if content:
            (case / name).write_bytes(content)
        else:
            (case / name).unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("tool", type=pathlib.Path)
    parser.add_argument("cases", type=pathlib.Path)
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path.cwd())
    parser.add_argument("--define", action="append", default=[], metavar="NAME=VALUE")
    parser.add_argument("--update", action="store_true")
    options = parser.parse_args()
    definitions = dict(definition.split("=", 1) for definition in options.define)

    cases = sorted(path.parent for path in options.cases.rglob("args"))
    stray = sorted(path for path in options.cases.rglob("*")
                   if path.is_dir() and not any(path.rglob("args")))
    failures = [f"{path}: no args file" for path in stray]
    if not cases:
        failures.append(f"{options.cases}: no cases")
    for case in cases:
        try:
            actual = outcome(options.tool.resolve(), case, options.root, definitions)
        except (BadCase, ValueError, subprocess.TimeoutExpired) as error:
            failures.append(f"{case}: {error}")
            continue
        if options.update:
            update(case, actual)
            continue
        for name, content in actual.items():
            expected = read(case / name)
            if content != expected:
                failures.append(f"{case}\n{difference(name, expected, content)}")
    for failure in failures:
        print(f"FAILED {failure}", file=sys.stderr)
    print(f"{len(cases)} cases, {len(failures)} failures")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
