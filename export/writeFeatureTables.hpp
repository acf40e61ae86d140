// The network for GIS, in formats that GDAL writes: GeoPackage and FlatGeobuf.
#pragma once

#include <string>
#include <string_view>

#include "export/NetworkWalk.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

/// Throws std::runtime_error, with the output's name in its text, when GDAL can't be loaded.
void requireGdal(std::string const& output);

/// Layers "nodes", "roads" and "restrictions", longitude before latitude, with elevations, on WGS
/// 84 (EPSG:4326). An elevation that is not finite stays so; a name that is empty is null.
/// GeoPackage (https://www.geopackage.org): one file with all.
inline constexpr std::string_view geoPackageFile = "network.gpkg";
void writeGeoPackage(RoadNetworkImporter const& importer, OutputFolder const& folder);

/// FlatGeobuf (https://flatgeobuf.org): a file each, as it has one layer a file. GDAL opens the
/// folder as one.
inline constexpr std::string_view flatGeobufNodes = "nodes.fgb";
inline constexpr std::string_view flatGeobufRoads = "roads.fgb";
inline constexpr std::string_view flatGeobufRestrictions = "restrictions.fgb";
void writeFlatGeobuf(RoadNetworkImporter const& importer, OutputFolder const& folder);
