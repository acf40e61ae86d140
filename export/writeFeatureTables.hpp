// The network for GIS, in formats that GDAL writes: GeoPackage and FlatGeobuf.
#pragma once

#include <string_view>
#include <vector>

#include "export/NetworkWalk.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

/// Layers "nodes" and "roads", longitude before latitude, with elevations, on WGS 84 (EPSG:4326).
/// An elevation that is not finite stays so; a name that is empty is null.
/// GeoPackage (https://www.geopackage.org): one file with both.
void writeGeoPackage(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress);

/// FlatGeobuf (https://flatgeobuf.org): a file each, as it has one layer a file. GDAL opens the
/// folder as one.
void writeFlatGeobuf(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress);
inline std::vector<std::string_view> const flatGeobufFiles{"nodes.fgb", "roads.fgb"};
