#!/usr/bin/env python3
"""Plants mistakes in random documents and compares what `tessel check` says with what was planted.

usage: check_property_test.py TOOL

Documents are laid out at random: indented or on one line, with either line end, with escapes in
names, members that are there twice, and text of all planes in front of the places. What writes them
down takes down where everything begins and ends, in characters; that is what the tool's places are
compared with. TESSEL_CHECK_DOCUMENTS is how many documents there are (300), TESSEL_CHECK_SEED where
chance begins (1).
"""

import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile

TEXTS = ["x", "a b", "Größe", "日本語", "a\"b", "\\", "𝄞 clef", "é́", "line\nbreak", "tab\t", ""]
KINDS = {
    "button": ("generic", {}),
    "checkBox": ("generic", {"defaultValue": "bool", "defaultValueLinkedVariable": "string"}),
    "slider": ("generic", {"minimum": "double", "maximum": "double", "step": "double",
                           "defaultValue": "double", "executionOn": "string",
                           "minLinkedVariable": "string"}),
    "comboBox": ("generic", {"linkedVariable": "string", "items": "items", "itemLabels": "labels"}),
    "editField": ("generic", {"valueType": "string", "defaultValue": "edit",
                              "defaultValueLinkedVariable": "string"}),
    "SpinnerControlNode": ("own", {"minimum": "double", "maximum": "double", "step": "double",
                                   "stepLinkedVariable": "string"}),
    "RangeSliderControlNode": ("own", {"minimum": "double", "defaultValue": "string"}),
    "StateButtonControlNode": ("own", {"defaultValue": "bool"}),
    "ColorPickerControlNode": ("own", {"colorFormat": "string", "defaultValue": "string"}),
    "DatePickerControlNode": ("own", {"displayFormat": "string", "defaultValue": "string"}),
    "FileBrowserControlNode": ("own", {"browserType": "string", "defaultValue": "string"}),
    "LumoAppIntegratedInlineNode": ("task", {"instanceId": "string", "taskID": "string",
                                             "view": "string", "autorun": "string",
                                             "numOfCodeLines": "double"}),
    "LumoAppLineNode": ("header", {}),
}
REQUIRED = {"ColorPickerControlNode": "colorFormat", "DatePickerControlNode": "displayFormat",
            "FileBrowserControlNode": "browserType"}
MISSPELT = {"minimum": "minimun", "executionModel": "executionmodel", "text": "txet",
            "defaultValue": "defaultValeu"}


class Object:
    """An object as a list of names and values, so that a name can be there twice."""

    def __init__(self, *members):
        self.members = [list(member) for member in members]

    def get(self, name):
        return next((value for key, value in reversed(self.members) if key == name), None)

    def set(self, name, value):
        for member in reversed(self.members):  # the one that holds
            if member[0] == name:
                member[1] = value
                return
        self.members.append([name, value])

    def remove(self, name):
        self.members = [member for member in self.members if member[0] != name]


class Writer:
    """Writes a value down and takes down where each part of it is."""

    def __init__(self, chance, layout):
        self.chance = chance
        self.layout = layout
        self.line_end = chance.choice(["\n", "\r\n"])
        self.parts = []
        self.line, self.column = 1, 1
        self.values = {}      # pointer: (begin, end)
        self.keys = {}        # pointer: (begin, end) of the last name
        self.duplicates = []  # (pointer, begin, end) of names that do not hold

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

    def write(self, value, pointer="", depth=0):
        begin = self.here()
        if isinstance(value, Object):
            self.put("{")
            seen = {}
            for index, (name, member) in enumerate(value.members):
                if index:
                    self.put(",")
                self.space(depth + 1)
                place = pointer + "/" + name.replace("~", "~0").replace("/", "~1")
                key_begin = self.here()
                self.text(name)
                key = (key_begin, self.here())
                if place in seen:
                    self.duplicates.append((place, *seen[place]))
                seen[place] = self.keys[place] = key
                self.put(self.chance.choice([":", ": "]))
                self.write(member, place, depth + 1)
            self.space(depth)
            self.put("}")
        elif isinstance(value, list):
            self.put("[")
            for index, element in enumerate(value):
                if index:
                    self.put(",")
                self.space(depth + 1)
                self.write(element, f"{pointer}/{index}", depth + 1)
            self.space(depth)
            self.put("]")
        elif isinstance(value, str):
            self.text(value)
        else:
            self.put(json.dumps(value))
        self.values[pointer] = (begin, self.here())


