#include <gtest/gtest.h>

#include <string>

#include "support/rows.hpp"

namespace tessel::build::json::controls {
namespace {

using test_support::expectRows;
using test_support::kDump;
using test_support::Row;

const std::string kBuilder = "FileBrowserBuilderImpl";

TEST(FileBrowserBuilder, HasNoGuardsByContract) {
  expectRows(kBuilder,
             {Row("no context: the code is read, then the type fails")
                  .object(R"({"text":"x = 1"})")
                  .node(R"({"class":"document::gxzero::FileBrowserNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "fileBrowserData":{"class":"lumocode::contentmodel::gxzero::FileBrowserData",
               "code":"x = 1"}})")
                  .error("invalid conversion: undefined to string")
                  .records({"Starting to build a FileBrowser using the incoming JSON below", kDump,
                            "Found the code property", "Set the code property"}),
              Row("no browser type").data("{}").error("invalid conversion: undefined to string"),
              Row("data that is null").data("null").error("invalid conversion: null to object")});
}

TEST(FileBrowserBuilder, SetsItsTypeAndItsDefaultValue) {
  expectRows(kBuilder,
             {Row("every key of its own")
                  .object(R"({"className":"FileBrowserControlNode","context":{"data":{
               "text":"Open","browserType":"file","defaultValue":"/data/a.txt"}}})")
                  .asked("Checking if can build FileBrowser")
                  .node(R"({"class":"document::gxzero::FileBrowserNode",
               "position":{"class":"document::gxzero::LumoControlPosition"},
               "fileBrowserData":{"class":"lumocode::contentmodel::gxzero::FileBrowserData",
               "label":"Open","browserType":"file","defaultValue":"/data/a.txt"}})")
                  .records({"Starting to build a FileBrowser using the incoming JSON below", kDump,
                            "Found the label property", "Set the label property",
                            "Set the browserType property", "Found the defaultValue property",
                            "Set the defaultValue property"}),
              Row("no default value")
                  .data(R"({"browserType":""})")
                  .dataObject(R"({"browserType":""})")
                  .records({"Set the browserType property"}),
              Row("a type that is a number")
                  .data(R"({"browserType":7})")
                  .error("invalid conversion: double to string"),
              Row("a default value that is null: the type stays")
                  .data(R"({"browserType":"file","defaultValue":null})")
                  .dataObject(R"({"browserType":"file"})")
                  .error("invalid conversion: null to string")
                  .records({"Set the browserType property", "Found the defaultValue property"})});
}

}  // namespace
}  // namespace tessel::build::json::controls
