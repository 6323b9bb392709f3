#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <string_view>

#include "foundation/json.hpp"
#include "reference_host/json/parse.hpp"
#include "reference_host/json/syntax_check.hpp"
#include "reference_host/json/text_places.hpp"
#include "reference_host/json/text_writer.hpp"

namespace {

using foundation::json::Null;
using foundation::json::pretty_print;
using foundation::json::Value;
using reference_host::json::checkSyntax;
using reference_host::json::JsonWriter;
using reference_host::json::parse;
using reference_host::json::ParseError;

using Random = std::mt19937_64;
using namespace std::string_view_literals;

double randomDouble(Random& random) {
  if (random() % 2 == 0) return static_cast<double>(random() % 1000) / 8;
  for (;;) {
    const std::uint64_t bits = random();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (number - number == 0) return number;
  }
}

/// Pieces of well-formed text.
constexpr std::string_view kPieces[] = {
    "a", "key", "\"", "\\", "/",      "\n",     "\x01",   "\x1F",   "\x7F",       "{",
    "]", ",",   ":",  " ",  "\u00E9", "\u20AC", "\uFEFF", "\uFFFF", "\U0001F600", "\0"sv};

/// What makes JSON of text, or ill-formed text.
constexpr std::string_view kTokens[] = {
    "[",    "}",          "0",       "1",       "-",    "+",   ".",    "e",    "E5",
    "e400", "9999999999", "t",       "true",    "null", "'",   "\f",   "\x1A", "\"a\"",
    "\\u",  "\\ud83d",    "\\ude00", "\\u00e9", "\\n",  "\\x", "\x80", "\xC3", "\xED\xA0\x80"};

template <std::size_t Count>
std::string_view anyOf(Random& random, const std::string_view (&texts)[Count]) {
  return texts[random() % Count];
}

std::string randomText(Random& random) {
  std::string text;
  for (auto count = random() % 6; count > 0; --count) text += anyOf(random, kPieces);
  return text;
}

/// A value of the kinds that a parse can give.
Value randomValue(Random& random, int levels) {
  switch (random() % (levels > 0 ? 8 : 5)) {
    case 0:
      return Null();
    case 1:
      return random() % 2 == 0;
    case 2:
    case 3:
      return randomDouble(random);
    case 4:
      return randomText(random);
    case 5: {
      Value::Array elements;
      for (auto count = random() % 6; count > 0; --count) {
        elements.push_back(randomValue(random, levels - 1));
      }
      return elements;
    }
    default: {
      Value::Object members;
      for (auto count = random() % 6; count > 0; --count) {
        members[randomText(random)] = randomValue(random, levels - 1);
      }
      return members;
    }
  }
}

TEST(ParsePropertyTest, WhatIsPrintedParsesBackToAnEqualValue) {
  Random random(20261121);
  for (int round = 0; round < 10'000; ++round) {
    const Value value = randomValue(random, 6);
    const std::string pretty = pretty_print(value);
    ASSERT_TRUE(parse(pretty) == value) << pretty;
    ASSERT_EQ(pretty_print(parse(pretty)), pretty);
    std::string compact;
    JsonWriter(compact).json(value);
    ASSERT_TRUE(parse(compact) == value) << compact;
  }
}

/// Two independent readers have to agree: the one that builds values and the one that finds
/// faults. Those that count duplicates and that find them have to agree, too. A refusal that names
/// no known fault shows as a throw of the first without the second.
void expectAgreement(const std::string& text) {
  if (text.rfind("\uFEFF", 0) == 0) return;  // only a parse skips it
  std::string refusal;
  try {
    reference_host::json::ParseReport report;
    parse(text, report);
    ASSERT_EQ(report.duplicateMembers, reference_host::json::findDuplicates(text).size()) << text;
  } catch (const ParseError& error) {
    refusal = error.what();
  }
  std::string fault;
  try {
    checkSyntax(text);
  } catch (const ParseError& error) {
    fault = error.what();
  }
  ASSERT_EQ(refusal, fault) << testing::PrintToString(text);
}

TEST(ParsePropertyTest, ParsingAndFaultFindingAgreeOnDamagedAndOnShortTexts) {
  constexpr std::string_view kFrequent[] = {"[", "]", "{", "}", ",", ":", "\"a\"", "1"};
  Random random(20261121);
  for (int round = 0; round < 100'000; ++round) {
    std::string text;
    switch (random() % 4) {
      case 0:
        JsonWriter(text).json(randomValue(random, 3));
        break;
      case 1:
        text = pretty_print(randomValue(random, 3));
        break;
      default:
        for (auto count = random() % 8; count > 0; --count) text += anyOf(random, kFrequent);
    }
    for (auto count = random() % 4; count > 0; --count) {
      const std::size_t place = random() % (text.size() + 1);
      const std::size_t cut = random() % 3;
      const auto kind = random() % 4;
      text.replace(place, cut,
                   kind == 0   ? std::string_view()
                   : kind == 1 ? anyOf(random, kPieces)
                               : anyOf(random, kTokens));
    }
    ASSERT_NO_FATAL_FAILURE(expectAgreement(text));
  }
}

TEST(ParsePropertyTest, NumbersAreTheNearestDoubles) {
  Random random(20261121);
  const auto digits = [&random](std::string& text, std::size_t most) {
    for (auto count = 1 + random() % most; count > 0; --count) {
      text += static_cast<char>('0' + random() % 10);
    }
  };
  int accepted = 0;
  for (int round = 0; round < 50'000; ++round) {
    const std::size_t most = round % 10 == 0 ? 900 : 25;
    std::string text = random() % 2 == 0 ? "-" : "";
    if (random() % 4 == 0) {
      text += '0';
    } else {
      text += static_cast<char>('1' + random() % 9);
      digits(text, most);
    }
    if (random() % 2 == 0) digits(text += '.', most);
    if (random() % 2 == 0) text += "e" + std::to_string(static_cast<int>(random() % 700) - 350);
    const double expected = std::strtod(text.c_str(), nullptr);
    ASSERT_NO_FATAL_FAILURE(expectAgreement(text));
    if (expected - expected != 0) {
      ASSERT_THROW(parse(text), ParseError) << text;
      continue;
    }
    ++accepted;
    const double number = *parse(text).get_if<double>();
    ASSERT_EQ(std::memcmp(&number, &expected, sizeof number), 0) << text;
  }
  EXPECT_GT(accepted, 25'000);
}

}  // namespace
