// The formats that a network can be written in.
#pragma once

#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "export/BufferedFile.hpp"
#include "export/NetworkWalk.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;
struct ImportReport;

struct Format {
  /// What it writes: a stream of bytes, which can go to standard output; or files by their names.
  struct Stream {
    void (*write)(RoadNetworkImporter const&, BufferedFile&);
  };
  /// The same of the network and of what there is to say about it.
  struct ReportedStream {
    void (*write)(RoadNetworkImporter const&, ImportReport const&, BufferedFile&);
  };
  struct Files {
    void (*write)(RoadNetworkImporter const&, OutputFolder const&);
    std::vector<std::string_view> names;
    OutputFolder::Result result;
    /// Throws, with the output's name, when the format can't be written at all; null if it can.
    void (*require)(std::string const& output) = nullptr;
  };

  std::vector<std::string_view> endings;  ///< of file names; the first is the format's name, too
  std::string_view description;
  std::variant<Stream, ReportedStream, Files> output;
  /// For people and tools, rather than the network as a host gets it: unless something else is
  /// asked for, only compatible roads are joined, and one-ways that are implied are taken as such.
  bool isForExchange = true;
  /// The keys of the tags from which it makes columns of its own.
  std::vector<std::string> usedTags{};
  /// Beyond that many roads, who reads it will hardly be able to.
  std::size_t comfortableRoads = std::numeric_limits<std::size_t>::max();

  std::string_view name() const { return endings.front(); }
  bool isStream() const { return !std::holds_alternative<Files>(output); }
};

/// All of them; the first is the default.
std::span<Format const> formats();
/// The one with that ending, or null.
Format const* findFormat(std::string_view ending);
