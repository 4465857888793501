// A place in a file, as the XML library counts: from 1, columns in UTF-16 units; 0 where unknown.
// Internal to the library.
#ifndef CPPUTIL_INTERNAL_POSITION_HPP
#define CPPUTIL_INTERNAL_POSITION_HPP

namespace cppUtil::internal {

struct Position {
  int line = 0;
  int column = 0;
};

inline bool operator==(const Position& a, const Position& b) {
  return a.line == b.line && a.column == b.column;
}

// Whether a comes first in the file.
inline bool operator<(const Position& a, const Position& b) {
  return a.line != b.line ? a.line < b.line : a.column < b.column;
}

}  // namespace cppUtil::internal

#endif
