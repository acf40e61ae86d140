#include "export/gdal/GdalLayers.hpp"

#include <cpl_conv.h>
#include <cpl_error.h>

#include <string_view>
#include <utility>

#include "export/attribution.hpp"
#include "export/gdal/defaultStyles.hpp"

GdalErrors::GdalErrors() {
  CPLPushErrorHandlerEx(&GdalErrors::add, this);
}

GdalErrors::~GdalErrors() {
  CPLPopErrorHandler();
}

void CPL_STDCALL GdalErrors::add(CPLErr level, CPLErrorNum, char const* message) {
  auto& first = static_cast<GdalErrors*>(CPLGetErrorHandlerUserData())->first_;
  if (level >= CE_Failure && first.empty()) first = message;
}

GdalLayers::GdalLayers(char const* driver) {
  for (auto const& [key, value] : {
           std::pair{"GDAL_NUM_THREADS", "1"},
           std::pair{"OGR_GPKG_ALLOW_THREADED_RTREE", "NO"},
           // It would look for files that are called like tile matrix sets, wherever it is.
           std::pair{"GDAL_VALIDATE_CREATION_OPTIONS", "NO"},
           // The same input gives the same bytes.
           std::pair{"OGR_CURRENT_DATE", "1970-01-01T00:00:00.000Z"},
           // The file has another name until it is complete; nobody needs to roll it back.
           std::pair{"OGR_SQLITE_SYNCHRONOUS", "OFF"},
           std::pair{"OGR_SQLITE_JOURNAL", "OFF"},
       }) {
    CPLSetThreadLocalConfigOption(key, value);
  }
  GDALAllRegister();
  driver_ = GetGDALDriverManager()->GetDriverByName(driver);
  if (driver_ == nullptr) throw std::runtime_error(std::string("GDAL lacks ") + driver);
}

GDALDataset& GdalLayers::fileAt(std::string const& path) {
  for (File& file : files_) {
    if (file.path == path) return *file.dataset;
  }
  files_.push_back(
      {path, GDALDatasetUniquePtr(driver_->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr))});
  check(files_.back().dataset != nullptr);
  return *files_.back().dataset;
}

OGRLayer& GdalLayers::addLayer(std::string const& path, char const* name, OGRwkbGeometryType type,
                               std::vector<Field> const& fields) {
  GDALDataset& file = fileAt(path);
  OGRSpatialReference wgs84;
  wgs84.SetWellKnownGeogCS("WGS84");
  wgs84.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  CPLStringList options;
  char const* const known = driver_->GetMetadataItem(GDAL_DS_LAYER_CREATIONOPTIONLIST);
  if (known != nullptr && std::string_view(known).find("'DESCRIPTION'") != std::string::npos) {
    options.SetNameValue("DESCRIPTION", (std::string(attribution) + ", " + license).c_str());
  }
  OGRLayer* const layer = file.CreateLayer(name, &wgs84, type, options.List());
  check(layer != nullptr);
  for (Field const& field : fields) {
    OGRFieldDefn definition(field.name, field.type);
    layer->CreateField(&definition);
  }
  errors_.check();
  return *layer;
}

void GdalLayers::append(OGRLayer& layer, OGRFeature& feature) {
  if (count_ == 0) {
    // Where there are no transactions this fails, which does not matter.
    for (File& file : files_) file.dataset->StartTransaction();
  }
  feature.SetFID(OGRNullFID);
  check(layer.CreateFeature(&feature) == OGRERR_NONE);
  ++count_;
}

void GdalLayers::finish() {
  if (driver_->GetDescription() == std::string_view("GPKG")) {
    for (File& file : files_) addDefaultStyles(*file.dataset);
  }
  for (File& file : files_) {
    if (count_ > 0) file.dataset->CommitTransaction();
    file.dataset.reset();
  }
  errors_.check();
  // Not every driver notices that the disk is full when it closes a file.
  std::size_t found = 0;
  for (File const& file : files_) found += countFeatures(file.path);
  errors_.check();
  if (found != count_) throw std::runtime_error("GDAL lost what it wrote");
}

void GdalLayers::check(bool succeeded) const {
  errors_.check();
  if (!succeeded) throw std::runtime_error("GDAL does not say why");
}

std::size_t GdalLayers::countFeatures(std::string const& path) const {
  char const* const drivers[] = {driver_->GetDescription(), nullptr};
  GDALDatasetUniquePtr const file(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR, drivers));
  std::size_t count = 0;
  if (!file) return count;
  for (auto&& layer : file->GetLayers()) {
    for (auto&& feature : layer) {
      if (feature->GetGeometryRef() != nullptr) ++count;
    }
  }
  return count;
}
