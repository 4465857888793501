// Descriptions made of the list of a file, which may say anything.

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>

#include "bind/Path.hpp"
#include "bind/Store.hpp"
#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

namespace {

using cppUtil::internal::quoted;

// Beyond what programs have. Each section needs stack where it is read.
constexpr std::size_t deepest = 100;
constexpr std::size_t longestPath = 4096;

std::optional<Number> numberFrom(const ValueRules& rules, const std::string& text) {
  alignas(std::max_align_t) std::array<unsigned char, sizeof(std::max_align_t)> value{};
  if (!rules.isOrdered() || parse(rules, text, value.data())) return std::nullopt;
  return load(rules, value.data());
}

bool isSizeOf(const ValueRules& rules, std::uint32_t bits) {
  static const std::set<std::uint32_t> whole = {8, 16, 32, 64};
  static const std::set<std::uint32_t> floating = {32, 64, 96, 128};  // of long double, too
  return (rules.isFloating ? floating : whole).count(bits) > 0;
}

bool isNumber(Kind kind) {
  return kind == Kind::INTEGER || kind == Kind::FLOATING || kind == Kind::DURATION;
}

class Builder {
 public:
  Builder(Store& store, const TellFault& tell) : store(store), tell(tell) {}

  void build() {
    const Exported& exported = store.exported;
    Description& top = store.descriptions.emplace_back();
    top.isOpen = exported.isOpen;
    top.variablePrefix = exported.variablePrefix;
    sections.push_back({&top, {}, false});
    at[""] = 0;
    for (number = 0; number < exported.settings.size(); ++number) {
      try {
        add(exported.settings[number]);
      } catch (const cppUtil::err::Exception& e) {  // the path is none
        tell(number, e.getMessage());
      }
    }
    for (const auto& [row, where] : keyed) requireKey(*row, where);
    for (Description& description : store.descriptions) description.index();
  }

 private:
  // A section that was added, by its path.
  struct Section {
    Description* description;
    std::set<std::pair<bool, std::string>> names;  // of settings and of sections
    bool isRepeated;                               // it, or one around it
  };

  void fault(const std::string& message) const { tell(number, message); }

  void add(const Described& described) {
    Path path = parsePath(described.path.substr(0, longestPath));
    const bool hasIndex =
        std::any_of(path.begin(), path.end(), [](const PathPart& part) { return part.index; });
    if (hasIndex || path.size() > deepest || described.path.size() > longestPath) {
      return fault("no path of a setting");
    }
    const std::string name = path.back().name;
    path.pop_back();
    std::string outer;
    for (const PathPart& part : path) outer = extended(outer, part.name);
    const auto found = at.find(outer);
    if (found == at.end()) return fault("no section " + quoted(outer) + " before it");

    const auto row = std::make_shared<Row>();
    row->described = &described;
    row->name = name;
    static_cast<Said&>(*row) = described;
    row->isKeyed = !described.key.empty();
    row->defaultCount = std::max<std::size_t>(described.defaults.size(), described.defaultCount);
    Section& section = sections[found->second];
    addNames(*row, section);
    const bool isRepeated = section.isRepeated;
    section.description->rows.push_back(row);
    if (row->isSetting()) {
      fillValue(*row, isRepeated);
    } else {
      addSection(row, extended(outer, name), isRepeated || row->form == Holder::SECTIONS);
    }
  }

  void addNames(const Row& row, Section& section) const {
    std::vector<Text> all = row.formerNames;
    all.emplace_back(row.name);
    for (const std::string& name : all) {
      if (!section.names.emplace(row.isSetting(), name).second) {
        fault("the name " + quoted(name) + " is used twice, former ones included");
      }
    }
    if (row.least > row.most) fault("no count is in its range");
    if (row.isSeveral() && !row.isRequired && row.defaultCount > row.most) {
      fault("its default has more than its count allows");
    }
  }

  void fillValue(Row& row, bool isRepeated) {
    const Described& described = *row.described;
    ValueRules& rules = row.value;
    if (!described.type) return fault("its type is missing");
    rules = rulesOf(described);
    if (isNumber(rules.kind) && !isSizeOf(rules, described.bits)) {
      return fault("no number has so many bits");
    }
    if (!described.bareUnit.empty() && !rules.bareUnit) {
      fault("its type and its bare unit do not go together");
    }
    fillRange(row);
    fillNames(row);
    if (!row.variable.empty() && (isRepeated || !variables.insert(row.variable).second)) {
      fault("its variable is that of another setting, too");
    }
    for (const std::string& text : described.defaults) requireFit(rules, text, "default");
    if (!row.sample.empty()) requireFit(rules, row.sample, "example");
  }

