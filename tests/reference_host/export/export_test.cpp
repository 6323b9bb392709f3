#include "reference_host/export/export.hpp"

#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

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
using lumocode::contentmodel::gxzero::ButtonData;
using lumocode::contentmodel::gxzero::CheckboxData;
using lumocode::contentmodel::gxzero::ComboboxData;
using lumocode::contentmodel::gxzero::ComboboxItem;
using lumocode::contentmodel::gxzero::ComboboxItemLabel;
using lumocode::contentmodel::gxzero::SpinnerData;

/// A class of this test's own, with a slot for one more of itself: nesting without end, and a
/// reference.
class Box : public gx::zero::ModelElement {
 public:
  class Impl;

  static gx::zero::meta::Class metaClass();

  explicit Box(Impl* impl);
};

class Box::Impl : public gx::zero::ModelElement::Impl {
 public:
  explicit Impl(const gx::zero::Creation& creation) noexcept
      : gx::zero::ModelElement::Impl(creation) {}

  gx::zero::meta::Class metaClass() const override { return Box::metaClass(); }

  void setInner(Impl* inner) {
    replaceContained(inner_, inner, 1);
    inner_ = inner;
    inner->outer_ = this;
    inner->markSet(0);
  }

 protected:
  gx::zero::ValueMeta reflect(std::size_t propertyIndex) const override {
    using gx::zero::ValueMeta;
    using gx::zero::meta::Property;
    const bool outwards = propertyIndex == 0;
    return ValueMeta(Box::metaClass(),
                     outwards ? Property::Kind::kReference : Property::Kind::kContained,
                     gx::zero::ModelElement(outwards ? outer_ : inner_));
  }

 private:
  Impl* outer_ = nullptr;
  Impl* inner_ = nullptr;
};

Box::Box(Impl* impl) : gx::zero::ModelElement(impl) {}

gx::zero::meta::Class Box::metaClass() {
  using gx::zero::meta::Property;
  using gx::zero::meta::Type;
  const auto anyElement = []() -> Type { return gx::zero::ModelElement::metaClass(); };
  static const gx::zero::meta::Class::Impl impl(
      u"Box", gx::zero::ModelElement::metaClass(),
      {
          Property(u"outer", anyElement, Property::Kind::kReference, 0),
          Property(u"inner", anyElement, Property::Kind::kContained, 1),
      });
  return gx::zero::meta::Class(&impl);
}

Box::Impl* createBox(const Model& model) {
  return model.get()->createElement<Box::Impl>(nil_uuid());
}

ButtonNode createButton(const Model& model) {
  return ButtonNode::Builder(model).createButtonNode(nil_uuid());
}

LumoControlPosition createPosition(const ButtonNode& button) {
  return button.get()->createIntoPosition(LumoControlPosition::Builder(), nil_uuid());
}

