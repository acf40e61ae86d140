// A file and a part of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "parts/PartSink.hpp"

/// Blobs of a sorted PBF file that follow one another. Who decodes them begins with the blob before
/// them, so that what stands first in the part can be compared with what stands before it.
struct FilePart {
  std::string path;        ///< bytes
  std::string name;        ///< for messages, UTF-8
  std::uint64_t lead;      ///< where the blob before them begins; `begin` for the first part
  std::uint64_t leadBlob;  ///< how many blobs there are before that
  std::uint64_t begin;
  std::uint64_t end;  ///< beyond the end of the file for the last part
};

/// Decodes the lead and the part. Throws ReadError, with the same text as a Reader.
void decodePart(FilePart const& part, PartSink& sink);

/// Where the blobs of a file begin.
struct BlobPlaces {
  std::vector<std::int64_t> begins;
  std::vector<std::uint8_t> isData;
  std::int64_t end = 0;  ///< of the last blob
};

/// Reads the headers of all blobs. A damaged one ends the list: who decodes the blobs meets it
/// again. Throws ReadError for what is no PBF file.
BlobPlaces findBlobs(std::string const& path, std::string const& name);

/// The last element before a blob and the first one from there on.
struct PartSeam {
  PartSink::Element last;
  PartSink::Element first;
};

/// Looks at the blob before a part and at the first blob of the part, which ends at `part.end`.
/// Nothing where one of them has no elements, or can't be decoded.
std::optional<PartSeam> findSeam(FilePart const& part);
