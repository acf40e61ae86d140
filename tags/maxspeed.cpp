#include "tags/maxspeed.hpp"

#include <algorithm>
#include <string_view>

#include "tags/valueParts.hpp"

using OpenStreetMap::Tags;

namespace {

constexpr double kilometresInMile = 1.609344;
constexpr double kilometresInNauticalMile = 1.852;

// In km/h; 0 for what is no unit of speed.
double unitOf(std::string_view text) {
  if (text.empty() || text == "km/h" || text == "kmh" || text == "kph") return 1.0;
  if (text == "mph") return kilometresInMile;
  if (text == "knots") return kilometresInNauticalMile;
  return 0.0;
}

double speedOf(std::string_view text) {
  auto const [number, rest] = leadingNumber(text);
  return number * unitOf(rest);
}

}  // namespace

std::optional<double> speedLimit(Tags const& tags, bool isForward) {
  auto value = tags.find(isForward ? u"maxspeed:forward" : u"maxspeed:backward");
  if (value == tags.end()) value = tags.find(u"maxspeed");
  if (value == tags.end()) return std::nullopt;
  auto const parts = valueParts(value->second);
  double lowest = speedOf(parts.front());
  for (std::string const& part : parts) lowest = std::min(lowest, speedOf(part));
  return lowest > 0.0 ? std::optional(lowest) : std::nullopt;
}
