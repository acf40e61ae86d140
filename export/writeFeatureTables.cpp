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

void write(RoadNetworkImporter const& importer, OutputFolder const& folder, char const* driver,
           std::string_view nodesFile, std::string_view roadsFile, Progress const& progress) {
  namingOutput(folder.name(), [&] {
    std::unique_ptr<FeatureTables> const tables(
        loadTables()(driver, gdalPath(folder, nodesFile).c_str(),
                     gdalPath(folder, roadsFile).c_str(), tagColumns(importer.options.tags)));
    NetworkWalk walk(importer.roadNetwork, progress);
    walk.forEachNode([&](Node const& node) { tables->add(nodeRow(node)); });
    RoadRows const rows(importer);
    walk.forEachRoad([&](Road const& road) { tables->add(rows(road)); });
    tables->finish();
  });
}

}  // namespace

void requireGdal(std::string const& output) {
  namingOutput(output, loadTables);
}

void writeGeoPackage(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress) {
  write(importer, folder, "GPKG", geoPackageFile, geoPackageFile, progress);
}

void writeFlatGeobuf(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress) {
  write(importer, folder, "FlatGeobuf", flatGeobufNodes, flatGeobufRoads, progress);
}
