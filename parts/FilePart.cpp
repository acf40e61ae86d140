#include "parts/FilePart.hpp"

#include <string_view>

#include "osm/FileHandler.hpp"
#include "osm/ReadError.hpp"
#include "osm/decode/DecodeError.hpp"
#include "osm/decode/FileSource.hpp"
#include "osm/decode/PbfFile.hpp"
#include "osm/decode/decodeFile.hpp"

using OpenStreetMap::DecodeError;
using OpenStreetMap::FileHandle;
using OpenStreetMap::FileSource;
using OpenStreetMap::PbfFile;
using OpenStreetMap::ReadError;

namespace {

FileHandle openNamed(std::string const& path, std::string const& name) {
  try {
    FileHandle file = OpenStreetMap::openFile(path);
    file->name = name;
    return file;
  } catch (ReadError const& error) {
    throw ReadError(name, error.place(), error.reason());
  }
}

// What only a single pass over the whole file can read.
bool isForOneMachine(std::string_view head, std::string_view name) {
  return OpenStreetMap::looksPacked(head) ||
         (OpenStreetMap::looksLikeXml(head) && !name.ends_with(".pbf"));
}

}  // namespace

void decodePart(FilePart const& part, PartSink& sink) {
  FileHandle const file = openNamed(part.path, part.name);
  support::Progress const nobody;
  support::Steps steps(nobody, support::Stage::reading, file->size);
  FileSource source(*file, steps, part.lead, part.end);
  PbfFile pbf(source, sink, {part.lead, part.leadBlob});
  PbfFile::Blob blob;
  try {
    while (true) {
      if (pbf.next().position == part.begin) sink.beginPart();
      if (!pbf.read(blob)) break;
      PbfFile::unpack(blob);
      pbf.decode(blob);
    }
  } catch (DecodeError const& error) {
    throw ReadError(part.name, error.place, error.reason);
  }
}

BlobPlaces findBlobs(std::string const& path, std::string const& name) {
  FileHandle const file = openNamed(path, name);
  support::Progress const nobody;
  support::Steps steps(nobody, support::Stage::reading, file->size);
  BlobPlaces places;
  PartSink sink({});
  try {
    FileSource start(*file, steps);
    OpenStreetMap::SniffedSource const sniffed(start);
    if (isForOneMachine(sniffed.head(), name)) {
      throw DecodeError{"", "only a PBF file can be read in parts; \"osmium sort " + name +
                                " -o sorted.osm.pbf\" makes one"};
    }
    FileSource source(*file, steps, 0, file->size);
    OpenStreetMap::decodeFile(source, name, sink, [&](PbfFile& pbf) {
      PbfFile::Blob blob;
      while (true) {
        auto const begin = static_cast<std::int64_t>(pbf.next().position);
        if (!pbf.skip(blob) || blob.error) break;
        places.begins.push_back(begin);
        places.isData.push_back(blob.isData);
        places.end = static_cast<std::int64_t>(pbf.next().position);
      }
    });
  } catch (DecodeError const& error) {
    throw ReadError(name, error.place, error.reason);
  }
  return places;
}

std::optional<PartSeam> findSeam(FilePart const& part) {
  PartSink sink({});
  try {
    decodePart(part, sink);
  } catch (ReadError const&) {
    return std::nullopt;
  }
  if (!sink.lastOfLead() || !sink.first()) return std::nullopt;
  return PartSeam{*sink.lastOfLead(), *sink.first()};
}
