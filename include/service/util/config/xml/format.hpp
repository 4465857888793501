// Problems in words, for a log or a terminal: what `zuconfig check` prints.
//
//   for (const Problem& problem : check("app.xml", {}, true)) std::cerr << format(problem);
//
// The files that a problem names are read again, as they are now, and in parts: the lines of large
// files cost no memory. Any number of threads at once.
#ifndef SERVICE_UTIL_CONFIG_XML_FORMAT_HPP
#define SERVICE_UTIL_CONFIG_XML_FORMAT_HPP

#include <string>
#include <vector>

#include "cppUtil/export.hpp"
#include "service/util/config/xml/check.hpp"

namespace service::util::config::xml {

// Lines that end with a line break each: the problem, the line of the file that it is about, and
// where that file is included.
//
//   /etc/app/pumps.xml:3:5: error: this section has no attribute "name" [missing-name]
//       3 |     <section nam="pump">
//         |     ^~~~~~~~~~~~~~~~~~~~
//   /etc/app/plant.xml:8:9: note: included from here
//
// Unlike Problem::location, the place is where the tag begins. A long line is cut around it. Files
// that are not there any more or no regular files are not quoted. What would act on a terminal is
// shown escaped. The text may quote what is secret in a file. Throws std::bad_alloc only.
ZU_EXPORT std::string format(const Problem& problem);

// The same for each problem, in order. Keeps files open in between, so for many problems this is
// the faster way.
ZU_EXPORT std::string format(const std::vector<Problem>& problems);

}  // namespace service::util::config::xml

#endif
