// What zuconfig schema makes of the settings of a program.
#ifndef TOOLS_ZUCONFIG_SCHEMA_FORMATS_HPP
#define TOOLS_ZUCONFIG_SCHEMA_FORMATS_HPP

#include <ostream>

#include "schema/Outline.hpp"

namespace zuconfig {

// A RELAX NG grammar of files that hold what stands in section: what XML Schema cannot say, since
// the name of a setting is an attribute.
void writeRelaxNg(std::ostream& out, const Outline& outline, const Entry& section);

// A table in Markdown, and a manual page, for the program of that name.
void writeMarkdown(std::ostream& out, const Outline& outline, const std::string& program);
void writeManual(std::ostream& out, const Outline& outline, const std::string& program);

// A file that loads, with what is required in force and all else as comments. Answers with the
// paths of the settings that are required and for which no value is known.
std::vector<std::string> writeExample(std::ostream& out, const Outline& outline,
                                      const Entry& section, const std::string& program);

}  // namespace zuconfig

#endif
