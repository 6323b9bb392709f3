"""Random controls with everything in them that is read, all of it right."""

TEXTS = ["x", "a b", "Größe", "日本語", "a\"b", "\\", "𝄞 clef", "é́", "line\nbreak", "tab\t", ""]

_COMMON = {"executionModel": "string", "text": "string"}
_NUMERIC = {"minimum": "double", "maximum": "double", "step": "double", "executionOn": "string",
            "minLinkedVariable": "string", "maxLinkedVariable": "string", "stepLinkedVariable": "string",
            "defaultValueLinkedVariable": "string"}
_BOOLEAN = {"defaultValue": "bool", "defaultValueLinkedVariable": "string"}
# Each kind's shape, and where that shape has its fields: "generic" and "own" controls in the data of
# their context, tasks in themselves.
KINDS = {
    "button": ("generic", _COMMON),
    "checkBox": ("generic", {**_COMMON, **_BOOLEAN}),
    "slider": ("generic", {**_COMMON, **_NUMERIC, "defaultValue": "double"}),
    "comboBox": ("generic", {**_COMMON, "linkedVariable": "string", "items": "items",
                             "itemLabels": "labels"}),
    "editField": ("generic", {**_COMMON, "valueType": "string", "defaultValue": "edit",
                              "defaultValueLinkedVariable": "string"}),
    "SpinnerControlNode": ("own", {**_COMMON, **_NUMERIC, "defaultValue": "double"}),
    "RangeSliderControlNode": ("own", {**_COMMON, **_NUMERIC, "defaultValue": "string"}),
    "StateButtonControlNode": ("own", {**_COMMON, **_BOOLEAN}),
    "ColorPickerControlNode": ("own", {**_COMMON, "colorFormat": "string", "defaultValue": "string"}),
    "DatePickerControlNode": ("own", {**_COMMON, "displayFormat": "string", "defaultValue": "string"}),
    "FileBrowserControlNode": ("own", {**_COMMON, "browserType": "string", "defaultValue": "string"}),
    "LumoAppIntegratedInlineNode": ("task", {
        **_COMMON, **dict.fromkeys(["instanceId", "taskID", "appIdentifier", "view", "collapsed",
                                    "appVariables", "appVariablesUserMap", "appState", "autorun"],
                                   "string"), "numOfCodeLines": "double"}),
    "LumoAppLineNode": ("header", {}),
}
REQUIRED = {"ColorPickerControlNode": "colorFormat", "DatePickerControlNode": "displayFormat",
            "FileBrowserControlNode": "browserType", "editField": "defaultValueLinkedVariable"}


class Maker:
    def __init__(self, chance):
        self.chance = chance
        self.ids = 0

    def often(self, share):
        return self.chance.random() < share

    def text(self):
        return self.chance.choice(TEXTS)

    def several(self, make):
        return [make() for _ in range(self.chance.randrange(4))]

    def shuffled(self, members):
        return dict(self.chance.sample(list(members.items()), len(members)))

    def value(self, kind):
        if kind == "double":
            return self.chance.choice([0, 1, 2.5, 1e3])
        if kind == "bool":
            return self.often(0.5)
        if kind == "items":
            return self.several(lambda: {"label": self.text(), "value": self.text()})
        if kind == "labels":
            return self.several(self.text)
        return self.text()

    def data(self, kind, fields):
        data = {name: self.value(type_) for name, type_ in fields.items()}
        if "minimum" in data:
            data.update(minimum=0, maximum=1000, step=0.5)
        if kind == "editField":
            numeric = self.often(0.5)
            data["valueType"] = "Double" if numeric else self.chance.choice(["String", "x"])
            data["defaultValue"] = 2.5 if numeric else self.text()
        return self.shuffled(data)

    def control(self, kind):
        shape, fields = KINDS[kind]
        if shape == "task":
            return {"className": kind, **self.data(kind, fields)}
        if shape == "header":
            return {"className": kind, "anchorId": "a",
                    "children": self.several(lambda: self.control("LumoAppIntegratedInlineNode"))}
        self.ids += 1
        generic = shape == "generic"
        context = {"data": self.data(kind, fields), **({"type": kind} if generic else {})}
        return self.shuffled({
            "className": "LumoControlNode" if generic else kind, "controlId": f"id {self.ids}",
            "startColumn": 1, "endColumn": 7, "text": "0123456789", "context": self.shuffled(context)})

    def any_control(self):
        return self.control(self.chance.choice(sorted(KINDS)))
