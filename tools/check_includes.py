#!/usr/bin/env python3
"""Checks who may include whom.

usage: check_includes.py [--table]

Each folder of ROOMS may include its own files, those of the folders listed with it, system headers and
libraries; everything else is refused, with file and line. --table prints the table as docs/architecture.md
shows it; the check fails when that page shows another.
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs/architecture.md"
BUNDLE = "src/tessel/build/json/controls"
HOST = "src/reference_host"
RUNTIME = "src/service_runtime"

# Name, folder, what it may include. A file belongs to the innermost folder that has it.
ROOMS = [
    ("host", f"{BUNDLE}/host", []),
    ("framework", f"{BUNDLE}/framework", ["host"]),
    ("controls", f"{BUNDLE}/controls", ["framework", "host"]),
    ("widgets", f"{BUNDLE}/widgets", ["framework", "host"]),
    ("registration", BUNDLE, ["controls", "widgets", "runtime API", "host"]),
    ("reference host", HOST, ["host"]),
    ("importer", f"{HOST}/importer", ["reference host", "host"]),
    ("diagnosis", f"{HOST}/diagnosis", ["importer", "reference host", "host"]),
    ("runtime API", f"{RUNTIME}/include", []),
    ("runtime filter", f"{RUNTIME}/filter", ["runtime API"]),
    ("runtime bundle_file", f"{RUNTIME}/bundle_file", ["runtime filter", "runtime API"]),
    ("runtime core", f"{RUNTIME}/core", ["runtime bundle_file", "runtime filter", "runtime API"]),
    ("tool", "src/tessel_tool", ["diagnosis", "importer", "reference host", "runtime API", "host"]),
    ("contract", "contract", ["reference host", "host"]),
    ("generator", "benchmarks/generator", ["contract", "reference host", "host"]),
]
# A header that others include belongs to the room that it is declared for.
HEADERS_OF = {
    f"{HOST}/include/reference_host/importer": "importer",
    f"{HOST}/include/reference_host/diagnosis": "diagnosis",
}
# What the build makes, and the room that it belongs to: the model classes' headers, and the entry
# points that the manifest names.
GENERATED = [
    (re.compile(r"^(document|lumocode/contentmodel)/gxzero\.hpp$"), "host"),
    (re.compile(r"^entry_points\.inc$"), "registration"),
]
# Where a quoted include is looked for: what the libraries expose, and each library's own folder.
EXPOSED = [f"{BUNDLE}/host", f"{HOST}/include", f"{RUNTIME}/include", "contract/include",
           "benchmarks/generator"]
OWN_ROOTS = [BUNDLE, HOST, RUNTIME, "src/tessel_tool", "contract", "benchmarks/generator"]

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')
TABLE_MARK = "<!-- tools/check_includes.py --table -->"


def table():
    width = max(len(folder) for _, folder, _ in ROOMS) + 1
    names = max(len(name) for name, _, _ in ROOMS)
    for name, folder, allowed in ROOMS:
        yield f"    {name:{names}}  {folder + '/':{width}}  ->  {', '.join(allowed) or 'nothing of ours'}"


def room_of(path):
    """The innermost room that a path, relative to ROOT, lies in."""
    folders = [(folder, name) for name, folder, _ in ROOMS] + list(HEADERS_OF.items())
    within = [entry for entry in folders if path.startswith(entry[0] + "/")]
    return max(within, key=lambda entry: len(entry[0]))[1] if within else None


def resolve(path, included):
    """The file that an include means, relative to ROOT; None when there is none in the tree."""
    own = [root for root in OWN_ROOTS if path.startswith(root + "/")]
    for root in own + EXPOSED:
        if (ROOT / root / included).is_file():
            return f"{root}/{included}"
    return None


def offences():
    allowed = {name: {name, *others} for name, _, others in ROOMS}
    folders = [ROOT / "src", ROOT / "contract", ROOT / "benchmarks/generator"]
    files = sorted(path for folder in folders for path in folder.rglob("*")
                   if path.suffix in (".cpp", ".hpp", ".h"))
    if not files:
        yield f"{ROOT}: no C++ files"
    for file in files:
        path = file.relative_to(ROOT).as_posix()
        room = room_of(path)
        if room is None:
            yield f"{path}: no include rule for this folder"
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            included = match.group(1)
            target = resolve(path, included)
            made = [owner for pattern, owner in GENERATED if pattern.match(included)]
            owner = made[0] if made else target and room_of(target)
            where = f'{path}:{number}: "{included}"'
            if owner is None:
                yield f"{where}: no file of that name under the include roots"
            elif owner not in allowed[room]:
                yield f"{where}: {room} may not include {owner}"
    shown = PAGE.read_text(encoding="utf-8")
    if "\n".join([TABLE_MARK, "", *table(), ""]) not in shown:
        yield f"{PAGE.relative_to(ROOT)}: shows another table than --table prints"


def main():
    if sys.argv[1:] == ["--table"]:
        print("\n".join(table()))
        return
    found = list(offences())
    for offence in found:
        print(offence, file=sys.stderr)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
