#include "service/util/config/xml/Origins.hpp"

#include <algorithm>
#include <tuple>

namespace service::util::config::xml {

namespace {

// The order of records, by what they are looked up by.
constexpr auto isBefore = [](const auto& a, const auto& b) {
  const auto key = [](const auto& record) {
    return std::make_tuple(reinterpret_cast<std::uintptr_t>(record.config), record.kind,
                           record.name, record.index);
  };
  return key(a) < key(b);
};

}  // namespace

Origins::~Origins() = default;

Origins::Origin Origins::of(const IConfigPtr& config, const std::string& name,
                            std::uint32_t index) const {
  return find(VALUE, config, name, index);
}

Origins::Origin Origins::ofSection(const IConfigPtr& config, const std::string& name,
                                   std::uint32_t index) const {
  return find(SECTION, config, name, index);
}

void Origins::fileEntered(const File& file) {
  if (file.includer == nullptr) {
    root = nullptr;
    files.clear();
    open.clear();
    names.clear();
    records.clear();
  }
  const File* includer = open.empty() ? nullptr : &files[open.back()];
  open.push_back(static_cast<std::uint32_t>(files.size()));
  files.push_back(file);
  files.back().includer = includer;
}

void Origins::sectionAdded(const IConfigPtr& parent, const std::string& name, std::uint32_t index,
                           const IConfigPtr& /*section*/, const Location& location) {
  add(SECTION, parent, name, index, location);
}

void Origins::propertyAdded(const IConfigPtr& config, const std::string& name, std::uint32_t index,
                            const Location& location) {
  add(VALUE, config, name, index, location);
}

void Origins::fileLeft(const File& /*file*/) {
  open.pop_back();
  if (!open.empty()) return;
  std::sort(records.begin(), records.end(), isBefore);
  records.shrink_to_fit();
}

// The first addition of a load is to the configuration itself.
void Origins::add(Kind kind, const IConfigPtr& config, const std::string& name, std::uint32_t index,
                  const Location& location) {
  if (root == nullptr) root = config;
  const auto id = names.try_emplace(name, static_cast<std::uint32_t>(names.size())).first->second;
  records.push_back({config.get(), kind, id, index, open.back(), location.line, location.column});
}

Origins::Origin Origins::find(Kind kind, const IConfigPtr& config, const std::string& name,
                              std::uint32_t index) const {
  const auto id = names.find(name);
  if (id == names.end()) return {};
  const Record wanted = {config.get(), kind, id->second, index, 0, 0, 0};
  const auto found = std::lower_bound(records.begin(), records.end(), wanted, isBefore);
  if (found == records.end() || isBefore(wanted, *found)) return {};
  return {&files[found->file], found->line, found->column};
}

}  // namespace service::util::config::xml
