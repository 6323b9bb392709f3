#pragma once

/// @file
/// Objects of an embedded task's inline node, put together key by key, and what a build of each of
/// them has to leave behind; and header lines as exported.

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/json.hpp"
#include "support/build_outcome.hpp"
#include "support/control_kind.hpp"

namespace test_support {

/// A key of the object and what becomes of it. The first one is the node's id, the others are
/// fields of the task data.
struct TaskField {
  std::string key;
  std::string property;
  foundation::json::Value sample;
  std::string exported;  ///< the property as JSON, for the sample
  std::string initial;   ///< the same for a missing key
  std::string typeName;  ///< what the key has to hold
};

/// All keys, in reading order.
inline const std::vector<TaskField>& taskFields() {
  static const std::vector<TaskField> fields = [] {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"instanceId", "id"},
        {"taskID", "taskId"},
        {"appIdentifier", "appIdentifier"},
        {"view", "view"},
        {"collapsed", "collapsed"},
        {"appVariables", "appVariables"},
        {"appVariablesUserMap", "appVariablesUserMap"},
        {"executionModel", "executionModel"},
        {"appState", "appState"},
        {"autorun", "autoRun"},
        {"text", "text"},
    };
    std::vector<TaskField> all;
    for (const auto& [key, property] : texts) {
      all.push_back({key, property, "its " + key, "\"its " + key + '"', R"("")", "string"});
    }
    all.push_back({"numOfCodeLines", "numCodeLines", 12.0, "12", "0", "double"});
    return all;
  }();
  return fields;
}

/// An object put together key by key. It starts with its class name alone.
class TaskCase {
 public:
  TaskCase& give(std::size_t field) {
    return give(field, taskFields()[field].sample, taskFields()[field].exported);
  }
  TaskCase& give(std::size_t field, foundation::json::Value value, std::string exported) {
    given_[field] = Given{std::move(value), std::move(exported), ""};
    return *this;
  }
  TaskCase& giveOther(std::size_t field, const Alternative& other) {
    given_[field] = Given{other.value, "", other.name};
    return *this;
  }
  TaskCase& giveAll() {
    for (std::size_t field = 0; field < given_.size(); ++field) give(field);
    return *this;
  }
  TaskCase& remove(std::size_t field) {
    given_[field].reset();
    return *this;
  }

  foundation::json::Value json() const {
    foundation::json::Value::Object members;
    members["className"] = "LumoAppIntegratedInlineNode";
    for (std::size_t field = 0; field < given_.size(); ++field) {
      if (given_[field]) members[taskFields()[field].key] = given_[field]->value;
    }
    return members;
  }

  /// What its build has to leave behind.
  Outcome expected() const {
    const std::string node = R"({"class":"document::gxzero::LumoAppIntegratedInlineNode")";
    std::string data = R"(,"lumoTaskData":{"class":"lumocode::contentmodel::gxzero::LumoTaskData")";
    std::string id;
    Outcome outcome;
    outcome.records = {"Starting to build a LumoAppIntegratedNode"};
    for (std::size_t index = 0; index < given_.size(); ++index) {
      const TaskField& field = taskFields()[index];
      const auto& given = given_[index];
      if (given) outcome.records.push_back("Setting the " + field.key + " property");
      if (given && !given->otherType.empty()) {
        outcome.error = "invalid conversion: " + given->otherType + " to " + field.typeName;
        outcome.roots = "[" + node + id + "}]";
        return outcome;
      }
      (index == 0 ? id : data) +=
          ",\"" + field.property + "\":" + (given ? given->exported : field.initial);
    }
    outcome.records.push_back("Finished building a LumoAppIntegratedNode");
    outcome.node = node + id + data + "}}";
    outcome.roots = "[" + outcome.node + "]";
    return outcome;
  }

 private:
  struct Given {
    foundation::json::Value value;
    std::string exported;
    std::string otherType;  // empty when the value fits
  };

  std::vector<std::optional<Given>> given_ = std::vector<std::optional<Given>>(taskFields().size());
};

/// A header line as exported.
/// @param anchor as JSON
inline std::string exportedLine(const std::string& anchor,
                                const std::vector<std::string>& children = {}) {
  std::string text = R"({"class":"document::gxzero::LumoAppLineNode","anchorId":)" + anchor;
  for (std::size_t index = 0; index < children.size(); ++index) {
    text += (index == 0 ? ",\"children\":[" : ",") + children[index];
  }
  return text + (children.empty() ? "}" : "]}");
}

}  // namespace test_support
