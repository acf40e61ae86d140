#include "model/roadnetwork/RoadSegment.hpp"

#include <utility>

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
  for (RoadSegmentNode* const end : {&startNode_, &endNode_}) {
    RoadSegmentNode const node = std::exchange(*end, {});
    // Held by the model and the handle here alone: it was the ends of segments that are gone.
    if (node && node->references() == 2) node->destroyPart();
  }
}

void RoadSegmentImpl::forget(ModelElementImpl const& other) {
  if (startNode_.get() == &other) startNode_ = RoadSegmentNode();
  if (endNode_.get() == &other) endNode_ = RoadSegmentNode();
}

}  // namespace velora::roadnetwork
