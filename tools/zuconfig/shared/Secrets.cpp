#include "shared/Secrets.hpp"

#include <algorithm>
#include <climits>

#include "service/util/config/internal/Config.hpp"
#include "service/util/config/visit.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::Visited;
using service::util::config::Visitor;
using service::util::config::xml::Location;

template <class See>
class EachProperty : public Visitor {
 public:
  explicit EachProperty(const See& see) : see(see) {}
  void property(const Visited& visited, const std::string& value) override { see(visited, value); }

 private:
  const See& see;
};

template <class See>
void forEachProperty(const IConfigPtr& config, const See& see) {
  EachProperty<See> visitor(see);
  service::util::config::visit(config, visitor);
}

class Copy : public Visitor {
 public:
  explicit Copy(const Secrets& secrets) : secrets(secrets) {}

  void property(const Visited& visited, const std::string& value) override {
    levels.back()->addProperty(visited.name, secrets.shown(visited.parent, visited.name, value));
  }
  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    levels.push_back(levels.back()->addSection(visited.name));
    return true;
  }
  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    levels.pop_back();
  }

  const IConfigPtr root = std::make_shared<service::util::config::internal::Config>();

 private:
  const Secrets& secrets;
  std::vector<IConfigPtr> levels = {root};
};

// How many lines an element can have besides those of its value, in comments say.
constexpr int mostLines = 50;

// The line in which the property ends whose start tag ends at location.
int lastLineOf(const Location& location, const std::string& value, SourceText& source) {
  const auto breaks = static_cast<int>(std::count(value.begin(), value.end(), '\n'));
  int column = breaks == 0 ? location.column : 1;
  for (int line = location.line + breaks; line < location.line + breaks + mostLines; ++line) {
    std::string text;
    for (const auto& shown : source.excerpt({location.file, line, column}).characters) {
      if (shown.column >= column) text += shown.text;
    }
    if (text.find("</") != text.npos) return line;
    column = 1;
  }
  return INT_MAX;
}

}  // namespace

Secrets::Secrets(const Programs& programs, SourceText& source) : names(programs.secretNames()) {
  if (names.empty()) return;
  source.quoteOnly([this](const Location& location) { return isQuotable(location); });
}

void Secrets::add(const Judgement& judgement, const IConfigPtr& config, const Origins& origins) {
  if (names.empty()) return;
  isEmpty = false;
  findIn(config, judgement);
  SourceText source;
  forEachProperty(config, [&](const Visited& visited, const std::string& value) {
    if (!hides(visited.parent, visited.name)) return;
    const auto origin = origins.of(visited.parent, visited.name, visited.index);
    if (origin.file == nullptr) return;
    const Location location = {origin.file->path, origin.line, origin.column};
    lines[location.file].emplace_back(source.rangeOf(location).line,
                                      lastLineOf(location, value, source));
  });
}

void Secrets::findIn(const IConfigPtr& config, const Judgement& judgement) {
  std::set<Property> known;
  for (const Survey& survey : judgement.surveys) {
    hidden.insert(survey.secrets.begin(), survey.secrets.end());
    for (const Surveyed& entry : survey.entries) {
      for (const auto* given : {&entry.inForce, &entry.lost}) {
        for (const auto& one : *given) known.emplace(one.part.get(), one.name);
      }
    }
  }
  forEachProperty(config, [&](const Visited& visited, const std::string& /*value*/) {
    if (known.count({visited.parent.get(), visited.name}) > 0) return;
    if (resembles(visited.name)) hidden.emplace(visited.parent.get(), visited.name);
  });
}

bool Secrets::resembles(const std::string& name) const {
  return std::find(names.begin(), names.end(), name) != names.end() ||
         !nearest(name, names).empty();
}

bool Secrets::isQuotable(const Location& location) const {
  if (isEmpty || isClosed) return false;
  const auto ofFile = lines.find(location.file);
  if (ofFile == lines.end()) return true;
  return std::none_of(ofFile->second.begin(), ofFile->second.end(), [&](const auto& range) {
    return range.first <= location.line && location.line <= range.second;
  });
}

IConfigPtr Secrets::masked(const IConfigPtr& config) const {
  if (hidden.empty()) return config;
  Copy copy(*this);
  service::util::config::visit(config, copy);
  return copy.root;
}

IConfigPtr loadMasked(Loader& loader, const ProgramOptions& programs, const std::string& file) {
  const Programs described(programs);
  if (described.secretNames().empty()) return loader.load(file);
  Secrets secrets(described, loader.getSources());
  Origins origins;
  const IConfigPtr config = loader.load(file, origins);
  secrets.add(described.judge(config, origins), config, origins);
  return secrets.masked(config);
}

}  // namespace zuconfig
