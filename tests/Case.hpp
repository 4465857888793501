// Cases as folders of real files. The file `case` in a folder says how to load it, line by line:
//
//   file NAME            what to load; main.xml when there is no such line
//   validate             load with validation
//   scheme URI LOCATION  an entry of the scheme list, in order
//   path DIRECTORY       an entry of the search path, in order, relative to the folder; the folder
//                        itself when there is no such line
#ifndef TESTS_CASE_HPP
#define TESTS_CASE_HPP

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "service/util/config/xml/create.hpp"

struct Case {
  std::string file = "main.xml";
  bool validate = false;
  service::util::config::xml::SchemeList schemes;
  std::vector<std::string> path;
};

inline std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline Case readCase(const std::filesystem::path& folder) {
  Case result;
  std::istringstream lines(contentOf(folder / "case"));
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string keyword, first, second;
    words >> keyword >> first >> second;
    if (keyword == "file") {
      result.file = first;
    } else if (keyword == "validate") {
      result.validate = true;
    } else if (keyword == "scheme") {
      result.schemes.emplace_back(first, second);
    } else if (keyword == "path") {
      result.path.push_back((folder / first).lexically_normal());
    } else {
      throw std::runtime_error("unknown keyword in a case: " + line);
    }
  }
  if (result.path.empty()) result.path.push_back(folder);
  return result;
}

inline std::vector<std::filesystem::path> foldersIn(const std::string& directory) {
  std::vector<std::filesystem::path> result;
  for (const auto& entry : std::filesystem::directory_iterator(directory)) {
    if (entry.is_directory()) result.push_back(entry.path());
  }
  if (result.empty()) throw std::runtime_error("no cases in " + directory);
  std::sort(result.begin(), result.end());
  return result;
}

inline std::string nameOf(const testing::TestParamInfo<std::filesystem::path>& info) {
  std::string name = info.param.filename();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

#endif
