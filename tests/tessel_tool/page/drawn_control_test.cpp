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
  view.draw(html, notes);
  std::string out(text.view());
  for (const std::string& note : notes) out += "\n" + note;
  return out;
}

struct Row {
  std::string json;
  std::string_view drawn;
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
  constexpr const char* kScale = R"(<span class="scale">0–1</span>)";
  const std::string bounds = R"("text": "N", "minimum": 0, "maximum": 1, "step": 0.05)";
  const std::string input = R"(<label><bdi>N</bdi><input type="range" min="0" max="1" step="0.05")";
  const std::string fits = input + R"( value="0.35"></label>)" + kScale;
  const std::string offStep = input + R"(></label><bdi class="value">0.33</bdi>)" + kScale;
  const std::string above = input + R"(></label><bdi class="value">1.5</bdi>)" + kScale;
  const std::string below = input + R"(></label><bdi class="value">-0.05</bdi>)" + kScale;
  expectDrawn({
      {generic("slider", bounds + R"(, "defaultValue": 0.35)"), fits},
      {generic("slider", bounds + R"(, "defaultValue": 0.33)"), offStep},
      {generic("slider", bounds + R"(, "defaultValue": 1.5)"), above},
      {generic("slider", bounds + R"(, "defaultValue": -0.05)"), below},
      {generic("slider", R"("text": "N", "step": 0, "defaultValue": 7)"),
       "<label><bdi>N</bdi><input type=\"range\" min=\"0\" max=\"100\" step=\"any\" value=\"7\">"
       "</label><span class=\"scale\">0–100</span>\nthe step is not positive: 0\n"
       "no minimum is set; drawn with 0\nno maximum is set; drawn with 100"},
      {generic("slider", R"("text": "N", "minimum": 2, "maximum": 1, "maxLinkedVariable": "m")"),
       "<label><bdi>N</bdi><input type=\"range\" min=\"2\" max=\"1\" step=\"any\"></label>"
       "<span class=\"scale\">2–1</span>\nthe minimum, 2, is above the maximum, 1\n"
       "the maximum comes from the variable m"},
      {ofClass("Spinner", R"("text": "N", "defaultValue": 1e300)"),
       R"(<label><bdi>N</bdi><input type="number" step="any" value="1e+300"></label>)"},
      {ofClass("Spinner", R"("text": "N", "maximum": 3, "step": 2, "defaultValue": 4)"),
       R"(<label><bdi>N</bdi><input type="number" max="3" step="2"></label>)"
       R"(<bdi class="value">4</bdi>)"},
  });
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
      return number.empty() ? std::string(">") : " value=\"" + std::string(number) + "\">";
    };
    std::string html = R"(<span role="group" aria-label="R" class="range"><bdi>R</bdi>)" + input +
                       "lower end\"" + value(lower) + input + "upper end\"" + value(upper) +
                       "</span>";
    if (!text.empty()) html += "<bdi class=\"value\">" + std::string(text) + "</bdi>";
    return html + R"(<span class="scale">0–10</span>)";
  };
  for (const std::string_view good : {"[2 8]", "[2, 8]", "[2,8]", "[2   8]"}) {
    EXPECT_EQ(drawn(range(good)), drawing("2", "8", "")) << good;
  }
  for (const std::string_view bad : {"2 8", "[8 2]", "[2 8 9]", "[2]", "[]", "[2 11]", "[2.5 8]",
                                     "[a b]", "[0x1 2]", "[1e999 2]", "[", "all"}) {
    EXPECT_EQ(drawn(range(bad)), drawing("", "", bad)) << bad;
  }
}

TEST(DrawnControl, ChoicesAndFields) {
  const std::string items =
      R"("text": "C", "items": [{"label": "A", "value": "1"}, {"label": "B", "value": "1"}])";
  expectDrawn({
      {generic("comboBox", items + R"(, "defaultValue": "1")"),
       R"(<label><bdi>C</bdi><select><option value="1" selected>A<option value="1">B</select></label>)"},
      {generic("comboBox", items + R"(, "defaultValue": "B", "linkedVariable": "v")"),
       "<label><bdi>C</bdi><select><option value=\"1\">A<option value=\"1\" selected>B</select>"
       "</label>\nthe value comes from the variable v"},
      {generic("comboBox", items + R"(, "defaultValue": "2", "itemLabels": ["x", "y"])"),
       "<label><bdi>C</bdi><select><option value=\"1\">A<option value=\"1\">B</select></label>"
       "<bdi class=\"value\">2</bdi>\nlabels beside the items: x, y"},
      {generic("comboBox", R"("text": "C", "itemLabels": ["x"], "defaultValue": "x")"),
       R"(<label><bdi>C</bdi><select><option value="x" selected>x</select></label>)"},
      {generic("editField",
               R"("text": "E", "defaultValue": "\"a\"", "defaultValueLinkedVariable": "v")"),
       "<label><bdi>E</bdi><input type=\"text\" value=\"&quot;a&quot;\"></label>\n"
       "the default value comes from the variable v"},
      {generic("editField",
               R"("text": "E", "defaultValue": "a\nb", "defaultValueLinkedVariable": "")"),
       R"(<label><bdi>E</bdi><input type="text"></label><bdi class="value">a\nb</bdi>)"},
      {generic(
           "editField",
           R"("text": "E", "valueType": "Double", "defaultValue": 2.5, "defaultValueLinkedVariable": "")"),
       R"(<label><bdi>E</bdi><input type="number" step="any" value="2.5"></label>)"},
      {ofClass("FileBrowser", R"("text": "F", "browserType": "file", "defaultValue": "/a b")"),
       R"(<label><bdi>F</bdi><input type="file"></label><bdi class="value">/a b</bdi>)"},
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
                   : input + "></label><bdi class=\"value\">" + std::string(value) + "</bdi>";
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
