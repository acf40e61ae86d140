#include "model/roadnetwork/RoadSegmentNode.hpp"

#include <utility>

namespace velora::roadnetwork {

SegmentEnd::SegmentEnd() noexcept = default;

SegmentEnd::~SegmentEnd() {
  setNode({});
}

RoadSegmentNode SegmentEnd::getNode() const noexcept {
  return RoadSegmentNode(node_.get());
}

void SegmentEnd::setNode(RoadSegmentNode const& to) noexcept {
  if (to == node_) return;
  kb::zero::Handle const before = std::exchange(node_, to);
  unlink();
  if (to) to->ends_.push_back(*this);
  if (before && before->ends_.empty()) before->destroy();
}

RoadSegmentNodeImpl::RoadSegmentNodeImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

RoadSegmentNodeImpl::~RoadSegmentNodeImpl() = default;

void RoadSegmentNodeImpl::detach() {
  while (!ends_.empty()) {
    SegmentEnd& end = ends_.front();
    ends_.pop_front();
    end.node_ = {};
  }
}

}  // namespace velora::roadnetwork
