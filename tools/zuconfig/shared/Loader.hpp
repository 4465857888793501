// Loads configuration files for the sub-commands.
#ifndef TOOLS_ZUCONFIG_SHARED_LOADER_HPP
#define TOOLS_ZUCONFIG_SHARED_LOADER_HPP

#include <optional>
#include <string>
#include <vector>

#include "cppUtil/err/Exception.hpp"
#include "report/SourceText.hpp"
#include "service/util/config/IConfig.hpp"
#include "service/util/config/xml/Origins.hpp"
#include "service/util/config/xml/Session.hpp"
#include "service/util/config/xml/check.hpp"
#include "service/util/config/xml/create.hpp"
#include "shared/FileNames.hpp"
#include "shared/Spool.hpp"
#include "shared/options.hpp"
#include "shared/searchPath.hpp"

namespace zuconfig {

using service::util::config::IConfigPtr;
using service::util::config::xml::Origins;

class Loader {
 public:
  // Puts the directories on the search path of the process. Throws Failure.
  explicit Loader(const LoadOptions& options);

  // What to ask the library for when the user wrote file: names are looked up along the search
  // path, then in the current directory; "-" is standard input, which is read whole.
  std::string resolve(const std::string& file);

  // Whether the file is found in the current directory only, where a program would not look for it.
  bool isOffPath(const std::string& file) const;

  // Both print all that is wrong to standard error when the load fails, as check does, and then
  // throw Failure.
  IConfigPtr load(const std::string& file);
  IConfigPtr load(const std::string& file, Origins& origins);

  // Loads without validation, and without a word when that fails: null, with the reason.
  IConfigPtr tryLoad(const std::string& resolved, Origins& origins, std::string& reason);

  // What is wrong with a file, by the name that resolve made of it. The observer is told of files.
  std::vector<service::util::config::xml::Problem> check(const std::string& resolved);
  std::vector<service::util::config::xml::Problem> check(
      const std::string& resolved, service::util::config::xml::Observer& observer);

  // How files are loaded.
  const service::util::config::xml::SchemeList& getSchemes() const { return schemes; }
  bool isValidating() const { return validate; }

  // How to call files, standard input among them.
  const FileNames& getNames() const { return names; }

  // The texts of the files that were loaded or checked, as long as they are what they were then.
  service::util::config::report::SourceText& getSources() { return sources; }

  // The search path as it is for the files that are loaded.
  std::vector<PathEntry> searchPath() const { return getSearchPath(prepended); }

 private:
  void prepend(const std::string& directory, const char* source);
  IConfigPtr load(const std::string& file, Origins* origins);
  IConfigPtr create(const std::string& resolved, bool isValidated, Origins* origins);
  std::string describe(const cppUtil::err::Exception& e) const;
  bool printErrors(const std::string& resolved);

  service::util::config::xml::Session session;
  service::util::config::xml::SchemeList schemes;
  bool validate;
  std::vector<PathEntry> prepended;
  FileNames names;
  std::optional<Spool> standardInput;
  service::util::config::report::SourceText sources;
};

}  // namespace zuconfig

#endif
