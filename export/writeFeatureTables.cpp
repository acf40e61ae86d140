#include "export/writeFeatureTables.hpp"

#include <memory>
#include <string>

#include "export/gdal/FeatureTables.hpp"
#include "export/loadGdal.hpp"
#include "export/tagColumns.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

OpenFeatureTables* loadTables() {
  return reinterpret_cast<OpenFeatureTables*>(loadGdalFunction("openFeatureTables"));
}

void write(RoadNetworkImporter const& importer, char const* driver, TablePaths const& paths,
           OutputFolder const& folder) {
  auto const naming = [&](auto const& action) { return namingOutput(folder.name(), action); };
  auto const tables = naming([&] {
    return std::unique_ptr<FeatureTables>(
        loadTables()(driver, paths, tagColumns(importer.options.tags)));
  });
  auto const add = [&](auto const& row) { naming([&] { tables->add(row); }); };
  NetworkWalk walk(importer);
  walk.forEachNode([&](Node const& node) { add(nodeRow(node)); });
  RoadRows const rows(importer);
  walk.forEachRoad([&](Road const& road) { add(rows(road)); });
  forEachRestriction(importer, add);
  naming([&] { tables->finish(); });
}

}  // namespace

void requireGdal(std::string const& output) {
  namingOutput(output, loadTables);
}

void writeGeoPackage(RoadNetworkImporter const& importer, OutputFolder const& folder) {
  std::string const path = gdalPath(folder, geoPackageFile);
  write(importer, "GPKG", {path, path, path}, folder);
}

void writeFlatGeobuf(RoadNetworkImporter const& importer, OutputFolder const& folder) {
  write(importer, "FlatGeobuf",
        {gdalPath(folder, flatGeobufNodes), gdalPath(folder, flatGeobufRoads),
         gdalPath(folder, flatGeobufRestrictions)},
        folder);
}
