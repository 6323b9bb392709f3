"""What is made of a manifest, and what is wrong with one that cannot be what it has to be."""

import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

HEADER = """
namespace kinds {
class Plain;
enum class Colour : char { red };
struct Row {};
/// class Mentioned : public Base
class Button final : public host::Builder {};
}  // namespace kinds
namespace kinds::more {
class Task : public host::Builder {};
}
"""

BUTTON = {"implementation-class": "kinds::Button", "service": {"interfaces": ["host::Builder"]}}
TASK = {"implementation-class": "kinds::more::Task", "inject-references": True,
        "references": [{"name": "first", "interface": "host::Builder"},
                       {"name": "second", "interface": "host::Log"}],
        "service": {"interfaces": ["host::Builder", "host::Other"]}}


def manifest(*components):
    return {"bundle.symbolic_name": "kinds", "scr": {"components": list(components)}}


def without(mapping, key):
    return {name: value for name, value in mapping.items() if name != key}


class MakeBundle(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = pathlib.Path(scratch.name)
        (self.folder / "kinds.hpp").write_text(HEADER, encoding="utf-8")

    def make(self, content, headers=("kinds.hpp",)):
        text = content if isinstance(content, str) else json.dumps(content)
        (self.folder / "manifest.json").write_text(text, encoding="utf-8")
        return subprocess.run([sys.executable, os.environ["MAKE_BUNDLE"], "manifest.json", "made",
                               *headers], cwd=self.folder, capture_output=True, text=True,
                              check=False)

    def made(self, name):
        return (self.folder / "made" / name).read_text(encoding="utf-8")

    def test_makes_entry_points_of_class_interfaces_and_references(self):
        result = self.make(manifest(TASK), headers=())
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(self.made("entry_points.inc"), """\
extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_kinds_more_Task() {
  return newInstance<kinds::more::Task, std::tuple<host::Builder, host::Other>, \
std::shared_ptr<host::Builder>, std::shared_ptr<host::Log>>("first", "second");
}
extern "C" US_ABI_EXPORT void DeleteInstance_kinds_more_Task(ComponentInstance* instance) {
  deleteInstance(instance);
}
""")

    def test_says_what_is_wrong_with_a_manifest(self):
        named = {**BUTTON, "name": "one"}
        rows = [
            ("no JSON", "{", "cannot be read: "),
            ("no object", "[]", "cannot be read: "),
            ("no name", without(manifest(), "bundle.symbolic_name"),
             '"bundle.symbolic_name" is missing'),
            ("a name that is no identifier", {**manifest(), "bundle.symbolic_name": "a-b"},
             '"bundle.symbolic_name" is no identifier: "a-b"'),
            ("no components", without(manifest(), "scr"), '"scr" is missing'),
            ("a component without a class", manifest({}),
             '"implementation-class" is no class: null'),
            ("a class that is none", manifest({"implementation-class": "kinds::"}),
             '"implementation-class" is no class: "kinds::"'),
            ("a class twice", manifest(named, TASK, BUTTON),
             "2 components have the class kinds::Button"),
            ("a name twice", manifest(named, {**TASK, "name": "one"}),
             "2 components have the name one"),
            ("a name that is another's class", manifest(BUTTON, {**TASK, "name": "kinds::Button"}),
             "2 components have the name kinds::Button"),
            ("a class left out", manifest(BUTTON),
             "no component has the class kinds::more::Task of kinds.hpp"),
            ("a class that is not there", manifest(
                BUTTON, TASK, {**BUTTON, "implementation-class": "kinds::Slider"}),
             "none of kinds.hpp declares the class kinds::Slider"),
        ]
        for description, content, message in rows:
            with self.subTest(description):
                result = self.make(content)
                self.assertEqual(result.returncode, 1)
                self.assertTrue(result.stderr.startswith(f"manifest.json: {message}"),
                                result.stderr)
                self.assertFalse((self.folder / "made").exists())

    def test_refuses_to_compile_references_that_are_not_injected(self):
        self.make(manifest(without(TASK, "inject-references")), headers=())
        self.assertEqual(self.made("entry_points.inc"),
                         '#error "the references of kinds::more::Task are not injected"\n')


if __name__ == "__main__":
    unittest.main()
