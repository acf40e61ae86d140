// Decodes the OSM PBF format (https://wiki.openstreetmap.org/wiki/PBF_Format).
#pragma once

#include "osm/decode/ByteSource.hpp"
#include "osm/decode/ElementSink.hpp"

namespace OpenStreetMap {

/// Walks the file's blobs: the first must be an OSMHeader whose required features are known, then
/// OSMData; other types are passed over. Throws DecodeError with the blob's number, counted from 1,
/// and where it starts.
void decodePbf(ByteSource& source, ElementSink& sink);

}  // namespace OpenStreetMap
