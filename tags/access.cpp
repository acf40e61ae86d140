#include "tags/access.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "tags/valueParts.hpp"

using OpenStreetMap::Tags;

namespace {

using Keys = std::vector<std::u16string_view>;

// The most special first.
Keys const& keysOf(RoadUser user) {
  static std::array<Keys, 5> const keys{{
      {u"motorcar", u"motor_vehicle", u"vehicle", u"access"},
      {u"hgv", u"motor_vehicle", u"vehicle", u"access"},
      {u"bus", u"psv", u"motor_vehicle", u"vehicle", u"access"},
      {u"bicycle", u"vehicle", u"access"},
      {u"foot", u"access"},
  }};
  return keys[static_cast<std::size_t>(user)];
}

bool shutsOut(std::string_view value) {
  static std::array<std::string_view, 9> const values{"no",       "private",  "agricultural",
                                                      "forestry", "military", "emergency",
                                                      "permit",   "dismount", "use_sidepath"};
  return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

bool mayUse(RoadUser user, Tags const& tags) {
  for (std::u16string_view const key : keysOf(user)) {
    auto const tag = tags.find(key);
    if (tag == tags.end()) continue;
    auto const parts = valueParts(tag->second);
    return !std::all_of(parts.begin(), parts.end(), shutsOut);
  }
  bool const isUnmotorized = user == RoadUser::bicycle || user == RoadUser::pedestrian;
  return !isUnmotorized ||
         !(tags.has(u"highway", u"motorway") || tags.has(u"highway", u"motorway_link") ||
           tags.has(u"motorroad", u"yes"));
}
