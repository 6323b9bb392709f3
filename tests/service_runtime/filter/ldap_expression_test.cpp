#include "filter/ldap_expression.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace service_runtime_test {
namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::detail::LdapExpression;
using cppmicroservices::detail::termsOf;

const AnyMap& properties() {
  static const AnyMap kProperties(
      {{"text", std::string("Some Words")},
       {"star", std::string("a*b(c)\\d")},
       {"empty", std::string()},
       {"flag", true},
       {"int", 5},
       {"negative", -3},
       {"long", 5000000000L},
       {"unsigned", std::numeric_limits<unsigned long long>::max()},
       {"least", std::numeric_limits<long long>::min()},
       {"precise", 9007199254740993LL},
       {"double", 2.5},
       {"tenth", 0.1},
       {"beyond", 18446744073709551616.0},
       {"endless", std::numeric_limits<double>::infinity()},
       {"undefined", std::numeric_limits<double>::quiet_NaN()},
       {"texts", std::vector<std::string>{"red", "green"}},
       {"mixed", std::vector<Any>{Any(std::string("one")), Any(2), Any(false)}},
       {"object", AnyMap{{"inner", 1}}}});
  return kProperties;
}

struct MatchRow {
  const char* description;
  const char* filter;
  bool matches;
};

void PrintTo(const MatchRow& row, std::ostream* os) {
  *os << row.description;
}

class LdapMatch : public ::testing::TestWithParam<MatchRow> {};

