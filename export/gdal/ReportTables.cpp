#include "export/gdal/ReportTables.hpp"

#include <cmath>
#include <memory>
#include <utility>

#include "export/NetworkRows.hpp"
#include "export/gdal/GdalLayers.hpp"

namespace {

class GdalReportTables final : public ReportTables {
 public:
  explicit GdalReportTables(char const* path)
      : layers_("GPKG"),
        points_(addLayer(path, "check_points", wkbMultiPoint)),
        lines_(addLayer(path, "check_lines", wkbMultiLineString)) {}

  void add(ReportRow const& row) override {
    OGRLayer& layer = row.lines.empty() ? points_ : lines_;
    OGRFeatureUniquePtr const feature(OGRFeature::CreateFeature(layer.GetLayerDefn()));
    int field = 0;
    feature->SetField(field++, std::string(row.kind).c_str());
    feature->SetField(field++, std::string(row.severity).c_str());
    if (!std::isnan(row.metres)) feature->SetField(field, row.metres);
    ++field;
    feature->SetField(field++, idList(row.wayIds).c_str());
    feature->SetField(field++, idList(row.nodeIds).c_str());
    feature->SetField(field++, row.text.c_str());
    feature->SetGeometryDirectly(row.lines.empty() ? pointsOf(row) : linesOf(row));
    layers_.append(layer, *feature);
  }

  void finish() override { layers_.finish(); }

 private:
  OGRLayer& addLayer(char const* path, char const* name, OGRwkbGeometryType type) {
    return layers_.addLayer(path, name, type,
                            {{"kind", OFTString},
                             {"severity", OFTString},
                             {"metres", OFTReal},
                             {"way_ids", OFTString},
                             {"node_ids", OFTString},
                             {"text", OFTString}});
  }

  static OGRGeometry* pointsOf(ReportRow const& row) {
    auto points = std::make_unique<OGRMultiPoint>();
    for (GeoPosition const& place : row.points) {
      points->addGeometryDirectly(new OGRPoint(place.longitude, place.latitude));
    }
    return points.release();
  }

  static OGRGeometry* linesOf(ReportRow const& row) {
    auto lines = std::make_unique<OGRMultiLineString>();
    for (GeoLine const& line : row.lines) {
      auto geometry = std::make_unique<OGRLineString>();
      geometry->setNumPoints(static_cast<int>(line.size()));
      int i = 0;
      for (GeoPosition const& place : line) {
        geometry->setPoint(i++, place.longitude, place.latitude);
      }
      lines->addGeometryDirectly(geometry.release());
    }
    return lines.release();
  }

  GdalLayers layers_;
  OGRLayer& points_;
  OGRLayer& lines_;
};

}  // namespace

ReportTables* openReportTables(char const* path) {
  return new GdalReportTables(path);
}
