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

TEST(LdapExpression, Matches) {
  const auto terms = termsOf(properties());
  const MatchRow rows[] = {
      {"equal text", "(text=Some Words)", true},
      {"text compares with case", "(text=some words)", false},
      {"text compares to its end", "(text=Some)", false},
      {"white space belongs to the value", "(text= Some Words)", false},
      {"the name's case does not matter", "(TEXT=Some Words)", true},
      {"white space around name, filter and operands", " ( & ( text =Some Words) (int=5) ) ", true},
      {"absent property", "(absent=x)", false},
      {"presence", "(text=*)", true},
      {"presence of an empty text", "(empty=*)", true},
      {"presence of an object", "(object=*)", true},
      {"no presence", "(absent=*)", false},
      {"empty value", "(empty=)", true},
      {"empty value, other text", "(text=)", false},
      {"prefix", "(text=Some*)", true},
      {"other prefix", "(text=Any*)", false},
      {"suffix", "(text=*Words)", true},
      {"other suffix", "(text=*words)", false},
      {"inside", "(text=*me Wo*)", true},
      {"several pieces in order", "(text=S*e*W*s)", true},
      {"several pieces out of order", "(text=*W*me*)", false},
      {"prefix and suffix may not overlap", "(text=Some Words*ords)", false},
      {"stars side by side", "(text=Some**Words)", true},
      {"escaped star is no wildcard", "(text=Some\\*)", false},
      {"escaped characters", "(star=a\\*b\\(c\\)\\\\d)", true},
      {"greater text", "(text>=Some)", true},
      {"text not greater", "(text>=Z)", false},
      {"less text", "(text<=Z)", true},
      {"text not less", "(text<=Some)", false},
      {"approximate text", "(text~=  SOMEwords )", true},
      {"approximate, other text", "(text~=some word)", false},
      {"true", "(flag=TRUE)", true},
      {"not false", "(flag=false)", false},
      {"approximately true", "(flag~=true)", true},
      {"a truth value has no order", "(flag>=true)", false},
      {"equal integer", "(int=5)", true},
      {"integers compare by value", "(int=5.0)", true},
      {"more than a number is no number", "(int=5x)", false},
      {"greater integer", "(int>=5)", true},
      {"integer not greater", "(int>=10)", false},
      {"less integer", "(int<=10)", true},
      {"less than what no int holds", "(int<=99999999999999999999999)", true},
      {"negative integer", "(negative<=-3)", true},
      {"approximate integer", "(int~=5)", true},
      {"long integer", "(long=5000000000)", true},
      {"largest integer", "(unsigned=18446744073709551615)", true},
      {"largest integer, not its neighbour", "(unsigned=18446744073709551614)", false},
      {"largest integer, not the number behind it", "(unsigned=18446744073709551616)", false},
      {"largest integer is less than that", "(unsigned<=18446744073709551616)", true},
      {"largest integer is not more", "(unsigned>=18446744073709551616)", false},
      {"largest integer as a number with an exponent", "(unsigned>=1.8446744073709e19)", true},
      {"two to the 64th", "(beyond=18446744073709551616)", true},
      {"two to the 64th, not the integer before it", "(beyond=18446744073709551615)", false},
      {"two to the 64th is more than that", "(beyond>=18446744073709551615)", true},
      {"two to the 64th is not less", "(beyond<=18446744073709551615)", false},
      {"least integer", "(least=-9223372036854775808)", true},
      {"least integer, not the one before", "(least=-9223372036854775809)", false},
      {"least integer is more than the one before", "(least>=-9223372036854775809)", true},
      {"least integer is less than the one behind", "(least<=-9223372036854775807)", true},
      {"least integer is not more", "(least>=-9223372036854775807)", false},
      {"integer that no double holds", "(precise=9007199254740993)", true},
      {"not the double beside it", "(precise=9007199254740992)", false},
      {"nor less than that", "(precise<=9007199254740992.0)", false},
      {"negative integer above a fraction", "(negative>=-3.5)", true},
      {"negative integer not below it", "(negative<=-3.5)", false},
      {"minus zero", "(int>=-0)", true},
      {"all integers are less than infinity", "(unsigned<=inf)", true},
      {"infinity is infinite", "(endless=inf)", true},
      {"what is no number equals nothing", "(undefined=nan)", false},
      {"and has no order", "(undefined<=5)", false},
      {"nor has any number to it", "(int<=nan)", false},
      {"fraction that is not exact in binary", "(tenth=0.1)", true},
      {"exponent", "(double=25e-1)", true},
      {"double not greater", "(double>=2.6)", false},
      {"wildcards do not match numbers", "(int=5*)", false},
      {"one of several texts", "(texts=green)", true},
      {"none of several texts", "(texts=blue)", false},
      {"wildcards in one of several texts", "(texts=gr*)", true},
      {"text among mixed values", "(mixed=one)", true},
      {"number among mixed values", "(mixed>=2)", true},
      {"truth value among mixed values", "(mixed=false)", true},
      {"an object matches no value", "(object=inner)", false},
      {"and", "(&(int=5)(flag=true)(text=*))", true},
      {"and with one false", "(&(int=5)(flag=false))", false},
      {"and of one", "(&(int=5))", true},
      {"or", "(|(int=6)(flag=true))", true},
      {"or of falsehoods", "(|(int=6)(flag=false))", false},
      {"not", "(!(int=6))", true},
      {"not of truth", "(!(int=5))", false},
      {"absence", "(!(absent=*))", true},
      {"nested", "(|(&(int=5)(!(flag=true)))(&(double=2.5)(|(absent=1)(texts=red))))", true}};
  for (const MatchRow& row : rows) {
    SCOPED_TRACE(std::string(row.description) + ": " + row.filter);
    const auto filter = LdapExpression::parse(row.filter);
    EXPECT_EQ(filter.matches(properties()), row.matches);
    if (!row.matches) continue;
    for (const std::string& term : filter.requiredTerms()) {
      EXPECT_EQ(std::count(terms.begin(), terms.end(), term), 1) << term;
    }
  }
}

