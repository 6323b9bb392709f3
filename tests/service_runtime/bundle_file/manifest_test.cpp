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

/// The manifest of the bundle "b" with these further members.
std::string bundleB(const std::string& members) {
  return R"({"bundle.symbolic_name": "b", )" + members + "}";
}

std::string withComponents(const std::string& components) {
  return bundleB(R"("scr": {"version": 1, "components": [)" + components + "]}");
}

/// A manifest with one component of the class "C" that has these further members.
std::string withMembers(const std::string& members) {
  return withComponents(R"({"implementation-class": "C", )" + members + "}");
}

/// The same for a component that has a service.
std::string withServiceAnd(const std::string& members) {
  return withMembers(R"("service": {"interfaces": ["I"]}, )" + members);
}

/// The same for a component with a reference "r".
std::string withReference(const std::string& members) {
  return withServiceAnd(R"("references": [{"name": "r", "interface": "I", )" + members + "}]");
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
  EXPECT_EQ(first.references[1].target, "");
  EXPECT_TRUE(first.references[1].filter.matches(offers("n::(L)", 2)));

  const auto& second = manifest.components[1];
  EXPECT_EQ(second.name, "D");
  EXPECT_THAT(second.references, IsEmpty());
  EXPECT_TRUE(second.properties.empty());
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
        parseManifest(withServiceAnd(std::string(R"("properties": {"v": )") + row.json + "}"));
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
      "manifest.json: ",
      {{"empty", "", "not valid JSON: Empty: no JSON found"},
       {"not UTF-8", "{\"a\": \"\xFF\"}", "not valid JSON: The input is not valid UTF-8"},
       {"a number no type holds", R"({"a": 18446744073709551616})",
        "not valid JSON: Problem while parsing a number"},
       {"nested too deep", R"({"a": )" + nestedArrays(64) + "}",
        "not valid JSON: The JSON document was too deep (too many nested objects and arrays)"},
       {"no object", "[]", "expected a JSON object"},
       {"member twice", R"({"a": 1, "A": 2})",
        "the member \"A\" is given twice; names compare without regard to case"},
       {"no name", "{}", "bundle.symbolic_name: missing"},
       {"null name", R"({"bundle.symbolic_name": null})", "bundle.symbolic_name: missing"},
       {"empty name", R"({"bundle.symbolic_name": ""})", "bundle.symbolic_name: empty"},
       {"name of another kind", R"({"bundle.symbolic_name": 1})",
        "bundle.symbolic_name: expected text, found a number"}});
  expectErrors(
      "bundle b: ",
      {{"activator", bundleB(R"("bundle.activator": true)"),
        "bundle.activator: true is not supported, only false"},
       {"activator of another kind", bundleB(R"("bundle.activator": "no")"),
        "bundle.activator: expected true or false, found text"},
       {"version of another kind", bundleB(R"("bundle.version": 1)"),
        "bundle.version: expected text, found a number"},
       {"scr of another kind", bundleB(R"("scr": [])"), "scr: expected an object, found an array"},
       {"no scr version", bundleB(R"("scr": {"components": []})"), "scr.version: missing"},
       {"other scr version", bundleB(R"("scr": {"version": 2, "components": []})"),
        "scr.version: 2 is not supported, only 1"},
       {"scr version of another kind", bundleB(R"("scr": {"version": "1", "components": []})"),
        "scr.version: expected an integer, found text"},
       {"no components", bundleB(R"("scr": {"version": 1})"), "scr.components: missing"},
       {"components of another kind", bundleB(R"("scr": {"version": 1, "components": {}})"),
        "scr.components: expected an array, found an object"},
       {"further member of scr", bundleB(R"("scr": {"version": 1, "components": [], "x": 1})"),
        "scr.x: not supported"}});
}

