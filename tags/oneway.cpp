#include "tags/oneway.hpp"

#include <string>

using OpenStreetMap::Tags;
using velora::roadnetwork::DirectionOfTravel;

DirectionOfTravel wayDirection(Tags const& tags, OneWays oneWays) {
  static std::u16string const key = u"oneway";
  bool const isImplied = oneWays == OneWays::implied;
  auto const oneway = tags.find(key);
  if (oneway == tags.end()) {
    return isImplied && impliesOneway(tags) ? DirectionOfTravel::forward : DirectionOfTravel::both;
  }
  std::u16string const& value = oneway->second;
  if (value == u"yes" || value == u"1") return DirectionOfTravel::forward;
  if (value == u"-1") return DirectionOfTravel::backward;
  if (isImplied && value == u"true") return DirectionOfTravel::forward;
  if (isImplied && value == u"reverse") return DirectionOfTravel::backward;
  return DirectionOfTravel::both;
}

bool impliesOneway(Tags const& tags) {
  return !tags.contains(u"oneway") &&
         (tags.has(u"junction", u"roundabout") || tags.has(u"junction", u"circular") ||
          tags.has(u"highway", u"motorway"));
}

bool hasUnknownOneway(Tags const& tags, OneWays oneWays) {
  if (!tags.contains(u"oneway") || wayDirection(tags, oneWays) != DirectionOfTravel::both) {
    return false;
  }
  return !tags.has(u"oneway", u"no") && !tags.has(u"oneway", u"0") &&
         !tags.has(u"oneway", u"false");
}
