"""The model's classes as their description, a TOML file, tells them."""

import dataclasses
import tomllib

ROOT_CLASS = "gx::zero::ModelElement"

# description type -> (C++ field, parameter of the setter, initial value, expression for reflection,
# the metaclass's type)
DATA_TYPES = {
    "text": ("std::u16string", "const std::u16string&", "", "std::u16string_view({})",
             "gx::zero::meta::Type::text"),
    "number": ("double", "double", " = 0", "{}", "gx::zero::meta::Type::number"),
    "boolean": ("bool", "bool", " = false", "{}", "gx::zero::meta::Type::boolean"),
    "short": ("std::uint16_t", "std::uint16_t", " = 0", "std::uint64_t{{{}}}",
              "gx::zero::meta::Type::integer"),
    "integer": ("std::uint64_t", "std::uint64_t", " = 0", "{}", "gx::zero::meta::Type::integer"),
}


class DescriptionError(Exception):
    """A row of the description that no class can be made from."""


@dataclasses.dataclass
class Property:
    name: str
    doc: str
    type: str | None = None
    contains: str | None = None
    sequence: str | None = None
    struct: str | None = None
    attached: bool = False
    reader: str | None = None

    def __post_init__(self):
        if [self.type, self.contains, self.sequence, self.struct].count(None) != 3:
            raise DescriptionError(
                f"property {self.name}: one of type, contains, sequence and struct")
        if self.type is not None and self.type not in DATA_TYPES:
            raise DescriptionError(f"property {self.name}: unknown type {self.type}")
        if self.attached and not self.contains:
            raise DescriptionError(f"property {self.name}: attached goes with contains")
        if self.reader and not self.type:
            raise DescriptionError(f"property {self.name}: reader goes with type")

    @property
    def element(self):
        """The class of the property's elements, if it has any."""
        return self.contains or self.sequence

    @property
    def capitalized(self):
        return self.name[0].upper() + self.name[1:]

    @property
    def field(self):
        return self.name + "_"


@dataclasses.dataclass
class ModelClass:
    name: str
    doc: str
    base: str | None = None
    struct: bool = False
    created: str | None = None
    properties: list = dataclasses.field(default_factory=list)
    first_index: int = 0

    def __post_init__(self):
        if self.created not in (None, "top", "contained"):
            raise DescriptionError(f"class {self.name}: created is {self.created}")
        if self.struct == (self.base is not None) or (self.struct and self.created):
            raise DescriptionError(f"class {self.name}: either a base or a struct")
        try:
            self.properties = [Property(**row) for row in self.properties]
        except TypeError as error:
            raise DescriptionError(f"class {self.name}: {error}") from error
        if self.struct and any(prop.type is None for prop in self.properties):
            raise DescriptionError(f"class {self.name}: the fields of a struct have a type")

    @property
    def references(self):
        """The classes that have to be described before this one."""
        named = [p.contains or p.sequence or p.struct for p in self.properties]
        return [name for name in [self.base, *named] if name and name != self.name]

    @property
    def short(self):
        return self.name.rpartition("::")[2]

    @property
    def namespace(self):
        return self.name.rpartition("::")[0]

    @property
    def indexed_properties(self):
        return list(enumerate(self.properties, self.first_index))

    @property
    def holders(self):
        """The properties that hold elements."""
        return [p for p in self.properties if p.element]


def read_description(path):
    """The classes by qualified name, each after what it refers to."""
    classes = {}
    known = {ROOT_CLASS}
    with open(path, "rb") as file:
        rows = tomllib.load(file)["class"]
    for row in rows:
        try:
            cls = ModelClass(**row)
        except TypeError as error:
            raise DescriptionError(f"class {row.get('name', '?')}: {error}") from error
        for needed in cls.references:
            if needed not in known:
                raise DescriptionError(f"class {cls.name}: {needed} is not described before it")
        if cls.name in known:
            raise DescriptionError(f"class {cls.name} is described twice")
        if cls.base in classes:
            base = classes[cls.base]
            cls.first_index = base.first_index + len(base.properties)
        if cls.first_index + len(cls.properties) > 32:
            raise DescriptionError(f"class {cls.name}: more than 32 properties")
        known.add(cls.name)
        classes[cls.name] = cls
    return classes
