// Any bytes as a whole file: XML, PBF blobs, gzip and bzip2 streams.
#include <cstdint>

#include "fuzz/Tables.hpp"
#include "osm/decode/ByteSource.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/decodeFile.hpp"

namespace {

// Hands out at most `piece` bytes at a time.
class MemorySource final : public OpenStreetMap::ByteSource {
 public:
  MemorySource(std::string_view bytes, std::size_t piece) : bytes_(bytes), piece_(piece) {}

  std::size_t read(char* buffer, std::size_t size) override {
    std::size_t const count = bytes_.copy(buffer, size < piece_ ? size : piece_);
    bytes_.remove_prefix(count);
    return count;
  }

 private:
  std::string_view bytes_;
  std::size_t piece_;
};

}  // namespace

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
