#include <memory>

#include "export/gdal/ReportTables.hpp"
#include "export/loadGdal.hpp"
#include "export/writeReport.hpp"

void writeReportGeoPackage(ImportReport const& report, RoadNetworkImporter const& importer,
                           OutputFolder const& folder) {
  namingOutput(folder.name(), [&] {
    auto* const open = reinterpret_cast<OpenReportTables*>(loadGdalFunction("openReportTables"));
    std::unique_ptr<ReportTables> const tables(open(gdalPath(folder, reportGeoPackage).c_str()));
    forEachRow(report, importer, [&](ReportRow const& row) { tables->add(row); });
    tables->finish();
  });
}
