// What nodes, ways and relations of a PBF file have in common.
#pragma once

#include <cstdint>
#include <optional>

#include "osm/decode/ElementSink.hpp"
#include "osm/decode/pbfFields.hpp"

namespace OpenStreetMap {

class PbfElement {
 public:
  explicit PbfElement(ElementType type) : type_(type) {}

  /// Reads one of the fields below, or passes over one that means nothing here.
  void read(pbf::pbf_reader& field);

  ElementType type() const noexcept { return type_; }
  /// Throws pbf::InvalidData when no id has been read.
  ElementSink::Head head() const;

  pbf::PackedUint32 keys;
  pbf::PackedUint32 values;

 private:
  void readInfo(pbf::pbf_reader info);

  ElementType type_;
  std::optional<std::int64_t> id_;
  std::int64_t version_ = ElementSink::noVersion;
  bool visible_ = true;  // history files say false, and some others
};

}  // namespace OpenStreetMap
