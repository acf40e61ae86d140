#include "export/gdal/defaultStyles.hpp"

#include <ogrsf_frmts.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::string styleName(OGRLayer& layer) {
  if (layer.FindFieldIndex("severity", TRUE) < 0) return layer.GetName();
  auto const type = wkbFlatten(layer.GetGeomType());
  bool const isPoint = type == wkbPoint || type == wkbMultiPoint;
  return isPoint ? "placesPoint" : "placesLine";
}

void check(bool succeeded) {
  if (!succeeded) throw std::runtime_error("GDAL can't write styles");
}

OGRLayer& addTable(GDALDataset& file) {
  CPLStringList options;
  options.SetNameValue("FID", "id");
  OGRLayer* const table = file.CreateLayer("layer_styles", nullptr, wkbNone, options.List());
  check(table != nullptr);
  for (auto const& [name, type] :
       {std::pair{"f_table_catalog", OFTString}, std::pair{"f_table_schema", OFTString},
        std::pair{"f_table_name", OFTString}, std::pair{"f_geometry_column", OFTString},
        std::pair{"styleName", OFTString}, std::pair{"styleQML", OFTString},
        std::pair{"styleSLD", OFTString}, std::pair{"useAsDefault", OFTInteger},
        std::pair{"description", OFTString}, std::pair{"owner", OFTString},
        std::pair{"ui", OFTString}, std::pair{"update_time", OFTDateTime}}) {
    OGRFieldDefn field(name, type);
    if (std::string_view(name) == "useAsDefault") field.SetSubType(OFSTBoolean);
    check(table->CreateField(&field) == OGRERR_NONE);
  }
  return *table;
}

}  // namespace

void addDefaultStyles(GDALDataset& file) {
  std::vector<OGRLayer*> layers;  // those that are there before the table is
  for (OGRLayer* const layer : file.GetLayers()) layers.push_back(layer);
  OGRLayer& table = addTable(file);
  for (OGRLayer* const layer : layers) {
    std::string const name = styleName(*layer);
    auto const style = std::find_if(styleFiles().begin(), styleFiles().end(),
                                    [&](StyleFile const& known) { return known.name == name; });
    if (style == styleFiles().end()) continue;
    OGRFeature row(table.GetLayerDefn());
    row.SetField("f_table_catalog", "");  // QGIS looks for empty ones
    row.SetField("f_table_schema", "");
    row.SetField("f_table_name", layer->GetName());
    row.SetField("f_geometry_column", layer->GetGeometryColumn());
    row.SetField("styleName", layer->GetName());
    row.SetField("styleQML", std::string(style->qml).c_str());
    row.SetField("styleSLD", "");
    row.SetField("useAsDefault", 1);
    row.SetField("description", "by osm2roadnet");
    row.SetField("owner", "");
    // The same input gives the same bytes.
    row.SetField("update_time", 1970, 1, 1, 0, 0, 0.0F, 100);
    check(table.CreateFeature(&row) == OGRERR_NONE);
  }
}
