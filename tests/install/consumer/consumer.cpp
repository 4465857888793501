// Loads the file named on the command line; shows that each public header has its code behind it.
#include <cppUtil/err/Exception.hpp>
#include <cppUtil/fileName/getPath.hpp>
#include <cppUtil/logger/Logger.hpp>
#include <iostream>
#include <service/util/config/Select.hpp>
#include <service/util/config/errorModule.hpp>
#include <service/util/config/grammar/getGrammar.hpp>
#include <service/util/config/internal/Config.hpp>
#include <service/util/config/internal/Section.hpp>
#include <service/util/config/xml/Session.hpp>
#include <service/util/config/xml/create.hpp>
#include <service/util/config/xml/internal/XmlConfigParser.hpp>
#include <service/util/locator/ConfigLocator.hpp>

namespace config = service::util::config;
using cppUtil::err::Exception;

int main(int, char** arguments) try {
  const std::string file = arguments[1];
  const config::xml::Session session;
  std::string value;
  config::xml::create(file, {}, true)->getProperty("door[1].colour", value);
  std::cout << "create: " << value << "\n";
  config::xml::internal::XmlConfigParser(file, {}, false).getConfig()->getProperty("a", value, 0);
  std::cout << "XmlConfigParser: " << value << "\n";
  std::cout << "Config: " << config::internal::Config().getSectionCount("door") << "\n";
  std::cout << "Section: " << config::internal::Section::createSection("s")->getName() << "\n";
  std::cout << "Select: " << config::Select("a.b[3]").getProperty().second << "\n";
  std::cout << "getGrammar: " << config::grammar::getGrammar().front() << "\n";
  std::cout << "errorModule: " << config::NOT_FOUND << "\n";
  std::cout << "getPath: " << cppUtil::fileName::getPath("/etc/plant.xml") << "\n";
  using service::util::locator::ConfigLocator;
  std::cout << "ConfigLocator: " << ConfigLocator::remove("/none")
            << ", entries told: " << ConfigLocator::tellsEntries() << " "
            << ConfigLocator::getEntries().size()
            << ", found: " << ConfigLocator::findAll(file).size() << "\n";
  cppUtil::logger::Logger logger(1);
  logger << "Logger: " << 1;
  logger.log();
  config::xml::create("missing.xml", {}, true);
  return 1;
} catch (const std::exception& e) {  // the type is the library's, across the border of the object
  const auto& failure = dynamic_cast<const Exception&>(e);
  std::cout << "Exception: " << failure.getCode() << " " << failure.what()
            << ", stack trace: " << !failure.getStackTrace().getFrames().empty() << "\n";
}
