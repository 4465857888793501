#include "report/SourceText.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

#include "TemporaryFolder.hpp"
#include "service/util/config/xml/format.hpp"

namespace {

namespace xml = service::util::config::xml;
using service::util::config::report::SourceFile;
using service::util::config::report::SourceText;

// Characters and line breaks of every kind, over and over, so that each falls on each place of the
// blocks and marks that the reading goes by.
TEST(SourceFile, FindsEveryPlaceOfALongFile) {
  const std::vector<std::string> pieces = {
      "a", "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFF", "\n", "\xCA", "b", "\r\n",
      "<", "\r"};
  const TemporaryFolder folder;
  std::string text = "\xEF\xBB\xBF";  // a mark, in no column
  for (int i = 0; i < 6600; ++i) text += pieces[i % pieces.size()];
  folder.write("long", text);
  SourceFile file(folder.path / "long");
  off_t offset = 3;
  int line = 1;
  int column = 1;
  for (int i = 0; i < 6600; ++i) {
    const std::string& bytes = pieces[i % pieces.size()];
    const auto found = file.find(line, column);
    ASSERT_TRUE(found && found->offset == offset) << i << " " << bytes;
    const auto place = file.positionOf(offset);
    ASSERT_TRUE(place.line == line && place.column == column) << i << " " << bytes;
    offset += static_cast<off_t>(bytes.size());
    const bool isLineEnd = bytes.back() == '\n' || bytes.back() == '\r';
    column = isLineEnd ? 1 : column + (bytes.size() == 4 ? 2 : 1);
    if (isLineEnd) ++line;
  }
  EXPECT_EQ(file.findInvalid()->column, 6);
  EXPECT_EQ(file.findLast("<\r")->line, line - 1);
  EXPECT_FALSE(file.find(line + 1, 1));
  EXPECT_EQ(file.find(1, 100)->column, 7) << "the end of a line that is shorter";
}

TEST(SourceFile, FindsTextsOnTheEdgesOfBlocks) {
  const TemporaryFolder folder;
  constexpr off_t size = 7;
  std::string text;
  for (int i = 10000; i < 30000; ++i) text += "<" + std::to_string(i) + ">";
  folder.write("long", text);
  SourceFile file(folder.path / "long");
  for (off_t edge = 4096; edge < 20000 * size; edge += 4096) {
    const off_t start = edge / size * size;
    const auto found = file.findLast(text.substr(static_cast<std::size_t>(start), size));
    EXPECT_EQ(found ? found->offset : -1, start);
  }
}

TEST(SourceText, QuotesAroundThePlace) {
  const TemporaryFolder folder;
  const std::string file = folder.path / "wide.xml";
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "<p n='" + std::to_string(i) + "'/>";
  folder.write("wide.xml", text);
  const int column = static_cast<int>(text.find("<p n='77777'/>") + 1);
  SourceText source;
  const auto range = source.rangeOf({file, 1, column + 14});
  EXPECT_EQ(range.column, column);
  EXPECT_EQ(source.excerpt(range.start()).text(), text.substr(column - 61, 160));
  EXPECT_EQ(source.excerpt({file, 2, 1}).text(), "");
  EXPECT_EQ(source.excerpt({folder.path, 1, 1}).text(), "");
}

TEST(SourceText, QuotesAShortLineWhole) {
  const TemporaryFolder folder;
  const std::string file = folder.path / "f.xml";
  folder.write("f.xml", std::string(100, 'a') + "\r<b/>\n");
  SourceText source;
  EXPECT_EQ(source.excerpt({file, 1, 90}).text(), std::string(100, 'a'));
  EXPECT_EQ(source.rangeOf({file, 2, 90}).column, 90) << "behind the line";
  EXPECT_EQ(xml::format({xml::Severity::ERROR, "rule", "\x1b[2J", "", {"\n"}, {}}),
            "\\n: error: \\x1b[2J [rule]\n");
}

TEST(SourceText, QuotesNothingOfWhatChanged) {
  const TemporaryFolder folder;
  const std::string file = folder.path / "f.xml";
  const std::pair<std::function<void()>, const char*> rows[] = {
      {[] {}, "<a/>"},
      {[&] { folder.write("f.xml", "<a/><b/>"); }, ""},
      {[&] {
         folder.write("new.xml", "<b/>");
         std::filesystem::rename(folder.path / "new.xml", file);
       },
       ""},
      {[&] {
         std::filesystem::remove(file);
         ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
       },
       ""},
  };
  for (const auto& [change, expected] : rows) {
    folder.write("f.xml", "<a/>");
    SourceText source;
    source.expect(file);
    change();
    EXPECT_EQ(source.excerpt({file, 1, 1}).text(), expected);
  }
}

}  // namespace
