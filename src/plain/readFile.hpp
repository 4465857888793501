// Reads the file of a plain document.
#ifndef SRC_PLAIN_READFILE_HPP
#define SRC_PLAIN_READFILE_HPP

#include <optional>
#include <string>

#include "plain/Document.hpp"

namespace service::util::config::plain {

// Nothing when the file cannot be read, is no regular file, when its document is not plain, or,
// with validate, not known to be valid. Changes nothing and throws nothing.
std::optional<Document> readFile(const std::string& path, bool validate);

}  // namespace service::util::config::plain

#endif
