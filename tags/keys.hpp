// The keys of all tags that mean something to a road network.
#pragma once

#include <string>
#include <vector>

#include "osm/Selection.hpp"

/// Ways that may be roads, and of their tags those that the files of this folder read, and those
/// that are exported; also turn restrictions, if they are wanted.
inline OpenStreetMap::Selection roadSelection(std::vector<std::string> const& exported = {},
                                              bool withRestrictions = false) {
  OpenStreetMap::Selection selection;
  selection.wayKey = "highway";
  selection.keys = {"highway", "name", "oneway", "layer", "junction", "bridge", "tunnel"};
  selection.keys.insert(selection.keys.end(), exported.begin(), exported.end());
  if (withRestrictions) {
    selection.relationType = "restriction";
    selection.relationKeys = {"restriction", "except",  "day_on",
                              "day_off",     "hour_on", "hour_off"};
  }
  return selection;
}
