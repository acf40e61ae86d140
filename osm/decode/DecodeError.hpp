// What the decoders throw; the reader adds the name of the file.
#pragma once

#include <string>

namespace OpenStreetMap {

struct DecodeError {
  std::string place;  ///< "line 3, column 14", "byte 120", or empty
  std::string reason;
};

}  // namespace OpenStreetMap
