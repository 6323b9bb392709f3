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
  const char* error;
};

void PrintTo(const ErrorRow& row, std::ostream* os) {
  *os << row.description;
}

class ManifestError : public ::testing::TestWithParam<ErrorRow> {};

TEST_P(ManifestError, Row) {
  const ErrorRow& row = GetParam();
  try {
    parseManifest(row.json);
    ADD_FAILURE() << row.description << ": no error";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), row.error) << row.description;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Whole, ManifestError,
    ::testing::Values(
        ErrorRow{"empty", "", "manifest.json: not valid JSON: Empty: no JSON found"},
        ErrorRow{"cut off", R"({"a": )",
                 "manifest.json: not valid JSON: The JSON document has an improper structure: "
                 "missing or superfluous commas, braces, missing keys, etc."},
        ErrorRow{"not UTF-8", "{\"a\": \"\xFF\"}",
                 "manifest.json: not valid JSON: The input is not valid UTF-8"},
        ErrorRow{"a number no type holds", R"({"a": 18446744073709551616})",
                 "manifest.json: not valid JSON: Problem while parsing a number"},
        ErrorRow{"nested too deep", R"({"a": )" + nestedArrays(64) + "}",
                 "manifest.json: not valid JSON: The JSON document was too deep (too many nested "
                 "objects and arrays)"},
        ErrorRow{"no object", "[]", "manifest.json: expected a JSON object"},
        ErrorRow{"member twice", R"({"a": 1, "A": 2})",
                 "manifest.json: the member \"A\" is given twice; names compare without regard to "
                 "case"},
        ErrorRow{"no name", "{}", "manifest.json: bundle.symbolic_name: missing"},
        ErrorRow{"null name", R"({"bundle.symbolic_name": null})",
                 "manifest.json: bundle.symbolic_name: missing"},
        ErrorRow{"empty name", R"({"bundle.symbolic_name": ""})",
                 "manifest.json: bundle.symbolic_name: empty"},
        ErrorRow{"name of another kind", R"({"bundle.symbolic_name": 1})",
                 "manifest.json: bundle.symbolic_name: expected text, found a number"},
        ErrorRow{"activator", R"({"bundle.symbolic_name": "b", "bundle.activator": true})",
                 "bundle b: bundle.activator: true is not supported, only false"},
        ErrorRow{"activator of another kind",
                 R"({"bundle.symbolic_name": "b", "bundle.activator": "no"})",
                 "bundle b: bundle.activator: expected true or false, found text"},
        ErrorRow{"version of another kind", R"({"bundle.symbolic_name": "b", "bundle.version": 1})",
                 "bundle b: bundle.version: expected text, found a number"},
        ErrorRow{"scr of another kind", withScr("[]"),
                 "bundle b: scr: expected an object, found an array"},
        ErrorRow{"no scr version", withScr(R"({"components": []})"),
                 "bundle b: scr.version: missing"},
        ErrorRow{"other scr version", withScr(R"({"version": 2, "components": []})"),
                 "bundle b: scr.version: 2 is not supported, only 1"},
        ErrorRow{"scr version of another kind", withScr(R"({"version": "1", "components": []})"),
                 "bundle b: scr.version: expected an integer, found text"},
        ErrorRow{"no components", withScr(R"({"version": 1})"),
                 "bundle b: scr.components: missing"},
        ErrorRow{"components of another kind", withScr(R"({"version": 1, "components": {}})"),
                 "bundle b: scr.components: expected an array, found an object"},
        ErrorRow{"further member of scr", withScr(R"({"version": 1, "components": [], "x": 1})"),
                 "bundle b: scr.x: not supported"}));

