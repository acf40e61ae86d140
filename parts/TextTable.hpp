// The texts of a batch of elements.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "osm/decode/ElementSink.hpp"

/// Each different text once, as UTF-8, one behind the other.
struct TextTable {
  using Number = std::uint32_t;

  std::vector<std::uint64_t> ends;
  std::vector<char> bytes;

  /// The texts as strings of the sink.
  std::vector<std::u16string const*> tellTo(OpenStreetMap::ElementSink& sink) const;
};

/// Gives numbers to strings, of which equal ones are one.
class TextNumbers {
 public:
  explicit TextNumbers(TextTable& table) : table_(table) {}
  TextTable::Number of(std::u16string const* text);

 private:
  TextTable& table_;
  std::unordered_map<std::u16string const*, TextTable::Number> numbers_;
};
