#include "osm/ReadError.hpp"

#include "support/printable.hpp"

namespace OpenStreetMap {

ReadError::ReadError(std::string const& file, std::string const& place, std::string const& reason)
    : std::runtime_error(
          support::printable(file + ": " + (place.empty() ? "" : place + ": ") + reason)),
      parts_(std::make_shared<Parts const>(Parts{file, place, support::printable(reason)})) {}

}  // namespace OpenStreetMap
