#include "load/SearchedFirst.hpp"

#include "service/util/locator/ConfigLocator.hpp"

namespace service::util::config::xml::internal {

namespace {

using locator::ConfigLocator;

void removeQuietly(const std::string& directory) noexcept {
  try {
    ConfigLocator::remove(directory);
  } catch (...) {  // another failure is on its way
  }
}

}  // namespace

SearchedFirst::SearchedFirst(std::string name) : directory(std::move(name)) {
  try {
    ConfigLocator::prepend(directory);
  } catch (...) {
    removeQuietly(directory);
    throw;
  }
}

SearchedFirst::~SearchedFirst() {
  if (!hasLeft) removeQuietly(directory);
}

void SearchedFirst::leave() {
  ConfigLocator::remove(directory);
  hasLeft = true;
}

}  // namespace service::util::config::xml::internal
