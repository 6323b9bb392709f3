#!/usr/bin/env python3
"""Holds docs/troubleshooting.md to what `tessel check` says.

usage: troubleshooting_test.py [--update] TOOL PAGE

Each section of the page has a document with a mistake, what is said of it, and the document without
it: three blocks of code. The first is checked as report.json and has to give the second, the third
has to give nothing. --update writes what is said now into the page.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

SECTIONS = 14
SECTION = re.compile(r"^## (?P<title>.+?)\n.*?^```json\n(?P<wrong>.*?)^```\n.*?"
                     r"^```text\n(?P<said>.*?)^```\n.*?^```json\n(?P<right>.*?)^```\n",
                     re.MULTILINE | re.DOTALL)


def check(tool, text):
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "report.json").write_text(text, encoding="utf-8")
        done = subprocess.run([tool, "check", "report.json"], capture_output=True, cwd=folder,
                              encoding="utf-8", timeout=60, check=False)
    return done.stdout + done.stderr


def main():
    update = sys.argv[1] == "--update"
    tool, name = sys.argv[-2:]
    tool = pathlib.Path(tool).resolve()
    page = pathlib.Path(name)
    text = page.read_text(encoding="utf-8")
    failures = []
    sections = list(SECTION.finditer(text))
    if len(sections) != SECTIONS:
        failures.append(f"{len(sections)} sections with three blocks, not {SECTIONS}")
    for section in reversed(sections):
        said = check(tool, section["wrong"])
        if update:
            text = text[:section.start("said")] + said + text[section.end("said"):]
        elif said != section["said"]:
            failures.append(f"{section['title']}\n{said}")
        if not said:
            failures.append(f"{section['title']}: nothing is said")
        rest = check(tool, section["right"])
        if rest:
            failures.append(f"{section['title']}, corrected\n{rest}")
    if update:
        page.write_text(text, encoding="utf-8")
    for failure in failures:
        print(f"FAILED {failure}", file=sys.stderr)
    print(f"{len(sections)} sections, {len(failures)} failures")
    if failures and not update:
        print("If what is said now is right: ./dev update writes it into the page.")
    sys.exit(1 if failures else 0)


if __name__ == "__main__":
    main()
