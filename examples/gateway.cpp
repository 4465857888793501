// Reads the configuration of a small gateway device and prints what it found, or all that is wrong
// with it.
//
//     gateway [file [setting=value...]]    file: on the configuration search path, gateway.xml
//                                          unless given
#include <cppUtil/err/describe.hpp>
#include <iostream>

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

}  // namespace

int main(int argc, char** argv) {
  const std::string file = argc > 1 ? argv[1] : "gateway.xml";
  try {
    bind::Overrides overrides;
    for (int i = 2; i < argc; ++i) overrides.add(argv[i]);
    xml::Origins origins;
    const IConfigPtr config = xml::create(file, {}, true, origins);
    std::vector<xml::Problem> problems;
    const auto device = bind::read<gateway::Gateway>(config, origins, problems, overrides);
    for (const xml::Problem& problem : problems) std::cerr << bind::toText(problem) << "\n";
    if (device) print(*device);
    return device ? 0 : 1;
  } catch (const cppUtil::err::Exception& e) {
    std::cerr << "gateway: cannot use " << file << ": " << describe(e) << "\n";
    return 1;
  }
}
