// The messages of a PBF file (https://wiki.openstreetmap.org/wiki/PBF_Format): the numbers of the
// fields that mean something here.
#pragma once

#include <protozero/types.hpp>

namespace OpenStreetMap {

enum class BlobHeaderField : protozero::pbf_tag_type { type = 1, dataSize = 3 };
// The data stands in exactly one of those from 3 on, or in `raw`.
enum class BlobField : protozero::pbf_tag_type {
  raw = 1,
  rawSize = 2,
  zlibData = 3,
  lzmaData = 4,
  bzip2Data = 5,
  lz4Data = 6,
  zstdData = 7,
};

enum class HeaderBlockField : protozero::pbf_tag_type { box = 1, requiredFeature = 4 };
enum class BoxField : protozero::pbf_tag_type { left = 1, right = 2, top = 3, bottom = 4 };

enum class BlockField : protozero::pbf_tag_type {
  strings = 1,
  group = 2,
  granularity = 17,
  latitudeOffset = 19,
  longitudeOffset = 20,
};
enum class StringTableField : protozero::pbf_tag_type { string = 1 };
enum class GroupField : protozero::pbf_tag_type { node = 1, dense = 2, way = 3, relation = 4 };
// Of nodes, ways and relations alike; the fields that only one kind has are below.
enum class ElementField : protozero::pbf_tag_type { id = 1, keys = 2, values = 3, info = 4 };
enum class NodeField : protozero::pbf_tag_type { latitude = 8, longitude = 9 };
enum class WayField : protozero::pbf_tag_type { references = 8 };
enum class RelationField : protozero::pbf_tag_type { roles = 8, references = 9, types = 10 };
enum class DenseField : protozero::pbf_tag_type {
  ids = 1,
  info = 5,
  latitudes = 8,
  longitudes = 9,
  keysAndValues = 10,
};
// Of one element's Info, and of DenseInfo, which has a row of each.
enum class InfoField : protozero::pbf_tag_type { version = 1, visible = 6 };

}  // namespace OpenStreetMap
