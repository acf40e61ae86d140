#include "model/roadnetwork/RoadSegmentNode.hpp"

namespace velora::roadnetwork {

RoadSegmentNodeImpl::RoadSegmentNodeImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentNodeImpl::~RoadSegmentNodeImpl() = default;

}  // namespace velora::roadnetwork
