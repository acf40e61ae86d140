#include "cli/Options.hpp"

#include <CLI/CLI.hpp>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "cli/Place.hpp"
#include "export/ReportExport.hpp"
#include "export/exportedTags.hpp"
#include "support/lowerCase.hpp"
#include "support/printable.hpp"
#include "threads/decodeInParallel.hpp"

namespace {

constexpr int wrongArguments = 2;

std::map<std::string, Joining> const joinings{
    {"all", Joining::all}, {"compatible", Joining::compatible}, {"none", Joining::none}};
std::map<std::string, OneWays> const oneWayModes{{"tagged", OneWays::tagged},
                                                 {"implied", OneWays::implied}};

template <class Value>
CLI::Validator oneOf(std::map<std::string, Value> const& choices) {
  return CLI::IsMember(&choices).description("");
}

std::vector<std::string> checked(std::vector<std::string> tags) {
  try {
    return checkedTags(std::move(tags));
  } catch (std::invalid_argument const& error) {
    throw CLI::ValidationError("--tags", error.what());
  }
}

// "-o, --output FILE", as other programs have it and as those expect it that read --help.
struct HelpFormatter : CLI::Formatter {
  HelpFormatter() {
    column_width(28);
    label("REQUIRED", "");
    label("Positionals", "Arguments");
    label("TEXT", "");
  }
  std::string make_option_name(CLI::Option const* option, bool isPositional) const override {
    std::string names = Formatter::make_option_name(option, isPositional);
    std::size_t const comma = names.find(',');
    return comma == std::string::npos ? names : names.insert(comma + 1, " ");
  }
};

std::string namesOfFormats() {
  std::string names;
  for (Format const& format : formats()) {
    for (std::string_view const name : format.endings) {
      (names += names.empty() ? "" : ", ") += name;
    }
  }
  return names;
}

// In any case, or null.
Format const* formatNamed(std::string const& name) {
  return findFormat(support::lowerCase(name));
}

// The format that a file name's ending asks for.
Format const& formatOf(std::string const& output) {
  std::string const name = output.substr(0, output.find_last_not_of('/') + 1);
  std::size_t const dot = name.rfind('.');
  auto const* const format = formatNamed(dot == std::string::npos ? "" : name.substr(dot + 1));
  if (format == nullptr) {
    throw CLI::ValidationError("--output", "can't tell the format from the name \"" + output +
                                               "\"; it may end in " + namesOfFormats() +
                                               ", or give one of these with --format");
  }
  return *format;
}

std::string checkFormat(std::string const& name) {
  return formatNamed(name) != nullptr
             ? ""
             : "there is no format \"" + name + "\"; there are " + namesOfFormats();
}

// One a line, for --help.
std::string listOfFormats() {
  std::ostringstream list;
  for (Format const& format : formats()) {
    std::string names;
    for (std::string_view const ending : format.endings) {
      names += (names.empty() ? "" : ", ") + std::string(ending);
    }
    list << "  " << std::left << std::setw(18) << names << format.description << '\n';
  }
  return list.str();
}

// No file may be two of them, nor lie in a folder that another one is or becomes.
void refuseSameFiles(Options const& options) {
  auto const refuse = [](char const* option, std::optional<std::string> const& name,
                         char const* other, std::optional<std::string> const& otherName) {
    if (!name || !otherName) return;
    Place const place(*name);
    Place const otherPlace(*otherName);
    if (place == otherPlace) {
      throw CLI::ValidationError(option, "the same as " + std::string(other));
    }
    if (place.liesIn(otherPlace)) {
      throw CLI::ValidationError(option, "lies in " + std::string(other));
    }
    if (otherPlace.liesIn(place)) {
      throw CLI::ValidationError(option, std::string(other) + " lies in it");
    }
  };
  auto const written = [](std::optional<std::string> const& name) {
    return name == "-" ? "/dev/stdout" : name;
  };
  std::string const read = options.input == "-" ? "/dev/stdin" : options.input;
  refuse("--output", written(options.output), "INPUT", read);
  refuse("--report", written(options.report), "INPUT", read);
  refuse("--report", written(options.report), "--output", written(options.output));
}

// Of what is left over when all options have taken theirs.
void refuseExtras(std::vector<std::string> const& extras) {
  if (extras.empty()) return;
  for (std::string const& extra : extras) {
    if (extra.starts_with('-')) throw CLI::ValidationError(extra, "there is no such option");
  }
  throw CLI::ValidationError(
      "INPUT", "one file at a time; \"osmium merge A B -o merged.osm.pbf\" makes one of several");
}

// Returns the exit status.
int print(std::string const& text) {
  std::cout << text << std::flush;
  return std::cout ? 0 : 1;
}

}  // namespace

Options::Options() : threads(usefulThreads()) {}

