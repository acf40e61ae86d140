#include "osm/decode/Bounds.hpp"

#include <algorithm>
#include <stdexcept>

namespace OpenStreetMap {

void Range::add(double lowest, double highest) noexcept {
  low_ = std::min(low_, lowest);
  high_ = std::max(high_, highest);
}

Limits Range::limits() const noexcept {
  return low_ <= high_ ? Limits(low_, high_) : unknownLimits;
}

void Bounds::add(double south, double west, double north, double east) {
  if (south > north) throw std::runtime_error("bounds whose minimum latitude is above the maximum");
  latitude_.add(south, north);
  boxes_.emplace_back(west, east);
}

Limits Bounds::longitudeLimits() const {
  std::vector<Limits> parts;  // of the boxes, none of which crosses
  Range whole;
  for (auto const& [west, east] : boxes_) {
    if (west <= east) {
      parts.emplace_back(west, east);
    } else {
      parts.emplace_back(west, maxLongitude);
      parts.emplace_back(-maxLongitude, east);
    }
    whole.add(west, east);
  }
  if (parts.size() == boxes_.size()) return whole.limits();
  // The limits leave out the widest gap between the parts.
  std::sort(parts.begin(), parts.end());
  double reached = -maxLongitude;
  double widest = 0.0;
  Limits limits(-maxLongitude, maxLongitude);
  for (auto const& [west, east] : parts) {
    if (west - reached > widest) {
      widest = west - reached;
      limits = {west, reached};
    }
    reached = std::max(reached, east);
  }
  return limits;
}

}  // namespace OpenStreetMap
