#include "bundle_file/bundle_file.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/file_builder.hpp"
#include "support/temporary_folder.hpp"

namespace service_runtime_test {
namespace {

using cppmicroservices::detail::readBundleFile;

/// The image of a good bundle, changed.
std::string edited(const std::function<void(ElfW(Ehdr) &, std::vector<ElfW(Shdr)>&)>& edit) {
  return elfImage(bundleSections(zipArchive({{"crafted/manifest.json", kCraftedManifest}})), edit);
}

/// A good bundle with another archive.
std::string archived(const std::vector<std::pair<std::string, std::string>>& entries) {
  return elfImage(bundleSections(zipArchive(entries)));
}

/// A byte of an archive, at that distance from a mark.
struct ArchiveByte {
  const char* mark;
  std::size_t distance;
  char value;
};
constexpr auto kOwnHeader = "PK\3\4";  // in front of the content
constexpr auto kDirectory = "PK\1\2";
constexpr auto kEnd = "PK\5\6";

/// A good bundle with some bytes of the archive changed.
std::string archivedWith(const std::vector<ArchiveByte>& bytes,
                         Packing packing = Packing::kStored) {
  std::string archive = zipArchive({{"crafted/manifest.json", kCraftedManifest}}, packing);
  for (const ArchiveByte& byte : bytes) {
    archive.at(archive.find(byte.mark) + byte.distance) = byte.value;
  }
  return elfImage(bundleSections(archive));
}

TEST(BundleFileReader, ReadsAGoodBundle) {
  const std::string bytes[] = {craftedBundle(kCraftedManifest),
                               archived({{"crafted/", ""},
                                         {"crafted/text/readme.txt", "other resources"},
                                         {"crafted/manifest.json", kCraftedManifest}}),
                               archivedWith({}, Packing::kDeflated)};
  for (const std::string& good : bytes) {
    const auto file = readBundleFile(MemoryFile(good).path());
    EXPECT_EQ(file.manifestText, kCraftedManifest);
    EXPECT_EQ(file.manifest.symbolicName, "crafted");
  }
}

std::string refusalOf(const std::filesystem::path& path) {
  try {
    readBundleFile(path);
    return "no error";
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

struct RefusalRow {
  const char* description;
  std::string bytes;
  const char* error;
};

void expectRefusals(const std::vector<RefusalRow>& rows) {
  for (const RefusalRow& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(refusalOf(MemoryFile(row.bytes).path()), row.error);
  }
}

constexpr std::uint64_t kFarAway = ~std::uint64_t{0} - 8;

TEST(BundleFileReader, RefusesAnotherFile) {
  expectRefusals(
      {{"empty", "", "is not an ELF file"},
       {"text", std::string(1000, 'x'), "is not an ELF file"},
       {"cut off in the header", craftedBundle(kCraftedManifest).substr(0, 63),
        "is not an ELF file"},
       {"cut off in the table", craftedBundle(kCraftedManifest).substr(0, 300),
        "is not a bundle: it has no section .us_resources"},
       {"other machine", edited([](auto& header, auto&) { header.e_machine = EM_SPARC; }),
        "is an ELF file for another machine"},
       {"other word size", edited([](auto& header, auto&) { header.e_ident[EI_CLASS] ^= 3U; }),
        "is an ELF file for another machine"},
       {"other byte order", edited([](auto& header, auto&) { header.e_ident[EI_DATA] ^= 3U; }),
        "is an ELF file for another machine"},
       {"object file", edited([](auto& header, auto&) { header.e_type = ET_REL; }),
        "is not a shared library"},
       {"no sections", edited([](auto& header, auto&) { header.e_shnum = 0; }),
        "is not a bundle: it has no section .us_resources"},
       {"names far away",
        edited([](auto&, auto& sections) { sections.back().sh_offset = kFarAway; }),
        "is not a bundle: it has no section .us_resources"}});
}

TEST(BundleFileReader, RefusesWrongSections) {
  expectRefusals(
      {{"no resources", elfImage({{".tessel_runtime", "embedded_v1"}}),
        "is not a bundle: it has no section .us_resources"},
       {"name beyond the names",
        edited([](auto&, auto& sections) { sections[1].sh_name = 100000; }),
        "is not a bundle: it has no section .us_resources"},
       {"two resources", elfImage({{".us_resources", "a"}, {".us_resources", "b"}}),
        "has two sections .us_resources"},
       {"resources without bytes",
        elfImage({{".us_resources", "a", SHT_NOBITS}, {".tessel_runtime", "embedded_v1"}}),
        "its section .us_resources holds no plain bytes"},
       {"compressed resources", elfImage({{".us_resources", "a", SHT_PROGBITS, SHF_COMPRESSED}}),
        "its section .us_resources holds no plain bytes"},
       {"resources far away",
        edited([](auto&, auto& sections) { sections[1].sh_offset = kFarAway; }),
        "its section .us_resources lies outside the file"},
       {"resources too long",
        edited([](auto&, auto& sections) { sections[1].sh_size = 1U << 30U; }),
        "its section .us_resources is too long"},
       {"no marker", elfImage({{".us_resources", zipArchive({{"crafted/manifest.json", "{}"}})}}),
        "was not built for the embedded service runtime: it has no section .tessel_runtime"},
       {"other marker", elfImage({{".us_resources", "a"}, {".tessel_runtime", "embedded_v0"}}),
        "was built for another version of the embedded service runtime than embedded_v1"},
       {"endless marker",
        elfImage({{".us_resources", "a"}, {".tessel_runtime", std::string(300, 'x')}}),
        "its section .tessel_runtime is too long"}});
}

TEST(BundleFileReader, RefusesAWrongArchive) {
  expectRefusals(
      {{"empty", elfImage(bundleSections("")), "its resources are no zip archive"},
       {"no archive", elfImage(bundleSections("words, words, words, words")),
        "its resources are no zip archive"},
       {"more entries than the directory has", archivedWith({{kEnd, 10, 2}}),
        "its resources are no zip archive"},
       {"too many entries",
        archivedWith({{kEnd, 8, 0x7F}, {kEnd, 9, 0x7F}, {kEnd, 10, 0x7F}, {kEnd, 11, 0x7F}}),
        "its resources have too many entries"},
       {"no manifest", archived({{"crafted/other.json", "{}"}}),
        "its resources hold no manifest.json"},
       {"manifest deeper", archived({{"crafted/in/manifest.json", "{}"}}),
        "its resources hold no manifest.json"},
       {"manifest outside a folder", archived({{"manifest.json", kCraftedManifest}}),
        "its resources have an entry outside a folder: \"manifest.json\""},
       {"absolute path", archived({{"/crafted/manifest.json", kCraftedManifest}}),
        "its resources have an entry outside a folder: \"/crafted/manifest.json\""},
       {"two folders",
        archived({{"crafted/manifest.json", kCraftedManifest}, {"b/manifest.json", "{}"}}),
        "its resources have several folders: \"b\" and \"crafted\""},
       {"folder of another name", archived({{"other/manifest.json", kCraftedManifest}}),
        "its manifest.json is in the folder \"other\", not \"crafted\""},
       {"manifest too long",
        archived({{"crafted/manifest.json", std::string((4U << 20U) + 1, ' ')}}),
        "its manifest.json is too long"},
       {"wrong checksum", archivedWith({{"symbolic", 0, 'S'}}),
        "its manifest.json cannot be unpacked: CRC error"},
       // The length of the extra field in the entry's own header: the content begins behind it.
       {"content cut off", archivedWith({{kOwnHeader, 29, 1}}),
        "its manifest.json cannot be unpacked: Premature end of file"},
       {"headers that differ in the length", archivedWith({{kDirectory, 24, 20}}),
        "its manifest.json cannot be unpacked: Zip archive inconsistent"},
       {"content longer than its length",
        archivedWith({{kOwnHeader, 22, 20}, {kDirectory, 24, 20}}),
        "its manifest.json cannot be unpacked: CRC error"},
       {"content shorter than its length",
        archivedWith({{kOwnHeader, 22, 100}, {kDirectory, 24, 100}}),
        "its manifest.json cannot be unpacked: it is not as long as the archive says"},
       {"content that is not compressed", archivedWith({{kOwnHeader, 8, 8}, {kDirectory, 10, 8}}),
        "its manifest.json cannot be unpacked: Zlib error: data error"},
       {"content compressed in another way",
        archivedWith({{kOwnHeader, 8, 12}, {kDirectory, 10, 12}}),
        "its manifest.json cannot be unpacked: Compression method not supported"},
       {"encrypted content", archivedWith({{kOwnHeader, 6, 1}, {kDirectory, 8, 1}}),
        "its manifest.json cannot be unpacked: No password provided"},
       {"wrong manifest", craftedBundle("{}"), "manifest.json: bundle.symbolic_name: missing"}});
}

TEST(BundleFileReader, SaysWhatIsNoLibraryFile) {
  const test_support::TemporaryFolder folder;
  const std::string missing = (folder.path() / "missing.so").string();
  EXPECT_EQ(refusalOf(missing), "no such file");
  EXPECT_EQ(refusalOf(""), "no such file");
  EXPECT_EQ(refusalOf(folder.path()), "is a directory");

  const std::string pipe = (folder.path() / "pipe.so").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(refusalOf(pipe), "is not a regular file");

  const std::string text = (folder.path() / "text.so").string();
  std::ofstream(text) << "words";
  EXPECT_EQ(refusalOf(text), "is not an ELF file");
  EXPECT_EQ(refusalOf(text + "/below"), "no such file");
}

TEST(BundleFileReader, SaysWhyAFileCannotBeRead) {
  const test_support::TemporaryFolder folder;
  const std::string path = (folder.path() / "locked.so").string();
  std::ofstream(path) << "words";
  ASSERT_EQ(chmod(path.c_str(), 0), 0);
  ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
  // The super-user may read everything, so the file is read as somebody else.
  constexpr uid_t kNobody = 65534;
  const bool isSuperUser = geteuid() == 0;
  if (isSuperUser) {
    ASSERT_EQ(seteuid(kNobody), 0);
  }
  const std::string refusal = refusalOf(path);
  if (isSuperUser) {
    ASSERT_EQ(seteuid(0), 0);
  }
  EXPECT_EQ(refusal, "cannot be read: Permission denied");
}

}  // namespace
}  // namespace service_runtime_test