TEST_P(LdapMatch, Row) {
  const auto filter = LdapExpression::parse(GetParam().filter);
  EXPECT_EQ(filter.matches(properties()), GetParam().matches)
      << GetParam().description << ": " << GetParam().filter;
  if (!GetParam().matches) return;
  const auto terms = termsOf(properties());
  for (const std::string& term : filter.requiredTerms()) {
    EXPECT_EQ(std::count(terms.begin(), terms.end(), term), 1)
        << GetParam().description << ": " << term;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, LdapMatch,
    ::testing::Values(
        MatchRow{"equal text", "(text=Some Words)", true},
        MatchRow{"text compares with case", "(text=some words)", false},
        MatchRow{"text compares to its end", "(text=Some)", false},
        MatchRow{"white space belongs to the value", "(text= Some Words)", false},
        MatchRow{"the name's case does not matter", "(TEXT=Some Words)", true},
        MatchRow{"white space around name, filter and operands",
                 " ( & ( text =Some Words) (int=5) ) ", true},
        MatchRow{"absent property", "(absent=x)", false}, MatchRow{"presence", "(text=*)", true},
        MatchRow{"presence of an empty text", "(empty=*)", true},
        MatchRow{"presence of an object", "(object=*)", true},
        MatchRow{"no presence", "(absent=*)", false}, MatchRow{"empty value", "(empty=)", true},
        MatchRow{"empty value, other text", "(text=)", false},
        MatchRow{"prefix", "(text=Some*)", true}, MatchRow{"other prefix", "(text=Any*)", false},
        MatchRow{"suffix", "(text=*Words)", true}, MatchRow{"other suffix", "(text=*words)", false},
        MatchRow{"inside", "(text=*me Wo*)", true},
        MatchRow{"several pieces in order", "(text=S*e*W*s)", true},
        MatchRow{"several pieces out of order", "(text=*W*me*)", false},
        MatchRow{"prefix and suffix may not overlap", "(text=Some Words*ords)", false},
        MatchRow{"stars side by side", "(text=Some**Words)", true},
        MatchRow{"escaped star is no wildcard", "(text=Some\\*)", false},
        MatchRow{"escaped characters", "(star=a\\*b\\(c\\)\\\\d)", true},
        MatchRow{"greater text", "(text>=Some)", true},
        MatchRow{"text not greater", "(text>=Z)", false}, MatchRow{"less text", "(text<=Z)", true},
        MatchRow{"text not less", "(text<=Some)", false},
        MatchRow{"approximate text", "(text~=  SOMEwords )", true},
        MatchRow{"approximate, other text", "(text~=some word)", false},
        MatchRow{"true", "(flag=TRUE)", true}, MatchRow{"not false", "(flag=false)", false},
        MatchRow{"approximately true", "(flag~=true)", true},
        MatchRow{"a truth value has no order", "(flag>=true)", false},
        MatchRow{"equal integer", "(int=5)", true},
        MatchRow{"integers compare by value", "(int=5.0)", true},
        MatchRow{"unequal integer", "(int=6)", false},
        MatchRow{"more than a number is no number", "(int=5x)", false},
        MatchRow{"greater integer", "(int>=5)", true},
        MatchRow{"integer not greater", "(int>=10)", false},
        MatchRow{"less integer", "(int<=10)", true},
        MatchRow{"less than what no int holds", "(int<=99999999999999999999999)", true},
        MatchRow{"negative integer", "(negative<=-3)", true},
        MatchRow{"approximate integer", "(int~=5)", true},
        MatchRow{"long integer", "(long=5000000000)", true},
        MatchRow{"largest integer", "(unsigned=18446744073709551615)", true},
        MatchRow{"largest integer, not its neighbour", "(unsigned=18446744073709551614)", false},
        MatchRow{"largest integer, not the number behind it", "(unsigned=18446744073709551616)",
                 false},
        MatchRow{"largest integer is less than that", "(unsigned<=18446744073709551616)", true},
        MatchRow{"largest integer is not more", "(unsigned>=18446744073709551616)", false},
        MatchRow{"largest integer as a number with an exponent", "(unsigned>=1.8446744073709e19)",
                 true},
        MatchRow{"two to the 64th", "(beyond=18446744073709551616)", true},
        MatchRow{"two to the 64th, not the integer before it", "(beyond=18446744073709551615)",
                 false},
        MatchRow{"two to the 64th is more than that", "(beyond>=18446744073709551615)", true},
        MatchRow{"two to the 64th is not less", "(beyond<=18446744073709551615)", false},
        MatchRow{"least integer", "(least=-9223372036854775808)", true},
        MatchRow{"least integer, not the one before", "(least=-9223372036854775809)", false},
        MatchRow{"least integer is more than the one before", "(least>=-9223372036854775809)",
                 true},
        MatchRow{"least integer is less than the one behind", "(least<=-9223372036854775807)",
                 true},
        MatchRow{"least integer is not more", "(least>=-9223372036854775807)", false},
        MatchRow{"integer that no double holds", "(precise=9007199254740993)", true},
        MatchRow{"not the double beside it", "(precise=9007199254740992)", false},
        MatchRow{"nor less than that", "(precise<=9007199254740992.0)", false},
        MatchRow{"negative integer above a fraction", "(negative>=-3.5)", true},
        MatchRow{"negative integer not below it", "(negative<=-3.5)", false},
        MatchRow{"minus zero", "(int>=-0)", true},
        MatchRow{"all integers are less than infinity", "(unsigned<=inf)", true},
        MatchRow{"infinity is infinite", "(endless=inf)", true},
        MatchRow{"what is no number equals nothing", "(undefined=nan)", false},
        MatchRow{"and has no order", "(undefined<=5)", false},
        MatchRow{"nor has any number to it", "(int<=nan)", false},
        MatchRow{"equal double", "(double=2.5)", true},
        MatchRow{"fraction that is not exact in binary", "(tenth=0.1)", true},
        MatchRow{"exponent", "(double=25e-1)", true},
        MatchRow{"double not greater", "(double>=2.6)", false},
        MatchRow{"wildcards do not match numbers", "(int=5*)", false},
        MatchRow{"one of several texts", "(texts=green)", true},
        MatchRow{"none of several texts", "(texts=blue)", false},
        MatchRow{"wildcards in one of several texts", "(texts=gr*)", true},
        MatchRow{"text among mixed values", "(mixed=one)", true},
        MatchRow{"number among mixed values", "(mixed>=2)", true},
        MatchRow{"truth value among mixed values", "(mixed=false)", true},
        MatchRow{"an object matches no value", "(object=inner)", false},
        MatchRow{"and", "(&(int=5)(flag=true)(text=*))", true},
        MatchRow{"and with one false", "(&(int=5)(flag=false))", false},
        MatchRow{"and of one", "(&(int=5))", true}, MatchRow{"or", "(|(int=6)(flag=true))", true},
        MatchRow{"or of falsehoods", "(|(int=6)(flag=false))", false},
        MatchRow{"not", "(!(int=6))", true}, MatchRow{"not of truth", "(!(int=5))", false},
        MatchRow{"absence", "(!(absent=*))", true},
        MatchRow{"nested", "(|(&(int=5)(!(flag=true)))(&(double=2.5)(|(absent=1)(texts=red))))",
                 true}));

struct ErrorRow {
  const char* description;
  std::string filter;
  const char* error;
};

void PrintTo(const ErrorRow& row, std::ostream* os) {
  *os << row.description;
}

class LdapError : public ::testing::TestWithParam<ErrorRow> {};

TEST_P(LdapError, Row) {
  const ErrorRow& row = GetParam();
  try {
    LdapExpression::parse(row.filter);
    ADD_FAILURE() << row.description << ": no error";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), row.error) << row.description << ": " << row.filter;
  }
}

