#include "osm/Reader.hpp"

#include <exception>
#include <stdexcept>
#include <string>
#include <utility>

#include "osm/ReadError.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/FileSource.hpp"
#include "osm/decode/PbfFile.hpp"
#include "osm/decode/TableFiller.hpp"
#include "osm/decode/WayFiller.hpp"
#include "osm/decode/decodeFile.hpp"

namespace OpenStreetMap {
namespace {

using support::Progress;
using support::Stage;

Progress interrupting(Progress const& progress) {
  if (!progress) return {};
  return [&progress](Stage stage, std::uint64_t done, std::uint64_t total) {
    try {
      progress(stage, done, total);
    } catch (...) {
      throw Interruption{std::current_exception()};
    }
  };
}

}  // namespace

Reader::Reader() : runPbf_(decodeOneByOne) {}

void Reader::setFile(std::u16string const& path) {
  clear();
  file_ = openFile(path);
}

void Reader::setFile(std::string const& path) {
  clear();
  file_ = openFile(path);
}

void Reader::setOpenFile(int descriptor, std::string const& name) {
  clear();
  file_ = useOpenFile(descriptor, name);
}

void Reader::setElements(std::function<void(ElementSink& sink)> elements) {
  clear();
  elements_ = std::move(elements);
}

void Reader::readFile() {
  if (!file_ && !elements_) throw ReadError("OpenStreetMap::Reader", "", "no file has been set");
  Progress const progress = interrupting(progress_);
  try {
    buffer_ = std::make_unique<RecordStorage>();
    if (selection_.isEverything()) {
      TableFiller filler(*buffer_, nodes, ways, relations);
      decode(filler, progress);
      nodes.makeIndex();
      counts_ = {nodes.size(), ways.size(), relations.size()};
      takeLimits(filler);
    } else {
      WayFiller filler(*buffer_, ways, relations, selection_);
      decode(filler, progress);
      wayNodes = filler.takeNodes(progress);
      counts_ = filler.counts();
      takeLimits(filler);
    }
    ways.makeIndex();
    populated_ = true;
  } catch (Interruption const& interruption) {
    clear();
    std::rethrow_exception(interruption.cause);
  } catch (DecodeError const& error) {
    std::string const name = file_->name;
    clear();
    throw ReadError(name, error.place, error.reason);
  } catch (std::length_error const& error) {  // more elements than a table can hold
    std::string const name = file_ ? file_->name : std::string();
    clear();
    throw ReadError(name, "", error.what());
  } catch (...) {
    clear();
    throw;
  }
}

void Reader::decode(ElementSink& sink, Progress const& progress) {
  if (elements_) return elements_(sink);
  support::Steps steps(progress, Stage::reading, file_->size);
  sink.setSteps(steps);
  FileSource source(*file_, steps);
  decodeFile(source, file_->name, sink, runPbf_);
}

void Reader::takeLimits(ElementSink const& sink) {
  latitudeLimits_ = sink.latitudeLimits();
  longitudeLimits_ = sink.longitudeLimits();
}

void Reader::clear() noexcept {
  populated_ = false;
  counts_ = {};
  latitudeLimits_ = unknownLimits;
  longitudeLimits_ = unknownLimits;
  wayNodes = {};
  relations.clear();
  ways.clear();
  nodes.clear();
  buffer_.reset();
  file_.reset();
  elements_ = {};
}

}  // namespace OpenStreetMap
