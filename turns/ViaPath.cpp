#include "turns/ViaPath.hpp"

#include <algorithm>

using OpenStreetMap::Id;
using OpenStreetMap::Way;

namespace {

bool isEndOf(Way const& way, Id node) {
  return way.nodeReferences.front() == node || way.nodeReferences.back() == node;
}

bool touches(Way const& way, Id node, WayEnds const& ends) {
  return isEndOf(way, node) || !ends.at(way.id, node).empty();
}

ViaPath::Step stepFrom(Id node, Way const& way) {
  return {&way, way.nodeReferences.front() == node};
}

Id endOf(ViaPath::Step const& step) {
  auto const& nodes = step.way->nodeReferences;
  return step.isAlong ? nodes.back() : nodes.front();
}

// On from the first step over all the others, as long as there is one choice.
std::variant<ViaPath, UnmappedReason> goOn(Id start, ViaPath::Step const& first,
                                           std::vector<Way const*> left) {
  ViaPath path{start, {first}};
  std::erase(left, first.way);
  while (!left.empty()) {
    Id const node = endOf(path.steps.back());
    auto const isNext = [&](Way const* way) { return isEndOf(*way, node); };
    auto const next = std::find_if(left.begin(), left.end(), isNext);
    if (next == left.end()) return UnmappedReason::notConnected;
    if (std::find_if(next + 1, left.end(), isNext) != left.end()) return UnmappedReason::ambiguous;
    path.steps.push_back(stepFrom(node, **next));
    left.erase(next);
  }
  return path;
}

}  // namespace

std::variant<std::vector<ViaPath>, UnmappedReason> findViaPaths(Way const& from,
                                                                std::vector<Way const*> const& via,
                                                                Way const& to,
                                                                WayEnds const& ends) {
  std::vector<ViaPath> paths;
  auto reason = UnmappedReason::notConnected;
  for (Way const* const way : via) {
    Id const front = way->nodeReferences.front();
    Id const back = way->nodeReferences.back();
    if (front == back) return UnmappedReason::loop;
    for (Id const start : {front, back}) {
      if (!touches(from, start, ends)) continue;
      auto found = goOn(start, stepFrom(start, *way), via);
      if (auto const* const why = std::get_if<UnmappedReason>(&found)) {
        if (*why != UnmappedReason::notConnected) reason = *why;
      } else if (auto& path = std::get<ViaPath>(found);
                 touches(to, endOf(path.steps.back()), ends)) {
        paths.push_back(std::move(path));
      }
    }
  }
  if (paths.empty()) return reason;
  return paths;
}
