#include <memory>

#include "export/gdal/ReportTables.hpp"
#include "export/loadGdal.hpp"
#include "export/writeReport.hpp"

void writeReportGeoPackage(ImportReport const& report, RoadNetworkImporter const& importer,
                           OutputFolder const& folder) {
  auto const naming = [&](auto const& action) { return namingOutput(folder.name(), action); };
  auto const tables = naming([&] {
    auto* const open = reinterpret_cast<OpenReportTables*>(loadGdalFunction("openReportTables"));
    return std::unique_ptr<ReportTables>(open(gdalPath(folder, reportGeoPackage).c_str()));
  });
  forEachRow(report, importer, [&](ReportRow const& row) { naming([&] { tables->add(row); }); });
  naming([&] { tables->finish(); });
}
