#include "support/ustring.hpp"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <charconv>
#include <limits>
#include <new>
#include <stdexcept>

namespace support {
namespace {

constexpr UChar32 noSubstitute = -1;
constexpr UChar32 replacementCharacter = 0xFFFD;

bool isAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

// ICU counts in 32 bits; the converted text has up to `growth` units for each.
std::int32_t icuLength(std::size_t length, std::int32_t growth) {
  if (length > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() / growth)) {
    throw std::length_error("text is too long to convert");
  }
  return static_cast<std::int32_t>(length);
}

// Nearly all text in a file is ASCII, where widening is all there is to do.
// Returns false when the text is ill-formed and `substitute` is noSubstitute.
bool utf8To16(std::string_view utf8, UChar32 substitute, std::u16string& result) {
  result.resize(utf8.size());
  std::transform(utf8.begin(), utf8.end(), result.begin(),
                 [](char byte) { return static_cast<char16_t>(static_cast<unsigned char>(byte)); });
  if (std::all_of(utf8.begin(), utf8.end(), isAscii)) return true;
  std::int32_t const size = icuLength(utf8.size(), 1);  // UTF-16 never needs more units than UTF-8
  std::int32_t length = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strFromUTF8WithSub(result.data(), size, &length, utf8.data(), size, substitute, nullptr,
                       &error);
  if (error == U_INVALID_CHAR_FOUND) return false;
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  result.resize(static_cast<std::size_t>(length));
  return true;
}

}  // namespace

std::u16string to_ustring(std::string_view utf8) {
  std::u16string result;
  if (!utf8To16(utf8, noSubstitute, result)) throw std::range_error("not well-formed UTF-8");
  return result;
}

void decodeUtf8(std::string_view utf8, std::u16string& result) {
  utf8To16(utf8, replacementCharacter, result);
}

std::string ustring_to_utf8(char16_t const* text, std::size_t length) {
  std::int32_t const units = icuLength(length, 3);
  std::string result(length * 3, '\0');
  std::int32_t size = 0;
  UErrorCode error = U_ZERO_ERROR;
  u_strToUTF8WithSub(result.data(), units * 3, &size, text, units, replacementCharacter, nullptr,
                     &error);
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  result.resize(static_cast<std::size_t>(size));
  return result;
}

codecvt_ustring_to_string::codecvt_ustring_to_string(char const* encoding, int strict) {
  UErrorCode error = U_ZERO_ERROR;
  converter_.reset(ucnv_open(encoding, &error));
  if (strict != 0 && U_SUCCESS(error)) {
    ucnv_setFromUCallBack(converter_.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                          &error);
  }
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error)) throw std::invalid_argument(std::string("unknown encoding ") + encoding);
}

void codecvt_ustring_to_string::Close::operator()(UConverter* converter) const noexcept {
  ucnv_close(converter);
}

std::string codecvt_ustring_to_string::do_convert(char16_t const* text, std::size_t length) const {
  std::int32_t const bytesPerUnit = ucnv_getMaxCharSize(converter_.get());
  // The capacity is that of UCNV_GET_MAX_BYTES_FOR_STRING: ten units for changes of state.
  std::int32_t const capacity = icuLength(length + 10, bytesPerUnit) * bytesPerUnit;
  auto const units = static_cast<std::int32_t>(length);
  std::string result(static_cast<std::size_t>(capacity), '\0');
  UErrorCode error = U_ZERO_ERROR;
  std::int32_t const size =
      ucnv_fromUChars(converter_.get(), result.data(), capacity, text, units, &error);
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error)) throw std::range_error("text that can't be converted: ill-formed UTF-16");
  result.resize(static_cast<std::size_t>(size));
  return result;
}

std::u16string decimal(std::int64_t number) {
  char digits[32];
  char const* const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  return std::u16string(static_cast<char const*>(digits), end);
}

}  // namespace support
