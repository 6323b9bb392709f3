#include "page/drawn_control.hpp"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "page/property_table.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "support/all_builders.hpp"

namespace tessel_tool {
namespace {

document::gxzero::Node nodeOf(std::string_view json) {
  const auto result = importDocument(test_support::allBuilders(), gx::zero::Model::create(),
                                     reference_host::json::parse(json));
  EXPECT_EQ(result.nodes.size(), 1U) << json;
  return result.nodes.front();
}

std::string generic(std::string_view type, std::string_view data) {
  return R"({"className": "LumoControlNode", "controlId": "x", "context": {"type": ")" +
         std::string(type) + R"(", "data": {)" + std::string(data) + "}}}";
}

std::string ofClass(std::string_view className, std::string_view data) {
  return R"({"className": ")" + std::string(className) +
         R"(ControlNode", "controlId": "x", "context": {"data": {)" + std::string(data) + "}}}";
}

/// What is drawn, and a line for each note.
std::string drawn(const std::string& json) {
  const document::gxzero::Node node = nodeOf(json);
  ControlKinds kinds;
  const ControlView view(*node.get(), kinds);
  HtmlText text;
  HtmlWriter html(text);
  std::vector<std::string> notes;
  view.draw(html, "v", notes);
  std::string out(text.view());
  for (const std::string& note : notes) out += "\n" + note;
  return out;
}

struct Row {
  std::string json;
  std::string drawn;
};

void expectDrawn(const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(drawn(row.json), row.drawn) << row.json;
}

TEST(DrawnControl, ButtonsAndFlags) {
  expectDrawn({
      {generic("button", R"("text": "Run <1>")"),
       R"(<button type="button"><bdi>Run &lt;1></bdi></button>)"},
      {generic("button", ""),
       R"(<button type="button"><bdi class="unnamed">button x</bdi></button>)"},
      {generic("button", R"("text": " \u200b")"),
       R"(<button type="button"><bdi class="unnamed">button x</bdi></button>)"},
      {R"({"className": "button"})",
       R"(<button type="button"><bdi class="unnamed">button</bdi></button>)"},
      {generic("checkBox", R"("text": "On", "defaultValue": true)"),
       R"(<label><bdi>On</bdi><input type="checkbox" checked></label>)"},
      {generic("checkBox", R"("text": "On", "defaultValueLinkedVariable": "a")"),
       "<label><bdi>On</bdi><input type=\"checkbox\"></label>\n"
       "the default value comes from the variable a"},
      {ofClass("StateButton", R"("text": "Live", "defaultValue": true)"),
       R"(<label><bdi>Live</bdi><input type="checkbox" role="switch" checked></label>)"},
  });
}

