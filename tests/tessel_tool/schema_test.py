#!/usr/bin/env python3
"""Holds the JSON Schema to what an import builds: random values, near to what the builders claim, are
accepted exactly where an import tells no error. The strict one refuses of these what has something
unknown in it, and nothing that `tessel check` has nothing against.

Not compared, because a schema cannot say it, and so never made here: nesting beyond the limit, numbers
that no double holds, ill-formed text; and for the strict one a class name that is two edits away from
a known one. --write FILE leaves the values and whether they are built, as lines of JSON, for other
validators, and does nothing else.
"""

import argparse
import json
import pathlib
import random
import subprocess
import sys
import tempfile

from random_documents import KINDS, Maker

FILES = (("tessel.schema.json", ()), ("tessel.strict.schema.json", ("--strict",)))
NAMES = sorted({"className", "context", "data", "type", "x", "children", "controlId", "label"}.union(
    *(fields for _, fields in KINDS.values())))
CLASSES = ["TextNode", "slider", "Double", "", "LumoControlNode", "sPINNER", "checkboxControlNode",
           *sorted(KINDS)]


class Spoiler(Maker):
    """Makes values that are mostly right."""

    def __init__(self, chance):
        super().__init__(chance)
        self.wrong = chance.choice([0, 0.01, 0.03, 0.1])
        self.gone = chance.choice([0.01, 0.3, 0.7])

    def anything(self, depth=2):
        pick = self.chance.randrange(9 if depth else 6)
        if pick < 6:
            return [None, True, False, self.chance.choice([0, 1, -2.5, 1e300, 65536]), "",
                    self.chance.choice(["text", "ä\U0001f600", "Double", *CLASSES])][pick]
        if pick == 6:
            return self.several(lambda: self.anything(depth - 1))
        if pick == 7:
            return {self.chance.choice(NAMES): self.anything(depth - 1)
                    for _ in range(self.chance.randrange(3))}
        return self.spoilt(self.any_control()) if depth > 1 else {}

    def spoilt(self, value):
        """The value with parts of it replaced, taken out and added."""
        if self.often(self.wrong):
            return self.anything()
        if isinstance(value, list):
            return [self.spoilt(element) for element in value]
        if not isinstance(value, dict):
            return value
        members = {name: self.spoilt(member) for name, member in value.items()
                   if not self.often(self.wrong if name in ("className", "type", "label", "value",
                                                            "data") else self.gone)}
        while self.often(0.1):
            members[self.chance.choice(NAMES)] = self.chance.choice(["text", 2, self.anything()])
        return members

    def document(self):
        pick = self.chance.randrange(10)
        if pick < 6:
            return self.spoilt(self.any_control())
        if pick < 7:
            return self.anything()
        around = {"children": self.several(lambda: self.spoilt(self.any_control())),
                  "$schema": "tessel.schema.json"}
        if self.often(0.5):
            around["className"] = self.chance.choice(["TextNode", 1, None, *CLASSES])
        return [around] if self.often(0.5) else around


def run(tool, *arguments, **options):
    return subprocess.run([tool, *arguments], capture_output=True, text=True, encoding="utf-8",
                          timeout=600, check=False, **options)


def schema_text(tool, *arguments):
    done = run(tool, "schema", *arguments)
    assert done.returncode == 0, done.stderr
    return done.stdout


def imported(tool, made, *arguments):
    """Whether each value is built without an error."""
    done = run(tool, "import", "--ndjson", "--format", "json", *arguments,
               input="\n".join(map(json.dumps, made)))
    built = [not json.loads(line)["errors"] for line in done.stdout.splitlines()]
    assert len(built) == len(made), (len(built), len(made), done.stderr)
    return built


UNKNOWN = {"unknown-class", "unknown-type", "unknown-member"}


