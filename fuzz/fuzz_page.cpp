/// @file
/// Any bytes, as the text of a document that is shown as a page.
///
/// Holds the page to this: it is made whatever the document is; its elements and attributes are
/// well nested and of the kinds that it has; it holds no character that HTML refuses; it is no
/// larger than promised; it is the same when it leaves in pieces.

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check.hpp"
#include "input.hpp"
#include "page/document_section.hpp"
#include "page/page_head.hpp"
#include "support/all_builders.hpp"
#include "words.hpp"

namespace {

using fuzz::require;
using namespace std::string_view_literals;

bool isOneOf(std::string_view name, const std::vector<std::string_view>& names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Reads a page by rules of its own: those that the writer is to keep to, and no others.
class PageReader {
 public:
  explicit PageReader(std::string_view page) : left_(page) {}

  void read() {
    require(take("<!DOCTYPE html>\n"), "a page begins with its type");
    while (!left_.empty()) {
      if (left_.front() == '<') {
        readTag();
      } else {
        readCharacter('<');
      }
    }
    require(open_.empty(), "every element is ended");
  }

 private:
  bool take(std::string_view text) {
    if (left_.substr(0, text.size()) != text) return false;
    left_.remove_prefix(text.size());
    return true;
  }

  std::string_view takeName() {
    const std::size_t length =
        std::min(left_.size(), left_.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"));
    require(length != 0, "a name has letters");
    const std::string_view name = left_.substr(0, length);
    left_.remove_prefix(length);
    return name;
  }

  void readTag() {
    if (take("</")) {
      const std::string_view name = takeName();
      require(take(">"), "an end tag has no more than a name");
      static const std::vector<std::string_view> mayStayOpen{"td", "th",     "tr", "tbody", "thead",
                                                             "li", "option", "dt", "dd"};
      while (!open_.empty() && open_.back() != name && isOneOf(open_.back(), mayStayOpen)) {
        open_.pop_back();
      }
      require(!open_.empty() && open_.back() == name, "an end tag ends what was begun last");
      open_.pop_back();
      return;
    }
    require(take("<"), "a tag");
    const std::string_view name = takeName();
    static const std::vector<std::string_view> elements{
        "html",    "head",   "meta", "title",   "style",   "body",  "header", "main",
        "section", "nav",    "h1",   "h2",      "p",       "div",   "span",   "bdi",
        "b",       "strong", "a",    "ul",      "ol",      "li",    "dl",     "dt",
        "dd",      "code",   "pre",  "details", "summary", "table", "thead",  "tbody",
        "tr",      "th",     "td",   "button",  "input",   "label", "select", "option"};
    require(isOneOf(name, elements), "an element is one of a page's");
    while (take(" ")) readAttribute();
    require(take(">"), "a start tag ends");
    if (name == "meta" || name == "input") return;
    if (name == "style") {
      left_.remove_prefix(left_.find("</style>"));
      require(take("</style>"), "the style ends");
      return;
    }
    open_.push_back(name);
  }

  void readAttribute() {
    const std::string_view name = takeName();
    require(name.substr(0, 2) != "on" && name != "src" && name != "style", "no attribute acts");
    if (!take("=\"")) return;
    if (name == "href") require(left_.front() == '#', "a link stays on the page");
    while (!take("\"")) readCharacter('"');
  }

  /// A character of a text or of a value.
  void readCharacter(char end) {
    require(!left_.empty() && left_.front() != end && left_.front() != '<', "no stray markup");
    if (left_.front() == '&') {
      require(take("&amp;") || take("&lt;") || take("&quot;"), "a reference is whole");
      return;
    }
    const auto byte = static_cast<unsigned char>(left_.front());
    require(byte == '\n' || (byte >= 0x20 && byte != 0x7F), "no control character");
    for (const std::string_view refused :
         {"\xC2\x80"sv, "\xC2\x9F"sv, "\xE2\x80\xAE"sv, "\xE2\x81\xA6"sv, "\xEF\xBF\xBE"sv,
          "\xEF\xBF\xBF"sv, "\xEF\xB7\x90"sv, "\xF0\x9F\xBF\xBE"sv, "\xF4\x8F\xBF\xBF"sv}) {
      require(left_.substr(0, refused.size()) != refused, "no character that acts or is none");
    }
    left_.remove_prefix(1);
  }

  std::string_view left_;
  std::vector<std::string_view> open_;
};

const reference_host::diagnosis::Knowledge& knowledge() {
  static const reference_host::diagnosis::Knowledge known(test_support::allBuilders(),
                                                          tessel_tool::knownWords());
  return known;
}

std::string pageOf(const std::string& text, bool inPieces) {
  tessel_tool::Document document;
  document.path = document.name = text.substr(0, 8);
  document.text = text;
  const auto read = readDocument(knowledge(), std::move(document),
                                 reference_host::importer::OnError::kContinue, inPieces);
  tessel_tool::PageContents contents;
  contents.read = 1;
  contents.total = summaryOf(read, 1);
  tessel_tool::HtmlText section;
  tessel_tool::HtmlText sections;
  appendSection(section, read, contents.total, {true, 30'000}, [&] {
    if (inPieces) sections += std::exchange(section, {}).view();
  });
  sections += section.view();
  contents.documents.push_back(contents.total);
  contents.hasSection.push_back(true);
  const std::size_t most = tessel_tool::kPageBytes + tessel_tool::kPageBytesPerByte * text.size();
  tessel_tool::HtmlText page;
  tessel_tool::appendPageHead(page, contents, most - sections.size() - 100);
  page += sections.view();
  tessel_tool::appendPageEnd(page);
  require(page.size() <= most, "a page is no larger than promised");
  PageReader(page.view()).read();
  return std::string(page.view());
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::asText(data, size));
  const std::string page = pageOf(text, false);
  require(pageOf(text, false) == page, "the same document gives the same page");
  pageOf(text, true);  // with records, and in pieces
  return 0;
}
