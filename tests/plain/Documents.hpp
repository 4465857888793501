// Configuration documents as a random number generator makes them up: right and wrong, plain and
// not, with all that is odd about a character, a line end or an encoding.
#ifndef TESTS_PLAIN_DOCUMENTS_HPP
#define TESTS_PLAIN_DOCUMENTS_HPP

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

class Documents {
 public:
  struct Choices {
    std::vector<std::string> common;
    std::vector<std::string> odd;
  };

  explicit Documents(std::uint32_t seed) : random(seed) {}

  // The next document. Where it includes files, that is mostly part.xml.
  std::string next();

 private:
  std::size_t below(std::size_t bound) { return random() % bound; }
  bool oneIn(std::size_t chances) { return below(chances) == 0; }
  bool isOdd() { return oneIn(oddity); }

  std::string oneOf(const std::vector<std::string>& items) { return items[below(items.size())]; }
  std::string choice(const Choices& choices) {
    return oneOf(isOdd() ? choices.odd : choices.common);
  }

  std::string space();
  std::string characters(const std::string& quote);
  std::string attribute(const std::string& name);
  std::string attributes(const std::string& element);
  std::string element(const std::string& name, std::size_t depth);
  std::string content(const std::string& name, std::size_t depth);
  std::string filler();
  std::string mutated(std::string document);

  std::mt19937 random;
  std::size_t oddity = 1;  // one piece of so many is odd in this document
};

#endif
