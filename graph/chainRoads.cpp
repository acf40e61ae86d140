#include "graph/chainRoads.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "graph/JoinedName.hpp"
#include "graph/MayJoin.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "importer/walk.hpp"
#include "support/IdMap.hpp"
#include "support/ModelId.hpp"

using support::ModelId;
using support::Stage;
using support::Steps;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadImpl;
using velora::roadnetwork::RoadNetwork;

namespace {

// Two road ends, by which traffic can arrive and depart. Two one-way roads that both end here, or
// both start, are no way through.
bool isPassThrough(RoadNetwork const& network, Node const& node) {
  return node->getOutgoingRoads().size() + node->getIncomingRoads().size() == 2 &&
         !network->arrivalsAt(node->getID()).empty() &&
         !network->departuresFrom(node->getID()).empty();
}

std::vector<Node> collectCandidates(RoadNetworkImporter const& importer) {
  RoadNetwork const& network = importer.roadNetwork;
  MayJoin const mayJoin(importer);
  support::Steps steps(importer.progress(), Stage::findingJoins, network->getNodes().size());
  std::vector<Node> candidates;
  candidates.reserve(network->getNodes().size());
  forEachNode(*network.get(), steps, [&](Node const& node) {
    if (isPassThrough(network, node) && mayJoin(node)) candidates.push_back(node);
  });
  return candidates;
}

enum Side : std::size_t { start, end };

Side otherSide(Side side) {
  return side == start ? end : start;
}

Node nodeAt(Road const& road, Side side) {
  return side == start ? road->getStartNode() : road->getEndNode();
}

// One end of a road, which is known by its number.
struct RoadEnd {
  std::size_t road;
  Side side;
  friend bool operator==(RoadEnd const&, RoadEnd const&) = default;
};

struct Join {
  RoadEnd to;
  bool keepsPoint;  // of the two points at the node, this road's own
};

// An outer end of a chain, and how many joins had been made when it became that: 0 as long as it is
// an end of the road that stays.
struct OuterEnd {
  RoadEnd end;
  std::size_t join = 0;
};

// Roads that are joined so far. The one with the smallest id stays; its number is the chain's.
struct Chain {
  double weight;
  std::optional<JoinedName> name;     // of more than one road
  std::array<OuterEnd, 2> outerEnds;  // beyond the start and the end of the road that stays
};

// Where two roads are joined: the Node, and the ends there, of the lower road id first.
struct Joint {
  Node node;
  std::array<RoadEnd, 2> ends;
};

// One road on the way along a chain.
struct Piece {
  std::size_t road;
  bool reversed;
};

// What joining comes to, before anything of it is done: joining road by road would copy the centre
// line and search the name of a long chain again and again. Carrying it out can't fail, so that a
// network is never left half joined.
class ChainPlan {
 public:
  ChainPlan(RoadNetworkImporter& importer, std::size_t joins) : importer_(importer) {
    numbers_.reserve(2 * joins);
    roads_.reserve(2 * joins);
    ways_.reserve(2 * joins);
    joints_.reserve(joins);
    joins_.reserve(2 * joins);
    parents_.reserve(2 * joins);
    chains_.reserve(2 * joins);
  }

  // Joins the two roads that end at the node, unless they are one.
  void join(Node const& node) {
    std::array<RoadEnd, 2> ends = collectRoadEnds(node);
    if (idOf(ends[1].road) < idOf(ends[0].road)) std::swap(ends[0], ends[1]);
    Joint const joint{node, ends};
    std::array<std::size_t, 2> chains = {chainOf(ends[0].road), chainOf(ends[1].road)};
    if (idOf(chains[1]) < idOf(chains[0])) {
      std::swap(ends[0], ends[1]);
      std::swap(chains[0], chains[1]);
    }
    if (idOf(chains[0]) == idOf(chains[1])) return;
    joints_.push_back(joint);
    joins_[ends[0].road][ends[0].side] = {ends[1], false};
    joins_[ends[1].road][ends[1].side] = {ends[0], true};
    importer_.roadWayIds.move(idOf(chains[1]), idOf(chains[0]));
    mergeChains(chains[0], ends[0], chains[1], ends[1]);
  }

