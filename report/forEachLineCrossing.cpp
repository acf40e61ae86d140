#include "report/forEachLineCrossing.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>
#include <utility>
#include <vector>

#include "report/BoxIndex.hpp"
#include "report/segmentCrossing.hpp"

using velora::roadnetwork::Road;

namespace {

using Place = LineCrossing::Place;
using Action = std::function<void(LineCrossing const&)>;

constexpr double wholeTurn = 360.0;
constexpr double antimeridian = 180.0;
// What one box is made for: at most so many segments, in no more than so many degrees.
constexpr std::uint32_t segmentsInRun = 8;
constexpr double widthOfRun = 0.01;
// Longer segments have more boxes than one, since one would overlap all that lies beside them.
constexpr double boxesAtMost = 16.0;
// What a crossing costs, in comparisons of boxes: a map of nothing else must not fill the memory.
constexpr std::size_t costOfCrossing = 100;
// Roads at one Node do not cross there, but their boxes do: of so many, that would be too much.
constexpr std::uint32_t roadsAtHub = 500;

struct Line {
  double const* latitudes;
  double const* longitudes;
  std::uint32_t segments;
};

// Neighbouring segments of one road.
struct Run {
  std::uint32_t road;
  std::uint32_t first;
  std::uint32_t count;
  std::int32_t turns;  // of the Earth, by which it is moved to meet what is beyond the antimeridian
};

struct Runs {
  std::vector<Run> runs;
  std::vector<BoxIndex::Entry> boxes;  // numbered as the runs
};

class Search {
 public:
  Search(RoadNetworkImporter const& importer, RoadGraph const& graph, Action const& action)
      : graph_(graph),
        action_(action),
        progress_(importer.progress()),
        degrees_(graph.nodes.size()) {
    for (RoadGraph::Ends const& road : graph.roads) {
      ++degrees_[road.start];
      ++degrees_[road.end];
    }
    support::Steps steps(progress_, support::Stage::cuttingLines, 2 * graph.roads.size());
    lines_.reserve(graph.roads.size());
    for (Road const& road : importer.roadNetwork->getRoads()) {
      steps.step();
      auto const latitudes = road->getCentersX().values();
      lines_.push_back({latitudes.data(), road->getCentersY().values().data(),
                        static_cast<std::uint32_t>(latitudes.size() - 1)});
    }
    for (std::uint32_t road = 0; road < lines_.size(); ++road) {
      cut(road);
      steps.step();
    }
  }

  bool run() {
    constexpr std::size_t atLeast = 4'000'000;
    constexpr std::size_t each = 40;
    std::size_t boxes = runs_.boxes.size();
    for (auto const& [node, spokes] : spokes_) boxes += spokes.boxes.size();
    effort_ = atLeast + each * boxes;
    support::Steps steps(progress_, support::Stage::findingCrossings, boxes);

    std::vector<std::pair<Runs const*, BoxIndex>> indexes;
    indexes.emplace_back(&runs_, BoxIndex(runs_.boxes, steps));
    indexes.front().second.forEach([&](BoxIndex::Entry const& entry) {
      steps.step();
      forEachOverlap(indexes.front().second, entry.first, [&](BoxIndex::Entry const& other) {
        if (other.second > entry.second) {
          compare(runs_.runs[entry.second], runs_.runs[other.second], other.first);
        }
      });
    });
    for (auto const& [node, spokes] : spokes_) {
      for (auto const& [box, number] : spokes.boxes) {
        steps.step();
        for (auto const& [runs, index] : indexes) {
          forEachOverlap(index, box, [&, run = spokes.runs[number], r = runs](auto const& other) {
            compare(run, r->runs[other.second], other.first);
          });
        }
      }
      indexes.emplace_back(&spokes, BoxIndex(spokes.boxes, steps));
    }
    return effort_ > 0;
  }

