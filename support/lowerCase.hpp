// Names that are the same in upper and lower case.
#pragma once

#include <string>
#include <string_view>

namespace support {

/// With small letters for the capitals of ASCII, whatever the locale.
inline std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lower;
}

}  // namespace support
