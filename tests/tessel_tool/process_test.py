"""The tool as a process: its streams, its files, and bundles that are none."""

import contextlib
import fcntl
import json
import os
import pathlib
import pty
import re
import select
import signal
import struct
import subprocess
import tempfile
import termios
import time
import unittest

TOOL = os.environ["TOOL"]
BUNDLE = pathlib.Path(os.environ["BUNDLE"])
ORDINARY_LIBRARY = os.environ["ORDINARY_LIBRARY"]
OBJCOPY = os.environ["OBJCOPY"]
RUNTIME_IS_EMBEDDED = os.environ["RUNTIME_IS_EMBEDDED"] == "1"
OWN_ALLOCATOR = os.environ["OWN_ALLOCATOR"] == "1"
THREAD_SANITIZER = os.environ["SANITIZERS"] == "thread"
SECONDS = 120

BUTTON = '{"className":"button"}'


def tessel(*arguments, given=b"", **options):
    options.setdefault("stdout", subprocess.PIPE)
    return subprocess.run([TOOL, *arguments], input=given, stderr=subprocess.PIPE,
                          timeout=SECONDS, check=False, **options)


@contextlib.contextmanager
def running(*arguments, **options):
    """The tool with its streams in pipes; it does not outlive the block."""
    streams = {name: subprocess.PIPE for name in ("stdin", "stdout", "stderr")}
    with subprocess.Popen([TOOL, *arguments], bufsize=0, **{**streams, **options}) as process:
        try:
            yield process
        finally:
            process.kill()


def wait_until(condition):
    end = time.monotonic() + SECONDS
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("what was waited for did not happen")
        time.sleep(0.005)


def bytes_in(pipe):
    return struct.unpack("i", fcntl.ioctl(pipe, termios.FIONREAD, b"\0" * 4))[0]


def read_all(descriptor):
    """What a terminal shows until nobody writes to it."""
    seen = b""
    while True:
        try:
            part = os.read(descriptor, 65536)
        except OSError:
            part = b""
        if not part:
            return seen
        seen += part


class ProcessTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def file(self, name, content):
        path = self.folder / name
        path.write_text(content, encoding="utf-8")
        return str(path)

    def terminal(self):
        try:
            leader, follower = pty.openpty()
        except OSError as error:
            self.skipTest(f"no terminal can be made here: {error}")
        self.addCleanup(os.close, leader)
        return leader, follower


