#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "document/gxzero.hpp"
#include "gx/zero.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace {

using document::gxzero::ButtonNode;
using document::gxzero::LumoControlNode;
using document::gxzero::LumoControlPosition;
using document::gxzero::Node;
using gx::zero::Model;
using gx::zero::ModelElement;
using lumocode::contentmodel::gxzero::ButtonData;

constexpr boost::uuids::uuid kNil{};
constexpr auto kPublic = ModelElement::Impl::ReflectionPrivateTag::PUBLIC_ACCESS;

ButtonNode createButton(const Model& model) {
  return ButtonNode::Builder(model).createButtonNode(kNil);
}

const gx::zero::meta::Property& property(const ModelElement& element, std::u16string_view name) {
  for (const auto& candidate : element.get()->metaClass().get()->getProperties()) {
    if (candidate.getName() == name) return candidate;
  }
  throw std::logic_error("no such property");
}

TEST(Handle, CopyAddsAReferenceAndMoveDoesNot) {
  const Model model = Model::create();
  ButtonNode button = createButton(model);
  EXPECT_EQ(button.get()->getHandleCount(), 1U);
  {
    const LumoControlNode asControl = button;
    const Node asNode = asControl;
    EXPECT_EQ(button.get()->getHandleCount(), 3U);
    EXPECT_EQ(asNode, button);
  }
  EXPECT_EQ(button.get()->getHandleCount(), 1U);
  const Node moved = std::move(button);
  EXPECT_EQ(moved.get()->getHandleCount(), 1U);
  EXPECT_FALSE(button);  // NOLINT(bugprone-use-after-move): empty is what a moved handle is
}

TEST(Handle, AssignmentReleasesWhatWasHeld) {
  const Model model = Model::create();
  const ButtonNode first = createButton(model);
  const ButtonNode second = createButton(model);
  ButtonNode handle = first;
  handle = second;
  EXPECT_EQ(first.get()->getHandleCount(), 1U);
  EXPECT_EQ(second.get()->getHandleCount(), 2U);
  const ButtonNode& self = handle;
  handle = self;
  EXPECT_EQ(second.get()->getHandleCount(), 2U);
  handle = ButtonNode();
  EXPECT_FALSE(handle);
  EXPECT_EQ(second.get()->getHandleCount(), 1U);
}

TEST(Model, LivesAsLongAsAnyHandleOnItOrItsElements) {
  Model model = Model::create();
  Node node = createButton(model);
  const Model second = model;
  model = Model();
  EXPECT_FALSE(model);
  EXPECT_EQ(second.get()->getHeldElementCount(), 1U);
  node = Node();
  EXPECT_EQ(second.get()->getElements().size(), 1U);
  EXPECT_EQ(second.get()->getHeldElementCount(), 0U);
  node = createButton(Model::create());
  EXPECT_EQ(node.get()->metaClass(), ButtonNode::metaClass());
  EXPECT_EQ(node.get()->getModel().get()->getElements().size(), 1U);
}

TEST(Model, ElementsAreNumberedInCreationOrderAndKeepTheUuidAskedFor) {
  const Model model = Model::create();
  boost::uuids::uuid asked{};
  asked.data[15] = 7;
  const ButtonNode first = createButton(model);
  const ButtonNode second = ButtonNode::Builder(model).createButtonNode(asked);
  EXPECT_EQ(model.get()->getElements()[0].get(), first.get());
  EXPECT_EQ(first.get()->getNumber(), 0U);
  EXPECT_TRUE(first.get()->getRequestedUuid().is_nil());
  EXPECT_EQ(second.get()->getNumber(), 1U);
  EXPECT_EQ(second.get()->getRequestedUuid(), asked);
}

