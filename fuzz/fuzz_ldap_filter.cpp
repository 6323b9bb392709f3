/// @file
/// Any text as an LDAP filter, matched against a few maps of properties.
///
/// Holds the code to this: a text is refused with `std::invalid_argument` alone, at a position that
/// it has; a filter prints as the text it was made of; `!` turns the answer round, and `&` and `|`
/// of one filter answer as the filter does.

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/LDAPFilter.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/check.hpp"

namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::LDAPFilter;
using fuzz::require;

std::optional<LDAPFilter> parsed(const std::string& text) {
  try {
    return LDAPFilter(text);
  } catch (const std::invalid_argument& error) {
    const std::string message = error.what();
    const std::string start = "invalid LDAP filter: position ";
    require(message.compare(0, start.size(), start) == 0, "a refusal says that it is the filter's");
    std::size_t digits = 0;
    const auto position = std::stoull(message.substr(start.size()), &digits);
    require(position >= 1 && position <= text.size() + 1, "its position is in the text");
    require(message.size() > start.size() + digits + 2, "it has a reason");
    return std::nullopt;
  }
}

const std::vector<AnyMap>& propertyMaps() {
  static const std::vector<AnyMap> maps = [] {
    const AnyMap::ordered_any_map values = {
        {"name", std::string("tessel")},
        {"Name", std::string("a (b) * \\ c")},
        {"count", 7},
        {"size", 18446744073709551615ULL},
        {"ratio", -0.5},
        {"on", true},
        {"none", Any()},
        {"words", std::vector<std::string>{"one", "two", ""}},
        {"mixed", std::vector<Any>{Any(1), Any(std::string("1")), Any(false)}},
    };
    AnyMap folded(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    for (const auto& [key, value] : values) folded.emplace(key, value);
    return std::vector<AnyMap>{AnyMap(), AnyMap(values), folded};
  }();
  return maps;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::asText(data, size));
  const std::optional<LDAPFilter> filter = parsed(text);
  if (!filter) return 0;
  require(static_cast<bool>(*filter), "a filter that is parsed is not empty");
  fuzz::requireEqual(filter->ToString(), text, "a filter prints as it was given");

  // One level more may be too deep.
  const auto inverse = parsed("(!" + text + ")");
  const auto all = parsed("(&" + text + ")");
  const auto any = parsed(" ( | " + text + " " + text + " ) ");
  require(inverse.has_value() == all.has_value() && all.has_value() == any.has_value(),
          "the operators nest alike");
  for (const AnyMap& properties : propertyMaps()) {
    for (const auto match :
         {&LDAPFilter::MatchCase,
          static_cast<bool (LDAPFilter::*)(const AnyMap&) const>(&LDAPFilter::Match)}) {
      const bool matches = ((*filter).*match)(properties);
      if (!inverse) continue;
      require(((*inverse).*match)(properties) != matches, "! turns the answer round");
      require(((*all).*match)(properties) == matches, "& of one filter is that filter");
      require(((*any).*match)(properties) == matches, "| of a filter with itself is that filter");
    }
  }
  return 0;
}
