// An end of road segments: the segments' counterpart of a Node.
#pragma once

#include "model/zero/ModelElement.hpp"

namespace velora::roadnetwork {

class RoadSegmentNodeImpl : public kb::zero::ModelElementImpl {
 public:
  explicit RoadSegmentNodeImpl(boost::uuids::uuid const& uuid);
  ~RoadSegmentNodeImpl() override;

  unsigned long getID() const noexcept { return id_; }
  void setID(unsigned long id) noexcept { id_ = id; }

 protected:
  bool hasUnknownReferrers() const override { return true; }

 private:
  unsigned long id_ = 0;
};

class RoadSegmentNode : public kb::zero::Handle<RoadSegmentNodeImpl> {
 public:
  using Handle::Handle;
  static RoadSegmentNode create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<RoadSegmentNode>(model, id);
  }
};

}  // namespace velora::roadnetwork
