// The key "oneway" (https://wiki.openstreetmap.org/wiki/Key:oneway).
#pragma once

#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "osm/records.hpp"

/// Which ways are one-way roads.
enum class OneWays {
  tagged,   ///< those that a tag of yes, 1 or -1 says so of
  implied,  ///< those of true and reverse too, and roundabouts and motorways without a tag
};

/// Of a tag: yes or 1 is forward, -1 backward, anything else both; as implied, true is forward and
/// reverse backward, too. Without the tag: both, but forward as implied, where it is.
velora::roadnetwork::DirectionOfTravel wayDirection(OpenStreetMap::Tags const& tags,
                                                    OneWays oneWays);

/// Whether the tags imply a one-way road without a "oneway" tag to say so: junction=roundabout,
/// junction=circular and highway=motorway.
bool impliesOneway(OpenStreetMap::Tags const& tags);

/// Whether the value says something that `wayDirection` has no answer for: it is none of those,
/// no, 0 and false. False without the tag.
bool hasUnknownOneway(OpenStreetMap::Tags const& tags, OneWays oneWays);
