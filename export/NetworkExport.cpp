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
      {{"gpkg"},
       "GeoPackage",
       Files{writeGeoPackage, {geoPackageFile}, OutputFolder::Result::onlyFile, requireGdal}},
      {{"fgb"},
       "FlatGeobuf, a folder",
       Files{writeFlatGeobuf,
             {flatGeobufNodes, flatGeobufRoads},
             OutputFolder::Result::folder,
             requireGdal}},
      {{"gmns"},
       "GMNS, a folder of CSV",
       Files{writeGmns, {gmnsConfig, gmnsLinks, gmnsNodes}, OutputFolder::Result::folder}},
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

namespace {

std::variant<OutputFile, OutputFolder> makeOutput(Format const& format, std::string const& name,
                                                  bool overwrite) {
  using Output = std::variant<OutputFile, OutputFolder>;
  auto const* const files = std::get_if<Format::Files>(&format.output);
  if (files == nullptr) return Output(std::in_place_type<OutputFile>, name, overwrite);
  if (files->require != nullptr) files->require();
  return Output(std::in_place_type<OutputFolder>, name, overwrite, files->names, files->result);
}

}  // namespace

NetworkExport::NetworkExport(Format const& format, std::string const& name, bool overwrite)
    : format_(format), output_(makeOutput(format, name, overwrite)) {}

void NetworkExport::write(RoadNetworkImporter const& importer, Progress const& progress) {
  if (auto* const file = std::get_if<OutputFile>(&output_)) {
    std::get<Format::Stream>(format_.output).write(importer, file->file(), progress);
    file->complete();
  } else {
    std::get<Format::Files>(format_.output)
        .write(importer, std::get<OutputFolder>(output_), progress);
  }
}

void NetworkExport::commit() {
  std::visit([](auto& output) { output.commit(); }, output_);
}
