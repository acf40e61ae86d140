// Checked access to the fields of a protobuf message.
#pragma once

#include <cstdint>
#include <protozero/pbf_reader.hpp>
#include <protozero/types.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace OpenStreetMap::pbf {

/// Thrown for a message that is well-formed protobuf but makes no sense as OSM data.
class InvalidData : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

using protozero::pbf_reader;
using protozero::pbf_wire_type;
using PackedSint64 = protozero::iterator_range<pbf_reader::const_sint64_iterator>;
using PackedInt32 = protozero::iterator_range<pbf_reader::const_int32_iterator>;
using PackedUint32 = protozero::iterator_range<pbf_reader::const_uint32_iterator>;
using PackedBool = protozero::iterator_range<pbf_reader::const_bool_iterator>;

/// A known field with an unexpected wire type would otherwise be read as garbage or lost.
inline void expect(pbf_reader const& field, pbf_wire_type type) {
  if (field.wire_type() != type) {
    throw InvalidData("field " + std::to_string(field.tag()) + " has the wrong wire type");
  }
}

inline std::string_view bytes(pbf_reader& field) {
  expect(field, pbf_wire_type::length_delimited);
  protozero::data_view const view = field.get_view();
  return {view.data(), view.size()};
}
inline pbf_reader message(pbf_reader& field) {
  expect(field, pbf_wire_type::length_delimited);
  return field.get_message();
}
inline std::int32_t int32(pbf_reader& field) {
  expect(field, pbf_wire_type::varint);
  return field.get_int32();
}
inline std::int64_t int64(pbf_reader& field) {
  expect(field, pbf_wire_type::varint);
  return field.get_int64();
}
inline std::int64_t sint64(pbf_reader& field) {
  expect(field, pbf_wire_type::varint);
  return field.get_sint64();
}
inline bool boolean(pbf_reader& field) {
  expect(field, pbf_wire_type::varint);
  return field.get_bool();
}
/// Reads a packed field into `range`. A field in several pieces, which no writer makes, is refused
/// rather than shortened to its last piece.
template <class Range>
void readPacked(pbf_reader& field, Range& range) {
  expect(field, pbf_wire_type::length_delimited);
  if (!range.empty()) {
    throw InvalidData("packed field " + std::to_string(field.tag()) + " stands more than once");
  }
  if constexpr (std::is_same_v<Range, PackedSint64>) {
    range = field.get_packed_sint64();
  } else if constexpr (std::is_same_v<Range, PackedInt32>) {
    range = field.get_packed_int32();
  } else if constexpr (std::is_same_v<Range, PackedUint32>) {
    range = field.get_packed_uint32();
  } else {
    range = field.get_packed_bool();
  }
}

/// Takes the next value off a packed field. `what` names the field in the error when none is left.
template <class Range>
auto next(Range& range, char const* what) {
  if (range.empty()) throw InvalidData(std::string("too few ") + what);
  auto const value = range.front();
  range.drop_front();
  return value;
}

}  // namespace OpenStreetMap::pbf
