#include "model/roadnetwork/RoadSegmentNode.hpp"

#include "model/roadnetwork/RoadSegment.hpp"

namespace velora::roadnetwork {

// There are nearly as many as roads.
static_assert(sizeof(RoadSegmentNodeImpl) <= 40);

RoadSegmentNodeImpl::RoadSegmentNodeImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentNodeImpl::~RoadSegmentNodeImpl() = default;

void RoadSegmentNodeImpl::detach() {
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    static_cast<RoadSegmentImpl&>(segments_[i]).forgetNode(*this);
  }
  segments_.clear();
}

void RoadSegmentNodeImpl::forgetGone(kb::zero::ModelImpl const& model) noexcept {
  segments_.removeGone(model);
}

}  // namespace velora::roadnetwork
