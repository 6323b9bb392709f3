#pragma once

/// @file
/// Writing HTML. Nothing else of the tool knows what markup looks like.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "page/html_text.hpp"

namespace tessel_tool {

/// Appends HTML to a text, call by call.
///
///     HtmlWriter html(out);
///     html.begin("p").attribute("class", "note").text("1 < 2").end("p");
///
/// Texts may hold anything: what HTML reads as markup is written as a character reference, and what
/// a page cannot hold or show - control characters, line ends, noncharacters, overrides of the
/// direction, bytes that are no UTF-8 - with the escapes of the text form
/// (`reference_host::json::appendVisible`). Lone surrogates are U+FFFD. Names of elements and
/// attributes are the caller's own. An element without an end tag, or whose end tag may be left
/// out, is not ended.
class HtmlWriter {
 public:
  explicit HtmlWriter(HtmlText& out) noexcept : out_(out) {}

  HtmlWriter& doctype();
  HtmlWriter& begin(std::string_view element) {
    closeTag();
    out_ += '<';
    out_ += element;
    tagIsOpen_ = true;
    return *this;
  }
  HtmlWriter& end(std::string_view element) {
    closeTag();
    out_ += "</";
    out_ += element;
    out_ += '>';
    return *this;
  }

  /// Of the element that was begun last, before anything is in it.
  HtmlWriter& attribute(std::string_view name) {
    out_ += ' ';
    out_ += name;
    return *this;
  }
  HtmlWriter& attribute(std::string_view name, std::string_view utf8) {
    beginAttribute(name);
    append(utf8, Inside::kAttribute);
    out_ += '"';
    return *this;
  }
  HtmlWriter& attribute(std::string_view name, std::u16string_view utf16) {
    beginAttribute(name);
    append(utf16, Inside::kAttribute);
    out_ += '"';
    return *this;
  }
  HtmlWriter& attribute(std::string_view name, const char* utf8) {
    return attribute(name, std::string_view(utf8));
  }
  HtmlWriter& attribute(std::string_view name, double number);

  HtmlWriter& text(std::string_view utf8) {
    closeTag();
    append(utf8, Inside::kText);
    return *this;
  }
  HtmlWriter& text(std::u16string_view utf16) {
    closeTag();
    append(utf16, Inside::kText);
    return *this;
  }
  HtmlWriter& text(const char* utf8) { return text(std::string_view(utf8)); }
  HtmlWriter& number(double number);
  HtmlWriter& number(std::uint64_t integer);
  /// A text in quotes that tells all texts apart, as the tree form writes it.
  HtmlWriter& quoted(std::u16string_view utf16);
  /// A text the line feeds of which end its lines.
  HtmlWriter& lines(std::string_view utf8);
  HtmlWriter& lineEnd();

  /// What another writer wrote, with every tag in it closed.
  HtmlWriter& written(std::string_view html);

  /// A whole style sheet of the tool's own.
  HtmlWriter& style(std::string_view css);

 private:
  enum class Inside { kText, kAttribute };

  void closeTag() {
    if (tagIsOpen_) out_ += '>';
    tagIsOpen_ = false;
  }
  void beginAttribute(std::string_view name) {
    attribute(name);
    out_ += "=\"";
  }
  void append(std::string_view utf8, Inside inside);
  void append(std::u16string_view utf16, Inside inside);
  void appendShown(std::string_view utf8, Inside inside);

  HtmlText& out_;
  bool tagIsOpen_ = false;
};

/// Whether HTML can hold the text as it is: the writer escapes nothing of it.
bool isShownAsIs(std::u16string_view text);

}  // namespace tessel_tool
