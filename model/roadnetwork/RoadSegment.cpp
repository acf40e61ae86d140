#include "model/roadnetwork/RoadSegment.hpp"

#include <utility>

#include "model/roadnetwork/Road.hpp"

namespace velora::roadnetwork {

// Every road has one.
static_assert(sizeof(RoadSegmentImpl) <= 88);

RoadSegmentImpl::RoadSegmentImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentImpl::~RoadSegmentImpl() {
  for (RoadSegmentNode* const end : {&start_, &end_}) {
    if (*end && goesTogetherWith(*end->get())) *end = {};
  }
  leaveNodes();
}

void RoadSegmentImpl::setGeometry(SharedSequence centersX, SharedSequence centersY,
                                  SharedSequence elevations, SharedSequence bankingAngles,
                                  SharedSequence headings) {
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
  leaveNodes();
}

void RoadSegmentImpl::setNode(RoadSegmentNode& end, RoadSegmentNode const& to,
                              RoadSegmentNode const& other) {
  if (to == end) return;
  if (to) {
    if (to != other) to->segments_.append(*this, false);  // all that can fail
    bringBack(*to.get());
  }
  RoadSegmentNode const before = std::exchange(end, to);
  if (before && before != other) leave(*before.get());
}

void RoadSegmentImpl::leaveNodes() noexcept {
  RoadSegmentNode const start = std::exchange(start_, {});
  RoadSegmentNode const end = std::exchange(end_, {});
  if (start) leave(*start.get());
  if (end && end != start) leave(*end.get());
}

void RoadSegmentImpl::leave(RoadSegmentNodeImpl& node) noexcept {
  node.segments_.remove(*this);
  if (node.segments_.size() == 0) node.destroy();
}

void RoadSegmentImpl::forgetNode(RoadSegmentNodeImpl const& node) noexcept {
  if (start_.get() == &node) start_ = {};
  if (end_.get() == &node) end_ = {};
}

}  // namespace velora::roadnetwork
