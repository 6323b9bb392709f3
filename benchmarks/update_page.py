"""Puts the figures of two runs of `./dev bench` into the tables of docs/performance.md.

usage: update_page.py PAGE FIRST SECOND

FIRST and SECOND hold what the runs left in build/bench. Rows are found by their names; the rest of the
page stays as it is. Exit status: 0 when the runs have every row of the page, 1 otherwise.
"""

import json
import pathlib
import sys


def figures_of(run):
    """The rows of a run, by the cells that name them in the page."""
    figures = {}
    for group in json.loads((run / "results.json").read_text())["groups"]:
        for row in group["rows"]:
            figures[group["name"], row["name"], row["heldAgainst"]] = row
    for file in ("whole_programs.json", "processes.json"):
        for row in json.loads((run / file).read_text()):
            # What is in brackets was measured.
            figures[(row["name"].split(" (")[0],)] = row
    return figures


def updated(cells, names, form, first, second):
    """The cells of a row, of which so many name it, with the figures of two runs."""
    cells[names:names + 2] = (format(run["ratio"], form) for run in (first, second))
    if "peer" in first:
        cells[names + 2] = ", ".join(f"{size / 1e6:.0f}" for size in first["bytes"])
    if "met" in first:
        met = first["met"] + second["met"]
        cells[-1] = ("missed", "met in one run", "met")[met]
    return cells


def main(page, first, second):
    runs = figures_of(first), figures_of(second)
    lines = page.read_text().splitlines()
    missing = []
    names = 0  # of the cells in a row of this table, how many name it; 0 outside the tables
    group = ""
    for number, line in enumerate(lines):
        cells = [cell.strip() for cell in line[1:-1].split("|")]
        if not line.startswith("|"):
            names = 0
        elif "first run" in cells:
            names = cells.index("first run")
        elif names != 0 and not line.startswith("|---"):
            group = cells[0] or group
            key = tuple(cell.replace("`", "") for cell in ([group] + cells[1:])[:names])
            if all(key in run for run in runs):
                form = ".3f" if names == 1 else "#.3g"
                cells = updated(cells, names, form, *(run[key] for run in runs))
                lines[number] = f"| {' | '.join(cells)} |"
            else:
                missing.append(" / ".join(key))
    page.write_text("\n".join(lines) + "\n")
    for row in missing:
        print(f"update_page.py: not in both runs: {row}", file=sys.stderr)
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main(*map(pathlib.Path, sys.argv[1:4])))
