// Any bytes as a whole file: XML, PBF blobs, gzip and bzip2 streams. What a reader keeps for roads
// and restrictions is what it would find in the tables of everything.
#include <cstdint>
#include <optional>

#include "fuzz/Tables.hpp"
#include "osm/decode/ByteSource.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/PbfFile.hpp"
#include "osm/decode/WayFiller.hpp"
#include "osm/decode/decodeFile.hpp"
#include "tags/keys.hpp"

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

std::optional<OpenStreetMap::DecodeError> decode(std::string_view bytes,
                                                 OpenStreetMap::ElementSink& sink) {
  try {
    // Also in small pieces, so that whatever spans two of them is met.
    MemorySource source(bytes, bytes.size() % 2 == 0 ? 7 : 64 * 1024);
    OpenStreetMap::decodeFile(source, "", sink, OpenStreetMap::decodeOneByOne);
    return std::nullopt;
  } catch (OpenStreetMap::DecodeError const& error) {
    return error;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const bytes(reinterpret_cast<char const*>(data), size);
  Tables all, kept;
  OpenStreetMap::Selection selection = roadSelection();
  addRestrictions(selection);
  OpenStreetMap::WayFiller roads(kept.storage, kept.ways, kept.relations, selection);
  auto const error = decode(bytes, all.filler);
  auto const sameError = decode(bytes, roads);
  if (error.has_value() != sameError.has_value()) std::abort();
  if (error) {
    if (error->reason.empty()) std::abort();
    if (error->reason != sameError->reason || error->place != sameError->place) std::abort();
    return 0;
  }
  all.check();
  kept.checkKept(roads, all);
  return 0;
}