  // Makes all that is to be put into the network, and room for it.
  void prepare(Steps& steps) {
    for (std::size_t i = 0; i < roads_.size(); ++i) {
      if (parents_[i] == i && chains_[i].name) prepareChain(i);
      steps.step();
    }
    importer_.roadPieces.sort();
    // In this order each Node's collections end up as if the joins were made one after the other.
    std::sort(moves_.begin(), moves_.end(),
              steps.polling([](Move const& a, Move const& b) { return a.join < b.join; }));
    for (Move const& move : moves_) {
      if (move.to) move.to->reserveRoads();
    }
    importer_.joins.reserve(joints_.size());
    for (auto const& [node, ends] : joints_) {
      steps.step();
      auto const& one = ways_[ends[0].road];
      auto const& other = ways_[ends[1].road];
      if (!one || !other) continue;
      importer_.joins.push_back({OpenStreetMap::osmId(node->getID()),
                                 idOf(chainOf(ends[0].road)),
                                 {*one, *other},
                                 ends[0].side == ends[1].side});
    }
  }

  // Ended early, it leaves every road and Node that is still there as it was, or as it is to be.
  void carryOut(Steps& steps) {
    for (std::size_t i = 0; i < roads_.size(); ++i) {
      steps.step();
      if (parents_[i] == i) continue;
      roads_[i]->destroy();
      roads_[i] = {};  // or their memory would go at the end, in one go
    }
    growRoads();
    for (Joint& joint : joints_) {
      steps.step();
      joint.node->destroy();
      joint.node = {};
    }
  }

  // Known when it has been prepared.
  std::vector<MovedEnd> movedEnds() const {
    std::vector<MovedEnd> ends;
    ends.reserve(moves_.size());
    for (Move const& move : moves_) {
      auto const gone = OpenStreetMap::osmId(joints_[move.join - 1].node->getID());
      ends.push_back({idOf(move.road), move.side == end, gone});
    }
    return ends;
  }

  // What `prepare` and `carryOut` are counted in.
  std::size_t steps() const { return 2 * (roads_.size() + joints_.size()); }

 private:
  using Sequence = RoadImpl::Sequence;

  // A road's Nodes and its line change together.
  void growRoads() noexcept {
    for (Move const& move : moves_) {
      Road const& road = roads_[move.road];
      move.side == start ? road->setStartNode(move.to) : road->setEndNode(move.to);
    }
    for (Result& result : results_) {
      Road const& road = roads_[result.road];
      road->shareCenters(std::move(result.x), std::move(result.y));
      road->setWeight(result.weight);
      road->setName(std::move(result.name));
    }
  }

  struct Result {
    std::size_t road;
    RoadImpl::SharedSequence x;
    RoadImpl::SharedSequence y;
    double weight;
    kb::zero::SharedText name;
  };
  struct Move {
    std::size_t join;
    std::size_t road;
    Side side;
    Node to;
  };

  static constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

  std::array<RoadEnd, 2> collectRoadEnds(Node const& node) {
    std::array<RoadEnd, 2> ends{};
    auto next = ends.begin();
    for (Road const& road : node->getIncomingRoads()) *next++ = {numberOf(road), end};
    for (Road const& road : node->getOutgoingRoads()) *next++ = {numberOf(road), start};
    return ends;
  }

  std::size_t numberOf(Road const& road) {
    auto const address = reinterpret_cast<std::uintptr_t>(road.get());
    auto const [entry, isNew] = numbers_.try_emplace(address, roads_.size());
    if (isNew) {
      std::size_t const number = roads_.size();
      roads_.push_back(road);
      ways_.push_back(importer_.roadWayIds.first(road->getID()));
      parents_.push_back(number);
      chains_.push_back({road->getWeight(), {}, {{{{number, start}}, {{number, end}}}}});
      joins_.push_back({{{{none, start}, false}, {{none, start}, false}}});
    }
    return entry.value();
  }

  // The number of the road's chain: the root of the road's tree, which shrinks on the way.
  std::size_t chainOf(std::size_t road) noexcept {
    while (parents_[road] != road) road = parents_[road] = parents_[parents_[road]];
    return road;
  }
  ModelId idOf(std::size_t road) const { return roads_[road]->getID(); }

  JoinedName& nameOf(std::size_t chain) {
    std::optional<JoinedName>& name = chains_[chain].name;
    if (!name) name.emplace(roads_[chain]->shareName());
    return *name;
  }

  // The first grows by the second, beyond the node where `aEnd` and `bEnd` meet.
  void mergeChains(std::size_t aNumber, RoadEnd aEnd, std::size_t bNumber, RoadEnd bEnd) {
    Chain& a = chains_[aNumber];
    Chain& b = chains_[bNumber];
    a.weight += b.weight;
    // By id, not by place along the road: the later part may be named first.
    nameOf(aNumber).join(nameOf(bNumber));
    b.name.reset();
    RoadEnd const farEnd = b.outerEnds[b.outerEnds[0].end == bEnd ? 1 : 0].end;
    a.outerEnds[a.outerEnds[0].end == aEnd ? 0 : 1] = {farEnd, joints_.size()};
    parents_[bNumber] = aNumber;
  }

