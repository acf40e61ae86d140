#include "python/core/Import.hpp"

#include <atomic>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "export/NetworkExport.hpp"
#include "export/writeReport.hpp"
#include "importer/geographicLimits.hpp"
#include "python/core/MemoryFile.hpp"
#include "python/core/arrays.hpp"
#include "python/core/columnTables.hpp"
#include "report/ImportReport.hpp"
#include "threads/NoSignals.hpp"
#include "threads/decodeInParallel.hpp"

namespace nb = nanobind;

namespace {

std::atomic<bool> processEnds{false};

}  // namespace

template <class Action>
auto Import::work(Watch& watch, Action const& action) {
  nb::gil_scoped_release const others;
  std::scoped_lock const lock(engine_->mutex);
  struct Watching {
    Engine& engine;
    Watch* before;
    ~Watching() { engine.watch = before; }
  } const watching{*engine_, std::exchange(engine_->watch, &watch)};
  return action();
}

Import::Import(Source const& source, ImportOptions options, unsigned threads, Watch watch)
    : engine_(std::make_unique<Engine>(std::move(options))) {
  RoadNetworkImporter& importer = engine_->importer;
  importer.reader.setPbfRunner(decodeInParallel(threads == 0 ? usefulThreads() : threads));
  importer.setProgress([&engine = *engine_](support::Stage stage, auto done, auto total) {
    (*engine.watch)(stage, done, total);
  });
  try {
    takeColumns(work(watch, [&] {
      open(source);
      importer.run();
      return networkColumns(importer);
    }));
  } catch (...) {
    // What has been read takes a while to take apart: nobody who pressed Ctrl-C waits for that.
    releaseElsewhere(std::move(engine_));
    throw;
  }
}

Import::~Import() {
  if (processEnds) {
    static_cast<void>(engine_.release());
  } else {
    nb::gil_scoped_release const others;
    engine_.reset();
  }
}

void Import::leaveAllToTheSystem() noexcept {
  processEnds = true;
}

void Import::releaseElsewhere(std::unique_ptr<Engine> engine) noexcept {
  NoSignals const inIt;
  try {
    std::thread([engine = std::move(engine)]() mutable { engine.reset(); }).detach();
  } catch (std::system_error const&) {  // no thread is to be had, and the engine is gone already
  }
}

void Import::open(Source const& source) {
  auto& reader = engine_->importer.reader;
  if (auto const* const path = std::get_if<std::string>(&source)) {
    reader.setFile(*path);
  } else if (auto const* const open = std::get_if<OpenFile>(&source)) {
    reader.setOpenFile(open->descriptor, open->name);
  } else {
    auto const bytes = std::get<std::span<char const>>(source);
    MemoryFile file;
    file.fill(bytes.data(), bytes.size());
    reader.setOpenFile(file.descriptor(), "<bytes>");
  }
}

void Import::takeColumns(NetworkColumns columns) {
  auto& [nodeColumns, roadColumns] = columns;
  nb::dict ofNodes;
  ofNodes["id"] = arrayOf(std::move(nodeColumns.id));
  ofNodes["lon"] = arrayOf(std::move(nodeColumns.longitude));
  ofNodes["lat"] = arrayOf(std::move(nodeColumns.latitude));
  ofNodes["elevation"] = arrayOf(std::move(nodeColumns.elevation));
  nodes = ofNodes;

  roads = roadTable(roadColumns);
  texts = textTables(roadColumns);
  lineOffsets_ =
      roadColumns.centreLine.offsets;  // moving a vector leaves its values where they are
  linePoints_ = roadColumns.centreLine.values;
  lines = tupleOf(std::move(roadColumns.centreLine));
  ways = tupleOf(std::move(roadColumns.wayIds));
}

nb::object Import::limits() const {
  auto const values = geographicLimits(engine_->importer);
  if (values.empty()) return nb::none();
  return nb::make_tuple(values[0], values[1], values[2], values[3]);
}

nb::object Import::reference() const {
  auto const& place = engine_->network->getGeoReference();
  return nb::make_tuple(place->getLatitude(), place->getLongitude(), place->getAltitude());
}

nb::object Import::counts() const {
  RoadNetworkImporter const& importer = engine_->importer;
  auto const& file = importer.reader.counts();
  nb::dict counts;
  counts["nodes"] = file.nodes;
  counts["ways"] = file.ways;
  counts["relations"] = file.relations;
  counts["highway_ways"] = importer.reader.ways.size();  // the reader keeps no others
  counts["selected_ways"] = importer.selectedWays.size();
  counts["joined_nodes"] =
      importer.junctionNodeIds.size() - importer.roadNetwork->getNodes().size();
  return counts;
}

nb::object Import::lengths() const {
  std::vector<double> lengths;
  {
    nb::gil_scoped_release const others;
    lengths = roadLengths(lineOffsets_, linePoints_);
  }
  return arrayOf(std::move(lengths));
}

nb::object Import::restrictions() {
  if (restrictions_.is_valid()) return restrictions_;
  Watch watch{nb::none()};
  RestrictionColumns columns = work(watch, [&] { return restrictionColumns(engine_->importer); });
  restrictions_ = restrictionTable(columns);
  return restrictions_;
}

std::string Import::report(Watch watch) {
  return work(watch, [&] {
    MemoryFile file;
    BufferedFile output(file.duplicate(), "the report");
    writeReport(reportOn(engine_->importer), engine_->importer, output);
    output.close();
    return file.content();
  });
}

void Import::write(std::string const& path, std::string const& format, bool overwrite,
                   Watch watch) {
  Format const* const known = findFormat(format);
  if (known == nullptr) throw std::invalid_argument("there is no format \"" + format + '"');
  try {
    work(watch, [&] {
      NetworkExport output(*known, path, overwrite);
      output.write(engine_->importer);
      output.commit();
    });
  } catch (std::runtime_error const& error) {  // these name their file
    PyErr_SetString(PyExc_OSError, error.what());
    throw nb::python_error();
  }
}
