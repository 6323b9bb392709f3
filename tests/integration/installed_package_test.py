"""An installation: moved elsewhere, its tool runs and other projects find what they need in it."""

import json
import os
import pathlib
import re
import shlex
import shutil
import unittest

from sample_host_test import BUTTON_NODE
from scratch_project import build, cmake, configure, dynamic_section, run, sample_text

SCRATCH = pathlib.Path(os.environ["SCRATCH"])
PREFIX = SCRATCH / "moved to here"
INCLUDES = PREFIX / "include/tessel_build_json_controls"
DOCUMENTS = PREFIX / "share/doc/tessel_build_json_controls"
TOOL = PREFIX / "bin/tessel"
BUNDLE = PREFIX / "lib" / os.environ["BUNDLE_NAME"]

# What the reference host exposes, a program may include.
EXPOSED = pathlib.Path(__file__).resolve().parents[2] / "src/reference_host/include"
REFERENCE_HOST_HEADERS = sorted(path.relative_to(EXPOSED / "reference_host").as_posix()
                                for path in EXPOSED.rglob("*.hpp"))


class InstalledPackage(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        shutil.rmtree(SCRATCH, ignore_errors=True)
        first = SCRATCH / "first"
        cmake("--install", os.environ["BUILD"], "--prefix", first, "--strip")
        first.rename(PREFIX)
        cls.outside = SCRATCH / "outside"
        configure(DOCUMENTS / "examples/host", cls.outside, "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
                  f"-Dtessel_build_json_controls_ROOT={PREFIX}")
        build(cls.outside)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(SCRATCH)

    def test_the_tool_finds_the_bundle_and_the_libraries(self):
        document = DOCUMENTS / "examples/host/control.json"
        answer = json.loads(run([TOOL, "import", "--format", "json", document]).stdout)
        self.assertEqual(answer["nodes"], [BUTTON_NODE])

    def test_libraries_are_looked_for_from_where_a_file_lies(self):
        files = [TOOL, *sorted(PREFIX.rglob("*.so"))]
        self.assertIn(BUNDLE, files)
        for file in files:
            with self.subTest(str(file)):
                path = dynamic_section(file, "RUNPATH") + dynamic_section(file, "RPATH")
                self.assertEqual(len(path), 1)
                self.assertTrue(path[0].startswith("$ORIGIN"), path)
                self.assertNotIn(os.environ["BUILD"], path[0])

    def test_no_text_file_knows_where_it_was_made(self):
        for file in [*PREFIX.rglob("*.cmake"), *INCLUDES.rglob("*.h*")]:
            text = file.read_text(encoding="utf-8")
            for place in (os.environ["SOURCE"], os.environ["BUILD"], str(SCRATCH)):
                self.assertNotIn(place, text, f"in {file}")

    def test_another_project_runs_the_bundle(self):
        node = run([self.outside / "sample_host"], input=sample_text()).stdout
        self.assertEqual(json.loads(node), BUTTON_NODE)

    def test_every_header_compiles_by_itself(self):
        headers = sorted(file.relative_to(INCLUDES / folder).as_posix()
                         for folder in ("host", "service_runtime")
                         for file in (INCLUDES / folder).rglob("*.h*"))
        own = [name for name in headers if name.startswith("reference_host/")]
        self.assertEqual(own, [f"reference_host/{name}" for name in REFERENCE_HOST_HEADERS])
        command = json.loads((self.outside / "compile_commands.json").read_text())[0]["command"]
        words = shlex.split(re.sub(r" -o .*", "", command))
        for header in headers:
            with self.subTest(header):
                run([*words, "-x", "c++", "-fsyntax-only", "-"], cwd=self.outside,
                    input=f'#include "{header}"\n#include "{header}"\n')


if __name__ == "__main__":
    unittest.main()
