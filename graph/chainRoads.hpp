// The fifth stage: roads that merely continue one another become one.
#pragma once

#include <vector>

#include "importer/RoadWayIds.hpp"
#include "osm/records.hpp"

class RoadNetworkImporter;

/// The end of a joined road that lies at another Node than before, and so behind the others in the
/// list of that Node.
struct MovedEnd {
  RoadWayIds::RoadId road;
  bool isEnd;              ///< or the start
  OpenStreetMap::Id gone;  ///< the node whose Node went when it moved
};

/// At every Node where exactly two road ends meet and traffic can both arrive and depart, joins the
/// two roads into the one with the smaller id and destroys the other, and the Node. A road that
/// leaves such a Node and returns to it stays. `roadWayIds` then lists all ways of a joined road.
///
/// The joined road keeps the direction of travel and the name of the smaller id, the name followed
/// by "-" and the other's unless it contains that already. `moved`, if anybody asks, gets the ends
/// that have moved, in the order in which they did: by ascending model id of the Node that went.
void chainRoads(RoadNetworkImporter& importer, std::vector<MovedEnd>* moved = nullptr);
