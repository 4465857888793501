#include "live/Settings.hpp"

#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "bind/Path.hpp"
#include "bind/elements.hpp"
#include "service/util/config/visit.hpp"

namespace service::util::config::live {

using namespace bind::internal;

namespace {

constexpr const char* masked = "***";

// A part of a key; names hold no zero byte.
std::string keyPart(const std::string& name, const std::string& which) {
  return name + '\0' + which + '\0';
}

class Lister {
 public:
  explicit Lister(const Survey& survey) {
    for (const Surveyed& entry : survey.entries) surveyed.emplace(entry.path, &entry);
  }

  void list(const Description& description, const void* object, const std::string& key,
            const std::string& path) {
    for (std::size_t at = 0; at < description.rows.size(); ++at) {
      if (key.empty()) field = at;
      const Row& row = *description.rows[at];
      if (row.isSetting()) {
        listTexts(row, object, key, path);
      } else if (row.form == Holder::SECTION) {
        listSection(row, object, key, path);
      } else {
        listSections(row, object, key, path);
      }
    }
  }

  Settings settings;

 private:
  const Surveyed* at(const std::string& path) const {
    const auto found = surveyed.find(path);
    return found == surveyed.end() ? nullptr : found->second;
  }

  void listTexts(const Row& row, const void* object, const std::string& key,
                 const std::string& path) {
    const auto values = textsOf(row, object);
    const auto count = static_cast<std::uint32_t>(values.size());
    const Surveyed* entry = at(extended(path, row.name));
    for (std::uint32_t i = 0; i < count; ++i) {
      const bool isGiven = entry != nullptr && i < entry->inForce.size();
      const std::string shown = isGiven ? entry->inForce[i].text : values[i];
      settings.push_back({key + keyPart(row.name, std::to_string(i)),
                          extended(path, row.name, i, count), values[i],
                          row.value.kind == Kind::SECRET ? masked : shown,
                          isGiven ? entry->inForce[i].location : xml::Location(), field});
    }
  }

  void listSection(const Row& row, const void* object, const std::string& key,
                   const std::string& path) {
    const void* member = row.in(object);
    const bool isOptional = row.member.holder->shape == Holder::OPTIONAL;
    const void* below = isOptional ? row.member.holder->value(member) : member;
    if (below == nullptr) return;
    const std::string keyBelow = key + keyPart(row.name, "");
    const std::string pathBelow = extended(path, row.name);
    if (isOptional) settings.push_back({keyBelow, pathBelow, "", "", {}, field});
    list(row.below(), below, keyBelow, pathBelow);
  }

  void listSections(const Row& row, const void* object, const std::string& key,
                    const std::string& path) {
    const auto count = static_cast<std::uint32_t>(countOf(row, object));
    std::unordered_map<std::string, std::uint32_t> indices;  // a map has an order of its own
    for (std::uint32_t i = 0; row.isKeyed && i < count; ++i) {
      const Surveyed* entry = at(extended(path, row.name, i, count));
      if (entry != nullptr) indices.emplace(entry->key, i);
    }
    std::uint32_t next = 0;
    const auto listOne = [&](const void* element) {
      const std::string name = row.isKeyed ? keyOf(row, element) : std::to_string(next);
      const auto found = indices.find(name);
      const std::uint32_t index = found == indices.end() ? next : found->second;
      ++next;
      const std::string keyBelow = key + keyPart(row.name, name);
      const std::string pathBelow = extended(path, row.name, index, count);
      settings.push_back({keyBelow, pathBelow, "", "", {}, field});
      list(row.below(), element, keyBelow, pathBelow);
    };
    Viewing viewing(listOne);
    row.member.holder->each(row.in(object), viewing);
  }

  std::unordered_map<std::string, const Surveyed*> surveyed;  // by path
  std::size_t field = 0;
};

class ConfigLister : public Visitor {
 public:
  explicit ConfigLister(const xml::Origins& origins) : origins(origins) {}

  void property(const Visited& visited, const std::string& value) override {
    settings.push_back({keys.back() + keyPart(visited.name, std::to_string(visited.index)),
                        visited.path, value, value,
                        placeOf(origins.of(visited.parent, visited.name, visited.index)), 0});
  }

  // Properties and sections have names of their own; a section's key has one more zero byte.
  bool enterSection(const Visited& visited, const IConfigPtr& /*section*/) override {
    keys.push_back(keys.back() + '\0' + keyPart(visited.name, std::to_string(visited.index)));
    settings.push_back({keys.back(), visited.path, "", "",
                        placeOf(origins.ofSection(visited.parent, visited.name, visited.index)),
                        0});
    return true;
  }

  void leaveSection(const Visited& /*visited*/, const IConfigPtr& /*section*/) override {
    keys.pop_back();
  }

  Settings settings;

 private:
  static xml::Location placeOf(const xml::Origins::Origin& origin) {
    if (origin.file == nullptr) return {};
    return {origin.file->path, origin.line, origin.column};
  }

  const xml::Origins& origins;
  std::vector<std::string> keys{""};  // of the sections that are entered, outermost first
};

}  // namespace

Settings settingsOf(const Description& description, const void* object, const Survey& survey) {
  Lister lister(survey);
  lister.list(description, object, "", "");
  return std::move(lister.settings);
}

Settings settingsOf(const IConfigPtr& config, const xml::Origins& origins) {
  ConfigLister lister(origins);
  visit(config, lister);
  return std::move(lister.settings);
}

std::string keyOf(const Row& row, const void* element) {
  const Row& key = row.key();
  return print(key.value, key.in(element));
}

Change Difference::change(bool needsRestart) const {
  Change change = {any().path, {}, {}, {}, {}, needsRestart};
  if (before != nullptr) {
    change.before = before->text;
    change.beforeLocation = before->place;
  }
  if (after != nullptr) {
    change.after = after->text;
    change.afterLocation = after->place;
  }
  return change;
}

std::vector<Difference> differences(const Settings& before, const Settings& after) {
  std::unordered_map<std::string_view, const Setting*> known;
  for (const Setting& setting : before) known.emplace(setting.key, &setting);
  std::vector<Difference> found;
  for (const Setting& setting : after) {
    const auto same = known.find(setting.key);
    const Setting* old = same == known.end() ? nullptr : same->second;
    if (old == nullptr || old->value != setting.value) found.push_back({old, &setting});
    if (old != nullptr) known.erase(same);
  }
  for (const Setting& setting : before) {
    if (known.count(setting.key) > 0) found.push_back({&setting, nullptr});
  }
  return found;
}

}  // namespace service::util::config::live
