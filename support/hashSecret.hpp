// What makes the hashes of this process its own.
#pragma once

#include <array>
#include <cstdint>

namespace support {

/// Random numbers that key the hash of every table whose keys come from a file. Nobody who writes a
/// file can know them, so nobody can choose keys that all fall into one place of a table.
struct HashSecret {
  std::array<std::uint64_t, 4> ids;
  std::array<unsigned char, 16> text;
};

/// The same for the life of the process. Throws std::system_error, at the first call only, when the
/// system gives no random numbers.
HashSecret const& hashSecret();

}  // namespace support