TEST(DrawnControl, NumbersWithinTheirBounds) {
  const std::string bounds = R"("text": "N", "minimum": 0, "maximum": 1, "step": 0.05)";
  const std::string input = R"(<label><bdi>N</bdi><input type="range" min="0" max="1" step="0.05")";
  const std::string fits =
      input + R"( value="0.35"></label><span class="scale">0.35 in 0–1</span>)";
  const auto refused = [&](const std::string& value) {
    return input + R"( class="blank" aria-describedby="v"></label><bdi class="value" id="v">)" +
           value + R"(</bdi><span class="scale">0–1</span>)";
  };
  const std::string offStep = refused("0.33");
  const std::string above = refused("1.5");
  const std::string below = refused("-0.05");
  expectDrawn({
      {generic("slider", bounds + R"(, "defaultValue": 0.35)"), fits},
      {generic("slider", bounds + R"(, "defaultValue": 0.33)"), offStep},
      {generic("slider", bounds + R"(, "defaultValue": 1.5)"), above},
      {generic("slider", bounds + R"(, "defaultValue": -0.05)"), below},
      {generic("slider", bounds), input +
                                      " class=\"blank\"></label><span class=\"scale\">0–1</span>\n"
                                      "no default value is set"},
      {generic("slider", R"("text": "N", "step": 0, "defaultValue": 7)"),
       "<label><bdi>N</bdi><input type=\"range\" min=\"0\" max=\"100\" step=\"any\" value=\"7\">"
       "</label><span class=\"scale\">7 in 0–100</span>\nthe step is not positive: 0\n"
       "no minimum is set; drawn with 0\nno maximum is set; drawn with 100"},
      {generic("slider", R"("text": "N", "minimum": 2, "maximum": 1, "maxLinkedVariable": "m")"),
       "<label><bdi>N</bdi><input type=\"range\" min=\"2\" max=\"1\" step=\"any\" class=\"blank\">"
       "</label><span class=\"scale\">2–1</span>\nthe minimum, 2, is above the maximum, 1\n"
       "no default value is set\nthe maximum comes from the variable m"},
      {ofClass("Spinner", R"("text": "N", "defaultValue": 1e300)"),
       R"(<label><bdi>N</bdi><input type="number" step="any" value="1e+300"></label>)"},
      {ofClass("Spinner", R"("text": "N", "maximum": 3, "step": 2, "defaultValue": 4)"),
       R"(<label><bdi>N</bdi><input type="number" max="3" step="2" aria-describedby="v"></label>)"
       R"(<bdi class="value" id="v">4</bdi><span class="scale">up to 3</span>)"},
      {ofClass("Spinner", R"("text": "N", "minimum": 1)"),
       R"(<label><bdi>N</bdi><input type="number" min="1" step="any"></label>)"
       R"(<span class="scale">from 1</span>)"},
      {ofClass("Spinner", R"("text": "N", "minimum": 1, "maximum": 9, "defaultValue": 2)"),
       R"(<label><bdi>N</bdi><input type="number" min="1" max="9" step="any" value="2"></label>)"
       R"(<span class="scale">1–9</span>)"},
  });
}

TEST(DrawnControl, HtmlGetsNoNumberThatItWouldChange) {
  struct {
    std::string_view data;
    bool fits;
  } const rows[] = {
      {R"("minimum": 0, "maximum": 1e13, "step": 1, "defaultValue": 1000000000)", true},
      {R"("minimum": 0, "maximum": 1e13, "step": 1, "defaultValue": 1000000000.5)", false},
      {R"("minimum": 0, "maximum": 1e6, "step": 0.001, "defaultValue": 999999.999)", true},
      {R"("minimum": 0, "maximum": 1e6, "step": 0.001, "defaultValue": 999999.9999)", false},
      {R"("minimum": 0, "maximum": 10, "step": 1, "defaultValue": 2.0000000009)", false},
      {R"("minimum": 0, "maximum": 1, "step": 0.1, "defaultValue": 0.3)", true},
      {R"("minimum": -0.3, "maximum": 1, "step": 0.1, "defaultValue": 0)", true},
      {R"("minimum": 0, "maximum": 1e308, "step": 1e-300, "defaultValue": 1e307)", false},
  };
  for (const auto& [data, fits] : rows) {
    EXPECT_EQ(drawn(generic("slider", data)).find(" value=\"") != std::string::npos, fits) << data;
  }
}

TEST(DrawnControl, BoundsThatAreNotSetHoldWhatIs) {
  struct {
    std::string_view data;
    std::string_view bounds;
    std::string_view scale;
  } const rows[] = {
      {R"("minimum": 150, "defaultValue": 160)", R"(min="150" max="250")", "160 in 150–250"},
      {R"("minimum": 150, "defaultValue": 300)", R"(min="150" max="300")", "300 in 150–300"},
      {R"("minimum": 20, "defaultValue": 30)", R"(min="20" max="100")", "30 in 20–100"},
      {R"("maximum": -5, "defaultValue": -7)", R"(min="-105" max="-5")", "-7 in -105–-5"},
      {R"("maximum": 5, "defaultValue": -7)", R"(min="-7" max="5")", "-7 in -7–5"},
      {R"("maximum": 5, "defaultValue": 7)", R"(min="0" max="5")", "0–5"},
      {R"("defaultValue": 300)", R"(min="0" max="300")", "300 in 0–300"},
      {R"("defaultValue": -1)", R"(min="-1" max="100")", "-1 in -1–100"},
      {R"("step": 3, "defaultValue": 7)", R"(min="1" max="100")", "7 in 1–100"},
  };
  for (const auto& [data, bounds, scale] : rows) {
    const std::string html = drawn(generic("slider", data));
    EXPECT_NE(html.find(bounds), std::string::npos) << data << html;
    EXPECT_NE(html.find(">" + std::string(scale) + "<"), std::string::npos) << data << html;
  }
  EXPECT_NE(drawn(ofClass("RangeSlider", R"("defaultValue": "[-20 500]")"))
                .find(R"(min="-20" max="500" step="any")"),
            std::string::npos);
}

