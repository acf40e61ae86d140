// The state of one import and its run.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "importer/ImportOptions.hpp"
#include "importer/JunctionNodes.hpp"
#include "importer/RoadJoin.hpp"
#include "importer/RoadPieces.hpp"
#include "importer/RoadWayIds.hpp"
#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"
#include "model/zero/Model.hpp"
#include "model/zero/SharedText.hpp"
#include "osm/Reader.hpp"
#include "support/IdMap.hpp"
#include "support/Progress.hpp"
#include "tags/keys.hpp"

/// One import: made on a model and a network, run once, asked for the limits, destroyed. It owns
/// the reader and every table that one stage leaves for a later one. The stages are free functions
/// that take the importer, work through these fields alone and keep nothing of their own.
class RoadNetworkImporter {
 public:
  /// Both handles must outlive the importer. Reads nothing.
  RoadNetworkImporter(kb::zero::Model const& hostModel,
                      velora::roadnetwork::RoadNetwork const& hostNetwork,
                      ImportOptions chosen = {})
      : model(hostModel), roadNetwork(hostNetwork), options(std::move(chosen)) {
    auto selection = roadSelection({options.tags, options.usedTags, options.keptTags});
    if (options.restrictions || options.joining == Joining::compatible) {
      addRestrictions(selection);  // joining leaves the Nodes of turn restrictions alone
    }
    reader.setSelection(std::move(selection));
  }
  RoadNetworkImporter(RoadNetworkImporter const&) = delete;
  RoadNetworkImporter& operator=(RoadNetworkImporter const&) = delete;

  /// Whom the reader and every stage tell how far they have come, and then all that is made of the
  /// import. It may be told that more than once.
  void setProgress(support::Progress progress) { reader.setProgress(std::move(progress)); }
  support::Progress const& progress() const noexcept { return reader.progress(); }

  /// Imports the file, whose name is UTF-8, into the network. Throws OpenStreetMap::ReadError for
  /// a file that can't be read, std::range_error for a name that is not UTF-8, and whatever the
  /// model or the progress throws. What the stages had written by then stays in the network.
  void run(std::string const& fileName);
  /// The same with the file that the reader has been given.
  void run();

  kb::zero::Model const& model;                         ///< where new elements are created
  velora::roadnetwork::RoadNetwork const& roadNetwork;  ///< what the import fills
  ImportOptions const options;
  OpenStreetMap::Reader reader;
  std::vector<OpenStreetMap::Way const*> selectedWays;  ///< the ways that become roads, by id
  /// Of each selected way, in their order. Names go when the roads have them.
  std::vector<kb::zero::SharedText> wayNames;
  std::vector<velora::roadnetwork::DirectionOfTravel> wayDirections;
  JunctionNodes junctionNodeIds;
  /// Of an import that is part of a larger one: which of the pieces of the selected ways become
  /// roads here, in their order, and at which Nodes roads may be joined. All, unless it is said.
  std::vector<bool> wantedPieces;
  std::optional<support::IdSet> joinableNodes;
  RoadWayIds roadWayIds;
  std::vector<RoadJoin> joins;  ///< in the order in which they were made
  RoadPieces roadPieces;
};
