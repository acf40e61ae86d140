// An output of the report on an import.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "export/OutputFile.hpp"
#include "export/OutputFolder.hpp"
#include "report/ImportReport.hpp"

/// Is there whole or not at all. The name's ending, in any case, says the format: JSON, GeoJSON or
/// GeoPackage; a name without any, such as "-" for standard output, stands for JSON.
class ReportExport {
 public:
  /// What a name may end in, for people.
  static constexpr std::string_view endings = ".json, .geojson, .gpkg";
  /// Whether the name's ending is one of these, or it has none.
  static bool knows(std::string const& name);

  /// The name must be one that it knows. Throws std::runtime_error, with the name in its text, when
  /// the output can't be made, or exists and `overwrite` is false.
  ReportExport(std::string const& name, bool overwrite);

  /// Completes the output but for its name. Throws std::runtime_error.
  void write(ImportReport const& report, RoadNetworkImporter const& importer);
  /// The output takes its name. Without this, what there was stays as it was.
  void commit();

 private:
  struct Format;
  static Format const* formatOf(std::string const& name);

  Format const& format_;
  std::variant<OutputFile, OutputFolder> output_;
};
