// A finished import, as Python has it.
#pragma once

#include <nanobind/nanobind.h>

#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <utility>
#include <variant>

#include "export/NetworkColumns.hpp"
#include "importer/OwnImport.hpp"
#include "python/core/Watch.hpp"

/// What to read: a path, what is open already under a name, or the bytes of a file.
struct OpenFile {
  int descriptor;
  std::string name;
};
using Source = std::variant<std::string, OpenFile, std::span<char const>>;

/// The columns, and the engine's own import for what is asked later. All functions need the GIL and
/// give it up while they work, so that other threads may use the same import: they wait for one
/// another.
class Import {
 public:
  Import(Source const& source, ImportOptions options, unsigned threads, Watch watch);
  Import(Import const&) = delete;
  Import& operator=(Import const&) = delete;
  ~Import();

  nanobind::object nodes;
  nanobind::object roads;
  nanobind::object texts;
  nanobind::object lines;
  nanobind::object ways;

  nanobind::object limits() const;
  nanobind::object reference() const;
  nanobind::object counts() const;
  nanobind::object lengths() const;
  nanobind::object restrictions();
  std::string report();
  /// Throws std::invalid_argument for a format that there is not, OSError.
  void write(std::string const& path, std::string const& format, bool overwrite);

 private:
  struct Engine : OwnImport {
    using OwnImport::OwnImport;

    // A model is for one thread at a time. Recursive for what a progress callable may do.
    std::recursive_timed_mutex mutex;
    Watch* watch = nullptr;  // of the one who works now
  };

  static void releaseElsewhere(std::unique_ptr<Engine> engine) noexcept;
  /// Calls `action`, without the GIL, when nobody else works with the engine.
  template <class Action>
  auto work(Watch& watch, Action const& action);
  void open(Source const& source);
  void takeColumns(NetworkColumns columns);

  std::unique_ptr<Engine> engine_;
  std::span<std::int64_t const> lineOffsets_;  // of `lines`
  std::span<NetworkColumns::Point const> linePoints_;
  nanobind::object restrictions_;
};
