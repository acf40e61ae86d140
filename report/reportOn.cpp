#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "osm/selectHighwayWays.hpp"
#include "report/ImportReport.hpp"
#include "segments/assignSegmentElevations.hpp"
#include "support/lookup.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Way;
using support::lookup;
using velora::roadnetwork::DirectionOfTravel;

namespace {

constexpr std::size_t firstIds = 10;
constexpr double highestUsualLayer = 5.0;

std::u16string_view tag(Way const& way, std::u16string_view key) {
  auto const found = way.tags.find(key);
  return found == way.tags.end() ? std::u16string_view() : std::u16string_view(found->second);
}

bool isOneOf(std::u16string_view value, std::initializer_list<std::u16string_view> values) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

void accountForWay(RoadNetworkImporter const& importer, Way const& way, ImportReport& report) {
  if (!way.tags.contains(u"highway")) return;
  ++report.highwayWays;
  if (!isRoad(way.tags)) {
    report.notARoad.push_back(&way);
    return;
  }
  ImportReport::MissingNodes missing{&way, 0, {}};
  for (Id const id : way.nodeReferences) {
    if (importer.reader.nodes.find(id) != nullptr) continue;
    ++missing.count;
    if (missing.first.size() < firstIds) missing.first.push_back(id);
  }
  if (missing.count > 0) {
    report.missingNodes.push_back(std::move(missing));
  } else if (way.nodeReferences.size() < 2) {
    report.fewerThanTwoNodes.push_back(&way);
  } else {
    ++report.importedWays;
  }
}

void checkTags(Way const& way, ImportReport& report) {
  if (!way.tags.contains(u"oneway")) {
    if (tag(way, u"junction") == u"roundabout" || tag(way, u"highway") == u"motorway") {
      report.impliedOneway.push_back(&way);
    }
  } else if (!isOneOf(tag(way, u"oneway"), {u"yes", u"1", u"-1", u"no", u"0", u"false"})) {
    report.unknownOneway.push_back(&way);
  }
  if (way.tags.contains(u"layer")) {
    auto const layer = layerNumber(way.tags);
    if (!layer || std::abs(*layer) > highestUsualLayer) report.oddLayers.push_back(&way);
  } else if (!isOneOf(tag(way, u"bridge"), {u"", u"no"}) ||
             !isOneOf(tag(way, u"tunnel"), {u"", u"no"})) {
    report.levelBridges.push_back(&way);
  }
}

void findSharedNodes(RoadNetworkImporter const& importer, ImportReport& report) {
  support::IdMap<Way const*> firstAt;
  for (Way const* const way : importer.selectedWays) {
    auto const& references = way->nodeReferences;
    for (Id const id : references.subspan(1, references.size() - 2)) {
      auto const [entry, isNew] = firstAt.try_emplace(id, way);
      if (isNew) continue;
      Way const* const other = entry->second;
      if (wayLayerElevation(other->tags) != wayLayerElevation(way->tags)) {
        report.sharedNodes.push_back({id, other, way});
      }
    }
  }
}

// Finds out again which roads were joined: the Nodes that are gone are where that was.
class Joins {
 public:
  explicit Joins(RoadNetworkImporter const& importer) : importer_(importer) {
    for (Way const* const way : importer.selectedWays) addRoadsOf(*way);
  }

  void report(ImportReport& report) {
    for (auto const& [node, pair] : endsAt_) {
      if (pair.size() == 2) unite(root(pair[0].road), root(pair[1].road));
    }
    for (auto const& [node, pair] : endsAt_) {
      if (pair.size() == 2) judge(node, pair[0], pair[1], report);
    }
    for (auto* const joins : {&report.droppedDirections, &report.differentNames}) {
      std::sort(joins->begin(), joins->end(), [](auto const& a, auto const& b) {
        return std::pair(a.road, a.node) < std::pair(b.road, b.node);
      });
    }
  }

 private:
  struct End {
    std::size_t road;
    Way const* way;
    bool starts;
  };

  void addRoadsOf(Way const& way) {
    auto const& references = way.nodeReferences;
    for (std::size_t i = 0; i < references.size(); ++i) {
      if (!importer_.junctionNodeIds.contains(references[i])) continue;
      if (i > 0) addEnd(references[i], {roots_.size(), &way, false});
      if (i + 1 == references.size()) break;
      roots_.push_back(roots_.size() + 1);
      addEnd(references[i], {roots_.size(), &way, true});
    }
  }

  void addEnd(Id node, End const& end) {
    auto const& nodes = importer_.roadNetwork->getNodes();
    if (!nodes.contains(OpenStreetMap::modelId(node))) endsAt_[node].push_back(end);
  }

  // The smallest id of the roads that the road is joined to. The way there shrinks on the way.
  std::size_t root(std::size_t road) {
    while (roots_[road - 1] != road) road = roots_[road - 1] = roots_[roots_[road - 1] - 1];
    return road;
  }

  void unite(std::size_t a, std::size_t b) { roots_[std::max(a, b) - 1] = std::min(a, b); }

  void judge(Id node, End const& a, End const& b, ImportReport& report) {
    ImportReport::Join const join{root(a.road), a.way, b.way, node};
    if (tag(*a.way, u"name") != tag(*b.way, u"name")) {  // two ways without one agree
      report.differentNames.push_back(join);
    }
    bool const turned = a.starts == b.starts;
    if (lookup(importer_.wayDirections, a.way->id) !=
        seenFrom(lookup(importer_.wayDirections, b.way->id), turned)) {
      report.droppedDirections.push_back(join);
    }
  }

  static DirectionOfTravel seenFrom(DirectionOfTravel direction, bool turned) {
    if (!turned || direction == DirectionOfTravel::both) return direction;
    return direction == DirectionOfTravel::forward ? DirectionOfTravel::backward
                                                   : DirectionOfTravel::forward;
  }

  RoadNetworkImporter const& importer_;
  std::vector<std::size_t> roots_;  // by road id, which count from 1
  support::IdMap<std::vector<End>> endsAt_;
};

}  // namespace

ImportReport reportOn(RoadNetworkImporter const& importer) {
  ImportReport report;
  for (Way const& way : importer.reader.ways) accountForWay(importer, way, report);
  for (Way const* const way : importer.selectedWays) checkTags(*way, report);
  findSharedNodes(importer, report);
  Joins(importer).report(report);
  auto const byId = [](Way const* a, Way const* b) { return a->id < b->id; };
  std::sort(report.notARoad.begin(), report.notARoad.end(), byId);
  std::sort(report.fewerThanTwoNodes.begin(), report.fewerThanTwoNodes.end(), byId);
  std::sort(report.missingNodes.begin(), report.missingNodes.end(),
            [](auto const& a, auto const& b) { return a.way->id < b.way->id; });
  return report;
}
