// An end of road segments: the segments' counterpart of a Node.
#pragma once

#include "model/zero/ModelElement.hpp"
#include "model/zero/internal/ReferenceList.hpp"
#include "support/ModelId.hpp"

namespace velora::roadnetwork {

class RoadSegmentNodeImpl : public kb::zero::ModelElementImpl {
 public:
  explicit RoadSegmentNodeImpl(boost::uuids::uuid const& uuid);
  ~RoadSegmentNodeImpl() override;

  /// The id of the Node in the same place.
  support::ModelId getID() const noexcept { return id_; }
  void setID(support::ModelId id) noexcept { id_ = id; }

 protected:
  void detach() override;
  void forgetGone(kb::zero::ModelImpl const& model) noexcept override;

 private:
  friend class RoadSegmentImpl;

  support::ModelId id_ = 0;
  // Each segment that lies at the node, once and not counted: it refers to the node.
  kb::zero::internal::ReferenceList segments_;
};

class RoadSegmentNode : public kb::zero::Handle<RoadSegmentNodeImpl> {
 public:
  using Handle::Handle;
  static RoadSegmentNode create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<RoadSegmentNode>(model, id);
  }
};

}  // namespace velora::roadnetwork
