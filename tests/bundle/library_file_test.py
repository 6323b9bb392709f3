"""The built bundle as a file: the manifest that it carries and the symbols that it exports."""

import io
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest
import zipfile

BUNDLE = pathlib.Path(os.environ["BUNDLE"])
MANIFEST = pathlib.Path(os.environ["MANIFEST"])


def run(tool, *arguments):
    return subprocess.run([os.environ[tool], *map(str, arguments)], check=True,
                          capture_output=True, text=True).stdout


def manifest():
    return json.loads(MANIFEST.read_text(encoding="utf-8"))


def expected_exports():
    name = manifest()["bundle.symbolic_name"]
    symbols = {f"_us_set_bundle_context_instance_{name}"}
    for component in manifest()["scr"]["components"]:
        path = component["implementation-class"].replace("::", "_")
        symbols |= {f"NewInstance_{path}", f"DeleteInstance_{path}"}
    return symbols


def exports(library):
    lines = run("NM", "--dynamic", "--defined-only", "--format=posix", library).splitlines()
    return sorted(line.split()[0] for line in lines)


def archive(library, folder):
    section = pathlib.Path(folder) / "section"
    run("OBJCOPY", "--output-target=binary", "--only-section=.us_resources",
        "--set-section-flags=.us_resources=alloc", library, section)
    return zipfile.ZipFile(io.BytesIO(section.read_bytes()))


class LibraryFile(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = temporary.name
        self.stripped = pathlib.Path(self.folder) / BUNDLE.name
        shutil.copy(BUNDLE, self.stripped)
        run("STRIP", self.stripped)

    def test_carries_the_manifest_and_nothing_else(self):
        name = manifest()["bundle.symbolic_name"]
        for library in (BUNDLE, self.stripped):
            with self.subTest(library=str(library)):
                resources = archive(library, self.folder)
                self.assertEqual(resources.namelist(), [f"{name}/manifest.json"])
                self.assertEqual(resources.read(f"{name}/manifest.json"), MANIFEST.read_bytes())

    def test_the_archive_is_the_same_at_every_build(self):
        dates = [entry.date_time for entry in archive(BUNDLE, self.folder).infolist()]
        self.assertEqual(dates, [(2000, 1, 1, 0, 0, 0)])

    def test_exports_the_entry_points_of_the_manifest_and_nothing_else(self):
        for library in (BUNDLE, self.stripped):
            with self.subTest(library=str(library)):
                self.assertEqual(exports(library), sorted(expected_exports()))

    def test_the_module_name_is_the_file_name(self):
        self.assertEqual(manifest()["qv"]["module"]["name"], BUNDLE.stem)


if __name__ == "__main__":
    unittest.main()
