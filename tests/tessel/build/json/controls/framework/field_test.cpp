#include "framework/field.hpp"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "foundation/json.hpp"
#include "support/json.hpp"
#include "support/records.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using foundation::json::Value;
using test_support::json;
using test_support::Records;
using test_support::recordsOf;

/// An element whose setters write a record, which shows their place between those of the field.
struct Element {
  struct Impl {
    void setNumber(double number) { logDiagnostic(prefix + std::to_string(number)); }
    /// What a setter returns is of no interest.
    Impl& setText(const std::u16string& text) {
      logDiagnostic(prefix + std::to_string(text.size()));
      return *this;
    }
    std::string prefix = "set to ";
  };
  Impl* get() const {
    static Impl impl;
    return &impl;
  }
};

const Field kNumber{"n", "Found n", "Set n", &Element::Impl::setNumber};
const Field kText{"t", "Found t", kNoRecord, &Element::Impl::setText};
const Field kBody{"b", "Found b", "Set b"};

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
      {"optional", optionalNumber, R"({"n":1})", {"Found n", "set to 1.000000", "Set n"}, ""},
      {"optional, missing", optionalNumber, "{}", {}, ""},
      {"optional, of another type",
       optionalNumber,
       R"({"n":"1"})",
       {"Found n"},
       "invalid conversion: string to double"},
      {"required: no record before",
       requiredNumber,
       R"({"n":1})",
       {"set to 1.000000", "Set n"},
       ""},
      {"required, without a record after", requiredText, R"({"t":"abc"})", {"set to 3"}, ""},
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
