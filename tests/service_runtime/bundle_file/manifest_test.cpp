#include "bundle_file/manifest.hpp"

#include <gmock/gmock.h>

#include <limits>
#include <stdexcept>
#include <string>

namespace service_runtime_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::detail::BundleManifest;
using cppmicroservices::detail::parseManifest;

/// The manifest of the bundle "b" with that "scr" block.
std::string withScr(const std::string& scr) {
  return R"({"bundle.symbolic_name": "b", "scr": )" + scr + "}";
}

std::string withComponents(const std::string& components) {
  return withScr(R"({"version": 1, "components": [)" + components + "]}");
}

/// A manifest with one component that has these further members.
std::string withMembers(const std::string& members) {
  return withComponents(R"({"implementation-class": "n::C", "service": {"interfaces": ["I"]})" +
                        (members.empty() ? "" : ", " + members) + "}");
}

std::string withReference(const std::string& reference) {
  return withMembers(R"("references": [)" + reference + "]");
}

std::string nestedArrays(int depth) {
  return std::string(static_cast<std::size_t>(depth), '[') +
         std::string(static_cast<std::size_t>(depth), ']');
}

TEST(Manifest, ReadsComponentsInOrder) {
  const BundleManifest manifest = parseManifest(R"JSON({
    "bundle.activator": false, "bundle.symbolic_name": "b", "bundle.version": "1.2.3",
    "qv": {"module": {"name": "x"}},
    "scr": {"version": 1, "components": [
      {"implementation-class": "n::C", "name": "first", "enabled": true, "immediate": false,
       "service": {"interfaces": ["n::I", "::n::J"], "scope": "singleton"},
       "inject-references": true,
       "properties": {"service.ranking": 3, "p": "%q"},
       "references": [
         {"interface": "::n::K", "name": "k", "target": "(x=1)", "cardinality": "1..1",
          "policy": "static", "policy-option": "reluctant", "scope": "bundle"},
         {"interface": "n::(L)", "name": "l"}]},
      {"implementation-class": "D", "service": {"interfaces": ["n::I"]}}]}})JSON");
  EXPECT_EQ(manifest.symbolicName, "b");
  ASSERT_EQ(manifest.components.size(), 2U);

  const auto& first = manifest.components[0];
  EXPECT_EQ(first.name, "first");
  EXPECT_EQ(first.implementationClass, "n::C");
  EXPECT_THAT(first.interfaces, ElementsAre("n::I", "n::J"));
  EXPECT_EQ(Any(first.properties).ToJSON(), R"({"p": "q", "service.ranking": 3})");
  ASSERT_EQ(first.references.size(), 2U);
  EXPECT_EQ(first.references[0].name, "k");
  EXPECT_EQ(first.references[0].interfaceName, "n::K");
  EXPECT_EQ(first.references[0].target, "(x=1)");
  const auto offers = [](const std::string& interface, int x) {
    return AnyMap{{"objectclass", std::vector<std::string>{interface}}, {"x", x}};
  };
  EXPECT_TRUE(first.references[0].filter.matches(offers("n::K", 1)));
  EXPECT_FALSE(first.references[0].filter.matches(offers("n::K", 2)));
  EXPECT_FALSE(first.references[0].filter.matches(offers("n::L", 1)));
  EXPECT_EQ(first.references[1].target, "");
  EXPECT_TRUE(first.references[1].filter.matches(offers("n::(L)", 2)));

  const auto& second = manifest.components[1];
  EXPECT_EQ(second.name, "D");
  EXPECT_THAT(second.references, IsEmpty());
  EXPECT_TRUE(second.properties.empty());
}

TEST(Manifest, NeedsNoComponents) {
  const BundleManifest manifest = parseManifest(R"({"bundle.symbolic_name": "b"})");
  EXPECT_THAT(manifest.components, IsEmpty());
}

struct ValueRow {
  const char* json;
  Any value;
};

