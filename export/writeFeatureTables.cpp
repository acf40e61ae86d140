#include "export/writeFeatureTables.hpp"

#include <dlfcn.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "export/gdal/FeatureTables.hpp"
#include "export/tagColumns.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// Never unloaded: libraries that GDAL brings do not all bear it.
OpenFeatureTables* loadGdal() {
  void* const library = ::dlopen("libosm2roadnet_gdal.so", RTLD_NOW | RTLD_LOCAL);
  void* const function = library != nullptr ? ::dlsym(library, "openFeatureTables") : nullptr;
  if (function == nullptr)
    throw std::runtime_error(std::string("GDAL can't be loaded: ") + ::dlerror());
  return reinterpret_cast<OpenFeatureTables*>(function);
}

// GDAL takes names that begin in certain ways for something else than a file: "GPKG:", "/vsimem/".
std::string gdalPath(OutputFolder const& folder, std::string_view file) {
  return "/." + std::filesystem::absolute(folder.path(file)).string();
}

// GDAL's messages name no file, or one by the name that it has only while it is unfinished.
template <class Action>
void naming(std::string const& output, Action const& action) {
  try {
    action();
  } catch (std::runtime_error const& error) {
    throw std::runtime_error(output + ": can't write: " + error.what());
  }
}

void write(RoadNetworkImporter const& importer, char const* driver, TablePaths const& paths,
           OutputFolder const& folder, Progress const& progress) {
  naming(folder.name(), [&] {
    std::unique_ptr<FeatureTables> const tables(
        loadGdal()(driver, paths, tagColumns(importer.options.tags)));
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
  naming(output, loadGdal);
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
