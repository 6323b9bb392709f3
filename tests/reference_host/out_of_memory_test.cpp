#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "document/gxzero.hpp"
#include "foundation/json.hpp"
#include "gx/zero.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/importer/importer.hpp"
#include "reference_host/json/parse.hpp"
#include "support/allocation_count.hpp"
#include "support/json.hpp"

/// What the host's libraries owe when memory ends: `std::bad_alloc` leaves, nothing has changed
/// that should not, and the next call works.
namespace {

using foundation::json::Value;
using gx::zero::Model;
using test_support::isOutOfMemory;
using test_support::json;
using test_support::LimitedMemory;
using test_support::Refusal;
using test_support::sweepAllocations;

const char* const kDocument =
    R"({"a text too long for any short string buffer": "another one, with \u00e4 and \n in it",)"
    R"("numbers": [1, -2.5e300, 12345678901234567890123456789, 0.1e-400], "flags": [true, false],)"
    R"("nothing": null, "empty": [{}, [], ""], "nested": [[[{"a": {"b": ["c"]}}]]]})";

/// Runs an action with too little memory in every way, once at least, and then with enough.
/// @param check gets what the action threw, and whether it ran out of memory.
template <typename Action, typename Check>
void sweepAll(const Action& action, const Check& check) {
  for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
    EXPECT_GT(sweepAllocations(refusal,
                               [&](LimitedMemory& memory) {
                                 SCOPED_TRACE(memory.successes());
                                 const std::exception_ptr thrown = memory.run(action);
                                 check(thrown, memory.ranOut());
                               }),
              0U);
  }
}

/// The same, where each failure has to leave as such.
template <typename Action, typename Check>
void sweep(const Action& action, const Check& check) {
  sweepAll(action, [&check](const std::exception_ptr& thrown, bool ranOut) {
    EXPECT_EQ(isOutOfMemory(thrown), ranOut);
    check(ranOut);
  });
}

/// The same, for an action that changes a target as a whole or not at all.
template <typename Target, typename Action>
void sweepChange(Target& target, const Target& after, const Action& action) {
  const Target before = target;
  sweep(action, [&](bool ranOut) {
    EXPECT_EQ(target, ranOut ? before : after);
    // A fresh one, so that no memory of an earlier round is left in it.
    Target fresh = before;
    std::swap(target, fresh);
  });
}

TEST(OutOfMemory, AParseGivesAllOrNothing) {
  const std::string deep(1001, '[');
  const std::string texts[] = {
      kDocument,
      "123456789012345678901234567890e-10",
      R"({"a": [1, 2,]})",
      "\xFF",
      "[1234567890123456789012345678901234567890e999]",
      R"(["\ud800"])",
      "[1e999]",
      deep,
      "",
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 20));
    std::optional<Value> value;
    std::string refusal;
    const auto parse = [&] { value.emplace(json(text)); };
    try {
      parse();
    } catch (const reference_host::json::ParseError& error) {
      refusal = error.what();
    }
    const std::optional<Value> expected = std::exchange(value, std::nullopt);
    std::size_t failed = 0;
    // The parser library asks for memory that it can do without, so that a failure either leaves
    // or changes nothing.
    sweepAll(parse, [&](const std::exception_ptr& thrown, bool ranOut) {
      if (isOutOfMemory(thrown)) {
        EXPECT_TRUE(ranOut);
        EXPECT_FALSE(value);
        ++failed;
      } else {
        EXPECT_EQ(value, expected);
        EXPECT_EQ(thrown ? reference_host::importer::messageOf(thrown) : "", refusal);
      }
      value.reset();
    });
    EXPECT_GT(failed, 3U);
  }
}

TEST(OutOfMemory, WhatIsDoneWithAValueIsDoneWhollyOrNotAtAll) {
  const Value source = json(kDocument);
  const Value same = source;
  std::optional<Value> copy;
  sweepChange(copy, std::optional(source), [&] { copy.emplace(source); });
  Value target("what was there, in a text of some length");
  sweepChange(target, source, [&] { target = source; });
  bool equal = false;
  sweepChange(equal, true, [&] { equal = source == same; });
  std::string text;
  sweepChange(text, pretty_print(source), [&] { text = pretty_print(source); });
  EXPECT_EQ(source, same);

  const char* const key = "a key that is too long for any short string buffer";
  Value object = json(R"({"a": 1})");
  sweepChange(object, Value(Value::Object{{"a", 1.0}, {key, 2.0}}),
              [&] { object[key] = Value(2.0); });
}

TEST(OutOfMemory, AnExportChangesNothing) {
  using document::gxzero::LumoAppLineNode;
  const Model model = Model::create();
  const auto line = LumoAppLineNode::Builder(model).createLumoAppLineNode(boost::uuids::nil_uuid());
  line.get()->setAnchorId(u"an anchor that is too long for any short string buffer");
  const std::string exported = reference_host::exporting::toJson(line);
  std::string tree;
  reference_host::exporting::Exporter().appendTree(tree, line);

  std::string out;
  const auto check = [&](const std::string& whole, bool ranOut) {
    EXPECT_TRUE(ranOut || out == whole) << out;
    std::string().swap(out);
    EXPECT_EQ(model.get()->getHeldElementCount(), 1U);
    EXPECT_EQ(line.get()->getHandleCount(), 1U);
  };
  sweep([&] { out = reference_host::exporting::toJson(line); },
        [&](bool ranOut) { check(exported, ranOut); });
  sweep([&] { reference_host::exporting::Exporter().appendTree(out, line); },
        [&](bool ranOut) { check(tree, ranOut); });
}

TEST(OutOfMemory, AModelOrAnElementIsMadeOrNot) {
  using document::gxzero::ButtonNode;
  Model made;
  sweep([&] { made = Model::create(); },
        [&](bool ranOut) {
          EXPECT_EQ(static_cast<bool>(made), !ranOut);
          made = Model();
        });

  const Model model = Model::create();
  std::size_t elements = 0;
  sweep([&] { ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid()); },
        [&](bool ranOut) {
          if (!ranOut) ++elements;
          EXPECT_EQ(model.get()->getElements().size(), elements);
          EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
        });
}

}  // namespace
