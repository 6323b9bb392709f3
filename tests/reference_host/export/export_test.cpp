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
using document::gxzero::ComboboxNode;
using document::gxzero::LumoControlPosition;
using gx::zero::Model;
using lumocode::contentmodel::gxzero::ButtonData;
using lumocode::contentmodel::gxzero::ComboboxData;
using lumocode::contentmodel::gxzero::ComboboxItem;
using lumocode::contentmodel::gxzero::ComboboxItemLabel;

ButtonNode createButton(const Model& model) {
  return ButtonNode::Builder(model).createButtonNode(nil_uuid());
}

LumoControlPosition createPosition(const ButtonNode& button) {
  return button.get()->createIntoPosition(LumoControlPosition::Builder(), nil_uuid());
}

ButtonData createData(const ButtonNode& button) {
  return button.get()->createIntoButtonData(ButtonData::Builder(), nil_uuid());
}

struct Row {
  const char* description;
  std::function<void(const ButtonNode&)> fill;
  const char* json;
  const char* tree;
};

const Row kRows[] = {
    {"nothing set", [](const ButtonNode&) {}, R"({"class":"document::gxzero::ButtonNode"})",
     "ButtonNode (nothing set)\n"},
    {"contained elements of which nothing was set are written",
     [](const ButtonNode& button) {
       createPosition(button);
       createData(button);
     },
     R"({"class":"document::gxzero::ButtonNode",)"
     R"("position":{"class":"document::gxzero::LumoControlPosition"},)"
     R"("buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData"}})",
     "ButtonNode\n"
     "  position: LumoControlPosition (nothing set)\n"
     "  buttonData: ButtonData (nothing set)\n"},
    {"properties come in the class's order, not in the order of setting",
     [](const ButtonNode& button) {
       const ButtonData data = createData(button);
       data.get()->setCode(u"x = 1");
       data.get()->setLabel(u"Run");
       const LumoControlPosition position = createPosition(button);
       position.get()->setEndColumn(9);
       position.get()->setStartColumn(2);
       button.get()->setId(u"b1");
     },
     R"({"class":"document::gxzero::ButtonNode","id":"b1",)"
     R"("position":{"class":"document::gxzero::LumoControlPosition","startColumn":2,"endColumn":9},)"
     R"("buttonData":{"class":"lumocode::contentmodel::gxzero::ButtonData",)"
     R"("label":"Run","code":"x = 1"}})",
     "ButtonNode\n"
     "  id: \"b1\"\n"
     "  position: LumoControlPosition\n"
     "    startColumn: 2\n"
     "    endColumn: 9\n"
     "  buttonData: ButtonData\n"
     "    label: \"Run\"\n"
     "    code: \"x = 1\"\n"},
    {"a property set to its initial value counts as set",
     [](const ButtonNode& button) { button.get()->setId(u""); },
     R"({"class":"document::gxzero::ButtonNode","id":""})", "ButtonNode\n  id: \"\"\n"},
    {"columns have all their digits",
     [](const ButtonNode& button) {
       createPosition(button).get()->setStartColumn(std::numeric_limits<std::uint64_t>::max());
     },
     R"({"class":"document::gxzero::ButtonNode",)"
     R"("position":{"class":"document::gxzero::LumoControlPosition",)"
     R"("startColumn":18446744073709551615}})",
     "ButtonNode\n  position: LumoControlPosition\n    startColumn: 18446744073709551615\n"},
    {"text is UTF-8, escaped where JSON asks for it; a lone surrogate becomes U+FFFD",
     [](const ButtonNode& button) {
       button.get()->setId(u"\u00e4\U0001F600\"\\\n" + std::u16string(1, u'\xd800'));
     },
     "{\"class\":\"document::gxzero::ButtonNode\",\"id\":\"\u00e4\U0001F600\\\"\\\\\\n\ufffd\"}",
     "ButtonNode\n  id: \"\u00e4\U0001F600\\\"\\\\\\n\ufffd\"\n"},
};

TEST(Export, WritesWhatWasSet) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.description);
    const Model model = Model::create();
    const ButtonNode button = createButton(model);
    row.fill(button);
    EXPECT_EQ(toJson(button), row.json);
    std::string tree;
    appendTree(tree, button);
    EXPECT_EQ(tree, row.tree);
    EXPECT_EQ(button.get()->getHandleCount(), 1U) << "the export holds no handle";
    EXPECT_EQ(model.get()->getHeldElementCount(), 1U);
  }
}

TEST(Export, JsonIsWrittenWhereTheWriterStands) {
  const Model model = Model::create();
  std::string out;
  json::JsonWriter writer(out);
  writer.beginArray();
  writeJson(writer, createButton(model));
  writeJson(writer, gx::zero::ModelElement());
  writer.endArray();
  EXPECT_EQ(out, R"([{"class":"document::gxzero::ButtonNode"},null])");
}

TEST(Export, PrettyJsonParsesToTheSameAsCompact) {
  const Model model = Model::create();
  const ButtonNode button = createButton(model);
  kRows[2].fill(button);
  std::string pretty;
  json::JsonWriter writer(pretty, json::JsonWriter::Layout::kPretty);
  writeJson(writer, button);
  EXPECT_NE(pretty, kRows[2].json);
  EXPECT_EQ(json::parse(pretty), json::parse(kRows[2].json));
}