 private:
  // The second point is the nearer one of those that its longitude may mean.
  PlaneSegment segment(std::uint32_t road, std::uint32_t i, std::int32_t turns) const {
    Line const& line = lines_[road];
    double const step = line.longitudes[i + 1] - line.longitudes[i];
    std::int32_t const back = step > antimeridian ? -1 : step < -antimeridian ? 1 : 0;
    return {{line.longitudes[i] + wholeTurn * turns, line.latitudes[i]},
            {line.longitudes[i + 1] + wholeTurn * (turns + back), line.latitudes[i + 1]}};
  }

  Runs& runsFor(std::uint32_t road, std::uint32_t i) {
    auto const [start, end] = graph_.roads[road];
    if (i == 0 && degrees_[start] > roadsAtHub) return spokes_[start];
    if (i + 1 == lines_[road].segments && degrees_[end] > roadsAtHub) return spokes_[end];
    return runs_;
  }

  void cut(std::uint32_t road) {
    Run run{road, 0, 0, 0};
    PlanePoint low{};
    PlanePoint high{};
    auto const finish = [&] {
      if (run.count > 0) add(runs_, run, low, high);
      run.count = 0;
    };
    for (std::uint32_t i = 0; i < lines_[road].segments; ++i) {
      auto const [from, to] = segment(road, i, 0);
      PlanePoint const lowest{std::min(from.x, to.x), std::min(from.y, to.y)};
      PlanePoint const highest{std::max(from.x, to.x), std::max(from.y, to.y)};
      Runs& runs = runsFor(road, i);
      if (&runs != &runs_ || highest.x >= antimeridian || lowest.x <= -antimeridian ||
          std::max(highest.x - lowest.x, highest.y - lowest.y) > widthOfRun) {
        finish();
        addLong(runs, {road, i, 1, 0});
        if (highest.x >= antimeridian) addLong(runs, {road, i, 1, -1});
        if (lowest.x <= -antimeridian) addLong(runs, {road, i, 1, 1});
        continue;
      }
      PlanePoint const bothLow{std::min(low.x, lowest.x), std::min(low.y, lowest.y)};
      PlanePoint const bothHigh{std::max(high.x, highest.x), std::max(high.y, highest.y)};
      if (run.count == 0 || run.count == segmentsInRun ||
          std::max(bothHigh.x - bothLow.x, bothHigh.y - bothLow.y) > widthOfRun) {
        finish();
        run.first = i;
        low = lowest;
        high = highest;
      } else {
        low = bothLow;
        high = bothHigh;
      }
      ++run.count;
    }
    finish();
  }

  void addLong(Runs& runs, Run const& run) {
    auto const [from, to] = segment(run.road, run.first, run.turns);
    double const width = std::min(std::abs(to.x - from.x), std::abs(to.y - from.y));
    auto const boxes =
        static_cast<int>(std::clamp(std::ceil(width / widthOfRun), 1.0, boxesAtMost));
    PlanePoint last = from;
    for (int i = 1; i <= boxes; ++i) {
      double const share = static_cast<double>(i) / boxes;
      PlanePoint const next{std::lerp(from.x, to.x, share), std::lerp(from.y, to.y, share)};
      add(runs, run, {std::min(last.x, next.x), std::min(last.y, next.y)},
          {std::max(last.x, next.x), std::max(last.y, next.y)});
      last = next;
    }
  }

  static void add(Runs& runs, Run const& run, PlanePoint const& low, PlanePoint const& high) {
    runs.boxes.emplace_back(BoxIndex::box(low, high),
                            static_cast<BoxIndex::Number>(runs.runs.size()));
    runs.runs.push_back(run);
  }

  template <class Compare>
  void forEachOverlap(BoxIndex const& index, BoxIndex::Box const& box, Compare const& compareWith) {
    if (effort_ == 0) return;
    index.forEachOverlap(box, [&](BoxIndex::Entry const& other) {
      if (effort_ == 0) return;
      --effort_;
      compareWith(other);
    });
  }