TEST(DrawnControl, RangesWithTwoEnds) {
  const auto range = [](std::string_view value) {
    return ofClass("RangeSlider",
                   R"("text": "R", "minimum": 0, "maximum": 10, "step": 1, "defaultValue": ")" +
                       std::string(value) + '"');
  };
  const auto drawing = [](std::string_view lower, std::string_view upper, std::string_view text) {
    const std::string input = R"(<input type="range" min="0" max="10" step="1" aria-label="R, )";
    const auto value = [](std::string_view number) {
      return number.empty() ? std::string(R"( class="blank" aria-describedby="v">)")
                            : " value=\"" + std::string(number) + "\">";
    };
    std::string html = R"(<span role="group" aria-label="R" class="range"><bdi>R</bdi>)" + input +
                       "lower end\"" + value(lower) + input + "upper end\"" + value(upper) +
                       "</span>";
    if (!text.empty()) html += R"(<bdi class="value" id="v">)" + std::string(text) + "</bdi>";
    return html + (text.empty() ? R"(<span class="scale">2–8 in 0–10</span>)"
                                : R"(<span class="scale">0–10</span>)");
  };
  for (const std::string_view good :
       {"[2 8]", "[2, 8]", "[2,8]", "[2   8]", "[ 2 8 ]", "[2 , 8]"}) {
    EXPECT_EQ(drawn(range(good)), drawing("2", "8", "")) << good;
  }
  for (const std::string_view bad :
       {"2 8", "[8 2]", "[2 8 9]", "[2]", "[]", "[2 11]", "[2.5 8]", "[a b]", "[0x1 2]",
        "[1e999 2]", "[", "all", "[2,,8]", "[2 8,]", "[,2 8]", "[2,,8,]", "[2;8]"}) {
    EXPECT_EQ(drawn(range(bad)), drawing("", "", bad)) << bad;
  }
  const std::string unset = drawn(ofClass("RangeSlider", R"("minimum": 0, "maximum": 1)"));
  EXPECT_NE(unset.find("\nno default value is set"), std::string::npos) << unset;
}

