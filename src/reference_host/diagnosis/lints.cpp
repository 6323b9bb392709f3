#include "diagnosis/lints.hpp"

#include <cmath>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>

#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/text_writer.hpp"

namespace reference_host::diagnosis {

using foundation::json::find_member;
using foundation::json::Value;

namespace {

const std::string kContext = "context";
const std::string kData = "data";
const std::string kText = "text";
const std::string kStartColumn = "startColumn";
const std::string kEndColumn = "endColumn";
const std::string kMinimum = "minimum";
const std::string kMaximum = "maximum";
const std::string kStep = "step";
const std::string kDefaultValue = "defaultValue";
const std::string kItems = "items";
const std::string kItemLabels = "itemLabels";
const std::string kValue = "value";
const std::string kLabel = "label";

const double* numberAt(const Value& holder, const std::string& name) {
  const Value* member = find_member(holder, name);
  return member == nullptr ? nullptr : member->get_if<double>();
}

const std::string* textAt(const Value& holder, const std::string& name) {
  const Value* member = find_member(holder, name);
  return member == nullptr ? nullptr : member->get_if<std::string>();
}

const Value::Array* arrayAt(const Value& holder, const std::string& name) {
  const Value* member = find_member(holder, name);
  return member == nullptr ? nullptr : member->get_if<Value::Array>();
}

bool isNoArray(const Value& holder, const std::string& name) {
  return find_member(holder, name) != nullptr && arrayAt(holder, name) == nullptr;
}

std::string written(double number) {
  std::string text;
  json::appendNumber(text, number);
  return text;
}

/// How long a text is for those who count UTF-16 units; nobody counts more.
std::size_t lengthOf(std::string_view utf8) {
  std::size_t length = 0;
  for (const char character : utf8) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte & 0xC0U) != 0x80U) length += byte >= 0xF0U ? 2 : 1;
  }
  return length;
}

class Lints {
 public:
  std::vector<UnlikelyValue> of(const Value& control) {
    checkColumns(control);
    const Value* context = find_member(control, kContext);
    const Value* data = context == nullptr ? nullptr : find_member(*context, kData);
    if (data != nullptr) {
      checkBounds(*data);
      checkChoice(*data);
    }
    return std::move(found_);
  }

 private:
  void checkColumns(const Value& control) {
    checkColumn(control, kStartColumn);
    checkColumn(control, kEndColumn);
    const double* start = numberAt(control, kStartColumn);
    const double* end = numberAt(control, kEndColumn);
    if (start != nullptr && end != nullptr && *start > *end) {
      add({kEndColumn}, "is before \"startColumn\", " + written(*start), {{kStartColumn}});
    }
  }

  void checkColumn(const Value& control, const std::string& name) {
    const double* column = numberAt(control, name);
    if (column == nullptr) return;
    const std::string number = written(*column);
    if (*column < 0) add({name}, "is negative: " + number);
    if (std::trunc(*column) != *column) add({name}, "is no whole number: " + number);
    const std::string* text = textAt(control, kText);
    if (text == nullptr) return;
    const auto length = static_cast<double>(lengthOf(*text));
    if (*column > length) {
      add({name},
          "is " + number + ", but \"text\" ends at " + written(length) + "; columns count from 0",
          {{kText}});
    }
  }

  void checkBounds(const Value& data) {
    const double* minimum = numberAt(data, kMinimum);
    const double* maximum = numberAt(data, kMaximum);
    const double* step = numberAt(data, kStep);
    const double* value = numberAt(data, kDefaultValue);
    if (step != nullptr && !(*step > 0)) {
      add(inData(kStep), "is not positive: " + written(*step));
    }
    if (minimum != nullptr && maximum != nullptr && *minimum > *maximum) {
      add(inData(kMaximum), "is below \"minimum\", " + written(*minimum), {inData(kMinimum)});
    }
    if (value == nullptr) return;
    const bool isBelow = minimum != nullptr && *value < *minimum;
    const bool isAbove = maximum != nullptr && *value > *maximum;
    if (isBelow && isAbove) return;  // between bounds in the wrong order
    if (isBelow) {
      add(inData(kDefaultValue), "is below \"minimum\", " + written(*minimum), {inData(kMinimum)});
    } else if (isAbove) {
      add(inData(kDefaultValue), "is above \"maximum\", " + written(*maximum), {inData(kMaximum)});
    }
  }

  void checkChoice(const Value& data) {
    const std::string* value = textAt(data, kDefaultValue);
    const Value::Array* items = arrayAt(data, kItems);
    const Value::Array* labels = arrayAt(data, kItemLabels);
    if (value == nullptr || (items == nullptr && labels == nullptr)) return;
    // What cannot be read may be what is meant.
    if (isNoArray(data, kItems) || isNoArray(data, kItemLabels)) return;
    std::vector<Path> judgedBy;
    if (items != nullptr) {
      judgedBy.push_back(inData(kItems));
      for (const Value& item : *items) {
        for (const std::string* text : {textAt(item, kValue), textAt(item, kLabel)}) {
          if (text == nullptr || *text == *value) return;
        }
      }
    }
    if (labels != nullptr) {
      judgedBy.push_back(inData(kItemLabels));
      for (const Value& label : *labels) {
        const auto* text = label.get_if<std::string>();
        if (text == nullptr || *text == *value) return;
      }
    }
    add(inData(kDefaultValue), "is not among the items", std::move(judgedBy));
  }

  static Path inData(const std::string& name) { return {kContext, kData, name}; }

  void add(Path place, std::string what, std::vector<Path> judgedBy = {}) {
    found_.push_back({std::move(place), std::move(what), std::move(judgedBy)});
  }

  std::vector<UnlikelyValue> found_;
};

}  // namespace

std::vector<UnlikelyValue> unlikelyValuesOf(const Value& control) {
  return Lints().of(control);
}

const Path& idPlace() {
  static const Path place{"controlId"};
  return place;
}

}  // namespace reference_host::diagnosis
