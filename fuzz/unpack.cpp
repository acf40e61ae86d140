// Any bytes as a PBF blob, a gzip file and a bzip2 file: unpacking alone.
#include <cstdint>
#include <vector>

#include "fuzz/MemorySource.hpp"
#include "osm/decode/Bzip2Source.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/GzipSource.hpp"
#include "osm/decode/PbfBlob.hpp"
#include "osm/decode/pbfFields.hpp"

namespace {

template <class Source>
void readAll(std::string_view bytes) {
  MemorySource packed(bytes, 11);
  Source source(packed);
  std::vector<char> buffer(4096);
  // A few bytes can unpack to gigabytes; a reader stops when what comes is no OSM file.
  for (int reads = 0; reads < 1000 && source.read(buffer.data(), buffer.size()) > 0; ++reads) {
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  if (size == 0) return 0;
  std::string_view const bytes(reinterpret_cast<char const*>(data) + 1, size - 1);
  try {
    switch (data[0] % 3) {
      case 0:
        OpenStreetMap::PbfBlobUnpacker().unpack(bytes);
        break;
      case 1:
        readAll<OpenStreetMap::GzipSource>(bytes);
        break;
      default:
        readAll<OpenStreetMap::Bzip2Source>(bytes);
    }
  } catch (OpenStreetMap::DecodeError const&) {
  } catch (std::runtime_error const&) {
  } catch (protozero::exception const&) {
  }
  return 0;
}
