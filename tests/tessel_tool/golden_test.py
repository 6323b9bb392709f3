#!/usr/bin/env python3
"""Runs the tool on a folder of cases and compares what comes out, byte by byte.

usage: golden_test.py [--update] [--root FOLDER] [--define NAME=VALUE ...] [--mask NAME=PATTERN ...]
                      TOOL CASES

A case is a folder below CASES with
  args     the command line, quoted as in a shell; lines that begin with # say what the case is for
  stdin    what the tool reads; empty if the file is missing
  stdout   what the tool has to write; nothing if the file is missing
  stderr   the same for standard error
  status   the exit status; 0 if the file is missing
or, where the answer is short, a table in CASES/cases.toml with
  says     what the case is for
  run      the command line
  stdin, stdout, stderr, status as above; instead of stdin, depth for so many nested arrays, or
  latin1 for text that is no UTF-8
The tool runs in the --root folder. In command lines, {NAME} stands for VALUE; where VALUE comes out,
{NAME} is expected, and so it is where what a mask's regular expression matches comes out. --update
writes the three last files of each folder as they come out now.
"""

import argparse
import difflib
import pathlib
import re
import shlex
import subprocess
import sys
import tomllib

SECONDS = 120


class BadCase(Exception):
    """A case that cannot be run."""


def read(path):
    return path.read_bytes() if path.exists() else b""


class FolderCase:
    """A case with a file for each part."""

    def __init__(self, folder):
        self.name = str(folder)
        self.folder = folder
        self.stdin = read(folder / "stdin")
        self.expected = {name: read(folder / name) for name in ("stdout", "stderr", "status")}

    def command_line(self):
        lines = (self.folder / "args").read_text(encoding="utf-8").splitlines()
        if not any(line.startswith("#") and line.strip("# ") for line in lines):
            raise BadCase("args does not say what the case is for")
        return "\n".join(line for line in lines if not line.startswith("#"))

    def update(self, actual):
        for name, content in actual.items():
            if content:
                (self.folder / name).write_bytes(content)
            else:
                (self.folder / name).unlink(missing_ok=True)


class TableCase:
    """A case of the table."""

    def __init__(self, file, row):
        self.name = f"{file}: {row.get('says', 'a case that does not say what it is for')}"
        self.row = row
        self.stdin = row.get("stdin", "").encode()
        if "depth" in row:
            self.stdin = b"[" * row["depth"] + b"]" * row["depth"]
        if "latin1" in row:
            self.stdin = row["latin1"].encode("latin-1")
        status = row.get("status", 0)
        self.expected = {"stdout": row.get("stdout", "").encode(),
                         "stderr": row.get("stderr", "").encode(),
                         "status": f"{status}\n".encode() if status else b""}

    def command_line(self):
        unknown = set(self.row) - {"says", "run", "stdin", "depth", "latin1", "stdout", "stderr", "status"}
        if unknown or not self.row.get("says") or "run" not in self.row:
            raise BadCase(f"a row has says and run, and nothing like {sorted(unknown)}")
        return self.row["run"]

    def update(self, actual):
        """Rows are written by hand."""


def cases_in(folder):
    table = folder / "cases.toml"
    if table.exists():
        rows = tomllib.loads(table.read_text(encoding="utf-8")).get("case", [])
        yield from (TableCase(table, row) for row in rows)
    yield from (FolderCase(path.parent) for path in sorted(folder.rglob("args")))


def outcome(tool, case, root, definitions, masks):
    """The three expected parts of the case, as they come out now."""
    words = shlex.split(case.command_line())
    for name, value in definitions.items():
        words = [word.replace("{" + name + "}", value) for word in words]
    done = subprocess.run([tool, *words], input=case.stdin, capture_output=True, cwd=root,
                          timeout=SECONDS, check=False)
    written = {"stdout": done.stdout, "stderr": done.stderr}
    for name, value in definitions.items():
        for stream in written:
            written[stream] = written[stream].replace(value.encode(), b"{" + name.encode() + b"}")
    for name, pattern in masks.items():
        for stream in written:
            written[stream] = re.sub(pattern.encode(), b"{" + name.encode() + b"}", written[stream])
    written["status"] = f"{done.returncode}\n".encode() if done.returncode else b""
    return written


def difference(name, expected, actual):
    lines = difflib.unified_diff(expected.decode(errors="backslashreplace").splitlines(),
                                 actual.decode(errors="backslashreplace").splitlines(),
                                 f"expected {name}", f"actual {name}", lineterm="")
    return "\n".join(lines) or f"{name}: the line ends differ"


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("tool", type=pathlib.Path)
    parser.add_argument("cases", type=pathlib.Path)
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path.cwd())
    parser.add_argument("--define", action="append", default=[], metavar="NAME=VALUE")
    parser.add_argument("--mask", action="append", default=[], metavar="NAME=PATTERN")
    parser.add_argument("--update", action="store_true")
    options = parser.parse_args()
    definitions = dict(definition.split("=", 1) for definition in options.define)
    masks = dict(mask.split("=", 1) for mask in options.mask)

    cases = list(cases_in(options.cases))
    stray = sorted(path for path in options.cases.rglob("*")
                   if path.is_dir() and not any(path.rglob("args")))
    failures = [f"{path}: no args file" for path in stray]
    if not cases:
        failures.append(f"{options.cases}: no cases")
    for case in cases:
        try:
            actual = outcome(options.tool.resolve(), case, options.root, definitions, masks)
        except (BadCase, ValueError, subprocess.TimeoutExpired) as error:
            failures.append(f"{case.name}: {error}")
            continue
        if options.update:
            case.update(actual)
            continue
        for name, content in actual.items():
            if content != case.expected[name]:
                failures.append(f"{case.name}\n{difference(name, case.expected[name], content)}")
    for failure in failures:
        print(f"FAILED {failure}", file=sys.stderr)
    print(f"{len(cases)} cases, {len(failures)} failures")
    if failures and not options.update:
        print("If what comes out now is right: ./dev update writes it into the folders.")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
