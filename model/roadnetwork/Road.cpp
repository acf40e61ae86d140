#include "model/roadnetwork/Road.hpp"

#include <stdexcept>
#include <utility>

#include "model/roadnetwork/RoadNetwork.hpp"

namespace velora::roadnetwork {

using kb::zero::Handle;
using kb::zero::meta::Property;

RoadImpl::RoadImpl(boost::uuids::uuid const& uuid)
    : ModelElementImpl(uuid), roadSegments_(this, roadSegmentsProperty()) {}

RoadImpl::~RoadImpl() {
  setStartNode(Node());
  setEndNode(Node());
}

void RoadImpl::setStartNode(Node const& node) {
  if (node == startNode_) return;
  if (node) node->outgoingRoads_.reserveOneMore();  // all that can fail
  Node const before = std::exchange(startNode_, node);
  if (before) before->outgoingRoads_.remove(*this);
  if (node) node->outgoingRoads_.append(Road(this));
}

void RoadImpl::setEndNode(Node const& node) {
  if (node == endNode_) return;
  if (node) node->incomingRoads_.reserveOneMore();
  Node const before = std::exchange(endNode_, node);
  if (before) before->incomingRoads_.remove(*this);
  if (node) node->incomingRoads_.append(Road(this));
}

void RoadImpl::setCenters(std::vector<double> const& x, std::vector<double> const& y) {
  shareCenters(Sequence(x), Sequence(y));
}

void RoadImpl::shareCenters(Sequence x, Sequence y) {
  if (x.size() != y.size()) throw std::invalid_argument("centre sequences of different length");
  centersX_ = std::move(x);
  centersY_ = std::move(y);
}

void RoadImpl::addRoadSegment(RoadSegment const& segment) {
  if (segment && roadSegments_.contains(*segment.get())) {
    throw std::invalid_argument("the road has this segment already");
  }
  roadSegments_.append(segment);
}

void RoadImpl::detach() {
  setStartNode(Node());
  setEndNode(Node());
  while (roadSegments_.size() > 0) {
    RoadSegment const segment = roadSegments_.last();
    roadSegments_.remove(*segment.get());
    // The model and the handle here hold it; whoever else does may be another road.
    segment->references() == 2 ? segment->destroyPart() : segment->destroy();
  }
  if (network_ != nullptr) network_->removeRoad(*this);
}

void RoadImpl::forget(kb::zero::ModelElementImpl const& other) {
  roadSegments_.remove(other);
}

void RoadImpl::forgetNode(NodeImpl const& node) noexcept {
  if (startNode_.get() == &node) startNode_ = Node();
  if (endNode_.get() == &node) endNode_ = Node();
}

bool RoadImpl::refersTo(Property const& property, ModelElementImpl const& other) const {
  if (&property == &startNodeProperty()) return startNode_.get() == &other;
  if (&property == &endNodeProperty()) return endNode_.get() == &other;
  return false;
}

bool RoadImpl::isRoad(ModelElementImpl const& element) {
  return dynamic_cast<RoadImpl const*>(&element) != nullptr;
}

Property const& RoadImpl::startNodeProperty() {
  static Handle<Property const> const property(
      new Property("startNode", false, &NodeImpl::isNode, &NodeImpl::outgoingRoadsProperty));
  return *property.get();
}

Property const& RoadImpl::endNodeProperty() {
  static Handle<Property const> const property(
      new Property("endNode", false, &NodeImpl::isNode, &NodeImpl::incomingRoadsProperty));
  return *property.get();
}

Property const& RoadImpl::roadSegmentsProperty() {
  static Handle<Property const> const property(
      new Property("roadSegments", true, &RoadSegmentImpl::isRoadSegment, nullptr));
  return *property.get();
}

}  // namespace velora::roadnetwork
