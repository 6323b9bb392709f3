#include "framework/field.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "foundation/json.hpp"
#include "support/records.hpp"
#include "tessel/shared/logging.hpp"

namespace tessel::build::json::controls::framework {
namespace {

using foundation::json::Value;
using test_support::Records;
using test_support::recordsOf;

/// An element whose setter switches the diagnostics. What it returns is of no interest.
struct Switching {
  struct Impl {
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

const Field kField{"key", "Found it", "Set it", &Switching::Impl::setLevels};

TEST(OptionalField, EachRecordLooksForItselfWhetherItIsWanted) {
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
                optional(Value(Value::Object{{"key", Value(row.after)}}), Switching(), kField);
                levels = found;
              }),
              row.records);
  }
}

}  // namespace
}  // namespace tessel::build::json::controls::framework
