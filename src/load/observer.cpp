#include "service/util/config/xml/Observer.hpp"

namespace service::util::config::xml {

Observer::~Observer() = default;

void Observer::fileLookedUp(const std::string& /*name*/, const std::string& /*path*/) {}

void Observer::fileReferred(const std::string& /*path*/) {}

void Observer::fileEntered(const File& /*file*/) {}

void Observer::sectionAdded(const IConfigPtr& /*parent*/, const std::string& /*name*/,
                            std::uint32_t /*index*/, const IConfigPtr& /*section*/,
                            const Location& /*location*/) {}

void Observer::propertyAdded(const IConfigPtr& /*config*/, const std::string& /*name*/,
                             std::uint32_t /*index*/, const Location& /*location*/) {}

void Observer::fileLeft(const File& /*file*/) {}

}  // namespace service::util::config::xml
