#include "filter/ldap_expression.hpp"

#include <algorithm>
#include <stdexcept>

#include "filter/property_names.hpp"

namespace cppmicroservices {
inline namespace embedded_v1 {
namespace detail {

namespace {

constexpr int kDeepestNesting = 64;

bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

/// The text without white space and in lower case.
std::string simplified(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (!isSpace(c)) result += lower(c);
  }
  return result;
}

/// The same text for all that a value can be written as and still be equal to.
std::string termOf(const std::string& name, const std::string& value) {
  const auto number = Number::parse(value);
  const std::string lowerValue = lowerCase(value);
  const bool isFlag = lowerValue == "true" || lowerValue == "false";
  return lowerCase(name) + '=' + (number ? number->text() : isFlag ? lowerValue : value);
}

void addTerms(const std::string& name, const Any& value, std::vector<std::string>& terms) {
  if (const auto* text = any_cast<std::string>(&value)) {
    terms.push_back(termOf(name, *text));
  } else if (const auto* texts = any_cast<std::vector<std::string>>(&value)) {
    for (const std::string& element : *texts) terms.push_back(termOf(name, element));
  } else if (const auto* values = any_cast<std::vector<Any>>(&value)) {
    for (const Any& element : *values) addTerms(name, element, terms);
  } else if (const bool* flag = any_cast<bool>(&value)) {
    terms.push_back(termOf(name, *flag ? "true" : "false"));
  } else if (const auto number = Number::of(value)) {
    terms.push_back(termOf(name, number->text()));
  }
}

}  // namespace

class LdapParser {
 public:
  explicit LdapParser(std::string_view text) : text_(text) {}

  LdapExpression parse() {
    LdapExpression expression = filter(1);
    skipSpace();
    if (position_ < text_.size()) fail("nothing may follow the filter");
    return expression;
  }

 private:
  using Kind = LdapExpression::Kind;

  [[noreturn]] void fail(const std::string& reason) const {
    throw std::invalid_argument("invalid LDAP filter: position " + std::to_string(position_ + 1) +
                                ": " + reason);
  }

  char peek() const { return position_ < text_.size() ? text_[position_] : '\0'; }
  bool atEnd() const { return position_ >= text_.size(); }
  void skipSpace() {
    while (!atEnd() && isSpace(peek())) ++position_;
  }
  bool take(char c) {
    if (atEnd() || peek() != c) return false;
    ++position_;
    return true;
  }
  void expect(char c) {
    if (!take(c)) fail(std::string("expected '") + c + "'");
  }

  LdapExpression filter(int depth) {
    skipSpace();
    if (depth > kDeepestNesting) fail("nested too deep");
    expect('(');
    skipSpace();
    LdapExpression expression;
    if (take('&')) {
      expression.kind_ = Kind::kAnd;
      expression.operands_ = operands(depth);
    } else if (take('|')) {
      expression.kind_ = Kind::kOr;
      expression.operands_ = operands(depth);
    } else if (take('!')) {
      expression.kind_ = Kind::kNot;
      expression.operands_.push_back(filter(depth + 1));
    } else {
      comparison(expression);
    }
    skipSpace();
    expect(')');
    return expression;
  }

  std::vector<LdapExpression> operands(int depth) {
    std::vector<LdapExpression> result;
    do {
      result.push_back(filter(depth + 1));
      skipSpace();
    } while (peek() == '(');
    return result;
  }

  void comparison(LdapExpression& expression) {
    const std::size_t start = position_;
    while (!atEnd() && std::string_view("=<>~()").find(peek()) == std::string_view::npos) {
      ++position_;
    }
    std::size_t end = position_;
    while (end > start && isSpace(text_[end - 1])) --end;
    if (end == start) fail("expected a name");
    expression.name_ = std::string(text_.substr(start, end - start));

    if (take('>')) {
      expression.kind_ = Kind::kGreater;
    } else if (take('<')) {
      expression.kind_ = Kind::kLess;
    } else if (take('~')) {
      expression.kind_ = Kind::kApproximate;
    } else {
      expression.kind_ = Kind::kEqual;
    }
    if (!take('=')) fail("expected '=', '>=', '<=' or '~='");
    value(expression);
  }

  void value(LdapExpression& expression) {
    expression.pieces_.emplace_back();
    for (; !atEnd() && peek() != ')'; ++position_) {
      const char c = peek();
      if (c == '(') fail("a '(' in a value has to be written \\(");
      if (c == '*') {
        if (expression.kind_ != Kind::kEqual) fail("a '*' has a meaning after '=' only");
        expression.pieces_.emplace_back();
        continue;
      }
      if (c == '\\') {
        ++position_;
        // Before anything else the two usual readings, "as it is" and "a byte's digits", differ.
        if (atEnd() || std::string_view("()*\\").find(peek()) == std::string_view::npos) {
          fail("expected '(', ')', '*' or '\\' after '\\'");
        }
      }
      expression.pieces_.back() += peek();
    }
    if (expression.pieces_.size() == 1) {
      expression.number_ = Number::parse(expression.pieces_.front());
    }
  }

  std::string_view text_;
  std::size_t position_ = 0;
};

LdapExpression LdapExpression::parse(std::string_view filter) {
  return LdapParser(filter).parse();
}

LdapExpression LdapExpression::offering(const std::string& interface, const std::string& filter) {
  LdapExpression both;
  if (!interface.empty()) {
    LdapExpression offers;
    offers.kind_ = Kind::kEqual;
    offers.name_ = property_names::kInterfaces;
    offers.pieces_ = {interface};
    both.operands_.push_back(std::move(offers));
  }
  if (!filter.empty()) both.operands_.push_back(parse(filter));
  return both;
}

bool LdapExpression::matches(const AnyMap& properties) const {
  const auto operandMatches = [&](const LdapExpression& operand) {
    return operand.matches(properties);
  };
  switch (kind_) {
    case Kind::kAnd:
      return std::all_of(operands_.begin(), operands_.end(), operandMatches);
    case Kind::kOr:
      return std::any_of(operands_.begin(), operands_.end(), operandMatches);
    case Kind::kNot:
      return !operandMatches(operands_.front());
    default:
      break;
  }
  const auto property = properties.find(name_);
  return property != properties.end() && matchesValue(property->second);
}

std::vector<std::string> LdapExpression::requiredTerms() const {
  std::vector<std::string> terms;
  if (kind_ == Kind::kEqual && pieces_.size() == 1) {
    terms.push_back(termOf(name_, pieces_.front()));
  } else if (kind_ == Kind::kAnd) {
    for (const LdapExpression& operand : operands_) {
      for (std::string& term : operand.requiredTerms()) terms.push_back(std::move(term));
    }
  }
  return terms;
}

std::vector<std::string> termsOf(const AnyMap& properties) {
  std::vector<std::string> terms;
  for (const auto& [name, value] : properties) addTerms(name, value, terms);
  return terms;
}

bool LdapExpression::matchesValue(const Any& value) const {
  if (value.Empty()) return false;
  const bool isPresenceTest =
      pieces_.size() == 2 && pieces_.front().empty() && pieces_.back().empty();
  if (isPresenceTest) return true;
  if (const auto* text = any_cast<std::string>(&value)) return matchesText(*text);
  if (const auto* texts = any_cast<std::vector<std::string>>(&value)) {
    return std::any_of(texts->begin(), texts->end(),
                       [this](const std::string& text) { return matchesText(text); });
  }
  if (const auto* values = any_cast<std::vector<Any>>(&value)) {
    return std::any_of(values->begin(), values->end(),
                       [this](const Any& element) { return matchesValue(element); });
  }
  if (pieces_.size() > 1) return false;
  if (const bool* flag = any_cast<bool>(&value)) {
    return (kind_ == Kind::kEqual || kind_ == Kind::kApproximate) &&
           lowerCase(pieces_.front()) == (*flag ? "true" : "false");
  }
  const auto number = Number::of(value);
  return number && matchesNumber(*number);
}

bool LdapExpression::matchesText(const std::string& text) const {
  switch (kind_) {
    case Kind::kGreater:
      return text >= pieces_.front();
    case Kind::kLess:
      return text <= pieces_.front();
    case Kind::kApproximate:
      return simplified(text) == simplified(pieces_.front());
    default:
      return matchesWildcards(text);
  }
}

bool LdapExpression::matchesNumber(const Number& number) const {
  if (!number_) return false;
  switch (kind_) {
    case Kind::kGreater:
      return *number_ <= number;
    case Kind::kLess:
      return number <= *number_;
    default:
      return number == *number_;
  }
}

bool LdapExpression::matchesWildcards(std::string_view text) const {
  if (pieces_.size() == 1) return text == pieces_.front();
  const std::string_view first = pieces_.front();
  const std::string_view last = pieces_.back();
  if (text.size() < first.size() + last.size() || text.substr(0, first.size()) != first ||
      text.substr(text.size() - last.size()) != last) {
    return false;
  }
  // What lies between: each piece at its first place after the one before leaves the most room.
  text = text.substr(first.size(), text.size() - first.size() - last.size());
  for (std::size_t i = 1; i + 1 < pieces_.size(); ++i) {
    const std::size_t place = text.find(pieces_[i]);
    if (place == std::string_view::npos) return false;
    text.remove_prefix(place + pieces_[i].size());
  }
  return true;
}

}  // namespace detail
}  // namespace embedded_v1
}  // namespace cppmicroservices
