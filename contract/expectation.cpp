// The contract's interpreter: what a builder has to do with a value, read off its kind.

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "contract/outcome.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/text_writer.hpp"

namespace contract {

namespace {

using foundation::json::Value;
using Array = Value::Array;
using Object = Value::Object;

/// A read that the contract refuses.
struct Refusal {
  std::string text;
};

template <typename... Alternatives>
std::string nameOfHeld(const Value& value) {
  std::string name = "undefined";
  ((value.get_if<Alternatives>() != nullptr
        ? void(name = foundation::json::traits<Alternatives>::name)
        : void()),
   ...);
  return name;
}

template <typename T>
const T& read(const Value& value) {
  if (const T* held = value.get_if<T>()) return *held;
  const std::string name = nameOfHeld<foundation::json::Null, bool, double, std::string, Array,
                                      Object, float, std::int64_t, std::uint64_t>(value);
  throw Refusal{"invalid conversion: " + name + " to " + foundation::json::traits<T>::name};
}

const Value* memberOf(const Value& value, const std::string& key) {
  const auto* members = value.get_if<Object>();
  if (members == nullptr) return nullptr;
  const auto member = members->find(key);
  return member == members->end() ? nullptr : &member->second;
}

const Value kUndefined;

const Value& memberOrUndefined(const Value& value, const std::string& key) {
  const Value* member = memberOf(value, key);
  return member != nullptr ? *member : kUndefined;
}

/// A member that has to be there, as the host answers for one that is not: it asks its holder to be
/// an object, which only an Undefined value can become.
const Value& requiredMember(const Value& holder, const std::string& key) {
  if (holder.get_if<foundation::json::Undefined>() == nullptr) read<Object>(holder);
  return memberOrUndefined(holder, key);
}

Value column(double number) {
  const double whole = std::trunc(number);
  if (whole >= 0 && whole < std::ldexp(1.0, 64)) return static_cast<std::uint64_t>(whole);
  if (whole < 0 && whole >= -std::ldexp(1.0, 63)) {
    return ~static_cast<std::uint64_t>(-whole) + 1;
  }
  return std::uint64_t{0x8000000000000000};
}

/// The low 16 bits of the number without its fraction; 0 for one that 32 bits do not hold.
Value lineCount(double number) {
  const double whole = std::trunc(number);
  if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) return std::uint64_t{0};
  const double low = std::fmod(whole, 65536.0);
  return static_cast<std::uint64_t>(low < 0 ? low + 65536.0 : low);
}

bool recognizes(const Kind& kind, const Value& json, Records& records) {
  records.push_back(kind.asked);
  if (kind.rule == Rule::kHostClassName) {
    const auto* className = memberOrUndefined(json, "className").get_if<std::string>();
    return className != nullptr && *className == kind.word;
  }
  if (json.get_if<Object>() == nullptr) {
    records.emplace_back("Incoming JSON was not an Object");
    return false;
  }
  const Value* className = memberOf(json, "className");
  if (className == nullptr) return false;
  const bool isGenericControl = read<std::string>(*className) == kGenericControl;
  if (kind.rule == Rule::kClassName || !isGenericControl) {
    return kind.rule != Rule::kTypeWord && read<std::string>(*className) == kind.word;
  }
  const Value& context = memberOrUndefined(json, "context");
  read<Object>(context);
  return read<std::string>(memberOrUndefined(context, "type")) == kind.word;
}

/// Elements as the exporter writes them, read back.
Array exported(const Array& elements) {
  std::string text;
  reference_host::json::JsonWriter(text).json(elements);
  return *reference_host::json::parse(text).get_if<Array>();
}

/// A build, key by key.
class Build {
 public:
  /// @param parent the build that this one is a part of.
  /// @param steps is told every step; null when nobody wants to know.
  Build(const Kind& kind, const Value& json, const Build* parent, std::vector<Step>* steps)
      : kind_(kind), json_(json), parent_(parent), steps_(steps) {}

  Outcome run() {
    Outcome outcome;
    record(kind_.start);
    if (isControl(kind_)) record(foundation::json::pretty_print(json_));
    hasNode_ = true;
    create(nodeClass(kind_.node));
    if (kind_.shape == Shape::kHeader) record("Building the anchorId for the LumoAppLineNode");
    if (isControl(kind_)) create(nodeClass("LumoControlPosition"));
    try {
      applyFields();
      if (kind_.shape == Shape::kTask) {
        hasData_ = true;  // a value, which the node gets once it is whole
        record("Finished building a LumoAppIntegratedNode");
      } else if (kind_.shape == Shape::kHeader) {
        record("Finished building the LumoAppLineNode");
      }
    } catch (const Refusal& refusal) {
      outcome.error = refusal.text;
    }
    outcome.records = std::move(records_);
    outcome.created = std::move(created_);
    outcome.roots = exported(elements());
    return outcome;
  }

