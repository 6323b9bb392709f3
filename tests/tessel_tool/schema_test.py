#!/usr/bin/env python3
"""Holds the JSON Schema to what an import builds: random values, near to what the builders claim, are
accepted exactly where an import tells no error.

Not compared, because a schema cannot say it, and so never made here: nesting beyond the limit, numbers
that no double holds, ill-formed text. --write FILE leaves the values and whether they are built, as
lines of JSON, for other validators, and does nothing else.
"""

import argparse
import json
import pathlib
import random
import subprocess
import sys
import tempfile

FILES = (("tessel.schema.json", ()), ("tessel.strict.schema.json", ("--strict",)))
GENERIC = ["button", "checkBox", "comboBox", "editField", "slider"]
CLASSES = ["button", "ColorPickerControlNode", "DatePickerControlNode", "FileBrowserControlNode",
           "RangeSliderControlNode", "SpinnerControlNode", "StateButtonControlNode",
           "LumoAppIntegratedInlineNode", "LumoAppLineNode"]
NUMBERS = ["minimum", "maximum", "step"]
TEXTS = ["executionModel", "executionOn", "text", "defaultValueLinkedVariable", "minLinkedVariable",
         "maxLinkedVariable", "stepLinkedVariable", "linkedVariable", "valueType", "colorFormat",
         "displayFormat", "browserType"]
TASK_TEXTS = ["instanceId", "taskID", "appIdentifier", "view", "collapsed", "appVariables",
              "appVariablesUserMap", "executionModel", "appState", "autorun", "text"]


class Maker:
    """Makes values that are mostly right."""

    def __init__(self, chance):
        self.chance = chance
        self.wrong = chance.choice([0, 0.01, 0.03, 0.1])

    def often(self, share):
        return self.chance.random() < share

    def anything(self, depth=2):
        pick = self.chance.randrange(9 if depth else 6)
        if pick < 6:
            return [None, True, False, self.chance.choice([0, 1, -2.5, 1e300, 65536]), "",
                    self.chance.choice(["text", "ä\U0001f600", "Double", "button"])][pick]
        if pick == 6:
            return [self.anything(depth - 1) for _ in range(self.chance.randrange(3))]
        if pick == 7:
            names = ["className", "context", "data", "type", "x", "items", "children"]
            return {self.chance.choice(names): self.anything(depth - 1)
                    for _ in range(self.chance.randrange(3))}
        return self.claimed(depth - 1) if depth > 1 else {}

    def maybe(self, value):
        return self.anything() if self.often(self.wrong) else value

    def number(self):
        return self.maybe(self.chance.choice([0, 1, -1, 0.5, 1e18, 70000]))

    def text(self):
        return self.maybe(self.chance.choice(["", "a", "größe", "Double", "[2 8]"]))

    def item(self):
        item = {"label": self.text(), "value": self.text(), "other": self.anything()}
        for name in list(item):
            if self.often(self.wrong if name != "other" else 0.9):
                del item[name]
        return self.maybe(item)

    def list_of(self, make):
        return self.maybe([make() for _ in range(self.chance.randrange(4))])

    def data(self, kind):
        data = {}
        for name in NUMBERS:
            if self.often(0.3):
                data[name] = self.number()
        for name in TEXTS:
            if self.often(0.3):
                data[name] = self.text()
        if kind == "editField":
            for name, value in (("valueType", self.maybe(self.chance.choice(["Double", "String"]))),
                                ("defaultValueLinkedVariable", self.text())):
                if self.often(0.8):
                    data[name] = value
        required = {"ColorPickerControlNode": "colorFormat", "DatePickerControlNode": "displayFormat",
                    "FileBrowserControlNode": "browserType"}.get(kind)
        if required and self.often(0.95):
            data[required] = self.text()
        if self.often(0.6):
            right = (self.chance.choice([True, False])
                     if kind in ("checkBox", "StateButtonControlNode")
                     else 1.5 if kind in ("slider", "SpinnerControlNode")
                     else self.chance.choice([2, "2", "2"]) if kind == "editField" else "2")
            data["defaultValue"] = self.maybe(right)
        if kind == "comboBox":
            if self.often(0.5):
                data["items"] = self.list_of(self.item)
            if self.often(0.5):
                data["itemLabels"] = self.list_of(self.text)
        elif self.often(0.05):
            data["items"] = self.anything()
        if self.often(0.1):
            data["unknown"] = self.anything()
        return self.maybe(data)

    def task(self):
        task = {name: self.text() for name in TASK_TEXTS if self.often(0.4)}
        task["className"] = self.maybe("LumoAppIntegratedInlineNode")
        if self.often(0.4):
            task["numOfCodeLines"] = self.number()
        return task

    def claimed(self, depth=2):
        kind = self.chance.choice(GENERIC + CLASSES)
        if kind == "LumoAppIntegratedInlineNode":
            return self.task()
        if kind == "LumoAppLineNode":
            line = {"className": self.maybe(kind)}
            if self.often(0.5):
                line["anchorId"] = self.text()
            if self.often(0.95):
                line["children"] = self.list_of(
                    lambda: self.task() if self.often(0.7) else self.anything(depth))
            return line
        generic = kind in GENERIC and (kind != "button" or self.often(0.5))
        control = {"className": self.maybe("LumoControlNode" if generic else kind)}
        context = {"data": self.data(kind)}
        if self.often(0.1):
            del context["data"]
        if generic:
            context["type"] = self.maybe(kind)
            if self.often(self.wrong):
                del context["type"]
        if self.often(0.05):
            context["type"] = self.chance.choice(GENERIC + CLASSES + ["unknown"])
        if self.often(0.95 if generic or "File" in kind else 0.8):
            control["context"] = self.maybe(context)
        for name, make in (("startColumn", self.number), ("endColumn", self.number),
                           ("text", self.text), ("controlId", self.text)):
            if self.often(0.4):
                control[name] = make()
        if self.often(0.1):
            control["children"] = self.anything()
        return control

    def document(self):
        pick = self.chance.randrange(10)
        if pick < 6:
            return self.claimed()
        if pick < 7:
            return self.anything()
        around = {"children": [self.claimed() for _ in range(self.chance.randrange(3))],
                  "$schema": "tessel.schema.json"}
        if self.often(0.5):
            around["className"] = self.chance.choice(
                ["TextNode", "slider", "Double", "", 1, None, "LumoControlNode"])
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


