// The network for maps and GIS, as GeoJSON (RFC 7946).
#pragma once

#include "export/BufferedFile.hpp"
#include "export/NetworkWalk.hpp"

class RoadNetworkImporter;

/// Nodes as Points, then roads as LineStrings, then turn restrictions as Points, one Feature a
/// line. Positions are longitude, latitude in degrees on WGS 84 and, unless one of the feature's is
/// not finite, elevation in metres. A road that crosses the antimeridian is a MultiLineString, cut
/// there (section 3.1.9).
void writeGeoJson(RoadNetworkImporter const& importer, BufferedFile& file);

/// The same Features without a collection around them: newline-delimited GeoJSON.
void writeGeoJsonLines(RoadNetworkImporter const& importer, BufferedFile& file);
