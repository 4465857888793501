// What a program says about its settings, as the library keeps it: the rows of a struct. With the
// offsets and tables of the program's types it fills structs; without them, in a Store, it judges
// configurations all the same.
#ifndef SRC_BIND_DESCRIPTION_HPP
#define SRC_BIND_DESCRIPTION_HPP

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <vector>

#include "bind/values.hpp"
#include "service/util/config/bind/Fields.hpp"
#include "service/util/config/bind/internal/survey.hpp"

namespace service::util::config::bind::internal {

// What is known of a setting, a list or a section, apart from the types of the program.
struct Entry : Said {
  std::string name;
  bool isKeyed = false;
  ValueRules value;  // of settings

  // Of settings that are kept apart from their program; null and unused otherwise.
  const Described* described = nullptr;
  const Description* stored = nullptr;  // what holds for each, of sections
  std::size_t defaultCount = 0;         // of a list or sections
};

struct Row : Field, Entry, std::enable_shared_from_this<Row> {
  // The member that this row fills in object.
  void* in(void* object) const { return static_cast<char*>(object) + member.offset; }
  const void* in(const void* object) const {
    return static_cast<const char*>(object) + member.offset;
  }

  // Of sections: what holds for each.
  const Description& below() const;
  // Of keyed sections: the setting below that is their key.
  const Row& key() const;

  // Of the program's types; null when it is not at hand.
  struct {
    std::uint32_t offset;
    const Holder* holder;
    const std::type_info* owner;  // the struct
  } member = {};
  struct {
    std::uint32_t offset;
    const std::type_info* type;
    const std::type_info* owner;
  } keyMember = {};                 // of keyed sections: below
  std::vector<std::string> faults;  // in what the program says of it

  std::shared_ptr<Row> unclaimed;  // itself, until it belongs to Fields
};

struct Description {
  struct Name {
    std::string name;
    std::size_t row;
    bool isFormer;
  };
  struct Check {
    const std::type_info* type;
    std::shared_ptr<const void> check;
    void (*run)(const void* check, const void* object, Report& report);
  };

  // Sorts the names; to be called when rows is complete.
  void index();
  // The row that a setting or a section of that name belongs to; null when there is none.
  const Name* find(bool isSetting, const std::string& name) const;
  // The names in force, of both kinds.
  std::vector<std::string> names() const;

  std::vector<std::shared_ptr<const Row>> rows;
  std::vector<Name> settings;  // names and former names, in byte order
  std::vector<Name> sections;
  std::vector<std::uint32_t> ranks;  // by row, in the order of its name among them
  bool isOpen = false;
  std::string variablePrefix;  // empty for none
  std::vector<Check> checks;
  mutable std::atomic<bool> isSound{false};  // it, and all below, was looked at
};

// Throws code 5 with all that is wrong with the description of the struct and of those below.
// object: a default one.
void requireSound(const Struct& type, const void* object);

// The default of a setting in object, as text; of a list each, of an empty optional none.
std::vector<std::string> textsOf(const Row& row, const void* object);

// The elements of a list or of sections in object.
std::size_t countOf(const Row& row, const void* object);

// The environment variable of the setting: its own, or the one below prefix, which is empty for
// none.
std::string variableOf(const Entry& setting, const std::string& prefix);
// The prefix for what is below the section called name.
std::string prefixBelow(const Description& below, const std::string& prefix,
                        const std::string& name);
// All variables of the settings of description. Those of repeated sections have none.
std::vector<std::string> variablesOf(const Description& description, const std::string& prefix);

}  // namespace service::util::config::bind::internal

#endif
