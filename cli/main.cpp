// osm2roadnet: imports an OpenStreetMap file from the command line.
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "cli/Options.hpp"
#include "cli/ProgressLine.hpp"
#include "cli/Stopwatch.hpp"
#include "cli/endWhenOutOfMemory.hpp"
#include "cli/printSummary.hpp"
#include "export/NetworkExport.hpp"
#include "export/ReportExport.hpp"
#include "export/Temporary.hpp"
#include "export/endingSignals.hpp"
#include "importer/OwnImport.hpp"
#include "report/ImportReport.hpp"
#include "support/printable.hpp"
#include "support/ustring.hpp"
#include "threads/decodeInParallel.hpp"

namespace {

// Never released: the process ends soon after, and the system takes its memory back at once. To
// take a network apart, element by element, would be a tenth of the whole time.
RoadNetworkImporter& makeImporter(ImportOptions const& options) {
  static OwnImport* const import = new OwnImport(options);
  return import->importer;
}

// What the name says that is open already: standard input, or what a shell makes of <(command).
std::optional<int> openDescriptor(std::string_view name) {
  if (name == "-" || name == "/dev/stdin") return STDIN_FILENO;
  constexpr std::string_view folder = "/dev/fd/";
  int number = -1;
  if (!name.starts_with(folder)) return std::nullopt;
  auto const [end, error] =
      std::from_chars(name.data() + folder.size(), name.data() + name.size(), number);
  bool const isNumber = error == std::errc() && end == name.data() + name.size() && number >= 0;
  return isNumber ? std::optional(number) : std::nullopt;
}

void openInput(Options const& options, OpenStreetMap::Reader& reader) {
  auto const descriptor = openDescriptor(options.input);
  if (!descriptor) return reader.setFile(support::to_ustring(options.input));
  if (::isatty(*descriptor) == 1) {  // nobody types a map
    throw std::runtime_error(options.inputName() + ": is a terminal; send a file to it");
  }
  reader.setOpenFile(*descriptor, options.inputName());
}

void import(Options const& options) {
  Stopwatch time;
  // Made first: an output that can't be written should not cost an import.
  std::optional<NetworkExport> output;
  if (options.output) output.emplace(*options.format, *options.output, options.overwrite);
  std::optional<ReportExport> reportOutput;
  if (options.report) reportOutput.emplace(*options.report, options.overwrite);

  RoadNetworkImporter& importer = makeImporter(options.import);
  ProgressLine progress(!options.quiet);
  importer.setProgress([&](support::Stage stage, std::uint64_t done, std::uint64_t total) {
    progress.show(stage, done, total);
  });
  importer.reader.setPbfRunner(decodeInParallel(options.threads));
  openInput(options, importer.reader);
  importer.reader.populate(importer.reader.ways);  // as the first stage would
  time.finished("reading");
  importer.run();
  time.finished("network");

  std::optional<ImportReport> report;
  if (reportOutput || !options.quiet) report = reportOn(importer);
  if (output) output->write(importer, report ? &*report : nullptr);
  if (reportOutput) reportOutput->write(*report, importer);
  progress.wipe();
  if (output) output->commit();
  if (reportOutput) reportOutput->commit();
  if (options.quiet) return;
  time.finished("checks");
  if (importer.roadNetwork->getRoads().empty()) {
    std::cerr << support::printable(options.inputName()) << ": gives no roads\n";
  }
  if (output) {
    printWritten(options, importer, *report, std::cerr);
  } else if (options.report != "-") {
    printSummary(importer, *report, time, std::cout);
    std::cout.flush();
    if (!std::cout) throw std::runtime_error("standard output: can't write");
  }
}

// A file that takes the number of a closed standard stream would get what is meant for that.
// Nothing can be written to this one.
void occupyStandardStreams() {
  int descriptor = 0;
  while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = ::open("/dev/null", O_RDONLY);
  if (descriptor >= 0) ::close(descriptor);
}

int fail(std::string const& message) {
  std::cerr << "osm2roadnet: " << support::printable(message) << '\n';
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  occupyStandardStreams();
  cleanUpOnEndingSignals(Temporary::removeAll);
  std::string input = "?";
  try {
    int exitCode = 0;
    std::optional<Options> const options = parseOptions(argc, argv, exitCode);
    if (!options) return exitCode;
    input = options->inputName();
    endWhenOutOfMemory(input);
    import(*options);
    return 0;
  } catch (std::bad_alloc const&) {
    return fail(input + ": out of memory");
  } catch (std::range_error const& error) {
    return fail(input + ": the file name is " + error.what());
  } catch (std::runtime_error const& error) {  // these name their file
    return fail(error.what());
  } catch (std::exception const& error) {
    return fail(input + ": " + error.what());
  }
}
