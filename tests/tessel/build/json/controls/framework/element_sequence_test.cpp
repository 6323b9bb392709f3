#include "framework/element_sequence.hpp"

#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "foundation/except.hpp"
#include "gx/zero.hpp"
#include "lumocode/contentmodel/gxzero.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using gx::zero::CollectionTraits;
using gx::zero::ElementSequence;
using gx::zero::Model;
using gx::zero::ModelElement;
using gx::zero::ValueMeta;
using gx::zero::meta::Property;
using lumocode::contentmodel::gxzero::ComboboxData;
using lumocode::contentmodel::gxzero::ComboboxItem;

constexpr boost::uuids::uuid kNil{};
constexpr std::size_t kItems = 5;  // of the combo box record's properties

/// An item that stands for one that is not loaded.
class ProxyItemImpl final : public ComboboxItem::Impl {
 public:
  using ComboboxItem::Impl::Impl;
  bool isProxy() const noexcept override { return true; }
};

class Append : public ::testing::Test {
 protected:
  void TearDown() override {
    owner_ = ComboboxData();
    EXPECT_EQ(model_.get()->getHeldElementCount(), 0U);
  }

  /// A sequence of the owner's items with traits of the test's choice.
  std::unique_ptr<ElementSequence<ComboboxItem>> sequence(CollectionTraits traits) {
    traits.propertyIndex = kItems;
    return std::make_unique<ElementSequence<ComboboxItem>>(*owner_.get(), traits);
  }

  ComboboxItem createItem(const Model& model) {
    return ComboboxItem::Builder(model).createComboboxItem(kNil);
  }
  ComboboxItem createItem() { return createItem(model_); }
  ComboboxItem createProxy() {
    return ComboboxItem(model_.get()->createElement<ProxyItemImpl>(kNil));
  }

  std::size_t opened() const { return model_.get()->getOperationCounts().opened; }
  std::size_t committed() const { return model_.get()->getOperationCounts().committed; }

  const CollectionTraits kOnceWithOpposite{0, true, true, &ModelElement::containerProperty()};
  const CollectionTraits kOnceContaining{0, true, true, nullptr};
  const CollectionTraits kOnceReferring{0, false, true, nullptr};
  const CollectionTraits kManyContaining{0, true, false, nullptr};
  const CollectionTraits kManyReferring{0, false, false, nullptr};

  Model model_ = Model::create();
  ComboboxData owner_{ComboboxData::Impl::create(model_, kNil)};
};

