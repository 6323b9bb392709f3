#include <gtest/gtest.h>

#include <boost/uuid/nil_generator.hpp>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>

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

/// Sweeps in both ways.
/// @param check gets what the action threw, and whether it ran out of memory.
/// @return how many rounds ran out of memory.
template <typename Action, typename Check>
std::size_t sweepBothWays(const Action& action, const Check& check) {
  std::size_t failures = 0;
  for (const Refusal refusal : {Refusal::kFromThenOn, Refusal::kOnce}) {
    failures += sweepAllocations(refusal, [&](LimitedMemory& memory) {
      SCOPED_TRACE(memory.successes());
      const std::exception_ptr thrown = memory.run(action);
      check(thrown, memory.ranOut());
    });
  }
  return failures;
}

/// The same, where each failure has to leave as such.
template <typename Action, typename Check>
std::size_t sweep(const Action& action, const Check& check) {
  return sweepBothWays(action, [&check](const std::exception_ptr& thrown, bool ranOut) {
    EXPECT_EQ(isOutOfMemory(thrown), ranOut);
    check(thrown, ranOut);
  });
}

/// Parses with little memory: the parser library asks for some that it can do without, so that a
/// failure either leaves or changes nothing.
/// @return how many parses failed for it.
template <typename Expect>
std::size_t sweepParse(const std::string& text, const Expect& expectOutcome) {
  std::size_t failed = 0;
  std::optional<Value> value;
  sweepBothWays([&] { value.emplace(reference_host::json::parse(text)); },
                [&](const std::exception_ptr& thrown, bool ranOut) {
                  EXPECT_EQ(value.has_value(), thrown == nullptr);
                  if (isOutOfMemory(thrown)) {
                    EXPECT_TRUE(ranOut);
                    ++failed;
                  } else {
                    expectOutcome(value, thrown);
                  }
                  value.reset();
                });
  return failed;
}

TEST(OutOfMemory, AParseGivesAllOrNothing) {
  const Value expected = json(kDocument);
  EXPECT_GT(sweepParse(kDocument,
                       [&](const std::optional<Value>& value, const std::exception_ptr&) {
                         ASSERT_TRUE(value);
                         EXPECT_EQ(*value, expected);
                       }),
            50U);
}

TEST(OutOfMemory, ALongNumberIsReadExactlyOrNotAtAll) {
  const double expected = 123456789012345678901234567890e-10;
  EXPECT_GT(sweepParse("123456789012345678901234567890e-10",
                       [&](const std::optional<Value>& value, const std::exception_ptr&) {
                         EXPECT_EQ(value, expected);
                       }),
            5U);
}

TEST(OutOfMemory, ARefusalOfATextStaysWhatItIs) {
  const std::string deep(1001, '[');
  const std::string texts[] = {
      R"({"a": [1, 2,]})",
      R"(["\ud800"])",
      "[1e999]",
      "\xFF",
      "",
      deep,
      "[1234567890123456789012345678901234567890e999]",
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 20));
    std::string refusal;
    try {
      json(text);
    } catch (const reference_host::json::ParseError& error) {
      refusal = error.what();
    }
    ASSERT_NE(refusal, "");
    EXPECT_GT(sweepParse(text,
                         [&](const std::optional<Value>&, const std::exception_ptr& thrown) {
                           ASSERT_TRUE(thrown);
                           EXPECT_EQ(reference_host::importer::messageOf(thrown), refusal);
                         }),
              3U);
  }
}

TEST(OutOfMemory, AValueIsCopiedWhollyOrNotAtAll) {
  const Value source = json(kDocument);
  const Value before("what was there, in a text of some length");
  std::optional<Value> copy;
  EXPECT_GT(sweep([&] { copy.emplace(source); },
                  [&](const std::exception_ptr&, bool ranOut) {
                    EXPECT_EQ(copy.has_value(), !ranOut);
                    if (copy) {
                      EXPECT_EQ(*copy, source);
                    }
                    copy.reset();
                  }),
            10U);

  Value target = before;
  EXPECT_GT(sweep([&] { target = source; },
                  [&](const std::exception_ptr&, bool ranOut) {
                    EXPECT_EQ(target, ranOut ? before : source);
                    target = before;
                  }),
            10U);
}

TEST(OutOfMemory, ComparingAndPrintingChangeNothing) {
  const Value value = json(kDocument);
  const Value same = value;
  const std::string printed = pretty_print(value);
  bool equal = false;
  EXPECT_GT(sweep([&] { equal = value == same; },
                  [&](const std::exception_ptr&, bool ranOut) {
                    EXPECT_EQ(equal, !ranOut);
                    equal = false;
                  }),
            0U);
  std::string text;
  EXPECT_GT(sweep([&] { text = pretty_print(value); },
                  [&](const std::exception_ptr&, bool ranOut) {
                    EXPECT_EQ(text, ranOut ? "" : printed);
                    text.clear();
                    text.shrink_to_fit();
                  }),
            3U);
  EXPECT_EQ(value, same);
}

TEST(OutOfMemory, AMemberIsPutInOrNot) {
  const char* const key = "a key that is too long for any short string buffer";
  Value object = json(R"({"a": 1})");
  const Value before = object;
  EXPECT_GT(sweep([&] { object[key] = Value(2.0); },
                  [&](const std::exception_ptr&, bool ranOut) {
                    EXPECT_EQ(object.hasOwnProperty(key), !ranOut);
                    EXPECT_EQ(object == before, ranOut);
                    object = before;
                  }),
            1U);
}

TEST(OutOfMemory, AnExportChangesNothing) {
  using document::gxzero::LumoAppLineNode;
  const Model model = Model::create();
  const auto line = LumoAppLineNode::Builder(model).createLumoAppLineNode(boost::uuids::nil_uuid());
  line.get()->setAnchorId(u"an anchor that is too long for any short string buffer");
  const std::string exported = reference_host::exporting::toJson(line);
  std::string tree;
  reference_host::exporting::appendTree(tree, line);

  std::string out;
  const auto check = [&](const std::string& whole, bool ranOut) {
    if (!ranOut) {
      EXPECT_EQ(out, whole);
    }
    std::string().swap(out);
    EXPECT_EQ(model.get()->getHeldElementCount(), 1U);
    EXPECT_EQ(line.get()->getHandleCount(), 1U);
  };
  EXPECT_GT(sweep([&] { out = reference_host::exporting::toJson(line); },
                  [&](const std::exception_ptr&, bool ranOut) { check(exported, ranOut); }),
            3U);
  EXPECT_GT(sweep([&] { reference_host::exporting::appendTree(out, line); },
                  [&](const std::exception_ptr&, bool ranOut) { check(tree, ranOut); }),
            3U);
}

TEST(OutOfMemory, AModelOrAnElementIsMadeOrNot) {
  using document::gxzero::ButtonNode;
  Model made;
  EXPECT_GT(sweep([&] { made = Model::create(); },
                  [&](const std::exception_ptr&, bool ranOut) {
                    EXPECT_EQ(static_cast<bool>(made), !ranOut);
                    made = Model();
                  }),
            0U);

  const Model model = Model::create();
  std::size_t elements = 0;
  EXPECT_GT(sweep([&] { ButtonNode::Builder(model).createButtonNode(boost::uuids::nil_uuid()); },
                  [&](const std::exception_ptr&, bool ranOut) {
                    if (!ranOut) ++elements;
                    EXPECT_EQ(model.get()->getElements().size(), elements);
                    EXPECT_EQ(model.get()->getHeldElementCount(), 0U);
                  }),
            0U);
}

}  // namespace
