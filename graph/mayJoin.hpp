// Which roads may become one.
#pragma once

#include "importer/RoadNetworkImporter.hpp"
#include "model/roadnetwork/Node.hpp"

/// Whether the two roads that end at a Node may be joined there, as the importer's options have it.
/// No road must have been joined yet.
class MayJoin {
 public:
  explicit MayJoin(RoadNetworkImporter const& importer);

  bool operator()(velora::roadnetwork::Node const& node) const;

 private:
  bool areCompatible(velora::roadnetwork::NodeImpl const& node) const;
  bool agree(OpenStreetMap::Tags const& one, OpenStreetMap::Tags const& other, bool isTurned) const;

  struct Key {
    std::u16string text;
    bool isDirectional;  // whether its value depends on the direction in which a way was drawn
  };

  RoadNetworkImporter const& importer_;
  std::vector<Key> keys_;
};
