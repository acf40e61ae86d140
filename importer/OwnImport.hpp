// An import into a network that nobody has yet.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <utility>

#include "importer/RoadNetworkImporter.hpp"

/// An importer with a model and a network of its own, which go with it.
struct OwnImport {
  explicit OwnImport(ImportOptions options = {}) : importer(model, network, std::move(options)) {}

  kb::zero::Model model = kb::zero::Model::create();
  velora::roadnetwork::RoadNetwork network =
      velora::roadnetwork::RoadNetwork::create(model, boost::uuids::uuid{});
  RoadNetworkImporter importer;
};
