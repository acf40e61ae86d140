// The ids of a road network.
#pragma once

#include <cstdint>

namespace support {

/// The id of an element of the model: unsigned, 64 bits.
using ModelId = unsigned long;
static_assert(sizeof(ModelId) == sizeof(std::uint64_t));

}  // namespace support
