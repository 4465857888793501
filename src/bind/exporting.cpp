// The way of settings from their program into the list of a file, and the form of that file.

#include <cutil/cutil.h>

#include <algorithm>

#include "bind/Path.hpp"
#include "bind/Store.hpp"
#include "bind/elements.hpp"
#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/Character.hpp"
#include "cppUtil/internal/text.hpp"
#include "service/util/config/visit.hpp"

namespace service::util::config::bind::internal {

namespace {

// More is no program but structs that hold each other in turn.
constexpr std::size_t mostSettings = 100'000;

class Export {
 public:
  explicit Export(Exported& exported) : exported(exported) {}

  // prefix: of the environment; of repeated sections none.
  void add(const Description& description, const void* object, const std::string& path,
           const std::string& prefix) {
    for (const auto& row : description.rows) {
      if (exported.settings.size() == mostSettings) {
        throw cppUtil::err::Exception(CU_INVALID_ARGUMENT, 0, "src/bind",
                                      "Settings service::util::config::bind::Settings::of()",
                                      __LINE__, "more settings than a file can describe");
      }
      Said& said = exported.settings.emplace_back();
      said = *row;
      exported.settings.back().path = extended(path, row->name);
      if (row->isSetting()) {
        addValue(*row, object, prefix);
      } else {
        addSection(*row, object, prefix);
      }
    }
  }

 private:
  // A struct that is being added, as it is in itself, and the path of its sections.
  struct Around {
    const Description* description;
    std::string path;
  };

  void addValue(const Row& row, const void* object, const std::string& prefix) {
    Described& described = exported.settings.back();
    const ValueRules& rules = row.value;
    described.type = rules.kind;
    if (rules.kind == Kind::INTEGER || rules.kind == Kind::FLOATING ||
        rules.kind == Kind::DURATION) {
      described.bits = 8 * rules.bytes;
      described.isSigned = rules.isSigned && !rules.isFloating;
    }
    if (rules.kind == Kind::DURATION) {
      described.isFloating = rules.isFloating;
      described.resolution = {rules.numerator, rules.denominator};
    }
    if (rules.bareUnit) described.bareUnit = *printUnit(rules, *rules.bareUnit);
    if (rules.least) {
      described.lowest = print(rules, *rules.least);
      described.highest = print(rules, *rules.greatest);
    }
    addNames(rules.names, described);
    described.variable = variableOf(row, prefix);
    if (row.isRequired) return;
    if (rules.kind == Kind::SECRET) {
      if (row.isSeveral())
        described.defaultCount = static_cast<std::uint32_t>(countOf(row, object));
      return;
    }
    for (std::string& text : textsOf(row, object)) described.defaults.emplace_back(std::move(text));
  }

  static void addNames(const NameList& names, Described& described) {
    bool hasAlias = false;
    for (const auto& named : names) {
      const auto first = std::find_if(names.begin(), names.end(), [&](const auto& other) {
        return other.second == named.second;
      });
      described.numbers.push_back(static_cast<std::uint32_t>(first - names.begin()));
      hasAlias |= described.numbers.back() != described.names.size();
      described.names.emplace_back(named.first);
    }
    if (!hasAlias) described.numbers.clear();
  }

  void addSection(const Row& row, const void* object, const std::string& prefix) {
    const Description& below = row.below();
    const Holder& holder = *row.member.holder;
    const bool isRepeated = row.form == Holder::SECTIONS;
    Described& described = exported.settings.back();
    described.isOpen = row.isOpen || below.isOpen;
    described.hasChecks = !below.checks.empty();
    described.variablePrefix = below.variablePrefix;
    if (row.isKeyed) described.key = row.key().name;
    if (isRepeated && !row.isRequired) {
      described.defaultCount = static_cast<std::uint32_t>(countOf(row, object));
    }
    const std::string path = described.path;
    const auto addBelow = [&](const void* section) {
      add(below, section, path, isRepeated ? "" : prefixBelow(below, prefix, row.name));
    };
    const void* section = isRepeated ? nullptr : row.in(object);
    if (holder.shape == Holder::OPTIONAL) section = holder.value(section);
    if (section != nullptr) return addBelow(section);

    // The struct as it is initialised, and so the same within itself.
    const auto same = std::find_if(around.begin(), around.end(), [&](const Around& outer) {
      return outer.description == &below;
    });
    if (same != around.end()) {
      described.like = same->path;
      return;
    }
    around.push_back({&below, path});
    Viewing viewing(addBelow);
    holder.viewDefault(viewing);
    around.pop_back();
  }