TEST(DrawnControl, ChoicesAndFields) {
  const std::string items =
      R"("text": "C", "items": [{"label": "A", "value": "1"}, {"label": "B", "value": "1"}])";
  const auto crossed = [](std::string_view value) {
    return generic("comboBox",
                   R"("text": "C", "items": [{"label": "b", "value": "a"},
                      {"label": "x", "value": "b"}], "defaultValue": ")" +
                       std::string(value) + '"');
  };
  const std::string list = "<label><bdi>C</bdi><select dir=\"auto\"";
  const auto option = [](std::string_view value, std::string_view label, bool isSelected = false) {
    return "<option value=\"" + std::string(value) + (isSelected ? "\" selected" : "\"") +
           " dir=\"auto\">" + std::string(label);
  };
  const std::string none = "<option selected value=\"\">";
  const std::string end = "</select></label>";
  expectDrawn({
      {generic("comboBox", items + R"(, "defaultValue": "1")"),
       list + '>' + option("1", "A", true) + option("1", "B") + end},
      {generic("comboBox", items + R"(, "defaultValue": "B", "linkedVariable": "v")"),
       list + '>' + option("1", "A") + option("1", "B", true) + end +
           "\nthe value comes from the variable v"},
      {crossed("b"), list + '>' + option("a", "b") + option("b", "x", true) + end},
      {crossed("x"), list + '>' + option("a", "b") + option("b", "x", true) + end},
      {generic("comboBox", items), list + '>' + none + option("1", "A") + option("1", "B") + end},
      {generic("comboBox", R"("text": "C", "items": [{"label": "A", "value": "1"},
                              {"label": "none", "value": ""}], "defaultValue": "")"),
       list + '>' + option("1", "A") + option("", "none", true) + end},
      {generic("comboBox", items + R"(, "defaultValue": "2", "itemLabels": ["x", "y"])"),
       list + R"( aria-describedby="v">)" + none + option("1", "A") + option("1", "B") + end +
           "<bdi class=\"value\" id=\"v\">2</bdi>\nlabels beside the items: x, y"},
      {generic("comboBox", R"("text": "C", "itemLabels": ["x"], "defaultValue": "x")"),
       list + '>' + option("x", "x", true) + end},
      {generic("editField",
               R"("text": "E", "defaultValue": "\"a\"", "defaultValueLinkedVariable": "v")"),
       "<label><bdi>E</bdi><input type=\"text\" dir=\"auto\" value=\"&quot;a&quot;\"></label>\n"
       "the default value comes from the variable v"},
      {generic("editField",
               R"("text": "E", "defaultValue": "a\nb", "defaultValueLinkedVariable": "")"),
       R"(<label><bdi>E</bdi><input type="text" dir="auto" aria-describedby="v"></label>)"
       R"(<bdi class="value" id="v">a\nb</bdi>)"},
      {generic(
           "editField",
           R"("text": "E", "valueType": "Double", "defaultValue": 2.5, "defaultValueLinkedVariable": "")"),
       R"(<label><bdi>E</bdi><input type="number" step="any" value="2.5"></label>)"},
      {ofClass("FileBrowser", R"("text": "F", "browserType": "file", "defaultValue": "/a b")"),
       R"(<label><bdi>F</bdi><input type="file" aria-describedby="v"></label>)"
       R"(<bdi class="value" id="v">/a b</bdi>)"},
  });
}

TEST(DrawnControl, ColoursAndDatesThatHtmlKnows) {
  const auto color = [](std::string_view value) {
    return drawn(ofClass("ColorPicker", R"("text": "P", "colorFormat": "", "defaultValue": ")" +
                                            std::string(value) + '"'));
  };
  const auto date = [](std::string_view value) {
    return drawn(ofClass("DatePicker", R"("text": "P", "displayFormat": "", "defaultValue": ")" +
                                           std::string(value) + '"'));
  };
  const auto field = [](std::string_view type, std::string_view value, bool isTaken) {
    const std::string input = "<label><bdi>P</bdi><input type=\"" + std::string(type) + '"';
    return isTaken ? input + " value=\"" + std::string(value) + "\"></label>"
                   : input + (type == "color" ? " class=\"blank\"" : "") +
                         " aria-describedby=\"v\"></label><bdi class=\"value\" id=\"v\">" +
                         std::string(value) + "</bdi>";
  };
  EXPECT_EQ(color("#00ff9a"), field("color", "#00ff9a", true));
  for (const std::string_view other :
       {"#00FF9A", "red", "#00ff9", "#00ff9ag", "00ff9aa", "#00ff9g"}) {
    EXPECT_EQ(color(other), field("color", other, false)) << other;
  }
  for (const std::string_view day : {"2026-03-01", "2024-02-29", "2000-02-29", "0001-12-31"}) {
    EXPECT_EQ(date(day), field("date", day, true));
  }
  for (const std::string_view other :
       {"01.03.2026", "2026-02-29", "1900-02-29", "2026-13-01", "2026-00-01", "2026-04-31",
        "2026-01-00", "0000-01-01", "2026-1-01", "2026-01-0x", "2026-01-011", "today"}) {
    EXPECT_EQ(date(other), field("date", other, false)) << other;
  }
  expectDrawn({
      {ofClass("ColorPicker", R"("text": "P", "colorFormat": "")"),
       "<label><bdi>P</bdi><input type=\"color\" class=\"blank\"></label>\n"
       "no default value is set"},
      {ofClass("DatePicker", R"("text": "P", "displayFormat": "dd.MM.yyyy")"),
       R"(<label><bdi>P</bdi><input type="date"></label><bdi class="format">dd.MM.yyyy</bdi>)"},
  });
}

