#include "model/roadnetwork/RoadSegment.hpp"

#include "model/roadnetwork/Road.hpp"

namespace velora::roadnetwork {

void RoadSegmentImpl::setGeometry(std::vector<double> const& centersX,
                                  std::vector<double> const& centersY,
                                  std::vector<double> const& elevations,
                                  std::vector<double> const& bankingAngles,
                                  std::vector<double> const& headings) {
  centersX_.assign(centersX);
  centersY_.assign(centersY);
  elevations_.assign(elevations);
  bankingAngles_.assign(bankingAngles);
  headings_.assign(headings);
}

bool RoadSegmentImpl::isRoadSegment(ModelElementImpl const& element) {
  return dynamic_cast<RoadSegmentImpl const*>(&element) != nullptr;
}

void RoadSegmentImpl::detach() {
  leaveRoad();
  startNode_ = RoadSegmentNode();
  endNode_ = RoadSegmentNode();
}

void RoadSegmentImpl::forget(ModelElementImpl const& other) {
  if (startNode_.get() == &other) startNode_ = RoadSegmentNode();
  if (endNode_.get() == &other) endNode_ = RoadSegmentNode();
}

void RoadSegmentImpl::leaveRoad() noexcept {
  if (RoadImpl* const road = std::exchange(road_, nullptr)) road->roadSegments_.remove(*this);
}

}  // namespace velora::roadnetwork
