#include "osm/decode/decodeFile.hpp"

#include <string>
#include <string_view>

#include "osm/decode/Bzip2Source.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/GzipSource.hpp"
#include "osm/decode/PbfFile.hpp"
#include "osm/decode/decodeXml.hpp"

namespace OpenStreetMap {
namespace {

using namespace std::string_view_literals;

// What people hand over by mistake, each told by its first bytes.
struct ForeignFormat {
  std::string_view magic;
  char const* name;
};
constexpr ForeignFormat foreignFormats[] = {
    {"PK\x03\x04"sv, "a ZIP archive; unpack it first"},
    {"\xFD"
     "7zXZ"sv,
     "xz-compressed; unpack it first"},
    {"\x28\xB5\x2F\xFD"sv, "zstd-compressed; unpack it first"},
    {"7z\xBC\xAF"sv, "a 7z archive; unpack it first"},
    {"\xFF\xE0"sv, "in o5m format; convert it to PBF first"},
    {"SQLite format 3"sv, "an SQLite database"},
    {"\x1F\x8B"sv, "compressed more than once; unpack it first"},
    {"BZh"sv, "compressed more than once; unpack it first"},
    {"{"sv, "JSON; OSM XML or PBF is needed"},
    {"["sv, "JSON; OSM XML or PBF is needed"},
};

std::string_view withoutLeadingSpace(std::string_view head) {
  std::size_t const start = head.find_first_not_of(" \t\r\n");
  return start == std::string_view::npos ? ""sv : head.substr(start);
}

// A PBF file starts with the length of the first BlobHeader (four bytes, big-endian, at most 64
// KiB) and the BlobHeader, which holds its type first. A damaged length is better told as such.
bool looksLikePbf(std::string_view head) {
  return head.size() >= 4 &&
         (head.starts_with('\0') || head.substr(4).starts_with("\n\tOSMHeader"sv));
}

void decodeUnpacked(SniffedSource& source, std::string_view name, ElementSink& sink,
                    PbfRunner const& runPbf) {
  std::string_view const head = source.head();
  if (head.empty()) throw DecodeError{"", "the file is empty"};
  if (looksLikeXml(head)) {
    // What a download server answers instead of the file is XML or HTML under the wanted name.
    if (name.ends_with(".pbf")) throw DecodeError{"", "the name says PBF, but this is XML"};
    return decodeXml(source, sink);
  }
  for (ForeignFormat const& format : foreignFormats) {
    if (withoutLeadingSpace(head).starts_with(format.magic)) {
      throw DecodeError{"", std::string("this is not an OSM file; it is ") + format.name};
    }
  }
  if (looksLikePbf(head)) {
    PbfFile pbf(source, sink);
    return runPbf(pbf);
  }
  throw DecodeError{"", "this is not an OSM file (neither OSM XML nor PBF)"};
}

}  // namespace

bool looksLikeXml(std::string_view head) {
  if (head.starts_with("\xEF\xBB\xBF"sv)) return true;
  if (head.starts_with("\xFF\xFE"sv) || head.starts_with("\xFE\xFF"sv)) return true;
  if (head.starts_with("<\0"sv) || head.starts_with("\0<"sv)) return true;
  return withoutLeadingSpace(head).starts_with('<');
}

bool looksPacked(std::string_view head) {
  return head.starts_with("\x1F\x8B"sv) || head.starts_with("BZh"sv);
}

void decodeFile(ByteSource& file, std::string_view name, ElementSink& sink,
                PbfRunner const& runPbf) {
  SniffedSource packed(file);
  if (packed.head().starts_with("\x1F\x8B"sv)) {
    GzipSource gzip(packed);
    SniffedSource unpacked(gzip);
    decodeUnpacked(unpacked, name, sink, runPbf);
  } else if (packed.head().starts_with("BZh"sv)) {
    Bzip2Source bzip2(packed);
    SniffedSource unpacked(bzip2);
    decodeUnpacked(unpacked, name, sink, runPbf);
  } else {
    decodeUnpacked(packed, name, sink, runPbf);
  }
}

}  // namespace OpenStreetMap
