// Reads the configuration of a small gateway device and prints what it found, or all that is wrong
// with it.
//
//     gateway [--follow] [file [setting=value...]]
//
// file: on the configuration search path, gateway.xml unless given. --follow: go on, and print what
// changes when the files do.
#include <poll.h>

#include <cppUtil/err/describe.hpp>
#include <iostream>
#include <service/util/config/Live.hpp>

#include "gatewaySettings.hpp"

using namespace service::util::config;

namespace {

void print(const gateway::Gateway& device) {
  std::cout << "hostname: " << device.hostname << "\ninterfaces:\n";
  for (const gateway::Interface& interface : device.network.interfaces) {
    std::cout << "  " << interface.name;
    for (const std::string& address : interface.addresses) std::cout << " " << address;
    std::cout << "\n";
  }
  std::cout << "log file: " << device.logging.file.value_or("none") << "\nservices:\n";
  for (const gateway::Service& service : device.services.services) {
    std::cout << "  " << service.name << " on port " << service.port << ", timeout "
              << service.timeout.count() << " ms"
              << (service.restart == gateway::Restart::ALWAYS ? ", restarted\n" : "\n");
  }
}

void print(const std::vector<xml::Problem>& problems) {
  for (const xml::Problem& problem : problems) std::cerr << bind::toText(problem) << "\n";
}

// Until the process is ended.
int follow(const std::string& file, const bind::Overrides& overrides) {
  using Device = Live<gateway::Gateway>;
  Device live(file, {}, true, Device::Options().overrides(overrides));
  print(*live.get());
  live.onChange<&gateway::Gateway::services>(
      [](const gateway::Services& /*before*/, const gateway::Services& after) {
        std::cout << "starting " << after.services.size() << " services" << std::endl;
      });
  while (true) {
    std::cout.flush();
    pollfd waited{live.fd(), POLLIN, 0};
    if (::poll(&waited, 1, -1) < 0) return 1;
    const Device::Result result = live.poll();
    print(result.problems);
    for (const Device::Change& change : result.changes) {
      std::cout << change.path << " is " << change.after.value_or("not set") << " now\n";
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const bool isFollowing = argc > 1 && std::string(argv[1]) == "--follow";
  const int first = isFollowing ? 2 : 1;
  const std::string file = argc > first ? argv[first] : "gateway.xml";
  try {
    bind::Overrides overrides;
    for (int i = first + 1; i < argc; ++i) overrides.add(argv[i]);
    if (isFollowing) return follow(file, overrides);
    xml::Origins origins;
    const IConfigPtr config = xml::create(file, {}, true, origins);
    std::vector<xml::Problem> problems;
    const auto device = bind::read<gateway::Gateway>(config, origins, problems, overrides);
    print(problems);
    if (device) print(*device);
    return device ? 0 : 1;
  } catch (const cppUtil::err::Exception& e) {
    std::cerr << "gateway: cannot use " << file << ": " << describe(e) << "\n";
    return 1;
  }
}