  Exported& exported;
  std::vector<Around> around;
};

}  // namespace

Exported exportedFrom(const Struct& type, const void* object) {
  const Description& description = type.fields().get();
  Exported exported;
  exported.isOpen = description.isOpen;
  exported.hasChecks = !description.checks.empty();
  exported.variablePrefix = description.variablePrefix;
  Export(exported).add(description, object, "", description.variablePrefix);
  return exported;
}

// In quotes where blanks would be lost or nothing would be left.
std::string print(const Text& text) {
  if (text.empty() || text.front() == ' ' || text.back() == ' ' || text.front() == '"') {
    return text.empty() ? "\"\"" : spellName(text);
  }
  for (std::size_t at = 0; at < text.size();) {
    const cppUtil::internal::Character character(text.data() + at, text.size() - at);
    if (!character.isValid() || !cppUtil::internal::isSafe(character.code)) return spellName(text);
    at += character.step();
  }
  return text;
}

std::optional<Text> parse(Is<Text> /*text*/, const std::string& text) {
  if (text.empty() || text.front() != '"') return Text(text);
  if (text == "\"\"") return Text();
  const Path path = parsePath(text);
  if (path.size() != 1 || path.front().index) return std::nullopt;
  return Text(path.front().name);
}

std::string print(const Ratio& ratio) {
  return std::to_string(ratio.numerator) + "/" + std::to_string(ratio.denominator);
}

std::optional<Ratio> parse(Is<Ratio> /*ratio*/, const std::string& text) {
  ValueRules rules;
  rules.kind = Kind::INTEGER;
  rules.bytes = sizeof(std::int64_t);
  rules.isSigned = true;
  Ratio ratio;
  const auto slash = text.find('/');
  if (slash == text.npos || internal::parse(rules, text.substr(0, slash), &ratio.numerator) ||
      internal::parse(rules, text.substr(slash + 1), &ratio.denominator) || ratio.numerator < 1 ||
      ratio.denominator < 1) {
    return std::nullopt;
  }
  return ratio;
}

Names<Holder::Form> names(Is<Holder::Form> /*form*/) {
  return {{"setting", Holder::SETTING},
          {"list", Holder::LIST},
          {"section", Holder::SECTION},
          {"sections", Holder::SECTIONS}};
}

Names<Kind> names(Is<Kind> /*kind*/) {
  return {{"text", Kind::TEXT},         {"boolean", Kind::BOOLEAN},
          {"integer", Kind::INTEGER},   {"floating", Kind::FLOATING},
          {"path", Kind::PATH},         {"enumeration", Kind::ENUMERATION},
          {"duration", Kind::DURATION}, {"bytes", Kind::BYTES},
          {"secret", Kind::SECRET},     {"custom", Kind::CUSTOM}};
}

Fields describe(Is<Described> /*described*/) {
  return {field<&Described::path>("path").required(),
          field<&Described::form, Described>("form").required(),
          field<&Described::type>("type"),
          field<&Described::bits>("bits").range(0, 128),
          field<&Described::isSigned>("signed"),
          field<&Described::isFloating>("floating"),
          field<&Described::resolution>("resolution"),
          field<&Described::bareUnit>("bareUnit"),
          field<&Described::lowest>("least"),
          field<&Described::highest>("greatest"),
          list<&Described::names>("name"),
          list<&Described::numbers>("number"),
          list<&Described::defaults>("default"),
          field<&Described::defaultCount>("defaultCount"),
          field<&Described::isRequired, Described>("required"),
          field<&Described::isOptional, Described>("optional"),
          field<&Described::isForStart, Described>("restart"),
          field<&Described::least, Described>("leastCount"),
          field<&Described::most, Described>("greatestCount"),
          field<&Described::key>("keyedBy"),
          field<&Described::like>("like"),
          field<&Described::isOpen, Described>("open"),
          field<&Described::hasChecks>("checks"),
          list<&Described::formerNames, Described>("formerly"),
          field<&Described::text, Described>("about"),
          field<&Described::sample, Described>("example"),
          field<&Described::variable, Described>("variable"),
          field<&Described::variablePrefix>("variablePrefix")};
}

Fields describe(Is<Exported> /*exported*/) {
  return {field<&Exported::format>("format").range(1, 1).required(),
          field<&Exported::isOpen>("open"), field<&Exported::hasChecks>("checks"),
          field<&Exported::variablePrefix>("variablePrefix"),
          sections<&Exported::settings>("setting")};
}

}  // namespace service::util::config::bind::internal
