"""Makes from a bundle's manifest what goes into the library beside its sources.

usage: make_bundle.py MANIFEST FOLDER [HEADER...]

Writes into FOLDER
  resources.zip     the archive that the service runtime reads: the manifest, in a folder named like
                    the bundle. Its bytes depend on the manifest alone, which `cmake -E tar` cannot
                    promise: it writes the times of the last access and change into it
  exports.map       a linker script that exports the entry points and nothing else
  entry_points.inc  the entry points of all components. The source that includes it declares their
                    classes and has `newInstance` and `deleteInstance`
With HEADERs, the components are their classes that derive from another one: the manifest has to name
each of them, once, and give no two components the same name.

Exit status: 0; 1 with a message when the manifest is not as it has to be.
"""

import collections
import json
import pathlib
import re
import sys
import zipfile

IDENTIFIER = re.compile(r"[A-Za-z_]\w*", re.ASCII)
CLASS_PATH = re.compile(r"[A-Za-z_]\w*(::[A-Za-z_]\w*)*", re.ASCII)
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
NAMESPACE_OR_CLASS = re.compile(r"\bnamespace\s+([\w:]+)\s*\{"
                                r"|(?<!enum )\b(?:class|struct)\s+(\w+)(?:\s+final)?\s*:[^:]")


class ManifestError(Exception):
    """What is wrong with the manifest."""


def require_single(names, what):
    for name, count in collections.Counter(names).items():
        if count > 1:
            raise ManifestError(f"{count} components {what} {name}")


def class_of(component):
    path = component.get("implementation-class")
    if not isinstance(path, str) or not CLASS_PATH.fullmatch(path):
        raise ManifestError(f'"implementation-class" is no class: {json.dumps(path)}')
    return path


def read_manifest(path):
    """The bundle's name and its components."""
    try:
        manifest = json.loads(path.read_text(encoding="utf-8"))
        name, components = manifest["bundle.symbolic_name"], manifest["scr"]["components"]
        for component in components:
            class_of(component)
    except KeyError as error:
        raise ManifestError(f'"{error.args[0]}" is missing') from error
    except (ValueError, TypeError, AttributeError) as error:
        raise ManifestError(f"cannot be read: {error}") from error
    if not isinstance(name, str) or not IDENTIFIER.fullmatch(name):
        raise ManifestError(f'"bundle.symbolic_name" is no identifier: {json.dumps(name)}')
    return name, components


def classes_in(header):
    """The classes of a header that derive from another one."""
    namespace, classes = "", []
    text = COMMENT.sub("", header.read_text(encoding="utf-8"))
    for entered, declared in NAMESPACE_OR_CLASS.findall(text):
        if entered:
            namespace = entered
        else:
            classes.append(f"{namespace}::{declared}")
    return classes


def require_components(headers, components):
    declared = {name: header for header in headers for name in classes_in(header)}
    classes = [class_of(component) for component in components]
    require_single(classes, "have the class")
    require_single([each.get("name", class_of(each)) for each in components], "have the name")
    named = set(classes)
    for name in sorted(declared.keys() - named):
        raise ManifestError(f"no component has the class {name} of {declared[name]}")
    for name in sorted(named - declared.keys()):
        raise ManifestError(f"none of {', '.join(map(str, headers))} declares the class {name}")


def function_name(component):
    return class_of(component).replace("::", "_")


def entry_points(component):
    """The two functions of a component. Its constructor takes the references, in their order."""
    name = function_name(component)
    interfaces = component.get("service", {}).get("interfaces", [])
    references = component.get("references", [])
    if references and not component.get("inject-references"):
        return f'#error "the references of {class_of(component)} are not injected"\n'
    arguments = ", ".join([class_of(component), f"std::tuple<{', '.join(interfaces)}>",
                           *(f"std::shared_ptr<{each['interface']}>" for each in references)])
    names = ", ".join(f'"{each["name"]}"' for each in references)
    return f"""\
extern "C" US_ABI_EXPORT ComponentInstance* NewInstance_{name}() {{
  return newInstance<{arguments}>({names});
}}
extern "C" US_ABI_EXPORT void DeleteInstance_{name}(ComponentInstance* instance) {{
  deleteInstance(instance);
}}
"""


def exports(bundle, components):
    symbols = [f"_us_set_bundle_context_instance_{bundle}"]
    for component in components:
        name = function_name(component)
        symbols += [f"NewInstance_{name}", f"DeleteInstance_{name}"]
    return "".join(["{\n  global:\n", *(f"    {symbol};\n" for symbol in symbols),
                    "  local:\n    *;\n};\n"])


def write_archive(path, bundle, manifest):
    with zipfile.ZipFile(path, "w", zipfile.ZIP_STORED) as archive:
        entry = zipfile.ZipInfo(f"{bundle}/manifest.json", date_time=(2000, 1, 1, 0, 0, 0))
        entry.create_system = 3  # permissions as on Unix, wherever this runs
        entry.external_attr = 0o100644 << 16
        archive.writestr(entry, manifest.read_bytes())


def main():
    manifest, folder, *headers = map(pathlib.Path, sys.argv[1:])
    try:
        bundle, components = read_manifest(manifest)
        if headers:
            require_components(headers, components)
    except ManifestError as error:
        sys.exit(f"{manifest}: {error}")
    folder.mkdir(parents=True, exist_ok=True)
    write_archive(folder / "resources.zip", bundle, manifest)
    (folder / "exports.map").write_text(exports(bundle, components), encoding="utf-8")
    (folder / "entry_points.inc").write_text("".join(map(entry_points, components)),
                                             encoding="utf-8")


if __name__ == "__main__":
    main()
