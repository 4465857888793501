// Loads a configuration file and reads a value, with Poco. Arguments: file, section, section,
// property.
#include <Poco/AutoPtr.h>
#include <Poco/Util/XMLConfiguration.h>

#include <string>

int main(int, char** argv) {
  const Poco::AutoPtr<Poco::Util::XMLConfiguration> config =
      new Poco::Util::XMLConfiguration(argv[1]);
  const std::string key = std::string("section[@name=") + argv[2] + "].section[@name=" + argv[3] +
                          "].property[@name=" + argv[4] + "]";
  return config->getString(key).empty() ? 1 : 0;
}
