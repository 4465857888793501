// Text for a terminal, from a source that may mean harm. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace cutil {

// Appends text, which is UTF-8, with its control characters escaped, so that it stays on its line
// and can neither command a terminal nor turn the order of what is read: "\n", "\x1b", "\u202e".
// Bytes that are no UTF-8 stay, unless they are control characters in themselves.
void appendVisible(std::string& line, std::string_view text);

}  // namespace cutil