TEST(Manifest, RefusesAWrongComponent) {
  expectErrors(
      "bundle b, component ",
      {{"of another kind", withComponents("7"), "number 1: expected an object, found a number"},
       {"no class", withComponents(R"({"service": {}})"),
        "number 1: implementation-class: missing"},
       {"no class, but a name", withComponents(R"({"name": "n"})"),
        "n: implementation-class: missing"},
       {"class that is no class name", withComponents(R"({"implementation-class": "a-b"})"),
        "a-b: implementation-class: not a class name"},
       {"class with an empty part", withComponents(R"({"implementation-class": "a::"})"),
        "a::: implementation-class: not a class name"},
       {"the second component",
        withComponents(R"({"implementation-class": "A", "service": {"interfaces": ["I"]}},
                          {"implementation-class": "B"})"),
        "B: service: missing"}});
  expectErrors(
      "bundle b, component C: ",
      {{"no interfaces", withMembers(R"("service": {})"), "service.interfaces: missing"},
       {"empty interfaces", withMembers(R"("service": {"interfaces": []})"),
        "service.interfaces: empty"},
       {"interface of another kind", withMembers(R"("service": {"interfaces": ["I", 1]})"),
        "service.interfaces[1]: expected text, found a number"},
       {"empty interface", withMembers(R"("service": {"interfaces": ["::"]})"),
        "service.interfaces[0]: empty"},
       {"interface twice", withMembers(R"("service": {"interfaces": ["I", "::I"]})"),
        "service.interfaces[1]: given twice"},
       {"scope", withMembers(R"("service": {"interfaces": ["I"], "scope": "prototype"})"),
        "service.scope: \"prototype\" is not supported, only \"singleton\""},
       {"empty name", withServiceAnd(R"("name": "")"), "name: empty"},
       {"factory", withServiceAnd(R"("factory": "x")"), "factory: not supported"},
       {"configuration", withServiceAnd(R"("configuration-policy": "require")"),
        "configuration-policy: not supported"},
       {"immediate", withServiceAnd(R"("immediate": true)"),
        "immediate: true is not supported, only false"},
       {"disabled", withServiceAnd(R"("enabled": false)"),
        "enabled: false is not supported, only true"},
       {"injection of another kind", withServiceAnd(R"("inject-references": "yes")"),
        "inject-references: expected true or false, found text"},
       {"properties of another kind", withServiceAnd(R"("properties": [])"),
        "properties: expected an object, found an array"},
       {"property of the runtime's", withServiceAnd(R"("properties": {"Component.Name": 1})"),
        "properties.component.name: set by the runtime itself"},
       {"rank of another kind", withServiceAnd(R"("properties": {"service.ranking": 1.5})"),
        "properties.service.ranking: expected an integer, found a number"}});
}

TEST(Manifest, RefusesAWrongReference) {
  expectErrors(
      "bundle b, component C: references",
      {{"of another kind", withServiceAnd(R"("references": {})"),
        ": expected an array, found an object"},
       {"element of another kind", withServiceAnd(R"("references": [true])"),
        "[0]: expected an object, found true or false"},
       {"no name", withServiceAnd(R"("references": [{"interface": "I"}])"), "[0].name: missing"},
       {"no interface", withServiceAnd(R"("references": [{"name": "r"}])"),
        "[0].interface: missing"},
       {"name twice", withReference(R"("target": null}, {"name": "r", "interface": "J")"),
        "[1].name: given twice"},
       {"cardinality", withReference(R"("cardinality": "0..n")"),
        "[0].cardinality: \"0..n\" is not supported, only \"1..1\""},
       {"policy", withReference(R"("policy": "dynamic")"),
        "[0].policy: \"dynamic\" is not supported, only \"static\""},
       {"policy option", withReference(R"("policy-option": "greedy")"),
        "[0].policy-option: \"greedy\" is not supported, only \"reluctant\""},
       {"further member", withReference(R"("bind": "b")"), "[0].bind: not supported"},
       {"target of another kind", withReference(R"("target": 1)"),
        "[0].target: expected text, found a number"},
       {"target that is no filter", withReference(R"JSON("target": "(x=1)(y=2)")JSON"),
        "[0].target: invalid LDAP filter: position 6: nothing may follow the filter"}});
}

}  // namespace
}  // namespace service_runtime_test
