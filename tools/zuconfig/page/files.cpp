#include <algorithm>
#include <nlohmann/json.hpp>

#include "page/html.hpp"
#include "page/picture.hpp"
#include "page/sections.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using json = nlohmann::ordered_json;

class FilesWriter {
 public:
  FilesWriter(std::ostream& out, const Subject& subject)
      : out(out),
        subject(subject),
        names(subject.loader.getNames()),
        path(subject.loader.searchPath()) {}

  void writeGraph() const {
    openSection(out, subject, "files", "Files");
    if (!subject.files.empty()) {
      out << "<div class=\"picture\" tabindex=\"0\" role=\"region\" aria-label=\"Include "
             "graph\">\n";
      writePicture(out, subject.files, filePrefix(subject));
      out << "</div>\n";
    }
    out << "<ol class=\"files\" start=\"0\">\n";
    for (std::size_t i = 0; i < subject.files.size(); ++i) writeFile(i);
    out << "</ol>\n</section>\n";
  }

  void writePath() const {
    openSection(out, subject, "path", "Search path");
    out << "<ol class=\"path\">\n";
    for (const PathEntry& entry : path) {
      const std::string reason = whyNoDirectory(entry.directory);
      out << "<li><code>" << inHtml(shownDirectory(entry.directory)) << "</code> <small>"
          << inHtml(entry.source) << (reason.empty() ? "" : ", ") << reason << "</small>\n<ul>\n";
      writeFound([&](const Node& node) { return isFoundIn(entry, node); });
      writeShadowed(entry.directory);
      out << "</ul>\n";
    }
    out << "</ol>\n<ul class=\"path\">\n";
    writeGroup("Beside the file that includes them, or named with their directory", "found",
               [&](const Node& node) { return !node.path.empty() && !isOnPath(node); });
    writeGroup("Nowhere", "absent", [](const Node& node) { return node.path.empty(); });
    out << "</ul>\n</section>\n";
  }

 private:
  static bool isFoundIn(const PathEntry& entry, const Node& node) {
    return node.name[0] != '/' && node.directory == entry.directory;
  }

  bool isOnPath(const Node& node) const {
    return std::any_of(path.begin(), path.end(),
                       [&](const PathEntry& entry) { return isFoundIn(entry, node); });
  }

  void writeFile(std::size_t number) const {
    const ListedFile& file = subject.files[number];
    const Node& first = *file.nodes.front();
    out << "<li id=\"" << filePrefix(subject) << number << "\"><b>" << inHtml(file.name)
        << "</b>\n<ul>";
    if (first.path.empty()) out << "<li class=\"error\">not found";
    for (const Node* node : file.nodes) {
      if (node->include.file.empty()) continue;
      out << "<li>included as " << inHtml(quoted(node->name)) << " at "
          << inHtml(names.shown(node->include))
          << (node->kind == Node::CYCLE ? " <span class=\"error\">a cycle</span>" : "");
    }
    if (!first.path.empty()) out << "<li>" << inHtml(whereFound(first));
    for (const auto& match : first.shadowed) {
      out << "<li class=\"warning\">shadows " << inHtml(names.shown(match.file));
    }
    out << "</ul>\n";
  }

  std::string whereFound(const Node& node) const {
    if (node.name[0] == '/') return "named with its directory, not searched for";
    for (const PathEntry& entry : path) {
      if (isFoundIn(entry, node)) {
        return "found in " + shownDirectory(entry.directory) + " (" + entry.source + ")";
      }
    }
    return "found in " + names.shown(node.directory) + ", beside a file that includes it";
  }

  template <class IsMeant>
  bool writeFound(const IsMeant& isMeant, const char* how = "found") const {
    bool isAny = false;
    for (std::size_t i = 0; i < subject.files.size(); ++i) {
      const Node& node = *subject.files[i].nodes.front();
      if (!isMeant(node) || (*how == 'f' && node.path.empty())) continue;
      out << "<li class=\"" << how << "\">" << how << " <a href=\""
          << linkTo(filePrefix(subject) + std::to_string(i)) << "\">"
          << inHtml(subject.files[i].name) << "</a>";
      isAny = true;
    }
    return isAny;
  }

  template <class IsMeant>
  void writeGroup(const char* title, const char* how, const IsMeant& isMeant) const {
    const bool isAny =
        std::any_of(subject.files.begin(), subject.files.end(),
                    [&](const ListedFile& file) { return isMeant(*file.nodes.front()); });
    if (!isAny) return;
    out << "<li>" << title << "\n<ul>\n";
    writeFound(isMeant, how);
    out << "</ul>\n";
  }

  void writeShadowed(const std::string& directory) const {
    for (const ListedFile& file : subject.files) {
      for (const auto& match : file.nodes.front()->shadowed) {
        if (match.directory != directory) continue;
        out << "<li class=\"warning\">shadowed " << inHtml(names.shown(match.file)) << ", by "
            << inHtml(file.name);
      }
    }
  }

  std::ostream& out;
  const Subject& subject;
  const FileNames& names;
  const std::vector<PathEntry> path;
};

}  // namespace

void writeFiles(std::ostream& out, const Subject& subject) {
  const FilesWriter writer(out, subject);
  writer.writeGraph();
  writer.writePath();
}

// In a script element, only what looks like a tag could end the data.
void writeData(std::ostream& out, const Subject& subject) {
  const FileNames& names = subject.loader.getNames();
  std::unordered_map<const Origins::File*, std::size_t> numbers;
  json readings = json::array();
  for (const auto& file : subject.origins.getFiles()) {
    json reading = {{"file", subject.numberOf(file.path)}};
    if (file.includer != nullptr) {
      reading["by"] = numbers.at(file.includer);
      reading["as"] = printable(file.name);
      reading["at"] = names.shown(file.include);
    }
    numbers.emplace(&file, readings.size());
    readings.push_back(std::move(reading));
  }
  std::string text =
      json{{"readings", std::move(readings)}}.dump(-1, ' ', false, json::error_handler_t::replace);
  for (std::size_t at = 0; (at = text.find('<', at)) != text.npos;) text.replace(at, 1, "\\u003c");
  out << "<script type=\"application/json\" id=\"-data\">" << text << "</script>\n";
}

}  // namespace zuconfig
