#include "export/ReportExport.hpp"

#include <array>
#include <filesystem>

#include "export/loadGdal.hpp"
#include "export/writeReport.hpp"
#include "support/lowerCase.hpp"

struct ReportExport::Format {
  std::string_view ending;
  /// One of the two: to a stream of bytes, or to a file by its name.
  void (*write)(ImportReport const&, RoadNetworkImporter const&, BufferedFile&);
  void (*writeByName)(ImportReport const&, RoadNetworkImporter const&, OutputFolder const&);
};

ReportExport::Format const* ReportExport::formatOf(std::string const& name) {
  static constexpr std::array<Format, 3> formats{{
      {".json", writeReport, nullptr},
      {".geojson", writeReportGeoJson, nullptr},
      {".gpkg", nullptr, writeReportGeoPackage},
  }};
  std::string const ending = support::lowerCase(std::filesystem::path(name).extension().string());
  if (ending.empty()) return &formats.front();
  for (Format const& format : formats) {
    if (format.ending == ending) return &format;
  }
  return nullptr;
}

bool ReportExport::knows(std::string const& name) {
  return formatOf(name) != nullptr;
}

ReportExport::ReportExport(std::string const& name, bool overwrite)
    : format_(*formatOf(name)), output_([&]() -> std::variant<OutputFile, OutputFolder> {
        using Output = std::variant<OutputFile, OutputFolder>;
        if (format_.write != nullptr) {
          return Output(std::in_place_type<OutputFile>, name, overwrite);
        }
        namingOutput(name, [] { loadGdalFunction("openReportTables"); });
        return Output(std::in_place_type<OutputFolder>, name, overwrite,
                      std::span(&reportGeoPackage, 1), OutputFolder::Result::onlyFile);
      }()) {}

void ReportExport::write(ImportReport const& report, RoadNetworkImporter const& importer) {
  if (auto* const file = std::get_if<OutputFile>(&output_)) {
    format_.write(report, importer, file->file());
    file->complete();
  } else {
    format_.writeByName(report, importer, std::get<OutputFolder>(output_));
  }
}

void ReportExport::commit() {
  std::visit([](auto& output) { output.commit(); }, output_);
}
