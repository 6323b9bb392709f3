#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
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

  bool hasClass(std::string_view name) const { return textOf("className") == name; }
  std::string_view textOf(const char* key) const {
    const Json* member = find(key);
    if (member == nullptr || !member->is_string()) return {};
    return member->get_ref<const std::string&>();
  }
  /// By the library's own way to a struct, its `from_json`.
  template <typename Control>
  void readInto(Control& control) const {
    json_->get_to(control);
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
  template <typename Action>
  void forEachChild(const Action& action) const {
    if (!json_->is_structured()) return;
    for (const Json& child : *json_) action(NlohmannObject(&child));
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

std::size_t nlohmannParse(const std::string& text) {
  return Json::parse(text).size();
}

std::size_t nlohmannToStructs(const std::string& text) {
  const Json json = Json::parse(text);
  std::vector<Control> controls;
  collectControls(NlohmannObject(&json), controls);
  return controls.size();
}

}  // namespace benchmarks
