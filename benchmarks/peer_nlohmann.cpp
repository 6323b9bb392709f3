#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "fl/i18n.hpp"
#include "peers.hpp"
#include "plain_controls.hpp"
#include "plain_dispatch.hpp"

namespace benchmarks {

namespace {

using Json = nlohmann::json;
using Control = PlainControl<std::u16string>;

class NlohmannObject {
 public:
  explicit NlohmannObject(const Json* json) : json_(json) {}

  bool hasClass(std::string_view name) const {
    const Json* member = find("className");
    return member != nullptr && member->is_string() &&
           member->get_ref<const std::string&>() == name;
  }
  template <typename T>
  void read(const char* key, std::optional<T>& target) const {
    if (const Json* member = find(key)) NlohmannObject(member).readSelf(target);
  }
  void readSelf(std::optional<std::u16string>& target) const {
    if (json_->is_string()) {
      target = fl::i18n::utf8_to_ustring(json_->get_ref<const std::string&>());
    }
  }
  void readSelf(std::optional<double>& target) const {
    if (json_->is_number()) target = json_->get<double>();
  }
  void readSelf(std::optional<bool>& target) const {
    if (json_->is_boolean()) target = json_->get<bool>();
  }
  NlohmannObject child(const char* key) const { return NlohmannObject(find(key)); }
  template <typename Action>
  void forEach(const char* key, const Action& action) const {
    const Json* elements = find(key);
    if (elements == nullptr) return;
    for (const Json& element : *elements) action(NlohmannObject(&element));
  }

 private:
  const Json* find(const char* key) const {
    if (json_ == nullptr || !json_->is_object()) return nullptr;
    const auto member = json_->find(key);
    return member == json_->end() ? nullptr : &*member;
  }

  const Json* json_;
};

}  // namespace

/// Found by the library through the structs' namespace.
template <template <typename> typename Struct>
void from_json(const Json& json, Struct<std::u16string>& control) {
  readControl(NlohmannObject(&json), control);
}

namespace {

std::string_view textOf(const Json& object, const char* key) {
  const auto member = object.find(key);
  if (member == object.end() || !member->is_string()) return {};
  return member->get_ref<const std::string&>();
}

template <std::size_t... Index>
Control controlFrom(const Json& json, Kind kind, std::index_sequence<Index...>) {
  Control control;
  ((static_cast<std::size_t>(kind) == Index ? void(json.get_to(control.emplace<Index>())) : void()),
   ...);
  return control;
}

void collect(const Json& json, std::vector<Control>& controls) {
  if (json.is_object()) {
    const auto kind = kindOf(textOf(json, "className"), [&json] {
      const auto context = json.find("context");
      return context == json.end() ? std::string_view() : textOf(*context, "type");
    });
    if (kind) {
      controls.push_back(controlFrom(json, *kind, std::make_index_sequence<kKindCount>()));
      return;
    }
  }
  if (json.is_structured()) {
    for (const Json& child : json) collect(child, controls);
  }
}

}  // namespace

std::size_t nlohmannParse(const std::string& text) {
  return Json::parse(text).size();
}

std::size_t nlohmannToStructs(const std::string& text) {
  std::vector<Control> controls;
  collect(Json::parse(text), controls);
  return controls.size();
}

}  // namespace benchmarks
