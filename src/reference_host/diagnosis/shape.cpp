#include "diagnosis/shape.hpp"

#include "reference_host/diagnosis/path.hpp"
#include "reference_host/diagnosis/recognition.hpp"

namespace reference_host::diagnosis {

using foundation::json::Value;

namespace {

void appendWord(std::string& shape, const std::string& word) {
  shape += std::to_string(word.size());
  shape += ':';
  shape += word;
}

void appendShape(std::string& shape, const Value& value) {
  if (const auto* members = value.get_if<Value::Object>()) {
    shape += '{';
    for (const auto& [name, member] : *members) {
      appendWord(shape, name);
      const auto* word = member.get_if<std::string>();
      if (word != nullptr && isWordKey(name)) appendWord(shape, *word);
      appendShape(shape, member);
    }
    shape += '}';
  } else if (const auto* elements = value.get_if<Value::Array>()) {
    shape += '[';
    std::size_t before = shape.size();  // where the last element that counts begins
    for (const Value& element : *elements) {
      const std::size_t begin = shape.size();
      appendShape(shape, element);
      const std::size_t length = shape.size() - begin;
      if (begin - before == length && shape.compare(before, length, shape, begin, length) == 0) {
        shape.resize(begin);
      } else {
        before = begin;
      }
    }
    shape += ']';
  } else {
    shape += *typeNameOf(value) == 'n' ? '0' : *typeNameOf(value);
  }
}

}  // namespace

std::string shapeOf(const Value& value) {
  std::string shape;
  appendShape(shape, value);
  return shape;
}

}  // namespace reference_host::diagnosis