  // From one outer end to the other, in the direction of the road that stays.
  std::vector<Piece> piecesOf(std::size_t chain) const {
    std::vector<Piece> pieces;
    for (RoadEnd at = chains_[chain].outerEnds[start].end; at.road != none;) {
      pieces.push_back({at.road, at.side == end});
      at = joins_[at.road][otherSide(at.side)].to;
    }
    return pieces;
  }

  // The lines of all pieces; the point where two of them meet is taken once.
  std::vector<double> joinLines(std::vector<Piece> const& pieces,
                                Sequence const& (RoadImpl::*centers)() const) const {
    std::vector<double> line;
    std::size_t points = 0;
    for (Piece const& piece : pieces) points += (roads_[piece.road].get()->*centers)().size();
    line.reserve(points);
    for (Piece const& piece : pieces) {
      Sequence const& own = (roads_[piece.road].get()->*centers)();
      auto const& joins = joins_[piece.road];
      Join const& before = joins[piece.reversed ? end : start];
      Join const& after = joins[piece.reversed ? start : end];
      std::ptrdiff_t const first = before.to.road != none && !before.keepsPoint ? 1 : 0;
      std::ptrdiff_t const last = after.to.road != none && !after.keepsPoint ? 1 : 0;
      // Only a host makes a road of one point; there may be none of it left.
      if (static_cast<std::ptrdiff_t>(own.size()) < first + last) continue;
      if (piece.reversed) {
        line.insert(line.end(), own.rbegin() + first, own.rend() - last);
      } else {
        line.insert(line.end(), own.begin() + first, own.end() - last);
      }
    }
    return line;
  }

  void recordPieces(std::size_t chain, std::vector<Piece> const& pieces) {
    bool const areKnown = std::all_of(pieces.begin(), pieces.end(), [&](Piece const& piece) {
      return ways_[piece.road].has_value();
    });
    if (!areKnown) return;  // some were in the network before
    importer_.roadPieces.begin(idOf(chain));
    for (Piece const& piece : pieces) {
      auto const points = roads_[piece.road]->getCentersX().values().size();
      importer_.roadPieces.add({*ways_[piece.road], static_cast<std::uint32_t>(points),
                                piece.reversed, &piece == &pieces.back()});
    }
  }

  void prepareChain(std::size_t number) {
    Chain const& chain = chains_[number];
    std::vector<Piece> const pieces = piecesOf(number);
    results_.push_back({number, joinLines(pieces, &RoadImpl::getCentersX),
                        joinLines(pieces, &RoadImpl::getCentersY), chain.weight,
                        chain.name->text()});
    recordPieces(number, pieces);
    for (Side const side : {start, end}) {
      OuterEnd const& outer = chain.outerEnds[side];
      if (outer.join == 0) continue;
      moves_.push_back({outer.join, number, side, nodeAt(roads_[outer.end.road], outer.end.side)});
    }
  }

  RoadNetworkImporter& importer_;
  support::ModelIdMap<std::size_t> numbers_;  // by the road's address
  // By road number:
  std::vector<Road> roads_;
  // The way that the road was cut from; none for one that was in the network before.
  std::vector<std::optional<RoadWayIds::WayId>> ways_;
  std::vector<std::array<Join, 2>> joins_;  // at its start and its end
  std::vector<std::size_t> parents_;        // towards the root of the road's chain
  std::vector<Chain> chains_;               // valid for roots
  std::vector<Joint> joints_;
  std::vector<Result> results_;
  std::vector<Move> moves_;
};

}  // namespace

void chainRoads(RoadNetworkImporter& importer, std::vector<MovedEnd>* moved) {
  // Fixed before any join: a Node that would qualify only after one stays.
  std::vector<Node> candidates = collectCandidates(importer);
  ChainPlan plan(importer, candidates.size());
  Steps planning(importer.progress(), Stage::planningJoins, candidates.size());
  for (Node const& node : candidates) {
    plan.join(node);
    planning.step();
  }
  candidates.clear();
  Steps joining(importer.progress(), Stage::joiningRoads, plan.steps());
  plan.prepare(joining);
  if (moved != nullptr) *moved = plan.movedEnds();
  plan.carryOut(joining);
}
