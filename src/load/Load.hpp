// What the files of one load have in common, and the signatures and places that its failures are
// reported with. One thread at a time.
#ifndef SRC_LOAD_LOAD_HPP
#define SRC_LOAD_LOAD_HPP

#include <cstddef>
#include <optional>
#include <string>

#include "load/LoadEvents.hpp"
#include "service/util/config/IConfig.hpp"

namespace service::util::config::xml::internal {

constexpr const char* unit = "src/xmlConfig";

// Whatever version of the XML library is in use.
constexpr const char* createSignature =
    "service::util::config::IConfigPtr service::util::config::xml::create(const string&, const "
    "SchemeList&, bool)";
constexpr const char* parseSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parse(const IConfigPtr&, const "
    "string&)";
constexpr const char* parseConfigSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseConfig(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";
constexpr const char* parseSectionSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseSection(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";
constexpr const char* parsePropertySignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseProperty(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";
constexpr const char* parseIncludeSignature =
    "void service::util::config::xml::internal::XmlConfigParser::parseInclude(const IConfigPtr&, "
    "const xercesc_3_1::DOMElement&)";

// How many files one load reads, each as often as it is included.
constexpr std::size_t maximumFiles = 100000;

class Load {
 public:
  // observer: null when nobody observes.
  explicit Load(Observer* observer) {
    if (observer != nullptr) events = &observed.emplace(*observer);
  }
  virtual ~Load() = default;
  Load(const Load&) = delete;
  Load& operator=(const Load&) = delete;

  // Reads the file that path names, which was looked up as name, into config.
  virtual void read(const IConfigPtr& config, const std::string& name, const std::string& path) = 0;

  // Files that include each other and sections in sections go as deep as the input says. The stack
  // is asked for only when the load has used some of it.
  bool hasStack(std::size_t bytes) const;

  // Whether one more file may be read, which is then counted: files that include others more than
  // once multiply.
  bool countFile() { return ++files <= maximumFiles; }

  LoadEvents* events = nullptr;  // null when nobody observes

 private:
  std::optional<LoadEvents> observed;
  std::size_t files = 1;  // read so far or being read
  const char* const stackBase = static_cast<const char*>(__builtin_frame_address(0));
};

}  // namespace service::util::config::xml::internal

#endif