TEST(DrawnControl, TitlesTellControlsApart) {
  struct {
    std::string json;
    std::string_view title;
  } const rows[] = {
      {generic("slider", R"("text": "Weight")"), "slider x"},
      {R"({"className": "button", "context": {"type": "button", "data": {"text": "Run"}}})",
       "button Run"},
      {R"({"className": "button"})", "button"},
  };
  for (const auto& [json, title] : rows) {
    const auto node = nodeOf(json);
    ControlKinds kinds;
    EXPECT_EQ(ControlView(*node.get(), kinds).title(), title) << json;
  }
}

TEST(DrawnControl, TasksAreBlocks) {
  const auto node = nodeOf(
      R"({"className": "LumoAppLineNode", "anchorId": "a", "children": [
          {"className": "LumoAppIntegratedInlineNode", "instanceId": "t", "taskID": "clean",
           "text": "x\ny", "view": ""}]})");
  ControlKinds kinds;
  const ControlView view(*node.get(), kinds);
  HtmlText out;
  HtmlWriter html(out);
  view.drawTask(html, kinds);
  EXPECT_TRUE(view.isTask());
  EXPECT_EQ(out.view(), R"(<p class="name"><strong>task header</strong> <bdi>M_a</bdi></p>)"
                        R"(<div class="task" data-kind="task">)"
                        R"(<p class="name"><strong>task</strong> <bdi>t</bdi></p>)"
                        R"(<dl><div><dt>task<dd dir="auto">clean</dd></div></dl>)"
                        "<pre><code dir=\"ltr\">x\ny</code></pre></div>");
}

TEST(DrawnControl, TheTableHasEveryPropertyAndWhatIsContained) {
  const auto node =
      nodeOf(generic("comboBox", R"("text": "\\n", "items": [{"label": "A", "value": "1"}])"));
  ClassNames classes;
  HtmlText out;
  HtmlWriter html(out);
  writeProperties(html, classes, ElementView(*node.get()));
  EXPECT_EQ(
      out.view(),
      R"(<table class="properties"><thead><tr><th>property<th>type<th>value<tbody>)"
      R"(<tr><th>anchorId<td>text<td class="unset">not set)"
      R"(<tr><th>children<td>Node<td class="unset">not set)"
      R"(<tr><th>id<td>text<td><bdi>"x"</bdi><tr><th>position<td>LumoControlPosition<td>)"
      R"(<tbody class="level1"><tr><th>startColumn<td>integer<td class="unset">not set)"
      R"(<tr><th>endColumn<td>integer<td class="unset">not set)"
      R"(<tbody><tr><th>comboBoxData<td>ComboboxData<td>)"
      R"(<tbody class="level1"><tr><th>label<td>text<td><bdi>"\\n"</bdi>)"
      R"(<tr><th>code<td>text<td class="unset">not set)"
      R"(<tr><th>executionModel<td>text<td class="unset">not set)"
      R"(<tr><th>defaultValue<td>text<td class="unset">not set)"
      R"(<tr><th>linkedVariable<td>text<td class="unset">not set)"
      R"(<tr><th>items<td>ComboboxItem<td>1<tr><th>items[0]<td>ComboboxItem<td>)"
      R"(<tbody class="level2"><tr><th>label<td>text<td><bdi>"A"</bdi>)"
      R"(<tr><th>item<td>text<td><bdi>"1"</bdi>)"
      R"(<tbody class="level1"><tr><th>itemLabels<td>ComboboxItemLabel<td class="unset">not set)"
      "</table>");
}

}  // namespace
}  // namespace tessel_tool
