// The geometry of a piece of road.
#pragma once

#include <vector>

#include "model/roadnetwork/RoadSegmentNode.hpp"
#include "model/zero/ModelElement.hpp"
#include "model/zero/PrimitiveCollection.hpp"

namespace velora::roadnetwork {

class RoadImpl;

class RoadSegmentImpl : public kb::zero::ModelElementImpl {
 public:
  using Sequence = kb::zero::PrimitiveCollection<double, std::vector<double>>;
  using SharedSequence = kb::zero::SharedSequence<double, std::vector<double>>;

  explicit RoadSegmentImpl(boost::uuids::uuid const& uuid);
  ~RoadSegmentImpl() override;

  /// The id of its road.
  support::ModelId getID() const noexcept { return id_; }
  void setID(support::ModelId id) noexcept { id_ = id; }

  /// The segment holds a reference on the node at each end; segments that meet share one. A node
  /// leaves its model when the last segment at it is destroyed or set to another node; a handle
  /// keeps it alive beyond that, and it comes back when a segment of that model is set to it.
  /// Throws std::bad_alloc.
  void setStartNode(RoadSegmentNode const& node) { setNode(start_, node, end_); }
  void setEndNode(RoadSegmentNode const& node) { setNode(end_, node, start_); }
  RoadSegmentNode getStartNode() const noexcept { return start_; }
  RoadSegmentNode getEndNode() const noexcept { return end_; }

  /// Replaces all five sequences, each of which has a value for every centre point: latitudes (X)
  /// and longitudes (Y) in degrees, elevations in metres, banking angles and headings (NaN: not
  /// computed). A vector of doubles will do for a sequence; a sequence that exists already is
  /// shared rather than copied.
  virtual void setGeometry(SharedSequence centersX, SharedSequence centersY,
                           SharedSequence elevations, SharedSequence bankingAngles,
                           SharedSequence headings);
  Sequence const& getCentersX() const noexcept { return *centersX_; }
  Sequence const& getCentersY() const noexcept { return *centersY_; }
  Sequence const& getElevations() const noexcept { return *elevations_; }
  Sequence const& getBankingAngles() const noexcept { return *bankingAngles_; }
  Sequence const& getHeadings() const noexcept { return *headings_; }

  static bool isRoadSegment(kb::zero::ModelElementImpl const& element);

 protected:
  void detach() override;

 private:
  friend class RoadImpl;
  friend class RoadSegmentNodeImpl;

  // `other` is the other end.
  void setNode(RoadSegmentNode& end, RoadSegmentNode const& to, RoadSegmentNode const& other);
  void leaveNodes() noexcept;
  void leave(RoadSegmentNodeImpl& node) noexcept;
  void forgetNode(RoadSegmentNodeImpl const& node) noexcept;

  support::ModelId id_ = 0;
  RoadImpl* road_ = nullptr;  // not counted: the road owns its segments
  RoadSegmentNode start_;
  RoadSegmentNode end_;
  SharedSequence centersX_;
  SharedSequence centersY_;
  SharedSequence elevations_;
  SharedSequence bankingAngles_;
  SharedSequence headings_;
};

class RoadSegment : public kb::zero::Handle<RoadSegmentImpl> {
 public:
  using Handle::Handle;
  static RoadSegment create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<RoadSegment>(model, id);
  }
};

}  // namespace velora::roadnetwork
