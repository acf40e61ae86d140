#include "python/core/Import.hpp"

#include <chrono>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <thread>

#include "export/NetworkExport.hpp"
#include "export/writeReport.hpp"
#include "importer/geographicLimits.hpp"
#include "python/core/Gil.hpp"
#include "python/core/MemoryFile.hpp"
#include "python/core/arrays.hpp"
#include "python/core/columnTables.hpp"
#include "report/ImportReport.hpp"
#include "threads/NoSignals.hpp"
#include "threads/decodeInParallel.hpp"

namespace nb = nanobind;
using namespace std::chrono_literals;

namespace {

nb::object textOf(std::string_view bytes) {
  auto const size = static_cast<Py_ssize_t>(bytes.size());
  auto text = nb::steal(PyUnicode_DecodeFSDefaultAndSize(bytes.data(), size));
  if (!text.is_valid()) throw nb::python_error();
  return text;
}

// The text begins with the name of the file, which OSError keeps by itself if it has a number.
[[noreturn]] void raiseOsError(std::runtime_error const& error, std::string const& path) {
  std::string_view reason = error.what();
  auto const* const numbered = dynamic_cast<std::system_error const*>(&error);
  std::string const name = path + ": ";
  nb::object arguments = nb::make_tuple(textOf(reason));
  if (numbered != nullptr && reason.starts_with(name)) {
    reason.remove_prefix(name.size());
    arguments = nb::make_tuple(numbered->code().value(), textOf(reason), textOf(path));
  }
  PyErr_SetObject(PyExc_OSError, arguments.ptr());
  throw nb::python_error();
}

}  // namespace

template <class Action>
auto Import::work(Watch& watch, Action const& action) {
  gil::Released const others;
  std::unique_lock lock(engine_->mutex, std::defer_lock);
  while (!lock.try_lock_for(20ms)) watch.handleSignals();
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
  if (gil::doesProcessEnd()) {  // what is there stays, and the system takes its memory back
    static_cast<void>(engine_.release());
  } else {
    gil::Released const others;
    engine_.reset();
  }
}

void Import::releaseElsewhere(std::unique_ptr<Engine> engine) noexcept {
  NoSignals const inIt;
  try {
    std::thread([engine = std::move(engine)]() mutable { engine.reset(); }).detach();
  } catch (...) {  // no thread is to be had, and the engine is gone already
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
    gil::Released const others;
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

std::string Import::report() {
  Watch watch{nb::none()};
  return work(watch, [&] {
    MemoryFile file;
    BufferedFile output(file.duplicate(), "the report");
    writeReport(reportOn(engine_->importer), engine_->importer, output);
    output.close();
    return file.content();
  });
}

void Import::write(std::string const& path, std::string const& format, bool overwrite) {
  Format const* const known = findFormat(format);
  if (known == nullptr) throw std::invalid_argument("there is no format \"" + format + '"');
  Watch watch{nb::none()};
  try {
    work(watch, [&] {
      NetworkExport output(*known, path, overwrite);
      output.write(engine_->importer);
      output.commit();
    });
  } catch (std::runtime_error const& error) {  // these name their file
    raiseOsError(error, path);
  }
}
