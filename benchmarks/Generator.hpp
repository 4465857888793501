// Made-up configurations of a given shape, the same ones on every machine.
//
// A configuration is told to a Sink as a sequence of calls, so that one generator serves every file
// format and the memory of the largest input is never taken twice.
#ifndef BENCHMARKS_GENERATOR_HPP
#define BENCHMARKS_GENERATOR_HPP

#include <cstddef>
#include <cstdint>
#include <string>

namespace benchmarks {

// A configuration of `groups` sections below the root, each with `children` sections of its own;
// every section holds `properties` properties.
struct Shape {
  std::size_t groups;
  std::size_t children;
  std::size_t properties;

  constexpr std::size_t sectionCount() const { return groups * (1 + children); }
  constexpr std::size_t propertyCount() const { return sectionCount() * properties; }
};

class Sink {
 public:
  virtual ~Sink() = default;
  virtual void beginSection(const std::string& name) = 0;
  virtual void endSection() = 0;
  virtual void property(const std::string& name, const std::string& value) = 0;
};

// Tells sink the configuration of that shape and seed. Names are letters only. Sections of one name
// repeat below the root; within a section, names are distinct but for the last two properties,
// which repeat the name of the first.
void generate(const Shape& shape, std::uint32_t seed, Sink& sink);

}  // namespace benchmarks

#endif
