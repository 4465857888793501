// The settings of the example gateway: what its files may say, in one place for the program, for
// the exported description, and for whoever reads the code.
#ifndef EXAMPLES_GATEWAYSETTINGS_HPP
#define EXAMPLES_GATEWAYSETTINGS_HPP

#include <service/util/config/bind.hpp>

namespace gateway {

namespace bind = service::util::config::bind;
using bind::field;
using bind::list;
using bind::section;
using bind::sections;

enum class Level { ERROR, WARNING, INFO, DEBUG };
inline bind::Names<Level> names(bind::Is<Level> /*level*/) {
  return {{"error", Level::ERROR},
          {"warning", Level::WARNING},
          {"info", Level::INFO},
          {"debug", Level::DEBUG}};
}

struct Logging {
  Level level = Level::WARNING;
  std::string facility = "daemon";
  std::optional<std::string> file;
};
inline bind::Fields describe(bind::Is<Logging> /*logging*/) {
  return {field<&Logging::level>("level").about("what is logged at most"),
          field<&Logging::facility>("facility").about("of the system log"),
          field<&Logging::file>("file").needsRestart().about("a file to log to as well")};
}

struct Interface {
  std::string name;
  std::vector<std::string> addresses;
};
inline bind::Fields describe(bind::Is<Interface> /*interface*/) {
  return {field<&Interface::name>("name").required().about("as the system calls it"),
          list<&Interface::addresses>("address").about("with the length of the prefix")};
}

struct Network {
  std::string domain;
  std::vector<std::string> nameservers;
  std::vector<Interface> interfaces;
};
inline bind::Fields describe(bind::Is<Network> /*network*/) {
  return {field<&Network::domain>("domain").about("of the host"),
          list<&Network::nameservers>("nameserver").count(0, 3).about("asked in this order"),
          sections<&Network::interfaces>("interface").count(1, 8)};
}

enum class Restart { NEVER, ALWAYS };
inline bind::Names<Restart> names(bind::Is<Restart> /*restart*/) {
  return {{"never", Restart::NEVER}, {"always", Restart::ALWAYS}};
}

struct Service {
  std::string name;
  std::uint16_t port = 0;
  Restart restart = Restart::NEVER;
  std::chrono::milliseconds timeout{5000};
  std::optional<std::string> broker;
  std::vector<std::uint8_t> units;
};
inline bind::Fields describe(bind::Is<Service> /*service*/) {
  return {field<&Service::name>("name").about("of the program"),
          field<&Service::port>("port").required().range(1, 65535).about("TCP port"),
          field<&Service::restart>("restart").about("when it ends"),
          field<&Service::timeout>("timeout").about("for an answer"),
          field<&Service::broker>("broker").about("of MQTT: its host"),
          list<&Service::units>("unit").about("of Modbus: the addresses of devices")};
}

struct Services {
  std::vector<Service> services;
};
inline bind::Fields describe(bind::Is<Services> /*services*/) {
  return {sections<&Services::services>("service").keyedBy<&Service::name>()};
}

struct Gateway {
  std::string hostname;
  std::string location;
  Logging logging;
  Network network;
  Services services;
};
inline bind::Fields describe(bind::Is<Gateway> /*gateway*/) {
  return {field<&Gateway::hostname>("hostname").required().about("name of this device"),
          field<&Gateway::location>("location").about("where to find it"),
          section<&Gateway::logging>("logging"), section<&Gateway::network>("network"),
          section<&Gateway::services>("services")};
}

}  // namespace gateway

#endif
