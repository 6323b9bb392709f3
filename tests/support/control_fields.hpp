#pragma once

/// @file
/// The fields that several kinds of control share, in reading order, and values to try on a field.

#include <cstddef>
#include <string>
#include <vector>

#include "support/control_kind.hpp"

namespace test_support {

/// What every control carries. Of these fields, the first ones are read before the record exists.
std::vector<Field> commonFields();
constexpr std::size_t kFieldsBeforeRecord = 3;

/// What the controls for a flag add, and the properties of their record.
std::vector<Field> booleanFields();
std::vector<std::string> booleanProperties();

/// What the controls for numbers add before their default value, and the properties of their
/// record.
std::vector<Field> numericFields();
std::vector<std::string> numericProperties();

/// A default value of a kind's own type.
Field defaultValueField(FieldType type, foundation::json::Value sample, std::string exported);

/// A text that is read without a test, with a record only once it is set.
Field requiredText(std::string key, std::string sample, std::string setRecord);

/// The fields with one more behind them.
std::vector<Field> with(std::vector<Field> fields, Field last);

/// A value of a field's type, and how it is exported.
struct Variation {
  const char* description;
  foundation::json::Value value;
  std::string exported;
};

/// Values at the edges of a type. For a list there are none: its elements are the kind's own.
const std::vector<Variation>& variationsOf(FieldType type);

}  // namespace test_support
