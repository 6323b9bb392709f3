#!/usr/bin/env python3
"""Makes the model classes' headers and sources from their one description.

usage: generate_model.py DESCRIPTION OUTPUT_FOLDER [--list]

Each namespace of the description becomes a library: `a::b` gives `include/a/b.hpp` and
`src/a_b.cpp` in the output folder. With --list, the paths are printed and nothing is written.
A file whose content would not change is left alone, so that nothing is rebuilt for it.
"""

import argparse
import pathlib
import sys
import tomllib

from model_description import DATA_TYPES, ROOT_CLASS, DescriptionError, read_description

NOTICE = "// Made from the model description; changes belong there.\n"


def declare_handle(cls):
    builder = "  class Builder;\n" if cls.created else ""
    wrapper = "  class BuilderWrapper;\n" if cls.created == "contained" else ""
    return f"""/// {cls.doc}
class TESSEL_HOST_API {cls.short} : public {cls.base} {{
 public:
  class Impl;
{builder}{wrapper}
  static gx::zero::meta::Class metaClass();

  {cls.short}() noexcept = default;
  explicit {cls.short}(Impl* impl) noexcept;

  Impl* get() const noexcept;
}};
"""


def result_type(prop):
    field_type, parameter, *_ = DATA_TYPES[prop.type]
    return parameter if prop.type == "text" else field_type


def declare_accessors(prop):
    if prop.sequence:
        sequence = f"gx::zero::ElementSequence<{prop.sequence}>"
        return f"""
  /// {prop.doc}
  const {sequence}& get{prop.capitalized}() const noexcept {{ return {prop.field}; }}
  {sequence}& get{prop.capitalized}Mutable() noexcept {{ return {prop.field}; }}
"""
    if prop.struct:
        return f"""
  /// {prop.doc}
  const {prop.struct}& get{prop.capitalized}() const noexcept {{ return {prop.field}; }}
  /// Keeps a copy.
  void set{prop.capitalized}(const {prop.struct}& {prop.name});
"""
    if prop.attached:
        return f"""
  /// {prop.doc} Empty until it is attached.
  {prop.contains} get{prop.capitalized}() const noexcept;
  /// Attaches an element, or none; one that was attached before becomes a root of the model.
  /// @throws std::invalid_argument for an element of another model, or one that contains this.
  void set{prop.capitalized}(const {prop.contains}& {prop.name});
"""
    if prop.contains:
        return f"""
  /// {prop.doc} Empty until it is created.
  {prop.contains} get{prop.capitalized}() const noexcept;
  /// Creates the element in its slot; one that stood there before becomes a root of the model.
  {prop.contains} createInto{prop.capitalized}({prop.contains}::BuilderWrapper builder,
      const boost::uuids::uuid& uuid);
"""
    parameter = DATA_TYPES[prop.type][1]
    return f"""
  /// {prop.doc}
  {result_type(prop)} get{prop.capitalized}() const noexcept {{ return {prop.field}; }}
  void set{prop.capitalized}({parameter} {prop.name});
"""


def declare_field(prop, index):
    if prop.sequence:
        return (f"  gx::zero::ElementSequence<{prop.sequence}> {prop.field}{{\n"
                f"      *this, {{{index}, true, true, &gx::zero::ModelElement::containerProperty()}}}};\n")
    if prop.contains:
        return f"  {prop.contains}::Impl* {prop.field} = nullptr;\n"
    if prop.struct:
        return f"  {prop.struct} {prop.field};\n"
    field_type, _, initial, *_ = DATA_TYPES[prop.type]
    return f"  {field_type} {prop.field}{initial};\n"


