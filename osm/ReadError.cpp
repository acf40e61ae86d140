#include "osm/ReadError.hpp"

namespace OpenStreetMap {
namespace {

// A file name or a piece of the file may hold anything; the message stays one line of text.
std::string printable(std::string text) {
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return text;
}

}  // namespace

ReadError::ReadError(std::string const& file, std::string const& place, std::string const& reason)
    : std::runtime_error(printable(file + ": " + (place.empty() ? "" : place + ": ") + reason)) {}

}  // namespace OpenStreetMap
