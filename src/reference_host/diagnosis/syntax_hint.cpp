#include "reference_host/diagnosis/syntax_hint.hpp"

#include <algorithm>
#include <vector>

#include "json/utf8.hpp"
#include "reference_host/diagnosis/nearest_word.hpp"
#include "reference_host/diagnosis/wording.hpp"
#include "reference_host/json/text_places.hpp"

namespace reference_host::diagnosis {

using json::TextPlace;

namespace {

/// Where the reason alone tells what to do.
constexpr struct {
  std::string_view reason;
  const char* hint;
} kPlainHints[] = {
    {"no value in the text", "the text is empty: a document is one JSON value, such as {...}"},
    {"invalid UTF-8", "save the file as UTF-8"},
    {"unclosed string", "it has no closing quote"},
    {"unknown escape in a string", R"(write \\ for a backslash)"},
    {"unicode escape without four hexadecimal digits", R"(write \\ for a backslash)"},
    {"number with a plus sign", "take out the plus sign"},
    {"number with a leading zero", "take out the zero, or put a text in double quotes"},
    {"number without digits before its decimal point", "write 0 before the point"},
    {"number without digits after its decimal point", "write 0 behind the point"},
};

constexpr const char* kMissingQuote =
    R"(the text before it has ended: write \" for a quote in a text, or a closing quote is missing)";

/// A longer word is not said again.
constexpr std::size_t kLongestWord = 40;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isWordCharacter(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$';
}

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

bool isTypographicQuote(std::string_view rest) {
  const std::int32_t code = json::firstUtf8Step(rest).codePoint;
  return (code >= 0x2018 && code <= 0x201F) || code == 0xAB || code == 0xBB;
}

class SyntaxHint {
 public:
  SyntaxHint(std::string_view text, const json::ParseError& error, std::size_t firstLine)
      : text_(text), reason_(error.reason()), firstLine_(firstLine) {
    goTo({error.line() - firstLine + 1, error.column()});
    here_ = characterAt(offset_);
    before_ = characterAt(text.substr(0, offset_).find_last_not_of(" \t\r\n"));
  }

  std::optional<std::string> find() const {
    for (const auto& row : kPlainHints) {
      if (reason_ == row.reason) return row.hint;
    }
    if (reason_ == "unclosed object") return hintForUnclosed("add the }", "an object");
    if (reason_ == "unclosed array") return hintForUnclosed("add the ]", "an array");
    if (reason_ == "unescaped control character in a string") return hintForControlCharacter();
    if (is("unknown literal")) return hintForWord();
    if (here_ == '/' || here_ == '#') return "JSON has no comments: take it out";
    if (here_ == '\'' || here_ == '`') return "put names and texts in double quotes";
    if (isTypographicQuote(text_.substr(offset_))) {
      return R"(put names and texts in straight double quotes: "...")";
    }
    if (is("content after the end")) return hintForMore();
    if (open_.empty()) return std::nullopt;
    if (here_ == '}' || here_ == ']' || here_ == ',') return hintForSeparator();
    if (is("expected a member name")) return hintForName();
    if (is("expected a colon")) return hintForColon();
    if (is("expected a comma")) return hintForNext();
    return std::nullopt;
  }

 private:
  /// A container or a text that is open where the text is refused.
  struct Opening {
    char character;
    TextPlace place;
  };

  /// Goes to a place, up to which there is no fault, and takes down what is open there.
  void goTo(const TextPlace& target) {
    TextPlace place;
    bool escaped = false;
    for (; offset_ != text_.size(); ++offset_) {
      const char character = text_[offset_];
      if (isContinuation(character)) continue;
      if (place == target) return;
      const bool inText = !open_.empty() && open_.back().character == '"';
      if (escaped) {
        escaped = false;
      } else if (inText && character == '\\') {
        escaped = true;
      } else if (inText ? character == '"' : character == ']' || character == '}') {
        open_.pop_back();
      } else if (!inText && (character == '"' || character == '[' || character == '{')) {
        open_.push_back({character, place});
      }
      ++place.column;
      if (character == '\n') place = {place.line + 1, 1};
    }
  }

  bool is(std::string_view beginning) const {
    return reason_.substr(0, beginning.size()) == beginning;
  }

  /// NUL outside of the text.
  char characterAt(std::size_t offset) const {
    return offset < text_.size() ? text_[offset] : '\0';
  }

