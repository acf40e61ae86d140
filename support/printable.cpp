#include "support/printable.hpp"

#include <unicode/utf16.h>

#include "support/ustring.hpp"

namespace support {

std::string printable(std::string_view text) {
  constexpr std::size_t longest = 1000;
  std::u16string units;
  decodeUtf8(text.substr(0, 4 * longest), units);
  if (units.size() > longest) {
    bool const cutsPair = U16_IS_LEAD(units[longest - 1]);
    units.replace(cutsPair ? longest - 1 : longest, std::u16string::npos, u"...");
  }
  for (char16_t& unit : units) {
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = u'?';
  }
  return ustring_to_utf8(units.data(), units.size());
}

std::string quoted(std::string_view value) {
  constexpr std::size_t shown = 40;
  if (value.size() <= shown) return '"' + std::string(value) + '"';
  return '"' + std::string(value.substr(0, shown)) + "...\"";
}

}  // namespace support
