#include "reference_host/json/parse.hpp"

#include <simdjson.h>

#include <cstdint>
#include <new>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "json/number.hpp"
#include "reference_host/json/syntax_check.hpp"

namespace reference_host::json {

namespace {

using foundation::json::Null;
using foundation::json::Value;
using simdjson::error_code;
namespace ondemand = simdjson::ondemand;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool startsWithMark(std::string_view utf8) noexcept {
  return utf8.substr(0, kByteOrderMark.size()) == kByteOrderMark;
}

/// The parser library misreads some numbers of 20 significant digits and more (until its version
/// 3.6.3) and refuses exponents of 20 digits. A shorter text can hold neither.
constexpr std::size_t kLongNumber = 22;

error_code readNumber(ondemand::value source, double& number) {
  std::string_view token = source.raw_json_token();
  if (token.size() >= kLongNumber) token = token.substr(0, token.find_last_not_of(" \t\n\r") + 1);
  if (token.size() < kLongNumber) return source.get_double().get(number);

  const NumberScan scan = scanNumber(token);
  if (scan.fault != nullptr || scan.length != token.size()) return simdjson::NUMBER_ERROR;
  const std::optional<double> nearest = nearestDouble(token);
  if (!nearest) return simdjson::NUMBER_ERROR;
  number = *nearest;
  return simdjson::SUCCESS;
}

/// Room for a number of bytes and the padding that the parser library may touch behind them.
simdjson::padded_string paddedRoom(std::size_t size) {
  simdjson::padded_string room(size);
  if (room.data() == nullptr) throw std::bad_alloc();
  return room;
}

/// Reads values as the parser library comes to them and makes them in their places. The
/// library checks only what is asked for, so every token is asked for.
class ValueReader {
 public:
  /// @param longestText no string of the text is longer.
  ValueReader(const ondemand::parser& parser, std::size_t longestText)
      : parser_(parser), unescaped_(paddedRoom(longestText)) {}

  error_code readAll(ondemand::value source, Value& target);

  std::size_t duplicateMembers() const noexcept { return duplicateMembers_; }

 private:
  /// A container that is being read: exactly one of the two targets is set.
  struct OpenContainer {
    Value::Array* elements = nullptr;
    ondemand::array_iterator element{};
    Value::Object* members = nullptr;
    ondemand::object_iterator member{};
    bool started = false;
  };

  error_code read(ondemand::value source, Value& target);
  error_code open(ondemand::array source, Value& target);
  error_code open(ondemand::object source, Value& target);
  error_code readElement(OpenContainer& container);
  error_code readMember(OpenContainer& container);
  /// @param text lasts until the next call.
  error_code unescape(ondemand::raw_json_string source, std::string_view& text);

