// The keys of all tags that mean something to a road network.
#pragma once

#include "osm/Selection.hpp"

/// Ways that may be roads, and the tags of theirs that the files of this folder read.
inline OpenStreetMap::Selection roadSelection() {
  return {"highway", {"highway", "name", "oneway", "layer", "junction", "bridge", "tunnel"}};
}
