#include "service/util/config/bind.hpp"

#include <cutil/cutil.h>

#include <list>

#include "bind/Reader.hpp"
#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/text.hpp"
#include "cppUtil/logger/Logger.hpp"
#include "model/Contents.hpp"
#include "service/util/config/errorModule.hpp"

namespace service::util::config::bind {

namespace {

using cppUtil::err::Exception;
using internal::Occurrence;
using internal::Occurrences;

constexpr const char* unit = "src/bind";
constexpr const char* getSignature =
    "T service::util::config::bind::get(const IConfigPtr&, const std::string&)";
constexpr const char* readSignature =
    "S service::util::config::bind::read(const IConfigPtr&, const Overrides&)";

// Looks for a single value by its path.
class Search {
 public:
  Search(const internal::Type& type, const xml::Origins* origins, const std::string& path)
      : type(type), origins(origins), path(path), precedence(origins) {}

  // Fills value, which is of type, unless there is nothing at path.
  bool find(const IConfigPtr& config, void* value) const {
    if (config == nullptr) {
      throw Exception(CU_MISSING_ARGUMENT, 0, unit, getSignature, __LINE__,
                      "Configuration is missing!");
    }
    std::list<config::internal::Contents> contents;  // of all that was gone through
    std::vector<IConfigPtr> parts = {config};
    const internal::Path way = internal::parsePath(path);
    for (std::size_t at = 0; at + 1 < way.size(); ++at) {
      std::vector<Occurrence> found;
      for (const IConfigPtr& part : parts) {
        internal::findIn(part, contents.emplace_back(part).sections(), way[at].name, found);
      }
      std::vector<IConfigPtr> below;
      for (const Occurrence* one : chosen(found, way[at].index)) below.push_back(*one->section);
      parts = std::move(below);
    }
    std::vector<Occurrence> found;
    for (const IConfigPtr& part : parts) {
      internal::findIn(part, contents.emplace_back(part).properties(), way.back().name, found);
    }
    const auto values = chosen(found, way.back().index);
    if (values.empty()) return false;
    const auto fault = internal::parse(internal::ValueRules(type), *values.front()->value, value);
    if (fault) fail(fault->rule, fault->message, *values.front());
    return true;
  }

 private:
  // With an index that one, without origins the first; otherwise of values the one in force, of
  // sections all, which are one together.
  std::vector<const Occurrence*> chosen(Occurrences found,
                                        std::optional<std::uint32_t> index) const {
    std::vector<const Occurrence*> all;
    if (found.empty()) return all;
    const bool isSetting = found.front().value != nullptr;
    if (origins != nullptr && !index) {
      for (const auto& [occurrence, first] : precedence.repeated(found)) {
        fail("repeated-setting", internal::alreadyThere(precedence.placeOf(*first)), *occurrence);
      }
      if (isSetting) return {&precedence.nearest(found)};
    }
    if (origins != nullptr && isSetting) {
      all = precedence.allNearest(found);
    } else {
      for (const Occurrence& occurrence : found) all.push_back(&occurrence);
    }
    if (origins != nullptr && !index) return all;
    if (index.value_or(0) >= all.size()) return {};
    return {all[index.value_or(0)]};
  }

  [[noreturn]] void fail(const char* rule, const std::string& message,
                         const Occurrence& occurrence) const {
    internal::Findings findings(precedence);
    findings.add(xml::Severity::ERROR, rule, cppUtil::internal::printable(path), message,
                 precedence.placeOf(occurrence));
    std::vector<xml::Problem> problems;
    findings.take(problems);
    internal::refuse(problems, getSignature);
  }

  const internal::Type& type;
  const xml::Origins* origins;
  const std::string& path;
  internal::Precedence precedence;
};

}  // namespace

namespace internal {

bool findValue(const Type& type, void* value, const IConfigPtr& config, const xml::Origins* origins,
               const std::string& path) {
  return Search(type, origins, path).find(config, value);
}

void getValue(const Type& type, void* value, const IConfigPtr& config, const xml::Origins* origins,
              const std::string& path) {
  if (findValue(type, value, config, origins, path)) return;
  throw Exception(NOT_FOUND, 0, unit, getSignature, __LINE__,
                  cppUtil::internal::printable(path) + " is not set");
}

bool readStruct(const Struct& type, void* object, const IConfigPtr& config,
                const xml::Origins* origins, const Overrides& overrides,
                std::vector<xml::Problem>& problems) {
  requireSound(type, object);
  const Request request = {type.fields().get(), object, config, origins, overrides};
  const Precedence precedence(origins);
  Findings findings(precedence);
  Reader(request, precedence, findings).read();
  return findings.take(problems);
}

void readStruct(const Struct& type, void* object, const IConfigPtr& config,
                const xml::Origins* origins, const Overrides& overrides) {
  std::vector<xml::Problem> problems;
  if (!readStruct(type, object, config, origins, overrides, problems)) {
    refuse(problems, readSignature);
  }
  for (const xml::Problem& problem : problems) {
    cppUtil::logger::Logger logger(CU_WARNING);
    logger << toText(problem);
    logger.log();
  }
}

}  // namespace internal

void Overrides::add(const std::string& assignment) {
  const std::size_t end = assignment.find('=');
  if (end == assignment.npos) {
    throw Exception(CU_INVALID_ARGUMENT, 0, unit,
                    "void service::util::config::bind::Overrides::add(const std::string&)",
                    __LINE__, "")
        << cppUtil::internal::quoted(assignment) << " is no setting: it has no \"=\"";
  }
  internal::parsePath(assignment.substr(0, end));
  assignments.emplace_back(assignment.substr(0, end), assignment.substr(end + 1));
}

}  // namespace service::util::config::bind
