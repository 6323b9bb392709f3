#include "contract/outcome.hpp"

#include <algorithm>
#include <boost/log/attributes/attribute_value_set.hpp>
#include <boost/log/core/core.hpp>
#include <cstddef>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <typeinfo>
#include <utility>

#include "reference_host/export/export.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/logging/log_capture.hpp"

namespace contract {

namespace {

using foundation::json::Value;
using reference_host::logging::LogCapture;

/// Runs a call, and notes what it throws and records and whether the value stays as it is.
template <typename Call>
void run(const Call& call, const Value& json, bool logged, Outcome& outcome) {
  const Value before = json;
  std::optional<LogCapture> capture;
  if (logged) capture.emplace();
  try {
    call();
  } catch (const std::exception& error) {
    outcome.error = error.what();
    const std::string conversion = "invalid conversion: ";
    if (outcome.error.compare(0, conversion.size(), conversion) == 0 &&
        typeid(error) != typeid(std::runtime_error)) {
      outcome.offences.emplace_back("the conversion error is no plain runtime_error");
    }
  }
  if (capture) {
    for (const auto& record : capture->records()) {
      if (record.severity != reference_host::logging::kDiagnosticSeverity) {
        outcome.offences.push_back("a record at another severity: " + record.text);
      }
      outcome.records.push_back(record.text);
    }
  }
  if (!areSame(json, before)) outcome.offences.emplace_back("the value is changed");
}

void writeList(std::ostream& stream, const char* title, const std::vector<std::string>& lines) {
  stream << "\n  " << title << ":";
  for (const std::string& line : lines) stream << "\n    " << line;
}

/// The qualified names of the classes of a model's elements, in the order in which they were made.
std::vector<std::string> classesIn(const gx::zero::Model& model) {
  std::vector<std::string> classes;
  for (const auto& element : model.get()->getElements()) {
    const std::u16string& name = element->metaClass().get()->getQualifiedName();
    classes.emplace_back(name.begin(), name.end());  // of ASCII letters
  }
  return classes;
}

Outcome answer(const AnyBuilder& builder, const Value& json, bool logged) {
  Outcome outcome;
  run([&] { outcome.claims = builder.canBuild(json); }, json, logged, outcome);
  return outcome;
}

Outcome build(const AnyBuilder& builder, const Value& json, bool logged) {
  const gx::zero::Model model = gx::zero::Model::create();
  Outcome outcome;
  const auto promise = [&outcome](bool kept, const char* broken) {
    if (!kept) outcome.offences.emplace_back(broken);
  };
  const auto call = [&] {
    const document::gxzero::Node node = builder.build(model, json);
    promise(static_cast<bool>(node), "there is no node");
    if (!node) return;
    promise(node.get()->getHandleCount() == 1, "the node is held more than once");
    promise(model.get()->getHeldElementCount() == 1, "another element is held");
    promise(model.get()->getElements().front().get() == node.get(), "the node is not made first");
  };
  run(call, json, logged, outcome);
  promise(model.get()->getHeldElementCount() == 0, "a handle is left");
  for (const auto& element : model.get()->getElements()) {
    promise(element->getRequestedUuid().is_nil(), "an element is not asked for with the nil uuid");
  }
  outcome.roots = rootsOf(model);
  outcome.created = classesIn(model);
  return outcome;
}

}  // namespace

bool operator==(const Outcome& left, const Outcome& right) {
  return left.claims == right.claims && left.error == right.error &&
         left.records == right.records && left.created == right.created &&
         left.offences == right.offences && areSame(left.roots, right.roots);
}

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  stream << (outcome.claims ? "\n  claimed" : "") << "\n  error: " << outcome.error
         << "\n  roots: " << foundation::json::pretty_print(outcome.roots);
  writeList(stream, "created", outcome.created);
  writeList(stream, "records", outcome.records);
  writeList(stream, "offences", outcome.offences);
  return stream;
}

bool areSame(const Value& left, const Value& right) {
  const auto sameNumber = [&](auto type) {
    using Number = decltype(type);
    const auto* one = left.get_if<Number>();
    const auto* other = right.get_if<Number>();
    return one != nullptr && other != nullptr && std::memcmp(one, other, sizeof(Number)) == 0;
  };
  if (left == right || sameNumber(0.0) || sameNumber(0.0F)) return true;
  if (const auto* elements = left.get_if<Value::Array>()) {
    const auto* others = right.get_if<Value::Array>();
    return others != nullptr &&
           std::equal(elements->begin(), elements->end(), others->begin(), others->end(), areSame);
  }
  const auto* members = left.get_if<Value::Object>();
  const auto* others = right.get_if<Value::Object>();
  return members != nullptr && others != nullptr &&
         std::equal(members->begin(), members->end(), others->begin(), others->end(),
                    [](const auto& one, const auto& other) {
                      return one.first == other.first && areSame(one.second, other.second);
                    });
}

Value::Array rootsOf(const gx::zero::Model& model) {
  Value::Array roots;
  for (const gx::zero::ModelElement& root : model.get()->getRoots()) {
    roots.push_back(reference_host::json::parse(reference_host::exporting::toJson(root)));
  }
  return roots;
}

Outcome answerOf(const AnyBuilder& builder, const Value& json) {
  return answer(builder, json, true);
}
Outcome buildOf(const AnyBuilder& builder, const Value& json) {
  return build(builder, json, true);
}
Outcome silentAnswerOf(const AnyBuilder& builder, const Value& json) {
  return answer(builder, json, false);
}
Outcome silentBuildOf(const AnyBuilder& builder, const Value& json) {
  return build(builder, json, false);
}

std::vector<Step> stepsOf(const AnyBuilder& builder, const Value& json) {
  const gx::zero::Model model = gx::zero::Model::create();
  std::vector<Value::Array> roots;
  const auto look = [&](const boost::log::attribute_value_set&) {
    roots.push_back(rootsOf(model));
    return true;
  };
  Outcome outcome;
  boost::log::core::get()->set_filter(look);  // is asked whenever a record is opened
  run([&] { builder.build(model, json); }, json, true, outcome);
  boost::log::core::get()->reset_filter();
  std::vector<Step> steps;
  for (std::size_t step = 0; step < outcome.records.size(); ++step) {
    steps.push_back({outcome.records[step], roots.at(step)});
  }
  return steps;
}

}  // namespace contract
