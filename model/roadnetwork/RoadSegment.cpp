#include "model/roadnetwork/RoadSegment.hpp"

#include <utility>

#include "model/roadnetwork/Road.hpp"

namespace velora::roadnetwork {

RoadSegmentImpl::RoadSegmentImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentImpl::~RoadSegmentImpl() = default;

void RoadSegmentImpl::setGeometry(Sequence centersX, Sequence centersY, Sequence elevations,
                                  Sequence bankingAngles, Sequence headings) {
  centersX_ = std::move(centersX);
  centersY_ = std::move(centersY);
  elevations_ = std::move(elevations);
  bankingAngles_ = std::move(bankingAngles);
  headings_ = std::move(headings);
}

bool RoadSegmentImpl::isRoadSegment(ModelElementImpl const& element) {
  return dynamic_cast<RoadSegmentImpl const*>(&element) != nullptr;
}

void RoadSegmentImpl::detach() {
  if (road_ != nullptr) road_->removeRoadSegment(*this);
  start_.setNode({});
  end_.setNode({});
}

void RoadSegmentImpl::setNode(SegmentEnd& end, RoadSegmentNode const& node) {
  if (node) shareModelWith(*node.get());
  end.setNode(node);
}

}  // namespace velora::roadnetwork