class Maker:
    """Makes one document and what is wrong with it."""

    def __init__(self, chance):
        self.chance = chance
        self.expected = []  # (code, member, "value" or "key", held, wanted)
        self.ids = 0

    def some_text(self):
        return self.chance.choice(TEXTS)

    def value(self, kind):
        if kind == "double":
            return self.chance.choice([0, 1, 2.5, 1e3])
        if kind == "bool":
            return self.chance.choice([True, False])
        if kind == "items":
            return [Object(("label", self.some_text()), ("value", self.some_text()))
                    for _ in range(self.chance.randrange(4))]
        if kind == "labels":
            return [self.some_text() for _ in range(self.chance.randrange(4))]
        return self.some_text()

    def control(self, kind):
        shape, fields = KINDS[kind]
        self.ids += 1
        if shape == "task":
            return Object(("className", kind), *[(name, self.value(type_))
                                                for name, type_ in fields.items()])
        if shape == "header":
            return Object(("className", kind), ("anchorId", "a"), ("children", [
                self.control("LumoAppIntegratedInlineNode")
                for _ in range(self.chance.randrange(3))]))
        data = Object(("executionModel", "section"), ("text", self.some_text()))
        for name, type_ in fields.items():
            if type_ != "edit":
                data.set(name, self.value(type_))
        if data.get("minimum") is not None:
            data.set("minimum", 0)
            data.set("maximum", 1000)
            data.set("step", 0.5)
        if kind == "RangeSliderControlNode":
            data.remove("step")
        if kind == "editField":
            numeric = self.chance.random() < 0.5
            data.set("valueType", "Double" if numeric else self.chance.choice(["String", "x"]))
            data.set("defaultValue", 2.5 if numeric else self.some_text())
        self.chance.shuffle(data.members)
        context = Object(("data", data))
        if shape == "generic":
            context.members.insert(self.chance.randrange(2), ["type", kind])
        control = Object(("className", "LumoControlNode" if shape == "generic" else kind),
                         ("controlId", f"id {self.ids}"), ("startColumn", 1), ("endColumn", 7),
                         ("text", "0123456789"), ("context", context))
        self.chance.shuffle(control.members)
        return control

    def wrong_value(self, held_not, allow_container=True):
        choices = {"null": None, "bool": True, "double": 7, "string": "wrong", "array": [1],
                   "object": Object(("a", 1))}
        names = [name for name in choices if name not in held_not]
        if not allow_container:
            names = [name for name in names if name not in ("array", "object")]
        name = self.chance.choice(names)
        return name, choices[name]

    def expect(self, code, member, at="value", held=None, wanted=None):
        self.expected.append((code, member, at, held, wanted))

    # Each of these plants one mistake in a control at a pointer. False if it does not apply.

    def plant(self, kind, control, pointer, taken):
        plans = [self.wrong_field, self.wrong_field, self.wrong_field, self.wrong_top,
                 self.missing, self.misspelt, self.wrong_id, self.wrong_items, self.unknown_type,
                 self.cannot_tell, self.unknown_class, self.duplicate, self.minimum_above,
                 self.wrong_data, self.wrong_child]
        return self.chance.choice(plans)(kind, control, pointer, taken)

    @staticmethod
    def data_of(control):
        context = control.get("context")
        data = context.get("data") if isinstance(context, Object) else None
        return data if isinstance(data, Object) else None

    def wrong_field(self, kind, control, pointer, taken):
        shape, fields = KINDS[kind]
        holder = control if shape == "task" else self.data_of(control)
        if holder is None or taken & {"whole", "data"}:
            return False
        if shape != "task":
            pointer += "/context/data"
        options = dict(fields)
        if shape != "task":
            options.update({"executionModel": "string", "text": "string"})
        options = {name: type_ for name, type_ in options.items()
                   if type_ in ("double", "bool", "string") and holder.get(name) is not None}
        if not options:
            return False
        name = self.chance.choice(sorted(options))
        if name in taken:
            return False
        taken.add(name)
        held, value = self.wrong_value({options[name]})
        holder.set(name, value)
        self.expect("wrong-type", f"{pointer}/{name}", "value", held, options[name])
        return True

    def wrong_top(self, kind, control, pointer, taken):
        name = self.chance.choice(["startColumn", "endColumn"])
        if control.get(name) is None or name in taken or "whole" in taken:
            return False
        taken.add(name)
        held, value = self.wrong_value({"double"})
        control.set(name, value)
        self.expect("wrong-type", f"{pointer}/{name}", "value", held, "double")
        return True

    def missing(self, kind, control, pointer, taken):
        if taken & {"whole", "data"}:
            return False
        if kind == "LumoAppLineNode" and not taken:
            taken.add("whole")
            control.remove("children")
            self.expect("missing-member", f"{pointer}/children", "value", "undefined", "array")
            return True
        name = "defaultValueLinkedVariable" if kind == "editField" else REQUIRED.get(kind)
        data = self.data_of(control)
        if name is None or name in taken or data is None:
            return False
        taken.add(name)
        data.remove(name)
        self.expect("missing-member", f"{pointer}/context/data/{name}", "value", "undefined",
                    "string")
        return True

    def misspelt(self, kind, control, pointer, taken):
        data = self.data_of(control)
        if data is None or taken & {"whole", "data"}:
            return False
        name = self.chance.choice(sorted(MISSPELT))
        wrong = MISSPELT[name]
        if name in taken or data.get(wrong) is not None:
            return False
        taken.add(name)
        data.set(wrong, self.chance.choice([1, "x", [1], Object(("a", 1))]))
        self.expect("unknown-member", f"{pointer}/context/data/{wrong}", "key")
        return True

    def wrong_id(self, kind, control, pointer, taken):
        name = "anchorId" if kind == "LumoAppLineNode" else "controlId"
        if control.get(name) is None or name in taken or "whole" in taken:
            return False
        taken.add(name)
        control.set(name, self.wrong_value({"string"})[1])
        self.expect("ignored-member", f"{pointer}/{name}", "key")
        return True

    def wrong_items(self, kind, control, pointer, taken):
        data = self.data_of(control)
        if data is None or taken & {"whole", "data", "items"}:
            return False
        if kind != "comboBox":
            return False
        taken.add("items")
        place = f"{pointer}/context/data/items"
        items = data.get("items")
        if not items or self.chance.random() < 0.2:
            held, value = self.wrong_value({"array"})
            data.set("items", value)
            self.expect("wrong-type", place, "value", held, "array")
            return True
        for index in self.chance.sample(range(len(items)), self.chance.randrange(1, len(items) + 1)):
            way = self.chance.randrange(4)
            if way == 0:
                held, items[index] = self.wrong_value({"object"})
                self.expect("wrong-type", f"{place}/{index}", "value", held, "object")
            elif way == 1:
                items[index].remove("value")
                self.expect("missing-member", f"{place}/{index}/value", "value", "undefined",
                            "string")
            else:
                for name in self.chance.sample(["label", "value"], way - 1):
                    held, value = self.wrong_value({"string"})
                    items[index].set(name, value)
                    self.expect("wrong-type", f"{place}/{index}/{name}", "value", held, "string")
        labels = data.get("itemLabels")
        for index in range(len(labels)):
            if self.chance.random() < 0.3:
                held, labels[index] = self.wrong_value({"string"})
                self.expect("wrong-type", f"{pointer}/context/data/itemLabels/{index}", "value",
                            held, "string")
        return True

    def unknown_type(self, kind, control, pointer, taken):
        if KINDS[kind][0] != "generic" or taken:
            return False
        taken.add("whole")
        control.get("context").set("type", self.chance.choice(["Slider", "combobox", "ä", "dial"]))
        self.expect("unknown-type", f"{pointer}/context/type")
        return True

    def cannot_tell(self, kind, control, pointer, taken):
        if taken:
            return False
        taken.add("whole")
        if KINDS[kind][0] != "generic" or self.chance.random() < 0.3:
            held, value = self.wrong_value({"string"})
            control.set("className", value)
            self.expect("cannot-tell", f"{pointer}/className", "value", held, "string")
        elif self.chance.random() < 0.5:
            control.remove("context")
            self.expect("cannot-tell", f"{pointer}/context", "value", "undefined", "object")
        else:
            held, value = self.wrong_value({"string"})
            control.get("context").set("type", value)
            self.expect("cannot-tell", f"{pointer}/context/type", "value", held, "string")
        return True

    def unknown_class(self, kind, control, pointer, taken):
        if KINDS[kind][0] in ("task", "header") or taken:
            return False
        taken.add("whole")
        if self.chance.random() < 0.3:
            control.remove("className")
            self.expect("unknown-class", pointer)
        else:
            control.set("className", self.chance.choice(
                ["lumoControlNode", "SpinerControlNode", "SliderControlNode", "TextThing"]))
            self.expect("unknown-class", f"{pointer}/className")
        return True

    def duplicate(self, kind, control, pointer, taken):
        if "whole" in taken:
            return False
        name, value = self.chance.choice(control.members)
        if isinstance(value, (Object, list)):
            return False
        control.members.insert(0, [name, self.chance.choice([1, "other", value])])
        return True  # the writer takes down where

    def minimum_above(self, kind, control, pointer, taken):
        data = self.data_of(control)
        if data is None or data.get("minimum") is None or data.get("maximum") is None:
            return False
        if taken & {"whole", "data", "minimum", "maximum", "defaultValue"}:
            return False
        taken.update({"minimum", "maximum", "defaultValue"})
        data.set("minimum", 2000)
        self.expect("unlikely-value", f"{pointer}/context/data/maximum")
        return True

    def wrong_data(self, kind, control, pointer, taken):
        if self.data_of(control) is None or taken:
            return False
        taken.update({"data", "whole"})
        held, value = self.wrong_value({"object"})
        control.get("context").set("data", value)
        if kind in REQUIRED:
            self.expect("wrong-type", f"{pointer}/context/data", "value", held, "object")
        else:
            self.expect("ignored-member", f"{pointer}/context/data", "key")
        return True

    def wrong_child(self, kind, control, pointer, taken):
        children = control.get("children")
        if kind != "LumoAppLineNode" or not children or taken:
            return False
        taken.add("whole")
        index = self.chance.randrange(len(children))
        place = f"{pointer}/children/{index}"
        way = self.chance.randrange(3)
        if way == 0:
            children[index] = self.chance.choice(["x", 1, Object(("className", "TextNode"))])
            self.expect("ignored-member", place, "key")
        elif way == 1:
            held, value = self.wrong_value({"string"})
            children[index].set("className", value)
            self.expect("wrong-type", f"{place}/className", "value", held, "string")
        if way == 2 or (way == 1 and self.chance.random() < 0.5):
            held, value = self.wrong_value({"string"})
            children[index].set("taskID", value)
            self.expect("wrong-type", f"{place}/taskID", "value", held, "string")
        return True

    def document(self):
        kinds = [self.chance.choice(sorted(KINDS)) for _ in range(self.chance.randrange(1, 6))]
        controls = [self.control(kind) for kind in kinds]
        mistakes = self.chance.randrange(6)
        taken = [set() for _ in kinds]
        for _ in range(200):
            if mistakes == 0:
                break
            index = self.chance.randrange(len(kinds))
            mistakes -= self.plant(kinds[index], controls[index], f"/größe~1~0x/{index}",
                                   taken[index])
        return Object(("text", "no control"), ("größe/~x", controls))