std::string nested(int depth) {
  std::string filter = "(a=b)";
  for (int i = 1; i < depth; ++i) filter = "(!" + filter + ")";
  return filter;
}

INSTANTIATE_TEST_SUITE_P(
    Table, LdapError,
    ::testing::Values(
        ErrorRow{"empty", "", "invalid LDAP filter: position 1: expected '('"},
        ErrorRow{"no parenthesis", "a=b", "invalid LDAP filter: position 1: expected '('"},
        ErrorRow{"not closed", "(a=b", "invalid LDAP filter: position 5: expected ')'"},
        ErrorRow{"something behind", "(a=b)x",
                 "invalid LDAP filter: position 6: nothing may follow the filter"},
        ErrorRow{"no name", "(=b)", "invalid LDAP filter: position 2: expected a name"},
        ErrorRow{"nothing inside", "()", "invalid LDAP filter: position 2: expected a name"},
        ErrorRow{"no comparison", "(a)",
                 "invalid LDAP filter: position 3: expected '=', '>=', '<=' or '~='"},
        ErrorRow{"half a comparison", "(a>b)",
                 "invalid LDAP filter: position 4: expected '=', '>=', '<=' or '~='"},
        ErrorRow{"and of nothing", "(&)", "invalid LDAP filter: position 3: expected '('"},
        ErrorRow{"not of two", "(!(a=b)(c=d))", "invalid LDAP filter: position 8: expected ')'"},
        ErrorRow{"parenthesis in a value", "(a=b(c)",
                 "invalid LDAP filter: position 5: a '(' in a value has to be written \\("},
        ErrorRow{"star after an order", "(a>=b*)",
                 "invalid LDAP filter: position 6: a '*' has a meaning after '=' only"},
        ErrorRow{"ambiguous escape", "(a=\\2a)",
                 "invalid LDAP filter: position 5: expected '(', ')', '*' or '\\' after '\\'"},
        ErrorRow{"escape at the end", "(a=\\",
                 "invalid LDAP filter: position 5: expected '(', ')', '*' or '\\' after '\\'"},
        ErrorRow{"nested too deep", nested(65),
                 "invalid LDAP filter: position 129: nested too deep"}));

TEST(LdapExpression, NestsSixtyFourDeep) {
  EXPECT_FALSE(LdapExpression::parse(nested(64)).matches({{"a", std::string("b")}}));
}

TEST(LdapExpression, InterfaceAndFilterHaveBothToMatch) {
  const AnyMap service{{"objectclass", std::vector<std::string>{"n::(I)", "*"}}, {"a", 1}};
  EXPECT_TRUE(LdapExpression::offering("", "").matches(service));
  EXPECT_TRUE(LdapExpression::offering("n::(I)", "").matches(service));
  EXPECT_TRUE(LdapExpression::offering("*", "(a=1)").matches(service));
  EXPECT_FALSE(LdapExpression::offering("n::J", "(a=1)").matches(service));
  EXPECT_FALSE(LdapExpression::offering("n::(I)", "(a=2)").matches(service));
  EXPECT_THROW(LdapExpression::offering("n::(I)", "a=1"), std::invalid_argument);
}

TEST(LdapExpression, RequiresTheTermsOfItsEqualitiesAlone) {
  const auto terms = [](const char* filter) {
    return LdapExpression::parse(filter).requiredTerms();
  };
  EXPECT_EQ(terms("(&(A=x)(&(b=5.0)(c=TRUE)))"),
            (std::vector<std::string>{"a=x", "b=5", "c=true"}));
  for (const char* filter : {"(a=*)", "(a=x*)", "(a>=1)", "(a~=x)", "(!(a=x))", "(|(a=x)(b=y))"}) {
    EXPECT_TRUE(terms(filter).empty()) << filter;
  }
}

}  // namespace
}  // namespace service_runtime_test
