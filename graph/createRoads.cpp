#include "graph/createRoads.hpp"

#include <algorithm>
#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/lookup.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::WayNodes;
using velora::roadnetwork::Node;
using velora::roadnetwork::NodeImpl;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadImpl;

namespace {

// Destroys a road that is not finished when something fails, so that no Node lists it.
struct DestroyRoad {
  void operator()(RoadImpl* road) const { road->destroy(); }
};

class RoadMaker {
 public:
  RoadMaker(RoadNetworkImporter& importer, support::Steps& steps)
      : importer_(importer), steps_(steps), nodes_(importer.reader.wayNodes.size()) {
    // Both ascend by the nodes' ids, so no Node has to be looked up.
    auto node = importer.roadNetwork->getNodes().begin();
    auto const end = importer.roadNetwork->getNodes().end();
    importer.reader.wayNodes.forEach([&](WayNodes::Number number, Id id) {
      steps.step();
      if (!importer.junctionNodeIds.contains(number)) return;
      while (node != end && node->first < modelId(id)) ++node;
      if (node != end && node->first == modelId(id)) nodes_[number] = node->second;
    });
  }

  // Has the processor fetch what the ways to come need: it lies all over memory.
  void prefetch(std::size_t way) const {
    forEachNodeOf(way + 4, [&](WayNodes::Number number) {
      __builtin_prefetch(&nodes_[number]);
      __builtin_prefetch(&importer_.reader.wayNodes[number]);
    });
    forEachNodeOf(way + 2, [&](auto number) { NodeImpl::prefetch(nodes_[number].get()); });
  }

  // Adds the pieces of a selected way. Both its ends are junctions: the first opens a road, the
  // last closes one. A junction between them does both.
  void addRoads(std::size_t way) {
    auto const nodes = importer_.reader.wayNodes.numbersOf(*importer_.selectedWays[way]);
    std::size_t start = 0;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
      if (!importer_.junctionNodeIds.contains(nodes[i])) continue;
      addRoad(way, nodes.subspan(start, i - start + 1));
      start = i;
    }
  }

 private:
  template <class Action>
  void forEachNodeOf(std::size_t way, Action const& action) const {
    if (way >= importer_.selectedWays.size()) return;
    auto const numbers = importer_.reader.wayNodes.numbersOf(*importer_.selectedWays[way]);
    std::for_each(numbers.begin(), numbers.end(), action);
  }

  void addRoad(std::size_t way, std::span<WayNodes::Number const> nodes) {
    auto const& wanted = importer_.wantedPieces;
    if (!wanted.empty() && !wanted.at(piece_++)) return;
    steps_.poll();
    importer_.roadWayIds.emplace(++lastId_, importer_.selectedWays[way]->id);
    Road const road = Road::create(importer_.model, boost::uuids::uuid{});
    std::unique_ptr<RoadImpl, DestroyRoad> unfinished(road.get());
    road->setID(lastId_);
    road->setName(importer_.wayNames[way]);
    road->setDirection(importer_.wayDirections[way]);
    road->setStartNode(nodes_[nodes.front()]);
    road->setEndNode(nodes_[nodes.back()]);

    importer_.reader.populate(importer_.reader.nodes);
    x_.clear();
    y_.clear();
    for (WayNodes::Number const number : nodes) {
      auto const& [latitude, longitude] = importer_.reader.wayNodes[number];
      x_.push_back(latitude);
      y_.push_back(longitude);
    }
    road->setCenters(x_, y_);
    importer_.roadNetwork->addRoad(road);
    static_cast<void>(unfinished.release());
  }

  RoadNetworkImporter& importer_;
  support::Steps& steps_;
  std::vector<Node> nodes_;  // by number; null but for junctions
  RoadWayIds::RoadId lastId_ = 0;
  std::size_t piece_ = 0;
  std::vector<double> x_;
  std::vector<double> y_;
};

}  // namespace

void createRoads(RoadNetworkImporter& importer) {
  std::size_t const ways = importer.selectedWays.size();
  // One entry a way, as the stage before leaves them.
  if (importer.wayNames.size() != ways || importer.wayDirections.size() != ways) {
    support::throwMissing();
  }
  importer.roadWayIds.clear();
  // Most junctions are passed once or twice; what is not needed is never touched.
  importer.roadWayIds.reserve(ways + 2 * importer.junctionNodeIds.size());
  support::Steps steps(importer.progress(), support::Stage::makingRoads,
                       importer.reader.wayNodes.size() + ways);
  RoadMaker maker(importer, steps);
  for (std::size_t way = 0; way < ways; ++way) {
    maker.prefetch(way);
    maker.addRoads(way);
    steps.step();
  }
  importer.wayNames = {};
  if (!importer.options.keepsNodes) importer.reader.wayNodes = {};
}
