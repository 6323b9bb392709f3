#!/usr/bin/env python3
"""Checks who may include whom.

usage: check_includes.py

Each folder of src/, and contract/, may include its own files and those of the folders listed with it;
everything else that is ours is refused, with file and line.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCE = ROOT / "src"
CONTRACT = ROOT / "contract"
BUNDLE = "tessel/build/json/controls"

# A quoted include belongs to the first of these whose pattern matches.
OWNERS = [
    ("framework", re.compile(r"^framework/")),
    ("controls", re.compile(r"^controls/")),
    ("widgets", re.compile(r"^widgets/")),
    ("runtime", re.compile(r"^cppmicroservices/")),
    ("importer", re.compile(r"^reference_host/importer/")),
    ("reference_host", re.compile(r"^reference_host/")),
    ("tool", re.compile(r"^tessel_tool/")),
    ("contract", re.compile(r"^contract/")),
    ("host", re.compile(r"^(document|fl|foundation|gx|lumocode|tessel)/")),
]

# The files of a folder, and what they may include besides system headers and libraries. The first
# folder that contains a file decides.
RULES = [
    (f"{BUNDLE}/host", {"host"}),
    (f"{BUNDLE}/framework", {"framework", "host"}),
    (f"{BUNDLE}/controls", {"controls", "framework", "host"}),
    (f"{BUNDLE}/widgets", {"widgets", "framework", "host"}),
    (BUNDLE, {"controls", "widgets", "runtime", "host", "own"}),  # the registration
    ("reference_host/importer", {"importer", "reference_host", "host"}),
    ("reference_host", {"reference_host", "host"}),
    ("service_runtime", {"runtime", "own"}),
    ("tessel_tool", {"tool", "importer", "reference_host", "runtime", "host", "own"}),
]

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def owner_of(included):
    for owner, pattern in OWNERS:
        if pattern.match(included):
            return owner
    return "own"


def rule_for(path):
    if path.parent == CONTRACT:  # never the bundle, which is held to it
        return "contract", {"contract", "reference_host", "host"}
    relative = path.relative_to(SOURCE).as_posix()
    for folder, allowed in RULES:
        if relative.startswith(folder + "/"):
            return folder, allowed
    return None, set()


def offences():
    files = sorted(p for folder in (SOURCE, CONTRACT) for p in folder.rglob("*")
                   if p.suffix in (".cpp", ".hpp", ".h"))
    if not files:
        yield f"{SOURCE}: no C++ files"
    for path in files:
        folder, allowed = rule_for(path)
        name = path.relative_to(ROOT)
        if folder is None:
            yield f"{name}: no include rule for this folder"
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            included = match.group(1)
            if ".." in included.split("/"):
                yield f'{name}:{number}: "{included}": includes go down from an include root'
            owner = owner_of(included)
            if owner not in allowed:
                yield f'{name}:{number}: "{included}": {folder} may not include {owner}'


def main():
    found = list(offences())
    for offence in found:
        print(offence, file=sys.stderr)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
