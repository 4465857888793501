// What is wrong with descriptions themselves.

#include <cutil/cutil.h>
#include <cxxabi.h>

#include <algorithm>
#include <memory>
#include <set>
#include <utility>

#include "bind/Description.hpp"
#include "bind/elements.hpp"
#include "cppUtil/err/Exception.hpp"
#include "cppUtil/internal/text.hpp"

namespace service::util::config::bind::internal {

namespace {

using cppUtil::internal::quoted;

std::string nameOf(const std::type_info& type) {
  int status = 0;
  const std::unique_ptr<char, void (*)(void*)> name(
      abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
  return name == nullptr ? type.name() : name.get();
}

class Inspection {
 public:
  // object: a default one.
  void inspect(const Struct& type, const void* object, bool isRepeated) {
    const Description& description = type.fields().get();
    if (!seen.insert(&description).second) return;
    const std::string outer = std::exchange(structName, nameOf(*type.type));
    inspectNames(description);
    for (const auto& check : description.checks) {
      if (*check.type != *type.type) add("", "a check is for " + nameOf(*check.type));
    }
    if (isRepeated && !description.variablePrefix.empty()) {
      add("", "a section that repeats has no environment variables");
    }
    for (const auto& row : description.rows) {
      for (const std::string& fault : row->faults) add(row->name, fault);
      if (*row->member.owner == *type.type) {
        inspectRow(*row, isRepeated);
        inspectDefault(*row, object);
        if (!row->isSetting()) inspectBelow(*row, object, isRepeated);
      } else {
        add(row->name, "its member is of " + nameOf(*row->member.owner) +
                           "; of a base, give the struct as the second argument");
      }
    }
    structName = outer;
  }

  void inspectVariables(const Struct& type) {
    const Description& description = type.fields().get();
    structName = nameOf(*type.type);
    auto variables = variablesOf(description, description.variablePrefix);
    std::sort(variables.begin(), variables.end());
    const auto twin = std::adjacent_find(variables.begin(), variables.end());
    if (twin != variables.end()) add("", "two settings have the variable " + *twin);
  }

  const std::string& faults() const { return text; }

 private:
  void add(const std::string& field, const std::string& fault) {
    text += (text.empty() ? "" : "\n") + structName;
    if (!field.empty()) text += ", field " + quoted(field);
    text += ": " + fault;
  }

  void inspectNames(const Description& description) {
    for (const auto* names : {&description.settings, &description.sections}) {
      for (std::size_t i = 0; i < names->size(); ++i) {
        const auto& name = (*names)[i];
        if (name.name.empty()) add("", "a name is empty");
        if (i > 0 && name.name == (*names)[i - 1].name) {
          add(name.name, "the name is used twice, former ones included");
        }
      }
    }
  }

  void inspectRow(const Row& row, bool isRepeated) {
    const bool isSections = row.form == Holder::SECTIONS;
    if (!row.isSetting() && (row.value.least || !row.sample.empty())) {
      add(row.name, "a section has no range and no example");
    }
    if (row.isOpen && row.isSetting()) add(row.name, "only a section can be open");
    if (!row.variable.empty() && (isRepeated || !row.isSetting())) {
      add(row.name, "only a setting outside of repeated sections has an environment variable");
    }
    if (row.isKeyed && !isSections) add(row.name, "only sections have a key");
    if (isSections) inspectKey(row);
    if (row.isSetting()) inspectValue(row);
  }

  void inspectKey(const Row& row) {
    const Holder& holder = *row.member.holder;
    if (!row.isKeyed) {
      if (holder.shape == Holder::MAP) add(row.name, "a map needs keyedBy");
      return;
    }
    const auto& rows = row.below().rows;
    const bool isDescribed = *row.keyMember.owner == *holder.structure->type &&
                             std::any_of(rows.begin(), rows.end(), [&](const auto& below) {
                               return below->form == Holder::SETTING && !below->isOptional &&
                                      below->member.offset == row.keyMember.offset;
                             });
    if (!isDescribed) {
      add(row.name, "its key is no setting of its sections");
    } else if (row.key().value.kind == Kind::SECRET) {
      add(row.name, "a secret is no key");
    } else if (holder.key != nullptr && *holder.key != *row.keyMember.type) {
      add(row.name, "its key and the key of the map are of different types");
    }
  }

  void inspectValue(const Row& row) {
    std::set<std::string> names;
    for (const auto& [name, value] : row.value.names) {
      if (name.empty() || !names.insert(name).second) {
        add(row.name, "two values are called " + quoted(name));
      }
    }
    if (row.value.kind == Kind::ENUMERATION && names.empty()) {
      add(row.name, "its enumeration has no names");
    }
    if (row.sample.empty()) return;
    if (const auto fault = parse(row.value, row.sample, nullptr)) {
      add(row.name, "its example: " + fault->message);
    }
  }

  // What a default says must be what a file may say, unless the file must say it.
  void inspectDefault(const Row& row, const void* object) {
    if (row.isRequired) return;
    if (row.isSetting()) {
      for (const std::string& text : textsOf(row, object)) {
        if (const auto fault = parse(row.value, text, nullptr)) {
          add(row.name, "its default: " + fault->message);
        }
      }
    }
    if (row.isSeveral() && countOf(row, object) > row.most) {
      add(row.name, "its default has more than its count allows");
    }
  }

  void inspectBelow(const Row& row, const void* object, bool isRepeated) {
    const Holder& holder = *row.member.holder;
    const auto inspectOne = [&](const void* below) {
      inspect(*holder.structure, below, isRepeated || row.form == Holder::SECTIONS);
    };
    if (holder.shape == Holder::PLAIN) return inspectOne(row.in(object));
    Viewing viewing(inspectOne);
    holder.viewDefault(viewing);
  }

  std::set<const Description*> seen;
  std::string structName;
  std::string text;
};

}  // namespace

void requireSound(const Struct& type, const void* object) {
  const Description& description = type.fields().get();
  if (description.isSound) return;
  Inspection inspection;
  inspection.inspect(type, object, false);
  if (inspection.faults().empty()) inspection.inspectVariables(type);
  if (!inspection.faults().empty()) {
    throw cppUtil::err::Exception(CU_INVALID_ARGUMENT, 0, "src/bind",
                                  "void service::util::config::bind::internal::requireSound(const "
                                  "Struct&, const void*)",
                                  __LINE__,
                                  "the description of settings is wrong:\n" + inspection.faults());
  }
  description.isSound = true;
}

std::vector<std::string> textsOf(const Row& row, const void* object) {
  const Holder& holder = *row.member.holder;
  const void* member = row.in(object);
  std::vector<std::string> texts;
  const auto add = [&](const void* value) { texts.push_back(print(row.value, value)); };
  if (row.form == Holder::LIST) {
    Viewing viewing(add);
    holder.each(member, viewing);
  } else if (const void* value = holder.shape == Holder::OPTIONAL ? holder.value(member) : member) {
    add(value);
  }
  return texts;
}

std::size_t countOf(const Row& row, const void* object) {
  std::size_t count = 0;
  const auto add = [&](const void* /*element*/) { ++count; };
  Viewing viewing(add);
  row.member.holder->each(row.in(object), viewing);
  return count;
}

}  // namespace service::util::config::bind::internal
