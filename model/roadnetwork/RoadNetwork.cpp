#include "model/roadnetwork/RoadNetwork.hpp"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace velora::roadnetwork {

using support::ModelId;

namespace {

bool allows(Road const& road, DirectionOfTravel wanted) {
  DirectionOfTravel const direction = road->getDirection();
  return direction == wanted || direction == DirectionOfTravel::both;
}

// Roads that end at the node and may be travelled in the direction `ending`, then roads that start
// there and may be travelled in the direction `starting`.
std::vector<ModelId> travelled(Node const& node, DirectionOfTravel ending,
                               DirectionOfTravel starting) {
  std::vector<ModelId> ids;
  if (!node) return ids;
  for (Road const& road : node->getIncomingRoads()) {
    if (allows(road, ending)) ids.push_back(road->getID());
  }
  for (Road const& road : node->getOutgoingRoads()) {
    if (allows(road, starting)) ids.push_back(road->getID());
  }
  return ids;
}

}  // namespace

RoadNetworkImpl::RoadNetworkImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadNetworkImpl::~RoadNetworkImpl() {
  setGeoReference({});
  for (auto const& [id, node] : nodes_) node->network_ = nullptr;
  for (Road const& road : roads_) road->network_ = nullptr;
}

void RoadNetworkImpl::setGeoReference(GeoReference const& reference) {
  if (reference == geoReference_) return;
  if (reference) {
    if (reference->network_ != nullptr) {
      throw std::invalid_argument("the geographic reference is another network's");
    }
    bringBack(*reference.get());
    reference->network_ = this;
  }
  if (GeoReference const before = std::exchange(geoReference_, reference)) {
    before->network_ = nullptr;
    before->destroy();
  }
}

void RoadNetworkImpl::addRoad(Road const& road) {
  if (road->network_ == this) return;
  if (road->network_ != nullptr) throw std::invalid_argument("the road is in another network");
  roads_.push_back(road);
  road->network_ = this;
  road->networkSlot_ = roads_.size() - 1;
}

std::vector<ModelId> RoadNetworkImpl::arrivalsAt(ModelId nodeId) const {
  return travelled(nodes_[nodeId], DirectionOfTravel::forward, DirectionOfTravel::backward);
}

std::vector<ModelId> RoadNetworkImpl::departuresFrom(ModelId nodeId) const {
  return travelled(nodes_[nodeId], DirectionOfTravel::backward, DirectionOfTravel::forward);
}

void RoadNetworkImpl::addNodes(std::vector<ModelId> const& ids,
                               std::vector<std::u16string> const& names,
                               std::vector<double> const& positions) {
  if (names.size() != ids.size() || positions.size() != 3 * ids.size()) {
    throw std::invalid_argument("addNodes: ids, names and positions of different length");
  }
  auto const add = [&](std::size_t i) {
    if (!nodes_.contains(ids[i])) {
      Node const node =
          makeNode(ids[i], {positions[3 * i], positions[3 * i + 1], positions[3 * i + 2]});
      takeIn(node, &names[i]);
    }
    if (nodeWatcher_) nodeWatcher_();
  };
  if (std::is_sorted(ids.begin(), ids.end())) {
    for (std::size_t i = 0; i < ids.size(); ++i) add(i);
    return;
  }
  // In ascending order each insertion into the map finds its place at once.
  std::vector<std::size_t> order(ids.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return ids[a] < ids[b]; });
  std::for_each(order.begin(), order.end(), add);
}

Node RoadNetworkImpl::addNode(ModelId id, std::array<double, 3> const& position) {
  if (nodes_.contains(id)) return nodes_[id];
  Node node = makeNode(id, position);
  takeIn(node, nullptr);
  return node;
}

Node RoadNetworkImpl::makeNode(ModelId id, std::array<double, 3> const& position) const {
  Node node = Node::create(getModel(), boost::uuids::uuid{});
  node->id_ = id;
  node->position_ = position;
  node->positionSize_ = 3;
  return node;
}

void RoadNetworkImpl::takeIn(Node const& node, std::u16string const* name) {
  try {
    if (name != nullptr) node->setName(*name);
    nodes_.insert(node->id_, node);
  } catch (...) {  // or the model would keep a Node that is in no network
    node->destroy();
    throw;
  }
  node->network_ = this;
}

void RoadNetworkImpl::clear() {
  // The Nodes first: their lists go as a whole, and no road has to be looked for in them.
  NodeMap const nodes = std::exchange(nodes_, {});
  for (auto const& [id, node] : nodes) {
    node->network_ = nullptr;
    node->destroy();
  }
  std::vector<Road> const roads = std::exchange(roads_, {});
  for (Road const& road : roads) {
    road->network_ = nullptr;
    road->destroy();
  }
  setGeoReference({});
}

void RoadNetworkImpl::detach() {
  clear();
}

void RoadNetworkImpl::removeNode(NodeImpl& node) noexcept {
  node.network_ = nullptr;
  nodes_.erase(node.id_);
}

void RoadNetworkImpl::removeRoad(RoadImpl& road) noexcept {
  std::size_t const slot = road.networkSlot_;
  road.network_ = nullptr;
  std::swap(roads_[slot], roads_.back());
  roads_[slot]->networkSlot_ = slot;
  roads_.pop_back();
}

kb::zero::meta::Class const& RoadNetwork::metaClass() {
  static kb::zero::meta::Class const record{"velora.roadnetwork.RoadNetwork"};
  return record;
}

}  // namespace velora::roadnetwork
