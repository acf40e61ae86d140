// Any bytes as OSM XML.
#include <cstdint>

#include "fuzz/MemorySource.hpp"
#include "fuzz/Tables.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/decodeXml.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Tables tables;
  try {
    MemorySource source(std::string_view(reinterpret_cast<char const*>(data), size));
    OpenStreetMap::decodeXml(source, tables.filler);
    tables.check();
  } catch (OpenStreetMap::DecodeError const& error) {
    if (error.reason.empty() || error.place.empty()) std::abort();
  }
  return 0;
}
