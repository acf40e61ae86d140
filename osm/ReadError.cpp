#include "osm/ReadError.hpp"

#include "support/ustring.hpp"

namespace OpenStreetMap {

ReadError::ReadError(std::string const& file, std::string const& place, std::string const& reason)
    : std::runtime_error(
          support::printable(file + ": " + (place.empty() ? "" : place + ": ") + reason)) {}

}  // namespace OpenStreetMap
