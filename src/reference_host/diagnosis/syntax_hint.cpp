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
    {"number without digits before its decimal point", "write 0 before the point"},
    {"number without digits after its decimal point", "write 0 behind the point"},
};

constexpr const char* kMissingQuote =
    R"(the text before it has ended: write \" for a quote in a text, or a closing quote is missing)";

constexpr const char* kSeveralValues =
    "put several values in brackets, with commas between them: [..., ...]";

constexpr const char* kMissingBracket = "a [ is missing before the first of the values";

/// What people write for a comment, and its end where that is not the line's.
constexpr struct {
  std::string_view begin;
  std::string_view end;
} kComments[] = {{"/*", "*/"}, {"<!--", "-->"}, {"/", {}}, {"#", {}}, {"-- ", {}}};

constexpr const char* kSpace = " \t\r\n";

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
      : text_(text), reason_(error.reason()), firstLine_(firstLine), line_(error.line()) {
    goTo({error.line() - firstLine + 1, error.column()});
    here_ = characterAt(offset_);
    before_ = lastBefore(offset_);
    for (const Opening& opening : open_) brackets_ += opening.character;
  }

  std::optional<std::string> find() const {
    for (const auto& row : kPlainHints) {
      if (reason_ == row.reason) return row.hint;
    }
    if (reason_ == "unclosed object") return hintForUnclosed("add the }", "an object");
    if (reason_ == "unclosed array") return hintForUnclosed("add the ]", "an array");
    if (reason_ == "unescaped control character in a string") return hintForControlCharacter();
    if (is("unknown literal")) return hintForWord();
    if (is("number with a leading zero")) return hintForZeros();
    if (auto hint = hintForComment()) return hint;
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
    std::size_t offset;
  };

  /// Goes to a place, up to which there is no fault, and takes down what is open there, and what
  /// was closed last.
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
        closed_ = open_.back();
        open_.pop_back();
      } else if (!inText && (character == '"' || character == '[' || character == '{')) {
        open_.push_back({character, place, offset_});
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

  /// The last character before an offset that is no space.
  char lastBefore(std::size_t offset) const {
    return characterAt(text_.substr(0, offset).find_last_not_of(kSpace));
  }

  /// Whether the text from an offset on closes all brackets that are open, and no other ones. What
  /// holds for one repair holds for no other one that opens or closes more or fewer.
  bool closes(std::string open, std::size_t offset) const {
    bool inText = false;
    for (; offset < text_.size(); ++offset) {
      const char character = text_[offset];
      if (inText) {
        if (character == '\n') return false;
        if (character == '\\') ++offset;
        inText = character != '"';
      } else if (character == '"') {
        inText = true;
      } else if (character == '[' || character == '{') {
        open += character;
      } else if (character == ']' || character == '}') {
        if (open.empty() || (open.back() == '[') != (character == ']')) return false;
        open.pop_back();
      }
    }
    return open.empty() && !inText;
  }

  std::string wordHere() const {
    const auto rest = text_.substr(offset_);
    const auto end = std::find_if_not(rest.begin(), rest.end(), isWordCharacter);
    return std::string(rest.begin(), end);
  }

  std::string placeOf(const Opening& opening) const {
    return "at " + lineAndColumn(opening.place, firstLine_);
  }

  std::string hintForInnermost() const {
    const bool isArray = open_.back().character == '[';
    const std::string end = isArray ? " has no ] yet" : " has no } yet";
    std::string hint = (isArray ? "the array that begins " : "the object that begins ") +
                       placeOf(open_.back()) + end;
    const bool hasMore = text_.find(open_.back().character, open_.back().offset + 1) < offset_;
    if (hasMore) hint += isArray ? ", or an array in it has none" : ", or an object in it has none";
    return hint;
  }

  std::string hintForUnclosed(const std::string& add, const std::string& another) const {
    const std::string hint = add + " that is missing at its end";
    const bool hasMore = text_.find(here_, offset_ + 1) != std::string_view::npos;
    return hasMore ? hint + ", or at the end of " + another + " in it" : hint;
  }

  std::optional<std::string> hintForControlCharacter() const {
    if (here_ == '\t') return R"(write \t for a tab)";
    if ((here_ != '\n' && here_ != '\r') || open_.empty()) return std::nullopt;
    return "the text that begins " + placeOf(open_.back()) + " has no closing quote";
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

  std::string hintForZeros() const {
    const auto rest = text_.substr(offset_);
    const std::string_view word = rest.substr(0, rest.find_first_of(",]} \t\r\n"));
    const auto number = word.size() > kLongestWord ? std::nullopt : numberIn(word);
    if (!number) return "put a text in double quotes";
    return "write " + *number + ", or " + quoted(word) + " for a text";
  }

  std::optional<std::string> hintForComment() const {
    const auto rest = text_.substr(offset_);
    for (const auto& [begin, end] : kComments) {
      if (rest.substr(0, begin.size()) != begin) continue;
      const auto comment = rest.substr(0, end.empty() ? 0 : rest.find(end));
      const auto lines = std::count(comment.begin(), comment.end(), '\n');
      const std::string hint = "JSON has no comments: take it out";
      if (lines == 0 || comment.size() == rest.size()) return hint;
      return hint + ", up to line " + std::to_string(line_ + static_cast<std::size_t>(lines));
    }
    return std::nullopt;
  }

  static std::string inQuotes(const std::string& hint, const std::string& word) {
    return word.size() > kLongestWord ? hint : hint + ": " + quoted(word);
  }

  std::optional<std::string> hintForMore() const {
    if (here_ == '}' || here_ == ']') {
      return hintForSurplus();
    }
    if (here_ == ':') return "put members in braces: {...}";
    const bool isLast = text_.find_first_not_of(" \t\r\n", offset_ + 1) == std::string_view::npos;
    if (here_ == ',' && isLast) return "take out the comma";
    return kSeveralValues;
  }

  std::string hintForSurplus() const {
    return std::string("there is one ") + here_ + " too many, here or before it";
  }

  /// For a comma or the end of a container.
  std::optional<std::string> hintForSeparator() const {
    const bool ends = here_ != ',';
    if (is("expected a colon") && lacksBracket()) return kMissingBracket;
    if (ends && (here_ == ']') != (open_.back().character == '[')) return hintForWrongEnd();
    if (is("expected a colon")) return "write a colon and a value behind the name";
    if (before_ == ':') return valueFollows() ? "take out the comma" : "write a value before it";
    if (before_ == ',') return ends ? "take out the comma before it" : "take out one comma";
    return "take it out";
  }

  /// For the end of an object where an array is open, or the other way round.
  std::string hintForWrongEnd() const {
    const std::string around = brackets_.substr(0, brackets_.size() - 1);
    if (closes(around, offset_ + 1)) {
      return here_ == '}' ? "write ] instead of }" : "write } instead of ]";
    }
    return closes(brackets_, offset_ + 1) ? hintForSurplus() : hintForInnermost();
  }

  /// Whether behind the comma in place of a value there is one, and no other member.
  bool valueFollows() const {
    const std::size_t next = text_.find_first_not_of(kSpace, offset_ + 1);
    if (characterAt(next) != '"')
      return std::string_view("{[-0123456789").find(characterAt(next)) != std::string_view::npos;
    std::size_t end = next + 1;
    while (end < text_.size() && text_[end] != '"') end += text_[end] == '\\' ? 2 : 1;
    const char behind = characterAt(text_.find_first_not_of(kSpace, end + 1));
    return behind == ',' || behind == '}';
  }

  /// Whether a [ before makes the text behind right where an object is open.
  bool lacksBracket() const { return brackets_.back() == '{' && closes(brackets_ + '[', offset_); }

  std::optional<std::string> hintForName() const {
    if (here_ == '{' || here_ == '[') return hintForElement();
    if (before_ == ',' && lacksBracket()) return kMissingBracket;
    if (isDigit(here_) && offset_ >= 2 && text_[offset_ - 1] == ',' &&
        isDigit(text_[offset_ - 2])) {
      return "write a decimal point, not a comma";
    }
    if (!isWordCharacter(here_)) return std::nullopt;
    return inQuotes("put the name in double quotes", wordHere());
  }

  /// For an array or an object where a member's name has to stand.
  std::optional<std::string> hintForElement() const {
    if (before_ != ',') return std::nullopt;
    const std::size_t comma = text_.rfind(',', offset_ - 1);
    const char last = lastBefore(comma);
    const bool isSecond = last == '}' || last == ']';
    if (isSecond && lacksBracket()) {
      return std::string("a [ is missing before the ") + closed_.character + ' ' + placeOf(closed_);
    }
    if (!closes(brackets_, offset_)) return hintForInnermost();
    if (isSecond) return kSeveralValues;
    return std::nullopt;
  }

  /// For a colon behind a value.
  std::optional<std::string> hintForMembers() const {
    if (before_ != '"') return std::nullopt;
    if (closes(brackets_ + '{', offset_)) {
      const auto rest = text_.substr(closed_.offset, offset_ - closed_.offset);
      const auto name = rest.substr(0, rest.find_last_of('"') + 1);
      return "a { is missing before " +
             (name.size() > kLongestWord ? "the name" : std::string(name));
    }
    if (brackets_.back() != '[') return std::nullopt;
    const std::string around = brackets_.substr(0, brackets_.size() - 1);
    const bool isFirst = lastBefore(closed_.offset) == '[';
    if (closes(brackets_, offset_)) {
      return isFirst ? "put members in braces, not in brackets: {...}"
                     : "put members in braces: {...}";
    }
    if (isFirst && closes(around + '{', offset_)) {
      return "write { instead of [ " + placeOf(open_.back());
    }
    const bool isInObject = !around.empty() && around.back() == '{';
    if (!isFirst && isInObject && closes(around, offset_)) return hintForInnermost();
    return std::nullopt;
  }

  std::optional<std::string> hintForColon() const {
    if (here_ == '=') return "write : instead";
    return isWordCharacter(here_) && text_[offset_ - 1] == '"' ? kMissingQuote
                                                               : "put a colon before it";
  }

  std::optional<std::string> hintForNext() const {
    if (here_ == ':') return hintForMembers();
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
  std::size_t line_;
  std::vector<Opening> open_;
  std::string brackets_;  // those that are open
  Opening closed_{};      // the last that was
  char here_ = '\0';      // where the text is refused
  char before_ = '\0';    // before that, and before space
};

}  // namespace

std::optional<std::string> hintForSyntax(std::string_view text, const json::ParseError& error,
                                         std::size_t firstLine) {
  return SyntaxHint(text, error, firstLine).find();
}

}  // namespace reference_host::diagnosis
