// Writes a tree in the formats of other libraries, each as its users would: names that repeat
// become lists. No name or value needs to be escaped in any of them.
#ifndef BENCHMARKS_FORMATS_HPP
#define BENCHMARKS_FORMATS_HPP

#include <ostream>

#include "Tree.hpp"

namespace benchmarks {

void writeInfo(const Tree& tree, std::ostream& out);  // of Boost.PropertyTree
void writeJson(const Tree& tree, std::ostream& out);
void writeLibconfig(const Tree& tree, std::ostream& out);
void writeToml(const Tree& tree, std::ostream& out);
void writeYaml(const Tree& tree, std::ostream& out);

}  // namespace benchmarks

#endif