ButtonData createData(const ButtonNode& button) {
  return button.get()->createIntoButtonData(ButtonData::Builder(), nil_uuid());
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
       createPosition(button);
       createData(button);
       return button;
     },
     R"({"class":"ButtonNode","position":{"class":"LumoControlPosition"},)"
     R"("buttonData":{"class":"ButtonData"}})",
     "ButtonNode\n  position: LumoControlPosition (nothing set)\n"
     "  buttonData: ButtonData (nothing set)\n"},
    {"properties come in the class's order, not in the order of setting; columns have all their "
     "digits; a text set to its initial value counts as set",
     [](const Model& model) {
       const ButtonNode button = createButton(model);
       const ButtonData data = createData(button);
       data.get()->setCode(u"");
       data.get()->setLabel(u"Run");
       const LumoControlPosition position = createPosition(button);
       position.get()->setEndColumn(std::numeric_limits<std::uint64_t>::max());
       position.get()->setStartColumn(2);
       button.get()->setId(u"b1");
       return button;
     },
     R"({"class":"ButtonNode","id":"b1","position":{"class":"LumoControlPosition","startColumn":2,)"
     R"("endColumn":18446744073709551615},)"
     R"("buttonData":{"class":"ButtonData","label":"Run","code":""}})",
     "ButtonNode\n  id: \"b1\"\n  position: LumoControlPosition\n    startColumn: 2\n"
     "    endColumn: 18446744073709551615\n  buttonData: ButtonData\n    label: \"Run\"\n"
     "    code: \"\"\n"},
    {"text is UTF-8, escaped where JSON asks for it; a lone surrogate becomes U+FFFD",
     [](const Model& model) {
       const ButtonNode button = createButton(model);
       button.get()->setId(u"\u00e4\U0001F600\"\\\n" + std::u16string(1, u'\xd800'));
       return button;
     },
     "{\"class\":\"ButtonNode\",\"id\":\"\u00e4\U0001F600\\\"\\\\\\n\ufffd\"}",
     "ButtonNode\n  id: \"\u00e4\U0001F600\\\"\\\\\\n\ufffd\"\n"},
    {"an empty sequence is left out",
     [](const Model& model) {
       const ComboboxNode node = ComboboxNode::Builder(model).createComboboxNode(nil_uuid());
       node.get()->createIntoComboBoxData(ComboboxData::Builder(), nil_uuid());
       return node;
     },
     R"({"class":"ComboboxNode","comboBoxData":{"class":"ComboboxData"}})",
     "ComboboxNode\n  comboBoxData: ComboboxData (nothing set)\n"},
    {"sequences",
     [](const Model& model) {
       const ComboboxNode node = ComboboxNode::Builder(model).createComboboxNode(nil_uuid());
       const auto data = node.get()->createIntoComboBoxData(ComboboxData::Builder(), nil_uuid());
       for (const char16_t* label : {u"one", u"two"}) {
         const ComboboxItem item = ComboboxItem::Builder(model).createComboboxItem(nil_uuid());
         item.get()->setLabel(label);
         put(data.get()->getItemsMutable(), item);
       }
       put(data.get()->getItemLabelsMutable(),
           ComboboxItemLabel::Builder(model).createComboboxItemLabel(nil_uuid()));
       data.get()->setDefaultValue(u"one");
       return node;
     },
     R"({"class":"ComboboxNode","comboBoxData":{"class":"ComboboxData","defaultValue":"one",)"
     R"("items":[{"class":"ComboboxItem","label":"one"},{"class":"ComboboxItem","label":"two"}],)"
     R"("itemLabels":[{"class":"ComboboxItemLabel"}]}})",
     "ComboboxNode\n  comboBoxData: ComboboxData\n    defaultValue: \"one\"\n    items:\n"
     "      [0] ComboboxItem\n        label: \"one\"\n      [1] ComboboxItem\n"
     "        label: \"two\"\n    itemLabels:\n      [0] ComboboxItemLabel (nothing set)\n"},
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
       node.get()
           ->createIntoCheckBoxData(CheckboxData::Builder(), nil_uuid())
           .get()
           ->setDefaultValue(false);
       return node;
     },
     R"({"class":"CheckBoxNode","checkBoxData":{"class":"CheckboxData","defaultValue":false}})",
     "CheckBoxNode\n  checkBoxData: CheckboxData\n    defaultValue: false\n"},
    {"no references",
     [](const Model& model) {
       Box::Impl* const outer = createBox(model);
       outer->setInner(createBox(model));
       return Box(outer);
     },
     R"({"class":"Box","inner":{"class":"Box"}})", "Box\n  inner: Box (nothing set)\n"},
};

/// The same with class names that have no namespace.
std::string withoutNamespaces(std::string json) {
  for (const std::string_view name : {"document::gxzero::", "lumocode::contentmodel::gxzero::"}) {
    for (std::size_t at = 0; (at = json.find(name)) != std::string::npos;)
      json.erase(at, name.size());
  }
  return json;
}

TEST(Export, WritesWhatWasSet) {
  Exporter exporter;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.description);
    const Model model = Model::create();
    const ModelElement element = row.create(model);
    EXPECT_EQ(withoutNamespaces(toJson(element)), row.json);
    std::string json;
    json::JsonWriter compact(json);
    exporter.writeJson(compact, element);
    EXPECT_EQ(json, toJson(element)) << "by an exporter that may know the class already";
    std::string tree;
    exporter.appendTree(tree, element);
    EXPECT_EQ(tree, row.tree);
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
  Box::Impl* outermost = createBox(model);
  for (std::size_t level = 1; level < kLevels; ++level) {
    Box::Impl* const outer = createBox(model);
    outer->setInner(outermost);
    outermost = outer;
  }
  std::string expected;
  for (std::size_t level = 1; level < kLevels; ++level) expected += R"({"class":"Box","inner":)";
  expected += R"({"class":"Box")" + std::string(kLevels, '}');
  EXPECT_TRUE(toJson(Box(outermost)) == expected);

  std::string tree;
  Exporter().appendTree(tree, Box(outermost));
  const std::string deepest =
      "\n" + std::string(2 * kDeepestIndent, ' ') + "inner: Box (nothing set)\n";
  ASSERT_GT(tree.size(), deepest.size());
  EXPECT_EQ(tree.substr(tree.size() - deepest.size()), deepest);
}

}  // namespace
}  // namespace reference_host::exporting