def is_unknown(problem):
    """Whether a problem of check is a word or a key that nobody knows."""
    if problem["code"] == "unknown-class":  # also told of objects that have none
        return problem["member"].endswith("/className")
    return problem["code"] in ("unknown-type", "unknown-member")


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
                        f"{file} is not what the tool writes; --update writes it")

    def random_values_are_accepted_where_they_are_built(self, made, built):
        plain, strict = self.validator(), self.validator("--strict")
        done = run(self.tool, "check", "--ndjson", "--format", "json",
                   input="\n".join(map(json.dumps, made)))
        unknown = [any(map(is_unknown, json.loads(line)["problems"]))
                   for line in done.stdout.splitlines()]
        self.expect(len(unknown) == len(made), "an answer of check for each value")
        kept = 0
        for value, good, stranger in zip(made, built, unknown):
            self.expect(plain.is_valid(value) == good,
                        f"{'built' if good else 'not built'}, but the schema says otherwise: "
                        f"{json.dumps(value)}")
            accepted = strict.is_valid(value)
            kept += accepted
            self.expect(not accepted or (good and not stranger),
                        f"the strict schema accepts {json.dumps(value)}")
        share = sum(built) / len(built)
        self.expect(0.2 < share < 0.9, f"{share} of the values are built: too one-sided")
        print(f"{len(made)} values, {sum(built)} of them built, {kept} of those strictly right")

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
                (False, {"className": "Button"}), (False, {"className": "TextNode"}),
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

    made = [Maker(random.Random(options.seed * 1_000_003 + number)).document()
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