def declare_impl(cls):
    builder_base = ""
    if cls.created == "top":
        builder_base = f"""  /// The create operation of the class's `Builder`, which `Derived` is.
  template <typename Derived>
  class BuilderBase {{
   public:
    /// Creates the element as a root of the builder's model.
    {cls.short} create{cls.short}(const boost::uuids::uuid& uuid) {{
      return Impl::create(static_cast<Derived*>(this)->getModel(), uuid);
    }}
  }};

"""
    create = ""
    if cls.created:
        create = f"""
  /// Creates an element that nothing contains yet.
  static {cls.short} create(const gx::zero::Model& model, const boost::uuids::uuid& uuid);
"""
    constructor = "  explicit Impl(const gx::zero::Creation& creation);\n"
    public_constructor = constructor if cls.created else ""
    protected_constructor = "" if cls.created else constructor
    accessors = "".join(declare_accessors(p) for p in cls.properties)
    reflect = ("  gx::zero::ValueMeta reflect(std::size_t propertyIndex) const override;\n"
               if cls.properties else "")
    if cls.holders:
        reflect += "  void dropContained(const gx::zero::ModelElement::Impl* element) noexcept override;\n"
    protected = (f"\n protected:\n{protected_constructor}{reflect}"
                 if protected_constructor or reflect else "")
    fields = "".join(declare_field(p, i) for i, p in cls.indexed_properties)
    private = f"\n private:\n{fields}" if fields else ""
    return f"""class TESSEL_HOST_API {cls.short}::Impl : public {cls.base}::Impl {{
 public:
{builder_base}{public_constructor}  ~Impl() override;
{create}
  gx::zero::meta::Class metaClass() const override;
{accessors}{protected}{private}}};
"""


def declare_builder(cls):
    if cls.created == "top":
        return f"""/// Creates elements of the class in the model that it is constructed from.
class {cls.short}::Builder : public {cls.short}::Impl::BuilderBase<{cls.short}::Builder> {{
 public:
  explicit Builder(const gx::zero::Model& model) : model_(model) {{}}
  const gx::zero::Model& getModel() const noexcept {{ return model_; }}

 private:
  gx::zero::Model model_;
}};
"""
    return f"""/// Stands for an element of the class that its owner is to create in a slot.
class {cls.short}::Builder {{}};

/// The form in which an owner's create-into operation takes the builder.
class {cls.short}::BuilderWrapper {{
 public:
  BuilderWrapper(Builder) noexcept {{}}
}};
"""


def define_inline(cls):
    readers = "".join(f"""
/// {prop.doc}
inline const {DATA_TYPES[prop.type][0]}& {prop.reader}(const {cls.short}& element) noexcept {{
  return element.get()->get{prop.capitalized}();
}}
""" for prop in cls.properties if prop.reader)
    return f"""inline {cls.short}::{cls.short}(Impl* impl) noexcept : {cls.base}(impl) {{}}

inline {cls.short}::Impl* {cls.short}::get() const noexcept {{
  return static_cast<Impl*>(gx::zero::ModelElement::get());
}}
{readers}"""


def declare_struct(cls):
    accessors = "".join(f"""
  /// {prop.doc}
  {result_type(prop)} get{prop.capitalized}() const noexcept {{ return {prop.field}; }}
  {cls.short}& set{prop.capitalized}({DATA_TYPES[prop.type][1]} {prop.name});
""" for prop in cls.properties)
    fields = "".join(declare_field(p, i) for i, p in cls.indexed_properties)
    return f"""/// {cls.doc}
class TESSEL_HOST_API {cls.short} final : public gx::zero::ValueStruct {{
 public:
  {cls.short}();
  {cls.short}(const {cls.short}& other);
  {cls.short}({cls.short}&& other) noexcept;
  {cls.short}& operator=(const {cls.short}& other);
  {cls.short}& operator=({cls.short}&& other) noexcept;
  ~{cls.short}() override;

  gx::zero::meta::Class metaClass() const override;
  gx::zero::ValueMeta reflect(std::size_t propertyIndex) const override;
{accessors}
 private:
{fields}}};
"""


