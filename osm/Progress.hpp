// How far the reading of a file has come.
#pragma once

#include <cstdint>
#include <functional>

namespace OpenStreetMap {

/// Called now and then while the file is read. The size of a stream is 0 until its end.
using Progress = std::function<void(std::uint64_t bytesRead, std::uint64_t fileSize)>;

}  // namespace OpenStreetMap