struct ErrorRow {
  const char* description;
  std::string filter;
  std::string error;
};

std::string nested(int depth) {
  std::string filter = "(a=b)";
  for (int i = 1; i < depth; ++i) filter = "(!" + filter + ")";
  return filter;
}

TEST(LdapExpression, RefusesWhatIsNoFilter) {
  const ErrorRow rows[] = {
      {"empty", "", "1: expected '('"},
      {"no parenthesis", "a=b", "1: expected '('"},
      {"not closed", "(a=b", "5: expected ')'"},
      {"something behind", "(a=b)x", "6: nothing may follow the filter"},
      {"no name", "(=b)", "2: expected a name"},
      {"nothing inside", "()", "2: expected a name"},
      {"no comparison", "(a)", "3: expected '=', '>=', '<=' or '~='"},
      {"half a comparison", "(a>b)", "4: expected '=', '>=', '<=' or '~='"},
      {"and of nothing", "(&)", "3: expected '('"},
      {"not of two", "(!(a=b)(c=d))", "8: expected ')'"},
      {"parenthesis in a value", "(a=b(c)", "5: a '(' in a value has to be written \\("},
      {"star after an order", "(a>=b*)", "6: a '*' has a meaning after '=' only"},
      {"ambiguous escape", "(a=\\2a)", "5: expected '(', ')', '*' or '\\' after '\\'"},
      {"escape at the end", "(a=\\", "5: expected '(', ')', '*' or '\\' after '\\'"},
      {"nested too deep", nested(65), "129: nested too deep"}};
  for (const ErrorRow& row : rows) {
    SCOPED_TRACE(row.description);
    try {
      LdapExpression::parse(row.filter);
      ADD_FAILURE() << "no error";
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(error.what(), "invalid LDAP filter: position " + row.error);
    }
  }
  EXPECT_NO_THROW(LdapExpression::parse(nested(64)));
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