TEST(Manifest, ValuesKeepTheirKind) {
  const ValueRow rows[] = {
      {R"("x")", std::string("x")},
      {R"("%x")", std::string("x")},
      {R"("\u00e9\ud83d\ude00")", std::string("\xC3\xA9\xF0\x9F\x98\x80")},
      {"true", true},
      {"2147483647", std::numeric_limits<int>::max()},
      {"-2147483648", std::numeric_limits<int>::min()},
      {"2147483648", 2147483648LL},
      {"-9223372036854775808", std::numeric_limits<long long>::min()},
      {"18446744073709551615", std::numeric_limits<unsigned long long>::max()},
      {"1.0", 1.0},
      {"-2.5e3", -2500.0},
      {R"([1, "a", null, [true]])", std::vector<Any>{1, std::string("a"), std::vector<Any>{true}}},
      {R"({"A": null, "b": {}})", AnyMap{{"b", AnyMap()}}},
      {"null", Any()},
  };
  for (const ValueRow& row : rows) {
    const BundleManifest manifest =
        parseManifest(withMembers(std::string(R"("properties": {"v": )") + row.json + "}"));
    const AnyMap& properties = manifest.components.at(0).properties;
    const auto member = properties.find("V");
    const Any value = member == properties.end() ? Any() : member->second;
    EXPECT_EQ(value.Type(), row.value.Type()) << row.json;
    EXPECT_EQ(value.ToJSON(), row.value.ToJSON());
  }
}

struct ErrorRow {
  const char* description;
  std::string json;
  std::string error;
};

/// @param prefix what every error begins with.
void expectErrors(const std::string& prefix, const std::vector<ErrorRow>& rows) {
  for (const ErrorRow& row : rows) {
    SCOPED_TRACE(row.description);
    try {
      parseManifest(row.json);
      ADD_FAILURE() << "no error";
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), prefix + row.error);
    }
  }
}

TEST(Manifest, RefusesAWrongWhole) {
  expectErrors(
      "",
      {{"empty", "", "manifest.json: not valid JSON: Empty: no JSON found"},
       {"cut off", R"({"a": )",
        "manifest.json: not valid JSON: The JSON document has an improper structure: missing or "
        "superfluous commas, braces, missing keys, etc."},
       {"not UTF-8", "{\"a\": \"\xFF\"}",
        "manifest.json: not valid JSON: The input is not valid UTF-8"},
       {"a number no type holds", R"({"a": 18446744073709551616})",
        "manifest.json: not valid JSON: Problem while parsing a number"},
       {"nested too deep", R"({"a": )" + nestedArrays(64) + "}",
        "manifest.json: not valid JSON: The JSON document was too deep (too many nested objects "
        "and arrays)"},
       {"no object", "[]", "manifest.json: expected a JSON object"},
       {"member twice", R"({"a": 1, "A": 2})",
        "manifest.json: the member \"A\" is given twice; names compare without regard to case"},
       {"no name", "{}", "manifest.json: bundle.symbolic_name: missing"},
       {"null name", R"({"bundle.symbolic_name": null})",
        "manifest.json: bundle.symbolic_name: missing"},
       {"empty name", R"({"bundle.symbolic_name": ""})",
        "manifest.json: bundle.symbolic_name: empty"},
       {"name of another kind", R"({"bundle.symbolic_name": 1})",
        "manifest.json: bundle.symbolic_name: expected text, found a number"},
       {"activator", R"({"bundle.symbolic_name": "b", "bundle.activator": true})",
        "bundle b: bundle.activator: true is not supported, only false"},
       {"activator of another kind", R"({"bundle.symbolic_name": "b", "bundle.activator": "no"})",
        "bundle b: bundle.activator: expected true or false, found text"},
       {"version of another kind", R"({"bundle.symbolic_name": "b", "bundle.version": 1})",
        "bundle b: bundle.version: expected text, found a number"},
       {"scr of another kind", withScr("[]"), "bundle b: scr: expected an object, found an array"},
       {"no scr version", withScr(R"({"components": []})"), "bundle b: scr.version: missing"},
       {"other scr version", withScr(R"({"version": 2, "components": []})"),
        "bundle b: scr.version: 2 is not supported, only 1"},
       {"scr version of another kind", withScr(R"({"version": "1", "components": []})"),
        "bundle b: scr.version: expected an integer, found text"},
       {"no components", withScr(R"({"version": 1})"), "bundle b: scr.components: missing"},
       {"components of another kind", withScr(R"({"version": 1, "components": {}})"),
        "bundle b: scr.components: expected an array, found an object"},
       {"further member of scr", withScr(R"({"version": 1, "components": [], "x": 1})"),
        "bundle b: scr.x: not supported"}});
}

