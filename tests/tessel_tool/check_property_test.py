#!/usr/bin/env python3
"""Plants mistakes in random documents and compares what `tessel check` says with what was planted.

usage: check_property_test.py TOOL

Documents are laid out at random: indented or on one line, with either line end, with escapes in
names, members that are there twice, and text of all planes in front of the places. What writes them
down takes down where everything begins and ends, in characters; that is what the tool's places are
compared with. TESSEL_CHECK_DOCUMENTS is how many documents there are (300), TESSEL_CHECK_SEED where
chance begins (1).
"""

import functools
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile

from random_documents import KINDS, REQUIRED, Maker

MISSPELT = {"minimum": "minimun", "executionModel": "executionmodel", "text": "txet",
            "defaultValue": "defaultValeu"}
VALUES = {"null": None, "bool": True, "double": 7, "string": "wrong", "array": [1],
          "object": {"a": 1}}


class Writer:
    """Writes a value down and takes down where each part of it is."""

    def __init__(self, chance, layout, earlier):
        self.chance = chance
        self.layout = layout
        self.earlier = earlier  # (object, name, value) of members that do not hold
        self.line_end = chance.choice(["\n", "\r\n"])
        self.parts = []
        self.line, self.column = 1, 1
        self.values = {}      # pointer: (begin, end)
        self.keys = {}        # pointer: (begin, end) of the last name
        self.duplicates = []  # (pointer, (begin, end)) of names that do not hold

    def put(self, text):
        self.parts.append(text)
        for character in text:
            if character == "\n":
                self.line, self.column = self.line + 1, 1
            else:
                self.column += 1

    def here(self):
        return (self.line, self.column)

    def space(self, depth):
        if self.layout == "indented":
            self.put(self.line_end + "  " * depth)
        elif self.layout == "wild":
            self.put("".join(self.chance.choice([" ", "\t", self.line_end])
                             for _ in range(self.chance.randrange(3))))

    def text(self, text):
        out = '"'
        for character in text:
            code = ord(character)
            if self.chance.random() < 0.1 and code < 0x10000:
                out += f"\\u{code:04x}"
            elif character in '"\\' or code < 0x20:
                out += json.dumps(character)[1:-1]
            else:
                out += character
        self.put(out + '"')

    def key(self, place, name):
        begin = self.here()
        self.text(name)
        if place in self.keys:
            self.duplicates.append((place, self.keys[place]))
        self.keys[place] = (begin, self.here())
        self.put(self.chance.choice([":", ": "]))

    def write(self, value, pointer="", depth=0):
        begin = self.here()
        if isinstance(value, (dict, list)):
            is_object = isinstance(value, dict)
            members = list(value.items() if is_object else enumerate(value))
            members[:0] = [(name, other) for holder, name, other in self.earlier if holder is value]
            self.put("{" if is_object else "[")
            for index, (step, member) in enumerate(members):
                self.put("," if index else "")
                self.space(depth + 1)
                place = pointer + "/" + str(step).replace("~", "~0").replace("/", "~1")
                if is_object:
                    self.key(place, step)
                self.write(member, place, depth + 1)
            self.space(depth)
            self.put("}" if is_object else "]")
        elif isinstance(value, str):
            self.text(value)
        else:
            self.put(json.dumps(value))
        self.values[pointer] = (begin, self.here())