  void compare(Run const& a, Run const& b, BoxIndex::Box const& boxOfB) {
    if (a.road == b.road) return;
    // Most are neighbours in a grid of streets: known without a look at where they are.
    if (a.count == 1 && b.count == 1 && meetAtNode(a.road, a.first, b.road, b.first)) return;
    auto const& low = boxOfB.min_corner();
    auto const& high = boxOfB.max_corner();
    for (std::uint32_t i = a.first; i < a.first + a.count; ++i) {
      PlaneSegment const one = segment(a.road, i, a.turns);
      if (areApart(one.from.x, one.to.x, low.get<0>(), high.get<0>()) ||
          areApart(one.from.y, one.to.y, low.get<1>(), high.get<1>()) || one.from == one.to) {
        continue;
      }
      for (std::uint32_t k = b.first; k < b.first + b.count; ++k) {
        PlaneSegment const other = segment(b.road, k, b.turns);
        if (areApart(one.from.x, one.to.x, other.from.x, other.to.x) ||
            areApart(one.from.y, one.to.y, other.from.y, other.to.y) || other.from == other.to ||
            meetAtNode(a.road, i, b.road, k)) {
          continue;
        }
        compare({a.road, i, 0.0}, one, {b.road, k, 0.0}, other);
      }
    }
  }

  void compare(Place onOne, PlaneSegment const& one, Place onOther, PlaneSegment const& other) {
    auto const found = segmentCrossing(one, other);
    if (!found) return;
    onOne.share = found->onOne;
    onOther.share = found->onOther;
    Finding::Position const position = positionOf(onOne, one, onOther);
    if (isCommonNode(onOne.road, onOther.road, position)) return;
    action_({onOne, onOther, position});
    effort_ -= std::min(effort_, costOfCrossing);
  }

  static bool areApart(double a, double b, double c, double d) {
    return std::max(a, b) < std::min(c, d) || std::max(c, d) < std::min(a, b);
  }

  bool meetAtNode(std::uint32_t a, std::uint32_t i, std::uint32_t b, std::uint32_t k) const {
    RoadGraph::Ends const& one = graph_.roads[a];
    RoadGraph::Ends const& other = graph_.roads[b];
    bool const isLast = k + 1 == lines_[b].segments;
    auto const isAtOther = [&](RoadGraph::Number node) {
      return (k == 0 && node == other.start) || (isLast && node == other.end);
    };
    return (i == 0 && isAtOther(one.start)) || (i + 1 == lines_[a].segments && isAtOther(one.end));
  }

  // Of a point of one of the lines exactly as it stands there.
  Finding::Position positionOf(Place const& one, PlaneSegment const& segment,
                               Place const& other) const {
    for (Place const& place : {one, other}) {
      if (place.share != 0.0 && place.share != 1.0) continue;
      Line const& line = lines_[place.road];
      std::size_t const point = place.segment + (place.share == 1.0 ? 1 : 0);
      return {line.latitudes[point], eastern(line.longitudes[point])};
    }
    double const longitude = std::lerp(segment.from.x, segment.to.x, one.share);
    return {std::lerp(segment.from.y, segment.to.y, one.share),
            eastern(std::remainder(longitude, wholeTurn))};
  }

  // The antimeridian has two names.
  static double eastern(double longitude) {
    return longitude == -antimeridian ? antimeridian : longitude;
  }

  bool isCommonNode(std::uint32_t a, std::uint32_t b, Finding::Position const& position) const {
    auto const [start, end] = graph_.roads[a];
    auto const [otherStart, otherEnd] = graph_.roads[b];
    for (RoadGraph::Number const node : {start, end}) {
      if (node != otherStart && node != otherEnd) continue;
      auto const at = (*graph_.nodes[node])->getPosition();
      if (at[0] == position.latitude && eastern(at[1]) == position.longitude) return true;
    }
    return false;
  }

  RoadGraph const& graph_;
  Action const& action_;
  support::Progress const& progress_;
  std::vector<Line> lines_;             // by the roads' places in the network's list
  std::vector<std::uint32_t> degrees_;  // of the Nodes
  Runs runs_;
  std::map<RoadGraph::Number, Runs> spokes_;  // the first and last segments of roads at a hub
  std::size_t effort_ = 0;                    // how many boxes may still be compared
};

}  // namespace

bool forEachLineCrossing(RoadNetworkImporter const& importer, RoadGraph const& graph,
                         Action const& action) {
  return Search(importer, graph, action).run();
}