class Test:
    def __init__(self, options):
        self.tool = options.tool
        self.options = options
        self.failures = 0

    def expect(self, good, says):
        if good:
            return
        self.failures += 1
        if self.failures <= 10:
            print(f"FAILED {says}", file=sys.stderr)

    def validator(self, *arguments):
        # Here, so that --write does without it.
        from jsonschema import Draft202012Validator
        schema = json.loads(schema_text(self.tool, *arguments))
        Draft202012Validator.check_schema(schema)
        return Draft202012Validator(schema)

    def the_tree_holds_what_the_tool_writes(self):
        for name, arguments in FILES:
            file = self.options.folder / name
            text = schema_text(self.tool, *arguments)
            self.expect(file.is_file() and file.read_text(encoding="utf-8") == text,
                        f"{file} is not what the tool writes; ./dev update writes it")

    def random_values_are_accepted_where_they_are_built(self, made, built):
        plain, strict = self.validator(), self.validator("--strict")
        done = run(self.tool, "check", "--ndjson", "--format", "json",
                   input="\n".join(map(json.dumps, made)))
        answers = [json.loads(line) for line in done.stdout.splitlines()]
        strictly = {True: 0, False: 0}
        for value, good, answer in zip(made, built, answers, strict=True):
            codes = {problem["code"] for problem in answer["problems"]}
            text = json.dumps(value)
            self.expect(plain.is_valid(value) == good,
                        f"{'built' if good else 'not built'}, but the schema says otherwise: {text}")
            accepted = strict.is_valid(value)
            strictly[accepted] += good
            self.expect(not accepted or (good and not codes & UNKNOWN), f"strictly accepted: {text}")
            self.expect(accepted or codes, f"strictly refused, and check has nothing against {text}")
        share = sum(built) / len(built)
        self.expect(0.2 < share < 0.9, f"{share} of the values are built: too one-sided")
        self.expect(min(strictly.values()) > 0.1 * len(made), f"too one-sided: {strictly}")
        print(f"{len(made)} values, {sum(built)} of them built, {strictly[True]} of those strictly right")

    def strict_rows(self):
        strict = self.validator("--strict")
        slider = {"className": "LumoControlNode", "controlId": "a",
                  "context": {"type": "slider", "data": {"minimum": 0}}}
        for accepted, value in (
                (True, slider), (True, {"children": [slider], "$schema": "x", "any": 1}),
                (True, {"className": "button"}), (True, 7),
                (False, {**slider, "controlID": "a"}),
                (False, {**slider, "context": {**slider["context"], "kind": 1}}),
                (False, {**slider, "context": {"type": "Slider", "data": {}}}),
                (False, {**slider, "context": {"type": "slider", "data": {"min": 0}}}),
                (False, {"children": [{**slider, "x": 0}]}),
                # Prose is passed over, but for what looks like a control.
                (True, {"className": "TextNode", "type": "slider", "context": {"kind": 1}}),
                (True, {"className": "Sliders"}), (True, {"className": "Lumo"}),
                (False, {"className": "Button"}), (False, {"className": "SLIDERcontrolnode"}),
                (False, {"className": "Spinner"}), (False, {"className": "lumoControlNode"}),
                (False, {"className": "TextNode", "controlId": "a"}), (False, {"controlId": 1}),
                (False, {"className": "TextNode", "context": {"type": "slider"}}),
                (False, [{"context": {"data": 1}}]),
                # Found by check alone.
                (True, {"className": "LumoAppLineNod"}),
                (False, {"className": "LumoAppLineNode", "children": [
                    {"className": "LumoAppIntegratedInlineNode", "taskId": ""}]})):
            self.expect(strict.is_valid(value) == accepted, f"strict, {accepted}: {value}")

    def a_bundle_that_the_tool_does_not_know(self):
        dial = {"className": "DialNode", "range": {"from": 1, "to": 2}}
        rows = [dial, {**dial, "range": {"from": 1}}, {**dial, "range": 1}, {"className": "DialNode"},
                {**dial, "marks": []}, {**dial, "marks": [{"at": 1}, {"at": "1"}]},
                {**dial, "marks": [{}]}, {**dial, "marks": 1}, {**dial, "names": ["a", 1]},
                {**dial, "names": ["a"]}, {**dial, "options": {}}, {**dial, "options": 0},
                {"className": 7, "children": [{**dial, "range": []}]}, {"className": "LumoControlNode"}]
        built = imported(self.tool, rows, "--bundle", self.options.bundle)
        with tempfile.TemporaryDirectory() as folder:
            words = pathlib.Path(folder, "words")
            words.write_text("DialNode\n", encoding="utf-8")
            plain = self.validator("--bundle", self.options.bundle, "--words", str(words))
            strict = self.validator("--strict", "--bundle", self.options.bundle, "--words", str(words))
        for value, good in zip(rows, built):
            self.expect(plain.is_valid(value) == good, f"a bundle of its own: {value} builds: {good}")
        self.expect(0 < sum(built) < len(built), "some of the rows build")
        self.expect(strict.is_valid(dial) and not strict.is_valid({**dial, "mark": []}),
                    "a strict schema for a bundle of its own")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("tool")
    parser.add_argument("folder", type=pathlib.Path, help="where the schemas of the tree are")
    parser.add_argument("bundle", help="one with a builder that the tool does not know")
    parser.add_argument("--documents", type=int, default=2000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--write", metavar="FILE")
    parser.add_argument("--update", action="store_true")
    options = parser.parse_args()
    if options.update:
        options.folder.mkdir(exist_ok=True)
        for name, arguments in FILES:
            (options.folder / name).write_text(schema_text(options.tool, *arguments),
                                               encoding="utf-8")
        return 0

    made = [Spoiler(random.Random(options.seed * 1_000_003 + number)).document()
            for number in range(options.documents)]
    built = imported(options.tool, made)
    if options.write:
        with open(options.write, "w", encoding="utf-8") as file:
            for value, good in zip(made, built):
                print(json.dumps({"value": value, "built": good}), file=file)
        return 0

    test = Test(options)
    test.the_tree_holds_what_the_tool_writes()
    test.random_values_are_accepted_where_they_are_built(made, built)
    test.strict_rows()
    test.a_bundle_that_the_tool_does_not_know()
    print(f"{test.failures} failures")
    return 1 if test.failures else 0


if __name__ == "__main__":
    sys.exit(main())
