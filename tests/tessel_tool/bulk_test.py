"""Many lines at once: what the tool answers does not depend on how many it works on at a time, nor on how
many runs the lines are dealt out to."""

import copy
import json
import os
import random
import subprocess
import unittest

TOOL = os.environ["TOOL"]
CONTROLS = os.environ["CONTROLS"]
LINES = 2500
SECONDS = 250
SEED = 1  # of the lines; any number will do, but always the same

BAD_LINES = [
    b'{"className":"button",',
    b'{"className":"button"}}',
    b'["\xff"]',
    b'["\\ud800"]',
    b"[1e999]",
    b"[" * 1001,
    b"nul",
    b"\xef\xbb\xbf{}",
]
BLANK_LINES = [b"", b"   ", b"\t\r"]


def objects_in(value):
    """The objects of a value that have a class name, children of such objects included."""
    if isinstance(value, dict):
        if "className" in value:
            yield value
            yield from objects_in(value.get("children"))
            return
        value = list(value.values())
    if isinstance(value, list):
        for element in value:
            yield from objects_in(element)


def changed(rng, value):
    """The value with one of its members, however deep, of another type or gone."""
    value = copy.deepcopy(value)
    place = value
    while True:
        key = rng.choice(sorted(place))
        if not isinstance(place[key], dict) or not place[key]:
            break
        place = place[key]
    if rng.random() < 0.3:
        del place[key]
    else:
        place[key] = rng.choice([None, True, 7.5, "a text", [], {}, "\u00fc\U0001F680" * 50])
    return value


def generated(rng, controls):
    """Lines of the example's controls, with and without mistakes, and lines that are no JSON."""
    for number in range(LINES):
        chance = rng.random()
        if chance < 0.05:
            yield rng.choice(BAD_LINES)
        elif chance < 0.08:
            yield rng.choice(BLANK_LINES)
        else:
            # Work of very different size.
            count = 40 if number % 100 == 0 else rng.randrange(4)
            line = [changed(rng, control) if rng.random() < 0.4 else control
                    for control in rng.choices(controls, k=count)]
            yield json.dumps(line, ensure_ascii=rng.random() < 0.5).encode()


def tessel(given, *arguments, command="import"):
    done = subprocess.run([TOOL, command, "--ndjson", *arguments], input=given,
                          capture_output=True, timeout=SECONDS, check=False)
    return done.returncode, done.stdout, done.stderr


def classes_in(answers):
    return {node["class"] for answer in answers for node in answer["nodes"]}


class Bulk(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(CONTROLS, encoding="utf-8") as document:
            controls = list(objects_in(json.load(document)))
        whole = tessel(b"\n".join(json.dumps(each).encode() for each in controls), "--format", "json")
        cls.classes = classes_in(map(json.loads, whole[1].splitlines()))
        lines = list(generated(random.Random(SEED), controls))
        cls.documents = sum(1 for line in lines if line.strip())
        cls.given = b"\n".join(lines) + b"\n"
        cls.lines = cls.given.splitlines(keepends=True)

    def assert_same(self, *arguments):
        status, output, errors = tessel(self.given, "--jobs", "1", *arguments)
        self.assertEqual(status, 1)  # there are lines that fail
        done = tessel(self.given, "--jobs", "8", *arguments)
        self.assertEqual((done[0], done[2]), (status, errors))
        # Not shown in full: it is megabytes.
        self.assertTrue(done[1] == output, "eight jobs answer something else than one")
        return output

    def test_json(self):
        answers = [json.loads(line) for line in self.assert_same("--format", "json").splitlines()]
        self.assertEqual(len(answers), self.documents)
        steps = [error["step"] for answer in answers for error in answer["errors"]]
        self.assertEqual(set(steps), {"parse", "canBuild", "build"})
        self.assertEqual(classes_in(answers), self.classes)
        self.assertGreater(sum(len(answer["nodes"]) for answer in answers), self.documents)

    def test_json_with_the_log(self):
        output = self.assert_same("--format", "json", "--log")
        answers = [json.loads(line) for line in output.splitlines()]
        self.assertEqual(len(answers), self.documents)
        for answer in answers:
            # Each object is asked about by at least one builder, in the records of its own answer.
            asked = [record for record in answer["log"] if record.startswith("Checking if can build")]
            self.assertGreaterEqual(len(asked), answer["summary"]["objects"])

    def test_tree_with_the_log(self):
        self.assertGreater(self.assert_same("--format", "tree", "--log").count(b"\n"),
                           self.documents)

    def test_parts_that_know_their_first_line(self):
        part = 300
        for command in "import", "check":
            whole = tessel(self.given, "--format", "json", command=command)
            parts = [tessel(b"".join(self.lines[begin:begin + part]), "--format", "json",
                            "--first-line", str(begin + 1), command=command)
                     for begin in range(0, len(self.lines), part)]
            self.assertTrue(b"".join(output for _, output, _ in parts) == whole[1],
                            f"parts answer something else than the whole: {command}")
            self.assertEqual(b"".join(errors for _, _, errors in parts), whole[2])


if __name__ == "__main__":
    unittest.main()
