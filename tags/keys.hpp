// The keys of all tags that mean something to a road network.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "osm/Selection.hpp"

/// Ways that may be roads, and of their tags those that the files of this folder read, and others
/// that are needed.
inline OpenStreetMap::Selection roadSelection(
    std::initializer_list<std::vector<std::string>> const& others = {}) {
  OpenStreetMap::Selection selection;
  selection.wayKey = "highway";
  selection.keys = {"highway", "name",   "oneway",  "layer", "junction",
                    "bridge",  "tunnel", "covered", "area"};
  for (auto const& keys : others) {
    selection.keys.insert(selection.keys.end(), keys.begin(), keys.end());
  }
  return selection;
}

/// Turn restrictions, and of their tags those that say something.
inline void addRestrictions(OpenStreetMap::Selection& selection) {
  selection.relationType = "restriction";
  selection.relationKeys = {"restriction", "except", "day_on", "day_off", "hour_on", "hour_off"};
}
