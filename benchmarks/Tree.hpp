// A tree of maps like that of this library: what a program that uses a bare parser would keep.
#ifndef BENCHMARKS_TREE_HPP
#define BENCHMARKS_TREE_HPP

#include <map>
#include <string>
#include <vector>

#include "Generator.hpp"

namespace benchmarks {

struct Tree {
  std::map<std::string, std::vector<std::string>> properties;
  std::map<std::string, std::vector<Tree>> sections;
};

class TreeBuilder : public Sink {
 public:
  explicit TreeBuilder(Tree& root) : path({&root}) {}

  void beginSection(const std::string& name) override {
    path.push_back(&path.back()->sections[name].emplace_back());
  }
  void endSection() override { path.pop_back(); }
  void property(const std::string& name, const std::string& value) override {
    path.back()->properties[name].push_back(value);
  }

 private:
  std::vector<Tree*> path;
};

}  // namespace benchmarks

#endif
