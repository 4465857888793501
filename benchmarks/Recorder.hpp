// Keeps what a generator tells, so that building a configuration is timed without making it up.
#ifndef BENCHMARKS_RECORDER_HPP
#define BENCHMARKS_RECORDER_HPP

#include <memory>
#include <string>
#include <vector>

#include "Generator.hpp"
#include "service/util/config/internal/Config.hpp"

namespace benchmarks {

class Recorder : public Sink {
 public:
  void beginSection(const std::string& name) override { calls.push_back({BEGIN, name, ""}); }
  void endSection() override { calls.push_back({END, "", ""}); }
  void property(const std::string& name, const std::string& value) override {
    calls.push_back({PROPERTY, name, value});
  }

  // Section and property are what a library calls when it adds one: section(parent, name) returns
  // the new section.
  template <class Node, class Section, class Property>
  void replay(Node root, const Section& section, const Property& property) const {
    std::vector<Node> path = {root};
    for (const Call& call : calls) {
      if (call.kind == BEGIN) {
        path.push_back(section(path.back(), call.name));
      } else if (call.kind == END) {
        path.pop_back();
      } else {
        property(path.back(), call.name, call.value);
      }
    }
  }

 private:
  enum Kind { BEGIN, END, PROPERTY };
  struct Call {
    Kind kind;
    std::string name, value;
  };
  std::vector<Call> calls;
};

inline service::util::config::IConfigPtr buildConfig(const Recorder& content) {
  using service::util::config::IConfigPtr;
  const IConfigPtr root = std::make_shared<service::util::config::internal::Config>();
  content.replay(
      root, [](const IConfigPtr& node, const std::string& name) { return node->addSection(name); },
      [](const IConfigPtr& node, const std::string& name, const std::string& value) {
        node->addProperty(name, value);
      });
  return root;
}

}  // namespace benchmarks

#endif
