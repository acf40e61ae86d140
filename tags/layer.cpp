#include "tags/layer.hpp"

#include <cmath>
#include <locale>
#include <sstream>
#include <string>

#include "support/ustring.hpp"

using OpenStreetMap::Tags;

namespace {

constexpr double layerHeight = 4.9;
constexpr double highestUsualLayer = 5.0;

// Of a key such as "bridge", where an empty value says no more than "no" does.
bool isYes(Tags const& tags, std::u16string_view key) {
  return tags.contains(key) && !tags.has(key, u"no") && !tags.has(key, u"");
}

}  // namespace

std::optional<double> layerNumber(Tags const& tags) {
  static std::u16string const key = u"layer";
  auto const layer = tags.find(key);
  if (layer == tags.end()) return std::nullopt;
  std::istringstream text(support::ustring_to_utf8(layer->second));
  text.imbue(std::locale::classic());  // a decimal point, whatever the host's locale
  text.exceptions(std::ios::badbit);   // or it would take a failed allocation for a bad number
  double number = 0.0;
  if (!(text >> number)) return std::nullopt;
  return number;
}

double wayLayerElevation(Tags const& tags) {
  auto const number = layerNumber(tags);
  return number ? layerHeight * *number : 0.0;
}

bool hasOddLayer(Tags const& tags) {
  if (!tags.contains(u"layer")) return false;
  auto const number = layerNumber(tags);
  return !number || std::abs(*number) > highestUsualLayer;
}

bool isBridgeOrTunnel(Tags const& tags) {
  return isYes(tags, u"bridge") || isYes(tags, u"tunnel");
}

bool isLevelBridge(Tags const& tags) {
  return !tags.contains(u"layer") && isBridgeOrTunnel(tags) &&
         !tags.has(u"tunnel", u"building_passage") && !isYes(tags, u"covered");
}
