// Loads a configuration file and reads a value, with pugixml. Arguments: file, section, section,
// property.
#include <pugixml.hpp>
#include <string>

int main(int, char** argv) {
  pugi::xml_document document;
  if (!document.load_file(argv[1])) return 1;
  const std::string query = std::string("/config/section[@name='") + argv[2] +
                            "']/section[@name='" + argv[3] + "']/property[@name='" + argv[4] + "']";
  const pugi::xpath_node found = document.select_node(query.c_str());
  return found.node().child_value()[0] != '\0' ? 0 : 1;
}
