#include "model/roadnetwork/RoadSegment.hpp"

namespace velora::roadnetwork {

RoadSegmentImpl::RoadSegmentImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentImpl::~RoadSegmentImpl() = default;

void RoadSegmentImpl::setGeometry(std::vector<double> const& centersX,
                                  std::vector<double> const& centersY,
                                  std::vector<double> const& elevations,
                                  std::vector<double> const& bankingAngles,
                                  std::vector<double> const& headings) {
  // All are copied before any is replaced: an argument may be one of this segment's sequences, and
  // a failure leaves all as they were.
  std::vector<double> copies[] = {centersX, centersY, elevations, bankingAngles, headings};
  centersX_.assign(std::move(copies[0]));
  centersY_.assign(std::move(copies[1]));
  elevations_.assign(std::move(copies[2]));
  bankingAngles_.assign(std::move(copies[3]));
  headings_.assign(std::move(copies[4]));
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
