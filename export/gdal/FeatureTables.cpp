#include "export/gdal/FeatureTables.hpp"

#include <ogrsf_frmts.h>

#include <memory>
#include <string>
#include <vector>

#include "export/gdal/GdalLayers.hpp"

namespace {

class GdalTables final : public FeatureTables {
 public:
  GdalTables(char const* driverName, TablePaths const& paths,
             std::vector<std::string> const& tagColumns)
      : layers_(driverName) {
    std::vector<GdalLayers::Field> roadFields{
        {"road_id", OFTInteger64}, {"name", OFTString},          {"highway", OFTString},
        {"direction", OFTInteger}, {"start_node", OFTInteger64}, {"end_node", OFTInteger64},
        {"length", OFTReal},       {"osm_way_ids", OFTString}};
    for (std::string const& column : tagColumns) roadFields.push_back({column.c_str(), OFTString});
    nodes_ = &layers_.addLayer(paths.nodes, "nodes", wkbPoint25D, {{"node_id", OFTInteger64}});
    roads_ = &layers_.addLayer(paths.roads, "roads", wkbLineString25D, roadFields);
    restrictions_ = &layers_.addLayer(paths.restrictions, "restrictions", wkbPoint25D,
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
  }

  void add(NodeRow const& row) override {
    node_->SetField(0, static_cast<GIntBig>(row.id));
    *node_->GetGeometryRef()->toPoint() = OGRPoint(row.longitude, row.latitude, row.elevation);
    layers_.append(*nodes_, *node_);
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
    layers_.append(*roads_, *road_);
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
    layers_.append(*restrictions_, *restriction_);
  }

  void finish() override { layers_.finish(); }

 private:
  static void setText(OGRFeature& feature, int field, std::string const& text) {
    text.empty() ? feature.SetFieldNull(field) : feature.SetField(field, text.c_str());
  }

  GdalLayers layers_;
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
