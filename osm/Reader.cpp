#include "osm/Reader.hpp"

#include <stdexcept>
#include <string>

#include "osm/ReadError.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/FileSource.hpp"
#include "osm/decode/PbfFile.hpp"
#include "osm/decode/TableFiller.hpp"
#include "osm/decode/WayFiller.hpp"
#include "osm/decode/decodeFile.hpp"

namespace OpenStreetMap {

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

void Reader::readFile() {
  if (!file_) throw ReadError("OpenStreetMap::Reader", "", "no file has been set");
  try {
    buffer_ = std::make_unique<RecordStorage>();
    if (selection_.isEverything()) {
      TableFiller filler(*buffer_, nodes, ways, relations);
      decode(filler);
      nodes.makeIndex();
      counts_ = {nodes.size(), ways.size(), relations.size()};
      takeLimits(filler);
    } else {
      WayFiller filler(*buffer_, ways, relations, selection_);
      decode(filler);
      wayNodes = filler.takeNodes();
      counts_ = filler.counts();
      takeLimits(filler);
    }
    ways.makeIndex();
    populated_ = true;
  } catch (DecodeError const& error) {
    std::string const name = file_->name;
    clear();
    throw ReadError(name, error.place, error.reason);
  } catch (std::length_error const& error) {  // more elements than a table can hold
    std::string const name = file_->name;
    clear();
    throw ReadError(name, "", error.what());
  } catch (...) {
    clear();
    throw;
  }
}

void Reader::decode(ElementSink& sink) {
  FileSource source(*file_, progress_);
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
}

}  // namespace OpenStreetMap
