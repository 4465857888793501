#include "service/util/config/live/Engine.hpp"

#include <cutil/cutil.h>

#include <algorithm>
#include <optional>
#include <set>
#include <unordered_map>

#include "cppUtil/err/Exception.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "live/Choices.hpp"
#include "live/LastGood.hpp"
#include "live/Listeners.hpp"
#include "live/Reading.hpp"
#include "live/Trigger.hpp"

namespace service::util::config::live::internal {

using cppUtil::err::Exception;

namespace {

// How often files that change while they are read are read again at once.
constexpr int mostReadings = 10;

bool hasError(const std::vector<xml::Problem>& problems) {
  return std::any_of(problems.begin(), problems.end(), [](const xml::Problem& problem) {
    return problem.severity == xml::Severity::ERROR;
  });
}

bool areEqual(const std::vector<xml::Problem>& a, const std::vector<xml::Problem>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& one, const auto& other) {
    return bind::toText(one) == bind::toText(other);
  });
}

// The settings by their keys.
class Index {
 public:
  explicit Index(const Settings& settings) {
    for (const Setting& setting : settings) known.emplace(setting.key, &setting);
  }

  const Setting* find(const std::string& key) const {
    const auto found = known.find(key);
    return found == known.end() ? nullptr : found->second;
  }

 private:
  std::unordered_map<std::string, const Setting*> known;
};

bool isSame(const Setting* a, const Setting* b) {
  return a == nullptr || b == nullptr ? a == b : a->value == b->value;
}

}  // namespace

Snapshot Published::get() const {
  return std::atomic_load(&snapshot);
}

void Published::set(const Snapshot& next) {
  std::atomic_store(&snapshot, next);
  version.fetch_add(1, std::memory_order_release);
}

struct Engine::State {
  // Of which files the program was told that they are not taken, and why.
  struct Refused {
    Places places;
    std::vector<xml::Problem> problems;
  };

  State(const Followed& type, Source source, const Choices::Held& choices)
      : type(type),
        source(std::move(source)),
        overrides(choices.overrides),
        clock(choices.clock),
        lastGood(choices.lastGood),
        trigger(*clock, choices.slowPoll),
        listeners(choices.checks) {}

  void start();
  void startFromLastGood(const Reading& wrong);
  void enforce(const Reading& reading);
  std::optional<Reading> read();
  Result take(Reading& reading);
  void accept(Reading& reading, Result& result);
  Settings keepForStart(const Reading& reading) const;
  void store(const Reading& reading, std::vector<xml::Problem>& problems) const;

  const Followed& type;
  const Source source;
  const bind::Overrides overrides;
  const std::shared_ptr<const Clock> clock;
  const LastGood lastGood;
  Trigger trigger;
  Listeners listeners;

  Snapshot now;
  std::shared_ptr<const Published> shared;
  Published* published = nullptr;  // shared
  std::shared_ptr<const ObservedLoad> origins;
  Settings files;    // what the files say
  Settings inForce;  // the same but for what waits for a restart
  std::vector<Change> waiting;
  std::optional<Refused> refused;
  bool isUntold = false;  // that is refused which the program started without
  bool isPolling = false;
};

std::optional<Reading> Engine::State::read() {
  for (int i = 0; i < mostReadings; ++i) {
    Reading reading(type, source, overrides);
    const bool hasMoved = trigger.follow(reading.origins->getPlaces());
    if (!hasMoved && !reading.origins->hasMissed()) return reading;
  }
  trigger.again();
  return std::nullopt;
}

void Engine::State::start() {
  std::optional<Reading> reading = read();
  if (!reading) {
    throw Exception(CU_INVALID_ARGUMENT, 0, "src/live",
                    "service::util::config::Live<S>::Live(const std::string&, const SchemeList&, "
                    "bool)",
                    __LINE__, "the files change all the time");
  }
  if (reading->isGood) {
    listeners.check(reading->object, reading->object, reading->problems);
    reading->isGood = !hasError(reading->problems);
  }
  if (!reading->isGood) return startFromLastGood(*reading);
  store(*reading, reading->problems);
  enforce(*reading);
  for (const xml::Problem& problem : reading->problems) {
    cppUtil::logger::Logger logger(CU_WARNING);
    logger << bind::toText(problem);
    logger.log();
  }
}

// Should that fail, too, it is the files that are told of.
void Engine::State::startFromLastGood(const Reading& wrong) {
  if (lastGood.getPath().empty()) wrong.refuse();
  Reading stored(type, {lastGood.getPath(), {}, false}, overrides);
  if (stored.isGood) listeners.check(stored.object, stored.object, stored.problems);
  if (!stored.isGood || hasError(stored.problems)) wrong.refuse();
  enforce(stored);
  refused = Refused{trigger.getPlaces(), wrong.problems};
  isUntold = true;
  trigger.wake();
}

void Engine::State::enforce(const Reading& reading) {
  now = reading.object;
  published->set(now);
  origins = reading.origins;
  files = reading.settings;
  inForce = files;
}

