// The command line's arguments.
#pragma once

#include <optional>
#include <string>

#include "export/Format.hpp"
#include "importer/ImportOptions.hpp"

struct Options {
  std::string input;                  ///< "-" is standard input
  std::optional<std::string> output;  ///< "-" is standard output; none asks for a summary
  Format const* format = nullptr;     ///< of the output, if there is one
  std::optional<std::string> report;  ///< "-" is standard output
  ImportOptions import;
  bool overwrite = false;
  bool quiet = false;
  unsigned threads;  ///< that unpack PBF files

  Options();
  /// The input's name, for people.
  std::string inputName() const { return input == "-" ? "standard input" : input; }
};

/// Reads the arguments. When nothing is left to do, returns none, has said what there was to say,
/// and sets `exitCode`: 0 after --help or --version (1 if that can't be written), 2 after wrong
/// arguments.
std::optional<Options> parseOptions(int argc, char const* const* argv, int& exitCode);
