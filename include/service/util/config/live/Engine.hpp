// What all Lives have in common, and the library's side of them: Live.hpp is the header for
// programs.
#ifndef SERVICE_UTIL_CONFIG_LIVE_ENGINE_HPP
#define SERVICE_UTIL_CONFIG_LIVE_ENGINE_HPP

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/bind.hpp"

namespace service::util::config::live {

// A setting that is another one than before.
struct Change {
  std::string path;  // as problems have it: "broker.port"; a section that comes or goes has its own

  // As it stands in the file, or the default as text. Nothing when it is not there, empty for a
  // section. A secret is three asterisks.
  std::optional<std::string> before;
  std::optional<std::string> after;

  // Where it stands, as in xml::Problem: without a file for a default, "environment NAME" or
  // "command line" for what is not from a file.
  xml::Location beforeLocation;
  xml::Location afterLocation;

  bool needsRestart;  // it takes effect when the program starts again
};

namespace internal {

enum Outcome { UNCHANGED, CHANGED, REFUSED };

struct Result {
  Outcome outcome = UNCHANGED;
  std::vector<xml::Problem> problems;
  std::vector<Change> changes;
};

// A snapshot, whatever its type.
using Snapshot = std::shared_ptr<const void>;

// The table through which the library reaches into the type of a Live.
struct Followed {
  std::uint32_t size;
  const bind::internal::Struct* structure;  // null for plain configurations
  std::shared_ptr<void> (*make)();          // of the structure
};

// The snapshot in force, for other threads.
class ZU_EXPORT Published {
 public:
  Snapshot get() const;

  std::atomic<std::uint32_t> version{0};  // another one for another snapshot

 private:
  friend class Engine;
  Published() = default;
  void set(const Snapshot& next);

  Snapshot snapshot;
};

using Check = std::function<void(const Snapshot& now, const Snapshot& next,
                                 std::vector<xml::Problem>& problems)>;

// What the Options of a Live hold. Copies are the same options.
class ZU_EXPORT Choices {
 public:
  Choices();
  Choices(const Choices& other);
  Choices& operator=(const Choices& other);
  ~Choices();

  void keepLastGood(const std::string& path);
  void overrides(const bind::Overrides& overrides);
  void slowPoll(std::chrono::nanoseconds time);
  void onCheck(Check check);

  struct Held;
  Held& get() const { return *held; }

 private:
  std::shared_ptr<Held> held;
};

class ZU_EXPORT Engine {
 public:
  Engine(const Followed& type, const std::string& file, const xml::SchemeList& schemes,
         bool validate, const Choices& choices);
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  int fd() const;
  Result poll();
  const std::vector<xml::Problem>& problems() const;
  const std::vector<Change>& needsRestart() const;
  const xml::Origins& origins() const;
  const std::shared_ptr<const Published>& published() const;

  void onCheck(Check check);
  // offset: where the member stands in the struct.
  void onChange(std::uint32_t offset,
                std::function<void(const Snapshot& before, const Snapshot& after)> call);
  void onChange(std::function<void(const std::vector<Change>& changes)> call);

 private:
  struct ZU_NO_EXPORT State;
  std::unique_ptr<State> state;
};

}  // namespace internal

}  // namespace service::util::config::live

#endif
