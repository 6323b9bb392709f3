#include "reference_host/export/export.hpp"

#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <regex>
#include <string>
#include <utility>

#include "document/gxzero.hpp"
#include "gx/zero.hpp"
#include "lumocode/contentmodel/gxzero.hpp"
#include "reference_host/json/parse.hpp"
#include "support/scale.hpp"

namespace reference_host::exporting {
namespace {

using boost::uuids::nil_uuid;
using document::gxzero::ButtonNode;
using document::gxzero::CheckBoxNode;
using document::gxzero::ComboboxNode;
using document::gxzero::LumoControlPosition;
using document::gxzero::SpinnerNode;
using gx::zero::Model;
using gx::zero::ModelElement;
using Kind = gx::zero::meta::Property::Kind;
using lumocode::contentmodel::gxzero::ButtonData;
using lumocode::contentmodel::gxzero::CheckboxData;
using lumocode::contentmodel::gxzero::ComboboxData;
using lumocode::contentmodel::gxzero::ComboboxItem;
using lumocode::contentmodel::gxzero::SpinnerData;

/// An element with a slot for one more of its class, nesting without end, and a reference back.
class Box final : public ModelElement::Impl {
 public:
  explicit Box(const gx::zero::Creation& creation) noexcept : ModelElement::Impl(creation) {}

  gx::zero::meta::Class metaClass() const override {
    static const auto anyElement = []() -> gx::zero::meta::Type {
      return ModelElement::metaClass();
    };
    static const gx::zero::meta::Class::Impl impl(
        u"Box", ModelElement::metaClass(),
        {{u"outer", anyElement, Kind::kReference, 0}, {u"inner", anyElement, Kind::kContained, 1}});
    return gx::zero::meta::Class(&impl);
  }
  void setInner(Box* inner) {
    replaceContained(inner_, inner, 1);
    inner_ = inner;
    inner->outer_ = this;
    inner->markSet(0);
  }
  static Box* create(const Model& model) { return model.get()->createElement<Box>(nil_uuid()); }

 protected:
  gx::zero::ValueMeta reflect(std::size_t propertyIndex) const override {
    const bool outwards = propertyIndex == 0;
    return {metaClass(), outwards ? Kind::kReference : Kind::kContained,
            ModelElement(outwards ? outer_ : inner_)};
  }

