#include "service/util/locator/SearchOrder.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <functional>
#include <set>
#include <system_error>

namespace service::util::locator {

namespace {

std::string join(const std::string& directory, const std::string& name) {
  const bool needsSlash = !directory.empty() && directory.back() != '/';
  return directory + (needsSlash ? "/" : "") + name;
}

// The full name of a file that is found under name; empty when the current directory is gone.
std::string absolute(const std::string& name) {
  if (!name.empty() && name.front() == '/') return name;
  std::error_code ignored;
  const std::string current = std::filesystem::current_path(ignored);
  return current.empty() ? "" : join(current, name);
}

}  // namespace

Identity identityOf(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) == 0) return {status.st_dev, status.st_ino};
  return {0, static_cast<ino_t>(std::hash<std::string>()(path))};
}

SearchOrder::SearchOrder() {
  std::set<std::uint32_t> listed;
  for (const std::string& entry : ConfigLocator::getEntries()) {
    const std::uint32_t directory = numberOf(entry);
    if (!listed.insert(directory).second) continue;
    initial.push_back({&numbers.find(entry)->first, directory, 0});
  }
}

std::uint32_t SearchOrder::numberOf(const std::string& spelling) {
  const auto next = static_cast<std::uint32_t>(names.size());
  const auto [number, isNewSpelling] = numbers.emplace(spelling, next);
  if (!isNewSpelling) return number->second;
  std::error_code error;
  const std::string path = spelling.empty() ? "." : spelling;
  const auto [entry, isNew] = known.emplace(identityOf(path), next);
  number->second = entry->second;
  if (isNew) {
    names.push_back(std::filesystem::canonical(path, error).string());
    isPushed.push_back(0);
  }
  return number->second;
}

void SearchOrder::add(const std::string* spelling, std::uint32_t directory) {
  const std::size_t state =
      states.emplace(std::make_pair(getState(), directory), states.size() + 1).first->second;
  pushed.push_back({spelling, directory, state});
}

void SearchOrder::push(const std::string& directory) {
  const std::uint32_t number = numberOf(directory);
  const auto isSame = [number](const Entry& entry) { return entry.directory == number; };
  const auto last = std::find_if(pushed.rbegin(), pushed.rend(), isSame);
  // A directory that is there already moves to the front.
  const auto place = last == pushed.rend() ? pushed.end() : std::prev(last.base());
  Push push = {static_cast<std::size_t>(place - pushed.begin()), {place, pushed.end()}};
  pushed.resize(push.place);
  for (std::size_t i = 1; i < push.entries.size(); ++i) {
    add(push.entries[i].spelling, push.entries[i].directory);
  }
  add(&numbers.find(directory)->first, number);
  isPushed[number] = 1;
  pushes.push_back(std::move(push));
}

void SearchOrder::pop() {
  const Push& last = pushes.back();
  if (last.entries.empty()) isPushed[pushed.back().directory] = 0;
  pushed.resize(last.place);
  pushed.insert(pushed.end(), last.entries.begin(), last.entries.end());
  pushes.pop_back();
}

template <class Visit>
void SearchOrder::forEach(const Visit& visit) const {
  for (auto entry = pushed.rbegin(); entry != pushed.rend(); ++entry) visit(*entry);
  for (const Entry& entry : initial) {
    if (!isPushed[entry.directory]) visit(entry);
  }
}

std::vector<ConfigLocator::Match> SearchOrder::findAll(const std::string& name) {
  std::vector<ConfigLocator::Match> matches;
  if (name.empty()) return matches;
  if (name.front() == '/' || !ConfigLocator::tellsEntries()) {
    const std::string file = ConfigLocator::find(name);
    if (!file.empty()) matches.push_back({"", file});
    return matches;
  }
  std::set<Identity> files;
  forEach([&](const Entry& entry) {
    const std::string& directory = names[entry.directory];
    const std::string spelled = join(*entry.spelling, name);
    if (directory.empty() || spelled.size() >= PATH_MAX) return;
    // The platform judges what a match is; it looks at an absolute name by itself.
    const std::string file = ConfigLocator::find(join(directory, name));
    if (file.empty() || !files.insert(identityOf(file)).second) return;
    matches.push_back({*entry.spelling, absolute(spelled)});
  });
  return matches;
}

std::vector<std::string> SearchOrder::list(std::size_t most, std::size_t& count) const {
  std::vector<std::string> list;
  count = 0;
  forEach([&](const Entry& entry) {
    const std::string& name = names[entry.directory];
    if (count++ < most) list.push_back(name.empty() ? *entry.spelling : name);
  });
  return list;
}

}  // namespace service::util::locator
