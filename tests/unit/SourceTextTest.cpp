#include "report/SourceText.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

#include "TemporaryFolder.hpp"

namespace {

using service::util::config::report::SourceFile;
using service::util::config::report::SourceText;

// Characters and line breaks of every kind, over and over, so that each falls on each place of the
// blocks and marks that the reading goes by.
TEST(SourceFile, FindsEveryPlaceOfALongFile) {
  const struct {
    std::string bytes;
    int units;
  } pieces[] = {{"a", 1},
                {"\xC3\xBC", 1},
                {"\xE2\x82\xAC", 1},
                {"\xF0\x9F\x98\x80", 2},
                {"\xFF", 1},
                {"\n", 0},
                {"\xCA", 1},
                {"bc", 2},
                {"\r\n", 0},
                {"<", 1},
                {"\r", 0}};
  const TemporaryFolder folder;
  std::string text = "\xEF\xBB\xBF";  // a mark, in no column
  for (int i = 0; i < 500; ++i) {
    for (const auto& piece : pieces) text += piece.bytes;
  }
  folder.write("long", text);
  SourceFile file(folder.path / "long");
  off_t offset = 3;
  int line = 1;
  int column = 1;
  for (int i = 0; i < 500; ++i) {
    for (const auto& piece : pieces) {
      const auto found = file.find(line, column);
      ASSERT_TRUE(found && found->offset == offset) << i << " " << piece.bytes;
      const auto place = file.positionOf(offset);
      ASSERT_TRUE(place.line == line && place.column == column) << i << " " << piece.bytes;
      offset += static_cast<off_t>(piece.bytes.size());
      column = piece.units == 0 ? 1 : column + piece.units;
      if (piece.units == 0) ++line;
    }
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

TEST(SourceText, QuotesNothingOfWhatChanged) {
  const TemporaryFolder folder;
  const std::string file = folder.path / "f.xml";
  const auto excerptAfter = [&](const std::function<void()>& change) {
    folder.write("f.xml", "<a/>");
    SourceText source;
    source.expect(file);
    change();
    return source.excerpt({file, 1, 1}).text();
  };
  EXPECT_EQ(excerptAfter([] {}), "<a/>");
  EXPECT_EQ(excerptAfter([&] { folder.write("f.xml", "<a/><b/>"); }), "");
  EXPECT_EQ(excerptAfter([&] {
              folder.write("new.xml", "<b/>");
              std::filesystem::rename(folder.path / "new.xml", file);
            }),
            "");
  EXPECT_EQ(excerptAfter([&] {
              std::filesystem::remove(file);
              ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
            }),
            "");
}

}  // namespace
