// Documents: the input is a file that is loaded, validated and not. A document that validation
// accepts loads without it as well, with the same content. It may refer to a second file.
//
// There is one exception to the same content. A document type may declare an attribute to be of
// tokens; the XML library then strips the blanks in its value, but leaves them when a schema, which
// takes any text for a name, has the last word.

#include "harness.hpp"

namespace {

std::filesystem::path directory;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  directory = fuzz::prepareLoads();
  fuzz::write(directory / "part.xml",
              "<config xmlns='urn:zu:util:config' name='n' version='1'>"
              "<property name='part'>value</property></config>");
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string document(reinterpret_cast<const char*>(data), size);
  fuzz::write(directory / "main.xml", document);
  const fuzz::Outcome plain = fuzz::load("main.xml", false);
  const fuzz::Outcome validated = fuzz::load("main.xml", true);
  if (!validated.isLoaded) return 0;
  fuzz::require(plain.isLoaded, "valid, and not loaded without validation: " + plain.message);
  if (document.find("ATTLIST") != std::string::npos) return 0;
  fuzz::require(plain.content == validated.content,
                "loaded as\n" + plain.content + "\nand with validation as\n" + validated.content);
  return 0;
}
