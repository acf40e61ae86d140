#include "export/gdal/FeatureTables.hpp"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "export/attribution.hpp"
#include "export/gdal/defaultStyles.hpp"

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
  GdalTables(char const* driverName, TablePaths const& paths,
             std::vector<std::string> const& tagColumns) {
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

    std::vector<Field> roadFields{{"road_id", OFTInteger64},    {"name", OFTString},
                                  {"highway", OFTString},       {"direction", OFTInteger},
                                  {"start_node", OFTInteger64}, {"end_node", OFTInteger64},
                                  {"length", OFTReal},          {"osm_way_ids", OFTString}};
    for (std::string const& column : tagColumns) roadFields.push_back({column.c_str(), OFTString});
    nodes_ = addLayer(paths.nodes, "nodes", wkbPoint25D, {{"node_id", OFTInteger64}});
    roads_ = addLayer(paths.roads, "roads", wkbLineString25D, roadFields);
    restrictions_ = addLayer(paths.restrictions, "restrictions", wkbPoint25D,
                             {{"restriction", OFTString},
                              {"vehicles", OFTString},
                              {"condition", OFTString},
                              {"except", OFTString},
                              {"from_road_id", OFTInteger64},
                              {"from_direction", OFTInteger},
                              {"via_node_ids", OFTString},
                              {"via_road_ids", OFTString},
                              {"to_road_id", OFTInteger64},
                              {"to_direction", OFTInteger},
                              {"osm_relation_id", OFTInteger64}});
    node_.reset(OGRFeature::CreateFeature(nodes_->GetLayerDefn()));
    road_.reset(OGRFeature::CreateFeature(roads_->GetLayerDefn()));
    node_->SetGeometryDirectly(new OGRPoint(0.0, 0.0, 0.0));
    road_->SetGeometryDirectly(new OGRLineString);
    restriction_.reset(OGRFeature::CreateFeature(restrictions_->GetLayerDefn()));
    restriction_->SetGeometryDirectly(new OGRPoint(0.0, 0.0, 0.0));
    // Where there are no transactions this fails, which does not matter.
    for (File& file : files_) file.dataset->StartTransaction();
  }

  void add(NodeRow const& row) override {
    node_->SetField(0, static_cast<GIntBig>(row.id));
    *node_->GetGeometryRef()->toPoint() = OGRPoint(row.longitude, row.latitude, row.elevation);
    append(*nodes_, *node_);
  }

  void add(RoadRow const& row) override {
    int field = 0;
    road_->SetField(field++, static_cast<GIntBig>(row.id));
    setText(*road_, field++, row.name);
    setText(*road_, field++, row.highway);
    road_->SetField(field++, static_cast<int>(row.direction));
    road_->SetField(field++, static_cast<GIntBig>(row.startNode));
    road_->SetField(field++, static_cast<GIntBig>(row.endNode));
    road_->SetField(field++, row.length);
    setText(*road_, field++, row.wayIdText());
    for (std::string const& value : row.tags) setText(*road_, field++, value);
    road_->GetGeometryRef()->toLineString()->setPoints(static_cast<int>(row.longitudes.size()),
                                                       row.longitudes.data(), row.latitudes.data(),
                                                       row.elevations.data());
    append(*roads_, *road_);
  }

  void add(RestrictionRow const& row) override {
    TurnRestriction const& restriction = row.restriction;
    int field = 0;
    setText(*restriction_, field++, row.kind);
    setText(*restriction_, field++, row.vehicles);
    setText(*restriction_, field++, row.condition);
    setText(*restriction_, field++, row.except);
    restriction_->SetField(field++, static_cast<GIntBig>(restriction.from.road->getID()));
    restriction_->SetField(field++, directionNumber(row.fromIsForward()));
    setText(*restriction_, field++, idList(restriction.viaNodes));
    setText(*restriction_, field++, idList(restriction.viaRoads));
    restriction_->SetField(field++, static_cast<GIntBig>(restriction.to.road->getID()));
    restriction_->SetField(field++, directionNumber(row.toIsForward()));
    restriction_->SetField(field++, static_cast<GIntBig>(restriction.relation));
    *restriction_->GetGeometryRef()->toPoint() =
        OGRPoint(row.longitude, row.latitude, row.elevation);
    append(*restrictions_, *restriction_);
  }

  void finish() override {
    if (driver_->GetDescription() == std::string_view("GPKG")) {
      addDefaultStyles(*files_.front().dataset);
    }
    for (File& file : files_) {
      file.dataset->CommitTransaction();
      file.dataset.reset();
    }
    errors_.check();
    // Not every driver notices that the disk is full when it closes a file.
    std::size_t found = 0;
    for (File const& file : files_) found += countFeatures(file.path);
    errors_.check();
    if (found != count_) throw std::runtime_error("GDAL lost what it wrote");
  }

 private:
  struct File {
    std::string path;
    GDALDatasetUniquePtr dataset;
  };
  struct Field {
    char const* name;
    OGRFieldType type;
  };

  void check(bool succeeded) const {
    errors_.check();
    if (!succeeded) throw std::runtime_error("GDAL does not say why");
  }

  // The one of that name, made when it is first asked for.
  GDALDataset& fileAt(std::string const& path) {
    for (File& file : files_) {
      if (file.path == path) return *file.dataset;
    }
    files_.push_back(
        {path, GDALDatasetUniquePtr(driver_->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr))});
    check(files_.back().dataset != nullptr);
    return *files_.back().dataset;
  }

  OGRLayer* addLayer(std::string const& path, char const* name, OGRwkbGeometryType type,
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

  static void setText(OGRFeature& feature, int field, std::string const& text) {
    text.empty() ? feature.SetFieldNull(field) : feature.SetField(field, text.c_str());
  }

  void append(OGRLayer& layer, OGRFeature& feature) {
    feature.SetFID(OGRNullFID);
    check(layer.CreateFeature(&feature) == OGRERR_NONE);
    ++count_;
  }

  ErrorLog errors_;  // first: closing the files may still report to it
  std::size_t count_ = 0;
  GDALDriver* driver_ = nullptr;
  std::vector<File> files_;
  OGRLayer* nodes_ = nullptr;
  OGRLayer* roads_ = nullptr;
  OGRLayer* restrictions_ = nullptr;
  OGRFeatureUniquePtr node_;  // these are written over and over again
  OGRFeatureUniquePtr road_;
  OGRFeatureUniquePtr restriction_;
};

}  // namespace

FeatureTables* openFeatureTables(char const* driver, TablePaths const& paths,
                                 std::vector<std::string> const& tagColumns) {
  return new GdalTables(driver, paths, tagColumns);
}
