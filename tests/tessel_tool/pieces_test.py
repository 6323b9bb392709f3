"""An answer that leaves in pieces: the same bytes, and named where it is cut off."""

import contextlib
import json
import os
import pathlib
import resource
import select
import signal
import subprocess
import tempfile
import time
import unittest

TOOL = os.environ["TOOL"]
SANITIZERS = os.environ["SANITIZERS"]
THREAD_SANITIZER = SANITIZERS == "thread"
SECONDS = 120
PIPE = 65536  # more than this does not go into a pipe that nobody reads

BUTTON = {"className": "button", "controlId": "b\u00fc", "context": {"data": {"text": "Run"}}}
WRONG = {"className": "button", "context": {"data": {"text": 7}}}


def tessel(*arguments, **options):
    return subprocess.run([TOOL, "import", *arguments], stdout=subprocess.PIPE, timeout=SECONDS,
                          check=False, **options)


def wait_until(condition):
    end = time.monotonic() + SECONDS
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("what was waited for did not happen")
        time.sleep(0.005)


class Pieces(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        folder = pathlib.Path(temporary.name)

        def file(name, text):
            path = folder / name
            path.write_text(text, encoding="utf-8")
            return str(path)

        cls.small = file("small.json", json.dumps(BUTTON))
        cls.bad = file("bad.json", "}")
        cls.large = file("large.json", json.dumps(([BUTTON] * 9 + [WRONG]) * 300))
        # Its last node is longer than all the others.
        cls.long = file("long.json", json.dumps(
            [BUTTON] * 1000 + [{**BUTTON, "controlId": "x" * 40_000_000}]))

    def test_the_bytes_are_those_of_a_whole_answer(self):
        files = [self.small, self.large, self.bad, self.large, self.small]
        for form in (["--format", "json"], ["--format", "json", "--log"], ["--log"]):
            with self.subTest(form=form):
                pieces, whole = (tessel(*form, "--jobs", jobs, *files, stderr=subprocess.STDOUT)
                                 for jobs in ("1", "2"))
                self.assertEqual((pieces.returncode, whole.returncode), (1, 1))
                self.assertTrue(pieces.stdout == whole.stdout, "in pieces it is something else")
                self.assertGreater(len(whole.stdout), 4 * PIPE)

    @contextlib.contextmanager
    def in_the_middle(self, large):
        """The tool, blocked in the middle of its answer to the first of two documents, and where
        the results can be read."""
        reading, writing = os.pipe()
        with os.fdopen(reading, "rb") as results, \
             subprocess.Popen([TOOL, "import", "--format", "json", large, self.small],
                              stdout=writing, stderr=subprocess.PIPE) as process:
            try:
                wait_until(lambda: not select.select([], [writing], [], 0)[1])
                os.close(writing)
                yield process, results
            finally:
                process.kill()

    def assert_cut(self, process, results, document, message):
        """Expects the answer to have no end, to be named, and to be the last thing written."""
        seen = results.read() if results else b""
        if results:
            self.assertTrue(seen.startswith(b'{\n  "document": "'), seen[:100])
            self.assertNotIn(b'"summary"', seen)
        self.assertEqual(process.stderr.read().decode(),
                         f"tessel: {document}: the answer is cut off\n{message}")
        self.assertEqual(process.wait(SECONDS), 1)

    @unittest.skipIf(THREAD_SANITIZER, "ThreadSanitizer keeps a signal until the call has ended")
    def test_a_signal_waits_for_the_last_piece(self):
        for number in (signal.SIGINT, signal.SIGTERM):
            with self.subTest(signal=number), \
                 self.in_the_middle(self.large) as (process, results):
                process.send_signal(number)
                self.assertEqual(json.loads(results.read())["summary"]["built"], 2700)
                self.assertEqual(process.stderr.read().decode(),
                                 "tessel: stopped; documents answered: 1, the last one "
                                 f"{self.large}\n")
                self.assertEqual(process.wait(SECONDS), -number)

    def test_a_reader_that_goes_cuts_it_off(self):
        with self.in_the_middle(self.large) as (process, results):
            results.read(100)
            results.close()
            self.assert_cut(process, None, self.large, "tessel: standard output: Broken pipe\n")

    def test_a_file_that_grows_no_further_cuts_it_off(self):
        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (3 * PIPE, 3 * PIPE))

        with tempfile.TemporaryFile() as results, \
             subprocess.Popen([TOOL, "import", "--format", "json", self.large, self.small],
                              stdout=results, stderr=subprocess.PIPE, preexec_fn=limit) as process:
            process.wait(SECONDS)
            results.seek(0)
            self.assert_cut(process, results, self.large,
                            "tessel: standard output: File too large\n")

    @unittest.skipIf(SANITIZERS, "a sanitizer needs memory to say that there is none")
    @unittest.skipUnless(hasattr(resource, "prlimit"), "nothing takes memory from a process")
    def test_a_lack_of_memory_cuts_it_off(self):
        with self.in_the_middle(self.long) as (process, results):
            resource.prlimit(process.pid, resource.RLIMIT_AS, (1 << 20, 1 << 20))
            self.assert_cut(process, results, self.long, "tessel: out of memory\n")


if __name__ == "__main__":
    unittest.main()