 private:
  void record(const std::string& text) {
    if (text.empty()) return;
    records_.push_back(text);
    if (steps_ != nullptr) steps_->push_back({text, exported(elementsSoFar())});
  }
  void create(const std::string& className) { created_.push_back(className); }

  void applyFields() {
    for (const FieldSpec& field : kind_.fields) {
      if (isControl(kind_) && !hasData_ && field.holder == FieldSpec::Holder::kData) {
        createData();
        if (!findData()) return;
      }
      apply(field);
    }
  }

  void createData() {
    hasData_ = true;
    create(qualifiedDataClass(kind_.dataClass));
  }

  /// Whether the fields are read.
  bool findData() {
    const Value* context = memberOf(json_, "context");
    const Value* data = context != nullptr ? memberOf(*context, "data") : nullptr;
    if (data != nullptr) data_ = data;
    if (kind_.shape == Shape::kUnguarded) return true;
    if (context == nullptr) return false;
    record("Found the context property");
    if (data == nullptr) return false;
    record("Found the context.data property");
    return true;
  }

  void apply(const FieldSpec& field) {
    if (field.type == Type::kDefaultLinked) return;
    const bool inData = isControl(kind_) && field.place == FieldSpec::Place::kData;
    const Value& holder = inData ? *data_ : json_;
    const Value* found = memberOf(holder, field.key);
    if (found == nullptr) storeInitial(field);
    if (found == nullptr && !field.required) return;
    record(field.found);
    store(field, found != nullptr ? *found : requiredOf(field, holder));
    record(field.set);
  }

  Object& propertiesOf(const FieldSpec& field) {
    if (field.holder == FieldSpec::Holder::kNode) return node_;
    return field.holder == FieldSpec::Holder::kPosition ? position_ : dataObject_;
  }

  /// What is set where a key is missing: in a struct every property, and the anchor
  /// in any case.
  void storeInitial(const FieldSpec& field) {
    if (kind_.shape == Shape::kTask) {
      propertiesOf(field)[field.property] = field.type == Type::kText ? Value("") : Value(0.0);
    } else if (field.type == Type::kAnchor) {
      node_[field.property] = "";
    }
  }

  /// A field that nobody tests for.
  const Value& requiredOf(const FieldSpec& field, const Value& holder) const {
    if (kind_.shape == Shape::kHeader) return memberOrUndefined(holder, field.key);
    if (kind_.shape == Shape::kGuarded) return requiredMember(holder, field.key);
    return requiredMember(requiredMember(memberOrUndefined(json_, "context"), "data"), field.key);
  }

  void store(const FieldSpec& field, const Value& value) {
    Object& properties = propertiesOf(field);
    switch (field.type) {
      case Type::kText:
      case Type::kValueType:
        properties[field.property] = read<std::string>(value);
        break;
      case Type::kTextOrNothing:
        if (value.get_if<std::string>() != nullptr) properties[field.property] = value;
        break;
      case Type::kAnchor: {
        const auto* text = value.get_if<std::string>();
        const bool hasPrefix = text != nullptr && text->compare(0, 2, "M_") == 0;
        properties[field.property] = text == nullptr ? "" : hasPrefix ? *text : "M_" + *text;
        break;
      }
      case Type::kNumber:
        properties[field.property] = read<double>(value);
        break;
      case Type::kColumn:
        properties[field.property] = column(read<double>(value));
        break;
      case Type::kLineCount:
        properties[field.property] = lineCount(read<double>(value));
        break;
      case Type::kFlag:
        properties[field.property] = read<bool>(value);
        break;
      case Type::kItems:
        storeItems(field, value);
        break;
      case Type::kItemLabels:
        storeItemLabels(field, value);
        break;
      case Type::kDefault:
        storeDefault(field, value);
        break;
      case Type::kDefaultLinked:
        break;
      case Type::kChildren:
        buildChildren(field, value);
        break;
    }
  }

