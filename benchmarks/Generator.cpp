#include "Generator.hpp"

#include <array>
#include <random>

namespace benchmarks {

namespace {

// Prime, so that any stride walks over all names before it meets one again.
constexpr std::array<const char*, 37> sectionNames = {
    "network",  "interface", "storage",   "volume",   "logging", "display",  "audio",
    "gateway",  "security",  "firewall",  "user",     "session", "database", "cache",
    "queue",    "scheduler", "backup",    "update",   "monitor", "sensor",   "actuator",
    "recorder", "stream",    "codec",     "tuner",    "channel", "service",  "printer",
    "camera",   "device",    "partition", "protocol", "proxy",   "mail",     "report",
    "language", "calendar"};
constexpr std::array<const char*, 19> firstWords = {
    "receive",  "send",    "connect", "retry",  "idle",   "initial", "maximum",
    "minimum",  "default", "primary", "backup", "remote", "local",   "secure",
    "internal", "public",  "shared",  "global", "custom"};
constexpr std::array<const char*, 17> secondWords = {
    "Timeout",  "Address", "Port",  "BufferSize", "Count",  "Limit", "Path",    "Name", "Interval",
    "Priority", "Mode",    "Level", "Owner",      "Format", "Label", "Enabled", "Key"};
constexpr std::size_t propertyNames = firstWords.size() * secondWords.size();

std::string propertyName(std::size_t index) {
  index %= propertyNames;
  return std::string(firstWords[index % firstWords.size()]) +
         secondWords[index / firstWords.size()];
}

// The standard distributions differ between libraries; this one does not.
class Random {
 public:
  explicit Random(std::uint32_t seed) : engine(seed) {}
  std::size_t below(std::size_t limit) { return engine() % limit; }

 private:
  std::mt19937 engine;
};

std::string value(Random& random) {
  const auto number = [&](std::size_t limit) { return std::to_string(random.below(limit)); };
  const auto section = [&] { return std::string(sectionNames[random.below(sectionNames.size())]); };
  switch (random.below(8)) {
    case 0:
      return number(100000);
    case 1:
      return random.below(2) == 0 ? "true" : "false";
    case 2:
      return "10." + number(256) + "." + number(256) + "." + number(256);
    case 3:
      return section() + number(1000) + ".example.org";
    case 4:
      return "/var/lib/" + section() + "/" + section() + ".db";
    case 5:
      return "primary " + section() + " & " + section() + " of unit " + number(1000);
    default:
      return "/" + section() + "/" + propertyName(random.below(propertyNames)) + "/" + number(1000);
  }
}

void properties(std::size_t count, Random& random, Sink& sink) {
  const std::size_t start = random.below(propertyNames);
  const std::size_t stride = 1 + random.below(16);  // no divisor of the number of names
  for (std::size_t i = 0; i < count; ++i) {
    const bool repeats = i != 0 && i + 2 >= count;
    sink.property(propertyName(start + (repeats ? 0 : i * stride)), value(random));
  }
}

}  // namespace

void generate(const Shape& shape, std::uint32_t seed, Sink& sink) {
  Random random(seed);
  for (std::size_t group = 0; group < shape.groups; ++group) {
    sink.beginSection(sectionNames[random.below(sectionNames.size())]);
    properties(shape.properties, random, sink);
    const std::size_t start = random.below(sectionNames.size());
    const std::size_t stride = 1 + random.below(sectionNames.size() - 1);
    for (std::size_t child = 0; child < shape.children; ++child) {
      sink.beginSection(sectionNames[(start + child * stride) % sectionNames.size()]);
      properties(shape.properties, random, sink);
      sink.endSection();
    }
    sink.endSection();
  }
}

}  // namespace benchmarks
