#include "model/roadnetwork/Node.hpp"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "model/roadnetwork/Road.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"

namespace velora::roadnetwork {

using kb::zero::meta::Property;

NodeImpl::NodeImpl(boost::uuids::uuid const& uuid)
    : ModelElementImpl(uuid),
      incomingRoads_(this, incomingRoadsProperty()),
      outgoingRoads_(this, outgoingRoadsProperty()) {}

NodeImpl::~NodeImpl() = default;

bool NodeImpl::hasPosition() const {
  return positionSize_ == position_.size();
}

std::span<double const> NodeImpl::getPosition() const {
  return {position_.data(), positionSize_};
}

void NodeImpl::setPosition(std::vector<double> const& position) {
  if (position.size() > position_.size())
    throw std::invalid_argument("a position has three values");
  std::copy(position.begin(), position.end(), position_.begin());
  positionSize_ = position.size();
}

double NodeImpl::getElevation() const {
  return hasPosition() ? position_[2] : std::numeric_limits<double>::quiet_NaN();
}

void NodeImpl::reserveRoads() {
  std::size_t const all = incomingRoads_.size() + outgoingRoads_.size();
  incomingRoads_.reserve(all);
  outgoingRoads_.reserve(all);
}

void NodeImpl::detach() {
  for (auto* roads : {&incomingRoads_, &outgoingRoads_}) {
    for (std::size_t i = 0; i < roads->size(); ++i) roads->stored(i)->forgetNode(*this);
    roads->clear();
  }
  if (network_ != nullptr) network_->removeNode(*this);
}

// The resolved road refers to this node already, or it would not have taken the proxy's place.
void NodeImpl::replaced(Property const& property, ModelElementImpl& proxy, ModelElementImpl&) {
  auto& road = static_cast<RoadImpl&>(proxy);
  (&property == &incomingRoadsProperty() ? road.endNode_ : road.startNode_) = Node();
}

bool NodeImpl::refersTo(Property const& property, kb::zero::ModelElementImpl const& other) const {
  if (&property == &incomingRoadsProperty()) return incomingRoads_.contains(other);
  if (&property == &outgoingRoadsProperty()) return outgoingRoads_.contains(other);
  return false;
}

bool NodeImpl::isNode(ModelElementImpl const& element) {
  return dynamic_cast<NodeImpl const*>(&element) != nullptr;
}

Property const& NodeImpl::incomingRoadsProperty() {
  static Property const property("incomingRoads", false, &RoadImpl::isRoad,
                                 &RoadImpl::endNodeProperty);
  return property;
}

Property const& NodeImpl::outgoingRoadsProperty() {
  static Property const property("outgoingRoads", false, &RoadImpl::isRoad,
                                 &RoadImpl::startNodeProperty);
  return property;
}

}  // namespace velora::roadnetwork
