#include "export/Format.hpp"

#include <algorithm>

#include "export/GmnsMovements.hpp"
#include "export/writeFeatureTables.hpp"
#include "export/writeGeoJson.hpp"
#include "export/writeGmns.hpp"
#include "export/writeGraphMl.hpp"
#include "export/writeHtml.hpp"
#include "export/writeJson.hpp"

std::span<Format const> formats() {
  using Stream = Format::Stream;
  using ReportedStream = Format::ReportedStream;
  using Files = Format::Files;
  static std::vector<Format> const all{
      {{"json"}, "the whole network, nothing lost", Stream{writeJson}, false},
      {{"geojson"}, "GeoJSON", Stream{writeGeoJson}},
      {{"geojsonl", "ndjson"}, "newline-delimited GeoJSON", Stream{writeGeoJsonLines}},
      {{"gpkg"},
       "GeoPackage",
       Files{writeGeoPackage, {geoPackageFile}, OutputFolder::Result::onlyFile, requireGdal}},
      {{"fgb"},
       "FlatGeobuf, a folder",
       Files{writeFlatGeobuf,
             {flatGeobufNodes, flatGeobufRoads, flatGeobufRestrictions},
             OutputFolder::Result::folder,
             requireGdal}},
      {{"gmns"},
       "GMNS, a folder of CSV",
       Files{writeGmns,
             {gmnsConfig, gmnsLinks, gmnsMovements, gmnsNodes, gmnsRestrictions, gmnsUses},
             OutputFolder::Result::folder},
       true,
       gmnsTags()},
      {{"graphml"}, "GraphML", Stream{writeGraphMl}},
      {{"html"}, "a map to look at", ReportedStream{writeHtml}, true, {}, comfortableRoads},
  };
  return all;
}

Format const* findFormat(std::string_view ending) {
  for (Format const& format : formats()) {
    auto const& endings = format.endings;
    if (std::find(endings.begin(), endings.end(), ending) != endings.end()) return &format;
  }
  return nullptr;
}
