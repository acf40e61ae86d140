#include "turns/TurnRoute.hpp"

#include <optional>

using OpenStreetMap::Id;
using OpenStreetMap::WayNodes;

namespace {

enum class Travel { arriving, departing };

// A Node on the path.
struct Stop {
  Id node;
  ViaPath::Step const* before;  // null at the path's start
  ViaPath::Step const* after;   // null at its end
};

class RouteFinder {
 public:
  RouteFinder(RoadNetworkImporter const& importer, WayEnds const& ends)
      : importer_(importer), ends_(ends) {}

  std::optional<UnmappedReason> find(Id fromWay, ViaPath const& path, Id toWay) {
    if (!collectStops(path)) return UnmappedReason::tooLarge;
    if (stops_.empty()) {
      return path.steps.empty() ? whyNoNode(path.start) : UnmappedReason::viaIsJoined;
    }
    Stop const& first = stops_.front();
    Stop const& last = stops_.back();
    auto const* const from =
        first.before == nullptr
            ? pick(fromWay, first.node, std::nullopt, Travel::arriving)
            : pick(first.before->way->id, first.node, !first.before->isAlong, Travel::arriving);
    if (from == nullptr) return reason_;
    route_.from = from->end;
    for (std::size_t i = 0; i < stops_.size(); ++i) {
      route_.viaNodes.push_back(stops_[i].node);
      if (i + 1 == stops_.size()) break;
      auto const& after = *stops_[i].after;
      auto const* const via = pick(after.way->id, stops_[i].node, after.isAlong, Travel::departing);
      if (via == nullptr) return reason_;
      route_.viaRoads.push_back(via->end.road->getID());
    }
    auto const* const to =
        last.after == nullptr
            ? pick(toWay, last.node, std::nullopt, Travel::departing)
            : pick(last.after->way->id, last.node, last.after->isAlong, Travel::departing);
    if (to == nullptr) return reason_;
    route_.to = to->end;
    return std::nullopt;
  }

  TurnRoute take() { return std::move(route_); }

 private:
  bool isNode(Id id) const {
    return importer_.roadNetwork->getNodes().contains(OpenStreetMap::modelId(id));
  }

  UnmappedReason whyNoNode(Id id) const {
    auto const number = importer_.reader.wayNodes.finder()(id);
    if (number == WayNodes::none) return UnmappedReason::viaOnNoRoad;
    return importer_.junctionNodeIds.contains(number) ? UnmappedReason::viaIsJoined
                                                      : UnmappedReason::viaIsNoJunction;
  }

  // Returns whether there are not too many.
  bool collectStops(ViaPath const& path) {
    if (isNode(path.start)) {
      stops_.push_back({path.start, nullptr, path.steps.empty() ? nullptr : &path.steps.front()});
    }
    std::size_t nodes = 0;
    for (std::size_t i = 0; i < path.steps.size(); ++i) {
      ViaPath::Step const& step = path.steps[i];
      auto const ids = step.way->nodeReferences;
      auto const numbers = importer_.reader.wayNodes.numbersOf(*step.way);
      nodes += ids.size();
      if (nodes > mostPathNodes) return false;
      for (std::size_t k = 1; k < ids.size(); ++k) {
        std::size_t const at = step.isAlong ? k : ids.size() - 1 - k;
        if (!importer_.junctionNodeIds.contains(numbers[at]) || !isNode(ids[at])) continue;
        bool const isLast = k + 1 == ids.size();
        ViaPath::Step const* const next = i + 1 < path.steps.size() ? &path.steps[i + 1] : nullptr;
        if (stops_.size() == mostViaNodes) return false;
        stops_.push_back({ids[at], &step, isLast ? next : &step});
      }
    }
    return true;
  }

  // The only end of a road of the way that can be meant, or null and a reason.
  WayEnd const* pick(Id way, Id node, std::optional<bool> isAlong, Travel travel) {
    constexpr std::size_t many = 64;
    auto const ends = ends_.at(way, node);
    WayEnd const* found = nullptr;
    reason_ = UnmappedReason::notConnected;
    if (ends.size() > many) {
      reason_ = UnmappedReason::ambiguous;
      return nullptr;
    }
    for (WayEnd const& end : ends) {
      if (isAlong && end.isAlong != *isAlong) continue;
      if (!(travel == Travel::arriving ? end.mayArrive : end.mayDepart)) {
        if (found == nullptr) reason_ = UnmappedReason::againstOneway;
        continue;
      }
      if (found != nullptr) {
        reason_ =
            found->end.road == end.end.road ? UnmappedReason::loop : UnmappedReason::ambiguous;
        return nullptr;
      }
      found = &end;
    }
    return found;
  }

  RoadNetworkImporter const& importer_;
  WayEnds const& ends_;
  std::vector<Stop> stops_;
  TurnRoute route_;
  UnmappedReason reason_ = UnmappedReason::notConnected;  // why the last `pick` failed
};

}  // namespace

std::variant<TurnRoute, UnmappedReason> findTurnRoute(RoadNetworkImporter const& importer,
                                                      WayEnds const& ends, Id fromWay,
                                                      ViaPath const& path, Id toWay) {
  RouteFinder finder(importer, ends);
  if (auto const reason = finder.find(fromWay, path, toWay)) return *reason;
  return finder.take();
}
