// Loads a configuration file and reads a value. Arguments: file, section, section, property.
#include <service/util/config/Select.hpp>
#include <service/util/config/xml/create.hpp>

int main(int, char** argv) {
  const auto config = service::util::config::xml::create(argv[1], {}, false);
  const service::util::config::Select select(std::string(argv[2]) + "." + argv[3] + "." + argv[4]);
  std::string value;
  return config->getProperty(select, value) ? 0 : 1;
}
