#include "support/control_kind.hpp"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "support/control_fields.hpp"
#include "support/json.hpp"

namespace test_support {

namespace {

using foundation::json::Value;

const char* const kGenericControl = "LumoControlNode";
const Records kFoundContext = {"Found the context property"};
const Records kFoundData = {"Found the context.data property"};

using Properties = std::map<std::string, std::string>;

void append(Records& records, const Records& more) {
  records.insert(records.end(), more.begin(), more.end());
}

/// An element as exported: of the properties those that are set, in the given order.
std::string exportedElement(const std::string& className, const std::vector<std::string>& order,
                            const Properties& properties) {
  std::string text = R"({"class":")" + className + '"';
  for (const std::string& name : order) {
    const auto property = properties.find(name);
    if (property == properties.end()) continue;
    text += ",\"" + name + "\":" + property->second;
  }
  return text + "}";
}

Records startRecords(const ControlKind& kind, const Value& json) {
  return {kind.startText, foundation::json::pretty_print(json)};
}

bool isGeneric(const ControlKind& kind) {
  return kind.recognition == Recognition::kTypeWord ||
         kind.recognition == Recognition::kTypeWordOrClassName;
}

}  // namespace

std::string nodeClassName(const std::string& name) {
  return "document::gxzero::" + name;
}

std::string recordClassName(const std::string& name) {
  return "lumocode::contentmodel::gxzero::" + name;
}

std::vector<Field> fieldsOf(const ControlKind& kind) {
  std::vector<Field> fields = commonFields();
  fields.insert(fields.end(), kind.ownFields.begin(), kind.ownFields.end());
  return fields;
}

const std::vector<Alternative>& alternatives() {
  static const std::vector<Alternative> all = {
      {"undefined", Value()},
      {"null", Value(foundation::json::Null())},
      {"bool", Value(true)},
      {"double", Value(1.0)},
      {"string", Value("true")},
      {"array", Value(Value::Array{Value("1")})},
      {"object", Value(Value::Object{{"0", Value("1")}})},
      {"float", Value(1.0F)},
      {"int64", Value(std::int64_t{1})},
      {"uint64", Value(std::uint64_t{1})},
  };
  return all;
}

std::vector<Alternative> alternativesExcept(const std::string& name) {
  std::vector<Alternative> others;
  for (const Alternative& alternative : alternatives()) {
    if (alternative.name != name) others.push_back(alternative);
  }
  return others;
}

std::string alternativeNameOf(FieldType type) {
  switch (type) {
    case FieldType::kText:
      return "string";
    case FieldType::kFlag:
      return "bool";
    case FieldType::kList:
      return "array";
    case FieldType::kNumber:
    case FieldType::kColumn:
      break;
  }
  return "double";
}

/// What a build has done so far.
struct ControlCase::Leftover {
  Records records;
  std::string error;
  std::map<Field::Holder, Properties> properties;
  bool recordCreated = false;
  bool elementCreated = false;
  bool elementAttached = false;

  Outcome outcome(const ControlKind& kind) const;
  Properties propertiesOf(Field::Holder holder) const {
    const auto found = properties.find(holder);
    return found == properties.end() ? Properties() : found->second;
  }
};

Outcome ControlCase::Leftover::outcome(const ControlKind& kind) const {
  const std::string element =
      exportedElement(recordClassName(kind.element.className), kind.element.properties,
                      propertiesOf(Field::Holder::kElement));
  Properties record = propertiesOf(Field::Holder::kRecord);
  if (elementAttached) record[kind.element.slot] = element;
  std::vector<std::string> recordOrder = {"label", "code", "executionModel"};
  recordOrder.insert(recordOrder.end(), kind.recordProperties.begin(), kind.recordProperties.end());

  Properties node = propertiesOf(Field::Holder::kNode);
  node["position"] =
      exportedElement(nodeClassName("LumoControlPosition"), {"startColumn", "endColumn"},
                      propertiesOf(Field::Holder::kPosition));
  if (recordCreated) {
    node[kind.slot] = exportedElement(recordClassName(kind.recordClass), recordOrder, record);
  }

  Outcome outcome;
  const std::string built =
      exportedElement(nodeClassName(kind.nodeClass), {"id", "position", kind.slot}, node);
  outcome.node = error.empty() ? built : "";
  outcome.error = error;
  outcome.roots = "[" + built + (elementCreated && !elementAttached ? "," + element : "") + "]";
  outcome.records = records;
  return outcome;
}

ControlCase::ControlCase(const ControlKind& kind)
    : kind_(kind), fields_(fieldsOf(kind)), given_(fields_.size()) {
  control_["className"] = Value(isGeneric(kind) ? kGenericControl : kind.word);
  if (isGeneric(kind)) context_["type"] = Value(kind.word);
}

ControlCase& ControlCase::giveAll() {
  for (std::size_t field = 0; field < fields_.size(); ++field) give(field);
  return *this;
}

ControlCase& ControlCase::give(std::size_t field) {
  return give(field, fields_[field].sample, fields_[field].exported);
}

ControlCase& ControlCase::give(std::size_t field, Value value, std::string exported) {
  given_[field] = Given{std::move(value), "", std::move(exported), true};
  return *this;
}

ControlCase& ControlCase::giveOther(std::size_t field, const Alternative& other) {
  given_[field] = Given{other.value, other.name, "", false};
  return *this;
}

ControlCase& ControlCase::remove(std::size_t field) {
  given_[field].reset();
  return *this;
}

ControlCase& ControlCase::giveOther(const std::string& key, const Alternative& other) {
  return giveOther(ownField(key), other);
}

ControlCase& ControlCase::remove(const std::string& key) {
  return remove(ownField(key));
}

