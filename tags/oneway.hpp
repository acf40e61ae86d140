// The key "oneway" (https://wiki.openstreetmap.org/wiki/Key:oneway).
#pragma once

#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "osm/records.hpp"

/// yes or 1 is forward, -1 backward, anything else both.
velora::roadnetwork::DirectionOfTravel wayDirection(OpenStreetMap::Tags const& tags);

/// Whether the tags imply a one-way road without a "oneway" tag to say so: roundabouts and
/// motorways.
bool impliesOneway(OpenStreetMap::Tags const& tags);

/// Whether the value says something that `wayDirection` has no answer for: it is none of yes, 1,
/// -1, no, 0 and false. False without the tag.
bool hasUnknownOneway(OpenStreetMap::Tags const& tags);
