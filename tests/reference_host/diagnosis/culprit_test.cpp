#include "reference_host/diagnosis/culprit.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/all_builders.hpp"
#include "support/dial_builder.hpp"
#include "support/json.hpp"

namespace reference_host::diagnosis {

namespace {

using importer::NamedBuilder;
using importer::Step;
using test_support::json;

const NamedBuilder& named(std::string_view name) {
  static const NamedBuilder dial("Dial", std::make_shared<const test_support::DialBuilder>());
  const auto& builders = test_support::allBuilders();
  const auto found = std::find_if(builders.begin(), builders.end(), [&](const auto& builder) {
    return builder.name().find(name) != std::string::npos;
  });
  return found == builders.end() ? dial : *found;
}

struct Row {
  const char* builder;
  const char* object;
  const char* culprit;
  Step step = Step::kBuild;
};

TEST(CulpritTest, IsTheFirstValueOfAnotherType) {
  const Row rows[] = {
      {"Slider", R"({"className": "LumoControlNode", "context": {"type": "slider", "data": {}}})",
       "none"},
      {"Spinner", R"({"context": {"data": {"minimum": "0", "maximum": 1}}})",
       "/context/data/minimum string to double"},
      {"Spinner", R"({"startColumn": true})", "/startColumn bool to double"},
      {"FileBrowser", R"({"context": {"data": {}}})",
       "/context/data/browserType undefined to string"},
      {"FileBrowser", "{}", "/context/data/browserType undefined to string"},
      {"ColorPicker", R"({"context": {"data": {"colorFormat": null}}})",
       "/context/data/colorFormat null to string"},
      {"EditField", R"({"context": {"data": {"defaultValue": "a"}}})",
       "/context/data/defaultValueLinkedVariable undefined to string"},
      {"EditField", R"({"context": {"data": {"defaultValue": 1}}})",
       "/context/data/defaultValue double to string"},
      {"Combobox", R"({"context": {"data": {"items": {}}}})",
       "/context/data/items object to array"},
      {"Combobox", R"({"context": {"data": {"items": [{"label": "a", "value": "b"}, "c"]}}})",
       "/context/data/items/1/label undefined to string"},
      {"Combobox", R"({"context": {"data": {"items": [{"label": "a", "value": 1}]}}})",
       "/context/data/items/0/value double to string"},
      {"Combobox", R"({"context": {"data": {"itemLabels": ["a", "b", 1, "c", 2]}}})",
       "/context/data/itemLabels/2 double to string"},
      {"Header", "{}", "/children undefined to array"},
      {"Header", R"({"children": [{"className": "A"}, {"className": 7}]})",
       "/children/1/className double to string"},
      {"Header",
       R"({"children": [{"className": "LumoAppIntegratedInlineNode", "numOfCodeLines": 7},
                        {"className": 7}, {"className": 8}]})",
       "/children/1/className double to string"},
      {"Header",
       R"({"children": [{}, {"className": {}}, {"className": "LumoAppIntegratedInlineNode"}]})",
       "/children/1/className object to string"},
      {"Header", R"({"children": [{"className": "LumoAppIntegratedInlineNode", "autorun": true}]})",
       "/children/0/autorun bool to string"},
      {"Dial", "{}", "/range undefined to object"},
      {"Dial", R"({"range": {"from": 1, "to": "2"}})", "/range/to string to double"},
      {"Dial", R"({"range": {"from": 1, "to": 2}, "marks": [{"at": 1}, {"at": null}]})",
       "/marks/1/at null to double"},
      {"Dial", R"({"range": {"from": 1, "to": 2}, "names": ["a", "b", 3, 4]})",
       "/names/2 double to string"},
      // A member that is come to by going over the object, in no array.
      {"Dial", R"({"range": {"from": 1, "to": 2}, "options": {"a": 1}})", "none"},
      {"Button", R"({"className": "Other"})", "none", Step::kCanBuild},
      {"Button", R"({"className": 7})", "/className double to string", Step::kCanBuild},
      {"Button", R"({"className": "LumoControlNode"})", "/context undefined to object",
       Step::kCanBuild},
      {"EditField", R"({"className": "LumoControlNode", "context": []})",
       "/context array to object", Step::kCanBuild},
      {"EditField", R"({"className": "LumoControlNode", "context": {}})",
       "/context/type undefined to string", Step::kCanBuild},
      {"EditField", R"({"className": "LumoControlNode", "context": {"type": {"a": 1}}})",
       "/context/type object to string", Step::kCanBuild},
  };
  for (const Row& row : rows) {
    const auto culprit = findCulprit(named(row.builder), row.step, json(row.object));
    EXPECT_EQ(culprit ? pointerOf(culprit->place) + ' ' + culprit->held + " to " + culprit->wanted
                      : "none",
              row.culprit)
        << row.builder << ' ' << row.object;
  }
}

}  // namespace

}  // namespace reference_host::diagnosis