class Planter(Maker):
    """Makes one document and what is wrong with it."""

    WHOLE = "whole"  # taken by a mistake that leaves no room for another one in its control

    def __init__(self, chance):
        super().__init__(chance)
        self.expected = []  # (code, member, held, wanted); of a member's name where held is KEY
        self.earlier = []

    KEY = object()

    def expect(self, code, member, held=None, wanted=None):
        self.expected.append((code, member, held, wanted))

    def value_but(self, wanted):
        name = self.chance.choice([name for name in VALUES if name != wanted])
        return name, VALUES[name]

    def wrong(self, holder, step, place, wanted, code="wrong-type"):
        held, holder[step] = self.value_but(wanted)
        self.expect(code, place, held, wanted)

    def ignored(self, holder, step, place, value):
        holder[step] = value
        self.expect("ignored-member", place, self.KEY)

    def missing(self, holder, name, place, wanted):
        del holder[name]
        self.expect("missing-member", place, "undefined", wanted)

    def unknown(self, holder, name, place):
        holder[name] = self.chance.choice([1, "x", [1], {"a": 1}])
        self.expect("unknown-member", place, self.KEY)

    def plans(self, kind, control, place):
        """What can be done wrong to a control: what it takes of it, and how it is done."""
        shape, fields = KINDS[kind]
        do = functools.partial
        if shape == "header":
            yield {"anchorId"}, do(self.ignored, control, "anchorId", f"{place}/anchorId",
                                   self.value_but("string")[1])
            yield {self.WHOLE}, do(self.missing, control, "children", f"{place}/children", "array")
            if control["children"]:
                yield {self.WHOLE}, do(self.wrong_child, control["children"], f"{place}/children")
        holder, within = control, place
        if shape in ("generic", "own"):
            holder, within = control["context"]["data"], f"{place}/context/data"
            yield from self.plans_for_control(kind, control, place)
        for name, type_ in fields.items():
            if type_ in VALUES:
                yield {name}, do(self.wrong, holder, name, f"{within}/{name}", type_)
        yield {self.WHOLE}, do(self.wrong, control, "className", f"{place}/className", "string",
                               "cannot-tell")

    def plans_for_control(self, kind, control, place):
        do = functools.partial
        context, within = control["context"], f"{place}/context"
        data, inside = context["data"], f"{within}/data"
        for name in ("startColumn", "endColumn"):
            yield {name}, do(self.wrong, control, name, f"{place}/{name}", "double")
        yield {"controlId"}, do(self.ignored, control, "controlId", f"{place}/controlId",
                                self.value_but("string")[1])
        for name, wrong in MISSPELT.items():
            yield {wrong}, do(self.unknown, data, wrong, f"{inside}/{wrong}")
        if kind in REQUIRED:
            name = REQUIRED[kind]
            yield {name}, do(self.missing, data, name, f"{inside}/{name}", "string")
        if "minimum" in data:
            yield {"minimum", "maximum", "defaultValue"}, do(self.minimum_above, data, inside)
        if "items" in data:
            yield {"items"}, do(self.wrong_items, data, inside)
        # The data is taken away, and with it what would be read of it.
        if kind in REQUIRED and kind != "editField":
            yield {self.WHOLE}, do(self.wrong, context, "data", inside, "object")
        else:
            yield {self.WHOLE}, do(self.ignored, context, "data", inside, self.value_but("object")[1])
        yield {self.WHOLE}, do(self.unknown_class, control, place)
        if "type" in context:
            yield {self.WHOLE}, do(self.missing_context, control, within)
            yield {self.WHOLE}, do(self.wrong, context, "type", f"{within}/type", "string",
                                   "cannot-tell")
            yield {self.WHOLE}, do(self.unknown_type, context, f"{within}/type")

    def minimum_above(self, data, place):
        data["minimum"] = 2000
        self.expect("unlikely-value", f"{place}/maximum")
        if isinstance(data.get("defaultValue"), (int, float)):
            self.expect("unlikely-value", f"{place}/defaultValue")

    def missing_context(self, control, place):
        del control["context"]
        self.expect("cannot-tell", place, "undefined", "object")

    def unknown_type(self, context, place):
        context["type"] = self.chance.choice(["Slider", "combobox", "ä", "dial"])
        self.expect("unknown-type", place)

    def unknown_class(self, control, place):
        if self.often(0.3):
            del control["className"]
            self.expect("unknown-class", place)
        else:
            control["className"] = self.chance.choice(
                ["lumoControlNode", "SpinerControlNode", "SliderControlNode", "TextThing"])
            self.expect("unknown-class", f"{place}/className")

    def wrong_items(self, data, place):
        items, labels = data["items"], data["itemLabels"]
        if not items or self.often(0.2):
            self.wrong(data, "items", f"{place}/items", "array")
            return
        for index in self.chance.sample(range(len(items)), self.chance.randrange(1, len(items) + 1)):
            item = f"{place}/items/{index}"
            way = self.chance.randrange(4)
            if way == 0:
                self.wrong(items, index, item, "object")
            elif way == 1:
                self.missing(items[index], "value", f"{item}/value", "string")
            else:
                for name in self.chance.sample(["label", "value"], way - 1):
                    self.wrong(items[index], name, f"{item}/{name}", "string")
        for index in range(len(labels)):
            if self.often(0.3):
                self.wrong(labels, index, f"{place}/itemLabels/{index}", "string")

    def wrong_child(self, children, place):
        index = self.chance.randrange(len(children))
        place = f"{place}/{index}"
        way = self.chance.randrange(3)
        if way == 0:
            self.ignored(children, index, place,
                         self.chance.choice(["x", 1, {"className": "TextNode"}]))
        if way == 1:
            self.wrong(children[index], "className", f"{place}/className", "string")
        if way == 2 or (way == 1 and self.often(0.5)):
            self.wrong(children[index], "taskID", f"{place}/taskID", "string")

    def document(self):
        kinds = [self.chance.choice(sorted(KINDS)) for _ in range(self.chance.randrange(1, 6))]
        controls = [self.control(kind) for kind in kinds]
        taken = [set() for _ in kinds]
        for _ in range(self.chance.randrange(6)):
            index = self.chance.randrange(len(kinds))
            if self.WHOLE in taken[index]:
                continue
            plans = {}  # by what is done, so that each kind of mistake is as likely
            for parts, plant in self.plans(kinds[index], controls[index], f"/größe~1~0x/{index}"):
                if not (taken[index] if self.WHOLE in parts else parts & taken[index]):
                    plans.setdefault(plant.func.__name__, []).append((parts, plant))
            if plans:
                parts, plant = self.chance.choice(self.chance.choice(list(plans.values())))
                taken[index] |= parts
                plant()
        for _ in range(self.chance.choice([0, 0, 0, 1, 2])):
            holder = self.chance.choice(controls)
            while isinstance(holder.get("context"), dict) and self.often(0.5):
                holder = holder["context"]
            self.earlier.append((holder, self.chance.choice(list(holder)),
                                 self.chance.choice([1, "other"])))
        return {"text": "no control", "größe/~x": controls}

    def places(self, writer):
        """What should be said, as a sorted list."""
        def around(pointer):
            while pointer not in writer.values:
                pointer = pointer.rpartition("/")[0]
            return writer.values[pointer]
        wanted = []
        for code, member, held, type_ in self.expected:
            at_key = held is self.KEY
            begin, end = writer.keys.get(member) or around(member) if at_key else around(member)
            wanted.append((code, member, *begin, *end, None if at_key else held,
                           type_ if code in ("wrong-type", "missing-member", "cannot-tell") else None))
        for member, (begin, end) in writer.duplicates:
            wanted.append(("duplicate-member", member, *begin, *end, None, None))
        return sorted(wanted, key=repr)


