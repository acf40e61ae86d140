#include "model/roadnetwork/Road.hpp"

#include <stdexcept>
#include <utility>

#include "model/roadnetwork/RoadNetwork.hpp"

namespace velora::roadnetwork {

using kb::zero::meta::Property;

// A country has millions.
static_assert(sizeof(RoadImpl) <= 104);

RoadImpl::RoadImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadImpl::~RoadImpl() {
  if (startNode_ && !goesTogetherWith(*startNode_.get())) setStartNode(Node());
  if (endNode_ && !goesTogetherWith(*endNode_.get())) setEndNode(Node());
  for (std::size_t i = 0; i < roadSegments_.size(); ++i) segment(i).road_ = nullptr;
}

void RoadImpl::setStartNode(Node const& node) {
  if (node == startNode_) return;
  if (node) node->outgoingRoads_.append(*this, false);  // all that can fail
  Node const before = std::exchange(startNode_, node);
  if (before) before->outgoingRoads_.remove(*this);
}

void RoadImpl::setEndNode(Node const& node) {
  if (node == endNode_) return;
  if (node) node->incomingRoads_.append(*this, false);
  Node const before = std::exchange(endNode_, node);
  if (before) before->incomingRoads_.remove(*this);
}

void RoadImpl::setCenters(std::vector<double> const& x, std::vector<double> const& y) {
  shareCenters(x, y);
}

void RoadImpl::shareCenters(SharedSequence x, SharedSequence y) {
  if (x->size() != y->size()) throw std::invalid_argument("centre sequences of different length");
  centersX_ = std::move(x);
  centersY_ = std::move(y);
}

void RoadImpl::addRoadSegment(RoadSegment const& segment) {
  if (segment->road_ != nullptr) throw std::invalid_argument("the segment has a road already");
  roadSegments_.append(*segment.get(), true);
  segment->road_ = this;
}

void RoadImpl::removeRoadSegment(RoadSegmentImpl& segment) noexcept {
  segment.road_ = nullptr;
  roadSegments_.remove(segment);
}

void RoadImpl::detach() {
  setStartNode(Node());
  setEndNode(Node());
  // The last first, which is found at once.
  while (roadSegments_.size() > 0) segment(roadSegments_.size() - 1).destroy();
  if (network_ != nullptr) network_->removeRoad(*this);
}

void RoadImpl::replaced(Property const&, ModelElementImpl& proxy, ModelElementImpl& resolved) {
  static_cast<RoadSegmentImpl&>(proxy).road_ = nullptr;
  auto& taken = static_cast<RoadSegmentImpl&>(resolved);
  if (taken.road_ != nullptr && taken.road_ != this) taken.road_->removeRoadSegment(taken);
  taken.road_ = this;
}

RoadSegmentImpl& RoadImpl::segment(std::size_t index) const noexcept {
  return static_cast<RoadSegmentImpl&>(roadSegments_[index]);
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
  static Property const property("startNode", false, &NodeImpl::isNode,
                                 &NodeImpl::outgoingRoadsProperty);
  return property;
}

Property const& RoadImpl::endNodeProperty() {
  static Property const property("endNode", false, &NodeImpl::isNode,
                                 &NodeImpl::incomingRoadsProperty);
  return property;
}

Property const& RoadImpl::roadSegmentsProperty() {
  static Property const property("roadSegments", true, &RoadSegmentImpl::isRoadSegment, nullptr);
  return property;
}

}  // namespace velora::roadnetwork
