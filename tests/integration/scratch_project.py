"""Projects that a test configures and builds in a folder of its own."""

import os
import pathlib
import re
import subprocess


def run(command, **options):
    """The result of a command that has to succeed; its output is the error text if it does not."""
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True,
                            check=False, **options)
    if result.returncode != 0:
        raise AssertionError(f"{command}: exit status {result.returncode}\n"
                             f"{result.stdout}{result.stderr}")
    return result


def cmake(*arguments):
    return run([os.environ["CMAKE"], *arguments])


def configure(source, build, *options):
    cmake("-C", os.environ["INITIAL_CACHE"], "-S", source, "-B", build, *options)


def build(folder, *options):
    cmake("--build", folder, "--parallel", "2", *options)


def dynamic_section(library, tag):
    """The values of the entries of a kind, such as NEEDED."""
    lines = run([os.environ["READELF"], "--dynamic", "--wide", library]).stdout.splitlines()
    return [re.search(r"\[(.*)\]", line)[1] for line in lines if f"({tag})" in line]


def sample_text():
    path = pathlib.Path(os.environ["SAMPLE_FOLDER"]) / "control.json"
    return path.read_text(encoding="utf-8")