  void fillRange(Row& row) const {
    const Described& described = *row.described;
    if (described.lowest.empty() && described.highest.empty()) return;
    ValueRules& rules = row.value;
    const auto least = numberFrom(rules, described.lowest);
    const auto greatest = numberFrom(rules, described.highest);
    if (!least || !greatest) return fault("its type and its range do not go together");
    if (*greatest < *least) fault("no value is in its range");
    rules.least = least;
    rules.greatest = greatest;
  }

  void fillNames(Row& row) const {
    const Described& described = *row.described;
    const auto& numbers = described.numbers;
    if (row.value.kind == Kind::ENUMERATION && described.names.empty()) {
      fault("its enumeration has no names");
    }
    if (!numbers.empty() && numbers.size() != described.names.size()) {
      fault("not every name has its number");
    }
    std::set<std::string> known;
    for (std::size_t i = 0; i < described.names.size(); ++i) {
      const std::string& name = described.names[i];
      if (!known.insert(name).second) fault("two values are called " + quoted(name));
      row.value.names.emplace_back(name, i < numbers.size() ? numbers[i] : i);
    }
  }

  void requireFit(const ValueRules& rules, const std::string& text, const char* what) const {
    if (const auto misfit = parse(rules, text, nullptr)) {
      fault("its " + std::string(what) + ": " + misfit->message);
    }
  }

  void addSection(const std::shared_ptr<Row>& row, const std::string& path, bool isRepeated) {
    const Described& described = *row->described;
    if (row->isKeyed) keyed.emplace_back(row, number);
    if (row->form == Holder::SECTIONS) repeating.insert(path);
    if (described.like.empty()) {
      Description& below = store.descriptions.emplace_back();
      below.variablePrefix = described.variablePrefix;
      row->stored = &below;
      at[path] = sections.size();
      sections.push_back({&below, {}, isRepeated});
      return;
    }
    // Only with repetition in between: a section in itself would have no end.
    const auto same = at.find(described.like);
    const bool isAround = path.rfind(described.like + ".", 0) == 0;
    if (same == at.end() || !isAround || !repeatsBetween(described.like, path, row->form)) {
      fault("no section around it is " + quoted(described.like) + ", or none repeats");
      row->stored = &store.descriptions.front();
      return;
    }
    row->stored = sections[same->second].description;
  }

  // Whether a section below outer, on the way to path, repeats; or that at path, of form.
  bool repeatsBetween(const std::string& outer, const std::string& path, Holder::Form form) const {
    if (form == Holder::SECTIONS) return true;
    auto end = path.rfind('.');
    for (; end != path.npos && end > outer.size(); end = path.rfind('.', end - 1)) {
      if (repeating.count(path.substr(0, end)) > 0) return true;
    }
    return false;
  }

  void requireKey(const Row& row, std::size_t where) const {
    const auto& rows = row.below().rows;
    const bool isDescribed = std::any_of(rows.begin(), rows.end(), [&](const auto& below) {
      return below->form == Holder::SETTING && below->name == row.described->key &&
             below->value.kind != Kind::SECRET;
    });
    if (!isDescribed || row.form != Holder::SECTIONS) {
      tell(where, "its key is no setting of its sections");
    }
  }

  Store& store;
  const TellFault& tell;
  std::size_t number = 0;  // of the setting that is being added
  std::vector<Section> sections;
  std::map<std::string, std::size_t> at;  // the sections by path
  std::set<std::string> repeating;        // paths of those that repeat
  std::set<std::string> variables;
  std::vector<std::pair<std::shared_ptr<const Row>, std::size_t>> keyed;  // with their numbers
};

}  // namespace

ValueRules rulesOf(const Described& described) {
  ValueRules rules;
  if (!described.type) return rules;
  rules.kind = *described.type;
  rules.isFloating =
      rules.kind == Kind::FLOATING || (rules.kind == Kind::DURATION && described.isFloating);
  rules.isSigned = described.isSigned;
  rules.bytes = isNumber(rules.kind) ? described.bits / 8 : sizeof(std::uint64_t);
  rules.numerator = described.resolution.numerator;
  rules.denominator = described.resolution.denominator;
  rules.bareUnit = parseUnit(rules, described.bareUnit);
  return rules;
}

void build(Store& store, const TellFault& tell) {
  Builder(store, tell).build();
}

}  // namespace service::util::config::bind::internal
