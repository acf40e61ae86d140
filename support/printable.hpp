// Text of others in messages.
#pragma once

#include <string>
#include <string_view>

namespace support {

/// Text of any kind as one line of well-formed UTF-8: control characters become '?', ill-formed
/// sequences U+FFFD, and what exceeds 1,000 UTF-16 code units is left out.
std::string printable(std::string_view text);

/// A value from a file: in quotes, and not too much of it. It may still have to become printable.
std::string quoted(std::string_view value);

}  // namespace support
