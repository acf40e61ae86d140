#include "tags/highway.hpp"

#include <string>
#include <unordered_set>

namespace {

std::unordered_set<std::u16string> const highwayTypes{
    u"motorway",      u"trunk",        u"primary",        u"secondary",
    u"tertiary",      u"unclassified", u"residential",    u"motorway_link",
    u"trunk_link",    u"primary_link", u"secondary_link", u"tertiary_link",
    u"living_street", u"service",      u"raceway",        u"road"};

}  // namespace

bool isRoad(OpenStreetMap::Tags const& tags) {
  auto const highway = tags.find(u"highway");
  return highway != tags.end() && highwayTypes.contains(highway->second);
}
