// Any bytes as a whole file: XML, PBF blobs, gzip and bzip2 streams.
#include <cstdint>

#include "fuzz/MemorySource.hpp"
#include "fuzz/Tables.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/decodeFile.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  Tables tables;
  try {
    // Also in small pieces, so that whatever spans two of them is met.
    MemorySource source(bytes, size % 2 == 0 ? 7 : 64 * 1024);
    OpenStreetMap::decodeFile(source, "", tables.filler);
    tables.check();
  } catch (OpenStreetMap::DecodeError const& error) {
    if (error.reason.empty()) std::abort();
  }
  return 0;
}
