#include <unicode/ucnv.h>

#include <limits>
#include <new>
#include <stdexcept>

#include "support/ustring.hpp"

namespace support {
namespace {

// ICU counts in 32 bits; the converted text has up to `growth` bytes for each unit.
std::int32_t icuLength(std::size_t length, std::int32_t growth) {
  if (length > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() / growth)) {
    throw std::length_error("text is too long to convert");
  }
  return static_cast<std::int32_t>(length);
}

}  // namespace

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

}  // namespace support
