// A directory at the front of the search path, until it leaves or this is destroyed: while a file
// is read, its includes are looked up beside it first.
//
// Changes state of the whole process, as loads do; one thread at a time.
#ifndef SRC_LOAD_SEARCHEDFIRST_HPP
#define SRC_LOAD_SEARCHEDFIRST_HPP

#include <string>

namespace service::util::config::xml::internal {

class SearchedFirst {
 public:
  // Throws cppUtil::err::Exception when the search path refuses the directory, which may be in it
  // all the same, and is taken out then.
  explicit SearchedFirst(std::string name);
  // Removes the directory unless leave has done so. A removal that fails goes unnoticed: the caller
  // is to learn of the failure that came first.
  ~SearchedFirst();
  SearchedFirst(const SearchedFirst&) = delete;
  SearchedFirst& operator=(const SearchedFirst&) = delete;

  // Removes the directory. Throws cppUtil::err::Exception when that fails; it is then tried once
  // more in the end.
  void leave();

 private:
  std::string directory;
  bool hasLeft = false;
};

}  // namespace service::util::config::xml::internal

#endif
