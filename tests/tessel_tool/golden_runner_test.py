"""The golden runner itself: it has to notice what it is there for."""

import os
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

    def case(self, **files):
        folder = self.cases / "case"
        folder.mkdir(exist_ok=True)
        for name, content in files.items():
            (folder / name).write_text(content, encoding="utf-8")
        return folder

    def run_runner(self, *options):
        done = subprocess.run([sys.executable, RUNNER, *options, self.tool, self.cases],
                              capture_output=True, text=True, check=False, env=dict(os.environ))
        return done.returncode, done.stdout + done.stderr

    def test_accepts_what_is_equal(self):
        self.case(args="# what it does\none 'and two'", stdin="in", stdout="in",
                  stderr="one and two", status="2\n")
        self.assertEqual(self.run_runner(), (0, "1 cases, 0 failures\n"))

    def test_notices_each_difference(self):
        good = {"args": "# what it does\none", "stdin": "in", "stdout": "in", "stderr": "one",
                "status": "1\n"}
        for name in ("stdout", "stderr", "status"):
            with self.subTest(name=name):
                folder = self.case(**{**good, name: "wrong"})
                status, output = self.run_runner()
                self.assertEqual(status, 1)
                self.assertIn(f"FAILED {folder}\n--- expected {name}\n", output)
                (folder / name).unlink()
                self.assertEqual(self.run_runner()[0], 1)

    def test_reads_the_table(self):
        table = self.cases / "cases.toml"
        good = '[[case]]\nsays = "what it does"\nrun = "{A} two"\nstatus = 2\nstderr = "{A} two"\n'
        table.write_text(good + 'stdin = "in"\nstdout = "in"\n', encoding="utf-8")
        define = ["--define", "A=one"]
        self.assertEqual(self.run_runner(*define), (0, "1 cases, 0 failures\n"))
        table.write_text(good + "depth = 2\nstdout = '[[]]'\n", encoding="utf-8")
        self.assertEqual(self.run_runner(*define)[0], 0)
        for wrong in ('stdout = "in"\n', 'status2 = 3\n', 'stdin = "in"\n'):
            with self.subTest(wrong=wrong):
                table.write_text(good + wrong, encoding="utf-8")
                status, output = self.run_runner(*define)
                self.assertEqual(status, 1)
                self.assertIn("FAILED", output)

    def test_fails_without_cases(self):
        status, output = self.run_runner()
        self.assertEqual(status, 1)
        self.assertIn(f"FAILED {self.cases}: no cases", output)

    def test_fails_on_a_folder_without_a_command_line(self):
        self.case(args="# nothing\n")
        (self.cases / "empty").mkdir()
        status, output = self.run_runner()
        self.assertEqual(status, 1)
        self.assertIn("empty: no args file", output)

    def test_fails_on_a_case_without_a_description(self):
        self.case(args="\n")
        self.assertEqual(self.run_runner()[0], 1)

    def test_updates(self):
        folder = self.case(args="# what it does\none", stdin="in", stdout="old")
        self.assertEqual(self.run_runner()[0], 1)
        self.assertEqual(self.run_runner("--update")[0], 0)
        self.assertEqual(self.run_runner()[0], 0)
        self.assertEqual((folder / "status").read_text(encoding="utf-8"), "1\n")

    def test_replaces_names(self):
        self.case(args="# what it does\n{PLACE}/file", stderr="{PLACE}/file", status="1\n")
        self.assertEqual(self.run_runner("--define", "PLACE=/somewhere")[0], 0)


if __name__ == "__main__":
    unittest.main()
