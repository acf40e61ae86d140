#include "support/ustring.hpp"

// Of ICU only macros: nothing of it is linked here.
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace support {
namespace {

constexpr UChar32 replacementCharacter = 0xFFFD;

bool isAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

// The character at `at`, which is moved behind it; negative for an ill-formed sequence.
UChar32 nextCharacter(std::string_view utf8, std::size_t& at) {
  UChar32 character = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
  U8_NEXT(utf8, at, utf8.size(), character);
#pragma GCC diagnostic pop
  return character;
}

// What to do with an ill-formed sequence.
enum class IllFormed { replace, refuse };

void utf8To16(std::string_view utf8, IllFormed illFormed, std::u16string& result) {
  result.resize(utf8.size());  // UTF-16 never needs more units than UTF-8
  // Nearly all text in a file is ASCII, where widening is all there is to do.
  std::transform(utf8.begin(), utf8.end(), result.begin(),
                 [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
  auto const rest = std::find_if_not(utf8.begin(), utf8.end(), isAscii);
  if (rest == utf8.end()) return;
  char16_t* const units = result.data();
  auto at = static_cast<std::size_t>(rest - utf8.begin());
  std::size_t length = at;
  while (at < utf8.size()) {
    UChar32 character = nextCharacter(utf8, at);
    if (character < 0) {
      if (illFormed == IllFormed::refuse) throw std::range_error("not well-formed UTF-8");
      character = replacementCharacter;
    }
    U16_APPEND_UNSAFE(units, length, character);
  }
  result.resize(length);
}

}  // namespace

std::u16string to_ustring(std::string_view utf8) {
  std::u16string result;
  utf8To16(utf8, IllFormed::refuse, result);
  return result;
}

void decodeUtf8(std::string_view utf8, std::u16string& result) {
  utf8To16(utf8, IllFormed::replace, result);
}

std::string ustring_to_utf8(char16_t const* text, std::size_t length) {
  std::size_t const ascii = static_cast<std::size_t>(
      std::find_if_not(text, text + length, [](char16_t unit) { return unit < 0x80; }) - text);
  std::string result(ascii + 3 * (length - ascii), '\0');
  std::transform(text, text + ascii, result.begin(),
                 [](char16_t unit) { return static_cast<char>(unit); });
  char* const bytes = result.data();
  std::size_t size = ascii;
  for (std::size_t at = ascii; at < length;) {
    UChar32 character = 0;
    U16_NEXT(text, at, length, character);
    if (U_IS_SURROGATE(character)) character = replacementCharacter;
    U8_APPEND_UNSAFE(bytes, size, character);
  }
  result.resize(size);
  return result;
}

std::u16string decimal(std::int64_t number) {
  char digits[32];
  char const* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  return std::u16string(static_cast<char const*>(digits), end);
}

}  // namespace support
