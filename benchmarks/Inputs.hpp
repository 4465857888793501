// The files that are loaded: written on first use to a directory of this process, and removed with
// it.
#ifndef BENCHMARKS_INPUTS_HPP
#define BENCHMARKS_INPUTS_HPP

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "Generator.hpp"

namespace benchmarks {

constexpr Shape smallShape = {1, 4, 7};      // 2.5 KB
constexpr Shape mediumShape = {16, 4, 26};   // 140 KB
constexpr Shape largeShape = {1000, 4, 26};  // 9 MB

// One configuration in the formats of its readers.
enum class Format {
  CONFIG,           // this library's, valid against its grammar
  DOCUMENT_TYPE,    // the same with a document type, so not plain from the first line on
  PREFIX_LAST,      // the same with a prefix in the last element, so not plain at its end
  ELEMENTS,         // XML with an element per section and property, called as they are
  LIBCONFIG,        // libconfig's own; the first of each name, as it knows no repetition
  LIBCONFIG_LISTS,  // the same, with lists of what repeats
  INFO,             // of Boost.PropertyTree
  JSON,
  TOML,
  YAML,
};

class Inputs {
 public:
  Inputs();
  ~Inputs();
  Inputs(const Inputs&) = delete;
  Inputs& operator=(const Inputs&) = delete;

  std::string file(const Shape& shape, Format format = Format::CONFIG);

  // Configuration files of the small shape, the one to load first: each includes the next one.
  std::vector<std::string> chain(std::size_t count);
  // The same, but the first file does nothing else than include the `count` others.
  std::vector<std::string> sideBySide(std::size_t count);
  // Sections in each other, with a property in the innermost.
  std::string deep(std::size_t depth);

 private:
  std::vector<std::string> includes(const std::string& name, std::size_t count, bool nested);

  std::filesystem::path directory;
};

// Tells sink what the files of that shape hold.
void tell(const Shape& shape, Sink& sink);

// A property of a configuration, by its path "section.section.property". Each part is the first one
// of its name where it stands.
struct Sample {
  std::string path;
  std::string value;
};

// Properties spread over the configuration of that shape.
std::vector<Sample> samples(const Shape& shape, std::size_t count);

// The names in such a path.
std::vector<std::string> parts(const std::string& path);

}  // namespace benchmarks

#endif