def define_struct(cls):
    setters = "".join(f"""
{cls.short}& {cls.short}::set{prop.capitalized}({DATA_TYPES[prop.type][1]} {prop.name}) {{
  {prop.field} = {prop.name};
  return *this;
}}
""" for prop in cls.properties)
    descriptions = "".join(define_property_description(p, i) for i, p in cls.indexed_properties)
    cases = "".join(define_reflection(p, i) for i, p in cls.indexed_properties)
    return f"""{cls.short}::{cls.short}() = default;
{cls.short}::{cls.short}(const {cls.short}& other) = default;
{cls.short}::{cls.short}({cls.short}&& other) noexcept = default;
{cls.short}& {cls.short}::operator=(const {cls.short}& other) = default;
{cls.short}& {cls.short}::operator=({cls.short}&& other) noexcept = default;
{cls.short}::~{cls.short}() = default;

gx::zero::meta::Class {cls.short}::metaClass() const {{
  static const gx::zero::meta::Class::Impl impl(
      u"{cls.name}", gx::zero::meta::Class(),
      {{
{descriptions}      }});
  return gx::zero::meta::Class(&impl);
}}

gx::zero::ValueMeta {cls.short}::reflect(std::size_t propertyIndex) const {{
  switch (propertyIndex) {{
{cases}    default:
      throw std::invalid_argument("the struct has no such field");
  }}
}}
{setters}"""


def header(namespace, classes, includes):
    include_lines = "".join(f'#include "{line}"\n' for line in includes)
    body = []
    for cls in classes:
        if cls.struct:
            body.append(declare_struct(cls))
            continue
        body.append(declare_handle(cls))
        body.append(declare_impl(cls))
        if cls.created:
            body.append(declare_builder(cls))
        body.append(define_inline(cls))
    return f"""{NOTICE}#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/export.hpp"
{include_lines}#include "gx/zero.hpp"

namespace {namespace} {{

{chr(10).join(body)}
}}  // namespace {namespace}
"""


def define_property_description(prop, index):
    if prop.element:
        kind = "kSequence" if prop.sequence else "kContained"
        described = (f"[]() -> gx::zero::meta::Type {{ return {prop.element}::metaClass(); }}, "
                     f"gx::zero::meta::Property::Kind::{kind}")
    elif prop.struct:
        described = (f"[]() -> gx::zero::meta::Type {{ return {prop.struct}().metaClass(); }}, "
                     f"gx::zero::meta::Property::Kind::kStruct")
    else:
        described = f"&{DATA_TYPES[prop.type][4]}, gx::zero::meta::Property::Kind::kData"
    return f'          gx::zero::meta::Property(u"{prop.name}", {described}, {index}),\n'


def define_accessors(cls, prop, index):
    if prop.sequence:
        return ""
    if prop.contains:
        getter = f"""
{prop.contains} {cls.short}::Impl::get{prop.capitalized}() const noexcept {{
  return {prop.contains}({prop.field});
}}
"""
        if prop.attached:
            return getter + f"""
void {cls.short}::Impl::set{prop.capitalized}(const {prop.contains}& {prop.name}) {{
  replaceContained({prop.field}, {prop.name}.get(), {index});
  {prop.field} = {prop.name}.get();
}}
"""
        return getter + f"""
{prop.contains} {cls.short}::Impl::createInto{prop.capitalized}(
    {prop.contains}::BuilderWrapper, const boost::uuids::uuid& uuid) {{
  {prop.contains} created = {prop.contains}::Impl::create(getModel(), uuid);
  replaceContained({prop.field}, created.get(), {index});
  {prop.field} = created.get();
  return created;
}}
"""
    parameter = f"const {prop.struct}&" if prop.struct else DATA_TYPES[prop.type][1]
    return f"""
void {cls.short}::Impl::set{prop.capitalized}({parameter} {prop.name}) {{
  {prop.field} = {prop.name};
  markSet({index});
}}
"""


def define_drop(cls):
    drops = "".join(f"  {prop.field}.dropElement(element);\n" if prop.sequence else
                    f"  if ({prop.field} == element) {prop.field} = nullptr;\n"
                    for prop in cls.holders)
    return f"""
void {cls.short}::Impl::dropContained(const gx::zero::ModelElement::Impl* element) noexcept {{
{drops}  {cls.base}::Impl::dropContained(element);
}}
""" if drops else ""