std::size_t ControlCase::ownField(const std::string& key) const {
  const auto field = std::find_if(fields_.rbegin(), fields_.rend(),
                                  [&key](const Field& each) { return each.key == key; });
  EXPECT_NE(field, fields_.rend()) << key;
  return static_cast<std::size_t>(std::distance(field, fields_.rend())) - 1;
}

ControlCase& ControlCase::replaceContext(Value other) {
  contextState_ = State::kReplaced;
  replacement_ = std::move(other);
  return *this;
}

ControlCase& ControlCase::replaceData(Value other) {
  dataState_ = State::kReplaced;
  replacement_ = std::move(other);
  return *this;
}

ControlCase& ControlCase::removeContext() {
  contextState_ = State::kAbsent;
  return *this;
}

ControlCase& ControlCase::removeData() {
  dataState_ = State::kAbsent;
  return *this;
}

ControlCase& ControlCase::addToControl(const std::string& key, Value value) {
  control_[key] = std::move(value);
  return *this;
}

ControlCase& ControlCase::addToContext(const std::string& key, Value value) {
  context_[key] = std::move(value);
  return *this;
}

ControlCase& ControlCase::addToData(const std::string& key, Value value) {
  data_[key] = std::move(value);
  return *this;
}

Value ControlCase::json() const {
  Value::Object control = control_;
  Value::Object context = context_;
  Value::Object data = data_;
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    if (!given_[field]) continue;
    auto& place = fields_[field].place == Field::Place::kControl ? control : data;
    place[fields_[field].key] = given_[field]->value;
  }
  if (dataState_ == State::kObject) context["data"] = Value(std::move(data));
  if (dataState_ == State::kReplaced) context["data"] = replacement_;
  if (contextState_ == State::kObject) control["context"] = Value(std::move(context));
  if (contextState_ == State::kReplaced) control["context"] = replacement_;
  return Value(std::move(control));
}

std::optional<ControlCase::Given> ControlCase::given(std::size_t field) const {
  const bool reachable = fields_[field].place == Field::Place::kControl ||
                         (contextState_ == State::kObject && dataState_ == State::kObject);
  return reachable ? given_[field] : std::nullopt;
}

bool ControlCase::reachesRecordFields(Records& records) const {
  if (!kind_.guarded) return true;
  if (contextState_ == State::kAbsent) return false;
  append(records, kFoundContext);
  if (contextState_ == State::kReplaced || dataState_ == State::kAbsent) return false;
  append(records, kFoundData);
  return true;
}

bool ControlCase::readField(std::size_t index, Leftover& leftover) const {
  const Field& field = fields_[index];
  const auto found = given(index);
  const bool isRead = field.presence == Field::Presence::kRequired ||
                      (field.presence == Field::Presence::kOptional && found) ||
                      (field.presence == Field::Presence::kReadWithPrevious && given(index - 1));
  if (!isRead) return true;

  append(leftover.records, field.before);
  if (field.holder == Field::Holder::kElement) leftover.elementCreated = true;
  if (!found || !(found->fits || field.ignoresOtherTypes)) {
    // In a holder that can be no object, it is not even looked for.
    const std::string held = found ? found->typeName : nameOfReplacement();
    leftover.error = "invalid conversion: " + held + " to " +
                     (found || held == "undefined" ? alternativeNameOf(field.type) : "object");
    return false;
  }
  if (!found->exported.empty()) {
    leftover.properties[field.holder][field.property] = found->exported;
  }
  append(leftover.records, field.after);
  return true;
}

std::string ControlCase::nameOfReplacement() const {
  const auto same = [this](const Alternative& each) { return each.value == replacement_; };
  return std::find_if(alternatives().begin(), alternatives().end(), same)->name;
}

bool ControlCase::readFields(std::size_t begin, std::size_t end, Leftover& leftover) const {
  for (std::size_t field = begin; field < end; ++field) {
    if (!readField(field, leftover)) return false;
  }
  return true;
}

Outcome ControlCase::expected() const {
  Leftover leftover;
  leftover.records = startRecords(kind_, json());
  if (readFields(0, kFieldsBeforeRecord, leftover)) {
    leftover.recordCreated = true;
    if (reachesRecordFields(leftover.records) &&
        readFields(kFieldsBeforeRecord, fields_.size(), leftover)) {
      leftover.elementAttached = leftover.elementCreated;
    }
  }
  return leftover.outcome(kind_);
}

Outcome outcomeOf(const ControlKind& kind, const Value& json, const std::string& record,
                  const std::string& error, const Records& records, const std::string& strays) {
  const std::string node = R"({"class":")" + nodeClassName(kind.nodeClass) +
                           R"(","position":{"class":"document::gxzero::LumoControlPosition"},")" +
                           kind.slot + R"(":{"class":")" + recordClassName(kind.recordClass) +
                           "\"" + record + "}}";
  Outcome outcome;
  outcome.node = error.empty() ? node : "";
  outcome.error = error;
  outcome.roots = "[" + node + (strays.empty() ? "" : "," + strays) + "]";
  outcome.records = startRecords(kind, json);
  append(outcome.records, records);
  return outcome;
}

Value controlWith(const ControlKind& kind, const std::string& data) {
  Value control = ControlCase(kind).json();
  control["context"]["data"] = json(data);
  return control;
}

void expectRows(const ControlKind& kind, const std::vector<DataRow>& rows) {
  for (const DataRow& row : rows) {
    SCOPED_TRACE(row.description);
    const Value control = controlWith(kind, row.data);
    Records records;
    if (kind.guarded) {
      append(records, kFoundContext);
      append(records, kFoundData);
    }
    append(records, row.records);
    EXPECT_EQ(buildWith(*kind.builder, control),
              outcomeOf(kind, control, row.record, row.error, records, row.strays));
  }
}

}  // namespace test_support
