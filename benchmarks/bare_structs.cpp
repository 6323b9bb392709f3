#include "bare_structs.hpp"

#include "fl/i18n.hpp"

namespace benchmarks {

namespace {

void assign(std::u16string& target, const std::optional<std::string>& utf8) {
  if (utf8) target = fl::i18n::utf8_to_ustring(*utf8);
}

}  // namespace

boost::intrusive_ptr<BareButton> createBareButton(const Button<std::string>& button) {
  boost::intrusive_ptr<BareButton> node(new BareButton);
  node->position.reset(new BarePosition);
  if (button.startColumn) {
    node->position->startColumn = static_cast<std::uint64_t>(*button.startColumn);
  }
  if (button.endColumn) node->position->endColumn = static_cast<std::uint64_t>(*button.endColumn);
  assign(node->id, button.id);
  node->data.reset(new BareButtonData);
  assign(node->data->executionModel, button.executionModel);
  assign(node->data->label, button.label);
  assign(node->data->code, button.code);
  return node;
}

}  // namespace benchmarks
