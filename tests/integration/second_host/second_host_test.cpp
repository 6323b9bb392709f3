// The builders, compiled for a host that has nothing of the reference host but what its interfaces
// name: each kind is built once as it should be, and once without each member that it requires.

#include <gmock/gmock.h>

#include <boost/log/attributes/value_visitation.hpp>
#include <boost/log/core/core.hpp>
#include <boost/log/sinks/basic_sink_backend.hpp>
#include <boost/log/sinks/unlocked_frontend.hpp>
#include <boost/make_shared.hpp>
#include <cstddef>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "contract/kinds.hpp"
#include "framework/element_sequence.hpp"
#include "support/manifest_builders.hpp"
#include "tessel/shared/logging.hpp"

namespace {

using contract::FieldSpec;
using contract::Kind;
using contract::Type;
using document::gxzero::Node;
using foundation::json::List;
using foundation::json::Members;
using foundation::json::Value;
using gx::zero::Model;
using gx::zero::ModelElement;
using gx::zero::ModelElementImpl;
namespace controls = tessel::build::json::controls;
namespace framework = tessel::build::json::controls::framework;

using Lines = std::vector<std::string>;

/// What an element and those in it hold, as "path=value".
void tell(const ModelElementImpl& element, const std::string& path, Lines& lines) {
  for (const auto& [name, value] : element.kept) {
    std::ostringstream text;
    if (const auto* held = std::get_if<ModelElement>(&value)) {
      tell(*held->get(), path + name + '.', lines);
      continue;
    }
    if (const auto* held = std::get_if<std::u16string>(&value))
      text << std::string(held->begin(), held->end());
    if (const auto* held = std::get_if<double>(&value)) text << *held;
    if (const auto* held = std::get_if<bool>(&value)) text << (*held ? "yes" : "no");
    if (const auto* held = std::get_if<unsigned long long>(&value)) text << *held;
    lines.push_back(path + name + '=' + text.str());
  }
  for (const auto& [name, list] : element.lists) {
    for (const ModelElementImpl* entry : list) tell(*entry, path + name + '.', lines);
  }
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

Value generic(const char* type, Members data) {
  return Members{{"className", contract::kGenericControl},
                 {"context", Members{{"type", type}, {"data", std::move(data)}}}};
}

/// An object of a kind, and what its node has to hold.
struct Whole {
  Members object;
  Lines lines;
};

Whole wholeOf(const Kind& kind, const char* valueType);

/// A value for a field. The lines tell it at the path of the field's property.
Value valueFor(const FieldSpec& field, const std::string& path, const char* valueType,
               Lines& lines) {
  const bool isNumber = valueType == std::string("Double");
  const auto told = [&](const std::string& text, Value value) {
    lines.push_back(path + '=' + text);
    return value;
  };
  switch (field.type) {
    case Type::kText:
    case Type::kTextOrNothing:
      return told("a", "a");
    case Type::kAnchor:
      return told("M_7", "7");
    case Type::kNumber:
      return told("2.5", 2.5);
    case Type::kColumn:
    case Type::kLineCount:
      return told("3", 3.7);
    case Type::kFlag:
      return told("yes", true);
    case Type::kValueType:
      return told(valueType, valueType);
    case Type::kDefault:
      lines.insert(lines.end(), {path + ".defaultLinkedVariable=v",
                                 path + ".defaultValue=" + (isNumber ? "2.5" : "a")});
      return isNumber ? Value(2.5) : "a";
    case Type::kDefaultLinked:
      return "v";
    case Type::kItems: {
      lines.insert(lines.end(),
                   {path + ".label=A", path + ".item=a", path + ".label=A", path + ".item=a"});
      const Value item = Members{{"label", "A"}, {"value", "a"}};
      return List{item, item};
    }
    case Type::kItemLabels:
      lines.insert(lines.end(), {path + ".label=x", path + ".label=y"});
      return List{"x", "y"};
    case Type::kChildren: {
      const Whole task = wholeOf(contract::taskKind(), valueType);
      for (int count = 0; count != 2; ++count) {
        for (const std::string& line : task.lines) lines.push_back(path + '.' + line);
      }
      return List{task.object, "text", task.object};
    }
  }
  throw std::logic_error("a type of no field");
}

/// @param valueType of an edit field: "Double" or another one.
Whole wholeOf(const Kind& kind, const char* valueType) {
  Whole whole;
  Members data;
  for (const FieldSpec& field : kind.fields) {
    std::string path = field.property;
    if (field.holder == FieldSpec::Holder::kData) path = kind.slot + '.' + path;
    if (field.holder == FieldSpec::Holder::kPosition) path = "position." + path;
    // This host has its anchors under another key.
    const std::string key = field.type == Type::kAnchor ? "anchor" : field.key;
    const bool inData = isControl(kind) && field.place == FieldSpec::Place::kData;
    (inData ? data : whole.object)[key] = valueFor(field, path, valueType, whole.lines);
  }
  whole.object["className"] = isGeneric(kind) ? std::string(contract::kGenericControl) : kind.word;
  if (isControl(kind)) {
    whole.object["context"] = Members{{"type", kind.word}, {"data", std::move(data)}};
  }
  return whole;
}

std::shared_ptr<tessel::build::json::NodeBuilder> builderOf(const Kind& kind) {
  std::shared_ptr<tessel::build::json::NodeBuilder> found;
  test_support::makeBuilders([&](const std::string& name, const auto& builder) {
    if (name == kind.builder) found = builder;
  });
  return found;
}

std::string builtBy(const Kind& kind, const Value& json) {
  return outcomeOf([&] {
    builderOf(kind)->build(Model(), json);
    return "built";
  });
}
std::string answerOf(const Kind& kind, const Value& json) {
  return outcomeOf([&] { return builderOf(kind)->canBuild(json) ? "yes" : "no"; });
}

TEST(SecondHost, EachKindIsBuilt) {
  for (const Kind& kind : contract::kinds()) {
    for (const char* valueType : {"Double", "String"}) {
      SCOPED_TRACE(kind.name + ' ' + valueType);
      const Whole whole = wholeOf(kind, valueType);
      const Value json = whole.object;
      EXPECT_EQ(answerOf(kind, json), "yes");
      Lines lines;
      const Model model;
      const Node node = builderOf(kind)->build(model, json);
      tell(*node.get(), "", lines);
      EXPECT_THAT(lines, testing::UnorderedElementsAreArray(whole.lines));
    }
  }
}

struct MissingRow {
  std::string builder;
  std::string path;
  std::string outcome;
};

void expectOutcomes(const std::vector<MissingRow>& rows,
                    std::string (*answer)(const Kind&, const Value&)) {
  for (const MissingRow& row : rows) {
    const Kind& kind = contract::kindOf(row.builder);
    for (const char* valueType : {"Double", "String"}) {
      EXPECT_EQ(answer(kind, without(wholeOf(kind, valueType).object, row.path)), row.outcome)
          << row.builder << " without " << row.path;
    }
  }
}

TEST(SecondHost, AMissingMemberEndsInWhatTheHostMakesOfIt) {
  expectOutcomes({{"ButtonBuilderImpl", "className", "no"},
                  {"ButtonBuilderImpl", "context", "no context to read"},
                  {"ButtonBuilderImpl", "context.type", "invalid conversion: Nothing to Text"},
                  {"SliderNodeBuilderImpl", "className", "no"},
                  {"SliderNodeBuilderImpl", "context", "no context to read"},
                  {"SliderNodeBuilderImpl", "context.type", "invalid conversion: Nothing to Text"},
                  {"SpinnerNodeBuilderImpl", "className", "no"},
                  {"DatePickerBuilderImpl", "className", "no className to read"}},
                 answerOf);
  const std::string linked = "context.data.defaultValueLinkedVariable";
  expectOutcomes(
      {{"ButtonBuilderImpl", "context", "no context to read"},
       {"ButtonBuilderImpl", "context.data", "no data to read"},
       {"ColorPickerBuilderImpl", "context.data.colorFormat", "no colorFormat to change"},
       {"ComboboxBuilderImpl", "context.data.items.label", "no label to read"},
       {"ComboboxBuilderImpl", "context.data.items.value", "no value to read"},
       {"DatePickerBuilderImpl", "context.data.displayFormat", "no displayFormat to change"},
       {"EditFieldBuilderImpl", linked, "no defaultValueLinkedVariable to change"},
       {"FileBrowserBuilderImpl", "context", "no context to read"},
       {"FileBrowserBuilderImpl", "context.data", "no data to read"},
       {"FileBrowserBuilderImpl", "context.data.browserType", "no browserType to change"},
       {"LumoTaskHeaderBuilderImpl", "anchor", "no anchor to read"},
       {"LumoTaskHeaderBuilderImpl", "children", "no children to read"}},
      builtBy);
}

TEST(SecondHost, AHeldAlternativeIsNamedInTheHostsWords) {
  const controls::SliderNodeBuilderImpl slider;
  for (const auto& [held, name] : std::vector<std::pair<Value, std::string>>{
           {"1", "Text"}, {1.0F, "Single"}, {std::uint64_t{1}, "Unsigned"}}) {
    EXPECT_EQ(outcomeOf([&slider, value = held] {
                slider.build(Model(), generic("slider", {{"minimum", value}}));
                return "built";
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
