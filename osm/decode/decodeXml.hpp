// Decodes OSM XML (https://wiki.openstreetmap.org/wiki/OSM_XML), version 0.6.
#pragma once

#include "osm/decode/ByteSource.hpp"
#include "osm/decode/ElementSink.hpp"

namespace OpenStreetMap {

/// Elements that the format does not know are passed over with all that is in them; a node, way,
/// nd, tag or member in a place where it has no meaning is refused. Throws DecodeError with line
/// and column.
void decodeXml(ByteSource& source, ElementSink& sink);

}  // namespace OpenStreetMap
