// A junction or an end of the road graph.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "model/zero/ModelElement.hpp"
#include "model/zero/ReferenceCollection.hpp"
#include "model/zero/SharedText.hpp"
#include "support/ModelId.hpp"

namespace velora::roadnetwork {

class Road;
class RoadNetworkImpl;

class NodeImpl : public kb::zero::ModelElementImpl {
 public:
  explicit NodeImpl(boost::uuids::uuid const& uuid);
  ~NodeImpl() override;

  /// The id of the OSM node, by which the network finds the Node.
  support::ModelId getID() const noexcept { return id_; }
  /// The id in decimal, signed as in OSM, unless it was given another one.
  std::u16string getName() const;

  /// Whether there is a position to read and rewrite: all three values.
  virtual bool hasPosition() const;
  /// Latitude and longitude in degrees (WGS 84), elevation in metres.
  virtual std::span<double const> getPosition() const;
  /// Up to three values. Throws std::invalid_argument for more.
  virtual void setPosition(std::vector<double> const& position);
  /// The third value of the position; NaN when there is none.
  double getElevation() const;

  /// The roads that end here, and those that start here. A road from the node to itself is in both.
  /// The lists change when roads are destroyed or get other nodes: copy them before you do so.
  kb::zero::ReferenceCollectionOf<Road> getIncomingRoads() const noexcept {
    return {const_cast<NodeImpl*>(this), incomingRoadsProperty(), incomingRoads_};
  }
  kb::zero::ReferenceCollectionOf<Road> getOutgoingRoads() const noexcept {
    return {const_cast<NodeImpl*>(this), outgoingRoadsProperty(), outgoingRoads_};
  }
  void prefetchRoads() const noexcept {
    incomingRoads_.prefetch();
    outgoingRoads_.prefetch();
  }
  /// Makes room in both for all roads that the node has, whichever way they come to point: then
  /// turning one round, or giving its place to another, can't fail.
  void reserveRoads();
  static kb::zero::meta::Property const& incomingRoadsProperty();
  static kb::zero::meta::Property const& outgoingRoadsProperty();
  static bool isNode(kb::zero::ModelElementImpl const& element);

 protected:
  void detach() override;
  void forgetGone(kb::zero::ModelImpl const& model) noexcept override;
  void replaced(kb::zero::meta::Property const& property, kb::zero::ModelElementImpl& proxy,
                kb::zero::ModelElementImpl& resolved) override;
  bool refersTo(kb::zero::meta::Property const& property,
                kb::zero::ModelElementImpl const& other) const override;

 private:
  friend class RoadImpl;
  friend class RoadNetworkImpl;

  void setName(std::u16string const& name);

  std::uint8_t positionSize_ = 0;
  // Not counted; reading them resolves proxies. Each road that comes or goes touches them and the
  // reference count, so they stand side by side.
  mutable kb::zero::internal::ReferenceList incomingRoads_;
  mutable kb::zero::internal::ReferenceList outgoingRoads_;
  support::ModelId id_ = 0;
  std::array<double, 3> position_{};
  kb::zero::SharedText name_;           // none where it is the id
  RoadNetworkImpl* network_ = nullptr;  // not counted: the network owns its nodes
};

class Node : public kb::zero::Handle<NodeImpl> {
 public:
  using Handle::Handle;
  static Node create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<Node>(model, id);
  }
};

}  // namespace velora::roadnetwork