def said(answer):
    return sorted(((p["code"], p["member"], p["line"], p["column"], p["endLine"], p["endColumn"],
                    p["held"], p["wanted"]) for p in answer["problems"]), key=repr)


def run(tool, *arguments):
    done = subprocess.run([tool, "check", "--format", "json", *arguments], capture_output=True,
                          text=True, encoding="utf-8", timeout=1200, check=False)
    if done.stderr:
        raise AssertionError(done.stderr)
    return json.loads("[" + done.stdout.replace("}\n{", "},{") + "]")


def main():
    tool = sys.argv[1]
    count = int(os.environ.get("TESSEL_CHECK_DOCUMENTS", "300"))
    seed = int(os.environ.get("TESSEL_CHECK_SEED", "1"))
    failures = planted = 0
    for first in range(0, count, 100):
        with tempfile.TemporaryDirectory() as folder:
            files, wants, lines, line_wants = [], [], [], []
            for number in range(first, min(first + 100, count)):
                chance = random.Random(seed * 1_000_003 + number)
                planter = Planter(chance)
                document = planter.document()
                writer = Writer(chance, chance.choice(["indented", "compact", "wild"]), planter.earlier)
                writer.write(document)
                file = pathlib.Path(folder, f"{number}.json")
                file.write_bytes("".join(writer.parts).encode())
                files.append(file)
                wants.append(planter.places(writer))
                planted += len(wants[-1])
                if writer.line == 1:
                    lines.append("".join(writer.parts))
                    line_wants.append([(c, m, l + len(lines) - 1, col, el + len(lines) - 1, *rest)
                                       for c, m, l, col, el, *rest in wants[-1]])
            batch = pathlib.Path(folder, "lines.ndjson")
            batch.write_bytes("\n".join(lines).encode())
            answers = run(tool, *files)
            line_answers = run(tool, "--ndjson", "--jobs", "2", batch)
            checks = [*zip(files, wants, answers, strict=True),
                      *zip(lines, line_wants, line_answers, strict=True)]
            for document, want, answer in checks:
                actual = said(answer)
                want = sorted(map(tuple, want), key=repr)
                if want == actual:
                    continue
                failures += 1
                if failures <= 5:
                    text = document.read_text(encoding="utf-8") if document in files else document
                    print(f"FAILED {answer['document']} (seed {seed})\n{text}\n"
                          f"not said: {[w for w in want if w not in actual]}\n"
                          f"wrongly said: {[a for a in actual if a not in want]}", file=sys.stderr)
    print(f"{count} documents, {planted} mistakes, {failures} failures")
    sys.exit(1 if failures or not planted else 0)


if __name__ == "__main__":
    main()
