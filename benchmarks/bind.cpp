// Settings read into a struct: by its description, and as a program without it would do.

#include <charconv>
#include <chrono>
#include <stdexcept>
#include <system_error>

#include "registration.hpp"
#include "service/util/config/bind.hpp"
#include "service/util/config/internal/Config.hpp"

namespace benchmarks {

namespace {

using namespace service::util::config;
using namespace std::chrono_literals;

struct Pump {
  std::string name;
  std::uint16_t port = 502;
  std::int32_t level = 0;
  std::uint32_t speed = 900;
  double gain = 1;
  bool isOn = false;
  std::chrono::milliseconds wait = 5s;
  std::string place;
  std::uint64_t counter = 0;
  std::int16_t offset = 0;
};

bind::Fields describe(bind::Is<Pump> /*pump*/) {
  using bind::field;
  return {field<&Pump::name>("name").required(),
          field<&Pump::port>("port").range(1, 65535),
          field<&Pump::level>("level"),
          field<&Pump::speed>("speed").range(0, 3000),
          field<&Pump::gain>("gain"),
          field<&Pump::isOn>("on"),
          field<&Pump::wait>("wait").range(1ms, 1h),
          field<&Pump::place>("place"),
          field<&Pump::counter>("counter"),
          field<&Pump::offset>("offset")};
}

struct Plant {
  std::vector<Pump> pumps;
};

bind::Fields describe(bind::Is<Plant> /*plant*/) {
  return {bind::sections<&Plant::pumps>("pump")};
}

constexpr std::size_t pumpCount = 10;
constexpr std::size_t settingCount = 10 * pumpCount;

IConfigPtr makeConfig() {
  const auto config = std::make_shared<service::util::config::internal::Config>();
  for (std::size_t i = 0; i < pumpCount; ++i) {
    const IConfigPtr pump = config->addSection("pump");
    for (const auto& [name, value] : {std::pair("name", "inlet pump of the hall"),
                                      {"port", "1502"},
                                      {"level", "-120"},
                                      {"speed", "1450"},
                                      {"gain", "0.75"},
                                      {"on", "yes"},
                                      {"wait", "250ms"},
                                      {"place", "cellar"},
                                      {"counter", "1234567890123"},
                                      {"offset", "-7"}}) {
      pump->addProperty(name, value);
    }
  }
  return config;
}

// What a careful program writes for each type, with a place for what is wrong left out.
template <class Number>
bool readNumber(const IConfig& config, const char* name, Number& number) {
  std::string text;
  if (!config.getProperty(name, text, 0)) return false;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stopped != end) throw std::runtime_error(name);
  return true;
}

template <class Number>
void readRange(const IConfig& config, const char* name, Number& number, Number least,
               Number greatest) {
  if (!readNumber(config, name, number)) return;
  if (number < least || number > greatest) throw std::runtime_error(name);
}

void readTime(const IConfig& config, const char* name, std::chrono::milliseconds& time) {
  std::string text;
  if (!config.getProperty(name, text, 0)) return;
  const char* end = text.data() + text.size();
  std::int64_t count = 0;
  const auto [stopped, error] = std::from_chars(text.data(), end, count);
  const std::string_view unit(stopped, static_cast<std::size_t>(end - stopped));
  if (error != std::errc() || (unit != "ms" && unit != "s")) throw std::runtime_error(name);
  time = std::chrono::milliseconds(unit == "s" ? 1000 * count : count);
}

Pump readPump(const IConfig& config) {
  Pump pump;
  std::string text;
  if (!config.getProperty("name", pump.name, 0)) throw std::runtime_error("name");
  readRange<std::uint16_t>(config, "port", pump.port, 1, 65535);
  readNumber(config, "level", pump.level);
  readRange<std::uint32_t>(config, "speed", pump.speed, 0, 3000);
  readNumber(config, "gain", pump.gain);
  if (config.getProperty("on", text, 0)) pump.isOn = text == "yes" || text == "true";
  readTime(config, "wait", pump.wait);
  config.getProperty("place", pump.place, 0);
  readNumber(config, "counter", pump.counter);
  readNumber(config, "offset", pump.offset);
  return pump;
}

Plant readByHand(const IConfigPtr& config) {
  Plant plant;
  for (std::uint32_t i = 0; i < config->getSectionCount("pump"); ++i) {
    plant.pumps.push_back(readPump(*config->getSection("pump", i)));
  }
  return plant;
}

template <class Read>
void addBinding(const std::string& who, const Read& read) {
  add("read settings into a struct, each", who, [read](benchmark::State& state) {
    const IConfigPtr config = makeConfig();
    const Plant plant = read(config);
    if (plant.pumps.size() != pumpCount || plant.pumps.back().wait != 250ms ||
        plant.pumps.back().offset != -7) {
      return state.SkipWithError("wrong value");
    }
    for (auto _ : state) benchmark::DoNotOptimize(read(config));
    setUnits(state, settingCount);
  });
}

}  // namespace

void addBindings() {
  addBinding(ours, [](const IConfigPtr& config) { return bind::read<Plant>(config); });
  addBinding("getProperty and std::from_chars by hand", readByHand);
}

}  // namespace benchmarks
