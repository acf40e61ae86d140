// The geometry of a piece of road.
#pragma once

#include <vector>

#include "model/roadnetwork/RoadSegmentNode.hpp"
#include "model/zero/ModelElement.hpp"
#include "model/zero/PrimitiveCollection.hpp"

namespace velora::roadnetwork {

class RoadSegmentImpl : public kb::zero::ModelElementImpl {
 public:
  using Sequence = kb::zero::PrimitiveCollection<double, std::vector<double>>;

  explicit RoadSegmentImpl(boost::uuids::uuid const& uuid);
  ~RoadSegmentImpl() override;

  unsigned long getID() const noexcept { return id_; }
  void setID(unsigned long id) noexcept { id_ = id; }

  /// The segment holds a reference on each end; segments that meet share one. Destroying the last
  /// of them destroys the end, unless somebody else holds it.
  void setStartNode(RoadSegmentNode const& node) noexcept { startNode_ = node; }
  void setEndNode(RoadSegmentNode const& node) noexcept { endNode_ = node; }
  RoadSegmentNode getStartNode() const noexcept { return startNode_; }
  RoadSegmentNode getEndNode() const noexcept { return endNode_; }

  /// Replaces all five sequences, one value a centre point: coordinates as the road has them,
  /// elevations in metres, banking angles and headings (NaN: not computed). A vector of doubles
  /// does for a sequence; a sequence that exists already is shared rather than copied.
  virtual void setGeometry(Sequence centersX, Sequence centersY, Sequence elevations,
                           Sequence bankingAngles, Sequence headings);
  Sequence const& getCentersX() const noexcept { return centersX_; }
  Sequence const& getCentersY() const noexcept { return centersY_; }
  Sequence const& getElevations() const noexcept { return elevations_; }
  Sequence const& getBankingAngles() const noexcept { return bankingAngles_; }
  Sequence const& getHeadings() const noexcept { return headings_; }

  static bool isRoadSegment(kb::zero::ModelElementImpl const& element);

 protected:
  void detach() override;
  void forget(kb::zero::ModelElementImpl const& other) override;
  bool hasUnknownReferrers() const override { return true; }

 private:
  unsigned long id_ = 0;
  RoadSegmentNode startNode_;
  RoadSegmentNode endNode_;
  Sequence centersX_;
  Sequence centersY_;
  Sequence elevations_;
  Sequence bankingAngles_;
  Sequence headings_;
};

class RoadSegment : public kb::zero::Handle<RoadSegmentImpl> {
 public:
  using Handle::Handle;
  static RoadSegment create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<RoadSegment>(model, id);
  }
};

}  // namespace velora::roadnetwork
