#include "graph/chainRoads.hpp"

#include <string>
#include <utility>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadNetwork;

namespace {

// Two road ends, by which traffic can arrive and depart. Two one-way roads that both end here, or
// both start, are no way through.
bool isPassThrough(RoadNetwork const& network, Node const& node) {
  return node->getOutgoingRoads().size() + node->getIncomingRoads().size() == 2 &&
         !network->arrivalsAt(node->getID()).empty() &&
         !network->departuresFrom(node->getID()).empty();
}

std::vector<Node> collectCandidates(RoadNetwork const& network) {
  std::vector<Node> candidates;
  candidates.reserve(network->getNodes().size());
  for (auto const& [id, node] : network->getNodes()) {
    if (isPassThrough(network, node)) candidates.push_back(node);
  }
  return candidates;
}

void collectRoads(Node const& node, std::vector<Road>& roads) {
  roads.clear();
  for (Road const& road : node->getIncomingRoads()) roads.push_back(road);
  for (Road const& road : node->getOutgoingRoads()) roads.push_back(road);
}

// Both lines without the point of `a` at the shared node, which `b` brings along.
template <class Sequence>
std::vector<double> joinLines(Sequence const& a, bool aStarts, Sequence const& b, bool bStarts) {
  std::vector<double> line;
  line.reserve(a.size() - 1 + b.size());
  auto const appendB = [&](bool reversed) {
    if (reversed) {
      line.insert(line.end(), b.rbegin(), b.rend());
    } else {
      line.insert(line.end(), b.begin(), b.end());
    }
  };
  if (aStarts) {
    appendB(bStarts);
    line.insert(line.end(), a.begin() + 1, a.end());
  } else {
    line.insert(line.end(), a.begin(), a.end() - 1);
    appendB(!bStarts);
  }
  return line;
}

// Extends `a` by `b` beyond the node at which both end.
void mergeRoads(Road const& a, Road const& b, Node const& node) {
  bool const aStarts = a->getStartNode() == node;
  bool const bStarts = b->getStartNode() == node;
  std::vector<double> const x = joinLines(a->getCentersX(), aStarts, b->getCentersX(), bStarts);
  std::vector<double> const y = joinLines(a->getCentersY(), aStarts, b->getCentersY(), bStarts);
  double const weight = a->getWeight() + b->getWeight();
  Node const farEnd = bStarts ? b->getEndNode() : b->getStartNode();
  if (aStarts) {
    a->setStartNode(farEnd);
  } else {
    a->setEndNode(farEnd);
  }
  a->setCenters(x, y);
  a->setWeight(weight);
  // By id, not by place along the road: the later part may be named first.
  if (a->getName().find(b->getName()) == std::u16string::npos) {
    std::u16string name = a->getName();
    a->setName(name.append(u"-").append(b->getName()));
  }
}

}  // namespace

void chainRoads(RoadNetworkImporter& importer) {
  // Fixed before any join: a Node that would qualify only after one stays.
  std::vector<Node> const candidates = collectCandidates(importer.roadNetwork);
  std::vector<Road> pair;
  for (Node const& node : candidates) {
    collectRoads(node, pair);
    if (pair[1]->getID() < pair[0]->getID()) std::swap(pair[0], pair[1]);
    Road const& a = pair[0];
    Road const& b = pair[1];
    if (a->getID() == b->getID()) continue;
    mergeRoads(a, b, node);
    importer.roadWayIds.move(b->getID(), a->getID());
    b->destroy();
    node->destroy();
  }
}
