// Diagnostics: all that is wrong with a configuration file and its includes, at once.
//
// A load stops at the first failure; a check goes on, reads every file that the load would read and
// makes no configuration. The rules of xml::create on process-wide state and threads hold here.
#ifndef SERVICE_UTIL_CONFIG_XML_CHECK_HPP
#define SERVICE_UTIL_CONFIG_XML_CHECK_HPP

#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/xml/Location.hpp"
#include "service/util/config/xml/Observer.hpp"
#include "service/util/config/xml/create.hpp"

namespace service::util::config::xml {

// A warning tells of what loads and is probably not meant; a load of files with an error fails.
enum class Severity { WARNING, ERROR };

// Something that is wrong, and where.
struct Problem {
  Severity severity;  // whether the files load nevertheless

  // What was violated; stable, for scripts to filter by. Errors:
  //   not-found        the top-level file is not on the search path
  //   not-well-formed  no XML document
  //   several-roots    something stands after the root element
  //   invalid          against the grammar or the given schemas; only when validating
  //   wrong-root       the root element is not "config"
  //   missing-name     a property or section without a name, or with an empty one
  //   missing-value    a property or an include without text
  //   missing-include  an included file is not on the search path
  //   include-cycle    an include from which a load goes round for ever; the message tells it
  //   unloadable       a file that the loader refuses for another reason
  // Warnings:
  //   unreachable-name  a name that no selector can spell
  //   padded-value      a value that begins or ends with white space
  //   repeated-section  a section besides one of its name that an include brings to the same place
  //   shadowed-file     a file that hides others of its name further down the search path
  //   deep-includes     a file included through 100 others: a load needs stack for each, 1.5 KiB or
  //                     so, and fails where that ends; a check does not
  //   unknown-element   an element that the loader ignores; only when not validating. In a property
  //                     or an include its text is read nevertheless
  //   entity-element    elements that come from an entity, which the loader ignores
  //   unread-end        a zero byte behind the root element, where the loader stops to read
  //   xml               what the XML library warns of
  std::string rule;

  // One sentence, without place and rule, no line break at the end. It may quote names from files
  // as they are; a list in it is cut after some entries.
  std::string message;

  // The name that the message is about: of a missing file, an element that is unknown or invalid,
  // an entity, a property with a padded value, a property or section that no selector can spell, a
  // repeated section. Empty for all other rules.
  std::string subject;

  // Of the element or the fault in the document: where the start tag ends, or the whole element
  // when it is written as an empty tag. Faults of a whole file have a file only. The file is a full
  // name; when the top-level file is not found, what was asked for; in an entity that is named by a
  // URL, this URL.
  Location location;

  // Where the file of location is included, and the file of that include, and so on up to the
  // top-level file; of more than 100 the innermost 99 and the outermost. Empty in the top-level
  // file. A file that is included several times is told of once, with the first chain.
  std::vector<Location> includes;
};

// The problems of file and everything it includes: first what is wrong inside of a file, by line,
// then include by include what is wrong with that and what it brings in. Takes its arguments as
// xml::create does. Files that include each other, however often, are read once each. Throws
// cppUtil::err::Exception when the check itself fails, for want of memory or because a platform
// call failed.
ZU_EXPORT std::vector<Problem> check(const std::string& file, const SchemeList& schemes,
                                     bool validate);

// The same, and tells the observer of the files that were entered and left, in pairs: the include
// graph of files that need not load. It is told of no section and no property, and what a file
// includes only the first time: not when it was checked before, with the same directories on the
// search path, and not when it closes a circle.
ZU_EXPORT std::vector<Problem> check(const std::string& file, const SchemeList& schemes,
                                     bool validate, Observer& observer);

}  // namespace service::util::config::xml

#endif
