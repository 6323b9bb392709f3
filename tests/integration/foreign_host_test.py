"""The bundle of another host: built against that host's headers and library, without a change in
the bundle's sources.

The other host's headers are the reference host's with another spelling of every operation that has
no name of its own, and of the members behind them; the forwarding headers beside this file supply
the operations.
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
FORWARDING = HERE / "forwarding"
SECOND_HOSTS_FORWARDING = HERE / "second_host/forwarding"

# The operations without a name of their own, where each is, and how its declarations are told from
# what is named alike.
RENAMED = {
    "foundation/except.hpp": [(r"\b(with_argument)\(", {"with_argument"})],
    "foundation/json.hpp": [(r"(?<!std::)\b(get_if)\b", {"get_if"}),
                            (r"\b(find_member)\(", {"find_member"})],
    "gx/zero.hpp": [(r"(?<!std::)\b(get_if)\b", {"get_if"}),
                    (r"\b(kind_code|held_element|property_value|implementation_of)\(",
                     {"kind_code", "held_element", "property_value", "implementation_of"})],
    "gx/zero/meta.hpp": [
        (r"\b(conforms_to|as_class|is_single_valued|property_or_null)\(",
         {"conforms_to", "as_class", "is_single_valued", "property_or_null"})],
    "gx/zero/collection.hpp": [(r"\b(admits_once|insert_last|elements_of)\(",
                                {"admits_once", "insert_last", "elements_of"})],
    "tessel/shared/logging.hpp": [
        (r"\b(lock|core|attributes|enabled_levels)\((?=\s*(?:const )?basic_diagnostic_logger<)",
         {"lock", "core", "attributes", "enabled_levels"})],
    "lumocode/contentmodel/gxzero.hpp": [(r"\b(value_type)\(", {"value_type"})],
}
# Members of ours that the bundle may not know.
MEMBERS = {"gx/zero/meta.hpp": [(r"\b(conformsTo|isMany)\(", {"conformsTo", "isMany"})]}
# The same, but the library has it under its name: out of reach instead.
GETTER = "  ValueMeta get(const meta::Property& property, ReflectionPrivateTag tag) const;\n"
HIDDEN_GETTER = ("  friend ValueMeta foreign_property_value(const Impl&, const meta::Property&);\n"
                 f" private:\n{GETTER} public:\n")
OPERATIONS = set().union(*(names for rows in RENAMED.values() for _, names in rows))


def make_foreign_headers(folder):
    """Writes the other host's headers into `folder`/foreign."""
    for root in (BUNDLE_SOURCE / "host", pathlib.Path(os.environ["GENERATED"])):
        for header in root.rglob("*.hpp"):
            name = header.relative_to(root).as_posix()
            text = re.sub(r'#include "', '#include "foreign/', header.read_text(encoding="utf-8"))
            for pattern, names in RENAMED.get(name, []) + MEMBERS.get(name, []):
                found = {match[1] for match in re.finditer(pattern, text)}
                if found != names:
                    raise AssertionError(f"{name}: {sorted(names - found)} not found")
                text = re.sub(pattern, lambda match: "foreign_" + match[0], text)
            if name == "gx/zero.hpp":
                if GETTER not in text:
                    raise AssertionError(f"{name}: {GETTER} not found")
                text = text.replace(GETTER, HIDDEN_GETTER)
            (folder / "foreign" / name).parent.mkdir(parents=True, exist_ok=True)
            (folder / "foreign" / name).write_text(text, encoding="utf-8")


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
        make_foreign_headers(SCRATCH / "headers")
        configure(SOURCE, SCRATCH,
                  f"-DTESSEL_SERVICE_RUNTIME={os.environ['SERVICE_RUNTIME']}",
                  f"-DTESSEL_HOST_INCLUDE_DIRS={FORWARDING};{SCRATCH / 'headers'}",
                  f"-DTESSEL_HOST_LIBRARIES={FOREIGN_HOST}")
        build(SCRATCH, "--target", "tessel_build_json_controls")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(SCRATCH)

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
        for folder in (FORWARDING, SECOND_HOSTS_FORWARDING):
            with self.subTest(str(folder)):
                self.assertEqual(headers_in(folder), host_headers_of_the_bundle())

    def test_the_documented_lists_are_exact(self):
        text = (SOURCE / "docs/integrating.md").read_text(encoding="utf-8")
        rows = re.findall(r"^\| `([^`]+)` \|", text, re.MULTILINE)
        self.assertEqual({row for row in rows if row.endswith(".hpp")}, headers_in(FORWARDING))
        operations = {re.search(r"(\w+)(?:<\w>)?\(", row)[1] for row in rows if row.endswith(")")}
        self.assertEqual(operations, OPERATIONS)


if __name__ == "__main__":
    unittest.main()
