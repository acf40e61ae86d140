#include "cli/Options.hpp"

#include <CLI/CLI.hpp>
#include <iostream>
#include <map>

namespace {

constexpr int wrongArguments = 2;

std::map<std::string, Options::Format> const formats{{"json", Options::Format::json}};

// The format that a file name's ending asks for.
Options::Format formatOf(std::string const& output) {
  std::size_t const dot = output.rfind('.');
  auto const format = formats.find(dot == std::string::npos ? "" : output.substr(dot + 1));
  if (format == formats.end()) {
    throw CLI::ValidationError("--output", "can't tell the format from the name \"" + output +
                                               "\"; give one with --format");
  }
  return format->second;
}

std::string isFormat(std::string const& name) {
  return formats.contains(name) ? "" : "there is no format \"" + name + "\"";
}

// Returns the exit status.
int print(std::string const& text) {
  std::cout << text << std::flush;
  return std::cout ? 0 : 1;
}

}  // namespace

std::optional<Options> parseOptions(int argc, char const* const* argv, int& exitCode) {
  Options options;
  CLI::App app("Imports an OpenStreetMap file and builds a road network from it.", "osm2roadnet");
  app.set_version_flag("--version", "osm2roadnet " OSM2ROADNET_VERSION);
  app.get_formatter()->column_width(28);
  app.footer(
      "Without --output, a summary of the network goes to standard output.\n"
      "Exit status: 0 done, 1 the import or the writing failed, 2 wrong arguments.\n");
  app.add_option("INPUT", options.input,
                 "OSM XML or PBF file; gzip and bzip2 are unpacked; told by content")
      ->required()
      ->type_name("");
  CLI::Option* const output = app.add_option("-o,--output", options.output,
                                             "write the network to this file; - is standard output")
                                  ->type_name("FILE");
  std::string formatName = "json";
  CLI::Option const* const format =
      app.add_option("-f,--format", formatName, "json; default: what the output's ending says")
          ->check(isFormat)
          ->type_name("FORMAT")
          ->needs(output);
  app.add_option("-r,--report", options.report,
                 "write what became of each way, and what to check, to this JSON file")
      ->type_name("FILE");
  app.add_flag("--overwrite", options.overwrite, "replace existing outputs");
  app.add_flag("-q,--quiet", options.quiet, "no summary and no progress");
  try {
    app.parse(argc, argv);
    if (options.input.empty()) throw CLI::ValidationError("INPUT", "the name is empty");
    if (options.output == "") throw CLI::ValidationError("--output", "the name is empty");
    if (options.report == "") throw CLI::ValidationError("--report", "the name is empty");
    if (options.output && options.output == options.report) {
      throw CLI::ValidationError("--report", "the same as --output");
    }
    bool const byEnding = options.output && format->empty() && *options.output != "-";
    options.format = byEnding ? formatOf(*options.output) : formats.at(formatName);
    return options;
  } catch (CLI::CallForHelp const&) {
    exitCode = print(app.help());
  } catch (CLI::CallForVersion const& version) {
    exitCode = print(std::string(version.what()) + '\n');
  } catch (CLI::ParseError const& error) {
    std::cerr << "osm2roadnet: " << error.what() << "\nTry 'osm2roadnet --help'.\n";
    exitCode = wrongArguments;
  }
  return std::nullopt;
}
