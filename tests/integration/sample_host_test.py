"""The sample host: one JSON text in, one node out."""

import json
import os
import subprocess
import unittest

from scratch_project import sample_text

BUTTON_NODE = {
    "class": "document::gxzero::ButtonNode",
    "id": "load-data",
    "position": {"class": "document::gxzero::LumoControlPosition",
                 "startColumn": 38, "endColumn": 46},
    "buttonData": {"class": "lumocode::contentmodel::gxzero::ButtonData",
                   "label": "Load", "executionModel": "onClick"},
}
WRONG_LABEL = {"className": "button", "context": {"data": {"text": 5}}}
BUTTON_RECORDS = ["log: Found the executionModel property", "log: Set the executionModel property",
                  "log: Found the label property", "log: Set the label property"]

# What is asked, the text, exit status, the node, what standard error says. Of the records, those of
# the asking are left out, whose order is the runtime's, and the input itself.
CASES = [
    ("a control", sample_text(), 0, BUTTON_NODE,
     ["builder: tessel::build::json::controls::ButtonBuilderImpl",
      "log: Starting to build a Button using the incoming JSON below", *BUTTON_RECORDS]),
    ("a task header", '{"className": "LumoAppLineNode", "anchorId": "tasks", "children": []}', 0,
     {"class": "document::gxzero::LumoAppLineNode", "anchorId": "M_tasks"},
     ["builder: tessel::build::json::widgets::LumoTaskHeaderBuilderImpl",
      "log: Starting to build a LumoAppLineNode",
      "log: Building the anchorId for the LumoAppLineNode",
      "log: Finished building the LumoAppLineNode"]),
    ("a label of the wrong type", json.dumps(WRONG_LABEL), 1, None,
     ["builder: tessel::build::json::controls::ButtonBuilderImpl",
      "error: invalid conversion: double to string",
      "log: Starting to build a Button using the incoming JSON below",
      "log: Found the label property"]),
    ("an unknown class", '{"className": "Paragraph"}', 1, None, ["error: no builder is for this"]),
    ("no JSON", '{"className":', 1, None, ["error: line 1, column 1: unclosed object"]),
]


def stories(standard_error):
    """Standard error without what differs from run to run and from input to input."""
    lines = standard_error.splitlines()
    return [line for line in lines
            if line.startswith(("builder: ", "error: ", "log: "))
            and not line.startswith(("log: Checking if can build ", "log: {"))]


class SampleHost(unittest.TestCase):
    maxDiff = None

    def test_builds_what_the_bundle_recognises(self):
        for description, text, status, node, said in CASES:
            with self.subTest(description):
                result = subprocess.run([os.environ["SAMPLE_HOST"]], input=text, text=True,
                                        capture_output=True, check=False)
                self.assertEqual(stories(result.stderr), said)
                self.assertEqual(json.loads(result.stdout or "null"), node)
                self.assertEqual(result.returncode, status)


if __name__ == "__main__":
    unittest.main()
