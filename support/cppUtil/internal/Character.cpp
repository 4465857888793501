#include "cppUtil/internal/Character.hpp"

namespace cppUtil::internal {

Character::Character(const char* text, std::size_t size)
    : code(static_cast<unsigned char>(*text)), length(0) {
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(*text);
  const std::size_t expected = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
  if (expected == 0 || expected > size) return;
  char32_t decoded = expected == 1 ? lead : lead & (0x7FU >> expected);
  for (std::size_t i = 1; i < expected; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return;
    decoded = decoded << 6 | (byte & 0x3F);
  }
  const bool isSurrogate = decoded >= 0xD800 && decoded <= 0xDFFF;
  if (decoded < smallest[expected] || isSurrogate || decoded > 0x10FFFF) return;
  code = decoded;
  length = expected;
}

}  // namespace cppUtil::internal
