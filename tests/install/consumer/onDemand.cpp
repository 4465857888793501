// Loads each file named on the command line; says how that went and whether the XML library is in
// the process by then. The word "now" opens a Session, one that begins with "!" is run by the
// shell.
#include <cppUtil/err/describe.hpp>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <service/util/config/xml/Session.hpp>
#include <service/util/config/xml/create.hpp>

namespace xml = service::util::config::xml;

bool hasXmlLibrary() {
  std::ifstream file("/proc/self/maps");
  return std::string(std::istreambuf_iterator<char>(file), {}).find("libxerces") !=
         std::string::npos;
}

int main(int, char** arguments) {
  std::optional<xml::Session> session;
  while (*++arguments != nullptr) {
    const std::string word = *arguments;
    std::cout << (word.front() == '!' ? "shell" : word.substr(word.rfind('/') + 1)) << ": ";
    try {
      if (word.front() == '!') {
        if (std::system(word.c_str() + 1) != 0) return 1;
      } else if (word == "now") {
        session.emplace(xml::Session::NOW);
      } else {
        xml::create(word, {}, false);
      }
      std::cout << "done";
    } catch (const cppUtil::err::Exception& e) {
      std::cout << cppUtil::err::describe(e) << " in " << e.getFunction();
    }
    std::cout << (hasXmlLibrary() ? ", with the XML library\n" : "\n");
  }
}
