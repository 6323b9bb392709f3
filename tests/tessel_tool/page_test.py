"""`tessel import --format html` and `-o`, as a process: one page about all documents, and where it goes."""

import json
import os
import pathlib
import re
import signal
import stat
import subprocess
import tempfile
import time
import unittest

TOOL = os.environ["TOOL"]
EXAMPLES = pathlib.Path(os.environ["EXAMPLES"])
SECONDS = 120

BUTTON = '{"className": "button", "controlId": "run"}'
WRONG = '{"className": "button", "controlId": "no", "text": 1}'
OWN_BYTES = 100_000
BYTES_PER_BYTE = 8


def tessel(*arguments, given=b"", **options):
    return subprocess.run([TOOL, "import", *arguments], input=given, capture_output=True,
                          timeout=SECONDS, check=False, **options)


def wait_until(holds):
    end = time.monotonic() + SECONDS
    while not holds():
        if time.monotonic() > end:
            raise AssertionError("it never came")
        time.sleep(0.01)


class PageTest(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def file(self, name, content):
        (self.folder / name).write_text(content, encoding="utf-8")
        return name

    def page(self, *arguments, status=0, **options):
        done = tessel("--format", "html", *arguments, cwd=self.folder, **options)
        self.assertEqual(done.returncode, status, done.stderr)
        return done.stdout.decode()


class Documents(PageTest):
    def test_one_document_is_the_page(self):
        page = self.page(self.file("a.json", f"[{BUTTON},\n{WRONG}]"), status=1)
        self.assertIn('<h1 id="d1-name"><bdi>a.json</bdi></h1>', page)
        self.assertIn("1 of 2 controls arrived", page)
        self.assertIn("<tr><th>button<td>1", page)
        self.assertIn('<a href="#d1-p1">Error 2:52</a>', page)
        self.assertEqual(page.count("<section"), 1)
        self.assertNotIn('class="contents"', page)

    def test_what_is_wrong_stands_in_its_place(self):
        page = self.page(self.file("a.json", f"[{WRONG},\n{BUTTON},\n{WRONG}]"), status=1)
        found = re.findall(r'id="(d1-[cp]\d+)"', page)
        self.assertEqual(found, ["d1-p1", "d1-c2", "d1-p2"])

    def test_tasks_and_what_their_header_passes_over_are_counted(self):
        task = '{"className": "LumoAppIntegratedInlineNode", "instanceId": "t"}'
        text = '{"className": "TextNode", "text": "prose"}'
        mark = '{"className": "X", "controlId": "x"}'
        for children, verdict, tasks in (
                ([task, text], "all 2 controls arrived", 1),
                ([task, task, BUTTON], "3 of 4 controls arrived", 2),
                ([task, '{"className": "button"}'], "2 of 3 controls arrived", 1),
                ([task, mark, BUTTON], "2 of 4 controls arrived", 1),
                ([task, "7", '{"a": 1}'], "all 2 controls arrived", 1)):
            with self.subTest(children):
                header = f'{{"className": "LumoAppLineNode", "anchorId": "a", "children": [{", ".join(children)}]}}'
                page = self.page(self.file("a.json", header))
                self.assertIn(verdict, page)
                self.assertIn(f"<tr><th>task<td>{tasks}", page)

    def test_members_are_shown_in_the_order_of_the_text(self):
        page = self.page(self.file("a.json", f'{{"b": {BUTTON},\n"a": {BUTTON.replace("run", "x")}}}'))
        self.assertEqual(re.findall(r'data-pointer="([^"]*)"', page), ["/b", "/a"])

    def test_controls_of_one_line_share_it(self):
        one = '{"className": "button", "controlId": "%s", "text": "%s", "startColumn": %d, "endColumn": %d}'
        line = [one % ("a", "x = 1", 0, 1), one % ("b", "x = 1", 4, 5), one % ("c", "y", 0, 1)]
        page = self.page(self.file("a.json", f'[{", ".join(line)}]'))
        self.assertEqual(page.count('<div class="line">'), 2)
        self.assertIn("</span><span> = </span><span", page)

    def test_several_documents_have_contents(self):
        files = [self.file("a.json", BUTTON), self.file("b.json", WRONG), self.file("c.json", "[1,"),
                 "missing.json"]
        done = tessel("--format", "html", *files, cwd=self.folder)
        page = done.stdout.decode()
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr.decode(),
                         "tessel: c.json: line 1, column 1: unclosed array\n"
                         "tessel: missing.json: No such file or directory\n")
        self.assertEqual(re.findall(r'<section class="document" id="(d\d)"', page),
                         ["d1", "d2", "d3", "d4"])
        self.assertIn('<a href="#d1"><bdi>a.json</bdi></a> <span class="what">all 1 control arrived</span>',
                      page)
        self.assertIn('<a href="#d3-p1"><bdi>c.json</bdi> Error 1:1</a>', page)
        self.assertIn('data-code="syntax"', page)
        self.assertIn('id="d4-p1" data-code="unreadable"', page)
        self.assertIn("3 documents failed", page)
        self.assertEqual(re.findall(r'<p class="(verdict[^"]*)">', page),
                         ["verdict bad", "verdict", "verdict bad", "verdict bad", "verdict bad"])
        for jobs in ("2", "7"):
            self.assertEqual(self.page("--jobs", jobs, *files, status=1), page)

    def test_lines_that_failed_are_shown_up_to_200(self):
        lines = [BUTTON, "", WRONG] * 250
        for jobs in ("1", "3"):
            page = self.page("--ndjson", "--jobs", jobs, status=1, given="\n".join(lines).encode())
            found = re.findall(r'<h2 id="d\d+-name"><bdi>-:(\d+)<', page)
            self.assertEqual(found, [str(3 * number + 3) for number in range(200)])
            self.assertIn("250 of 500 controls arrived", page)
            self.assertIn("250 errors; 250 lines failed", page)
            self.assertIn("and 50 more lines that failed or lost a control", page)

    def test_no_lines_at_all(self):
        page = self.page("--ndjson")
        self.assertIn("no controls", page)
        self.assertNotIn("<nav", page)

    def test_lines_that_lost_a_control_are_shown(self):
        unknown = '{"className": "buton"}'
        doubtful = '{"className": "button", "startColumn": 5, "endColumn": 3}'
        page = self.page("--ndjson", given="\n".join([BUTTON, unknown, doubtful, "[]"]).encode())
        self.assertEqual(re.findall(r'<h2 id="d\d+-name"><bdi>([^<]*)<', page), ["-:2"])
        self.assertIn("2 of 3 controls arrived", page)
        self.assertIn("1 line with warnings only not shown", page)
        self.assertIn("<tr><th>not arrived<td>1", page)
        self.assertRegex(page, r"<strong>did not arrive</strong> <code>unknown-class<")

    def test_what_did_not_arrive_is_said_in_words(self):
        page = self.page(self.file("a.json", f"[{WRONG}, {BUTTON}]"), status=1)
        self.assertEqual(page.count("<strong>did not arrive</strong>"), 1)
        self.assertIn("<tr><th>button<td>1<tr><th>not arrived<td>1", page)
        self.assertNotIn("not arrive", self.page(self.file("b.json", f"[{BUTTON}]")))

    def test_documents_that_cannot_be_read_come_first(self):
        files = [self.file("a.json", BUTTON), self.file("b.json", BUTTON), self.file("c.json", "[1,")]
        page = self.page(*files, status=1)
        self.assertIn("1 of 3 documents could not be read; in the others all 2 controls arrived", page)
        page = self.page("missing", "c.json", status=1)
        self.assertIn(">2 of 2 documents could not be read</p>", page)

    def test_a_line_of_code_is_the_same_with_records(self):
        one = '{"className": "button", "controlId": "%s", "text": "x = 1", "startColumn": %s, "endColumn": %d}'
        self.file("a.json", "[%s]" % ", ".join(
            [one % ("a", 0, 1), one % ("b", '"2"', 3), one % ("c", 4, 5)]))
        for options in ([], ["--log"]):
            page = self.page(*options, "a.json", status=1)
            self.assertEqual(page.count('<div class="line">'), 1)
            self.assertIn("</span><span> = </span><span", page)
            self.assertEqual(page.count("what did not arrive"), len(options))

    def test_only_elements_of_an_array_share_a_line(self):
        one = '{"className": "button", "text": "x = 1"}'
        for text, lines in ((f"[{one}, {one}]", 1), (f"[{one}, 7, {one}]", 1),
                            (f'{{"1": {one}, "2" : {one}}}', 2), (f"[[{one}], [{one}]]", 2)):
            page = self.page(given=text.encode())
            self.assertEqual(page.count('<div class="line">'), lines, text)

    def test_a_line_of_very_many_controls_goes_on(self):
        one = '{"className": "button", "text": "x = 1"}'
        page = self.page(given=f"[{', '.join([one] * 101)}]".encode())
        self.assertEqual(page.count('<div class="line">'), 3)
        self.assertEqual(page.count(">continued"), 2)

    def test_the_page_ends_with_the_first_error_that_was_asked_for(self):
        page = self.page("--fail-fast", self.file("a.json", f"[{BUTTON}, {WRONG}, {BUTTON}]"),
                         self.file("b.json", BUTTON), status=1)
        self.assertIn("stopped at the first error: nothing after it was imported, and only problems "
                      "are told of it", page)
        self.assertEqual(len(re.findall(r'class="control"', page)), 1)
        self.assertNotIn("b.json", page)

    def test_records_stand_under_their_control(self):
        page = self.page("--log", self.file("a.json", f"[{BUTTON}, {WRONG}]"), status=1)
        logs = re.findall(r'<ol class="log">(.*?)</ol>', page, re.DOTALL)
        self.assertEqual(len(logs), 2)
        tree = tessel("--log", "a.json", cwd=self.folder).stdout.decode()
        for log, control in zip(logs, ("run", "no")):
            self.assertIn(control, log)
            for record in re.findall(r"<li>([^<\n]*)", log):
                self.assertIn(record.replace("&lt;", "<").replace("&amp;", "&"), tree)

    def test_columns_are_told_as_they_were_set(self):
        one = '{"className": "button", "controlId": "%s", "text": "0123456789ABCDEF", "startColumn": %d, "endColumn": %d}'
        page = self.page(self.file("a.json", f'[{one % ("a", 0, 10)}, {one % ("b", 5, 15)}, {one % ("c", 7, 200)}]'))
        self.assertEqual(re.findall(r'covers columns ([^<]*)<code>([^<]*)', page),
                         [("0 to 10: ", "0123456789"), ("5 to 15: ", "56789ABCDE"), ("7 to 200: ", "789ABCDEF")])
        self.assertEqual(re.findall(r'<li class="note" dir="auto">([^<]*)', page),
                         ["button b: columns 5 to 15 overlap those of another control",
                          "button c: columns 7 to 200 go beyond the line, which ends at 16",
                          "button c: columns 7 to 200 overlap those of another control"])

    def test_numbers_of_lines_stand_under_each_other(self):
        page = self.page(self.file("a.json", "\n" * 8 + '{"className":\n"button"}'))
        self.assertIn('<pre class="source"> 9 | {"className":\n10 | "button"}</pre>', page)

    def test_lines_keep_their_numbers(self):
        page = self.page(self.file("a.json", f'[\r\n    {{"className": "button",\r\n      "text": "x"}}]'))
        self.assertIn('<pre class="source">2 | {"className": "button",\n3 |   "text": "x"}</pre>', page)

    def test_the_same_bytes_twice(self):
        for example in sorted(EXAMPLES.glob("*.json")):
            self.assertEqual(self.page(str(example), status=example.name != "analysis.json"),
                             self.page(str(example), status=example.name != "analysis.json"))


