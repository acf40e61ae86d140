#include "export/gdal/FeatureTables.hpp"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "export/attribution.hpp"

namespace {

// GDAL reports failures to a handler, some of them nowhere else: closing a file returns nothing.
// The first one is kept and thrown by `check`.
class ErrorLog {
 public:
  ErrorLog() { CPLPushErrorHandlerEx(&ErrorLog::add, this); }
  ErrorLog(ErrorLog const&) = delete;
  ErrorLog& operator=(ErrorLog const&) = delete;
  ~ErrorLog() { CPLPopErrorHandler(); }

  void check() const {
    if (!first_.empty()) throw std::runtime_error(first_);
  }

 private:
  static void CPL_STDCALL add(CPLErr level, CPLErrorNum, char const* message) {
    auto& first = static_cast<ErrorLog*>(CPLGetErrorHandlerUserData())->first_;
    if (level >= CE_Failure && first.empty()) first = message;
  }

  std::string first_;
};

class GdalTables final : public FeatureTables {
 public:
  GdalTables(char const* driverName, char const* nodesPath, char const* roadsPath,
             std::vector<std::string> const& tagColumns)
      : nodesPath_(nodesPath), roadsPath_(roadsPath) {
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
    driver_ = GetGDALDriverManager()->GetDriverByName(driverName);
    if (driver_ == nullptr) throw std::runtime_error(std::string("GDAL lacks ") + driverName);
    nodesFile_ = create(nodesPath_);
    if (roadsPath_ != nodesPath_) roadsFile_ = create(roadsPath_);
    GDALDataset& roadsFile = roadsFile_ ? *roadsFile_ : *nodesFile_;

    std::vector<Field> roadFields{{"road_id", OFTInteger64},    {"name", OFTString},
                                  {"highway", OFTString},       {"direction", OFTInteger},
                                  {"start_node", OFTInteger64}, {"end_node", OFTInteger64},
                                  {"length", OFTReal},          {"osm_way_ids", OFTString}};
    for (std::string const& column : tagColumns) roadFields.push_back({column.c_str(), OFTString});
    nodes_ = addLayer(*nodesFile_, "nodes", wkbPoint25D, {{"node_id", OFTInteger64}});
    roads_ = addLayer(roadsFile, "roads", wkbLineString25D, roadFields);
    node_.reset(OGRFeature::CreateFeature(nodes_->GetLayerDefn()));
    road_.reset(OGRFeature::CreateFeature(roads_->GetLayerDefn()));
    node_->SetGeometryDirectly(new OGRPoint(0.0, 0.0, 0.0));
    road_->SetGeometryDirectly(new OGRLineString);
    // Where there are no transactions this fails, which does not matter.
    nodesFile_->StartTransaction();
  }

  void add(NodeRow const& row) override {
    node_->SetField(0, static_cast<GIntBig>(row.id));
    *node_->GetGeometryRef()->toPoint() = OGRPoint(row.longitude, row.latitude, row.elevation);
    append(*nodes_, *node_);
  }

  void add(RoadRow const& row) override {
    int field = 0;
    road_->SetField(field++, static_cast<GIntBig>(row.id));
    setText(field++, row.name);
    setText(field++, row.highway);
    road_->SetField(field++, static_cast<int>(row.direction));
    road_->SetField(field++, static_cast<GIntBig>(row.startNode));
    road_->SetField(field++, static_cast<GIntBig>(row.endNode));
    road_->SetField(field++, row.length);
    setText(field++, row.wayIdText());
    for (std::string const& value : row.tags) setText(field++, value);
    road_->GetGeometryRef()->toLineString()->setPoints(static_cast<int>(row.longitudes.size()),
                                                       row.longitudes.data(), row.latitudes.data(),
                                                       row.elevations.data());
    append(*roads_, *road_);
  }

  void finish() override {
    nodesFile_->CommitTransaction();
    nodesFile_.reset();
    roadsFile_.reset();
    errors_.check();
    // Not every driver notices that the disk is full when it closes a file.
    std::size_t found = countFeatures(nodesPath_);
    if (roadsPath_ != nodesPath_) found += countFeatures(roadsPath_);
    errors_.check();
    if (found != count_) throw std::runtime_error("GDAL lost what it wrote");
  }

 private:
  struct Field {
    char const* name;
    OGRFieldType type;
  };

  void check(bool succeeded) const {
    errors_.check();
    if (!succeeded) throw std::runtime_error("GDAL does not say why");
  }

  GDALDatasetUniquePtr create(std::string const& path) {
    GDALDatasetUniquePtr file(driver_->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    check(file != nullptr);
    return file;
  }

  OGRLayer* addLayer(GDALDataset& file, char const* name, OGRwkbGeometryType type,
                     std::vector<Field> const& fields) {
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
    return layer;
  }

  std::size_t countFeatures(std::string const& path) {
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

  void setText(int field, std::string const& text) {
    text.empty() ? road_->SetFieldNull(field) : road_->SetField(field, text.c_str());
  }

  void append(OGRLayer& layer, OGRFeature& feature) {
    feature.SetFID(OGRNullFID);
    check(layer.CreateFeature(&feature) == OGRERR_NONE);
    ++count_;
  }

  ErrorLog errors_;  // first: closing the files may still report to it
  std::string nodesPath_;
  std::string roadsPath_;
  std::size_t count_ = 0;
  GDALDriver* driver_ = nullptr;
  GDALDatasetUniquePtr nodesFile_;
  GDALDatasetUniquePtr roadsFile_;  // none where both tables are in one file
  OGRLayer* nodes_ = nullptr;
  OGRLayer* roads_ = nullptr;
  OGRFeatureUniquePtr node_;  // both are written over and over again
  OGRFeatureUniquePtr road_;
};

}  // namespace

FeatureTables* openFeatureTables(char const* driver, char const* nodesPath, char const* roadsPath,
                                 std::vector<std::string> const& tagColumns) {
  return new GdalTables(driver, nodesPath, roadsPath, tagColumns);
}
