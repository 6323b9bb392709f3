// The builders, compiled for a host that has nothing of the reference host but what its interfaces
// name: each kind is built once as it should be, and once without each member that it requires.

#include <gmock/gmock.h>

#include <algorithm>
#include <boost/log/attributes/value_visitation.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "controls/control_builders.hpp"
#include "framework/element_sequence.hpp"
#include "tessel/shared/logging.hpp"
#include "widgets/task_builders.hpp"

namespace {

using document::gxzero::Node;
using foundation::json::List;
using foundation::json::Members;
using foundation::json::Value;
using gx::zero::Model;
using gx::zero::ModelElement;
using gx::zero::ModelElementImpl;
namespace controls = tessel::build::json::controls;
namespace framework = tessel::build::json::controls::framework;
namespace widgets = tessel::build::json::widgets;

std::string told(const ModelElementImpl& element);

struct Teller {
  std::string operator()(const std::u16string& text) const { return {text.begin(), text.end()}; }
  std::string operator()(bool flag) const { return flag ? "yes" : "no"; }
  std::string operator()(const ModelElement& element) const { return told(*element.get()); }
  template <typename Number>
  std::string operator()(Number number) const {
    std::ostringstream text;
    text << number;
    return text.str();
  }
};

/// An element and what it holds, by name.
std::string told(const ModelElementImpl& element) {
  std::string text;
  for (const auto& [name, value] : element.kept) {
    text += (text.empty() ? "" : " ") + name + "=" + std::visit(Teller(), value);
  }
  for (const auto& [name, list] : element.lists) {
    for (const ModelElementImpl* entry : list) text += " " + name + told(*entry);
  }
  return "{" + text + "}";
}

/// What a call that throws has thrown, or what the call says.
std::string outcomeOf(const std::function<std::string()>& call) {
  try {
    return call();
  } catch (const std::exception& error) {
    return error.what();
  }
}

/// The value without the member at the end of the path, whose steps have points between them. In a
/// list, the way is its first entry's.
Value without(const Value& value, const std::string& path) {
  if (const auto* list = value.held<List>()) {
    List rest = *list;
    rest.front() = without(rest.front(), path);
    return rest;
  }
  Members rest = *value.held<Members>();
  const std::size_t point = path.find('.');
  const std::string step = path.substr(0, point);
  if (point == std::string::npos) {
    rest.erase(step);
  } else {
    rest[step] = without(rest[step], path.substr(point + 1));
  }
  return rest;
}

Value control(const char* className, Members context) {
  return Members{{"className", className},
                 {"controlId", "c1"},
                 {"startColumn", 2.0},
                 {"context", std::move(context)}};
}
Value generic(const char* type, Members data) {
  return control("LumoControlNode", {{"type", type}, {"data", std::move(data)}});
}
Value ofClass(const char* className, Members data) {
  return control(className, {{"data", std::move(data)}});
}
/// A control's node around its data object.
std::string node(const std::string& record) {
  return "{data={" + record + "} id=c1 position={startColumn=2}}";
}

struct Kind {
  std::string name;
  std::shared_ptr<tessel::build::json::NodeBuilder> builder;
  Value json;
  std::string built;
};

template <typename Builder, typename... Services>
Kind kindOf(std::string name, Value json, std::string built, const Services&... services) {
  return {std::move(name), std::make_shared<Builder>(services...), std::move(json),
          std::move(built)};
}

std::vector<Kind> kinds() {
  const Value item = Members{{"label", "A"}, {"value", "a"}};
  const Value task = Members{{"className", "LumoAppIntegratedInlineNode"},
                             {"instanceId", "i1"},
                             {"taskID", "t1"},
                             {"numOfCodeLines", 3.7}};
  const std::string toldTask = "{id=i1 task=taskId:t1 numCodeLines:3 }";
  return {
      kindOf<controls::ButtonBuilderImpl>("button", generic("button", {{"text", "Run"}}),
                                          node("label=Run")),
      kindOf<controls::CheckBoxBuilderImpl>(
          "check box", generic("checkBox", {{"defaultValue", true}}), node("defaultValue=yes")),
      kindOf<controls::ColorPickerBuilderImpl>(
          "colour picker",
          ofClass("ColorPickerControlNode", {{"colorFormat", "hex"}, {"defaultValue", "#fff"}}),
          node("colorFormat=hex defaultValue=#fff")),
      kindOf<controls::ComboboxBuilderImpl>(
          "combo box",
          generic("comboBox", {{"items", List{item, item}},
                               {"itemLabels", List{"x", "y"}},
                               {"linkedVariable", "v"}}),
          node("linkedVariable=v itemLabels{label=x} itemLabels{label=y} items{item=a label=A} "
               "items{item=a label=A}")),
      kindOf<controls::DatePickerBuilderImpl>(
          "date picker", ofClass("DatePickerControlNode", {{"displayFormat", "yyyy"}}),
          node("displayFormat=yyyy")),
      kindOf<controls::EditFieldBuilderImpl>(
          "edit field of text",
          generic("editField", {{"defaultValue", "a"}, {"defaultValueLinkedVariable", "v"}}),
          node("defaultValueData={defaultLinkedVariable=v defaultValue=a}")),
      kindOf<controls::EditFieldBuilderImpl>(
          "edit field of a number",
          generic("editField", {{"valueType", "Double"},
                                {"defaultValue", 2.5},
                                {"defaultValueLinkedVariable", "v"}}),
          node("defaultValueData={defaultLinkedVariable=v defaultValue=2.5} valueType=Double")),
      kindOf<controls::FileBrowserBuilderImpl>(
          "file browser", ofClass("FileBrowserControlNode", {{"browserType", "file"}}),
          node("browserType=file")),
      kindOf<controls::RangeSliderNodeBuilderImpl>(
          "range slider",
          ofClass("RangeSliderControlNode", {{"minimum", 1.0}, {"defaultValue", "[1 2]"}}),
          node("defaultValue=[1 2] min=1")),
      kindOf<controls::SliderNodeBuilderImpl>(
          "slider", generic("slider", {{"maximum", 9.5}, {"defaultValue", 4.0}}),
          node("defaultValue=4 max=9.5")),
      kindOf<controls::SpinnerNodeBuilderImpl>(
          "spinner", ofClass("SpinnerControlNode", {{"step", 2.0}, {"executionOn", "change"}}),
          node("executeOn=change step=2")),
      kindOf<controls::StateButtonBuilderImpl>(
          "state button", ofClass("StateButtonControlNode", {{"defaultValueLinkedVariable", "v"}}),
          node("defaultLinkedVariable=v")),
      kindOf<widgets::LumoTaskIntegratedInlineNodeBuilderImpl>("task", task, toldTask),
      kindOf<widgets::LumoTaskHeaderBuilderImpl>(
          "task header",
          Members{{"className", "LumoAppLineNode"},
                  {"anchor", "7"},
                  {"children", List{task, "text", task}}},
          "{anchorId=M_7 children" + toldTask + " children" + toldTask + "}",
          std::make_shared<widgets::LumoTaskIntegratedInlineNodeBuilderImpl>()),
  };
}

std::string builtBy(const Kind& kind, const Value& json) {
  return outcomeOf([&] { return told(*kind.builder->build(Model(), json).get()); });
}
std::string answerOf(const Kind& kind, const Value& json) {
  return outcomeOf([&] { return kind.builder->canBuild(json) ? "yes" : "no"; });
}

TEST(SecondHost, EachKindIsBuilt) {
  for (const Kind& kind : kinds()) {
    SCOPED_TRACE(kind.name);
    EXPECT_EQ(answerOf(kind, kind.json), "yes");
    EXPECT_EQ(builtBy(kind, kind.json), kind.built);
  }
}

struct MissingRow {
  std::string kind;
  std::string path;
  std::string outcome;
};

void expectOutcomes(const std::vector<MissingRow>& rows,
                    std::string (*answer)(const Kind&, const Value&)) {
  const std::vector<Kind> all = kinds();
  for (const MissingRow& row : rows) {
    const auto kind = std::find_if(all.begin(), all.end(),
                                   [&row](const Kind& each) { return each.name == row.kind; });
    ASSERT_NE(kind, all.end()) << row.kind;
    EXPECT_EQ(answer(*kind, without(kind->json, row.path)), row.outcome)
        << row.kind << " without " << row.path;
  }
}

TEST(SecondHost, AMissingMemberEndsInWhatTheHostMakesOfIt) {
  expectOutcomes({{"button", "className", "no"},
                  {"button", "context", "no context to read"},
                  {"button", "context.type", "invalid conversion: Nothing to Text"},
                  {"slider", "className", "no"},
                  {"slider", "context", "no context to read"},
                  {"slider", "context.type", "invalid conversion: Nothing to Text"},
                  {"spinner", "className", "no"},
                  {"date picker", "className", "no className to read"}},
                 answerOf);
  const std::string linked = "context.data.defaultValueLinkedVariable";
  expectOutcomes({{"button", "context", "no context to read"},
                  {"button", "context.data", "no data to read"},
                  {"colour picker", "context.data.colorFormat", "no colorFormat to change"},
                  {"combo box", "context.data.items.label", "no label to read"},
                  {"combo box", "context.data.items.value", "no value to read"},
                  {"date picker", "context.data.displayFormat", "no displayFormat to change"},
                  {"edit field of text", linked, "no defaultValueLinkedVariable to change"},
                  {"edit field of a number", linked, "no defaultValueLinkedVariable to change"},
                  {"file browser", "context", "no context to read"},
                  {"file browser", "context.data", "no data to read"},
                  {"file browser", "context.data.browserType", "no browserType to change"},
                  {"task header", "anchor", "no anchor to read"},
                  {"task header", "children", "no children to read"}},
                 builtBy);
}

TEST(SecondHost, AHeldAlternativeIsNamedInTheHostsWords) {
  const controls::SliderNodeBuilderImpl slider;
  for (const auto& [held, name] : std::vector<std::pair<Value, std::string>>{
           {"1", "Text"}, {1.0F, "Single"}, {std::uint64_t{1}, "Unsigned"}}) {
    EXPECT_EQ(outcomeOf([&slider, value = held] {
                return told(*slider.build(Model(), generic("slider", {{"minimum", value}})).get());
              }),
              "invalid conversion: " + name + " to Real");
  }
}

TEST(SecondHost, AnElementIsOnceInASequence) {
  const Model model;
  const auto line = gx::zero::create<document::gxzero::LumoAppLineNodeImpl>(model.elements(), {});
  const auto record =
      gx::zero::create<lumocode::contentmodel::gxzero::ComboboxDataImpl>(model.elements(), {});
  const auto twice = [](auto& sequence, const auto& element) {
    framework::append(sequence, element);
    framework::append(sequence, element);
    EXPECT_EQ(sequence.commits, 1);
    EXPECT_EQ(sequence.implementations().size(), 1U);
    EXPECT_EQ(element.get()->container, sequence.getOwner().get());
  };
  // Asking the element for its container, and looking through the sequence.
  twice(line.get()->getChildrenMutable(),
        Node(gx::zero::create<document::gxzero::NodeImpl>(model.elements(), {})));
  twice(record.get()->getItemsMutable(),
        gx::zero::create<lumocode::contentmodel::gxzero::ComboboxItemImpl>(model.elements(), {}));
}

TEST(SecondHost, ACastThatFailsIsTheHostsExceptionOfTheTypesName) {
  const gx::zero::meta::Type text(u"Text", false);
  try {
    framework::requireModelElement({{}, text, 0});
    FAIL() << "nothing was thrown";
  } catch (const framework::CannotCastIncompatibleTypes& error) {
    EXPECT_EQ(error.message().typeName, u"Text");
  }
}

class Sink : public boost::log::sinks::basic_formatted_sink_backend<
                 char, boost::log::sinks::concurrent_feeding> {
 public:
  void consume(const boost::log::record_view&, const std::string& text) { texts.push_back(text); }
  std::vector<std::string> texts;
};

TEST(SecondHost, WritesItsRecordsWhileThePlainWordsBitIsSet) {
  auto& logger = tessel::shared::logging::getLogger();
  const auto sink = boost::make_shared<boost::log::sinks::unlocked_sink<Sink>>();
  boost::log::core::get()->add_sink(sink);
  const controls::SliderNodeBuilderImpl slider;
  const Value json = generic("slider", {{"step", 1.0}});
  for (const unsigned levels : {0U, ~8U, 8U}) {
    logger.levels = levels;
    slider.build(Model(), json);
  }
  logger.levels = 0;
  boost::log::core::get()->remove_sink(sink);
  const auto& texts = sink->locked_backend()->texts;
  EXPECT_THAT(texts,
              testing::ElementsAre("Starting to build a SliderNode using the incoming JSON below",
                                   "<members>", "Found the context property",
                                   "Found the context.data property", "Found the step property",
                                   "Set the step property"));
  EXPECT_EQ(logger.timesLocked, static_cast<int>(texts.size()));
}

}  // namespace