Result Engine::State::take(Reading& reading) {
  Result result;
  result.problems = std::move(reading.problems);
  if (reading.isGood) accept(reading, result);
  if (!reading.isGood) result.outcome = REFUSED;
  if (result.outcome != REFUSED) {
    refused.reset();
    return result;
  }
  const Places& places = trigger.getPlaces();
  if (refused && refused->places == places && areEqual(refused->problems, result.problems)) {
    return {};
  }
  refused = Refused{places, result.problems};
  return result;
}

// What the program gets is what the files say, but for what waits for a restart.
void Engine::State::accept(Reading& reading, Result& result) {
  const std::vector<Difference> found = differences(files, reading.settings);
  Settings next = keepForStart(reading);
  if (!found.empty()) {
    listeners.check(now, reading.object, result.problems);
    if (hasError(result.problems)) {
      result.outcome = REFUSED;
      return;
    }
    result.outcome = CHANGED;
  }
  std::set<std::size_t> fields;
  const Index before(inForce);
  const Index after(next);
  for (const Difference& difference : found) {
    const std::string& key = difference.any().key;
    const bool isWaiting = isSame(before.find(key), after.find(key));
    if (!isWaiting) fields.insert(difference.any().field);
    result.changes.push_back(difference.change(isWaiting));
  }
  const Snapshot old = now;
  if (!fields.empty() || type.structure == nullptr) {
    now = reading.object;
    published->set(now);
  }
  origins = reading.origins;
  files = std::move(reading.settings);
  inForce = std::move(next);
  waiting.clear();
  for (const Difference& kept : differences(inForce, files)) waiting.push_back(kept.change(true));
  if (!found.empty()) store(reading, result.problems);
  if (!fields.empty()) listeners.tell(old, now, fields, result.changes, result.problems);
}

// What is kept stands where it stood when it came into force.
Settings Engine::State::keepForStart(const Reading& reading) const {
  if (type.structure == nullptr) return reading.settings;
  const auto& description = type.structure->fields().get();
  live::keepForStart(description, now.get(), reading.object.get());
  Settings next = settingsOf(description, reading.object.get(), reading.survey);
  const Index given(reading.settings);
  const Index old(inForce);
  for (Setting& setting : next) {
    const Setting* kept = old.find(setting.key);
    if (kept == nullptr || isSame(&setting, given.find(setting.key))) continue;
    setting.text = kept->text;
    setting.place = kept->place;
  }
  return next;
}

void Engine::State::store(const Reading& reading, std::vector<xml::Problem>& problems) const {
  try {
    lastGood.store(reading);
  } catch (...) {
    problems.push_back(caught("last-good", "what is in force cannot be kept: "));
    problems.back().severity = xml::Severity::WARNING;
    problems.back().location.file = lastGood.getPath();
  }
}

Engine::Engine(const Followed& type, const std::string& file, const xml::SchemeList& schemes,
               bool validate, const Choices& choices)
    : state(std::make_unique<State>(type, Source{file, schemes, validate}, choices.get())) {
  const std::shared_ptr<Published> shared(new Published);
  state->shared = shared;
  state->published = shared.get();
  state->start();
}

Engine::~Engine() = default;

int Engine::fd() const {
  return state->trigger.fd();
}

Result Engine::poll() {
  if (state->isPolling) return {};  // called by what is told of a change
  struct Polling {
    explicit Polling(bool& flag) : flag(flag) { flag = true; }
    ~Polling() { flag = false; }
    bool& flag;
  };
  const Polling polling(state->isPolling);
  const bool isDue = state->trigger.poll();
  if (state->isUntold) {
    state->isUntold = false;
    if (isDue) state->trigger.again();
    return {REFUSED, state->refused->problems, {}};
  }
  if (!isDue) return {};
  std::optional<Reading> reading = state->read();
  return reading ? state->take(*reading) : Result();
}

const std::vector<xml::Problem>& Engine::problems() const {
  static const std::vector<xml::Problem> none;
  return state->refused ? state->refused->problems : none;
}

const std::vector<Change>& Engine::needsRestart() const {
  return state->waiting;
}

const xml::Origins& Engine::origins() const {
  return *state->origins;
}

const std::shared_ptr<const Published>& Engine::published() const {
  return state->shared;
}

void Engine::onCheck(Check check) {
  state->listeners.add(std::move(check));
}

void Engine::onChange(std::uint32_t offset,
                      std::function<void(const Snapshot& before, const Snapshot& after)> call) {
  const auto& rows = state->type.structure->fields().get().rows;
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const auto& one) { return one->member.offset == offset; });
  if (row == rows.end()) {
    throw Exception(CU_INVALID_ARGUMENT, 0, "src/live",
                    "void service::util::config::Live<S>::onChange(Call)", __LINE__,
                    "the member is no field of the struct's description");
  }
  state->listeners.add(static_cast<std::size_t>(row - rows.begin()), std::move(call));
}

void Engine::onChange(std::function<void(const std::vector<Change>& changes)> call) {
  state->listeners.add(std::move(call));
}

}  // namespace service::util::config::live::internal