class Process(ProcessTest):
    def assert_failed(self, done, status, message):
        self.assertEqual((done.returncode, done.stderr.decode()), (status, message))

    def test_a_full_disk_is_noticed(self):
        document = self.file("document.json", BUTTON)
        cut = f"tessel: {document}: the answer is cut off\n"
        line_cut = cut.replace(".json", ".json:1")
        for arguments, what in ((["import", document], cut),
                                (["import", "--ndjson", "--jobs", "3", document], line_cut),
                                (["import", "--format", "json", document], cut),
                                (["check", "--format", "json", document], cut),
                                (["explain", document], cut),
                                (["builders"], ""), (["--help"], ""), (["--version"], "")):
            with self.subTest(arguments=arguments), open("/dev/full", "wb") as full:
                done = tessel(*arguments, stdout=full)
                self.assert_failed(done, 1,
                                   what + "tessel: standard output: No space left on device\n")

    def test_a_broken_pipe_is_noticed(self):
        lines = (BUTTON + "\n").encode() * 50
        for jobs in ("1", "4"):
            with self.subTest(jobs=jobs):
                reading, writing = os.pipe()
                os.close(reading)
                with os.fdopen(writing, "wb") as pipe:
                    done = tessel("import", "--ndjson", "--jobs", jobs, given=lines, stdout=pipe)
                self.assert_failed(done, 1, "tessel: -:1: this answer or a later one is cut off\n"
                                            "tessel: standard output: Broken pipe\n")

    def test_standard_input_that_cannot_be_read(self):
        folder = os.open(self.folder, os.O_RDONLY)
        self.addCleanup(os.close, folder)
        for arguments in (["import"], ["import", "--ndjson"], ["explain"]):
            with self.subTest(arguments=arguments):
                done = subprocess.run([TOOL, *arguments], stdin=folder, capture_output=True,
                                      timeout=SECONDS, check=False)
                self.assertEqual(done.stdout, b"")
                self.assert_failed(done, 1, "tessel: -: Is a directory\n")

    def test_file_names_need_not_be_utf8(self):
        folder = os.fsencode(self.folder)
        for name, as_json, as_text in (
                (b"na\xff\nme", "na\\xff\nme", b"na\\xff\\nme"),
                (b"na\xfe\nme", "na\\xfe\nme", b"na\\xfe\\nme"),
                (b"na\\xff\nme", "na\\x5cxff\nme", b"na\\xff\\nme"),
                ("n\u00e4\u202e".encode(), "n\u00e4\u202e", "n\u00e4\\u202e".encode())):
            with self.subTest(name=name):
                path = folder + b"/" + name
                pathlib.Path(os.fsdecode(path)).write_text(BUTTON, encoding="utf-8")
                done = tessel("import", "--format", "json", path)
                self.assertEqual((done.returncode, done.stderr), (0, b""))
                answer = json.loads(done.stdout.decode("utf-8"))
                self.assertEqual(answer["document"], f"{self.folder}/{as_json}")
                self.assertEqual(len(answer["nodes"]), 1)
                tree = tessel("import", path)
                self.assertEqual(tree.stdout.splitlines()[0], folder + b"/" + as_text)

    def test_text_for_people_has_no_control_characters(self):
        hostile = "\x7f\x85\x9b\u2028\u202e\u2066"
        document = self.file(f"a{hostile}.json", json.dumps(
            {hostile: [{"className": "button", "controlId": hostile, "text": hostile,
                        "type": hostile}, {"className": "button", "text": 7}]},
            ensure_ascii=False))
        value = self.file("value.json", json.dumps(
            {"className": hostile, "context": {"type": hostile}}, ensure_ascii=False))
        for arguments in (["import", document], ["import", "--log", document],
                          ["import", document + hostile], ["import", hostile],
                          ["explain", "--all", value], ["explain", "--ndjson", document],
                          ["builders", "--bundle", document], [hostile], ["import", "-" + hostile]):
            with self.subTest(arguments=arguments):
                done = tessel(*arguments)
                written = (done.stdout + done.stderr).decode("utf-8")
                self.assertIn("\\u202e", written)
                for character in hostile:
                    self.assertNotIn(character, written)

    def test_duplicate_members_are_told_on_standard_error(self):
        first = self.file("first.json", '{"a":1,\n "a":[{"b":0,"b":1}]}')
        second = self.file("second.json", '{"a":1}\n\n{"b":2,"b":3}')
        places = [f"tessel: {first}:1:2: warning: 2 duplicate members, the first \"a\" at /a; "
                  "the last of a name holds\n",
                  f"tessel: {second}:3:2: warning: 1 duplicate member, \"b\" at /b; "
                  "the last of a name holds\n"]
        for form in ("tree", "json"):
            for jobs in ("1", "3"):
                with self.subTest(form=form, jobs=jobs):
                    done = tessel("import", "--format", form, "--jobs", jobs, first, first)
                    self.assert_failed(done, 0, places[0] * 2)
                    done = tessel("import", "--format", form, "--jobs", jobs, "--ndjson", second)
                    self.assert_failed(done, 0, places[1])
        self.assertEqual(tessel("explain", first).stderr, b"")

    def test_help_wins_over_every_mistake(self):
        for command in ("import", "check", "explain", "builders"):
            about = tessel(command, "--help")
            self.assert_failed(about, 0, "")
            for mistake in (["--jobs", "0"], ["--format", "xml"], ["--format"], ["--loud"],
                            ["a", "b", "c"], ["--bundle"], ["-", "-"], ["--version"]):
                for arguments in ([command, *mistake, "--help"], [command, "-h", *mistake]):
                    with self.subTest(arguments=arguments):
                        done = tessel(*arguments)
                        self.assert_failed(done, 0, "")
                        self.assertEqual(done.stdout, about.stdout)
        for arguments in (["exprt", "--help"], ["--loud", "--help"]):
            self.assertEqual(tessel(*arguments).stdout, tessel("--help").stdout)
        self.assert_failed(tessel("import", "--", "--help"), 1,
                           "tessel: --help: No such file or directory\n")
        self.assertEqual(tessel("builders", "--", "--help").stdout,
                         tessel("builders", "--help").stdout)

    def test_bundles_that_are_none(self):
        text = self.file("text.so", "no library")
        empty = self.file("empty.so", "")
        for path in (text, empty, ORDINARY_LIBRARY):
            for command in ("import", "check", "explain", "builders"):
                with self.subTest(path=path, command=command):
                    done = tessel(command, "--bundle", path, given=b"{}")
                    message = done.stderr.decode()
                    self.assertEqual((done.returncode, done.stdout), (2, b""))
                    self.assertTrue(message.startswith(f"tessel: {path}: "), message)
                    self.assertEqual(message.count("\n"), 1, message)
                    self.assertGreater(len(message), len(f"tessel: {path}: \n"))

    @unittest.skipIf(RUNTIME_IS_EMBEDDED, "the embedded runtime looks at the marker for itself")
    def test_a_bundle_for_the_embedded_runtime_is_refused(self):
        marker = self.file("marker", "embedded_v1")
        bundle = str(self.folder / "marked.so")
        subprocess.run([OBJCOPY, "--add-section", f".tessel_runtime={marker}", BUNDLE, bundle],
                       check=True, timeout=SECONDS)
        for command in ("import", "check", "explain", "builders"):
            done = tessel(command, "--bundle", bundle, given=b"{}")
            self.assert_failed(done, 2, f"tessel: {bundle}: was built for the embedded service "
                                        "runtime, not CppMicroServices\n")

    def test_the_bundle_is_found_beside_the_tool_or_in_lib(self):
        places = {"beside": "bin", "in lib": "lib", "nowhere": "elsewhere"}
        for place, folder in places.items():
            with self.subTest(place=place):
                root = self.folder / place.replace(" ", "_")
                (root / "bin").mkdir(parents=True)
                (root / folder).mkdir(exist_ok=True)
                tool = root / "bin" / "tessel"
                os.link(TOOL, tool) if os.stat(TOOL).st_dev == os.stat(root).st_dev else \
                    tool.write_bytes(pathlib.Path(TOOL).read_bytes())
                tool.chmod(0o755)
                (root / folder / BUNDLE.name).write_bytes(BUNDLE.read_bytes())
                # The tool finds its other libraries from where it lies, too.
                done = subprocess.run([tool, "builders"], capture_output=True, timeout=SECONDS,
                                      check=False, cwd="/",
                                      env={**os.environ, "LD_LIBRARY_PATH": str(BUNDLE.parent)})
                if place == "nowhere":
                    self.assertEqual(done.stdout, b"")
                    self.assert_failed(done, 2, f"tessel: {BUNDLE.name}: there is no such bundle in "
                                                f"{root}/bin or {root}/lib; "
                                                "--bundle PATH says where it is\n")
                else:
                    self.assertEqual((done.returncode, done.stderr), (0, b""))

    @unittest.skipUnless(OWN_ALLOCATOR, "the tool was built with the system's allocator")
    def test_the_allocator_is_set_up_and_can_be_told_otherwise(self):
        for variables, large_pages in (({}, b"1"), ({"MIMALLOC_LARGE_OS_PAGES": "0"}, b"0")):
            with self.subTest(variables=variables):
                done = tessel("--version", env={**os.environ, "MIMALLOC_VERBOSE": "1", **variables})
                self.assertEqual(done.returncode, 0)
                self.assertIn(b"option 'large_os_pages': " + large_pages + b"\n", done.stderr)

    def test_whole_lines_are_answered_while_the_next_is_on_its_way(self):
        begun, rest = BUTTON[:7].encode(), BUTTON[7:].encode() + b"\n"
        for jobs in ("1", "4"):
            with self.subTest(jobs=jobs):
                with subprocess.Popen([TOOL, "import", "--ndjson", "--format", "json",
                                       "--jobs", jobs], bufsize=0, stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE) as process:
                    process.stdin.write((BUTTON + "\n").encode() * 3 + begun)
                    for answers in (3, 1):
                        for _ in range(answers):
                            ready, _, _ = select.select([process.stdout], [], [], SECONDS)
                            self.assertTrue(ready, "no answer")
                            json.loads(process.stdout.readline())
                        process.stdin.write(rest + begun)
                    process.stdin.close()
                    # What is left of the input is no JSON.
                    left = process.stdout.read().splitlines()
                    self.assertEqual([len(json.loads(line)["nodes"]) for line in left], [1, 0])
                    self.assertEqual(process.wait(SECONDS), 1)

    def test_fail_fast_answers_nothing_after_the_first_failed_line(self):
        for first_failed in (0, 1, 150, 2500):
            lines = [BUTTON] * 3000
            lines[first_failed] = lines[first_failed + 1] = "}"
            given = "\n".join(lines).encode()
            for jobs in ("1", "4"):
                with self.subTest(first_failed=first_failed, jobs=jobs):
                    done = tessel("import", "--ndjson", "--format", "json", "--fail-fast",
                                  "--jobs", jobs, given=given)
                    self.assert_failed(done, 1, f"tessel: -: line {first_failed + 1}, column 1: "
                                                "expected a value, found '}'\n")
                    answers = [json.loads(line)["document"] for line in done.stdout.splitlines()]
                    self.assertEqual(answers, [f"-:{n + 1}" for n in range(first_failed + 1)])

    def test_progress_shows_on_a_terminal_only_and_leaves_nothing(self):
        lines = self.file("lines.ndjson", (BUTTON + "\n") * 10)
        for arguments, kind, shown in ((["--ndjson"], "xterm", True), ([], "xterm", False),
                                       (["--ndjson"], "dumb", False),
                                       (["--ndjson"], None, False)):
            with self.subTest(arguments=arguments, kind=kind):
                leader, follower = self.terminal()
                variables = {name: value for name, value in os.environ.items() if name != "TERM"}
                if kind:
                    variables["TERM"] = kind
                with running("import", *arguments, stdout=subprocess.DEVNULL, stderr=follower,
                             env=variables) as process:
                    os.close(follower)
                    time.sleep(0.5)  # longer than the line waits before it shows
                    process.stdin.write((BUTTON + "\n").encode())
                    process.stdin.close()
                    seen = read_all(leader)
                    self.assertEqual(process.wait(SECONDS), 0)
                if shown:
                    self.assertRegex(seen, rb"^(\r\x1b\[K\d+ documents, 0 failed(\r\x1b\[K)?)*$")
                    self.assertTrue(seen == b"" or seen.endswith(b"\r\x1b[K"))
                    self.assertIn(b" documents, 0 failed", seen)
                else:
                    self.assertEqual(seen, b"")
        self.assertEqual(tessel("import", "--ndjson", lines, stdout=subprocess.DEVNULL).stderr, b"")

    def test_a_terminal_as_input_is_said_to_be_waited_for(self):
        file = self.file("document.json", BUTTON)
        for arguments, waits in ((["import"], True), (["import", file, "-"], True),
                                 (["import", "--ndjson"], True), (["explain"], True),
                                 (["import", file], False)):
            with self.subTest(arguments=arguments):
                leader, follower = self.terminal()
                with running(*arguments, stdin=follower) as process:
                    os.close(follower)
                    if waits:
                        self.assertEqual(process.stderr.readline(),
                                         b"tessel: waiting for JSON on standard input; Ctrl-D at "
                                         b"the start of a line ends it\n")
                        os.write(leader, BUTTON.encode() + b"\n\x04")
                    self.assertIn(b"ButtonNode", process.stdout.read())
                    self.assertEqual(process.stderr.read(), b"")
                    self.assertEqual(process.wait(SECONDS), 0)


