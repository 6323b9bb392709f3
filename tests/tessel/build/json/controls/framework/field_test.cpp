#include "framework/field.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "foundation/json.hpp"
#include "support/json.hpp"
#include "support/records.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using foundation::json::Value;
using test_support::json;
using test_support::Records;
using test_support::recordsOf;

/// An element whose setters write a record, which shows their place between those of the field, or
/// switch the diagnostics.
struct Element {
  struct Impl {
    void setNumber(double number) { logDiagnostic("number " + std::to_string(number)); }
    void setText(const std::u16string& text) {
      logDiagnostic("text " + std::to_string(text.size()));
    }
    /// What a setter returns is of no interest.
    Impl& setLevels(double levels) {
      word = static_cast<std::uint32_t>(levels);
      return *this;
    }
    std::atomic<std::uint32_t>& word = enabled_levels(shared::logging::getLogger());
  };
  Impl* get() const {
    static Impl impl;
    return &impl;
  }
};

const Field kNumber{"n", "Found n", "Set n", &Element::Impl::setNumber};
const Field kText{"t", "Found t", kNoRecord, &Element::Impl::setText};
const Field kBody{"b", "Found b", "Set b"};
const Field kLevels{"l", "Found it", "Set it", &Element::Impl::setLevels};

TEST(Field, EachRecordLooksForItselfWhetherItIsWanted) {
  struct Row {
    const char* description;
    std::uint32_t before;
    double after;
    Records records;
  };
  const Row rows[] = {
      {"switched on while the field is set", 0, 8, {"Set it"}},
      {"switched off while the field is set", 8, 0, {"Found it"}},
      {"on all the time", 8, 8, {"Found it", "Set it"}},
      {"off all the time", 0, 0, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(recordsOf([&row] {
                auto& levels = enabled_levels(shared::logging::getLogger());
                const std::uint32_t found = levels;
                levels = row.before;
                optional(Value::Object{{"l", row.after}}, Element(), kLevels);
                levels = found;
              }),
              row.records);
  }
}

TEST(Field, EachVerbReadsStrictlyAndRecordsInItsOrder) {
  const auto optionalNumber = [](const Value& fields) { optional(fields, Element(), kNumber); };
  const auto requiredNumber = [](const Value& fields) { required(fields, Element(), kNumber); };
  const auto requiredText = [](const Value& fields) { required(fields, Element(), kText); };
  const auto narratedBody = [](const Value& fields) {
    narrated(fields, kBody, [](const Value& member) { logDiagnostic(readString(member)); });
  };
  struct Row {
    const char* description;
    void (*verb)(const Value& fields);
    const char* fields;
    Records records;
    const char* error;
  };
  const Row rows[] = {
      {"optional", optionalNumber, R"({"n":1})", {"Found n", "number 1.000000", "Set n"}, ""},
      {"optional, missing", optionalNumber, "{}", {}, ""},
      {"optional, of another type",
       optionalNumber,
       R"({"n":"1"})",
       {"Found n"},
       "invalid conversion: string to double"},
      {"required: no record before",
       requiredNumber,
       R"({"n":1})",
       {"number 1.000000", "Set n"},
       ""},
      {"required, without a record after", requiredText, R"({"t":"abc"})", {"text 3"}, ""},
      {"required, missing", requiredText, "{}", {}, "invalid conversion: undefined to string"},
      {"required, no object: the host's to answer for",
       requiredText,
       "[]",
       {},
       "invalid conversion: array to object"},
      {"narrated", narratedBody, R"({"b":"body"})", {"Found b", "body", "Set b"}, ""},
      {"narrated, with a body that fails",
       narratedBody,
       R"({"b":7})",
       {"Found b"},
       "invalid conversion: double to string"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    std::string error;
    EXPECT_EQ(recordsOf([&] {
                try {
                  row.verb(json(row.fields));
                } catch (const std::runtime_error& thrown) {
                  error = thrown.what();
                }
              }),
              row.records);
    EXPECT_EQ(error, row.error);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
