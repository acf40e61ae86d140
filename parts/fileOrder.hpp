// The order of the ids in a sorted file.
#pragma once

#include <cstdint>

#include "osm/records.hpp"

/// Ascends with the ids of one kind as `osmium sort` puts them: 0, the negative ones by their
/// absolute value, the positive ones.
constexpr std::uint64_t fileOrder(OpenStreetMap::Id id) noexcept {
  constexpr std::uint64_t half = std::uint64_t{1} << 63;
  return id <= 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(id)
                 : half + static_cast<std::uint64_t>(id);
}

/// To sort by.
struct InFileOrder {
  bool operator()(OpenStreetMap::Id a, OpenStreetMap::Id b) const noexcept {
    return fileOrder(a) < fileOrder(b);
  }
};
