/// @file
/// Any text as an LDAP filter, matched against a few maps of properties.
///
/// Holds the code to this: a text is refused with `std::invalid_argument` alone, at a position that
/// it has; `!` turns the answer round, and `&` and `|` of one filter answer as the filter does;
/// what matches a filter has the terms that the filter requires.

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "check.hpp"
#include "filter/ldap_expression.hpp"

namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::detail::LdapExpression;
using fuzz::require;

std::optional<LdapExpression> parsed(const std::string& text) {
  try {
    return LdapExpression::parse(text);
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
  static const std::vector<AnyMap> maps = {
      AnyMap(),
      AnyMap{
          {"name", std::string("tessel")},
          {"size", 18446744073709551615ULL},
          {"ratio", -0.5},
          {"none", Any()},
          {"words", std::vector<std::string>{"one", "two", ""}},
          {"mixed", std::vector<Any>{Any(1), Any(std::string("1")), Any(false)}},
      },
      AnyMap{{"name", std::string("a (b) * \\ c")}, {"count", 7}, {"size", 1e20}, {"on", true}},
  };
  return maps;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::asText(data, size));
  const std::optional<LdapExpression> filter = parsed(text);
  if (!filter) return 0;

  // One level more may be too deep.
  const auto inverse = parsed("(!" + text + ")");
  const auto all = parsed("(&" + text + ")");
  const auto any = parsed(" ( | " + text + " " + text + " ) ");
  require(inverse.has_value() == all.has_value() && all.has_value() == any.has_value(),
          "the operators nest alike");
  for (const AnyMap& properties : propertyMaps()) {
    const bool matches = filter->matches(properties);
    if (matches) {
      const auto terms = termsOf(properties);
      for (const std::string& term : filter->requiredTerms()) {
        require(std::find(terms.begin(), terms.end(), term) != terms.end(),
                "what matches has the terms that are required");
      }
    }
    if (!inverse) continue;
    require(inverse->matches(properties) != matches, "! turns the answer round");
    require(all->matches(properties) == matches, "& of one filter is that filter");
    require(any->matches(properties) == matches, "| of a filter with itself is that filter");
  }
  return 0;
}
