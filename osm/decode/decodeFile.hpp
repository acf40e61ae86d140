// Finds out what a file is and decodes it.
#pragma once

#include <string_view>

#include "osm/PbfRunner.hpp"
#include "osm/decode/ByteSource.hpp"
#include "osm/decode/ElementSink.hpp"

namespace OpenStreetMap {

/// What the first bytes of a file say: that it is XML, or inside gzip or bzip2.
bool looksLikeXml(std::string_view head);
bool looksPacked(std::string_view head);

/// Decodes a whole file: OSM XML or PBF, plain or in gzip or bzip2, by what its first bytes say.
/// The name of the file decides nothing, but XML under a name that ends in ".pbf" is refused.
/// `runPbf` is asked to decode a PBF file. Throws DecodeError, std::bad_alloc.
void decodeFile(ByteSource& file, std::string_view name, ElementSink& sink,
                PbfRunner const& runPbf);

}  // namespace OpenStreetMap
