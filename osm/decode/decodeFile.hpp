// Finds out what a file is and decodes it.
#pragma once

#include "osm/decode/ByteSource.hpp"
#include "osm/decode/TableFiller.hpp"

namespace OpenStreetMap {

/// Decodes a whole file: OSM XML or PBF, plain or in gzip or bzip2, by what its first bytes say.
/// Throws DecodeError, std::bad_alloc.
void decodeFile(ByteSource& file, TableFiller& filler);

}  // namespace OpenStreetMap
