#include "osm/Reader.hpp"

#include "osm/ReadError.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/FileSource.hpp"
#include "osm/decode/TableFiller.hpp"
#include "osm/decode/decodeFile.hpp"

namespace OpenStreetMap {

void Reader::setFile(std::u16string const& path) {
  clear();
  file_ = openFile(path);
}

void Reader::readFile() {
  if (!file_) throw ReadError("OpenStreetMap::Reader", "", "no file has been set");
  try {
    buffer_ = std::make_unique<RecordStorage>();
    TableFiller filler(*buffer_, nodes, ways, relations);
    FileSource source(*file_, progress_);
    decodeFile(source, file_->name, filler);
    nodes.makeIndex();
    ways.makeIndex();
    latitudeLimits_ = filler.latitudeLimits();
    longitudeLimits_ = filler.longitudeLimits();
    populated_ = true;
  } catch (DecodeError const& error) {
    std::string const name = file_->name;
    clear();
    throw ReadError(name, error.place, error.reason);
  } catch (...) {
    clear();
    throw;
  }
}

void Reader::clear() noexcept {
  populated_ = false;
  latitudeLimits_ = unknownLimits;
  longitudeLimits_ = unknownLimits;
  relations.clear();
  ways.clear();
  nodes.clear();
  buffer_.reset();
  file_.reset();
}

}  // namespace OpenStreetMap
