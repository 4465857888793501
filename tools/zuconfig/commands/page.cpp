// zuconfig page: a configuration, or what differs between two, as a page for a browser.
#include <iostream>

#include "commands/Command.hpp"
#include "page/html.hpp"
#include "page/sections.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

struct Page {
  static constexpr const char* name = "page";
  static constexpr const char* summary = "Print a page for browsers that shows everything";

  void define(CLI::App& command) {
    load.defineForChecks(command);
    programs.define(command);
    command.add_flag("--check", isCheck, "Answer 1 when there are errors");
    defineFile(command, file);
    command.add_option("FILE_B", fileB, "Another one: shows what differs");
  }

  ExitCode run() const {
    Loader loader(load);
    const Programs judges(programs);
    Secrets secrets(judges, loader.getSources());
    if (fileB.empty()) return show(Subject(loader, judges, secrets, file));
    const Subject a(loader, judges, secrets, file, "-a");
    return showBoth(a, Subject(loader, judges, secrets, fileB, "-b"));
  }

 private:
  ExitCode show(const Subject& subject) const {
    std::ostream& out = std::cout;
    const bool isLoaded = subject.config != nullptr;
    startPage(out, subject.name);
    writeHeader(out, subject);
    if (isLoaded) writeSearch(out, subject);
    out << "<main>\n";
    if (!subject.findings.empty()) writeProblems(out, subject);
    if (isLoaded) writeTree(out, subject);
    if (!subject.unset.empty()) writeUnset(out, subject);
    writeFiles(out, subject);
    out << "</main>\n";
    if (isLoaded) writeData(out, subject);
    endPage(out);
    if (!isLoaded) return NOT_LOADED;
    return isCheck && subject.hasErrors() ? NO : FINE;
  }

  ExitCode showBoth(const Subject& a, const Subject& b) const {
    std::ostream& out = std::cout;
    const bool isLoaded = a.config != nullptr && b.config != nullptr;
    startPage(out, a.name + " and " + b.name);
    writeHeader(out, a);
    writeHeader(out, b);
    out << "<main>\n";
    if (isLoaded) writeDifferences(out, a, b);
    for (const Subject* subject : {&a, &b}) {
      if (!subject->findings.empty()) writeProblems(out, *subject);
      writeFiles(out, *subject);
    }
    out << "</main>\n";
    endPage(out);
    if (!isLoaded) return NOT_LOADED;
    return isCheck && (a.hasErrors() || b.hasErrors()) ? NO : FINE;
  }

  static void writeHeader(std::ostream& out, const Subject& subject) {
    const std::string& suffix = subject.suffix;
    out << "<header>\n<h1>" << inHtml(subject.name) << "</h1>\n<p>";
    if (subject.config == nullptr) {
      out << "<strong class=\"error\">does not load</strong> · ";
    } else {
      out << counted(subject.values, "value") << " · " << counted(subject.sections, "section")
          << " · ";
    }
    out << counted(subject.files.size(), "file") << " · "
        << counted(subject.findings.size(), "problem") << "</p>\n<nav aria-label=\"Contents of "
        << inHtml(subject.name) << "\">";
    if (!subject.findings.empty()) out << "<a href=\"#-problems" << suffix << "\">Problems</a> ";
    if (subject.config != nullptr && suffix.empty()) out << "<a href=\"#-values\">Values</a> ";
    if (!subject.unset.empty() && suffix.empty()) out << "<a href=\"#-unset\">Not set</a> ";
    out << "<a href=\"#-files" << suffix << "\">Files</a> <a href=\"#-path" << suffix
        << "\">Search path</a></nav>\n</header>\n";
  }

  // For the script, which shows it.
  static void writeSearch(std::ostream& out, const Subject& subject) {
    out << "<form id=\"-form\" role=\"search\" hidden><input id=\"-search\" type=\"search\" "
           "aria-label=\"Search names, values and files\" placeholder=\"Search names, values and "
           "files\" autocomplete=\"off\" spellcheck=\"false\"> <select id=\"-filter\" "
           "aria-label=\"File\"><option value=\"\">all files</option>";
    for (const ListedFile& listed : subject.files) {
      out << "<option>" << inHtml(listed.name) << "</option>";
    }
    out << "</select><p id=\"-status\" role=\"status\"></p></form>\n"
           "<ol id=\"-results\" hidden></ol>\n";
  }

  LoadOptions load;
  ProgramOptions programs;
  bool isCheck = false;
  std::string file;
  std::string fileB;
};

}  // namespace

void addPage(CLI::App& app, Chosen& chosen) {
  addCommand<Page>(app, chosen);
}

}  // namespace zuconfig
