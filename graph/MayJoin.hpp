// Which roads may become one.
#pragma once

#include "importer/RoadNetworkImporter.hpp"
#include "model/roadnetwork/Node.hpp"
#include "support/IdMap.hpp"

/// Whether the two roads that end at a Node may be joined there, as the importer's options have it.
/// No road must have been joined yet.
class MayJoin {
 public:
  explicit MayJoin(RoadNetworkImporter const& importer);

  bool operator()(velora::roadnetwork::Node const& node) const;

 private:
  bool areCompatible(velora::roadnetwork::NodeImpl const& node) const;
  bool agree(OpenStreetMap::Tags const& one, OpenStreetMap::Tags const& other, bool isTurned) const;

  void keepRestrictedNodes();

  RoadNetworkImporter const& importer_;
  std::vector<std::u16string> keys_;  // of the tags that have to agree
  support::IdSet restrictedNodes_;    // where turns are restricted
};