def define_reflection(prop, index):
    if prop.sequence:
        value = f"gx::zero::ValueMeta({prop.sequence}::metaClass(), {prop.field})"
    elif prop.struct:
        value = f"gx::zero::ValueMeta({prop.field})"
    elif prop.contains:
        value = (f"gx::zero::ValueMeta({prop.contains}::metaClass(),\n"
                 f"                                 gx::zero::meta::Property::Kind::kContained,\n"
                 f"                                 gx::zero::ModelElement({prop.field}))")
    else:
        value = f"gx::zero::ValueMeta({DATA_TYPES[prop.type][3].format(prop.field)})"
    return f"    case {index}:\n      return {value};\n"


def define_class(cls):
    indexed = cls.indexed_properties
    descriptions = "".join(define_property_description(p, i) for i, p in indexed)
    accessors = "".join(define_accessors(cls, p, i) for i, p in indexed)
    create = ""
    if cls.created:
        create = f"""
{cls.short} {cls.short}::Impl::create(const gx::zero::Model& model,
    const boost::uuids::uuid& uuid) {{
  return {cls.short}(model.get()->createElement<Impl>(uuid));
}}
"""
    reflect = ""
    if cls.properties:
        cases = "".join(define_reflection(p, i) for i, p in indexed)
        reflect = f"""
gx::zero::ValueMeta {cls.short}::Impl::reflect(std::size_t propertyIndex) const {{
  switch (propertyIndex) {{
{cases}    default:
      return {cls.base}::Impl::reflect(propertyIndex);
  }}
}}
"""
    return f"""gx::zero::meta::Class {cls.short}::metaClass() {{
  static const gx::zero::meta::Class::Impl impl(
      u"{cls.name}", {cls.base}::metaClass(),
      {{
{descriptions}      }});
  return gx::zero::meta::Class(&impl);
}}

{cls.short}::Impl::Impl(const gx::zero::Creation& creation)
    : {cls.base}::Impl(creation) {{}}

{cls.short}::Impl::~Impl() = default;
{create}
gx::zero::meta::Class {cls.short}::Impl::metaClass() const {{ return {cls.short}::metaClass(); }}
{accessors}{define_drop(cls)}{reflect}"""


def source(namespace, classes):
    include = namespace.replace("::", "/") + ".hpp"
    body = "\n".join(define_struct(cls) if cls.struct else define_class(cls) for cls in classes)
    return f"""{NOTICE}#include "{include}"

#include <stdexcept>
#include <string_view>

namespace {namespace} {{

{body}
}}  // namespace {namespace}
"""


def outputs(classes):
    """The content of every file by its path below the output folder."""
    files = {}
    namespaces = list(dict.fromkeys(cls.namespace for cls in classes.values()))
    for namespace in namespaces:
        members = [cls for cls in classes.values() if cls.namespace == namespace]
        referred = {name.rpartition("::")[0] for cls in members for name in cls.references}
        includes = sorted(other.replace("::", "/") + ".hpp"
                          for other in referred - {namespace, ROOT_CLASS.rpartition("::")[0]})
        path = namespace.replace("::", "/")
        files[f"include/{path}.hpp"] = header(namespace, members, includes)
        files[f"src/{namespace.replace('::', '_')}.cpp"] = source(namespace, members)
    return files


def main():
    parser = argparse.ArgumentParser(description="Makes the model classes from their description.")
    parser.add_argument("description", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--list", action="store_true", help="print the paths, write nothing")
    arguments = parser.parse_args()
    try:
        files = outputs(read_description(arguments.description))
    except (OSError, KeyError, tomllib.TOMLDecodeError, DescriptionError) as error:
        sys.exit(f"{arguments.description}: {error}")
    for relative, content in files.items():
        path = arguments.folder / relative
        if arguments.list:
            print(path)
        elif not path.exists() or path.read_text(encoding="utf-8") != content:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(content, encoding="utf-8")


if __name__ == "__main__":
    main()
