// Where the reading of a document stands, and what can be skipped and taken there.
//
// A function reads what its name says from `at` on and leaves `at` behind it; what it does not know
// ends the reading by giveUp(). The characters have been checked before. The bytes end in a NUL,
// which nothing takes, so no loop runs over the end.
#ifndef SRC_PLAIN_CURSOR_HPP
#define SRC_PLAIN_CURSOR_HPP

#include <cstddef>
#include <cstring>
#include <string_view>

#include "plain/ByteClass.hpp"

namespace service::util::config::plain {

struct NotPlain {};

[[noreturn]] inline void giveUp() {
  throw NotPlain();
}

class Cursor {
 protected:
  // text: followed by a NUL. start: where in it the reading begins.
  Cursor(std::string_view text, const char* start)
      : begin(text.data()), end(begin + text.size()), at(start) {}

  bool skip(char byte) {
    if (*at != byte) return false;
    ++at;
    return true;
  }

  bool skip(std::string_view literal) {
    if (rest().substr(0, literal.size()) != literal) return false;
    at += literal.size();
    return true;
  }

  template <class Piece>
  void expect(Piece piece) {
    if (!skip(piece)) giveUp();
  }

  template <ByteClass wanted>
  void skipAll() {
    while (is(wanted, at[0])) {
      if (!is(wanted, at[1])) {
        at += 1;
        return;
      }
      if (!is(wanted, at[2])) {
        at += 2;
        return;
      }
      if (!is(wanted, at[3])) {
        at += 3;
        return;
      }
      at += 4;
    }
  }

  // The same for TEXT and ATTRIBUTE, which go on for a while.
  template <ByteClass wanted>
  void skipLong() {
    skipWords<wanted>();
    for (; is(wanted, *at); skipWords<wanted>()) ++at;
  }

  // Up to the next special byte, or close to the end.
  template <ByteClass wanted>
  void skipWords() {
    Word word;
    for (; rest().size() >= sizeof word; at += sizeof word) {
      std::memcpy(&word, at, sizeof word);
      const Word special = areSpecial<wanted>(word);
      if (special == 0) continue;
      at += __builtin_ctzll(special) / 8;
      return;
    }
  }

  // Returns whether there is any white space.
  bool skipSpaces() {
    const char* start = at;
    skipAll<SPACE>();
    return at != start;
  }

  std::string_view rest() const { return {at, static_cast<std::size_t>(end - at)}; }

  std::string_view since(const char* start) const {
    return {start, static_cast<std::size_t>(at - start)};
  }

  std::string_view readName() {
    const char* start = at;
    if (!is(NAME_START, *at)) giveUp();
    skipAll<NAME>();
    return since(start);
  }

  // Most often the name is the usual one.
  std::string_view readName(std::string_view usual) {
    const char* start = at;
    if (skip(usual) && !is(NAME, *at)) return usual;
    at = start;
    return readName();
  }

  // Returns what stands before the next such literal, and skips that too.
  std::string_view readUpTo(std::string_view literal) {
    const std::string_view text = rest();
    const std::size_t size = text.find(literal);
    if (size == text.npos) giveUp();
    at += size + literal.size();
    return text.substr(0, size);
  }

  const char* const begin;
  const char* const end;
  const char* at;
};

}  // namespace service::util::config::plain

#endif
