// An output of a network.
#pragma once

#include <string>
#include <variant>

#include "export/Format.hpp"
#include "export/NetworkWalk.hpp"
#include "export/OutputFile.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

/// Is there whole or not at all, in whatever format.
class NetworkExport {
 public:
  /// Throws std::runtime_error, with the name in its text, when the output can't be made, or exists
  /// and `overwrite` is false. `name` may be "-", for standard output, if the format is a stream.
  NetworkExport(Format const& format, std::string const& name, bool overwrite);

  /// The importer must have run. Writes element by element, and completes the output but for its
  /// name. `report` is the one about it, if there is any: the formats that need one make it
  /// otherwise. Throws std::runtime_error.
  void write(RoadNetworkImporter const& importer, ImportReport const* report = nullptr);
  /// The output takes its name. Without this, what there was stays as it was.
  void commit();

 private:
  Format const& format_;
  std::variant<OutputFile, OutputFolder> output_;
};