class Size(PageTest):
    def assert_within_limit(self, *arguments, bytes_read, status, **options):
        page = self.page(*arguments, status=status, **options)
        self.assertLessEqual(len(page.encode()), OWN_BYTES + BYTES_PER_BYTE * bytes_read)
        self.assertTrue(page.endswith("</section>\n</main></body></html>\n"))
        return page

    def test_documents_of_which_little_can_be_shown(self):
        count = 8000
        for name, text, status in (
                ("buttons", "[" + ",".join(['{"className":"button"}'] * count) + "]", 0),
                ("ids", "[" + ",".join(['{"className":"button","controlId":"a"}'] * count) + "]", 0),
                ("errors", "[" + ",".join(['{"className":7}'] * count) + "]", 1),
                ("duplicates", "{" + ",".join(['"a":1'] * count) + "}", 0),
                ("controls", "[" + ",".join(["\u0001<&\""] * 9) + "]", 1),
                ("escapes", json.dumps([{"className": "button", "text": "\u202e" * 4000}]), 0)):
            with self.subTest(name):
                page = self.assert_within_limit(given=text.encode(), bytes_read=len(text.encode()),
                                                status=status)
                if name in ("buttons", "errors", "duplicates"):
                    self.assertIn("left out: the page would be too large", page)
                linked = set(re.findall(r'href="#(d1-p\d+)"', page))
                self.assertLessEqual(linked, set(re.findall(r'id="(d1-p\d+)"', page)))

    def test_details_that_are_left_out_are_missed_in_place(self):
        slider = {"className": "LumoControlNode", "controlId": "b",
                  "context": {"type": "slider", "data": {"text": "N"}}}
        text = json.dumps([slider] * 400, separators=(",", ":"))
        page = self.assert_within_limit("--log", given=text.encode(), bytes_read=len(text), status=0)
        self.assertEqual(page.count('class="control"'), 400)
        whole = page.count('<pre class="source">')
        tables = page.count('class="properties"')
        self.assertGreater(whole, 0)
        self.assertEqual(tables - whole, page.count("JSON and records left out: the page would be too large"))
        self.assertIn(">details left out: the page would be too large", page)

    def test_there_are_details_as_long_as_there_is_room(self):
        slider = {"className": "LumoControlNode", "controlId": "b",
                  "context": {"type": "slider", "data": {"text": "N"}}}
        text = json.dumps([slider] * 50, separators=(",", ":"))
        page = self.assert_within_limit(given=text.encode(), bytes_read=len(text), status=0)
        self.assertGreater(page.count('class="properties"'), 40)
        self.assertGreater(len(page), 0.9 * (OWN_BYTES + BYTES_PER_BYTE * len(text)))
        text = json.dumps([slider] * 3, indent=2)
        names = [self.file(f"{number}.json", text) for number in range(3)]
        page = self.assert_within_limit("--log", *names, bytes_read=3 * len(text), status=0)
        self.assertEqual(page.count('<pre class="source">'), 9)
        self.assertNotIn("left out", page)

    def test_each_of_200_lines_has_a_section(self):
        for line in (WRONG.replace(" ", ""), '{"className":"button","text":7}', '{"className":7}', "[1,"):
            text = "\n".join([line] * 250)
            page = self.assert_within_limit("--ndjson", given=text.encode(), bytes_read=len(text), status=1)
            self.assertEqual(len(re.findall(r'<section class="document" id="(d\d+)"', page)), 200, line)
            self.assertEqual(len(re.findall(r'<div class="problem error" id="d\d+-p1"', page)), 200, line)

    def test_all_small_buttons_are_there(self):
        text = "[" + ",".join(['{"className":"button"}'] * 3000) + "]"
        page = self.assert_within_limit(given=text.encode(), bytes_read=len(text), status=0)
        self.assertEqual(page.count('class="control"'), 3000)

    def test_examples_are_shown_whole(self):
        for example in sorted(EXAMPLES.glob("*.json")):
            page = self.assert_within_limit(str(example), bytes_read=example.stat().st_size,
                                            status=example.name != "analysis.json")
            self.assertNotIn("left out", page)
            self.assertLess(len(page), 8 * example.stat().st_size)

    def test_many_small_documents(self):
        names = []
        for number in range(1500):
            names.append(self.file(f"{'n' * 100}{number}", "{}"))
        page = self.page(*names)
        self.assertLessEqual(len(page), OWN_BYTES + BYTES_PER_BYTE * 2 * len(names))
        self.assertRegex(page, r"and \d+ more documents")
        self.assertLessEqual(set(re.findall(r'href="#(d\d+)"', page)),
                             set(re.findall(r'<section class="document" id="(d\d+)"', page)))


