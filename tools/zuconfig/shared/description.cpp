#include "shared/description.hpp"

#include "shared/text.hpp"

namespace zuconfig {

namespace {

namespace bind = service::util::config::bind;
using bind::internal::Holder;
using bind::internal::Kind;

template <class Texts>
std::string joined(const Texts& texts) {
  std::string all;
  for (const auto& text : texts) all += (all.empty() ? "" : ", ") + printable(text);
  return all;
}

std::string withUnit(const Described& described) {
  const std::string units = " with its unit: " + joined(bind::internal::unitsOf(described));
  const std::string& bare = described.bareUnit;
  return units + (bare.empty() ? "" : ", or in " + bare + " without one");
}

std::string typeOf(const Described& described) {
  switch (*described.type) {
    case Kind::BOOLEAN:
      return "true, false, yes, no, on or off";
    case Kind::INTEGER:
      return "whole number";
    case Kind::FLOATING:
      return "number";
    case Kind::TEXT:
      return "text";
    case Kind::PATH:
      return "path of a file";
    case Kind::ENUMERATION:
      return "one of " + joined(described.names);
    case Kind::DURATION:
      return "time" + withUnit(described);
    case Kind::BYTES:
      return "size" + withUnit(described);
    case Kind::SECRET:
      return "secret";
    case Kind::CUSTOM:
      return "text that only the program can judge";
  }
  return "";
}

// The bounds of a type itself are told of whole numbers only.
std::string rangeOf(const Described& described) {
  if (described.lowest.empty() && described.type != Kind::INTEGER) return "";
  const auto [lowest, highest] = boundsOf(described);
  return ", " + lowest + " to " + highest;
}

std::string countOf(const Described& described) {
  const std::string least = std::to_string(described.least);
  if (described.most == described.least) return ", " + least;
  if (described.most < UINT32_MAX) return ", " + least + " to " + std::to_string(described.most);
  return described.least > 0 ? ", " + least + " or more" : "";
}

}  // namespace

std::string formOf(const Described& described) {
  switch (described.form) {
    case Holder::SETTING:
      return typeOf(described) + rangeOf(described);
    case Holder::LIST:
      return "list" + countOf(described) + ": " + typeOf(described) + rangeOf(described);
    case Holder::SECTION:
      return described.isOptional ? "section that may be absent" : "section";
    case Holder::SECTIONS:
      return "sections" + countOf(described) +
             (described.key.empty() ? "" : ", told apart by " + printable(described.key));
  }
  return "";
}

std::vector<std::string> remarksOn(const Described& described) {
  std::vector<std::string> remarks;
  const auto add = [&](const char* title, const std::string& text) {
    if (!text.empty()) remarks.push_back(title + text);
  };
  add("holds what it stands in: ", described.like);
  add("formerly called ", joined(described.formerNames));
  add("in the environment: ", printable(described.variable));
  if (described.isForStart) remarks.emplace_back("a change needs a restart");
  if (described.isOpen) remarks.emplace_back("may hold what is not described");
  return remarks;
}

std::vector<std::string> linesOf(const Described& described) {
  std::vector<std::string> lines = {formOf(described)};
  const auto add = [&](const char* title, const std::string& text) {
    if (!text.empty()) lines.push_back(title + text);
  };
  if (described.isRequired) lines.emplace_back("required");
  add("default: ", joined(described.defaults));
  add("example: ", printable(described.sample));
  for (std::string& remark : remarksOn(described)) lines.push_back(std::move(remark));
  return lines;
}

}  // namespace zuconfig
