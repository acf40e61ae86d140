#include "model/roadnetwork/RoadSegment.hpp"

namespace velora::roadnetwork {

RoadSegmentImpl::RoadSegmentImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentImpl::~RoadSegmentImpl() = default;

void RoadSegmentImpl::setGeometry(Sequence const& centersX, Sequence const& centersY,
                                  Sequence const& elevations, Sequence const& bankingAngles,
                                  Sequence const& headings) {
  centersX_ = centersX;
  centersY_ = centersY;
  elevations_ = elevations;
  bankingAngles_ = bankingAngles;
  headings_ = headings;
}

bool RoadSegmentImpl::isRoadSegment(ModelElementImpl const& element) {
  return dynamic_cast<RoadSegmentImpl const*>(&element) != nullptr;
}

void RoadSegmentImpl::detach() {
  startNode_ = RoadSegmentNode();
  endNode_ = RoadSegmentNode();
}

void RoadSegmentImpl::forget(ModelElementImpl const& other) {
  if (startNode_.get() == &other) startNode_ = RoadSegmentNode();
  if (endNode_.get() == &other) endNode_ = RoadSegmentNode();
}

}  // namespace velora::roadnetwork
