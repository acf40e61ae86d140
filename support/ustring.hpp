// Conversions between the narrow text of the outside world (UTF-8) and the UTF-16 text that tags,
// names and paths are held in. A string made here is well-formed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct UConverter;

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

/// Converts UTF-16 to text in a named encoding.
class codecvt_ustring_to_string {
 public:
  /// `encoding` is a name that ICU knows, such as "UTF-8"; with `strict` 0, what can't be converted
  /// is replaced, otherwise it is an error. Throws std::invalid_argument for an unknown name.
  codecvt_ustring_to_string(char const* encoding, int strict);

  /// When strict, throws std::range_error for ill-formed UTF-16 or characters that the encoding
  /// lacks. Throws std::length_error for text that is too long for ICU, some 700 million code
  /// units.
  std::string do_convert(char16_t const* text, std::size_t length) const;

 private:
  struct Close {
    void operator()(UConverter* converter) const noexcept;
  };
  std::unique_ptr<UConverter, Close> converter_;
};

/// A number as signed decimal text, as the format "%ld" writes it.
std::u16string decimal(std::int64_t number);

}  // namespace support
