#!/usr/bin/env python3
"""Holds what other programs read of `check` to what they ask for: SARIF 2.1.0, property by property, and
the lines that editors and CI systems jump to.

usage: report_test.py TOOL
"""

import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

TOOL = ""
TEXT = ('[\r\n  {"className": "LumoControlNode", "controlId": "größe \U0001f600", "context": '
        '{"type": "slider", "data": {"minimum": "0", "maximun": 1}}},\n'
        '  {"className": "LumoControlNode"},\n  {"className": 7, "className": "Button"}\n]\n')
NAMES = ("a b%20:ü#?.json", "plain.json", "[x].json")


def check(*arguments, **options):
    return subprocess.run([TOOL, "check", *arguments], capture_output=True, text=True,
                          encoding="utf-8", timeout=60, check=False, **options)


class Files(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        for name in NAMES:
            (self.folder / name).write_bytes(TEXT.encode())
        (self.folder / "good.json").write_text("{}")
        (self.folder / "lines.ndjson").write_text('{}\n{"className": "button", "text": 1}\n\n[1,]\n')

    def sarif(self, *arguments, **options):
        done = check("--format", "sarif", *arguments, cwd=self.folder, **options)
        return json.loads(done.stdout), done

    def problems(self, *arguments, **options):
        done = check("--format", "json", *arguments, cwd=self.folder, **options)
        answers = json.loads("[" + done.stdout.replace("}\n{", "},{") + "]")
        return [(answer["document"], problem) for answer in answers for problem in answer["problems"]]


class SarifTest(Files):
    def test_the_log_and_its_run(self):
        log, done = self.sarif("plain.json")
        self.assertEqual(set(log), {"version", "$schema", "runs"})
        self.assertEqual(log["version"], "2.1.0")
        self.assertRegex(log["$schema"], r"^https://.*sarif.*2\.1\.0.*\.json$")
        (run,) = log["runs"]
        self.assertEqual(run["columnKind"], "unicodeCodePoints")
        driver = run["tool"]["driver"]
        self.assertEqual(driver["name"], "tessel")
        version = subprocess.run([TOOL, "--version"], capture_output=True, text=True, check=True)
        self.assertEqual("tessel " + driver["version"], version.stdout.strip())
        (invocation,) = run["invocations"]
        self.assertEqual(invocation, {"executionSuccessful": True, "exitCode": 1})
        self.assertEqual(done.returncode, 1)

    def test_the_rules(self):
        log, _ = self.sarif("good.json")
        rules = log["runs"][0]["tool"]["driver"]["rules"]
        names = [rule["id"] for rule in rules]
        self.assertEqual(names, [
            "syntax", "wrong-type", "missing-member", "cannot-tell", "build-failed", "unknown-class",
            "unknown-type", "unknown-member", "ignored-member", "duplicate-member", "duplicate-id",
            "unlikely-value"])
        for place, rule in enumerate(rules):
            self.assertTrue(rule["shortDescription"]["text"].endswith("."))
            self.assertTrue(rule["help"]["text"].endswith("."))
            self.assertEqual(rule["defaultConfiguration"]["level"],
                             "error" if place < 5 else "warning")

    def test_the_results_are_the_problems(self):
        log, _ = self.sarif(*NAMES)
        (run,) = log["runs"]
        told = self.problems(*NAMES)
        self.assertGreater(len(told), 3 * len(NAMES))
        self.assertEqual(len(run["results"]), len(told))
        for result, (document, problem) in zip(run["results"], told):
            rule = run["tool"]["driver"]["rules"][result["ruleIndex"]]
            self.assertEqual(result["ruleId"], rule["id"])
            self.assertEqual(result["ruleId"], problem["code"])
            self.assertEqual(result["level"], problem["severity"])
            hint = "; " + problem["hint"] if problem["hint"] else ""
            self.assertEqual(result["message"], {"text": problem["message"] + hint})
            (location,) = result["locations"]
            physical = location["physicalLocation"]
            uri = physical["artifactLocation"]["uri"]  # RFC 3986: a relative reference
            self.assertRegex(uri, r"^(?:[A-Za-z0-9._~-]|%[0-9A-F]{2})+$")
            self.assertEqual(urllib.parse.unquote(uri), document)
            self.assertEqual(physical["region"], {
                "startLine": problem["line"], "startColumn": problem["column"],
                "endLine": problem["endLine"], "endColumn": problem["endColumn"]})
            member = problem["pointer"] if problem["member"] is None else problem["member"]
            self.assertEqual(location["logicalLocations"],
                             [{"fullyQualifiedName": member}])
            self.assertEqual(result["partialFingerprints"],
                             {"codeAndMember/v1": f"{problem['code']} {member}"})
            bag = {name: problem[name] for name in ("pointer", "builder", "held", "wanted", "hint")
                   if problem[name] is not None}
            self.assertEqual(result["properties"], bag)

    def test_nothing_to_tell(self):
        log, done = self.sarif("good.json")
        self.assertEqual(log["runs"][0]["results"], [])  # empty, not absent
        self.assertEqual(log["runs"][0]["invocations"], [{"executionSuccessful": True, "exitCode": 0}])
        self.assertEqual(done.returncode, 0)

    def test_inputs_that_cannot_be_read(self):
        log, done = self.sarif("nowhere.json", "plain.json")
        (invocation,) = log["runs"][0]["invocations"]
        self.assertFalse(invocation["executionSuccessful"])
        self.assertEqual(invocation["toolExecutionNotifications"], [{
            "level": "error", "message": {"text": "No such file or directory"},
            "locations": [{"physicalLocation": {"artifactLocation": {"uri": "nowhere.json"}}}]}])
        self.assertIn("nowhere.json", done.stderr)
        self.assertTrue(log["runs"][0]["results"])

    def test_absolute_paths_and_standard_input(self):
        for slashes in ("", "/"):
            log, _ = self.sarif(slashes + str(self.folder / NAMES[0]))
            location = log["runs"][0]["results"][0]["locations"][0]["physicalLocation"]
            self.assertEqual(location["artifactLocation"]["uri"], (self.folder / NAMES[0]).as_uri())
        log, _ = self.sarif(input=TEXT)
        location = log["runs"][0]["results"][0]["locations"][0]["physicalLocation"]
        self.assertEqual(location["artifactLocation"],
                         {"uri": "-", "description": {"text": "standard input"}})

    def test_lines(self):
        for jobs in ("1", "3"):
            log, _ = self.sarif("--ndjson", "--jobs", jobs, "lines.ndjson", "plain.json")
            lines = [(r["ruleId"], r["locations"][0]["physicalLocation"]["region"])
                     for r in log["runs"][0]["results"]]
            self.assertEqual(lines[:2], [
                ("wrong-type", {"startLine": 2, "startColumn": 33, "endLine": 2, "endColumn": 34}),
                ("syntax", {"startLine": 4, "startColumn": 4, "endLine": 4, "endColumn": 5})])
            places = [r["locations"][0] for r in log["runs"][0]["results"]]
            self.assertNotIn("logicalLocations", places[1])  # of what has no place in the value
            self.assertEqual([r["partialFingerprints"]["codeAndMember/v1"]
                              for r in log["runs"][0]["results"][:3]],
                             ["wrong-type lines.ndjson:2 /text", "syntax lines.ndjson:4 ",
                              "syntax plain.json:1 "])

    def test_where_parsing_stops(self):
        for text, column, end in (("", 1, 1), ("   ", 4, 4), ('["a\n"]', 4, 4), ('["a\r\n"]', 4, 4),
                                  ("[1,]", 4, 5)):
            ((_, problem),) = self.problems(input=text)
            self.assertEqual((problem["column"], problem["endLine"], problem["endColumn"]),
                             (column, 1, end), text)


class TextTest(Files):
    # Vim's 'errorformat' "%f:%l:%c: %trror: %m,%f:%l:%c: %tarning: %m" and the default's "%f:%l:%c:%m".
    VIM = re.compile(r"^(.+?):(\d+):(\d+): (.+)$")
    # The problem matcher for GCC that editors and CI systems share.
    GCC = re.compile(r"^(.*?):(\d+):(\d*):?\s+((?:fatal\s+)?(?:warning|error):\s+.*)$")

    def test_matchers_find_every_problem_and_nothing_else(self):
        for name in NAMES[1:]:
            told = [("./" + name, str(p["line"]), str(p["column"]),
                     f"{p['severity']}: {p['message']} [{p['code']}]")
                    for _, p in self.problems("./" + name)]
            lines = check("./" + name, cwd=self.folder).stdout.splitlines()
            for matcher in (self.VIM, self.GCC):
                found = [match.groups() for match in map(matcher.match, lines) if match]
                self.assertEqual(found, told)

    @unittest.skipUnless(shutil.which("vim"), "Vim is not installed")
    def test_vim_finds_every_problem_and_nothing_else(self):
        page = pathlib.Path(__file__).parents[2] / "docs" / "editors.md"
        (setting,) = re.findall(r"`(set errorformat=.*?)`", page.read_text(encoding="utf-8"))
        text = ('[{"className": "LumoControlNode"}, "10:30:00", "a:1:2: error: b",\n'
                '{"a:1:2: error: b": "Spinner", "controlId": ""}]')
        (self.folder / "times.json").write_text(text)
        script = "call writefile(map(getqflist(), {_, e -> json_encode("
        script += "[bufname(e.bufnr), e.lnum, e.col, e.valid])}), 'found') | qall!"
        for arguments in (("times.json",), ("plain.json", "./[x].json")):
            (self.folder / "errors").write_text(check(*arguments, cwd=self.folder).stdout)
            subprocess.run(["vim", "-u", "NONE", "-es", "--cmd", setting, "-q", "errors", "-c", script],
                           cwd=self.folder, timeout=60, check=False, stdin=subprocess.DEVNULL)
            lines = (self.folder / "found").read_text().splitlines()
            found = [tuple(entry[:3]) for entry in map(json.loads, lines) if entry[3]]
            self.assertEqual(found, [(name, problem["line"], problem["column"])
                                     for name, problem in self.problems(*arguments)])

    def test_lines_of_an_input(self):
        lines = check("--ndjson", "lines.ndjson", cwd=self.folder).stdout.splitlines()
        found = [match.groups()[:3] for match in map(self.GCC.match, lines) if match]
        self.assertEqual(found, [("lines.ndjson", "2", "33"), ("lines.ndjson", "4", "4")])


if __name__ == "__main__":
    TOOL = sys.argv.pop(1)
    unittest.main()
