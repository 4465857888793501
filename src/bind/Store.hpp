// Settings apart from their program: the list that an exported file has, and the descriptions that
// are made of it.
#ifndef SRC_BIND_STORE_HPP
#define SRC_BIND_STORE_HPP

#include <deque>
#include <functional>

#include "bind/Description.hpp"
#include "service/util/config/bind/internal/survey.hpp"

namespace service::util::config::bind::internal {

struct Store {
  const Description& top() const { return descriptions.front(); }

  Exported exported;
  std::deque<Description> descriptions;  // rows point to what is below among them
};

// Takes what is wrong with one of the settings, by its number.
using TellFault = std::function<void(std::size_t number, const std::string& message)>;

// Makes the descriptions of what is exported. To be used only when it told nothing.
void build(Store& store, const TellFault& tell);

// What the program's own struct describes. The description must be sound. object: a default one.
Exported exportedFrom(const Struct& type, const void* object);

// What texts of the setting must be.
ValueRules rulesOf(const Described& described);

// What an exported file has; the description of its form, too.
Fields describe(Is<Exported> exported);
Fields describe(Is<Described> described);

}  // namespace service::util::config::bind::internal

#endif
