#include "reference_host/diagnosis/culprit.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace reference_host::diagnosis {

using foundation::json::traits;
using foundation::json::Value;
using importer::NamedBuilder;

namespace {

/// What the call has to do with the culprit made right.
enum class Need { kSuccess, kProgress };

/// How many reads before the last one are looked at.
constexpr std::size_t kEarlierReads = 8;

struct Conversion {
  std::string held;
  std::string wanted;
};

/// What a message says of two types; nothing when it is no conversion error's.
std::optional<Conversion> conversionIn(std::string_view message) {
  constexpr std::string_view kPrefix = "invalid conversion: ";
  constexpr std::string_view kBetween = " to ";
  if (message.substr(0, kPrefix.size()) != kPrefix) return std::nullopt;
  message.remove_prefix(kPrefix.size());
  const std::size_t between = message.find(kBetween);
  if (between == std::string_view::npos) return std::nullopt;
  Conversion conversion{std::string(message.substr(0, between)),
                        std::string(message.substr(between + kBetween.size()))};
  // Only a type that a value can be given is a wanted one.
  if (typeNameOf(someValueOf(conversion.wanted)) != conversion.wanted) return std::nullopt;
  return conversion;
}

std::optional<Path> lastRead(const ReadTrace& trace) {
  if (trace.readCount() == 0) return std::nullopt;
  return trace.placeOfRead(trace.readCount() - 1);
}

class CulpritSearch {
 public:
  CulpritSearch(const NamedBuilder& builder, importer::Step step, const Value& object,
                const Attempt& failed)
      : builder_(builder),
        step_(step),
        object_(object),
        failed_(failed),
        last_(lastRead(failed.trace)),
        conversion_(conversionIn(failed.message)) {}

  std::optional<Culprit> find() const {
    if (last_) {
      if (auto culprit = at(*last_)) return culprit;
      if (auto culprit = amongElements()) return culprit;
    }
    if (auto culprit = amongRecognised({})) return culprit;
    return amongEarlierReads();
  }

 private:
  /// A value that was asked for, or what it was asked of.
  std::optional<Culprit> at(const Path& place) const {
    if (auto culprit = exactlyAt(place)) return culprit;
    const bool wantsObject = conversion_ && conversion_->wanted == traits<Value::Object>::name;
    return wantsObject ? exactlyAt(parentOf(place)) : std::nullopt;
  }

  /// The value at a place, if it holds what the message says and its type turns out to matter.
  std::optional<Culprit> exactlyAt(const Path& place, Need need = Need::kProgress) const {
    const std::string held = typeNameOf(valueAt(object_, place));
    if (place.empty()) return std::nullopt;
    if (conversion_) {
      if (held != conversion_->held || !matters(place, conversion_->wanted, need))
        return std::nullopt;
      return Culprit{place, held, conversion_->wanted};
    }
    for (const char* type : kWantedTypes) {
      if (held != type && matters(place, type, need)) return Culprit{place, held, type};
    }
    return std::nullopt;
  }

  /// Elements are read in their order, and need not be asked for anything: the culprit is in the
  /// first one without which, and without those behind it, the call fails no longer.
  std::optional<Culprit> amongElements() const {
    for (Path array = *last_;; array.pop_back()) {
      const Value* value = valueAt(object_, array);
      const auto* elements = value == nullptr ? nullptr : value->get_if<Value::Array>();
      if (elements != nullptr && !elements->empty() && !failsAlike(shortened(array, 0))) {
        const Path element = childOf(array, firstFailing(array, *elements));
        // An object that is an element may be right, but for what is in it.
        if (auto culprit = amongRecognised(element)) return culprit;
        return exactlyAt(element);
      }
      if (array.empty()) return std::nullopt;
    }
  }

  std::size_t firstFailing(const Path& array, const Value::Array& elements) const {
    std::size_t good = 0;  // so many elements do not fail
    std::size_t bad = elements.size();
    // The first one of the type that the message tells is likely.
    const auto likely = std::find_if(elements.begin(), elements.end(), [&](const Value& element) {
      return conversion_ && typeNameOf(element) == conversion_->held;
    });
    std::size_t middle = static_cast<std::size_t>(likely - elements.begin());
    if (middle != elements.size() && !failsAlike(shortened(array, middle))) {
      good = middle;
      if (failsAlike(shortened(array, middle + 1))) return middle;
    }
    while (bad - good > 1) {
      middle = good + (bad - good) / 2;
      (failsAlike(shortened(array, middle)) ? bad : good) = middle;
    }
    return good;
  }

