// The places to check as tables that GDAL writes.
#pragma once

#include "export/ReportRow.hpp"

/// Writes a GeoPackage with a layer of points and one of lines. Errors are std::runtime_error.
class ReportTables {
 public:
  ReportTables() = default;
  ReportTables(ReportTables const&) = delete;
  ReportTables& operator=(ReportTables const&) = delete;
  virtual ~ReportTables() = default;

  virtual void add(ReportRow const& row) = 0;
  /// Completes the file.
  virtual void finish() = 0;
};

/// What the library exports. The caller deletes the result.
extern "C" ReportTables* openReportTables(char const* path);
using OpenReportTables = decltype(openReportTables);