 private:
  Box* outer_ = nullptr;
  Box* inner_ = nullptr;
};

ButtonNode createButton(const Model& model) {
  return ButtonNode::Builder(model).createButtonNode(nil_uuid());
}

template <typename Element>
void put(gx::zero::ElementSequence<Element>& sequence, const Element& element) {
  insert_last(sequence, element);
  sequence.getOwner()->_inverseAddThis(element.get(), *sequence.getOpposite(), false);
}

struct Row {
  const char* description;
  std::function<ModelElement(const Model&)> create;
  const char* json;
  const char* tree;
};

const Row kRows[] = {
    {"nothing set", createButton, R"({"class":"ButtonNode"})", "ButtonNode (nothing set)\n"},
    {"contained elements of which nothing was set are written",
     [](const Model& model) {
       const ButtonNode button = createButton(model);
       button.get()->createIntoPosition(LumoControlPosition::Builder(), nil_uuid());
       button.get()->createIntoButtonData(ButtonData::Builder(), nil_uuid());
       return button;
     },
     R"({"class":"ButtonNode","position":{"class":"LumoControlPosition"},)"
     R"("buttonData":{"class":"ButtonData"}})",
     "ButtonNode\n  position: LumoControlPosition (nothing set)\n"
     "  buttonData: ButtonData (nothing set)\n"},
    {"properties come in the class's order, not in the order of setting; columns have all their "
     "digits; text is UTF-8, escaped where JSON asks for it; it may be the initial one",
     [](const Model& model) {
       const ButtonNode button = createButton(model);
       const auto data = button.get()->createIntoButtonData(ButtonData::Builder(), nil_uuid());
       data.get()->setCode(u"");
       data.get()->setLabel(u"\u00e4\U0001F600\"\\\n" + std::u16string(1, u'\xd800'));
       button.get()
           ->createIntoPosition(LumoControlPosition::Builder(), nil_uuid())
           .get()
           ->setEndColumn(std::numeric_limits<std::uint64_t>::max());
       button.get()->setId(u"b1");
       return button;
     },
     R"({"class":"ButtonNode","id":"b1",)"
     R"("position":{"class":"LumoControlPosition","endColumn":18446744073709551615},)"
     "\"buttonData\":{\"class\":\"ButtonData\","
     "\"label\":\"\u00e4\U0001F600\\\"\\\\\\n\ufffd\",\"code\":\"\"}}",
     "ButtonNode\n  id: \"b1\"\n  position: LumoControlPosition\n"
     "    endColumn: 18446744073709551615\n  buttonData: ButtonData\n"
     "    label: \"\u00e4\U0001F600\\\"\\\\\\n\ufffd\"\n    code: \"\"\n"},
    {"sequences, of which an empty one is left out",
     [](const Model& model) {
       const ComboboxNode node = ComboboxNode::Builder(model).createComboboxNode(nil_uuid());
       const auto data = node.get()->createIntoComboBoxData(ComboboxData::Builder(), nil_uuid());
       const ComboboxItem item = ComboboxItem::Builder(model).createComboboxItem(nil_uuid());
       item.get()->setLabel(u"one");
       put(data.get()->getItemsMutable(), item);
       put(data.get()->getItemsMutable(),
           ComboboxItem::Builder(model).createComboboxItem(nil_uuid()));
       data.get()->setDefaultValue(u"one");
       return node;
     },
     R"({"class":"ComboboxNode","comboBoxData":{"class":"ComboboxData","defaultValue":"one",)"
     R"("items":[{"class":"ComboboxItem","label":"one"},{"class":"ComboboxItem"}]}})",
     "ComboboxNode\n  comboBoxData: ComboboxData\n    defaultValue: \"one\"\n    items:\n"
     "      [0] ComboboxItem\n        label: \"one\"\n      [1] ComboboxItem (nothing set)\n"},
    {"numbers",
     [](const Model& model) {
       const SpinnerNode node = SpinnerNode::Builder(model).createSpinnerNode(nil_uuid());
       const auto data = node.get()->createIntoSpinnerData(SpinnerData::Builder(), nil_uuid());
       data.get()->setMin(0.1);
       data.get()->setMax(3);
       return node;
     },
     R"({"class":"SpinnerNode","spinnerData":{"class":"SpinnerData","min":0.1,"max":3}})",
     "SpinnerNode\n  spinnerData: SpinnerData\n    min: 0.1\n    max: 3\n"},
    {"flags",
     [](const Model& model) {
       const CheckBoxNode node = CheckBoxNode::Builder(model).createCheckBoxNode(nil_uuid());
       const auto data = node.get()->createIntoCheckBoxData(CheckboxData::Builder(), nil_uuid());
       data.get()->setDefaultValue(false);
       return node;
     },
     R"({"class":"CheckBoxNode","checkBoxData":{"class":"CheckboxData","defaultValue":false}})",
     "CheckBoxNode\n  checkBoxData: CheckboxData\n    defaultValue: false\n"},
    {"no references",
     [](const Model& model) {
       Box* const outer = Box::create(model);
       outer->setInner(Box::create(model));
       return ModelElement(outer);
     },
     R"({"class":"Box","inner":{"class":"Box"}})", "Box\n  inner: Box (nothing set)\n"},
};

/// A text that is taken away part by part.
struct Parts {
  std::string part;
  std::string taken;
  std::size_t count = 0;
  PartEnds take = [this] {
    taken += std::exchange(part, "");
    ++count;
  };
};

TEST(Export, WritesWhatWasSet) {
  Exporter exporter;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.description);
    const Model model = Model::create();
    const ModelElement element = row.create(model);
    const std::string json = toJson(element);
    EXPECT_EQ(std::regex_replace(json, std::regex("[a-z:]+::"), ""), row.json);
    Parts jsonParts;
    json::JsonWriter compact(jsonParts.part);
    exporter.writeJson(compact, element, jsonParts.take);
    EXPECT_EQ(jsonParts.taken, json) << "by an exporter that may know the class already";
    EXPECT_EQ(jsonParts.count, model.get()->getElements().size());
    Parts treeParts;
    exporter.appendTree(treeParts.part, element, 0, treeParts.take);
    EXPECT_EQ(treeParts.taken, row.tree);
    EXPECT_EQ(treeParts.count, jsonParts.count);
    std::string pretty;
    json::JsonWriter writer(pretty, json::JsonWriter::Layout::kPretty);
    exporter.writeJson(writer, element);
    EXPECT_NE(pretty, json);
    EXPECT_EQ(json::parse(pretty), json::parse(json));
    EXPECT_EQ(element.get()->getHandleCount(), 1U) << "the export holds no handle";
    EXPECT_EQ(model.get()->getHeldElementCount(), 1U);
  }
}

TEST(Export, IsWrittenWhereTheWriterStands) {
  const Model model = Model::create();
  Exporter exporter;
  std::string out;
  json::JsonWriter writer(out);
  writer.beginArray();
  exporter.writeJson(writer, createButton(model));
  exporter.writeJson(writer, ModelElement());
  writer.endArray();
  EXPECT_EQ(out, R"([{"class":"document::gxzero::ButtonNode"},null])");
  out = "before\n";
  exporter.appendTree(out, createButton(model), 2);
  EXPECT_EQ(out, "before\n    ButtonNode (nothing set)\n");
}

TEST(Export, NestingHasNoBound) {
  constexpr std::size_t kLevels = 1'000'000 / test_support::kScale;
  const Model model = Model::create();
  // From the innermost outwards: an element that gets an owner looks at all owners above.
  Box* outermost = Box::create(model);
  for (std::size_t level = 1; level < kLevels; ++level) {
    Box* const inner = std::exchange(outermost, Box::create(model));
    outermost->setInner(inner);
  }
  std::string expected;
  for (std::size_t level = 1; level < kLevels; ++level) expected += R"({"class":"Box","inner":)";
  expected += R"({"class":"Box")" + std::string(kLevels, '}');
  EXPECT_TRUE(toJson(ModelElement(outermost)) == expected);

  std::string tree;
  Exporter().appendTree(tree, ModelElement(outermost));
  const std::string deepest =
      "\n" + std::string(2 * kDeepestIndent, ' ') + "inner: Box (nothing set)\n";
  ASSERT_GT(tree.size(), deepest.size());
  EXPECT_EQ(tree.substr(tree.size() - deepest.size()), deepest);
}

}  // namespace
}  // namespace reference_host::exporting
