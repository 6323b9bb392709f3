#pragma once

/// @file
/// From an object's class name and type word to the plain struct of its kind, by one look in a
/// table.
///
/// Objects of any library come through the adapters of plain_controls.hpp, which for this also have
///
///     std::string_view textOf(const char* key)            a member; empty if it is no text
///     template <C> void readInto(C& control)              the object as a control of that kind
///     template <F> void forEachChild(F)                   all members or elements, as adapters

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

#include "contract/kinds.hpp"
#include "plain_controls.hpp"

namespace benchmarks {

/// The plain structs by the words of their kinds: their places in `PlainControl`.
struct PlainKinds {
  std::unordered_map<std::string_view, std::size_t> byClassName;
  std::unordered_map<std::string_view, std::size_t> byTypeWord;

  static const PlainKinds& all() {
    static const PlainKinds kinds(static_cast<const PlainControl<std::string>*>(nullptr));
    return kinds;
  }

 private:
  template <typename... Plain>
  explicit PlainKinds(const std::variant<Plain...>*) {
    std::size_t place = 0;
    (add(contract::kindOf(Plain::kBuilder), place++), ...);
  }
  void add(const contract::Kind& kind, std::size_t place) {
    (contract::isGeneric(kind) ? byTypeWord : byClassName).emplace(kind.word, place);
  }
};

/// The place in `PlainControl` that an object's words stand for; none for one without a plain
/// struct.
template <typename Object>
std::optional<std::size_t> plainKindOf(const Object& object) {
  static const PlainKinds& kinds = PlainKinds::all();
  const std::string_view className = object.textOf("className");
  if (className.empty()) return std::nullopt;
  const bool generic = className == contract::kGenericControl;
  const auto& words = generic ? kinds.byTypeWord : kinds.byClassName;
  const auto found = words.find(generic ? object.child("context").textOf("type") : className);
  return found == words.end() ? std::nullopt : std::optional<std::size_t>(found->second);
}

template <typename Text, typename Object, std::size_t... Index>
PlainControl<Text> readAs(std::size_t kind, const Object& object, std::index_sequence<Index...>) {
  PlainControl<Text> control;
  ((kind == Index ? object.readInto(control.template emplace<Index>()) : void()), ...);
  return control;
}

/// The object as a control of the kind.
template <typename Text, typename Object>
PlainControl<Text> readAs(std::size_t kind, const Object& object) {
  constexpr std::size_t kKinds = std::variant_size_v<PlainControl<Text>>;
  return readAs<Text>(kind, object, std::make_index_sequence<kKinds>());
}

/// Appends the controls in a document, in its order; there are none inside of another.
template <typename Text, typename Object>
void collectControls(const Object& object, std::vector<PlainControl<Text>>& controls) {
  if (const auto kind = plainKindOf(object)) {
    controls.push_back(readAs<Text>(*kind, object));
    return;
  }
  object.forEachChild([&controls](const Object& child) { collectControls(child, controls); });
}

}  // namespace benchmarks
