#include "reference_host/diagnosis/path.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>
#include <type_traits>
#include <utility>

#include "reference_host/json/pointer.hpp"

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Undefined;
using foundation::json::Value;

namespace {

const Value* childAt(const Value& value, const PathStep& step) {
  if (const auto* name = std::get_if<std::string>(&step)) {
    const auto* members = value.get_if<Value::Object>();
    if (members == nullptr) return nullptr;
    const auto member = members->find(*name);
    return member == members->end() ? nullptr : &member->second;
  }
  const auto* elements = value.get_if<Value::Array>();
  const std::size_t index = *std::get_if<std::size_t>(&step);
  return elements == nullptr || index >= elements->size() ? nullptr : &(*elements)[index];
}

/// The index that a reference token stands for: digits without a leading zero.
std::optional<std::size_t> indexOf(std::string_view token) {
  if (token.empty() || (token.front() == '0' && token.size() != 1)) return std::nullopt;
  if (token.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  std::size_t index = 0;
  const auto read = std::from_chars(token.data(), token.data() + token.size(), index);
  if (read.ec != std::errc()) return std::nullopt;  // beyond any array
  return index;
}

template <typename... Alternatives>
const char* nameOfHeldAmong(const Value& value) noexcept {
  const char* name = traits<Undefined>::name;
  static_cast<void>((
      (value.get_if<Alternatives>() != nullptr && (name = traits<Alternatives>::name) != nullptr) ||
      ...));
  return name;
}

}  // namespace

const Value* valueAt(const Value& root, const Path& path) {
  const Value* value = &root;
  for (const PathStep& step : path) {
    value = childAt(*value, step);
    if (value == nullptr) return nullptr;
  }
  return value;
}

Value* valueAt(Value& root, const Path& path) {
  return const_cast<Value*>(valueAt(std::as_const(root), path));
}

const std::string* textAt(const Value& root, const Path& path) {
  const Value* value = valueAt(root, path);
  return value == nullptr ? nullptr : value->get_if<std::string>();
}

Path pathTo(const Value& root, std::string_view pointer) {
  Path path;
  const Value* value = &root;
  for (const std::string_view token : json::tokensOf(pointer)) {
    PathStep step = json::nameOf(token);
    if (value != nullptr && value->get_if<Value::Array>() != nullptr) {
      if (const auto index = indexOf(token)) step = *index;
    }
    if (value != nullptr) value = childAt(*value, step);
    path.push_back(std::move(step));
  }
  return path;
}

void put(Value& root, const Path& path, Value value) {
  Value* target = &root;
  for (const PathStep& step : path) {
    if (const auto* index = std::get_if<std::size_t>(&step)) {
      target = &(*target->get_if<Value::Array>())[*index];
      continue;
    }
    if (target->get_if<Value::Object>() == nullptr) target->emplace<Value::Object>();
    target = &(*target->get_if<Value::Object>())[*std::get_if<std::string>(&step)];
  }
  *target = std::move(value);
}

void removeMember(Value& root, const Path& path) {
  Value* const holder = valueAt(root, parentOf(path));
  if (holder == nullptr) return;
  if (auto* members = holder->get_if<Value::Object>()) {
    members->erase(*std::get_if<std::string>(&path.back()));
  }
}

Value withShortArrays(const Value& object, Path& place) {
  // One level after the other; the way to the place goes along.
  struct Pending {
    const Value* source;
    Value* target;
    std::size_t depth;  // of steps of the way that lead here
    bool onTheWay;
  };
  Value result;
  std::vector<Pending> open{{&object, &result, 0, true}};
  while (!open.empty()) {
    const Pending pending = open.back();
    open.pop_back();
    const bool goesOn = pending.onTheWay && pending.depth < place.size();
    const bool whole = pending.onTheWay && !goesOn;
    if (const auto* members = whole ? nullptr : pending.source->get_if<Value::Object>()) {
      auto& copies = pending.target->emplace<Value::Object>();
      for (const auto& [name, member] : *members) {
        const bool next = goesOn && place[pending.depth] == PathStep(name);
        open.push_back({&member, &copies[name], pending.depth + 1, next});
      }
    } else if (const auto* elements = whole ? nullptr : pending.source->get_if<Value::Array>()) {
      auto& copies = pending.target->emplace<Value::Array>();
      if (elements->empty()) continue;
      std::size_t index = 0;
      if (goesOn) {
        index = *std::get_if<std::size_t>(&place[pending.depth]);
        place[pending.depth] = std::size_t{0};
      }
      open.push_back({&(*elements)[index], &copies.emplace_back(), pending.depth + 1, goesOn});
    } else {
      *pending.target = *pending.source;
    }
  }
  return result;
}

Path parentOf(const Path& path) {
  return Path(path.begin(), path.end() - 1);
}

Path childOf(Path path, PathStep step) {
  path.push_back(std::move(step));
  return path;
}

bool isWithin(const Path& path, const Path& outer) {
  return path.size() >= outer.size() && std::equal(outer.begin(), outer.end(), path.begin());
}

std::string pointerOf(const Path& path) {
  std::string pointer;
  for (const PathStep& step : path) {
    if (const auto* index = std::get_if<std::size_t>(&step)) {
      json::appendToken(pointer, std::to_string(*index));
    } else {
      json::appendToken(pointer, *std::get_if<std::string>(&step));
    }
  }
  return pointer;
}

void appendToPattern(std::string& pattern, const PathStep& step) {
  const auto* name = std::get_if<std::string>(&step);
  if (name == nullptr) {
    pattern += "/*";
  } else if (*name == "*") {
    pattern += "/~2";  // no pointer has this
  } else {
    json::appendToken(pattern, *name);
  }
}

std::string patternOf(const Path& path) {
  std::string pattern;
  for (const PathStep& step : path) appendToPattern(pattern, step);
  return pattern;
}

Path pathOf(const std::string& pattern) {
  Path path;
  for (const std::string_view token : json::tokensOf(pattern)) {
    if (token == "*") {
      path.emplace_back(std::size_t{0});
    } else {
      path.emplace_back(token == "~2" ? std::string("*") : json::nameOf(token));
    }
  }
  return path;
}

const char* typeNameOf(const Value& value) noexcept {
  return nameOfHeldAmong<foundation::json::Null, bool, double, std::string, Value::Array,
                         Value::Object, float, std::int64_t, std::uint64_t>(value);
}

const char* typeNameOf(const Value* value) noexcept {
  return value == nullptr ? traits<Undefined>::name : typeNameOf(*value);
}

Value someValueOf(std::string_view typeName, int variant) {
  const bool first = variant == 0;
  if (typeName == traits<std::string>::name) return first ? "text" : "other";
  if (typeName == traits<double>::name) return first ? 1.0 : 2.0;
  if (typeName == traits<bool>::name) return first;
  if (typeName == traits<Value::Array>::name) return Value::Array();
  if (typeName == traits<Value::Object>::name) return Value::Object();
  if (typeName == traits<float>::name) return 1.0F;
  if (typeName == traits<std::int64_t>::name) return std::int64_t{1};
  if (typeName == traits<std::uint64_t>::name) return std::uint64_t{1};
  return foundation::json::Null();
}

}  // namespace reference_host::diagnosis
