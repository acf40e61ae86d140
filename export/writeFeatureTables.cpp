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
           OutputFolder const& folder, Progress const& progress) {
  namingOutput(folder.name(), [&] {
    std::unique_ptr<FeatureTables> const tables(
        loadTables()(driver, paths, tagColumns(importer.options.tags)));
    NetworkWalk walk(importer.roadNetwork, progress);
    walk.forEachNode([&](Node const& node) { tables->add(nodeRow(node)); });
    RoadRows const rows(importer);
    walk.forEachRoad([&](Road const& road) { tables->add(rows(road)); });
    forEachRestriction(importer, [&](RestrictionRow const& row) { tables->add(row); });
    tables->finish();
  });
}

}  // namespace

void requireGdal(std::string const& output) {
  namingOutput(output, loadTables);
}

void writeGeoPackage(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress) {
  std::string const path = gdalPath(folder, geoPackageFile);
  write(importer, "GPKG", {path, path, path}, folder, progress);
}

void writeFlatGeobuf(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress) {
  write(importer, "FlatGeobuf",
        {gdalPath(folder, flatGeobufNodes), gdalPath(folder, flatGeobufRoads),
         gdalPath(folder, flatGeobufRestrictions)},
        folder, progress);
}
