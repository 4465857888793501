#include "live/Listeners.hpp"

#include "live/Reading.hpp"

namespace service::util::config::live {

void Listeners::check(const Snapshot& before, const Snapshot& after,
                      std::vector<xml::Problem>& problems) const {
  for (const internal::Check& run : std::vector(checks)) {
    std::vector<xml::Problem> found;
    try {
      run(before, after, found);
    } catch (...) {
      found.push_back(caught("refused", "a check failed: "));
    }
    problems.insert(problems.end(), found.begin(), found.end());
  }
}

void Listeners::tell(const Snapshot& before, const Snapshot& after,
                     const std::set<std::size_t>& fields, const std::vector<Change>& changes,
                     std::vector<xml::Problem>& problems) const {
  const auto run = [&](const auto& call, const auto&... arguments) {
    try {
      call(arguments...);
    } catch (...) {
      problems.push_back(caught("callback-failed", "a function that is told failed: "));
    }
  };
  for (const OfField& one : std::vector(fieldCalls)) {
    if (fields.count(one.field) > 0) run(one.call, before, after);
  }
  for (const Call& call : std::vector(calls)) run(call, changes);
}

}  // namespace service::util::config::live
