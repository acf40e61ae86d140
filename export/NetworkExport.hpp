// The formats that a network can be written in.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "export/NetworkWalk.hpp"
#include "export/OutputFile.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

struct Format {
  /// What it writes: a stream of bytes, which can go to standard output; or files by their names.
  struct Stream {
    void (*write)(RoadNetworkImporter const&, BufferedFile&, Progress const&);
  };
  struct Files {
    void (*write)(RoadNetworkImporter const&, OutputFolder const&, Progress const&);
    std::vector<std::string_view> names;
    OutputFolder::Result result;
    void (*require)() = nullptr;  ///< throws when the format can't be written
  };

  std::vector<std::string_view> endings;  ///< of file names; the first is the format's name, too
  std::string_view description;
  std::variant<Stream, Files> output;

  std::string_view name() const { return endings.front(); }
  bool isStream() const { return std::holds_alternative<Stream>(output); }
};

/// All of them; the first is the default.
std::span<Format const> formats();
/// The one with that ending, or null.
Format const* findFormat(std::string_view ending);

/// An output of a network.
class NetworkExport {
 public:
  /// Throws std::runtime_error, with the name in its text, when the output can't be made, or exists
  /// and `overwrite` is false. `name` may be "-", for standard output, if the format is a stream.
  NetworkExport(Format const& format, std::string const& name, bool overwrite);

  /// The importer must have run. Writes element by element, and completes the output but for its
  /// name. Throws std::runtime_error.
  void write(RoadNetworkImporter const& importer, Progress const& progress);
  /// The output takes its name. Without this, what there was stays as it was.
  void commit();

 private:
  Format const& format_;
  std::variant<OutputFile, OutputFolder> output_;
};
