#include "value_maker.hpp"

#include <cstdint>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "contract/kinds.hpp"

namespace fuzz {

namespace {

using contract::FieldSpec;
using contract::Kind;
using contract::kinds;
using contract::Type;
using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;

/// Every key of the contract, and some that are nearly one.
const std::vector<std::string>& keys() {
  static const std::vector<std::string> all = [] {
    std::set<std::string> names = {"className", "context", "type",      "data",  "label",
                                   "value",     "",        "ClassName", "taskId"};
    for (const Kind& kind : kinds()) {
      for (const FieldSpec& field : kind.fields) names.insert(field.key);
    }
    return std::vector<std::string>(names.begin(), names.end());
  }();
  return all;
}

/// The words that builders look for, and some texts.
const std::vector<std::string>& words() {
  static const std::vector<std::string> all = [] {
    std::vector<std::string> texts = {"",
                                      "Double",
                                      "String",
                                      "M_7",
                                      "M_",
                                      "LumoControlNode ",
                                      "Gr\xC3\xB6\xC3\x9F"
                                      "e",
                                      "\xF0\x9F\x9A\x80",
                                      "\xED\xA0\x80",
                                      "\xC3",
                                      std::string("a\0b", 3),
                                      contract::kGenericControl};
    for (const Kind& kind : kinds()) texts.push_back(kind.word);
    return texts;
  }();
  return all;
}

constexpr double kNumbers[] = {0.0,
                               -0.0,
                               1.0,
                               -1.0,
                               12.9,
                               65535.0,
                               65536.0,
                               2147483647.5,
                               -2147483649.0,
                               9223372036854775808.0,
                               -9223372036854775808.0,
                               18446744073709549568.0,
                               18446744073709551616.0,
                               1e308,
                               5e-324,
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()};

class ValueMaker {
 public:
  explicit ValueMaker(ByteReader& bytes) : bytes_(bytes) {}

  Value offer() {
    const std::size_t choice = bytes_.below(kinds().size() + 1);
    if (choice == kinds().size()) return any(kDeepest);
    Value value = ofKind(kinds()[choice]);
    for (std::size_t changes = bytes_.below(4); changes > 0; --changes) change(value);
    return value;
  }

 private:
  static constexpr std::size_t kDeepest = 4;

  template <typename List>
  const auto& oneOf(const List& list) {
    return *std::next(std::begin(list), static_cast<std::ptrdiff_t>(bytes_.below(std::size(list))));
  }
  std::string text() { return bytes_.below(3) == 0 ? bytes_.text() : oneOf(words()); }
  std::string key() { return bytes_.below(8) == 7 ? bytes_.text() : oneOf(keys()); }
  double number() { return bytes_.below(3) == 0 ? bytes_.bits<double>() : oneOf(kNumbers); }

  /// Any of the ten alternatives.
  Value any(std::size_t depth) {
    switch (bytes_.below(depth == 0 ? 8 : 10)) {
      case 0:
        return {};
      case 1:
        return foundation::json::Null();
      case 2:
        return bytes_.below(2) != 0;
      case 3:
        return number();
      case 4:
        return text();
      case 5:
        return bytes_.bits<float>();
      case 6:
        return bytes_.bits<std::int64_t>();
      case 7:
        return bytes_.bits<std::uint64_t>();
      case 8: {
        Array elements;
        for (std::size_t count = bytes_.below(4); count > 0; --count) {
          elements.push_back(any(depth - 1));
        }
        return elements;
      }
      default:
        break;
    }
    Object members;
    for (std::size_t count = bytes_.below(6); count > 0; --count) {
      std::string name = key();
      members[std::move(name)] = any(depth - 1);
    }
    return members;
  }

  Value fitting(Type type) {
    switch (type) {
      case Type::kNumber:
      case Type::kColumn:
      case Type::kLineCount:
        return number();
      case Type::kFlag:
        return bytes_.below(2) != 0;
      case Type::kItems:
        return list([this] {
          Object item;
          give(item, "label", Type::kText);
          give(item, "value", Type::kText);
          return Value(item);
        });
      case Type::kItemLabels:
        return list([this] { return Value(text()); });
      case Type::kDefault:
        if (bytes_.below(2) != 0) return number();
        break;
      case Type::kChildren:
        return list([this] { return ofKind(contract::taskKind()); });
      case Type::kText:
      case Type::kTextOrNothing:
      case Type::kAnchor:
      case Type::kValueType:
      case Type::kDefaultLinked:
        break;
    }
    return text();
  }

  /// Elements, one in eight of them anything.
  template <typename Make>
  Value list(const Make& make) {
    Array elements;
    for (std::size_t count = bytes_.below(4); count > 0; --count) {
      elements.push_back(bytes_.below(8) == 7 ? any(2) : make());
    }
    return elements;
  }

  /// Puts in what fits, anything, or nothing.
  void give(Object& object, const std::string& name, Type type) {
    const std::size_t choice = bytes_.below(16);
    if (choice < 3) return;
    object[name] = choice == 15 ? any(1) : fitting(type);
  }

  /// The word that a builder looks for; at times another one, or one that is nearly it.
  std::string wordOr(const std::string& word) {
    const std::size_t choice = bytes_.below(16);
    if (choice == 15) return oneOf(words());
    std::string result = word;
    if (choice == 14) {
      char& letter = result[bytes_.below(result.size())];
      letter = static_cast<char>(letter ^ ' ');  // the other case
    }
    return result;
  }

  Value ofKind(const Kind& kind) {
    const bool isGeneric =
        contract::isGeneric(kind) &&
        (kind.rule != contract::Rule::kTypeWordOrClassName || bytes_.below(2) == 0);
    Object object;
    object["className"] = wordOr(isGeneric ? contract::kGenericControl : kind.word);
    Object data;
    for (const FieldSpec& field : kind.fields) {
      give(field.place == FieldSpec::Place::kData ? data : object, field.key, field.type);
    }
    if (!contract::isControl(kind)) return object;
    Object context;
    if (isGeneric) context["type"] = wordOr(kind.word);
    context["data"] = std::move(data);
    object["context"] = std::move(context);
    return object;
  }

  /// Changes a member somewhere in the value.
  void change(Value& value) {
    Object* object = value.get_if<Object>();
    if (object == nullptr) {
      value = any(1);
      return;
    }
    if (!object->empty() && bytes_.below(2) != 0) return change(memberIn(*object));
    switch (bytes_.below(3)) {
      case 0: {
        std::string name = key();
        (*object)[std::move(name)] = any(2);
        break;
      }
      case 1:
        if (!object->empty()) object->erase(anyMember(*object));
        break;
      default:
        if (!object->empty()) memberIn(*object) = any(2);
        break;
    }
  }

  Object::iterator anyMember(Object& object) {
    return std::next(object.begin(), static_cast<std::ptrdiff_t>(bytes_.below(object.size())));
  }
  Value& memberIn(Object& object) { return anyMember(object)->second; }

  ByteReader& bytes_;
};

}  // namespace

Value makeOffer(ByteReader& bytes) {
  return ValueMaker(bytes).offer();
}

}  // namespace fuzz
