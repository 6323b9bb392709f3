#include <rapidjson/document.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "peers.hpp"
#include "plain_controls.hpp"
#include "plain_dispatch.hpp"
#include "reference_host/fl/utf16.hpp"

namespace benchmarks {

namespace {

using foundation::json::Value;
using Control = PlainControl<std::u16string>;

constexpr unsigned kFlags =
    rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag;

/// Puts what the reader reports straight into its place, as the host's own parser does. Every
/// number becomes a double.
class ValueHandler {
 public:
  explicit ValueHandler(Value& root) : slot_(&root) {}

  bool Null() { return put<foundation::json::Null>(); }
  bool Bool(bool boolean) { return put<bool>(boolean); }
  bool Int(int number) { return Double(number); }
  bool Uint(unsigned number) { return Double(number); }
  bool Int64(std::int64_t number) { return Double(static_cast<double>(number)); }
  bool Uint64(std::uint64_t number) { return Double(static_cast<double>(number)); }
  bool Double(double number) { return put<double>(number); }
  bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return put<std::string>(text, length);
  }
  bool StartObject() {
    containers_.push_back({nullptr, &place().emplace<Value::Object>()});
    return true;
  }
  bool Key(const char* text, rapidjson::SizeType length, bool) {
    // One look-up, whatever the order of the names; of two members with one name the last holds.
    auto& members = *containers_.back().members;
    const auto member = members.emplace_hint(members.end(), std::piecewise_construct,
                                             std::forward_as_tuple(text, length), std::tuple<>());
    slot_ = &member->second;
    return true;
  }
  bool EndObject(rapidjson::SizeType) { return close(); }
  bool StartArray() {
    containers_.push_back({&place().emplace<Value::Array>(), nullptr});
    return true;
  }
  bool EndArray(rapidjson::SizeType) { return close(); }

 private:
  /// One of the two.
  struct Container {
    Value::Array* elements;
    Value::Object* members;
  };

  Value& place() {
    if (containers_.empty() || containers_.back().elements == nullptr) return *slot_;
    Value::Array& elements = *containers_.back().elements;
    if (elements.empty()) elements.reserve(2);
    return elements.emplace_back();
  }
  template <typename T, typename... Arguments>
  bool put(Arguments... arguments) {
    place().emplace<T>(arguments...);
    return true;
  }
  bool close() {
    containers_.pop_back();
    return true;
  }

  Value* slot_;  // of the last key, or the root
  std::vector<Container> containers_;
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
      target = reference_host::i18n::utf8ToUstring({json_->GetString(), json_->GetStringLength()});
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
  template <typename Control>
  void readInto(Control& control) const {
    readControl(*this, control);
  }
  template <typename Action>
  void forEachChild(const Action& action) const {
    if (json_->IsObject()) {
      for (const auto& member : json_->GetObject()) action(RapidjsonObject(&member.value));
    } else if (json_->IsArray()) {
      for (const auto& element : json_->GetArray()) action(RapidjsonObject(&element));
    }
  }

 private:
  const rapidjson::Value* find(const char* key) const {
    if (json_ == nullptr || !json_->IsObject()) return nullptr;
    const auto member = json_->FindMember(key);
    return member == json_->MemberEnd() ? nullptr : &member->value;
  }

  const rapidjson::Value* json_;
};

}  // namespace

Value rapidjsonToValue(const std::string& text) {
  Value root;
  ValueHandler handler(root);
  // Quicker than its stream of a text that ends with a null, unlike the document below.
  rapidjson::MemoryStream stream(text.data(), text.size());
  rapidjson::Reader reader;
  if (!reader.Parse<kFlags>(stream, handler)) throw std::runtime_error("RapidJSON refuses it");
  return root;
}

std::size_t rapidjsonToStructs(const std::string& text) {
  rapidjson::Document document;
  document.Parse<kFlags>(text.c_str());
  if (document.HasParseError()) throw std::runtime_error("RapidJSON refuses it");
  std::vector<Control> controls;
  collectControls(RapidjsonObject(&document), controls);
  return controls.size();
}

}  // namespace benchmarks
