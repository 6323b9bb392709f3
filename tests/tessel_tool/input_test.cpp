#include "tessel_tool/input.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "reference_host/json/parse.hpp"

namespace tessel_tool {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;

class InputTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = fs::path(testing::TempDir()) / (std::string("tessel_input_") + test->name());
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  std::string file(const std::string& name, const std::string& content) const {
    const fs::path path = folder_ / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
  }

  static std::vector<Document> all(std::vector<std::string> paths, DocumentSource::Unit unit) {
    DocumentSource source(std::move(paths), unit);
    std::vector<Document> documents;
    while (std::optional<Document> document = source.next()) {
      documents.push_back(std::move(*document));
    }
    EXPECT_FALSE(source.next());
    return documents;
  }

  static std::string errorOf(const Document& document) {
    try {
      document.parse();
      return "";
    } catch (const reference_host::json::ParseError& error) {
      return error.what();
    }
  }

  fs::path folder_;
};

TEST_F(InputTest, WholeInputs) {
  const std::string large(200000, ' ');
  const std::string first = file("first", "one\ntwo");
  const std::string second = file("second", large);
  const std::string third = file("third", "");
  const auto documents = all({first, second, third}, DocumentSource::Unit::kWholeInput);
  ASSERT_EQ(documents.size(), 3U);
  EXPECT_EQ(documents[0].text, "one\ntwo");
  EXPECT_EQ(documents[0].name, first);
  EXPECT_EQ(documents[1].text, large);
  EXPECT_EQ(documents[2].text, "");
  for (const Document& document : documents) EXPECT_EQ(document.readError, "");
}

TEST_F(InputTest, LinesOfWhiteSpaceArePassedOver) {
  const std::string first = file("first", "\n1\r\n \t\r\n\n2");
  const std::string second = file("second", "3\n");
  const std::string blank = file("blank", " \n\n");
  const auto documents = all({first, blank, second}, DocumentSource::Unit::kLine);
  ASSERT_EQ(documents.size(), 3U);
  EXPECT_EQ(documents[0].text, "1\r");
  EXPECT_EQ(documents[0].name, first + ":2");
  EXPECT_EQ(documents[0].path, first);
  EXPECT_EQ(documents[1].text, "2");
  EXPECT_EQ(documents[1].name, first + ":5");
  EXPECT_EQ(documents[2].name, second + ":1");
}

TEST_F(InputTest, AnInputThatCannotBeReadIsADocumentThatSaysSo) {
  const std::string missing = (folder_ / "missing").string();
  const std::string there = file("there", "1");
  for (const auto unit : {DocumentSource::Unit::kWholeInput, DocumentSource::Unit::kLine}) {
    const auto documents = all({missing, folder_.string(), there}, unit);
    ASSERT_EQ(documents.size(), 3U);
    EXPECT_EQ(documents[0].name, missing);
    EXPECT_EQ(documents[0].readError, "No such file or directory");
    EXPECT_EQ(documents[1].name, folder_.string());
    EXPECT_EQ(documents[1].readError, "Is a directory");
    EXPECT_EQ(documents[2].text, "1");
    EXPECT_EQ(documents[2].readError, "");
  }
}

TEST_F(InputTest, PlacesAreCountedInTheInput) {
  const std::string path = file("lines", "1\n\n  ]\n");
  const auto documents = all({path}, DocumentSource::Unit::kLine);
  ASSERT_EQ(documents.size(), 2U);
  EXPECT_EQ(errorOf(documents[0]), "");
  EXPECT_EQ(errorOf(documents[1]), "line 3, column 3: expected a value");
}

TEST_F(InputTest, AByteOrderMarkCountsOnlyAtTheStart) {
  const std::string path = file("marked",
                                "\xef\xbb\xbf"
                                "1\n\xef\xbb\xbf"
                                "2\n");
  const auto documents = all({path}, DocumentSource::Unit::kLine);
  ASSERT_EQ(documents.size(), 2U);
  EXPECT_EQ(errorOf(documents[0]), "");
  EXPECT_EQ(errorOf(documents[1]), "line 2, column 1: expected a value");
  const auto whole = all({file("whole", "\xef\xbb\xbf{}")}, DocumentSource::Unit::kWholeInput);
  EXPECT_EQ(errorOf(whole.at(0)), "");
}

TEST_F(InputTest, AMarkBeforeWhiteSpaceMakesNoDocument) {
  EXPECT_THAT(all({file("marked", "\xef\xbb\xbf \n")}, DocumentSource::Unit::kLine), IsEmpty());
}

}  // namespace
}  // namespace tessel_tool