std::optional<Options> parseOptions(int argc, char const* const* argv, int& exitCode) {
  Options options;
  CLI::App app("Imports an OpenStreetMap file and builds a road network from it.", "osm2roadnet");
  app.set_help_flag("-h,--help", "print this help and exit");
  app.set_version_flag("--version", "osm2roadnet " OSM2ROADNET_VERSION,
                       "print the version and exit");
  app.formatter(std::make_shared<HelpFormatter>());
  app.allow_extras();
  app.footer("Formats, which an ending of the same name asks for, too:\n" + listOfFormats() +
             "\nWithout --output, a summary of the network goes to standard output.\n"
             "Exit status: 0 done, 1 the import or the writing failed, 2 wrong arguments.\n");
  app.add_option("INPUT", options.input,
                 "OSM XML or PBF file, - for standard input; gzip and bzip2 are unpacked; "
                 "told by content")
      ->required();
  CLI::Option* const output = app.add_option("-o,--output", options.output,
                                             "write the network to this file; - is standard output")
                                  ->type_name("FILE");
  std::string formatName(formats().front().name());
  CLI::Option const* const format =
      app.add_option("-f,--format", formatName, "one of those below; default: what FILE ends in")
          ->check(checkFormat)
          ->option_text("FORMAT")
          ->needs(output);
  app.add_option("-r,--report", options.report,
                 "write what became of each way, and what to check, to this file: "
                 ".json, or for maps .geojson, .gpkg")
      ->type_name("FILE");
  std::optional<std::string> joining;
  app.add_option("--join", joining,
                 "which roads that continue one another become one; compatible are those that\n"
                 "agree in direction, layer, name and exported tags; default: compatible, or\n"
                 "all for json and the summary")
      ->check(oneOf(joinings))
      ->type_name("all|compatible|none");
  std::optional<std::string> oneWays;
  app.add_option("--oneway", oneWays,
                 "which ways are one-way: those tagged so, or also those that imply it, as\n"
                 "roundabouts and motorways do; default: implied, or tagged for json and the\n"
                 "summary")
      ->check(oneOf(oneWayModes))
      ->type_name("tagged|implied");
  options.import.tags = usualTags();
  app.add_option("--tags", options.import.tags,
                 "export these OSM tags, \"\" for none; default: those that most networks need;\n"
                 "json has no tags")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->option_text("KEY,...");
  app.add_flag("--overwrite", options.overwrite, "replace existing outputs");
  app.add_option("--threads", options.threads,
                 "unpack PBF files on so many threads; default: one a processor, 16 at most")
      ->check(CLI::Range(1, 1024))
      ->option_text("N");
  app.add_flag("-q,--quiet", options.quiet,
               "no summary, no line about what was written, no progress");
  try {
    app.parse(argc, argv);
    refuseExtras(app.remaining());
    if (options.input.empty()) throw CLI::ValidationError("INPUT", "the name is empty");
    if (options.output == "") throw CLI::ValidationError("--output", "the name is empty");
    if (options.report == "") throw CLI::ValidationError("--report", "the name is empty");
    refuseSameFiles(options);
    if (options.report && !ReportExport::knows(*options.report)) {
      throw CLI::ValidationError("--report", "can't tell the format from the name \"" +
                                                 *options.report + "\"; it may end in " +
                                                 std::string(ReportExport::endings));
    }
    bool const byEnding = options.output && format->empty() && *options.output != "-";
    options.format = byEnding ? &formatOf(*options.output) : formatNamed(formatName);
    if (options.output == "-" && !options.format->isStream()) {
      throw CLI::ValidationError("--output", formatName + " can't go to standard output");
    }
    bool const isForExchange = options.output && options.format->isForExchange;
    options.import.joining = joinings.at(joining.value_or(isForExchange ? "compatible" : "all"));
    options.import.oneWays = oneWayModes.at(oneWays.value_or(isForExchange ? "implied" : "tagged"));
    // The report needs them, and so does the count of places to check.
    options.import.restrictions = isForExchange || options.report || !options.quiet;
    options.import.keepsNodes = options.import.restrictions;
    options.import.tags = checked(std::move(options.import.tags));
    // Who does not need them does not keep them.
    if (!isForExchange && options.import.joining != Joining::compatible) options.import.tags = {};
    if (options.output) options.import.usedTags = options.format->usedTags;
    return options;
  } catch (CLI::CallForHelp const&) {
    exitCode = print(app.help());
  } catch (CLI::CallForVersion const& version) {
    exitCode = print(std::string(version.what()) + '\n');
  } catch (CLI::ParseError const& error) {
    std::cerr << "osm2roadnet: " << support::printable(error.what())
              << "\nTry 'osm2roadnet --help'.\n";
    exitCode = wrongArguments;
  }
  return std::nullopt;
}
