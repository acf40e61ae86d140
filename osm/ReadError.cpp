#include "osm/ReadError.hpp"

#include "support/ustring.hpp"

namespace OpenStreetMap {
namespace {

// A file name or a piece of the file may hold anything; the message stays one line of UTF-8.
std::string printable(std::string const& text) {
  std::u16string units;
  support::decodeUtf8(text, units);
  for (char16_t& unit : units) {
    if (unit < 0x20 || unit == 0x7F) unit = u'?';
  }
  return support::ustring_to_utf8(units);
}

}  // namespace

ReadError::ReadError(std::string const& file, std::string const& place, std::string const& reason)
    : std::runtime_error(printable(file + ": " + (place.empty() ? "" : place + ": ") + reason)) {}

}  // namespace OpenStreetMap