SIGNALS = (signal.SIGINT, signal.SIGTERM)
STOPPED_IMPORTS = [(["import", "--ndjson", "--format", "json", "--jobs", jobs], number)
                   for jobs in ("1", "2") for number in SIGNALS]
STOPPED_COMMANDS = [(["explain", "--ndjson", "--format", "json"], number)
                    for number in SIGNALS] + STOPPED_IMPORTS


@unittest.skipIf(THREAD_SANITIZER, "ThreadSanitizer keeps a signal until the call has ended")
class Stop(ProcessTest):
    """What SIGINT and SIGTERM do."""

    LINE = (BUTTON + "\n").encode()

    def assert_stopped(self, process, number, answered, last=None):
        message = f"tessel: stopped; documents answered: {answered}"
        message += f", the last one {last}\n" if last else "\n"
        self.assertEqual(process.stderr.read().decode(), message)
        self.assertEqual(process.wait(SECONDS), -number)

    def test_while_it_waits_for_a_line(self):
        for command, number in STOPPED_COMMANDS:
            for answered, last in ((0, None), (2, "-:2")):
                with self.subTest(command=command, signal=number, answered=answered), \
                     running(*command) as process:
                    for _ in range(answered):
                        process.stdin.write(self.LINE)
                        json.loads(process.stdout.readline())
                    process.stdin.write(self.LINE[:5])
                    wait_until(lambda: bytes_in(process.stdin) == 0)
                    process.send_signal(number)
                    self.assertEqual(process.stdout.read(), b"")
                    self.assert_stopped(process, number, answered, last)

    def test_while_it_waits_for_somebody_to_open_a_pipe(self):
        file, pipe = self.file("document.json", BUTTON), str(self.folder / "pipe")
        os.mkfifo(pipe)
        for number in SIGNALS:
            for jobs in ("1", "2"):
                with self.subTest(signal=number, jobs=jobs):
                    with running("import", "--format", "json", "--jobs", jobs, file,
                                 pipe) as process:
                        answer = b""
                        while not answer.endswith(b"\n}\n"):
                            answer += os.read(process.stdout.fileno(), 65536)
                        process.send_signal(number)
                        self.assertEqual(process.stdout.read(), b"")
                        self.assert_stopped(process, number, 1, file)

    def test_while_lines_come_and_go_without_end(self):
        for command, number in STOPPED_COMMANDS:
            with self.subTest(command=command, signal=number), \
                 subprocess.Popen(["yes", BUTTON], stdout=subprocess.PIPE) as lines:
                with running(*command, stdin=lines.stdout) as process:
                    lines.stdout.close()
                    seen = process.stdout.read(1)
                    while seen.count(b"\n") < 500:
                        seen += process.stdout.read(65536)
                    process.send_signal(number)
                    while part := process.stdout.read(65536):
                        seen += part
                    self.assertTrue(seen.endswith(b"}\n"), seen[-100:])
                    answered = seen.count(b"\n")
                    self.assert_stopped(process, number, answered,
                                        f"-:{answered}")
                lines.kill()

    @contextlib.contextmanager
    def blocked_in_a_write(self, command):
        """The tool, with an answer that is far longer than what a pipe takes."""
        reading, writing = os.pipe()
        with running(*command, stdout=writing) as process, os.fdopen(reading, "rb") as results:
            process.stdin.write(("[" + ",".join([BUTTON] * 3000) + "]\n").encode())
            wait_until(lambda: not select.select([], [writing], [], 0)[1])
            os.close(writing)
            yield process, results

    def test_an_answer_that_is_being_written_is_finished(self):
        for command, number in STOPPED_IMPORTS:
            with self.subTest(command=command, signal=number), \
                 self.blocked_in_a_write(command) as (process, results):
                process.send_signal(number)
                self.assertEqual(json.loads(results.read())["summary"]["built"], 3000)
                self.assert_stopped(process, number, 1, "-:1")

    @unittest.skipUnless(os.path.exists("/proc/self/status"), "nothing tells that it is blocked")
    def test_an_answer_is_finished_of_which_nothing_could_be_written_yet(self):
        for number in SIGNALS:
            with self.subTest(signal=number):
                reading, writing = os.pipe()
                before = 0
                while select.select([], [writing], [], 0)[1]:
                    before += os.write(writing, b" " * select.PIPE_BUF)
                with running("import", "--ndjson", "--format", "json",
                             stdout=writing) as process, os.fdopen(reading, "rb") as results:
                    os.close(writing)
                    process.stdin.write(self.LINE)
                    wait_until(lambda: bytes_in(process.stdin) == 0)
                    status = pathlib.Path(f"/proc/{process.pid}/status")
                    wait_until(lambda: "State:\tS" in status.read_text(encoding="utf-8"))
                    process.send_signal(number)
                    wait_until(lambda: re.search(r"ShdPnd:\s0+\n",
                                                 status.read_text(encoding="utf-8")))
                    self.assertEqual(json.loads(results.read()[before:])["summary"]["built"], 1)
                    self.assert_stopped(process, number, 1, "-:1")

    def test_a_second_signal_ends_it_at_once(self):
        for command, number in STOPPED_IMPORTS:
            with self.subTest(command=command, signal=number), \
                 self.blocked_in_a_write(command) as (process, _):
                # Two that come at the same time are one.
                wait_until(lambda: process.send_signal(number) or process.poll() is not None)
                self.assertEqual(process.returncode, -number)
                self.assertEqual(process.stderr.read(), b"tessel: -:1: the answer is cut off\n")

    def test_what_is_ignored_at_the_start_stays_ignored(self):
        for number in SIGNALS:
            with self.subTest(signal=number):
                with running("import", "--ndjson", "--format", "json",
                             preexec_fn=lambda: signal.signal(number, signal.SIG_IGN)) as process:
                    for _ in range(2):
                        process.stdin.write(self.LINE)
                        json.loads(process.stdout.readline())
                        process.send_signal(number)
                    process.stdin.close()
                    self.assertEqual(process.wait(SECONDS), 0)


if __name__ == "__main__":
    unittest.main()
