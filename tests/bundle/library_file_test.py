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
ACTUAL = json.loads(MANIFEST.read_text(encoding="utf-8"))


def run(tool, *arguments):
    return subprocess.run([os.environ[tool], *map(str, arguments)], check=True,
                          capture_output=True, text=True).stdout


REFERENCES = {
    "tessel::build::json::widgets::LumoTaskHeaderBuilderImpl": [{
        "interface": "tessel::build::json::NodeBuilder",
        "name": "lumoAppIntegratedInlineNodeBuilder",
        "target": "(test_id=LumoTaskIntegratedInlineNodeBuilderImpl)",
    }],
}


def component(path):
    """What the manifest has to say of a class."""
    *namespace, name = path.split("::")
    if namespace == ["tessel", "build", "json", "controls"]:
        return {
            "implementation-class": path,
            "service": {"interfaces": ["tessel::build::json::code::CodeElementBuilder"]},
        }
    return {
        "implementation-class": f"tessel::build::json::widgets::{name}",
        "inject-references": True,
        "properties": {"test_id": name},
        **({"references": REFERENCES[path]} if path in REFERENCES else {}),
        "service": {"interfaces": ["tessel::build::json::NodeBuilder"]},
    }


# Which classes there are is the build's affair: it compares them with the builders' headers.
CLASSES = sorted((each["implementation-class"] for each in ACTUAL["scr"]["components"]),
                 key=lambda path: path.rpartition("::")[2])

# Every member, in its order. The maker's name and the place of installation are the product's own
# affair.
EXPECTED = {
    "bundle.activator": False,
    "bundle.symbolic_name": "com_quorvex_tessel_build_json_controls",
    "bundle.vendor": ACTUAL["bundle.vendor"],
    "qv": {
        "clientdir": "src/tessel/build/json/controls",
        "component": {
            "attributes": "released",
            "name": "tessel/build/json/controls",
            "type": "software",
        },
        "installpath": ACTUAL["qv"]["installpath"],
        "module": {"name": "libtessel_build_json_controls"},
    },
    "scr": {
        "version": 1,
        "components": [component(path) for path in CLASSES],
    },
}

EXPECTED_EXPORTS = sorted(
    [f"{verb}Instance_{path.replace('::', '_')}" for verb in ("New", "Delete") for path in CLASSES]
    + ["_us_set_bundle_context_instance_com_quorvex_tessel_build_json_controls"])


def in_order(text):
    """JSON text that lists the members of objects, so that order and repetition show."""
    value = json.loads(text, object_pairs_hook=lambda members: {"members": members})
    return json.dumps(value, indent=1)


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
        name = ACTUAL["bundle.symbolic_name"]
        for library in (BUNDLE, self.stripped):
            with self.subTest(library=str(library)):
                resources = archive(library, self.folder)
                self.assertEqual(resources.namelist(), [f"{name}/manifest.json"])
                self.assertEqual(resources.read(f"{name}/manifest.json"), MANIFEST.read_bytes())
                date = resources.infolist()[0].date_time
                self.assertEqual(date, (2000, 1, 1, 0, 0, 0), "the same at every build")

    def test_the_manifest_is_the_whole_contract(self):
        text = MANIFEST.read_text(encoding="utf-8")
        self.assertEqual(in_order(text), in_order(json.dumps(EXPECTED)))
        for free in ACTUAL["bundle.vendor"], ACTUAL["qv"]["installpath"]:
            self.assertRegex(free, ".")
        self.assertEqual(ACTUAL["qv"]["module"]["name"], BUNDLE.stem)

    def test_exports_the_entry_points_and_nothing_else(self):
        for library in (BUNDLE, self.stripped):
            with self.subTest(library=str(library)):
                self.assertEqual(exports(library), EXPECTED_EXPORTS)


if __name__ == "__main__":
    unittest.main()
