"""The golden runner itself: it has to notice what it is there for."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

RUNNER = pathlib.Path(__file__).with_name("golden_test.py")

# Stands for the tool: copies standard input, complains about its arguments, exits with their number.
FAKE_TOOL = """#!{python}
import sys
sys.stdout.write(sys.stdin.read())
sys.stderr.write(" ".join(sys.argv[1:]))
sys.exit(len(sys.argv) - 1)
"""
GOOD = {"args": "# what it does\n{A} 'and two'", "stdin": "in", "stdout": "in",
        "stderr": "{A} and two", "status": "2\n"}
GOOD_ROW = ('[[case]]\nsays = "what it does"\nrun = "{A} two"\nstatus = 2\nstderr = "{A} two"\n'
            'stdin = "in"\nstdout = "in"\n')


class GoldenRunner(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        folder = pathlib.Path(temporary.name)
        self.tool = folder / "tool"
        self.tool.write_text(FAKE_TOOL.format(python=sys.executable), encoding="utf-8")
        self.tool.chmod(0o755)
        self.cases = folder / "cases"
        self.cases.mkdir()

    def case(self, files):
        folder = self.cases / "case"
        folder.mkdir(exist_ok=True)
        for name, content in files.items():
            (folder / name).write_text(content, encoding="utf-8")
        return folder

    def assert_runs(self, status, output, *options):
        done = subprocess.run([sys.executable, RUNNER, "--define", "A=one", *options, self.tool,
                               self.cases], capture_output=True, text=True, check=False)
        self.assertIn(output, done.stdout + done.stderr)
        self.assertEqual(done.returncode, status)

    def test_notices_each_difference_and_updates_it(self):
        self.case(GOOD)
        self.assert_runs(0, "1 cases, 0 failures\n")
        for name in ("stdout", "stderr", "status"):
            with self.subTest(name=name):
                folder = self.case({**GOOD, name: "wrong"})
                self.assert_runs(1, f"FAILED {folder}\n--- expected {name}\n")
                (folder / name).unlink()
                self.assert_runs(1, f"FAILED {folder}\n--- expected {name}\n")
                self.assert_runs(0, "", "--update")
                self.assertEqual((folder / name).read_text(encoding="utf-8"), GOOD[name])

    def test_masks_what_may_differ(self):
        self.case({**GOOD, "stdin": "some of 7, 8", "stdout": "some of {LIST}"})
        self.assert_runs(0, "", "--mask", r"LIST=(?<=of )\d(, \d)*")
        self.assert_runs(1, "+some of 7, 8", "--mask", r"LIST=(?<=or )\d(, \d)*")

    def test_reads_the_table(self):
        table = self.cases / "cases.toml"
        for good in (GOOD_ROW, GOOD_ROW.replace('stdin = "in"\nstdout = "in"', 'depth = 2\nstdout = "[[]]"')):
            table.write_text(good, encoding="utf-8")
            self.assert_runs(0, "1 cases, 0 failures\n")
        for old, wrong in (('stdin = "in"\n', ""), ('stdout = "in"\n', ""), ("status", "status2"),
                           ("what it does", "")):
            with self.subTest(wrong=(old, wrong)):
                table.write_text(GOOD_ROW.replace(old, wrong), encoding="utf-8")
                self.assert_runs(1, "FAILED")

    def test_fails_where_cases_are_missing(self):
        self.assert_runs(1, f"FAILED {self.cases}: no cases")
        self.case({"args": "# nothing\n"})
        self.assert_runs(0, "1 cases, 0 failures\n")
        (self.cases / "empty").mkdir()
        self.assert_runs(1, "empty: no args file")
        self.case({"args": "\n"})
        self.assert_runs(1, "args does not say what the case is for")


if __name__ == "__main__":
    unittest.main()
