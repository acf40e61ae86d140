// The fifth stage: roads that merely continue one another become one.
#pragma once

class RoadNetworkImporter;

/// At every Node where exactly two road ends meet and traffic can both arrive and depart, joins the
/// two roads into the one with the smaller id and destroys the other, and the Node. A road that
/// leaves such a Node and returns to it stays. `roadWayIds` then lists all ways of a joined road.
///
/// The joined road keeps the direction of travel and the name of the smaller id, the name followed
/// by "-" and the other's unless it contains that already.
void chainRoads(RoadNetworkImporter& importer);
