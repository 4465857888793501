// Checks of file sets that are made while the test runs: too large to keep.

#include "service/util/config/xml/check.hpp"

#include <gtest/gtest.h>

#include "TemporaryFolder.hpp"
#include "loader/LoaderState.hpp"
#include "placeholders.hpp"

namespace {

namespace xml = service::util::config::xml;

std::string repeated(const std::string& text, int times) {
  std::string result;
  for (int i = 0; i < times; ++i) result += text;
  return result;
}

// Each file includes the next one several times.
void writeChain(const TemporaryFolder& folder, int length, int times) {
  for (int i = 0; i < length; ++i) {
    const std::string include = "<include>" + std::to_string(i + 1) + ".xml</include>";
    folder.write(std::to_string(i) + ".xml", "<config>" + repeated(include, times) + "</config>");
  }
  folder.write(std::to_string(length) + ".xml", "<config><property name='p'/></config>");
}

std::string problemsOf(const TemporaryFolder& folder, const std::string& file) {
  setSearchPath({folder.path});
  std::string lines;
  for (const xml::Problem& problem : xml::check(file, {}, false)) {
    lines += problem.location.file + ":" + std::to_string(problem.location.line) + ": " +
             problem.message + " [" + problem.rule + "], " +
             std::to_string(problem.includes.size()) + " includes\n";
  }
  return replaceAll(lines, folder.path, "{T}");
}

TEST(CheckTest, ReadsAPartThatComesAgainOnce) {
  const TemporaryFolder folder;
  writeChain(folder, 60, 2);
  EXPECT_EQ(problemsOf(folder, "0.xml"),
            "{T}/60.xml:1: this property has no text [missing-value], 60 includes\n"
            "{T}/0.xml:0: too many files: a load reads each as often as it is included, and 100000 "
            "times at most [unloadable], 0 includes\n");
}

TEST(CheckTest, TellsTheEndsOfALongCircle) {
  const TemporaryFolder folder;
  writeChain(folder, 12, 1);
  folder.write("12.xml", "<config><include>0.xml</include></config>");
  EXPECT_EQ(problemsOf(folder, "0.xml"),
            "{T}/12.xml:1: this include closes a circle, which a load follows until it fails: "
            "{T}/0.xml -> {T}/1.xml -> {T}/2.xml -> {T}/3.xml -> (6 more) -> {T}/10.xml -> "
            "{T}/11.xml -> {T}/12.xml -> {T}/0.xml [include-cycle], 12 includes\n");
}

TEST(CheckTest, NeedsNoStackForIncludes) {
  const TemporaryFolder folder;
  writeChain(folder, 500, 1);
  EXPECT_EQ(
      problemsOf(folder, "0.xml"),
      "{T}/99.xml:1: this file is included through 100 others: a load needs stack for each, and "
      "fails where that ends [deep-includes], 99 includes\n"
      "{T}/500.xml:1: this property has no text [missing-value], 100 includes\n");
}

TEST(CheckTest, TellsOfNamesThatLeadNowhere) {
  const TemporaryFolder folder;
  EXPECT_EQ(problemsOf(folder, ""), ":0: the name of the file is empty [not-found], 0 includes\n");
  EXPECT_EQ(problemsOf(folder, "/no/such.xml"),
            "/no/such.xml:0: there is no readable file \"/no/such.xml\" [not-found], 0 includes\n");
  EXPECT_EQ(
      problemsOf(folder, "a.xml\n"),
      "a.xml\n:0: no readable file \"a.xml\n\" in {T}; white space around the name is part of "
      "it [not-found], 0 includes\n");
  folder.write("long.xml", "<config><include>none</include></config>");
  setSearchPath({"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8", "/9", folder.path});
  EXPECT_EQ(xml::check("long.xml", {}, false)[0].message, "no readable file \"none\" in " +
                                                              folder.path.string() +
                                                              ", /1, /2, /3, /4, /5, /6, /7, "
                                                              "and 2 more");
}

TEST(CheckTest, TellsWhatTheLoaderRefuses) {
  const TemporaryFolder folder;
  std::string section = "\n<section";
  for (int i = 0; i < 10001; ++i) section += " a" + std::to_string(i) + "=''";
  section += "/>";
  folder.write("main.xml",
               "<config>\n<include>attributes.xml</include>\n<include>bomb.xml</include>"
               "<include>entity.xml</include></config>");
  folder.write("attributes.xml", "<config>" + section + "</config>");
  folder.write("entity.xml", "<!DOCTYPE config [<!ENTITY e SYSTEM 'e.txt'>]><config>&e;</config>");
  folder.write("e.txt", section);
  folder.write("bomb.xml", "<!DOCTYPE config [<!ENTITY e '" + repeated("x", 100000) +
                               "'>]>\n<config>\n<property name='p'>" + repeated("&e;", 20000) +
                               "</property></config>");
  EXPECT_EQ(problemsOf(folder, "main.xml"),
            "{T}/attributes.xml:2: too many attributes! [unloadable], 1 includes\n"
            "{T}/bomb.xml:3: document expands too far beyond its size! [unloadable], 1 includes\n"
            "{T}/e.txt:2: too many attributes! [unloadable], 1 includes\n");
}

}  // namespace
