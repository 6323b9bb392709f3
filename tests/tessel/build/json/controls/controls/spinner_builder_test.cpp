#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectClaims;
using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "SpinnerNodeBuilderImpl";

TEST(SpinnerBuilder, SetsItsFieldsInReadingOrder) {
  expectRows(
      kBuilder,
      {Row("bounds, step and default value")
           .object(R"({"className":"SpinnerControlNode","context":{"data":{"minimum":0,
               "maximum":10,"step":0.5,"defaultValue":3}}})")
           .asked("Checking if can build SpinnerNode")
           .node(R"({"class":"document::gxzero::SpinnerNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "spinnerData":{"class":"lumocode::contentmodel::gxzero::SpinnerData",
               "min":0,"max":10,"step":0.5,"defaultValue":3}})")
           .records({"Starting to build a SpinnerNode using the incoming JSON below", kDump,
                     "Found the context property", "Found the context.data property",
                     "Found the min property", "Set the min property", "Found the max property",
                     "Set the max property", "Found the step property", "Set the step property",
                     "Found the defaultValue property", "Set the defaultValue property"}),
       Row("a default value that is a flag")
           .data(R"({"defaultValue":true})")
           .error("invalid conversion: bool to double")
           .records({"Found the defaultValue property"})});
}

TEST(SpinnerBuilder, IsRecognisedByItsClassNameOnly) {
  expectClaims(kBuilder, {R"({"className":"SpinnerControlNode","context":{"type":"slider"}})"},
               {R"({"className":"spinner"})"});
}

}  // namespace
}  // namespace tessel::build::json::controls