INSTANTIATE_TEST_SUITE_P(
    Component, ManifestError,
    ::testing::Values(
        ErrorRow{"of another kind", withComponents("7"),
                 "bundle b, component number 1: expected an object, found a number"},
        ErrorRow{"no class", withComponents(R"({"service": {"interfaces": ["I"]}})"),
                 "bundle b, component number 1: implementation-class: missing"},
        ErrorRow{"no class, but a name", withComponents(R"({"name": "n"})"),
                 "bundle b, component n: implementation-class: missing"},
        ErrorRow{"class that is no class name",
                 withComponents(R"({"implementation-class": "a-b"})"),
                 "bundle b, component a-b: implementation-class: not a class name"},
        ErrorRow{"class with an empty part", withComponents(R"({"implementation-class": "a::"})"),
                 "bundle b, component a::: implementation-class: not a class name"},
        ErrorRow{"empty name", withMembers(R"("name": "")"),
                 "bundle b, component n::C: name: empty"},
        ErrorRow{"the second component",
                 withComponents(R"({"implementation-class": "A", "service": {"interfaces": ["I"]}},
                                   {"implementation-class": "B"})"),
                 "bundle b, component B: service: missing"},
        ErrorRow{"no interfaces", withComponents(R"({"implementation-class": "C", "service": {}})"),
                 "bundle b, component C: service.interfaces: missing"},
        ErrorRow{"empty interfaces",
                 withComponents(R"({"implementation-class": "C", "service": {"interfaces": []}})"),
                 "bundle b, component C: service.interfaces: empty"},
        ErrorRow{
            "interface of another kind",
            withComponents(R"({"implementation-class": "C", "service": {"interfaces": ["I", 1]}})"),
            "bundle b, component C: service.interfaces[1]: expected text, found a number"},
        ErrorRow{
            "empty interface",
            withComponents(R"({"implementation-class": "C", "service": {"interfaces": ["::"]}})"),
            "bundle b, component C: service.interfaces[0]: empty"},
        ErrorRow{"interface twice",
                 withComponents(
                     R"({"implementation-class": "C", "service": {"interfaces": ["I", "::I"]}})"),
                 "bundle b, component C: service.interfaces[1]: given twice"},
        ErrorRow{"scope", withComponents(R"({"implementation-class": "C",
                                    "service": {"interfaces": ["I"], "scope": "prototype"}})"),
                 "bundle b, component C: service.scope: \"prototype\" is not supported, only "
                 "\"singleton\""},
        ErrorRow{"factory", withMembers(R"("factory": "x")"),
                 "bundle b, component n::C: factory: not supported"},
        ErrorRow{"configuration", withMembers(R"("configuration-policy": "require")"),
                 "bundle b, component n::C: configuration-policy: not supported"},
        ErrorRow{"immediate", withMembers(R"("immediate": true)"),
                 "bundle b, component n::C: immediate: true is not supported, only false"},
        ErrorRow{"disabled", withMembers(R"("enabled": false)"),
                 "bundle b, component n::C: enabled: false is not supported, only true"},
        ErrorRow{"injection of another kind", withMembers(R"("inject-references": "yes")"),
                 "bundle b, component n::C: inject-references: expected true or false, found text"},
        ErrorRow{"properties of another kind", withMembers(R"("properties": [])"),
                 "bundle b, component n::C: properties: expected an object, found an array"},
        ErrorRow{"property of the runtime's", withMembers(R"("properties": {"Component.Name": 1})"),
                 "bundle b, component n::C: properties.component.name: set by the runtime itself"},
        ErrorRow{"rank of another kind", withMembers(R"("properties": {"service.ranking": 1.5})"),
                 "bundle b, component n::C: properties.service.ranking: expected an integer, found "
                 "a number"}));

INSTANTIATE_TEST_SUITE_P(
    Reference, ManifestError,
    ::testing::Values(
        ErrorRow{"of another kind", withMembers(R"("references": {})"),
                 "bundle b, component n::C: references: expected an array, found an object"},
        ErrorRow{
            "element of another kind", withReference("true"),
            "bundle b, component n::C: references[0]: expected an object, found true or false"},
        ErrorRow{"no name", withReference(R"({"interface": "I"})"),
                 "bundle b, component n::C: references[0].name: missing"},
        ErrorRow{"no interface", withReference(R"({"name": "r"})"),
                 "bundle b, component n::C: references[0].interface: missing"},
        ErrorRow{
            "name twice",
            withReference(R"({"name": "r", "interface": "I"}, {"name": "r", "interface": "J"})"),
            "bundle b, component n::C: references[1].name: given twice"},
        ErrorRow{"cardinality",
                 withReference(R"({"name": "r", "interface": "I", "cardinality": "0..n"})"),
                 "bundle b, component n::C: references[0].cardinality: \"0..n\" is not supported, "
                 "only \"1..1\""},
        ErrorRow{"policy", withReference(R"({"name": "r", "interface": "I", "policy": "dynamic"})"),
                 "bundle b, component n::C: references[0].policy: \"dynamic\" is not supported, "
                 "only \"static\""},
        ErrorRow{"policy option",
                 withReference(R"({"name": "r", "interface": "I", "policy-option": "greedy"})"),
                 "bundle b, component n::C: references[0].policy-option: \"greedy\" is not "
                 "supported, only \"reluctant\""},
        ErrorRow{"further member", withReference(R"({"name": "r", "interface": "I", "bind": "b"})"),
                 "bundle b, component n::C: references[0].bind: not supported"},
        ErrorRow{"target of another kind",
                 withReference(R"({"name": "r", "interface": "I", "target": 1})"),
                 "bundle b, component n::C: references[0].target: expected text, found a number"},
        ErrorRow{
            "target that is no filter",
            withReference(R"JSON({"name": "r", "interface": "I", "target": "(x=1)(y=2)"})JSON"),
            "bundle b, component n::C: references[0].target: invalid LDAP filter: position 6: "
            "nothing may follow the filter"}));

}  // namespace
}  // namespace service_runtime_test