  void storeItems(const FieldSpec& field, const Value& value) {
    // Irregular by contract, wording and place: it comes before the list is read.
    record("Got items ka array");
    Array items;
    for (const Value& entry : read<Array>(value)) {
      record(foundation::json::pretty_print(entry));
      Object& item = addStray("ComboboxItem");
      item["label"] = read<std::string>(memberOrUndefined(entry, "label"));
      item["item"] = read<std::string>(memberOrUndefined(entry, "value"));
      items.push_back(takeStray());
      dataObject_[field.property] = items;
    }
  }

  void storeItemLabels(const FieldSpec& field, const Value& value) {
    Array labels;
    for (const Value& entry : read<Array>(value)) {
      Object& label = addStray("ComboboxItemLabel");
      label["label"] = read<std::string>(entry);
      labels.push_back(takeStray());
      dataObject_[field.property] = labels;
    }
  }

  /// An element of its own, in a form that the value type chooses; with its linked variable, for
  /// which nobody tests.
  void storeDefault(const FieldSpec& field, const Value& value) {
    const auto type = dataObject_.find("valueType");
    const bool isNumber = type != dataObject_.end() && type->second == Value("Double");
    Object& element = addStray(isNumber ? "DoubleDefaultValueData" : "StringDefaultValueData");
    if (!isNumber) {
      element["defaultValue"] = read<std::string>(value);
    } else if (value.get_if<double>() != nullptr) {
      element["defaultValue"] = value;
    }
    element["defaultLinkedVariable"] =
        read<std::string>(requiredMember(*data_, "defaultValueLinkedVariable"));
    dataObject_[field.property] = takeStray();
  }

  void buildChildren(const FieldSpec& field, const Value& value) {
    Array children;
    for (const Value& each : read<Array>(value)) {
      const Outcome answer = expectedAnswer(taskKind(), each);
      for (const std::string& text : answer.records) record(text);
      if (!answer.error.empty()) throw Refusal{answer.error};
      if (!answer.claims) continue;
      Outcome child = Build(taskKind(), each, this, steps_).run();
      records_.insert(records_.end(), child.records.begin(), child.records.end());
      created_.insert(created_.end(), child.created.begin(), child.created.end());
      if (!child.error.empty()) {
        strays_.push_back(child.roots.front());
        throw Refusal{child.error};
      }
      children.push_back(child.roots.front());
      node_[field.property] = children;
    }
  }

  Object& addStray(const std::string& className) {
    create(qualifiedDataClass(className));
    strays_.emplace_back(Object{{"class", qualifiedDataClass(className)}});
    return *strays_.back().get_if<Object>();
  }
  Value takeStray() {
    Value stray = std::move(strays_.back());
    strays_.pop_back();
    return stray;
  }

  /// The roots of the model: the node, and what is contained in nothing.
  Array elements() const {
    if (!hasNode_) return {};
    Object node = node_;
    if (isControl(kind_)) node["position"] = position_;
    if (hasData_) node[kind_.slot] = dataObject_;
    Array all = {node};
    all.insert(all.end(), strays_.begin(), strays_.end());
    return all;
  }

  /// The same with those of the build that this one is a part of.
  Array elementsSoFar() const {
    Array all = parent_ != nullptr ? parent_->elementsSoFar() : Array();
    const Array own = elements();
    all.insert(all.end(), own.begin(), own.end());
    return all;
  }

  const Kind& kind_;
  const Value& json_;
  const Build* parent_;
  std::vector<Step>* steps_;
  const Value* data_ = &kUndefined;
  Records records_;
  std::vector<std::string> created_;
  Object node_{{"class", nodeClass(kind_.node)}};
  Object position_{{"class", nodeClass("LumoControlPosition")}};
  Object dataObject_{{"class", qualifiedDataClass(kind_.dataClass)}};
  bool hasNode_ = false;
  bool hasData_ = false;
  Array strays_;  // made, and contained in nothing yet
};

}  // namespace

Outcome expectedAnswer(const Kind& kind, const Value& json) {
  Outcome outcome;
  try {
    outcome.claims = recognizes(kind, json, outcome.records);
  } catch (const Refusal& refusal) {
    outcome.error = refusal.text;
  }
  return outcome;
}

Outcome expectedBuild(const Kind& kind, const Value& json) {
  return Build(kind, json, nullptr, nullptr).run();
}

std::vector<Step> expectedSteps(const Kind& kind, const Value& json) {
  std::vector<Step> steps;
  Build(kind, json, nullptr, &steps).run();
  return steps;
}

}  // namespace contract
