// The keys of access (https://wiki.openstreetmap.org/wiki/Key:access).
#pragma once

#include "osm/records.hpp"

enum class RoadUser { car, truck, bus, bicycle, pedestrian };

/// Whether the general public may use the way as one of these. The most special key that is there
/// decides: for a car "motorcar", then "motor_vehicle", "vehicle" and "access"; a truck has "hgv"
/// in place of the first, a bus "bus" and "psv"; a bicycle has "bicycle", "vehicle", "access", and
/// somebody on foot "foot", "access". A value shuts out when all its parts (between ";") are no,
/// private, agricultural, forestry, emergency, military, permit, dismount or use_sidepath. Without
/// any of the keys all may use all, but for motorways and their links, which are for motor
/// vehicles.
bool mayUse(RoadUser user, OpenStreetMap::Tags const& tags);
