#include "controls/common_fields.hpp"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>

#include "fl/i18n.hpp"
#include "framework/field.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"

namespace tessel::build::json::controls {

namespace {

using document::gxzero::LumoControlNode;
using document::gxzero::LumoControlPosition;
using foundation::json::Value;
using framework::optional;
using lumocode::contentmodel::gxzero::LumoControlData;

const std::string kControlIdKey = "controlId";
const std::string kStartColumnKey = "startColumn";
const std::string kEndColumnKey = "endColumn";

const framework::Field kExecutionModel{
    framework::kExecutionModelKey, "Found the executionModel property",
    "Set the executionModel property", &LumoControlData::Impl::setExecutionModel};
// One key with two meanings: the label in the control's data, the line's code on the control
// object.
const framework::Field kLabel{framework::kTextKey, "Found the label property",
                              "Set the label property", &LumoControlData::Impl::setLabel};
const framework::Field kCode{framework::kTextKey, "Found the code property",
                             "Set the code property", &LumoControlData::Impl::setCode};

/// The platform's conversion of a double, but defined for every value: one that fits no 64-bit
/// integer becomes 2^63.
std::uint64_t toColumn(double value) noexcept {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  constexpr double kTwoTo64 = 18446744073709551616.0;
  const double whole = std::trunc(value);
  if (whole >= 0 && whole < kTwoTo64) return static_cast<std::uint64_t>(whole);
  if (whole < 0 && whole >= -kTwoTo63) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(whole));
  }
  return std::uint64_t{1} << 63U;
}

}  // namespace

void applyControlPosition(LumoControlPosition position, const Value& json) {
  if (const Value* start = foundation::json::find_member(json, kStartColumnKey)) {
    position.get()->setStartColumn(toColumn(framework::readDouble(*start)));
  }
  if (const Value* end = foundation::json::find_member(json, kEndColumnKey)) {
    position.get()->setEndColumn(toColumn(framework::readDouble(*end)));
  }
}

void applyControlId(LumoControlNode node, const Value& json) {
  // Irregular by contract: an id of another type is no error.
  const Value* member = foundation::json::find_member(json, kControlIdKey);
  if (member == nullptr) return;
  if (const auto* id = foundation::json::get_if<std::string>(*member)) {
    node.get()->setId(fl::i18n::utf8_to_ustring(*id));
  }
}

void applyControlData(LumoControlData data, const Value& json) {
  applyControlData(std::move(data), json, json[framework::kContextKey][framework::kDataKey]);
}

void applyControlData(LumoControlData data, const Value& json, const Value& fields) {
  optional(fields, data, kExecutionModel);
  optional(fields, data, kLabel);
  optional(json, data, kCode);
}

}  // namespace tessel::build::json::controls
