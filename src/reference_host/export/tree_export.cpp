#include <algorithm>
#include <vector>

#include "export/element_walk.hpp"
#include "reference_host/export/export.hpp"
#include "reference_host/fl/utf16.hpp"

namespace reference_host::exporting {

namespace {

std::string_view unquoted(std::string_view text) {
  return text.substr(1, text.size() - 2);
}

std::string_view withoutNamespace(std::string_view qualifiedName) {
  const std::size_t separator = qualifiedName.rfind("::");
  return separator == std::string_view::npos ? qualifiedName : qualifiedName.substr(separator + 2);
}

/// Every call but `property` leaves a finished line behind, except that an element's own line is
/// finished by what comes after it: a property, or its end.
class TreeVisitor final : public ElementVisitor {
 public:
  TreeVisitor(std::string& out, std::size_t level) : out_(out), level_(level) { indent(); }

  void beginElement(std::string_view qualifiedClassName) override {
    if (!indexes_.empty() && indexes_.back().level == level_) {
      indent();
      out_ += '[';
      json::appendNumber(out_, std::uint64_t{indexes_.back().next++});
      out_ += "] ";
    }
    out_ += withoutNamespace(unquoted(qualifiedClassName));
    lineOpen_ = true;
    ++level_;
  }
  void endElement() override {
    if (lineOpen_) {
      out_ += " (nothing set)\n";
      lineOpen_ = false;
    }
    --level_;
  }
  void property(std::string_view name) override {
    if (lineOpen_) out_ += '\n';
    lineOpen_ = false;
    indent();
    out_ += unquoted(name);
    out_ += ": ";
  }
  void beginSequence() override {
    out_.back() = '\n';
    indexes_.push_back({++level_, 0});
  }
  void endSequence() override {
    indexes_.pop_back();
    --level_;
  }
  void text(std::u16string_view text) override {
    json::appendVisible(out_, i18n::ustringToUtf8(text), json::Quotes::kAround);
    out_ += '\n';
  }
  void number(double number) override { scalar(number); }
  void boolean(bool boolean) override { out_ += boolean ? "true\n" : "false\n"; }
  void integer(std::uint64_t integer) override { scalar(integer); }

 private:
  struct SequenceIndex {
    std::size_t level;  // of the sequence's elements
    std::size_t next;
  };

  template <typename Number>
  void scalar(Number number) {
    json::appendNumber(out_, number);
    out_ += '\n';
  }

  void indent() { out_.append(2 * std::min(level_, kDeepestIndent), ' '); }

  std::string& out_;
  std::size_t level_;
  bool lineOpen_ = false;
  std::vector<SequenceIndex> indexes_;  // of the sequences that are open
};

}  // namespace

void Exporter::appendTree(std::string& out, const gx::zero::ModelElement& element,
                          std::size_t level, const PartEnds& partEnds) {
  TreeVisitor visitor(out, level);
  walkElement(classes_, element, visitor, partEnds);
}

}  // namespace reference_host::exporting
