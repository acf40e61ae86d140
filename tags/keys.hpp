// The keys of all tags that mean something to a road network.
#pragma once

#include <string>
#include <vector>

#include "osm/Selection.hpp"

/// Ways that may be roads, and of their tags those that the files of this folder read, and those
/// that are exported or used otherwise.
inline OpenStreetMap::Selection roadSelection(std::vector<std::string> const& exported = {},
                                              std::vector<std::string> const& used = {}) {
  OpenStreetMap::Selection selection;
  selection.wayKey = "highway";
  selection.keys = {"highway", "name",   "oneway",  "layer", "junction",
                    "bridge",  "tunnel", "covered", "area"};
  selection.keys.insert(selection.keys.end(), exported.begin(), exported.end());
  selection.keys.insert(selection.keys.end(), used.begin(), used.end());
  return selection;
}

/// Turn restrictions, and of their tags those that say something.
inline void addRestrictions(OpenStreetMap::Selection& selection) {
  selection.relationType = "restriction";
  selection.relationKeys = {"restriction", "except", "day_on", "day_off", "hour_on", "hour_off"};
}