TEST(Manifest, RefusesAWrongComponent) {
  expectErrors(
      "bundle b, component ",
      {{"of another kind", withComponents("7"), "number 1: expected an object, found a number"},
       {"no class", withComponents(R"({"service": {"interfaces": ["I"]}})"),
        "number 1: implementation-class: missing"},
       {"no class, but a name", withComponents(R"({"name": "n"})"),
        "n: implementation-class: missing"},
       {"class that is no class name", withComponents(R"({"implementation-class": "a-b"})"),
        "a-b: implementation-class: not a class name"},
       {"class with an empty part", withComponents(R"({"implementation-class": "a::"})"),
        "a::: implementation-class: not a class name"},
       {"empty name", withMembers(R"("name": "")"), "n::C: name: empty"},
       {"the second component",
        withComponents(R"({"implementation-class": "A", "service": {"interfaces": ["I"]}},
                                   {"implementation-class": "B"})"),
        "B: service: missing"},
       {"no interfaces", withComponents(R"({"implementation-class": "C", "service": {}})"),
        "C: service.interfaces: missing"},
       {"empty interfaces",
        withComponents(R"({"implementation-class": "C", "service": {"interfaces": []}})"),
        "C: service.interfaces: empty"},
       {"interface of another kind",
        withComponents(R"({"implementation-class": "C", "service": {"interfaces": ["I", 1]}})"),
        "C: service.interfaces[1]: expected text, found a number"},
       {"empty interface",
        withComponents(R"({"implementation-class": "C", "service": {"interfaces": ["::"]}})"),
        "C: service.interfaces[0]: empty"},
       {"interface twice",
        withComponents(R"({"implementation-class": "C", "service": {"interfaces": ["I", "::I"]}})"),
        "C: service.interfaces[1]: given twice"},
       {"scope", withComponents(R"({"implementation-class": "C",
                                    "service": {"interfaces": ["I"], "scope": "prototype"}})"),
        "C: service.scope: \"prototype\" is not supported, only \"singleton\""},
       {"factory", withMembers(R"("factory": "x")"), "n::C: factory: not supported"},
       {"configuration", withMembers(R"("configuration-policy": "require")"),
        "n::C: configuration-policy: not supported"},
       {"immediate", withMembers(R"("immediate": true)"),
        "n::C: immediate: true is not supported, only false"},
       {"disabled", withMembers(R"("enabled": false)"),
        "n::C: enabled: false is not supported, only true"},
       {"injection of another kind", withMembers(R"("inject-references": "yes")"),
        "n::C: inject-references: expected true or false, found text"},
       {"properties of another kind", withMembers(R"("properties": [])"),
        "n::C: properties: expected an object, found an array"},
       {"property of the runtime's", withMembers(R"("properties": {"Component.Name": 1})"),
        "n::C: properties.component.name: set by the runtime itself"},
       {"rank of another kind", withMembers(R"("properties": {"service.ranking": 1.5})"),
        "n::C: properties.service.ranking: expected an integer, found a number"}});
}

TEST(Manifest, RefusesAWrongReference) {
  expectErrors(
      "bundle b, component n::C: references",
      {{"of another kind", withMembers(R"("references": {})"),
        ": expected an array, found an object"},
       {"element of another kind", withReference("true"),
        "[0]: expected an object, found true or false"},
       {"no name", withReference(R"({"interface": "I"})"), "[0].name: missing"},
       {"no interface", withReference(R"({"name": "r"})"), "[0].interface: missing"},
       {"name twice",
        withReference(R"({"name": "r", "interface": "I"}, {"name": "r", "interface": "J"})"),
        "[1].name: given twice"},
       {"cardinality", withReference(R"({"name": "r", "interface": "I", "cardinality": "0..n"})"),
        "[0].cardinality: \"0..n\" is not supported, only \"1..1\""},
       {"policy", withReference(R"({"name": "r", "interface": "I", "policy": "dynamic"})"),
        "[0].policy: \"dynamic\" is not supported, only \"static\""},
       {"policy option",
        withReference(R"({"name": "r", "interface": "I", "policy-option": "greedy"})"),
        "[0].policy-option: \"greedy\" is not supported, only \"reluctant\""},
       {"further member", withReference(R"({"name": "r", "interface": "I", "bind": "b"})"),
        "[0].bind: not supported"},
       {"target of another kind", withReference(R"({"name": "r", "interface": "I", "target": 1})"),
        "[0].target: expected text, found a number"},
       {"target that is no filter",
        withReference(R"JSON({"name": "r", "interface": "I", "target": "(x=1)(y=2)"})JSON"),
        "[0].target: invalid LDAP filter: position 6: nothing may follow the filter"}});
}

}  // namespace
}  // namespace service_runtime_test
