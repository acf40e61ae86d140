// What goes wrong with an input file.
#pragma once

#include <stdexcept>
#include <string>

namespace OpenStreetMap {

/// Thrown for a file that can't be opened, read or understood. The message names the file, the
/// place in it and the reason, on one line: "town.osm: line 3, column 14: ...".
class ReadError : public std::runtime_error {
 public:
  /// `place` may be empty where the file as a whole is meant.
  ReadError(std::string const& file, std::string const& place, std::string const& reason);
};

}  // namespace OpenStreetMap
