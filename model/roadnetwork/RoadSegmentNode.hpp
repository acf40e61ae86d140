// An end of road segments: the segments' counterpart of a Node.
#pragma once

#include <boost/intrusive/list.hpp>

#include "model/zero/ModelElement.hpp"
#include "support/ModelId.hpp"

namespace velora::roadnetwork {

class RoadSegmentNode;
class RoadSegmentNodeImpl;

/// A list of segment ends needs no memory, and each takes itself out when it goes.
using LinkOfSegmentEnd =
    boost::intrusive::list_base_hook<boost::intrusive::link_mode<boost::intrusive::auto_unlink>>;

/// One end of a segment: the node that it lies at, or none. The node in turn lists all ends that
/// lie at it, and is destroyed when the last of them leaves it.
class SegmentEnd : public LinkOfSegmentEnd {
 public:
  SegmentEnd() noexcept;
  SegmentEnd(SegmentEnd const&) = delete;
  SegmentEnd& operator=(SegmentEnd const&) = delete;
  ~SegmentEnd();

  RoadSegmentNode getNode() const noexcept;
  void setNode(RoadSegmentNode const& to) noexcept;

 private:
  friend class RoadSegmentNodeImpl;

  kb::zero::Handle<RoadSegmentNodeImpl> node_;
};

class RoadSegmentNodeImpl : public kb::zero::ModelElementImpl {
 public:
  explicit RoadSegmentNodeImpl(boost::uuids::uuid const& uuid);
  ~RoadSegmentNodeImpl() override;

  /// The id of the Node in the same place.
  support::ModelId getID() const noexcept { return id_; }
  void setID(support::ModelId id) noexcept { id_ = id; }

 protected:
  void detach() override;

 private:
  friend class SegmentEnd;

  support::ModelId id_ = 0;
  boost::intrusive::list<SegmentEnd, boost::intrusive::constant_time_size<false>> ends_;
};

class RoadSegmentNode : public kb::zero::Handle<RoadSegmentNodeImpl> {
 public:
  using Handle::Handle;
  static RoadSegmentNode create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<RoadSegmentNode>(model, id);
  }
};

}  // namespace velora::roadnetwork
