#include "corpus.hpp"

#include <stdexcept>
#include <string_view>
#include <utility>

#include "gx/zero.hpp"
#include "plain_dispatch.hpp"
#include "reference_host/json/parse.hpp"
#include "support/all_builders.hpp"

namespace benchmarks {

namespace {

using foundation::json::Value;

/// Reads from the host's own value.
class ValueObject {
 public:
  explicit ValueObject(const Value* value) : value_(value) {}

  bool hasClass(std::string_view name) const { return textOf("className") == name; }
  std::string_view textOf(const char* key) const {
    const auto* text = value_ == nullptr ? nullptr : (*value_)[key].get_if<std::string>();
    return text == nullptr ? std::string_view() : *text;
  }
  template <typename Control>
  void readInto(Control& control) const {
    readControl(*this, control);
  }
  template <typename T>
  void read(const char* key, std::optional<T>& target) const {
    if (value_ != nullptr) ValueObject(&(*value_)[key]).readSelf(target);
  }
  template <typename T>
  void readSelf(std::optional<T>& target) const {
    if (const T* held = value_->get_if<T>()) target = *held;
  }
  ValueObject child(const char* key) const {
    return ValueObject(value_ == nullptr ? nullptr : &(*value_)[key]);
  }
  template <typename Action>
  void forEach(const char* key, const Action& action) const {
    const auto* elements = (*value_)[key].get_if<Value::Array>();
    if (elements == nullptr) return;
    for (const Value& element : *elements) action(ValueObject(&element));
  }

 private:
  const Value* value_;
};

std::optional<PlainControl<std::string>> plainControl(const std::string& builder,
                                                      const Value& json) {
  if (!hasBaseline(contract::kindOf(builder))) return std::nullopt;
  const ValueObject object(&json);
  const auto kind = plainKindOf(object);
  if (!kind) throw std::invalid_argument("the words of the object are those of no plain struct");
  return readAs<std::string>(*kind, object);
}

std::size_t builtOrThrow(const reference_host::importer::ImportResult& result) {
  if (result.summary.failed != 0) {
    const auto& error = result.errors.front();
    throw std::runtime_error(error.pointer + ": " + error.builder + ": " + error.message);
  }
  return result.summary.built;
}

/// Walks and asks as the import does.
/// @param onClaimed called with the builder and the object that it claims.
/// @param onStranger called with an object that nobody claims, before the walk goes into it.
template <typename OnClaimed, typename OnStranger>
void walk(const Value& value, const OnClaimed& onClaimed, const OnStranger& onStranger) {
  if (const auto* elements = value.get_if<Value::Array>()) {
    for (const Value& element : *elements) walk(element, onClaimed, onStranger);
  }
  const auto* members = value.get_if<Value::Object>();
  if (members == nullptr) return;
  for (const NamedBuilder& builder : test_support::allBuilders()) {
    if (builder.canBuild(value)) return onClaimed(builder, value);
  }
  onStranger(value);
  for (const auto& member : *members) walk(member.second, onClaimed, onStranger);
}

}  // namespace

std::size_t importText(const std::string& text) {
  return importValue(reference_host::json::parse(text));
}

std::size_t importValue(const Value& document) {
  const gx::zero::Model model = gx::zero::Model::create();
  return builtOrThrow(
      reference_host::importer::importDocument(test_support::allBuilders(), model, document));
}

std::size_t recognizeAll(const Value& value) {
  std::size_t claimed = 0;
  walk(
      value, [&claimed](const NamedBuilder&, const Value&) { ++claimed; }, [](const Value&) {});
  return claimed;
}

Corpus::Corpus(std::string text)
    : text_(std::move(text)), value_(reference_host::json::parse(text_)) {
  walk(
      value_,
      [this](const NamedBuilder& builder, const Value& object) {
        claimed_.push_back({&builder, &object, plainControl(builder.name(), object)});
      },
      [this](const Value& object) {
        if (&object != &value_) strangers_.push_back(&object);
      });
}

std::vector<std::shared_ptr<const Corpus>> controlsOf(const contract::Kind& kind,
                                                      std::size_t count) {
  DocumentGenerator generator;
  std::vector<std::shared_ptr<const Corpus>> controls;
  for (std::size_t control = 0; control < count; ++control) {
    controls.push_back(std::make_shared<const Corpus>(generator.control(kind)));
  }
  return controls;
}

bool hasBaseline(const contract::Kind& kind) {
  const PlainKinds& plain = PlainKinds::all();
  return plain.byClassName.count(kind.word) + plain.byTypeWord.count(kind.word) != 0;
}

}  // namespace benchmarks