def expectations(maker, writer):
    """What should be said, as a sorted list."""
    def around(pointer):
        while pointer not in writer.values:
            pointer = pointer.rpartition("/")[0]
        return writer.values[pointer]
    wanted = []
    for code, member, at, held, type_ in maker.expected:
        place = writer.keys.get(member, writer.values.get(member)) if at == "key" else around(member)
        wanted.append((code, member, *place[0], *place[1], held, type_))
    for member, begin, end in writer.duplicates:
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
    answers, rest, decoder = [], done.stdout, json.JSONDecoder()
    while rest.strip():
        answer, end = decoder.raw_decode(rest.lstrip())
        answers.append(answer)
        rest = rest.lstrip()[end:]
    return done.returncode, answers


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
                maker = Maker(chance)
                document = maker.document()
                writer = Writer(chance, chance.choice(["indented", "compact", "wild"]))
                writer.write(document)
                file = pathlib.Path(folder, f"{number}.json")
                file.write_bytes("".join(writer.parts).encode())
                files.append(file)
                wants.append(expectations(maker, writer))
                planted += len(wants[-1])
                if writer.line == 1:
                    lines.append("".join(writer.parts))
                    line_wants.append(wants[-1])
            _, answers = run(tool, *files)
            assert len(answers) == len(files), (len(answers), len(files))
            checks = list(zip(files, wants, map(said, answers)))
            batch = pathlib.Path(folder, "lines.ndjson")
            batch.write_bytes("\n".join(lines).encode())
            _, answers = run(tool, "--ndjson", "--jobs", "2", batch)
            assert len(answers) == len(lines), (len(answers), len(lines))
            for index, (want, answer) in enumerate(zip(line_wants, answers)):
                moved = sorted(((c, m, l + index, col, el + index, ec, h, w)
                                for c, m, l, col, el, ec, h, w in want), key=repr)
                checks.append((f"line {index + 1}: {lines[index]}", moved, said(answer)))
            for what, want, actual in checks:
                if want == actual:
                    continue
                failures += 1
                if failures <= 5:
                    text = what.read_text(encoding="utf-8") if isinstance(what, pathlib.Path) else what
                    print(f"FAILED {what} (seed {seed})\n{text}\n"
                          f"not said: {[w for w in want if w not in actual]}\n"
                          f"wrongly said: {[a for a in actual if a not in want]}", file=sys.stderr)
    print(f"{count} documents, {planted} mistakes, {failures} failures")
    sys.exit(1 if failures or not planted else 0)


if __name__ == "__main__":
    main()
