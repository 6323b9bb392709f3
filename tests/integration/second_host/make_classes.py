#!/usr/bin/env python3
"""Makes the model classes of the second host from the description of the reference host's.

usage: make_classes.py DESCRIPTION HEADER

The two hosts have the same classes and spell them otherwise: here handles are unrelated types, an
element is a bag of values by their properties' names, setters return, and nothing is reflected.
"""

import pathlib
import sys
import tomllib

SCALARS = {"text": "const std::u16string&", "number": "double", "boolean": "bool",
           "integer": "unsigned long long", "short": "unsigned short"}


def titled(name):
    return name[0].upper() + name[1:]


def member(row, name, owner):
    title = titled(name)
    if element := row.get("sequence"):
        # An element in a sequence of its own class knows the other end; others are looked for.
        opposite = '{"container", false}' if element == owner else "{}"
        yield f"gx::zero::ElementSequence<{element}>& get{title}Mutable() {{ return {name}; }}"
        yield f'gx::zero::ElementSequence<{element}> {name}{{*this, "{name}", {opposite}}};'
    elif struct := row.get("struct"):
        yield f'bool set{title}(const {struct}& value) {{ return keepAll("{name}", value); }}'
    elif row.get("attached"):
        yield f"bool set{title}(const {row['contains']}& value) {{"
        yield f'  return keep("{name}", gx::zero::ModelElement(value));'
        yield "}"
    elif element := row.get("contains"):
        yield f"{element} createInto{title}({element}::BuilderWrapper, const boost::uuids::uuid& uuid) {{"
        yield f'  return keepNew<{element}::Impl>("{name}", uuid);'
        yield "}"
    else:
        yield f'bool set{title}({SCALARS[row["type"]]} value) {{ return keep("{name}", value); }}'


def struct(row, name):
    yield f"struct {name} : gx::zero::Bag {{"
    for field in row["properties"]:
        yield f"  {name}& set{titled(field['name'])}({SCALARS[field['type']]} value) {{"
        yield f'    keep("{field["name"]}", value);'
        yield "    return *this;"
        yield "  }"
    yield "};"


def element(row, name):
    yield f"struct {name}Impl;"
    yield f"using {name} = gx::zero::Handle<{name}Impl>;"
    yield f"struct {name}Impl : {row['base']}Impl {{"
    if row.get("created") == "top":
        # The base of the class's builders: it has the create operation that bears the class's name.
        yield "  template <typename Self>"
        yield "  struct BuilderBase : gx::zero::Creator {"
        yield "    using Creator::Creator;"
        yield f"    {name} create{name}(const boost::uuids::uuid& uuid) {{ return create<{name}Impl>(uuid); }}"
        yield "  };"
    for each in row.get("properties", []):
        yield from ("  " + line for line in member(each, each["name"], row["name"]))
    yield "};"


def header(rows):
    yield "#pragma once"
    yield '#include "own/framework.hpp"'
    for row in rows:
        namespace, _, name = row["name"].rpartition("::")
        yield f"namespace {namespace} {{"
        yield from (struct if row.get("struct") else element)(row, name)
        yield "}"


def main():
    description, made = map(pathlib.Path, sys.argv[1:])
    rows = tomllib.loads(description.read_text(encoding="utf-8"))["class"]
    made.parent.mkdir(parents=True, exist_ok=True)
    made.write_text("\n".join(header(rows)) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
