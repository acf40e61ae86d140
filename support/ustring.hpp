// Conversions between the narrow text of the outside world (UTF-8) and the UTF-16 text that tags,
// names and paths are held in. All of them are total: a `char16_t` string made here is well-formed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace support {

/// UTF-8 to UTF-16. Throws std::range_error when `utf8` is not well-formed.
std::u16string to_ustring(std::string_view utf8);

/// UTF-8 to UTF-16 into `result`, whose capacity is reused. Each ill-formed sequence (a "maximal
/// subpart" as in the Unicode standard, section 3.9) becomes one U+FFFD.
void decodeUtf8(std::string_view utf8, std::u16string& result);

/// UTF-16 to UTF-8. Each unpaired surrogate becomes U+FFFD.
std::string ustring_to_utf8(char16_t const* text, std::size_t length);
inline std::string ustring_to_utf8(std::u16string_view text) {
  return ustring_to_utf8(text.data(), text.size());
}

/// A number as signed decimal text, as the format "%ld" writes it.
std::u16string decimal(std::int64_t number);

}  // namespace support
