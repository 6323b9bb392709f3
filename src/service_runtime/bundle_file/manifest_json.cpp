#include "bundle_file/manifest_json.hpp"

#include <simdjson.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <vector>

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

namespace dom = simdjson::dom;

constexpr std::size_t kDeepestNesting = 64;

Any toAny(const dom::element& element);

Any toAny(std::string_view text) {
  if (!text.empty() && text.front() == '%') text.remove_prefix(1);
  return std::string(text);
}

Any toAny(std::int64_t number) {
  if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
    return static_cast<long long>(number);
  }
  return static_cast<int>(number);
}

Any toAny(const dom::array& array) {
  std::vector<Any> values;
  for (const dom::element element : array) {
    if (Any value = toAny(element); !value.Empty()) values.push_back(std::move(value));
  }
  return values;
}

AnyMap toMap(const dom::object& object) {
  AnyMap members;
  for (const auto& [name, element] : object) {
    Any value = toAny(element);
    if (!members.emplace(std::string(name), std::move(value)).second) {
      throw std::runtime_error("the member \"" + std::string(name) +
                               "\" is given twice; names compare without regard to case");
    }
  }
  for (auto member = members.begin(); member != members.end();) {
    member = member->second.Empty() ? members.erase(member) : std::next(member);
  }
  return members;
}

Any toAny(const dom::element& element) {
  switch (element.type()) {
    case dom::element_type::OBJECT:
      return toMap(element.get_object().value_unsafe());
    case dom::element_type::ARRAY:
      return toAny(element.get_array().value_unsafe());
    case dom::element_type::STRING:
      return toAny(element.get_string().value_unsafe());
    case dom::element_type::BOOL:
      return element.get_bool().value_unsafe();
    case dom::element_type::INT64:
      return toAny(element.get_int64().value_unsafe());
    case dom::element_type::UINT64:
      return static_cast<unsigned long long>(element.get_uint64().value_unsafe());
    case dom::element_type::DOUBLE:
      return element.get_double().value_unsafe();
    case dom::element_type::NULL_VALUE:
      break;
  }
  return {};
}

}  // namespace

AnyMap parseJsonObject(const std::string& text) {
  dom::parser parser;
  simdjson::error_code error = parser.allocate(text.size(), kDeepestNesting);
  dom::element root;
  if (error == simdjson::SUCCESS) error = parser.parse(text).get(root);
  if (error != simdjson::SUCCESS) {
    throw std::runtime_error(std::string("not valid JSON: ") + simdjson::error_message(error));
  }
  dom::object object;
  if (root.get(object) != simdjson::SUCCESS) throw std::runtime_error("expected a JSON object");
  return toMap(object);
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
