#!/usr/bin/env python3
"""Writes what the golden tests of the tool give it to read, a file each: golden_inputs.py CASES FOLDER"""

import pathlib
import sys

cases, folder = map(pathlib.Path, sys.argv[1:])
sys.path.insert(0, str(cases.parent))
from golden_test import cases_in  # noqa: E402

folder.mkdir(parents=True, exist_ok=True)
for number, case in enumerate(case for case in cases_in(cases) if case.stdin):
    lines = "--ndjson" in case.command_line()
    (folder / f"{number}.{'ndjson' if lines else 'json'}").write_bytes(case.stdin)