  std::optional<Culprit> amongRecognised(const Path& object) const {
    const Value* value = valueAt(object_, object);
    if (value == nullptr || value->get_if<Value::Object>() == nullptr) return std::nullopt;
    // Where nothing is seen of the reads, success tells more than another failure.
    for (const Need need : {Need::kSuccess, Need::kProgress}) {
      for (const Path* place : {&classNamePlace(), &contextPlace(), &typePlace()}) {
        Path inside = object;
        inside.insert(inside.end(), place->begin(), place->end());
        if (auto culprit = exactlyAt(inside, need)) return culprit;
      }
    }
    return std::nullopt;
  }

  std::optional<Culprit> amongEarlierReads() const {
    std::size_t left = kEarlierReads;
    for (std::size_t read = failed_.trace.readCount(); read-- > 1 && left-- > 0;) {
      if (auto culprit = exactlyAt(failed_.trace.placeOfRead(read - 1))) return culprit;
    }
    return std::nullopt;
  }

  /// Whether the call gets further, or succeeds, with a value of the type at the place.
  bool matters(const Path& place, const std::string& type, Need need) const {
    const Value* holder = valueAt(object_, parentOf(place));
    const bool isElement = std::get_if<std::size_t>(&place.back()) != nullptr;
    if (isElement && (holder == nullptr || holder->get_if<Value::Array>() == nullptr)) return false;
    Value corrected = upTo(place);
    put(corrected, place, someValueOf(type));
    const Attempt again = attempt(builder_, step_, corrected);
    if (again.succeeded) return true;
    if (need == Need::kSuccess) return false;
    const auto last = lastRead(again.trace);
    if (last == place) {
      // Nothing else was asked for. The failure is still about this value if it names its new type.
      const auto conversion = conversionIn(again.message);
      return conversion && conversion->held != type;
    }
    return again.message != failed_.message || last != last_;
  }

  bool failsAlike(const Value& object) const {
    const Attempt again = attempt(builder_, step_, object);
    return !again.succeeded && again.message == failed_.message;
  }

  Value shortened(const Path& array, std::size_t size) const {
    Value copy = object_;
    auto& elements = *valueAt(copy, array)->get_if<Value::Array>();
    elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(size), elements.end());
    return copy;
  }

  /// The object without the elements behind those on the way: they cannot have been read yet.
  Value upTo(const Path& place) const {
    Value copy = object_;
    Value* value = &copy;
    for (const auto& step : place) {
      if (const auto* index = std::get_if<std::size_t>(&step)) {
        auto& elements = *value->get_if<Value::Array>();
        elements.erase(elements.begin() + static_cast<std::ptrdiff_t>(*index + 1), elements.end());
      }
      value = valueAt(*value, {step});
      if (value == nullptr) break;
    }
    return copy;
  }

  const NamedBuilder& builder_;
  importer::Step step_;
  const Value& object_;
  const Attempt& failed_;
  std::optional<Path> last_;
  std::optional<Conversion> conversion_;
};

}  // namespace

const Path& classNamePlace() {
  static const Path place{"className"};
  return place;
}

const Path& contextPlace() {
  static const Path place{"context"};
  return place;
}

const Path& typePlace() {
  static const Path place{"context", "type"};
  return place;
}

std::optional<Culprit> findCulprit(const NamedBuilder& builder, importer::Step step,
                                   const Value& object, const Attempt& failed) {
  return CulpritSearch(builder, step, object, failed).find();
}

std::optional<Culprit> findCulprit(const NamedBuilder& builder, importer::Step step,
                                   const Value& object) {
  const Attempt again = attempt(builder, step, object);
  if (again.succeeded) return std::nullopt;
  return findCulprit(builder, step, object, again);
}

Culprit blamedFor(Culprit culprit, const Value& object) {
  if (culprit.held != traits<foundation::json::Undefined>::name) return culprit;
  for (Path place = parentOf(culprit.place); !place.empty(); place.pop_back()) {
    const Value* holder = valueAt(object, place);
    if (holder == nullptr) continue;
    if (holder->get_if<Value::Object>() == nullptr) {
      return {place, typeNameOf(*holder), traits<Value::Object>::name};
    }
    break;
  }
  return culprit;
}

}  // namespace reference_host::diagnosis
