#include <unordered_set>

#include "page/html.hpp"
#include "page/sections.hpp"
#include "service/util/config/visit.hpp"
#include "shared/Comparison.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using service::util::config::spellPath;

bool isInBoth(const Compared& at) {
  return at.inA != nullptr && at.inB != nullptr;
}

// Finds the sections with a difference in them: they are open.
class DifferenceFinder : public ComparisonVisitor {
 public:
  void value(const Compared& at, const std::string& valueA, const std::string& valueB) override {
    if (isInBoth(at) && valueA == valueB) return;
    ++count;
    mark();
  }

  void enterSection(const Compared& at) override {
    around.push_back(at.path);
    if (!isInBoth(at)) mark();
  }

  void leaveSection() override { around.pop_back(); }

  std::size_t count = 0;  // of values
  std::unordered_set<std::string> sections;

 private:
  void mark() { sections.insert(around.begin(), around.end()); }

  std::vector<std::string> around;
};

class DifferenceWriter : public ComparisonVisitor {
 public:
  DifferenceWriter(std::ostream& out, const Subject& a, const Subject& b,
                   const std::unordered_set<std::string>& open)
      : out(out), a(a), b(b), open(open) {}

  void value(const Compared& at, const std::string& valueA, const std::string& valueB) override {
    const std::string start = "<li id=\"" + inHtml(at.path) + "\"><b>" + nameOf(at) + "</b>";
    if (isInBoth(at) && valueA == valueB) {
      equal += start + " = <bdi>" + inHtml(escaped(a.shown(at.inA, at.name, valueA))) + "</bdi>\n";
      ++equalCount;
      return;
    }
    out << start << "<div class=\"pair\">";
    if (at.inA != nullptr) {
      writeSide("del", a.shown(at.inA, at.name, valueA),
                placeOf(a, a.origins.of(at.inA, at.name, at.index)));
    }
    if (at.inB != nullptr) {
      writeSide("ins", b.shown(at.inB, at.name, valueB),
                placeOf(b, b.origins.of(at.inB, at.name, at.index)));
    }
    out << "</div>\n";
  }

  void enterSection(const Compared& at) override {
    finishValues();
    const bool isOpen = open.count(at.path) > 0;
    out << "<li class=\"section\"><details id=\"" << inHtml(at.path) << ".\""
        << (isOpen ? " open" : "") << "><summary><b>" << nameOf(at) << "</b>";
    if (!isInBoth(at)) {
      const char* element = at.inA != nullptr ? "del" : "ins";
      out << " <" << element << ">only in " << inHtml((at.inA != nullptr ? a : b).name) << "</"
          << element << ">";
    } else if (!isOpen) {
      out << " <span class=\"equal\">equal</span>";
    }
    out << "</summary><ul>\n";
  }

  void leaveSection() override {
    finishValues();
    out << "</ul></details>\n";
  }

  // Folds the equal values of the section that is open.
  void finishValues() {
    if (equalCount == 0) return;
    out << "<li class=\"section equal\"><details><summary>" << counted(equalCount, "equal value")
        << "</summary><ul>\n"
        << equal << "</ul></details>\n";
    equal.clear();
    equalCount = 0;
  }

 private:
  static std::string nameOf(const Compared& at) {
    return inHtml(spellPath("", at.name, at.index, at.count));
  }

  void writeSide(const char* element, const std::string& value, const std::string& place) {
    out << "<" << element << "><bdi>" << inHtml(escaped(value)) << "</bdi> " << place << "</"
        << element << ">";
  }

  std::ostream& out;
  const Subject& a;
  const Subject& b;
  const std::unordered_set<std::string>& open;
  std::string equal;  // rows that are not written yet
  std::size_t equalCount = 0;
};

}  // namespace

void writeDifferences(std::ostream& out, const Subject& a, const Subject& b) {
  DifferenceFinder finder;
  compare(a.config, b.config, finder);
  out << "<section id=\"-values\" aria-labelledby=\"-values-title\">\n"
         "<h2 id=\"-values-title\">Differences</h2>\n<p class=\"quiet\">"
      << (finder.count == 0 ? "No value" : counted(finder.count, "value"))
      << (finder.count > 1 ? " differ" : " differs") << ": <del>" << inHtml(a.name)
      << "</del> <ins>" << inHtml(b.name) << "</ins></p>\n<ul class=\"tree compare\">\n";
  DifferenceWriter writer(out, a, b, finder.sections);
  compare(a.config, b.config, writer);
  writer.finishValues();
  out << "</ul>\n</section>\n";
}

}  // namespace zuconfig
