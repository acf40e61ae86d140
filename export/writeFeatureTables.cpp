#include "export/writeFeatureTables.hpp"

#include <dlfcn.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "export/gdal/FeatureTables.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// Never unloaded: libraries that GDAL brings do not all bear it.
OpenFeatureTables* loadGdal() {
  void* const library = ::dlopen("libosm2roadnet_gdal.so", RTLD_NOW | RTLD_LOCAL);
  void* const function = library != nullptr ? ::dlsym(library, "openFeatureTables") : nullptr;
  if (function == nullptr) throw std::runtime_error(::dlerror());
  return reinterpret_cast<OpenFeatureTables*>(function);
}

void write(RoadNetworkImporter const& importer, char const* driver, std::string const& nodesPath,
           std::string const& roadsPath, Progress const& progress) {
  std::unique_ptr<FeatureTables> const tables(
      loadGdal()(driver, nodesPath.c_str(), roadsPath.c_str()));
  NetworkWalk walk(importer.roadNetwork, progress);
  walk.forEachNode([&](Node const& node) { tables->add(nodeRow(node)); });
  walk.forEachRoad([&](Road const& road) { tables->add(roadRow(road, importer)); });
  tables->finish();
}

// GDAL's messages do not name the file, or by the name that it has until it is complete.
template <class Write>
void namingTheOutput(OutputFolder const& folder, Write const& write) {
  try {
    write();
  } catch (std::runtime_error const& error) {
    throw std::runtime_error(folder.name() + ": can't write: " + error.what());
  }
}

}  // namespace

void requireGdal() {
  loadGdal();
}

void writeGeoPackage(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress) {
  namingTheOutput(folder, [&] {
    write(importer, "GPKG", folder.path(geoPackageFile), folder.path(geoPackageFile), progress);
  });
}

void writeFlatGeobuf(RoadNetworkImporter const& importer, OutputFolder const& folder,
                     Progress const& progress) {
  namingTheOutput(folder, [&] {
    write(importer, "FlatGeobuf", folder.path(flatGeobufNodes), folder.path(flatGeobufRoads),
          progress);
  });
}
