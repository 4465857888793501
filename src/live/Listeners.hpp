// What a program has called: before something comes into force, to refuse it, and after.
//
// What these functions throw becomes a problem. They may add others, which are not called before
// the next change.
#ifndef SRC_LIVE_LISTENERS_HPP
#define SRC_LIVE_LISTENERS_HPP

#include <functional>
#include <set>
#include <vector>

#include "service/util/config/live/Engine.hpp"

namespace service::util::config::live {

class Listeners {
 public:
  using Snapshot = internal::Snapshot;
  using FieldCall = std::function<void(const Snapshot& before, const Snapshot& after)>;
  using Call = std::function<void(const std::vector<Change>& changes)>;

  explicit Listeners(const std::vector<internal::Check>& checks) : checks(checks) {}

  void add(internal::Check check) { checks.push_back(std::move(check)); }
  // field: the row of the description whose changes are told.
  void add(std::size_t field, FieldCall call) { fieldCalls.push_back({field, std::move(call)}); }
  void add(Call call) { calls.push_back(std::move(call)); }

  // Adds what the checks say of after, should it come into force.
  void check(const Snapshot& before, const Snapshot& after,
             std::vector<xml::Problem>& problems) const;

  // Tells what has come into force in these fields. Adds what failed.
  void tell(const Snapshot& before, const Snapshot& after, const std::set<std::size_t>& fields,
            const std::vector<Change>& changes, std::vector<xml::Problem>& problems) const;

 private:
  struct OfField {
    std::size_t field;
    FieldCall call;
  };

  std::vector<internal::Check> checks;
  std::vector<OfField> fieldCalls;
  std::vector<Call> calls;
};

}  // namespace service::util::config::live

#endif
