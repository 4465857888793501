// The files, read once, and what the program gets of them.
#ifndef SRC_LIVE_READING_HPP
#define SRC_LIVE_READING_HPP

#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "live/ObservedLoad.hpp"
#include "live/Settings.hpp"
#include "service/util/config/bind/internal/survey.hpp"
#include "service/util/config/live/Engine.hpp"

namespace service::util::config::live {

// What to read, and how.
struct Source {
  std::string file;
  xml::SchemeList schemes;
  bool validate;
};

struct Reading {
  // Fails only for want of memory: what is wrong with the files, or thrown meanwhile, is in the
  // result.
  Reading(const internal::Followed& type, const Source& source, const bind::Overrides& overrides);

  // Throws what is wrong: the failure, or the problems as bind::read does.
  [[noreturn]] void refuse() const;

  bool isGood = false;
  std::vector<xml::Problem> problems;
  std::exception_ptr failure;  // null when the problems tell all
  std::shared_ptr<ObservedLoad> origins = std::make_shared<ObservedLoad>();
  IConfigPtr config;
  std::shared_ptr<void> object;
  bind::internal::Survey survey;  // for a struct
  Settings settings;

 private:
  void load(const Source& source);
  void bind(const internal::Followed& type, const bind::Overrides& overrides);
};

// The problem that what is being thrown is.
xml::Problem caught(const char* rule, const std::string& prefix);

}  // namespace service::util::config::live

#endif
