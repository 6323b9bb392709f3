"""The tool as a process that gets less and less memory: it says so, and goes on."""

import json
import os
import pathlib
import resource
import signal
import subprocess
import tempfile
import unittest

TOOL = os.environ["TOOL"]
SECONDS = 120
MIB = 1 << 20
CANNOT_BE_LOADED = 127  # the program or a library of it, by the system's own word

# What is built of it takes more memory than its text and its value.
BUTTON = '{"className":"button"}'
CONTROLS = 100000
NOWHERE = dict.fromkeys(["member", "line", "column", "held", "wanted"])


def run(mebibytes, arguments, given=b""):
    """Runs the tool with so much address space."""
    limit = mebibytes * MIB
    return subprocess.run(
        [TOOL, *arguments], input=given, capture_output=True, timeout=SECONDS, check=False,
        preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS, (limit, limit)))


class Memory(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        folder = pathlib.Path(temporary.name)
        large = "[" + ",".join([BUTTON] * CONTROLS) + "]"
        cls.small, cls.large, cls.lines = (str(folder / name)
                                           for name in ("small.json", "large.json", "lines.ndjson"))
        pathlib.Path(cls.small).write_text(BUTTON, encoding="utf-8")
        pathlib.Path(cls.large).write_text(large, encoding="utf-8")
        pathlib.Path(cls.lines).write_text(f"{BUTTON}\n{large}\n{BUTTON}\n", encoding="utf-8")
        # What the program itself needs, and what it answers with less.
        cls.starts = []
        cls.least = 16
        while not cls.starts or cls.starts[-1].returncode != 0:
            cls.least += 2
            cls.starts.append(run(cls.least, ["import", cls.small]))

    def sweep(self, arguments):
        """Runs with more and more memory until there is no word of any lack of it."""
        done = None
        more = 0
        while done is None or b"out of memory" in done.stderr:
            done = run(self.least + more, arguments)
            with self.subTest(arguments=arguments, mebibytes=self.least + more):
                yield done
            more += 4 + more // 6

    def test_a_program_that_cannot_start_says_so(self):
        before = CANNOT_BE_LOADED
        for done in self.starts[:-1]:
            # The system's loader itself crashes where all it lacks is its last page.
            if (before, done.returncode) == (CANNOT_BE_LOADED, -signal.SIGSEGV):
                continue
            before = done.returncode
            self.assertIn(done.returncode, (1, 2, CANNOT_BE_LOADED), done.stderr)
            if done.returncode != CANNOT_BE_LOADED:
                self.assertRegex(done.stderr, rb"^tessel: .+\n$")
        self.assertIn(1, [done.returncode for done in self.starts])

    def check_answers(self, done, names, failing, steps):
        """Checks the answers as JSON: all there, and those that failed by name and step."""
        answers = []
        text = done.stdout.decode()
        while text:
            answer, end = json.JSONDecoder().raw_decode(text)
            answers.append(answer)
            text = text[end:].lstrip()
        self.assertEqual([answer["document"] for answer in answers], names)
        told = b""
        for answer in answers:
            if not answer["errors"]:
                self.assertGreater(len(answer["nodes"]), 0)
                continue
            self.assertIn(answer["document"], failing)
            steps.add(answer["errors"][0]["step"])
            self.assertEqual(answer["nodes"], [])
            self.assertEqual(answer["errors"], [{"pointer": "", "builder": None,
                                                 "step": answer["errors"][0]["step"],
                                                 "message": "out of memory", **NOWHERE}])
            told += f"tessel: {answer['document']}: out of memory\n".encode()
        self.assertEqual((done.returncode, done.stderr), (1 if told else 0, told))

    def test_a_document_without_memory_fails_and_the_next_is_imported(self):
        line = self.lines + ":{}"
        cases = [
            (["--jobs", "2", self.large, self.small, self.large],
             [self.large, self.small, self.large], [self.large]),
            (["--ndjson", self.lines], [line.format(number) for number in (1, 2, 3)],
             [line.format(2)]),
        ]
        all_steps = set()
        for arguments, names, failing in cases:
            steps = set()
            for done in self.sweep(["import", "--format", "json", *arguments]):
                self.check_answers(done, names, failing, steps)
            self.assertIn("parse", steps, arguments)
            all_steps |= steps
        self.assertEqual(all_steps, {"parse", "build"})

    def test_a_line_without_memory_is_not_explained_and_the_next_is(self):
        message = f"tessel: {self.lines}:2: out of memory\n".encode()
        told = 0
        for done in self.sweep(["explain", "--ndjson", "--format", "json", self.lines]):
            self.assertIn((done.returncode, done.stderr), ((1, message), (0, b"")))
            told += done.returncode
            answers = [json.loads(line) for line in done.stdout.splitlines()]
            self.assertEqual([answer.get("claimedBy", "nobody") is not None for answer in answers],
                             [True, done.returncode == 1, True])
            if done.returncode == 1:
                self.assertEqual(answers[1], {"error": "out of memory", **NOWHERE})
        self.assertGreater(told, 0)

    def test_jobs_that_there_is_no_memory_for_are_left_to_the_others(self):
        given = (BUTTON + "\n").encode() * 5000
        for more in (0, 10, 40, 100):
            with self.subTest(more=more):
                done = run(self.least + more, ["import", "--ndjson", "--jobs", "256"], given)
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                self.assertEqual(done.stdout.count(b" 1 built"), 5000)


if __name__ == "__main__":
    unittest.main()
