#include "export/NetworkExport.hpp"

#include <algorithm>

#include "export/writeFeatureTables.hpp"
#include "export/writeGeoJson.hpp"
#include "export/writeGmns.hpp"
#include "export/writeGraphMl.hpp"
#include "export/writeJson.hpp"

std::span<Format const> formats() {
  using Stream = Format::Stream;
  using Files = Format::Files;
  static std::vector<Format> const all{
      {{"json"}, "the whole network, nothing lost", Stream{writeJson}},
      {{"geojson"}, "GeoJSON", Stream{writeGeoJson}},
      {{"geojsonl", "ndjson"}, "newline-delimited GeoJSON", Stream{writeGeoJsonLines}},
      {{"gpkg"}, "GeoPackage", Files{writeGeoPackage, {}}},
      {{"fgb"}, "FlatGeobuf, a folder", Files{writeFlatGeobuf, flatGeobufFiles}},
      {{"gmns"}, "GMNS, a folder of CSV", Files{writeGmns, gmnsFiles}},
      {{"graphml"}, "GraphML", Stream{writeGraphMl}},
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

NetworkExport::NetworkExport(Format const& format, std::string const& name, bool overwrite)
    : format_(format) {
  if (auto const* const files = std::get_if<Format::Files>(&format.output)) {
    output_.emplace<OutputFolder>(name, overwrite, files->names);
  } else {
    output_.emplace<OutputFile>(name, overwrite);
  }
}

void NetworkExport::write(RoadNetworkImporter const& importer, Progress const& progress) {
  if (auto const* const files = std::get_if<Format::Files>(&format_.output)) {
    files->write(importer, std::get<OutputFolder>(output_), progress);
  } else {
    std::get<Format::Stream>(format_.output)
        .write(importer, std::get<OutputFile>(output_).file(), progress);
  }
}

void NetworkExport::commit() {
  if (auto* const folder = std::get_if<OutputFolder>(&output_)) {
    folder->commit();
  } else {
    std::get<OutputFile>(output_).commit();
  }
}
