// What travels in the program: the catalogue, the readme, the list's icons, the texts.
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/extras.h"
#include "readers/list_description.h"
#include "support/picture_sizes.h"
#include "support/scratch_world.h"

namespace torvane {
namespace {

using testing::Utf16;

std::string Bytes(int id) {
  const std::span<const std::byte> bytes = DataResource(id);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// The parts of a text that are each closed by `end`.
std::vector<std::string> Split(const std::string& text, const std::string& end) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t at = 0; (at = text.find(end, start)) != std::string::npos;
       start = at + end.size()) {
    parts.push_back(text.substr(start, at - start));
  }
  EXPECT_EQ(start, text.size()) << "something stands behind the last end";
  return parts;
}

class Resources : public testing::ScratchWorld {};

TEST_F(Resources, CatalogueHasItsSectionsAndRows) {
  const std::string bytes = Bytes(1);
  ASSERT_EQ(bytes.size(), 8095U + 2U);
  EXPECT_EQ(bytes.substr(8095), std::string(2, '\0'));

  std::vector<std::pair<std::string, int>> sections;
  std::map<std::size_t, int> fieldCounts;
  std::string lineBefore;
  for (const std::string& line : Split(bytes.substr(0, 8095), "\r\n")) {
    EXPECT_EQ(line.find_first_of("\r\n"), std::string::npos) << line;
    if (line.starts_with('[')) {
      EXPECT_EQ(lineBefore, "");
      sections.emplace_back(line, 0);
    } else if (!line.empty()) {
      ASSERT_FALSE(sections.empty()) << line;
      const std::string key = std::to_string(++sections.back().second) + "=";
      EXPECT_TRUE(line.starts_with(key)) << line;
      EXPECT_LE(line.size() - key.size(), 139U) << line;
      const std::vector<std::string> fields = Split(line + ",", ",");
      ++fieldCounts[fields.size()];
      const MruEntry entry = EntryFromRow(Utf16(line.substr(key.size())));
      const ListType* type = FindListType(entry.ListType);
      ASSERT_TRUE(type) << line << " has no type";
      EXPECT_NE(DescribeRow(entry, *type).names.kind, EntryNames::Kind::Unknown)
          << line << " has no form of names";
    }
    lineBefore = line;
  }
  const std::vector<std::pair<std::string, int>> wanted = {
      {"[Audio]", 7},        {"[Compression]", 3},  {"[CSS Editors]", 3}, {"[Graphics]", 24},
      {"[HTML Editors]", 7}, {"[Internet]", 2},     {"[Misc]", 13},       {"[Programming]", 20},
      {"[System]", 4},       {"[Text Editors]", 9}, {"[XML Editors]", 5}};
  EXPECT_EQ(sections, wanted);
  // The two find and replace histories carry a tenth field that nothing reads.
  EXPECT_EQ(fieldCounts, (std::map<std::size_t, int>{{9, 95}, {10, 2}}));
}

TEST_F(Resources, ReadmeBeginsAndEndsWithTwoEmptyLines) {
  const std::vector<std::string> lines = Split(Bytes(2), "\r\n");
  ASSERT_EQ(lines.size(), 48U);
  EXPECT_EQ(lines[0] + lines[1], "");
  EXPECT_EQ(lines[2], "What's New:");
  EXPECT_EQ(lines[43], "Enjoy!");
  EXPECT_EQ(lines[44], "The Torvane team");
  EXPECT_EQ(lines[45], "https://halvex.example/torvane");
  EXPECT_EQ(lines[46] + lines[47], "");
}

TEST_F(Resources, ListIconsAreWholeFilesInBothSizes) {
  std::map<std::string, int> pictures;
  for (int id = 105; id <= 109; ++id) {
    EXPECT_EQ(PictureSizes(DataResource(id)), kIconSizes) << id;
    ++pictures[Bytes(id)];
  }
  EXPECT_EQ(pictures.size(), 5U) << "two icons have the same picture";
  EXPECT_THROW(DataResource(3), std::runtime_error);
}

TEST_F(Resources, TextsAndVersion) {
  const std::pair<int, std::u16string> texts[] = {
      {0, u""}, {1, u"Version:"}, {4, u"torvane@halvex.example"}, {8, u"Please wait..."}, {9, u""}};
  for (const auto& [id, text] : texts) EXPECT_EQ(StringResource(id), text) << id;
  const VersionRecord version = ReadVersionRecord();
  EXPECT_EQ(version.productName, u"Torvane");
  EXPECT_EQ(version.description, u"Edit programs MRU list");
  EXPECT_TRUE(version.legalNotice.starts_with(u"Copyright Halvex."));
  EXPECT_EQ(ExecutableBaseName(), u"torvane_tests");
}

}  // namespace
}  // namespace torvane
