#include <rapidjson/document.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "fl/i18n.hpp"
#include "peers.hpp"
#include "plain_controls.hpp"
#include "plain_dispatch.hpp"

namespace benchmarks {

namespace {

using foundation::json::Value;
using Control = PlainControl<std::u16string>;

constexpr unsigned kFlags =
    rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag;

/// Puts what the reader reports straight into its place. Every number becomes a double.
class ValueHandler {
 public:
  explicit ValueHandler(Value& root) : slot_(&root) {}

  bool Null() { return put(Value(foundation::json::Null())); }
  bool Bool(bool boolean) { return put(Value(boolean)); }
  bool Int(int number) { return Double(number); }
  bool Uint(unsigned number) { return Double(number); }
  bool Int64(std::int64_t number) { return Double(static_cast<double>(number)); }
  bool Uint64(std::uint64_t number) { return Double(static_cast<double>(number)); }
  bool Double(double number) { return put(Value(number)); }
  bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return put(Value(std::string(text, length)));
  }
  bool StartObject() { return open(Value(Value::Object())); }
  bool Key(const char* text, rapidjson::SizeType length, bool) {
    auto& members = *containers_.back()->get_if<Value::Object>();
    slot_ = &members[std::string(text, length)];
    return true;
  }
  bool EndObject(rapidjson::SizeType) { return close(); }
  bool StartArray() { return open(Value(Value::Array())); }
  bool EndArray(rapidjson::SizeType) { return close(); }

 private:
  Value& place() {
    if (!containers_.empty()) {
      if (auto* elements = containers_.back()->get_if<Value::Array>()) {
        return elements->emplace_back();
      }
    }
    return *slot_;
  }
  bool put(Value&& value) {
    place() = std::move(value);
    return true;
  }
  bool open(Value&& container) {
    Value& opened = place();
    opened = std::move(container);
    containers_.push_back(&opened);
    return true;
  }
  bool close() {
    containers_.pop_back();
    return true;
  }

  Value* slot_;  // of the last key, or the root
  std::vector<Value*> containers_;
};

class RapidjsonObject {
 public:
  explicit RapidjsonObject(const rapidjson::Value* json) : json_(json) {}

  bool hasClass(std::string_view name) const { return textOf("className") == name; }
  std::string_view textOf(const char* key) const {
    const auto* member = find(key);
    if (member == nullptr || !member->IsString()) return {};
    return {member->GetString(), member->GetStringLength()};
  }
  template <typename T>
  void read(const char* key, std::optional<T>& target) const {
    if (const auto* member = find(key)) RapidjsonObject(member).readSelf(target);
  }
  void readSelf(std::optional<std::u16string>& target) const {
    if (json_->IsString()) {
      target = fl::i18n::utf8_to_ustring({json_->GetString(), json_->GetStringLength()});
    }
  }
  void readSelf(std::optional<double>& target) const {
    if (json_->IsNumber()) target = json_->GetDouble();
  }
  void readSelf(std::optional<bool>& target) const {
    if (json_->IsBool()) target = json_->GetBool();
  }
  RapidjsonObject child(const char* key) const { return RapidjsonObject(find(key)); }
  template <typename Action>
  void forEach(const char* key, const Action& action) const {
    const auto* elements = find(key);
    if (elements == nullptr) return;
    for (const auto& element : elements->GetArray()) action(RapidjsonObject(&element));
  }

 private:
  const rapidjson::Value* find(const char* key) const {
    if (json_ == nullptr || !json_->IsObject()) return nullptr;
    const auto member = json_->FindMember(key);
    return member == json_->MemberEnd() ? nullptr : &member->value;
  }

  const rapidjson::Value* json_;
};

template <std::size_t... Index>
Control controlFrom(const RapidjsonObject& object, Kind kind, std::index_sequence<Index...>) {
  Control control;
  ((static_cast<std::size_t>(kind) == Index ? void(readControl(object, control.emplace<Index>()))
                                            : void()),
   ...);
  return control;
}

void collect(const rapidjson::Value& json, std::vector<Control>& controls) {
  if (json.IsObject()) {
    const RapidjsonObject object(&json);
    const auto kind = kindOf(object.textOf("className"),
                             [&object] { return object.child("context").textOf("type"); });
    if (kind) {
      controls.push_back(controlFrom(object, *kind, std::make_index_sequence<kKindCount>()));
      return;
    }
    for (const auto& member : json.GetObject()) collect(member.value, controls);
  } else if (json.IsArray()) {
    for (const auto& element : json.GetArray()) collect(element, controls);
  }
}

}  // namespace

Value rapidjsonToValue(const std::string& text) {
  Value root;
  ValueHandler handler(root);
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::Reader reader;
  if (!reader.Parse<kFlags>(stream, handler)) throw std::runtime_error("RapidJSON refuses it");
  return root;
}

std::size_t rapidjsonToStructs(const std::string& text) {
  rapidjson::Document document;
  document.Parse<kFlags>(text.data(), text.size());
  if (document.HasParseError()) throw std::runtime_error("RapidJSON refuses it");
  std::vector<Control> controls;
  collect(document, controls);
  return controls.size();
}

}  // namespace benchmarks
