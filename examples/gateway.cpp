// Reads the configuration of a small gateway device and prints what it found.
//
//     gateway [file]    a name on the configuration search path, gateway.xml unless given
//
// Shows the three ways to read a value (by name, by name and index, by selector), what to do about
// a value that is missing, and what an error carries.
#include <cppUtil/err/Exception.hpp>
#include <iostream>
#include <service/util/config/Select.hpp>
#include <service/util/config/xml/create.hpp>
#include <sstream>
#include <string>

using cppUtil::err::Exception;
using service::util::config::IConfig;
using service::util::config::IConfigPtr;
using service::util::config::Select;

namespace {

// The value that select names, or fallback when the property is not there. A section that is not
// there is an error all the same.
std::string valueOr(const IConfig& config, const Select& select, const std::string& fallback) {
  std::string value = fallback;
  config.getProperty(select, value);
  return value;
}

void printNetwork(const IConfig& config) {
  const IConfigPtr network = config.getSection("network", 0);
  std::cout << "interfaces:\n";
  for (std::uint32_t i = 0; i < network->getSectionCount("interface"); ++i) {
    const IConfigPtr interface = network->getSection("interface", i);
    std::string name = "?";
    interface->getProperty("name", name, 0);
    std::cout << "  " << name;
    std::string address;
    for (std::uint32_t j = 0; interface->getProperty("address", address, j); ++j) {
      std::cout << " " << address;
    }
    std::cout << "\n";
  }
}

void printServices(const IConfig& config) {
  const IConfigPtr services = config.getSection("services", 0);
  std::cout << "services:\n";
  for (std::uint32_t i = 0; i < services->getSectionCount("service"); ++i) {
    const std::string service = "service[" + std::to_string(i) + "].";
    std::cout << "  " << valueOr(*services, service + "name", "?") << " on port "
              << valueOr(*services, service + "port", "?") << ", restart "
              << valueOr(*services, service + "restart", "never") << "\n";
  }
}

std::string describe(const Exception& e) {
  std::ostringstream text;
  text << e.what() << " (0x" << std::hex << e.getCode() << ") " << e.getMessage();
  return text.str();
}

void printDevice(const IConfig& config) {
  std::string hostname = "?";
  config.getProperty("hostname", hostname, 0);
  std::cout << "hostname: " << hostname << "\n";
  printNetwork(config);
  std::cout << "third address of the second interface: "
            << valueOr(config, "network.interface[1].address[2]", "none") << "\n";
  std::cout << "log level: " << valueOr(config, "logging.level", "warning") << "\n";
  std::cout << "log file: " << valueOr(config, "logging.file", "none") << "\n";
  printServices(config);
  try {
    config.getSection("network", 0)->getSection("interface", 7);
  } catch (const Exception& e) {
    std::cout << "an eighth interface: " << describe(e) << "\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string file = argc > 1 ? argv[1] : "gateway.xml";
  try {
    printDevice(*service::util::config::xml::create(file, {}, true));
    return 0;
  } catch (const Exception& e) {
    std::cerr << "gateway: cannot use " << file << ": " << describe(e) << "\n";
    return 1;
  }
}
