"""The bundle of another host: built against that host's include folders and library, without a change
in the bundle's sources. Here the headers are the reference host's, elsewhere, and the library is its
code under another name. What another host's headers have to offer is what second_host offers.
"""

import os
import pathlib
import re
import shutil
import unittest

from scratch_project import build, cmake, configure, dynamic_section, run, sample_text

HERE = pathlib.Path(__file__).resolve().parent
SOURCE = pathlib.Path(os.environ["SOURCE"])
BUNDLE_SOURCE = SOURCE / "src/tessel/build/json/controls"
SCRATCH = pathlib.Path(os.environ["SCRATCH"])
FOREIGN_BUNDLE = SCRATCH / "lib" / os.environ["BUNDLE_NAME"]
FOREIGN_HOST = pathlib.Path(os.environ["FOREIGN_HOST"])
FORWARDING = HERE / "second_host/forwarding"


def exports(library):
    lines = run([os.environ["NM"], "--dynamic", "--defined-only", "--format=posix",
                 library]).stdout.splitlines()
    return sorted(line.split()[0] for line in lines)


def headers_in(folder):
    return {path.relative_to(folder).as_posix() for path in folder.rglob("*.hpp")}


def host_headers_of_the_bundle():
    """What the bundle's own files include of the host."""
    files = [BUNDLE_SOURCE / "registration.cpp",
             *(file for folder in ("framework", "controls", "widgets")
               for file in (BUNDLE_SOURCE / folder).rglob("*.?pp"))]
    included = {name for file in files
                for name in re.findall(r'#include "(.+\.hpp)"', file.read_text(encoding="utf-8"))}
    return {name for name in included
            if not name.startswith(("framework/", "controls/", "widgets/", "cppmicroservices/"))}


class ForeignHost(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(SCRATCH, ignore_errors=True)
        for folder in (BUNDLE_SOURCE / "host", pathlib.Path(os.environ["GENERATED"])):
            shutil.copytree(folder, SCRATCH / "headers", dirs_exist_ok=True)
        configure(SOURCE, SCRATCH, "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
                  f"-DTESSEL_SERVICE_RUNTIME={os.environ['SERVICE_RUNTIME']}",
                  f"-DTESSEL_HOST_INCLUDE_DIRS={SCRATCH / 'headers'}",
                  f"-DTESSEL_HOST_LIBRARIES={FOREIGN_HOST}")
        build(SCRATCH, "--target", "tessel_build_json_controls")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(SCRATCH)

    def test_is_compiled_with_the_other_headers_alone(self):
        commands = (SCRATCH / "compile_commands.json").read_text(encoding="utf-8")
        self.assertIn(str(SCRATCH / "headers"), commands)
        for folder in (BUNDLE_SOURCE / "host", SOURCE / "src/reference_host"):
            self.assertNotIn(str(folder), commands)

    def test_exports_the_same_functions(self):
        self.assertEqual(exports(FOREIGN_BUNDLE), exports(os.environ["BUNDLE"]))

    def test_refers_to_the_other_library_alone(self):
        reference_host = pathlib.Path(os.environ["REFERENCE_HOST"]).name
        self.assertIn(reference_host, dynamic_section(os.environ["BUNDLE"], "NEEDED"))
        for file in (FOREIGN_BUNDLE, os.environ["FOREIGN_SAMPLE_HOST"]):
            with self.subTest(str(file)):
                needed = dynamic_section(file, "NEEDED")
                self.assertIn(FOREIGN_HOST.name, needed)
                self.assertNotIn(reference_host, needed)

    def test_builds_the_same_node_in_the_other_host(self):
        # Every function has to be there at once, not only those that one node needs.
        environment = {**os.environ, "LD_BIND_NOW": "1"}
        own, foreign = (run([os.environ[program]], input=sample_text(), env=environment).stdout
                        for program in ("SAMPLE_HOST", "FOREIGN_SAMPLE_HOST"))
        self.assertIn("ButtonNode", own)
        self.assertEqual(foreign, own)

    def test_is_installed_alone(self):
        cmake("--install", SCRATCH, "--component", "bundle", "--prefix", SCRATCH / "product")
        installed = [path for path in (SCRATCH / "product").rglob("*") if path.is_file()]
        self.assertEqual(installed, [SCRATCH / "product/lib" / FOREIGN_BUNDLE.name])

    def test_forwarding_headers_are_those_that_the_bundle_includes(self):
        self.assertEqual(headers_in(FORWARDING), host_headers_of_the_bundle())

    def test_the_documented_lists_are_exact(self):
        text = (SOURCE / "docs/integrating.md").read_text(encoding="utf-8")
        rows = re.findall(r"^\| `([^`]+)` \|", text, re.MULTILINE)
        self.assertEqual({row for row in rows if row.endswith(".hpp")}, headers_in(FORWARDING))
        operations = {re.search(r"(\w+)(?:<\w>)?\(", row)[1] for row in rows if row.endswith(")")}
        self.assertEqual(operations, {
            name for header in FORWARDING.rglob("*.hpp") for name in re.findall(
                r"^\w.*?(\w+)\(", header.read_text(encoding="utf-8"), re.MULTILINE)})


if __name__ == "__main__":
    unittest.main()
