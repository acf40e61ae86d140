// The network: what an import fills and a host works with.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "model/roadnetwork/GeoReference.hpp"
#include "model/roadnetwork/Node.hpp"
#include "model/roadnetwork/Road.hpp"
#include "model/zero/ElementMapBase.hpp"
#include "model/zero/ModelElement.hpp"
#include "model/zero/meta/Class.hpp"
#include "support/ModelId.hpp"

namespace velora::roadnetwork {

class RoadNetworkImpl : public kb::zero::ModelElementImpl {
 public:
  using NodeMap =
      kb::zero::ElementMapBase<support::ModelId, Node, std::map<support::ModelId, Node>>;

  explicit RoadNetworkImpl(boost::uuids::uuid const& uuid);
  ~RoadNetworkImpl() override;

  /// The nodes by id, ascending. This map and the list of roads change when elements are destroyed:
  /// copy them before you do so.
  NodeMap const& getNodes() const noexcept { return nodes_; }
  /// All roads; their order means nothing.
  std::vector<Road> const& getRoads() const noexcept { return roads_; }
  GeoReference const& getGeoReference() const noexcept { return geoReference_; }
  /// Replaces the reference by another or, with a null handle, by none. The one before leaves the
  /// model; a handle keeps it alive beyond that, and it comes back when it is set again in a
  /// network of that model. Throws std::invalid_argument for a reference of another network,
  /// std::bad_alloc.
  void setGeoReference(GeoReference const& reference);

  /// Takes a road in; a road that is in it already stays where it is. Throws NullHandleError for a
  /// null road and std::invalid_argument for a road of another network.
  virtual void addRoad(Road const& road);

  /// The ids of the roads by which traffic can reach the node, or leave it, given each road's
  /// direction of travel. A two-way loop at the node is in each list twice. Empty for a node that
  /// is not in the network.
  virtual std::vector<support::ModelId> arrivalsAt(support::ModelId nodeId) const;
  virtual std::vector<support::ModelId> departuresFrom(support::ModelId nodeId) const;

  /// Makes one Node for each id, with the name of the same index and three values of `positions`
  /// (latitude and longitude in degrees, elevation in metres). An id that the network already has
  /// keeps its Node as it is. Throws std::invalid_argument when the lengths do not match,
  /// NullHandleError when the network's own model is gone.
  virtual void addNodes(std::vector<support::ModelId> const& ids,
                        std::vector<std::u16string> const& names,
                        std::vector<double> const& positions);

  /// From now on `addNodes` calls this after each Node, new or not; an empty one ends that. What it
  /// throws ends `addNodes`, and the Nodes that were made by then stay.
  void setNodeWatcher(std::function<void()> watcher) { nodeWatcher_ = std::move(watcher); }

  /// Makes one Node whose name is its id, or gives the one that has the id already. Throws like
  /// `addNodes`.
  Node addNode(support::ModelId id, std::array<double, 3> const& position);

  /// Destroys all Nodes and Roads, the roads' segments and the geographic reference. The network
  /// itself stays in the model and can be filled again.
  void clear();

 protected:
  void detach() override;

 private:
  friend class NodeImpl;
  friend class RoadImpl;

  Node makeNode(support::ModelId id, std::array<double, 3> const& position) const;
  void takeIn(Node const& node, std::u16string const* name);
  void removeNode(NodeImpl& node) noexcept;
  void removeRoad(RoadImpl& road) noexcept;

  NodeMap nodes_;
  std::vector<Road> roads_;
  GeoReference geoReference_;
  std::function<void()> nodeWatcher_;
};

class RoadNetwork : public kb::zero::Handle<RoadNetworkImpl> {
 public:
  using Handle::Handle;
  static RoadNetwork create(kb::zero::Model const& model, boost::uuids::uuid const& id) {
    return kb::zero::createElement<RoadNetwork>(model, id);
  }
  static kb::zero::meta::Class const& metaClass();
};

}  // namespace velora::roadnetwork
