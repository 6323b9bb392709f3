#include "input.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iostream>
#include <iterator>
#include <optional>
#include <streambuf>
#include <string>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include "reference_host/json/parse.hpp"
#include "support/temporary_folder.hpp"

namespace tessel_tool {
namespace {

namespace fs = std::filesystem;

class InputTest : public testing::Test {
 protected:
  std::string file(const std::string& name, const std::string& content) const {
    const fs::path path = folder_.path() / name;
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

  static std::vector<std::vector<Document>> batches(std::vector<std::string> paths,
                                                    DocumentSource::Unit unit) {
    DocumentSource source(std::move(paths), unit);
    std::vector<std::vector<Document>> found;
    while (std::optional<std::vector<Document>> batch = source.nextBatch()) {
      found.push_back(std::move(*batch));
    }
    EXPECT_FALSE(source.nextBatch());
    return found;
  }

  static std::string errorOf(Document document) {
    try {
      document.parse();
      return "";
    } catch (const reference_host::json::ParseError& error) {
      return error.what();
    }
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(InputTest, DocumentsAndTheirPlaces) {
  constexpr auto kWhole = DocumentSource::Unit::kWholeInput;
  constexpr auto kLine = DocumentSource::Unit::kLine;
  const std::string mark = "\xef\xbb\xbf";
  const std::string large(200000, ' ');
  const struct {
    const char* description;
    DocumentSource::Unit unit;
    std::size_t firstLine;
    std::vector<std::string> inputs;
    /// Each document: the number of its input, what its name has behind the path, and its text, or
    /// why it is no JSON.
    std::vector<std::string> documents;
  } rows[] = {
      {"whole inputs",
       kWhole,
       1,
       {"[1,\n2]", large + '1', "3"},
       {"0|[1,\n2]", "1|" + large + '1', "2|3"}},
      {"a mark before a whole input", kWhole, 1, {mark + "{}"}, {"0|" + mark + "{}"}},
      {"lines of white space are passed over",
       kLine,
       1,
       {"\n1\r\n \t\r\n\n2", " \n\n", "3\n"},
       {"0:2|1\r", "0:5|2", "2:1|3"}},
      {"places are those in the input",
       kLine,
       1,
       {"1\n\n  ]\n"},
       {"0:1|1", "0:3|line 3, column 3: expected a value, found ']'"}},
      {"a mark counts at the start alone",
       kLine,
       1,
       {mark + "1\n" + mark + "2\n"},
       {"0:1|" + mark + '1',
        "0:2|line 2, column 1: expected a value, found a byte order mark (U+FEFF)"}},
      {"a mark before white space makes no document", kLine, 1, {mark + " \n"}, {}},
      {"lines of a part are counted from its first, in the first input",
       kLine,
       7,
       {mark + "1\n\n  ]\n", mark + "1\n"},
       {"0:7|line 7, column 1: expected a value, found a byte order mark (U+FEFF)",
        "0:9|line 9, column 3: expected a value, found ']'", "1:1|" + mark + '1'}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> paths;
    for (const std::string& input : row.inputs) {
      paths.push_back(file(std::to_string(paths.size()), input));
    }
    std::vector<std::string> found;
    DocumentSource source(paths, row.unit, row.firstLine);
    while (const std::optional<Document> document = source.next()) {
      EXPECT_EQ(document->readError, "");
      const std::string error = errorOf(*document);
      found.push_back(document->name.substr(folder_.path().string().size() + 1) + '|' +
                      (error.empty() ? document->text : error));
    }
    EXPECT_EQ(found, row.documents) << row.description;
  }
}

TEST_F(InputTest, AnInputThatCannotBeReadIsADocumentThatSaysSo) {
  const std::string missing = (folder_.path() / "missing").string();
  const std::string there = file("there", "1");
  for (const auto unit : {DocumentSource::Unit::kWholeInput, DocumentSource::Unit::kLine}) {
    const auto documents = all({missing, folder_.path().string(), there}, unit);
    ASSERT_EQ(documents.size(), 3U);
    EXPECT_EQ(documents[0].name, missing);
    EXPECT_EQ(documents[0].readError, "No such file or directory");
    EXPECT_EQ(documents[1].name, folder_.path().string());
    EXPECT_EQ(documents[1].readError, "Is a directory");
    EXPECT_EQ(documents[2].text, "1");
    EXPECT_EQ(documents[2].readError, "");
  }
}

/// A document, and behind it a device that fails only where nobody waits for it.
class FailingBuffer : public std::streambuf {
 protected:
  int_type underflow() override {
    setg(content_.data(), content_.data(), content_.data() + content_.size());
    return traits_type::to_int_type(content_.front());
  }
  std::streamsize showmanyc() override { return 1; }
  std::streamsize xsgetn(char* place, std::streamsize) override {
    if (gptr() == egptr()) {
      errno = ENXIO;
      throw std::ios_base::failure("the device is gone");
    }
    *place = *gptr();
    gbump(1);
    return 1;
  }

 private:
  std::string content_ = "1\n";
};

TEST_F(InputTest, AReadThatFailsBehindALineKeepsItsReason) {
  std::ios::sync_with_stdio(false);  // as the input does, which changes the buffer
  FailingBuffer buffer;
  std::streambuf* const before = std::cin.rdbuf(&buffer);
  DocumentSource source({}, DocumentSource::Unit::kLine);
  const std::optional<Document> first = source.next();
  errno = ENOENT;
  const std::optional<Document> second = source.next();
  const std::optional<Document> third = source.next();
  std::cin.rdbuf(before);
  ASSERT_TRUE(first);
  EXPECT_EQ(first->text, "1");
  EXPECT_EQ(first->readError, "");
  ASSERT_TRUE(second);
  EXPECT_EQ(second->readError, std::generic_category().message(ENXIO));
  EXPECT_FALSE(third);
}

TEST_F(InputTest, DuplicateMembersAreCountedAndTheFirstIsNamed) {
  const std::string path = file("lines", R"({"a":1})"
                                         "\n\n"
                                         R"([{"é":0, "b\u202e":1,"b\u202e":2,"\u00e9":3}])");
  auto documents = all({path}, DocumentSource::Unit::kLine);
  ASSERT_EQ(documents.size(), 2U);
  for (Document& document : documents) document.parse();
  EXPECT_EQ(documents[0].duplicates.count, 0U);
  DuplicateMembers found = documents[0].duplicates;
  found.add(documents[1].duplicates);
  EXPECT_EQ(found.place, path + ":3:3");
  EXPECT_EQ(found.describe(),
            R"(2 duplicate members, the first "é" at /0/é; the last of a name holds)");
  DuplicateMembers other{1, 1, "there:1:2", "\u2028", "/"};
  EXPECT_EQ(other.describe(), R"(1 duplicate member, "\u2028" at "/"; the last of a name holds)");
  found.add(other);
  EXPECT_EQ(found.place, path + ":3:3");
  EXPECT_EQ(found.describe(), R"(3 duplicate members in 2 documents, the first "é" at /0/é; )"
                              "the last of a name holds");
}

TEST_F(InputTest, LinesOfAnyLengthArriveWhole) {
  // The lengths around those of the buffers on the way: a line may end with one, or be cut by it.
  for (const std::size_t length :
       {1U, 8190U, 8191U, 8192U, 65534U, 65535U, 65536U, 65537U, 131071U, 131072U, 1000000U}) {
    SCOPED_TRACE(length);
    std::vector<std::string> lines;
    for (const char letter : {'a', 'b', 'c', 'd', 'e'}) {
      lines.emplace_back(length, letter);
      lines.emplace_back(1, letter);
    }
    for (const bool lastHasLineFeed : {true, false}) {
      std::string content;
      for (const std::string& line : lines) content += line + '\n';
      if (!lastHasLineFeed) content.pop_back();
      const std::string path = file("lines", content);
      std::vector<std::string> texts;
      for (Document& document : all({path}, DocumentSource::Unit::kLine)) {
        EXPECT_EQ(document.name, path + ":" + std::to_string(texts.size() + 1));
        texts.push_back(std::move(document.text));
      }
      EXPECT_EQ(texts, lines);
    }
  }
}

TEST_F(InputTest, BatchesHoldAllDocumentsInOrder) {
  std::string content;
  for (int number = 1; number <= 5000; ++number) {
    content += number % 7 == 0 ? " \t\n" : "";
    content += std::to_string(number) + std::string(static_cast<std::size_t>(number % 50), ' ');
    content += '\n';
  }
  const std::string many = file("many", content);
  const std::string missing = (folder_.path() / "missing").string();
  const std::string few = file("few", "\n1\n2");
  const std::vector<std::string> paths = {few, many, missing, few};
  for (const auto unit : {DocumentSource::Unit::kLine, DocumentSource::Unit::kWholeInput}) {
    std::vector<Document> found;
    for (std::vector<Document>& batch : batches(paths, unit)) {
      EXPECT_GE(batch.size(), 1U);
      std::move(batch.begin(), batch.end(), std::back_inserter(found));
    }
    const auto areSame = [](const Document& one, const Document& other) {
      return std::tie(one.name, one.path, one.text, one.line, one.readError) ==
             std::tie(other.name, other.path, other.text, other.line, other.readError);
    };
    const std::vector<Document> expected = all(paths, unit);
    EXPECT_TRUE(std::equal(found.begin(), found.end(), expected.begin(), expected.end(), areSame));
  }
}

TEST_F(InputTest, BatchesAreBoundedInBytes) {
  constexpr std::size_t kBound = 65536;
  std::string content;
  for (int number = 0; number < 20000; ++number) content += "12345678\n";
  const std::string huge(3 * kBound, '1');
  content += huge + '\n' + huge + "\n1\n2\n";
  std::size_t most = 0;
  for (const std::vector<Document>& batch :
       batches({file("lines", content)}, DocumentSource::Unit::kLine)) {
    std::size_t afterTheFirst = 0;
    for (std::size_t index = 1; index < batch.size(); ++index) {
      afterTheFirst += batch[index].text.size();
    }
    EXPECT_LE(afterTheFirst, kBound);
    most = std::max(most, batch.size());
  }
  EXPECT_GT(most, 100U);
}

TEST_F(InputTest, SmallFilesComeTogetherAndNothingIsWaitedFor) {
  constexpr std::size_t kBound = 65536;
  const std::string empty = file("empty", "");
  const std::string small = file("small", "1");
  const std::string half = file("half", std::string(kBound / 2, ' '));
  const std::string large = file("large", std::string(kBound, ' '));
  const std::string missing = (folder_.path() / "missing").string();
  const std::string pipe = (folder_.path() / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
  struct Row {
    const char* description;
    std::vector<std::string> paths;
    std::vector<std::size_t> sizes;
  };
  const Row rows[] = {
      {"small ones", {small, empty, small}, {3}},
      {"many", std::vector<std::string>(200, small), {65, 65, 65, 5}},
      {"what is together at the bound", {small, half, half, half, half}, {3, 2}},
      {"a large one before, between and behind", {large, small, large, large, small}, {1, 2, 1, 1}},
      {"one that cannot be read", {small, missing, small}, {1, 2}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    std::vector<std::size_t> sizes;
    for (const auto& batch : batches(row.paths, DocumentSource::Unit::kWholeInput)) {
      sizes.push_back(batch.size());
    }
    EXPECT_EQ(sizes, row.sizes);
  }
  // Nobody ever writes to the pipe.
  DocumentSource source({small, pipe}, DocumentSource::Unit::kWholeInput);
  EXPECT_EQ(source.nextBatch()->size(), 1U);
}

}  // namespace
}  // namespace tessel_tool
