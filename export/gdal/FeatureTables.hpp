// The door to GDAL, which alone knows some formats. It is a library of its own that is loaded when
// one of them is asked for: its many dependencies would make every start of the program slower.
#pragma once

#include <string>
#include <vector>

#include "export/NetworkRows.hpp"
#include "export/RestrictionRows.hpp"

/// Writes a table of nodes, one of roads and one of turn restrictions. Errors are
/// std::runtime_error.
class FeatureTables {
 public:
  FeatureTables() = default;
  FeatureTables(FeatureTables const&) = delete;
  FeatureTables& operator=(FeatureTables const&) = delete;
  virtual ~FeatureTables() = default;

  virtual void add(NodeRow const& row) = 0;
  virtual void add(RoadRow const& row) = 0;
  virtual void add(RestrictionRow const& row) = 0;
  /// Completes the files.
  virtual void finish() = 0;
};

/// The file of each table. Those of several tables may be the same where the driver puts more than
/// one into a file.
struct TablePaths {
  std::string nodes;
  std::string roads;
  std::string restrictions;
};

/// What the library exports: tables in new files that GDAL's driver of that name makes.
/// `tagColumns` are the names of the columns for the roads' tags. The caller deletes the result.
extern "C" FeatureTables* openFeatureTables(char const* driver, TablePaths const& paths,
                                            std::vector<std::string> const& tagColumns);
using OpenFeatureTables = decltype(openFeatureTables);
