// Any bytes as an unpacked PrimitiveBlock, which in a file is behind compression.
#include <cstdint>

#include "fuzz/Tables.hpp"
#include "osm/decode/PbfBlock.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Tables tables;
  OpenStreetMap::PbfBlockDecoder decoder(tables.filler);
  for (int round = 0; round < 2; ++round) {  // its scratch memory must not remember
    try {
      decoder.decode({reinterpret_cast<char const*>(data), size});
      tables.check();
    } catch (std::runtime_error const&) {
    } catch (protozero::exception const&) {
    }
  }
  return 0;
}
