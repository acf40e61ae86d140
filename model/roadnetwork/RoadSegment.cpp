#include "model/roadnetwork/RoadSegment.hpp"

namespace velora::roadnetwork {

RoadSegmentImpl::RoadSegmentImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentImpl::~RoadSegmentImpl() = default;

void RoadSegmentImpl::setGeometry(std::vector<double> const& centersX,
                                  std::vector<double> const& centersY,
                                  std::vector<double> const& elevations,
                                  std::vector<double> const& bankingAngles,
                                  std::vector<double> const& headings) {
  // All that can fail comes first, so that a failure leaves all sequences as they were.
  centersX_.reserve(centersX.size());
  centersY_.reserve(centersY.size());
  elevations_.reserve(elevations.size());
  bankingAngles_.reserve(bankingAngles.size());
  headings_.reserve(headings.size());
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
  startNode_ = RoadSegmentNode();
  endNode_ = RoadSegmentNode();
}

void RoadSegmentImpl::forget(ModelElementImpl const& other) {
  if (startNode_.get() == &other) startNode_ = RoadSegmentNode();
  if (endNode_.get() == &other) endNode_ = RoadSegmentNode();
}

}  // namespace velora::roadnetwork
