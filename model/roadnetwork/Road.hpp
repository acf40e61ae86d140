// A road between two nodes.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "model/roadnetwork/Node.hpp"
#include "model/roadnetwork/RoadSegment.hpp"
#include "model/zero/ModelElement.hpp"
#include "model/zero/PrimitiveCollection.hpp"
#include "model/zero/ReferenceCollection.hpp"
#include "model/zero/SharedText.hpp"
#include "support/ModelId.hpp"

namespace velora::roadnetwork {

class RoadNetworkImpl;

class RoadImpl : public kb::zero::ModelElementImpl {
 public:
  using Sequence = RoadSegmentImpl::Sequence;
  using SharedSequence = RoadSegmentImpl::SharedSequence;

  explicit RoadImpl(boost::uuids::uuid const& uuid);
  ~RoadImpl() override;

  support::ModelId getID() const noexcept { return id_; }
  void setID(support::ModelId id) noexcept { id_ = id; }
  /// The name of the OSM way that the road was made of or, where it has none, the way's id in
  /// decimal; where roads were joined, their different names with hyphens between them.
  std::u16string const& getName() const noexcept { return *name_; }
  kb::zero::SharedText const& shareName() const noexcept { return name_; }
  void setName(std::u16string const& name) { name_ = name; }
  /// A name that other roads have too takes no memory of its own; setting it can't fail.
  void setName(kb::zero::SharedText name) noexcept { name_ = std::move(name); }
  /// 1.0 for a new road, so that the weight of a joined road counts its pieces.
  double getWeight() const noexcept { return weight_; }
  void setWeight(double weight) noexcept { weight_ = weight; }
  DirectionOfTravel getDirection() const noexcept {
    return static_cast<DirectionOfTravel>(direction_);
  }
  void setDirection(DirectionOfTravel const& direction) noexcept {
    direction_ = static_cast<std::uint8_t>(direction);
  }

  /// The road holds a reference on both nodes and stands in the start node's outgoing and the end
  /// node's incoming roads. Setting another node moves it to the end of that node's list, a null
  /// node takes it out. Throws std::bad_alloc, and changes nothing then.
  void setStartNode(Node const& node);
  void setEndNode(Node const& node);
  Node getStartNode() const noexcept { return startNode_; }
  Node getEndNode() const noexcept { return endNode_; }

  void prefetchNodes() const noexcept {
    prefetch(startNode_.get());
    prefetch(endNode_.get());
  }
  void prefetchCenters() const noexcept {
    __builtin_prefetch(&*centersX_);
    __builtin_prefetch(&*centersY_);
  }
  void prefetchSegments() const noexcept { roadSegments_.prefetch(); }
  void prefetchElevations() const noexcept {
    if (roadSegments_.size() > 0) __builtin_prefetch(&segment(0).getElevations());
  }

  /// The centre line, from the start node to the end node: the latitudes (X) and longitudes (Y) of
  /// its points in degrees (WGS 84). Throws std::invalid_argument when the two differ in length.
  virtual void setCenters(std::vector<double> const& x, std::vector<double> const& y);
  /// The same with sequences that exist already, which can't fail for want of memory.
  void shareCenters(SharedSequence x, SharedSequence y);
  Sequence const& getCentersX() const noexcept { return *centersX_; }
  Sequence const& getCentersY() const noexcept { return *centersY_; }

  /// Appends a segment, which is the road's from then on: destroying the road destroys it. Throws
  /// NullHandleError for a null segment and std::invalid_argument for one that is in a road
  /// already.
  virtual void addRoadSegment(RoadSegment const& segment);
  /// The list changes when segments are destroyed: copy it before you do so.
  kb::zero::ReferenceCollectionOf<RoadSegment> getRoadSegments() const noexcept {
    return {const_cast<RoadImpl*>(this), roadSegmentsProperty(), roadSegments_};
  }

  /// Its place in the list of roads of its network, which changes when roads are destroyed. Without
  /// a network it means nothing.
  std::size_t getNetworkSlot() const noexcept { return networkSlot_; }

  static kb::zero::meta::Property const& startNodeProperty();
  static kb::zero::meta::Property const& endNodeProperty();
  static kb::zero::meta::Property const& roadSegmentsProperty();
  static bool isRoad(kb::zero::ModelElementImpl const& element);

 protected:
  void detach() override;
  void replaced(kb::zero::meta::Property const& property, kb::zero::ModelElementImpl& proxy,
                kb::zero::ModelElementImpl& resolved) override;
  bool refersTo(kb::zero::meta::Property const& property,
                kb::zero::ModelElementImpl const& other) const override;

 private:
  friend class NodeImpl;
  friend class RoadNetworkImpl;
  friend class RoadSegmentImpl;

  void forgetNode(NodeImpl const& node) noexcept;
  void removeRoadSegment(RoadSegmentImpl& segment) noexcept;
  RoadSegmentImpl& segment(std::size_t index) const noexcept;

  std::uint8_t direction_ = static_cast<std::uint8_t>(DirectionOfTravel::both);
  support::ModelId id_ = 0;
  kb::zero::SharedText name_;
  double weight_ = 1.0;
  Node startNode_;
  Node endNode_;
  SharedSequence centersX_;
  SharedSequence centersY_;
  mutable kb::zero::internal::ReferenceList roadSegments_;  // reading it resolves proxies
  RoadNetworkImpl* network_ = nullptr;  // not counted: the network owns its roads
  std::size_t networkSlot_ = 0;         // the road's place in the network
};

class Road : public kb::zero::Handle<RoadImpl> {
 public:
  using Handle::Handle;
  static Road create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<Road>(model, id);
  }
};

}  // namespace velora::roadnetwork