TEST_F(Append, PutsTheElementLastInOneOperationAsOftenAsItIsAdmitted) {
  struct Row {
    const char* description;
    CollectionTraits traits;
    bool owned;
    std::size_t again;  // entries by a second append of an element
  };
  const Row rows[] = {
      {"at most once, with a single-valued opposite", kOnceWithOpposite, true, 0},
      {"at most once, containing, without an opposite", kOnceContaining, true, 0},
      {"at most once, referring", kOnceReferring, false, 0},
      {"any number of times, containing", kManyContaining, true, 1},
      {"any number of times, referring", kManyReferring, false, 1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    const auto items = sequence(row.traits);
    const ComboboxItem first = createItem();
    const ComboboxItem second = createItem();
    const std::size_t before = committed();
    append(*items, first);
    append(*items, second);
    EXPECT_EQ(committed(), before + 2);
    append(*items, first);
    EXPECT_EQ(committed(), before + 2 + row.again);
    EXPECT_EQ(opened(), committed());
    ASSERT_EQ(items->size(), 2 + row.again);
    EXPECT_EQ((*items)[0], first);
    EXPECT_EQ((*items)[1], second);
    EXPECT_EQ(first.get()->getOwner(), row.owned ? ModelElement(owner_) : ModelElement());
    EXPECT_TRUE(contains(*items, first));
    EXPECT_FALSE(contains(*items, createItem()));
  }
}

TEST_F(Append, AMultiValuedOppositeSaysNothingSoTheSequenceIsLookedThrough) {
  const Property many(
      u"containers", []() -> gx::zero::meta::Type { return ComboboxData::metaClass(); },
      Property::Kind::kSequence, 0);
  const auto items = sequence({0, false, true, &many});
  const ComboboxItem item = createItem();
  insert_last(*items, item);
  append(*items, item);
  EXPECT_EQ(items->size(), 1U);
  EXPECT_EQ(opened(), 0U);
}

TEST_F(Append, AnEmptyHandleIsPassedOver) {
  const auto items = sequence(kOnceWithOpposite);
  append(*items, ComboboxItem());
  EXPECT_EQ(items->size(), 0U);
  EXPECT_EQ(opened(), 0U);
  EXPECT_FALSE(contains(*items, ComboboxItem()));
}

TEST_F(Append, AProxyIsInsertedWithoutTestAndWithoutContainer) {
  // Asking the element for its container, and looking through the sequence.
  for (const CollectionTraits& traits : {kOnceWithOpposite, kOnceContaining, kOnceReferring}) {
    SCOPED_TRACE(testing::Message() << "composite: " << traits.composite);
    const auto items = sequence(traits);
    const ComboboxItem proxy = createProxy();
    const std::size_t before = committed();
    append(*items, proxy);
    append(*items, proxy);
    EXPECT_EQ(items->size(), 2U);
    EXPECT_EQ(committed(), before + 2);
    EXPECT_FALSE(proxy.get()->getOwner());
    EXPECT_FALSE(contains(*items, proxy));
  }
}

TEST_F(Append, AContainerThatIsRefusedClosesTheOperationWithoutCommit) {
  // The owner is inside the item, which therefore cannot go into the owner.
  const auto items = sequence(kOnceWithOpposite);
  const ComboboxItem item = createItem();
  item.get()->_setContainedByThis(owner_.get(), item.get()->metaClass().get()->getProperties()[0]);
  EXPECT_THROW(append(*items, item), std::invalid_argument);
  EXPECT_EQ(items->size(), 0U);
  EXPECT_EQ(opened(), 1U);
  EXPECT_EQ(committed(), 0U);
}

TEST_F(Append, AnOppositeThatHoldsNoElementIsACastThatFails) {
  const ComboboxItem item = createItem();
  const Property& label = item.get()->metaClass().get()->getProperties()[0];
  const auto items = sequence({0, true, true, &label});
  try {
    append(*items, item);
    FAIL() << "nothing was thrown";
  } catch (const CannotCastIncompatibleTypes& error) {
    EXPECT_EQ(error.getArguments(), std::vector<std::u16string>{u"gx::zero::types::Text"});
  }
  EXPECT_EQ(items->size(), 0U);
  EXPECT_EQ(opened(), 0U);
}

TEST_F(Append, TheCastCheckPassesModelElementsAndEmptyReferencesOfAClassType) {
  const gx::zero::meta::Type item = ComboboxItem::metaClass();
  const gx::zero::meta::Type text = gx::zero::meta::Type::text();
  const gx::zero::meta::Type noElementClass = gx::zero::meta::Class::metaClass();
  const ComboboxItem element = createItem();
  struct Row {
    const char* description;
    ValueMeta value;
    bool passes;
  };
  const Row rows[] = {
      {"empty, of a class type", {item, Property::Kind::kReference, {}}, true},
      {"empty, of a class type, any kind", {item, Property::Kind::kSequence, {}}, true},
      {"empty, of a data type", {text, Property::Kind::kReference, {}}, false},
      {"an element by reference", {item, Property::Kind::kReference, element}, true},
      {"a contained element", {item, Property::Kind::kContained, element}, true},
      {"an element in a value of another kind", {item, Property::Kind::kData, element}, false},
      {"an element in a value of a data type", {text, Property::Kind::kReference, element}, false},
      {"an element under a class of no elements",
       {noElementClass, Property::Kind::kReference, element},
       false},
      {"text", ValueMeta(std::u16string_view(u"text")), false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    if (row.passes) {
      EXPECT_NO_THROW(requireModelElement(row.value));
    } else {
      EXPECT_THROW(requireModelElement(row.value), CannotCastIncompatibleTypes);
    }
  }
}

TEST(CannotCast, NamesCatalogKeyAndTypeAlsoWhenItWasCloned) {
  try {
    requireModelElement(ValueMeta(1.5));
    FAIL() << "nothing was thrown";
  } catch (const boost::exception_detail::clone_base& thrown) {
    const std::unique_ptr<const boost::exception_detail::clone_base> copy(thrown.clone());
    try {
      copy->rethrow();
    } catch (const CannotCastIncompatibleTypes& error) {
      EXPECT_EQ(error.getCatalog(), "gx0:messages");
      EXPECT_EQ(error.getKey(), "CannotCastIncompatibleTypes");
      EXPECT_EQ(error.getArguments(), std::vector<std::u16string>{u"gx::zero::types::Number"});
    }
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
