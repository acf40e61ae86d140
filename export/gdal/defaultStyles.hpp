// How QGIS shows the layers of a GeoPackage at first sight.
#pragma once

#include <span>
#include <string_view>

class GDALDataset;

/// Adds QGIS's own table "layer_styles", with a default style for each layer that there is one for:
/// by the layer's name, or for places to check, which have a column "severity", by its kind of
/// geometry. To be called once, when all layers are there. Throws std::runtime_error.
void addDefaultStyles(GDALDataset& file);

/// The files in styles/.
struct StyleFile {
  std::string_view name;  ///< without its ending
  std::string_view qml;   ///< QGIS's language for styles
};
std::span<StyleFile const> styleFiles();
