// What ends the decoding of a file early.
#pragma once

#include <exception>
#include <string>

namespace OpenStreetMap {

/// What the decoders throw; the reader adds the name of the file.
struct DecodeError {
  std::string place;  ///< "line 3, column 14", "byte 120", or empty
  std::string reason;
};

/// Takes what a Progress has thrown past all that turns exceptions into places and reasons.
struct Interruption {
  std::exception_ptr cause;
};

}  // namespace OpenStreetMap