TEST(Export, TreeIsIndentedAsAsked) {
  const Model model = Model::create();
  const ButtonNode button = createButton(model);
  button.get()->setId(u"b1");
  std::string tree = "before\n";
  appendTree(tree, button, 2);
  EXPECT_EQ(tree, "before\n    ButtonNode\n      id: \"b1\"\n");
}

template <typename Element>
void put(gx::zero::ElementSequence<Element>& sequence, const Element& element) {
  insert_last(sequence, element);
  sequence.getOwner()->_inverseAddThis(element.get(), *sequence.getOpposite(), false);
}

TEST(Export, WritesSequencesThatAreNotEmpty) {
  const Model model = Model::create();
  const ComboboxNode node = ComboboxNode::Builder(model).createComboboxNode(nil_uuid());
  const ComboboxData data = node.get()->createIntoComboBoxData(ComboboxData::Builder(), nil_uuid());
  EXPECT_EQ(toJson(node),
            R"({"class":"document::gxzero::ComboboxNode",)"
            R"("comboBoxData":{"class":"lumocode::contentmodel::gxzero::ComboboxData"}})");
  for (const char16_t* label : {u"one", u"two"}) {
    const ComboboxItem item = ComboboxItem::Builder(model).createComboboxItem(nil_uuid());
    item.get()->setLabel(label);
    put(data.get()->getItemsMutable(), item);
  }
  put(data.get()->getItemLabelsMutable(),
      ComboboxItemLabel::Builder(model).createComboboxItemLabel(nil_uuid()));
  data.get()->setDefaultValue(u"one");

  EXPECT_EQ(toJson(node),
            R"({"class":"document::gxzero::ComboboxNode",)"
            R"("comboBoxData":{"class":"lumocode::contentmodel::gxzero::ComboboxData",)"
            R"("defaultValue":"one",)"
            R"("items":[{"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":"one"},)"
            R"({"class":"lumocode::contentmodel::gxzero::ComboboxItem","label":"two"}],)"
            R"("itemLabels":[{"class":"lumocode::contentmodel::gxzero::ComboboxItemLabel"}]}})");
  std::string tree;
  appendTree(tree, node);
  EXPECT_EQ(tree,
            "ComboboxNode\n"
            "  comboBoxData: ComboboxData\n"
            "    defaultValue: \"one\"\n"
            "    items:\n"
            "      [0] ComboboxItem\n"
            "        label: \"one\"\n"
            "      [1] ComboboxItem\n"
            "        label: \"two\"\n"
            "    itemLabels:\n"
            "      [0] ComboboxItemLabel (nothing set)\n");
}

/// A class of this test's own, with a slot for one more of itself: nesting without end, and the
/// kinds of properties that nothing above has.
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

  void setNumber(double number) {
    number_ = number;
    markSet(1);
  }
  void setFlag(bool flag) {
    flag_ = flag;
    markSet(2);
  }
  void setInner(Impl* inner) {
    replaceContained(inner_, inner, 3);
    inner_ = inner;
    inner->outer_ = this;
    inner->markSet(0);
  }

 protected:
  gx::zero::ValueMeta reflect(std::size_t propertyIndex) const override {
    using gx::zero::ModelElement;
    using gx::zero::ValueMeta;
    using gx::zero::meta::Property;
    switch (propertyIndex) {
      case 0:
        return ValueMeta(Box::metaClass(), Property::Kind::kReference, ModelElement(outer_));
      case 1:
        return ValueMeta(number_);
      case 2:
        return ValueMeta(flag_);
      case 3:
        return ValueMeta(Box::metaClass(), Property::Kind::kContained, ModelElement(inner_));
      default:
        return gx::zero::ModelElement::Impl::reflect(propertyIndex);
    }
  }

 private:
  Impl* outer_ = nullptr;
  double number_ = 0;
  bool flag_ = false;
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
          Property(u"number", &Type::number, Property::Kind::kData, 1),
          Property(u"flag", &Type::boolean, Property::Kind::kData, 2),
          Property(u"inner", anyElement, Property::Kind::kContained, 3),
      });
  return gx::zero::meta::Class(&impl);
}

Box::Impl* createBox(const Model& model) {
  return model.get()->createElement<Box::Impl>(nil_uuid());
}

TEST(Export, WritesNumbersAndFlagsButNoReferences) {
  const Model model = Model::create();
  Box::Impl* const outer = createBox(model);
  Box::Impl* const inner = createBox(model);
  inner->setNumber(0.1);
  inner->setFlag(false);
  outer->setNumber(3);
  outer->setFlag(true);
  outer->setInner(inner);
  EXPECT_EQ(
      toJson(Box(outer)),
      R"({"class":"Box","number":3,"flag":true,"inner":{"class":"Box","number":0.1,"flag":false}})");
  std::string tree;
  appendTree(tree, Box(outer));
  EXPECT_EQ(tree,
            "Box\n"
            "  number: 3\n"
            "  flag: true\n"
            "  inner: Box\n"
            "    number: 0.1\n"
            "    flag: false\n");
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
  appendTree(tree, Box(outermost));
  const std::string deepest =
      "\n" + std::string(2 * kDeepestIndent, ' ') + "inner: Box (nothing set)\n";
  ASSERT_GT(tree.size(), deepest.size());
  EXPECT_EQ(tree.substr(tree.size() - deepest.size()), deepest);
}

}  // namespace
}  // namespace reference_host::exporting