  const ondemand::parser& parser_;
  // The library's own buffer is not to be relied upon: whether there was memory for it is not
  // checked (seen in its version 3.0.1).
  simdjson::padded_string unescaped_;
  std::vector<OpenContainer> open_;
  std::size_t duplicateMembers_ = 0;
};

error_code ValueReader::readAll(ondemand::value source, Value& target) {
  SIMDJSON_TRY(read(source, target));
  while (!open_.empty()) {
    // Reading may open another container, which moves this one.
    OpenContainer& innermost = open_.back();
    const bool advance = std::exchange(innermost.started, true);
    if (innermost.elements != nullptr) {
      if (advance) ++innermost.element;
      if (innermost.element != ondemand::array_iterator()) {
        SIMDJSON_TRY(readElement(innermost));
        continue;
      }
    } else {
      if (advance) ++innermost.member;
      if (innermost.member != ondemand::object_iterator()) {
        SIMDJSON_TRY(readMember(innermost));
        continue;
      }
    }
    open_.pop_back();
  }
  return simdjson::SUCCESS;
}

error_code ValueReader::readElement(OpenContainer& container) {
  ondemand::value source;
  SIMDJSON_TRY((*container.element).get(source));
  return read(source, container.elements->emplace_back());
}

error_code ValueReader::readMember(OpenContainer& container) {
  ondemand::field field;
  SIMDJSON_TRY((*container.member).get(field));
  std::string_view key;
  SIMDJSON_TRY(unescape(field.key(), key));
  // One look-up, whatever the order of the names; of two members with one name the last holds.
  auto& members = *container.members;
  const std::size_t sizeBefore = members.size();
  const auto member = members.emplace_hint(members.end(), std::piecewise_construct,
                                           std::forward_as_tuple(key), std::tuple<>());
  if (members.size() == sizeBefore) ++duplicateMembers_;
  return read(field.value(), member->second);
}

error_code ValueReader::unescape(ondemand::raw_json_string source, std::string_view& text) {
  auto* end = reinterpret_cast<std::uint8_t*>(unescaped_.data());
  return parser_.unescape(source, end).get(text);
}

error_code ValueReader::read(ondemand::value source, Value& target) {
  ondemand::json_type type{};
  SIMDJSON_TRY(source.type().get(type));
  switch (type) {
    case ondemand::json_type::array: {
      ondemand::array elements;
      SIMDJSON_TRY(source.get_array().get(elements));
      return open(elements, target);
    }
    case ondemand::json_type::object: {
      ondemand::object members;
      SIMDJSON_TRY(source.get_object().get(members));
      return open(members, target);
    }
    case ondemand::json_type::number: {
      double number = 0;
      SIMDJSON_TRY(readNumber(source, number));
      target.emplace<double>(number);
      return simdjson::SUCCESS;
    }
    case ondemand::json_type::string: {
      ondemand::raw_json_string raw;
      SIMDJSON_TRY(source.get_raw_json_string().get(raw));
      std::string_view text;
      SIMDJSON_TRY(unescape(raw, text));
      target.emplace<std::string>(text);
      return simdjson::SUCCESS;
    }
    case ondemand::json_type::boolean: {
      bool boolean = false;
      SIMDJSON_TRY(source.get_bool().get(boolean));
      target.emplace<bool>(boolean);
      return simdjson::SUCCESS;
    }
    case ondemand::json_type::null:
      break;
  }
  bool isNull = false;
  SIMDJSON_TRY(source.is_null().get(isNull));
  target.emplace<Null>();
  return isNull ? simdjson::SUCCESS : simdjson::N_ATOM_ERROR;
}

error_code ValueReader::open(ondemand::array source, Value& target) {
  if (open_.size() == kDeepestNesting) return simdjson::DEPTH_ERROR;
  OpenContainer container;
  SIMDJSON_TRY(source.begin().get(container.element));
  container.elements = &target.emplace<Value::Array>();
  // A spare value where an array has one element, an allocation less where it has more.
  if (container.element != ondemand::array_iterator()) container.elements->reserve(2);
  open_.push_back(container);
  return simdjson::SUCCESS;
}

error_code ValueReader::open(ondemand::object source, Value& target) {
  if (open_.size() == kDeepestNesting) return simdjson::DEPTH_ERROR;
  OpenContainer container;
  SIMDJSON_TRY(source.begin().get(container.member));
  container.members = &target.emplace<Value::Object>();
  open_.push_back(container);
  return simdjson::SUCCESS;
}

/// Reads a text between brackets, which must make an array of one element.
///
/// The parser library treats a scalar that stands alone in ways of its own, and limits its length;
/// between brackets it is read like any other.
error_code readBracketed(simdjson::padded_string_view text, Value& target,
                         std::size_t& duplicateMembers) {
  ondemand::parser parser;
  ondemand::document document;
  SIMDJSON_TRY(parser.iterate(text).get(document));
  ondemand::array brackets;
  SIMDJSON_TRY(document.get_array().get(brackets));
  ondemand::array_iterator element;
  SIMDJSON_TRY(brackets.begin().get(element));
  if (!(element != ondemand::array_iterator())) return simdjson::EMPTY;
  ondemand::value source;
  SIMDJSON_TRY((*element).get(source));
  ValueReader reader(parser, text.size());
  SIMDJSON_TRY(reader.readAll(source, target));
  duplicateMembers = reader.duplicateMembers();
  ++element;
  const bool more = element != ondemand::array_iterator();
  const bool atEnd = document.current_location().error() == simdjson::OUT_OF_BOUNDS;
  return more || !atEnd ? simdjson::TRAILING_CONTENT : simdjson::SUCCESS;
}

/// How much longer than a text its form is that is read: the brackets, and the padding.
constexpr std::size_t kSurplus = 2 + simdjson::SIMDJSON_PADDING;

void requireParsableLength(std::string_view utf8) {
  if (utf8.size() > simdjson::SIMDJSON_MAXSIZE_BYTES - 2) {
    throw ParseError(1, 1, "text of 4 GiB or more");
  }
}

/// Closes the brackets around a text that follows one, adds the padding, and reads it.
Value parseBracketed(std::string& text, std::size_t& duplicateMembers) {
  text += ']';
  const std::size_t length = text.size();
  text.append(simdjson::SIMDJSON_PADDING, ' ');
  Value value;
  const error_code error = readBracketed(
      simdjson::padded_string_view(text.data(), length, text.size()), value, duplicateMembers);
  if (error == simdjson::SUCCESS) return value;
  if (error == simdjson::MEMALLOC) throw std::bad_alloc();
  checkSyntax(std::string_view(text).substr(1, length - 2));
  throw ParseError(1, 1, simdjson::error_message(error));
}

}  // namespace

ParseError::ParseError(std::size_t line, std::size_t column, const std::string& reason)
    : std::runtime_error("line " + std::to_string(line) + ", column " + std::to_string(column) +
                         ": " + reason),
      line_(line),
      column_(column),
      reason_(reason) {}

Value parse(std::string_view utf8) {
  ParseReport report;
  return parse(utf8, report);
}

Value parse(std::string_view utf8, ParseReport& report) {
  report = {};
  if (startsWithMark(utf8)) utf8.remove_prefix(kByteOrderMark.size());
  report.text = utf8;
  requireParsableLength(utf8);
  std::string text;
  text.reserve(utf8.size() + kSurplus);
  text += '[';
  text += utf8;
  return parseBracketed(text, report.duplicateMembers);
}

Value parseInPlace(std::string utf8) {
  ParseReport report;
  return parseInPlace(utf8, report);
}

Value parseInPlace(std::string& utf8, ParseReport& report) {
  report = {};
  requireParsableLength(utf8);
  utf8.reserve(utf8.size() + kSurplus);
  utf8.replace(0, startsWithMark(utf8) ? kByteOrderMark.size() : 0, "[");
  report.text = std::string_view(utf8).substr(1);
  return parseBracketed(utf8, report.duplicateMembers);
}

}  // namespace reference_host::json
