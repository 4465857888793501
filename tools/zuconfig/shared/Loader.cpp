#include "shared/Loader.hpp"

#include <unistd.h>

#include <iostream>
#include <stdexcept>
#include <unordered_map>

#include "cppUtil/err/Exception.hpp"
#include "service/util/locator/ConfigLocator.hpp"
#include "shared/Failure.hpp"
#include "shared/problems.hpp"
#include "shared/text.hpp"

namespace zuconfig {

namespace {

using cppUtil::err::Exception;
using service::util::config::xml::Observer;
using service::util::locator::ConfigLocator;

// How often a file may be open at once. Files that include each other in a circle are read until
// the stack is used up, which takes long; no other files come near this.
constexpr int mostOpenings = 100;

// Ends the load of files that include each other in a circle, and hands everything on to the
// origins, when there are any.
class CircleBreaker : public Observer {
 public:
  CircleBreaker(Origins* origins, SourceText& sources) : origins(origins), sources(sources) {}

  void fileEntered(const File& file) override {
    sources.expect(file.path);
    if (++open[normalised(file.path)] > mostOpenings) throw std::runtime_error("include cycle");
    if (origins != nullptr) origins->fileEntered(file);
  }

  void sectionAdded(const IConfigPtr& parent, const std::string& name, std::uint32_t index,
                    const IConfigPtr& section, const Location& location) override {
    if (origins != nullptr) origins->sectionAdded(parent, name, index, section, location);
  }

  void propertyAdded(const IConfigPtr& config, const std::string& name, std::uint32_t index,
                     const Location& location) override {
    if (origins != nullptr) origins->propertyAdded(config, name, index, location);
  }

  void fileLeft(const File& file) override {
    --open[normalised(file.path)];
    if (origins != nullptr) origins->fileLeft(file);
  }

 private:
  std::unordered_map<std::string, int> open;
  Origins* origins;
  SourceText& sources;
};

// Lets what is quoted of a file be what was checked.
class Expectation : public Observer {
 public:
  Expectation(SourceText& sources, Observer& next) : sources(sources), next(next) {}

  void fileEntered(const File& file) override {
    sources.expect(file.path);
    next.fileEntered(file);
  }

  void fileLeft(const File& file) override { next.fileLeft(file); }

 private:
  SourceText& sources;
  Observer& next;
};

std::string withoutLineBreakAtEnd(std::string text) {
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}

}  // namespace

Loader::Loader(const LoadOptions& options)
    : validate(options.validate || !options.schemas.empty()) {
  for (const std::string& schema : options.schemas) {
    const std::size_t sign = schema.rfind('=');
    if (sign == schema.npos || sign == 0 || sign + 1 == schema.size()) {
      throw Failure(USAGE, "--schema " + schema + ": expected NAMESPACE=LOCATION");
    }
    schemes.emplace_back(schema.substr(0, sign), schema.substr(sign + 1));
  }
  for (const std::string& directory : options.directories) {
    if (const std::string reason = whyNoDirectory(directory); !reason.empty()) {
      std::cerr << "zuconfig: warning: -I " << printable(directory) << ": " << reason << "\n";
    }
  }
  for (auto directory = options.directories.rbegin(); directory != options.directories.rend();
       ++directory) {
    prepend(*directory, "-I");
  }
}

void Loader::prepend(const std::string& directory, const char* source) {
  ConfigLocator::prepend(directory);
  prepended.insert(prepended.begin(), {directory, source});
}

std::string Loader::resolve(const std::string& file) {
  if (file == "-") {
    if (standardInput) throw Failure(USAGE, "standard input can be read once only");
    standardInput.emplace();
    names.setStandardInput(standardInput->getPath());
    prepend("", "for standard input");
    return standardInput->getPath();
  }
  const std::string& currentDirectory = names.getCurrentDirectory();
  if (startsWith(file, "./")) return currentDirectory + file.substr(2);
  if (startsWith(file, "../")) return currentDirectory + file;
  return isOffPath(file) ? currentDirectory + file : file;
}

bool Loader::isOffPath(const std::string& file) const {
  return file != "-" && !startsWith(file, "./") && !startsWith(file, "../") &&
         ConfigLocator::find(file).empty() &&
         !ConfigLocator::find(names.getCurrentDirectory() + file).empty();
}

IConfigPtr Loader::load(const std::string& file) {
  return load(file, nullptr);
}

IConfigPtr Loader::load(const std::string& file, Origins& origins) {
  return load(file, &origins);
}

IConfigPtr Loader::load(const std::string& file, Origins* origins) {
  const std::string resolved = resolve(file);
  try {
    return create(resolved, validate, origins);
  } catch (const Exception& e) {
    if (printErrors(resolved)) throw Failure(NOT_LOADED, "");
    throw Failure(NOT_LOADED, shownArgument(file) + ": " + describe(e));
  }
}

IConfigPtr Loader::tryLoad(const std::string& resolved, Origins& origins, std::string& reason) {
  try {
    return create(resolved, false, &origins);
  } catch (const Exception& e) {
    reason = describe(e);
    return nullptr;
  }
}

IConfigPtr Loader::create(const std::string& resolved, bool isValidated, Origins* origins) {
  CircleBreaker observer(origins, sources);
  return service::util::config::xml::create(resolved, schemes, isValidated, observer);
}

std::string Loader::describe(const Exception& e) const {
  return std::string(e.what()) + ": " + withoutLineBreakAtEnd(names.shownText(e.getMessage()));
}

// Prints what a check finds, when there is an error in it, and tells whether there was.
bool Loader::printErrors(const std::string& resolved) {
  std::vector<Finding> findings;
  bool isError = false;
  for (const Problem& problem : check(resolved)) {
    isError = isError || problem.severity == Severity::ERROR;
    findings.push_back(zuconfig::describe(problem, names, sources));
  }
  if (isError) printText(std::cerr, Colours(STDERR_FILENO), findings, names, sources);
  return isError;
}

std::vector<Problem> Loader::check(const std::string& resolved) {
  Observer none;
  return check(resolved, none);
}

std::vector<Problem> Loader::check(const std::string& resolved, Observer& observer) {
  Expectation expectation(sources, observer);
  return service::util::config::xml::check(resolved, schemes, validate, expectation);
}

}  // namespace zuconfig
