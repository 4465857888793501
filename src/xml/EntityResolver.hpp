// Decides what a document may bring in besides itself: local files, and of schemas only those that
// the caller of the load has named. Nothing is ever fetched over the network.
#ifndef SRC_XML_ENTITYRESOLVER_HPP
#define SRC_XML_ENTITYRESOLVER_HPP

#include <xercesc/util/XMLEntityResolver.hpp>

#include "load/LoadEvents.hpp"
#include "service/util/config/xml/create.hpp"
#include "xml/Budget.hpp"
#include "xml/validation.hpp"

namespace service::util::config::xml::internal {

class EntityResolver : public xercesc::XMLEntityResolver {
 public:
  // The budget is kept by reference. events: null when nobody observes.
  EntityResolver(const SchemeList& schemes, Budget& budget, LoadEvents* events);

  // What is refused cannot be opened: the XML library reports that for an entity, and goes on
  // without a schema.
  xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;

 private:
  bool isAllowedSchema(const xercesc::XMLResourceIdentifier& resource) const;

  SchemaLocations schemas;  // that the caller has named
  Budget& budget;
  LoadEvents* events;
};

}  // namespace service::util::config::xml::internal

#endif
