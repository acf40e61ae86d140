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
  auto const format = formats.find(dot == std::string::npos ? output : output.substr(dot + 1));
  if (format == formats.end()) {
    throw CLI::ValidationError("--output", "can't tell the format from the name \"" + output +
                                               "\"; give one with --format");
  }
  return format->second;
}

}  // namespace

std::optional<Options> parseOptions(int argc, char const* const* argv, int& exitCode) {
  Options options;
  CLI::App app("Imports an OpenStreetMap file and builds a road network from it.", "osm2roadnet");
  app.set_version_flag("--version", "osm2roadnet " OSM2ROADNET_VERSION);
  app.get_formatter()->column_width(28);
  app.footer(
      "Without --output, a summary of the network goes to standard output.\n"
      "Exit status: 0 done, 1 the import or the writing failed, 2 wrong arguments.");
  app.add_option("INPUT", options.input,
                 "OSM XML or PBF file; gzip and bzip2 are unpacked; told by content")
      ->required()
      ->type_name("");
  app.add_option("-o,--output", options.output,
                 "write the network to this file; - is standard output")
      ->type_name("FILE");
  CLI::Option const* const format =
      app.add_option("-f,--format", options.format,
                     "format of the output: json; default: by its ending")
          ->transform(CLI::CheckedTransformer(formats))
          ->type_name("FORMAT");
  app.add_flag("--overwrite", options.overwrite, "replace an existing output");
  app.add_flag("-q,--quiet", options.quiet, "no summary and no progress");
  try {
    app.parse(argc, argv);
    if (options.input.empty()) throw CLI::ValidationError("INPUT", "the name is empty");
    if (options.output && format->empty() && *options.output != "-") {
      options.format = formatOf(*options.output);
    }
    return options;
  } catch (CLI::CallForHelp const&) {
    std::cout << app.help();
    exitCode = 0;
  } catch (CLI::CallForVersion const& version) {
    std::cout << version.what() << '\n';
    exitCode = 0;
  } catch (CLI::ParseError const& error) {
    std::cerr << "osm2roadnet: " << error.what() << "\nTry 'osm2roadnet --help'.\n";
    exitCode = wrongArguments;
  }
  return std::nullopt;
}