TEST(Model, ContainedElementsKnowTheirOwnerAndAreNoRoots) {
  const Model model = Model::create();
  const ButtonNode button = createButton(model);
  EXPECT_FALSE(button.get()->getPosition());
  const auto first = button.get()->createIntoPosition(LumoControlPosition::Builder(), kNil);
  const auto data = button.get()->createIntoButtonData(ButtonData::Builder(), kNil);
  EXPECT_EQ(first.get()->getOwner(), button);
  EXPECT_EQ(data.get()->getOwner(), button);
  EXPECT_EQ(button.get()->getPosition(), first);
  EXPECT_EQ(button.get()->getButtonData(), data);
  EXPECT_FALSE(button.get()->getOwner());
  EXPECT_EQ(model.get()->getRoots(), std::vector<ModelElement>{button});
  // One that is replaced is a root again.
  const auto second = button.get()->createIntoPosition(LumoControlPosition::Builder(), kNil);
  EXPECT_EQ(button.get()->getPosition(), second);
  EXPECT_FALSE(first.get()->getOwner());
  EXPECT_EQ(model.get()->getRoots(), (std::vector<ModelElement>{button, first}));
}

TEST(Reflection, MetaclassesNameTheirBaseAndListTheBasesPropertiesFirst) {
  const auto* meta = ButtonNode::metaClass().get();
  EXPECT_EQ(meta->getQualifiedName(), u"document::gxzero::ButtonNode");
  EXPECT_EQ(meta->getSuperClass(), LumoControlNode::metaClass());
  std::vector<std::u16string> names;
  for (const auto& listed : meta->getProperties()) names.push_back(listed.getName());
  EXPECT_EQ(names, (std::vector<std::u16string>{u"anchorId", u"children", u"id", u"position",
                                                u"buttonData"}));
  EXPECT_TRUE(meta->conformsTo(Node::metaClass()));
  EXPECT_TRUE(meta->conformsTo(ModelElement::metaClass()));
  EXPECT_TRUE(meta->conformsTo(ButtonNode::metaClass()));
  EXPECT_FALSE(meta->conformsTo(ButtonData::metaClass()));
  EXPECT_FALSE(Node::metaClass().get()->conformsTo(ButtonNode::metaClass()));
}

TEST(Reflection, TellsWhatIsSetAndHandsItOut) {
  using gx::zero::meta::Property;
  const Model model = Model::create();
  const ButtonNode button = createButton(model);
  const Property& id = property(button, u"id");
  const Property& slot = property(button, u"position");
  const auto emptySlot = button.get()->get(slot, kPublic);
  EXPECT_FALSE(button.get()->isSet(id));
  EXPECT_EQ(button.get()->getId(), u"");
  EXPECT_FALSE(*emptySlot.get_if<ModelElement>());
  EXPECT_EQ(emptySlot.getType(), LumoControlPosition::metaClass());
  EXPECT_EQ(emptySlot.getKind(), Property::Kind::kContained);

  button.get()->setId(u"");
  EXPECT_TRUE(button.get()->isSet(id));
  EXPECT_FALSE(button.get()->isSet(slot));
  button.get()->setId(u"b1");
  const auto text = button.get()->get(id, kPublic);
  EXPECT_EQ(*text.get_if<std::u16string_view>(), u"b1");
  EXPECT_EQ(text.getType(), gx::zero::meta::Type::text());

  const auto position = button.get()->createIntoPosition(LumoControlPosition::Builder(), kNil);
  EXPECT_EQ(*button.get()->get(slot, kPublic).get_if<ModelElement>(), position);
  position.get()->setEndColumn(18446744073709551615U);
  const auto column = position.get()->get(property(position, u"endColumn"), kPublic);
  EXPECT_EQ(*column.get_if<std::uint64_t>(), 18446744073709551615U);

  // Properties of another class.
  EXPECT_THROW(position.get()->get(property(button, u"anchorId"), kPublic), std::invalid_argument);
  EXPECT_THROW(position.get()->isSet(property(button, u"buttonData")), std::invalid_argument);
}

}  // namespace