class ResultFile(PageTest):
    def test_every_format_goes_to_the_file(self):
        self.file("a.json", f"[{BUTTON}, {WRONG}]")
        for form in ("tree", "json", "html"):
            expected = tessel("--format", form, "a.json", cwd=self.folder)
            done = tessel("--format", form, "a.json", "-o", "out", cwd=self.folder)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (1, b"", expected.stderr))
            self.assertEqual((self.folder / "out").read_bytes(), expected.stdout)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["a.json", "out"])
        done = tessel("a.json", "--output", "-", cwd=self.folder)
        self.assertIn(b"ButtonNode", done.stdout)

    def test_the_file_may_be_the_input(self):
        self.file("a.json", BUTTON)
        (self.folder / "a.json").chmod(0o640)
        (self.folder / "link").symlink_to("a.json")
        done = tessel("--format", "json", "a.json", "-o", "link", cwd=self.folder)
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(json.loads((self.folder / "a.json").read_text())["summary"]["built"], 1)
        self.assertTrue((self.folder / "link").is_symlink())
        self.assertEqual(stat.S_IMODE((self.folder / "a.json").stat().st_mode), 0o640)

    def test_files_beside_it_stay(self):
        for name in ("a.json.part", "out.part"):
            self.file(name, BUTTON)
        (self.folder / "link.part").symlink_to("elsewhere")
        (self.folder / "folder.part").mkdir()
        for path in ("a.json", "out", "link", "folder"):
            done = tessel("--format", "json", "a.json.part", "-o", path, cwd=self.folder)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()),
                         ["a.json", "a.json.part", "folder", "folder.part", "link", "link.part", "out",
                          "out.part"])
        self.assertEqual((self.folder / "a.json.part").read_text(), BUTTON)
        self.assertEqual((self.folder / "out.part").read_text(), BUTTON)

    def test_a_link_that_leads_to_nothing_stays(self):
        (self.folder / "there").mkdir()
        (self.folder / "link").symlink_to("there/second")
        (self.folder / "there/second").symlink_to("new")
        self.page("-o", "link", given=BUTTON.encode())
        self.assertTrue((self.folder / "link").is_symlink())
        self.assertIn("1 control arrived", (self.folder / "there/new").read_text())
        (self.folder / "loop").symlink_to("loop")
        done = tessel("-o", "loop", cwd=self.folder, given=BUTTON.encode())
        self.assertEqual((done.returncode, done.stderr),
                         (1, b"tessel: loop: Too many levels of symbolic links\n"))

    def test_a_file_has_a_name(self):
        done = tessel("-o", "", cwd=self.folder, given=BUTTON.encode())
        self.assertEqual(done.returncode, 2)
        self.assertIn(b"a file has a name", done.stderr)
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_a_signal_leaves_nothing(self):
        for given in (b"", (BUTTON + "\n").encode() * 2000):
            with subprocess.Popen([TOOL, "import", "--ndjson", "-o", "out"], cwd=self.folder,
                                  stdin=subprocess.PIPE, stderr=subprocess.DEVNULL) as process:
                process.stdin.write(given)
                process.stdin.flush()
                part = self.folder / "out.part"
                wait_until(lambda: part.exists() and (not given or part.stat().st_size != 0))
                process.send_signal(signal.SIGTERM)
                self.assertEqual(process.wait(SECONDS), -signal.SIGTERM)
            self.assertEqual(list(self.folder.iterdir()), [])

    def test_a_file_that_cannot_be_written(self):
        for path, reason in ((".", "Is a directory"), ("no/such/file", "No such file or directory"),
                             ("/dev/full", "No space left on device")):
            for form in ("tree", "html"):
                done = tessel("--format", form, "-o", path, cwd=self.folder, given=BUTTON.encode())
                self.assertEqual((done.returncode, done.stdout), (1, b""))
                self.assertRegex(done.stderr.decode(), f"tessel: {re.escape(path)}: {reason}\n$")
        self.assertEqual(list(self.folder.iterdir()), [])

    def test_a_failure_leaves_the_file_as_it_was(self):
        self.file("out", "before")
        done = tessel("--bundle", "/dev/null", "-o", "out", cwd=self.folder, given=BUTTON.encode())
        self.assertEqual(done.returncode, 2)
        self.assertEqual((self.folder / "out").read_text(), "before")
        self.assertEqual([path.name for path in self.folder.iterdir()], ["out"])


if __name__ == "__main__":
    unittest.main()