  std::string wordHere() const {
    const auto rest = text_.substr(offset_);
    const auto end = std::find_if_not(rest.begin(), rest.end(), isWordCharacter);
    return std::string(rest.begin(), end);
  }

  std::string placeOfInnermost() const {
    const TextPlace& place = open_.back().place;
    return "begins at line " + std::to_string(firstLine_ + place.line - 1) + ", column " +
           std::to_string(place.column);
  }

  std::string hintForInnermost() const {
    return open_.back().character == '['
               ? "the array that " + placeOfInnermost() + " has no ] yet"
               : "the object that " + placeOfInnermost() + " has no } yet";
  }

  std::string hintForUnclosed(const std::string& add, const std::string& another) const {
    const std::string hint = add + " that is missing at its end";
    const bool hasMore = text_.find(here_, offset_ + 1) != std::string_view::npos;
    return hasMore ? hint + ", or at the end of " + another + " in it" : hint;
  }

  std::optional<std::string> hintForControlCharacter() const {
    if (here_ == '\t') return R"(write \t for a tab)";
    if ((here_ != '\n' && here_ != '\r') || open_.empty()) return std::nullopt;
    return "the text that " + placeOfInnermost() + " has no closing quote";
  }

  std::string hintForWord() const {
    const std::string word = wordHere();
    const std::string small = lowered(word);
    if (small == "true" || small == "false" || small == "null") return "write " + small;
    if (small == "none" || small == "nil" || small == "undefined") {
      return "write null, or leave the member out";
    }
    if (small == "nan" || small == "infinity") return "JSON has no such number";
    return inQuotes("put a text in double quotes", word);
  }

  static std::string inQuotes(const std::string& hint, const std::string& word) {
    return word.size() > kLongestWord ? hint : hint + ": " + quoted(word);
  }

  std::optional<std::string> hintForMore() const {
    if (here_ == '}' || here_ == ']') {
      return std::string("there is one ") + here_ + " too many, here or before it";
    }
    if (here_ == ':') return "put members in braces: {...}";
    const bool isLast = text_.find_first_not_of(" \t\r\n", offset_ + 1) == std::string_view::npos;
    if (here_ == ',' && isLast) return "take out the comma";
    return "put several values in brackets, with commas between them: [..., ...]";
  }

  /// For a comma or the end of a container.
  std::optional<std::string> hintForSeparator() const {
    const bool closes = here_ != ',';
    if (closes && (here_ == ']') != (open_.back().character == '[')) return hintForInnermost();
    if (is("expected a colon")) return "write a colon and a value behind the name";
    if (before_ == ':') return "write a value before it";
    if (before_ == ',') return closes ? "take out the comma before it" : "take out one comma";
    return "take it out";
  }

  std::optional<std::string> hintForName() const {
    if (here_ == '{' || here_ == '[') return hintForInnermost();
    if (isDigit(here_) && offset_ >= 2 && text_[offset_ - 1] == ',' &&
        isDigit(text_[offset_ - 2])) {
      return "write a decimal point, not a comma";
    }
    if (!isWordCharacter(here_)) return std::nullopt;
    return inQuotes("put the name in double quotes", wordHere());
  }

  std::optional<std::string> hintForColon() const {
    if (here_ == '=') return "write : instead";
    return isWordCharacter(here_) && text_[offset_ - 1] == '"' ? kMissingQuote
                                                               : "put a colon before it";
  }

  std::optional<std::string> hintForNext() const {
    const bool inArray = open_.back().character == '[';
    if (here_ == ':') {
      if (!inArray) return std::nullopt;
      return hintForInnermost() + ", or it has to be an object: {...}";
    }
    if (here_ == ';') return "write a comma instead";
    const char last = text_[offset_ - 1];
    if (isWordCharacter(here_) && last == '"') return kMissingQuote;
    if (isWordCharacter(last)) return "put a text in double quotes";
    return "put a comma before it";
  }

  std::string_view text_;
  std::string_view reason_;
  std::size_t firstLine_;
  std::size_t offset_ = 0;
  std::vector<Opening> open_;
  char here_ = '\0';    // where the text is refused
  char before_ = '\0';  // before that, and before space
};

}  // namespace

std::optional<std::string> hintForSyntax(std::string_view text, const json::ParseError& error,
                                         std::size_t firstLine) {
  return SyntaxHint(text, error, firstLine).find();
}

}  // namespace reference_host::diagnosis
