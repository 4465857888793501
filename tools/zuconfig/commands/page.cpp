// zuconfig page: a configuration, or what differs between two, as a page for a browser.
#include <iostream>

#include "commands/Command.hpp"
#include "page/embedded.hpp"
#include "page/html.hpp"
#include "page/sections.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

struct Page {
  static constexpr const char* name = "page";
  static constexpr const char* summary = "Print a page for browsers that shows everything";

  void define(CLI::App& command) {
    load.validate = true;
    load.defineDirectories(command);
    load.defineSchemas(command);
    command.add_flag("--check", isCheck, "Answer 1 when there are errors");
    defineFile(command, file);
  }

  ExitCode run() const {
    Loader loader(load);
    const Subject subject(loader, file);
    std::ostream& out = std::cout;
    startPage(out, subject.name);
    writeHeader(out, subject);
    out << "<main>\n";
    if (!subject.findings.empty()) writeProblems(out, subject, "");
    if (subject.config != nullptr) writeTree(out, subject);
    writeFiles(out, subject, "");
    out << "</main>\n";
    if (subject.config != nullptr) writeData(out, subject);
    endPage(out);
    if (subject.config == nullptr) return NOT_LOADED;
    return isCheck && subject.hasErrors() ? NO : FINE;
  }

 private:
  static void writeHeader(std::ostream& out, const Subject& subject) {
    out << "<header>\n<h1>" << inHtml(subject.name) << "</h1>\n<p>";
    if (subject.config == nullptr) {
      out << "<strong class=\"error\">does not load</strong> · ";
    } else {
      out << counted(subject.values, "value") << " · " << counted(subject.sections, "section")
          << " · ";
    }
    out << counted(subject.files.size(), "file") << " · "
        << counted(subject.findings.size(), "problem") << "</p>\n<nav aria-label=\"Contents\">";
    if (!subject.findings.empty()) out << "<a href=\"#-problems\">Problems</a> ";
    if (subject.config != nullptr) out << "<a href=\"#-values\">Values</a> ";
    out << "<a href=\"#-files\">Files</a> <a href=\"#-path\">Search path</a></nav>\n</header>\n";
    if (subject.config != nullptr) {
      out << "<form id=\"-form\" role=\"search\" hidden><input id=\"-search\" type=\"search\" "
             "aria-label=\"Search names, values and files\" placeholder=\"Search names, values and "
             "files\" autocomplete=\"off\" spellcheck=\"false\"> <select id=\"-filter\" "
             "aria-label=\"File\"><option value=\"\">all files</option>";
      for (const ListedFile& file : subject.files) {
        out << "<option>" << inHtml(file.name) << "</option>";
      }
      out << "</select></form>\n";
    }
    out << "<p id=\"-status\" role=\"status\"></p>\n<ol id=\"-results\" hidden></ol>\n";
  }

  LoadOptions load;
  bool isCheck = false;
  std::string file;
};

}  // namespace

void addPage(CLI::App& app, Chosen& chosen) {
  addCommand<Page>(app, chosen);
}

}  // namespace zuconfig
