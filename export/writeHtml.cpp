#include "export/writeHtml.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/NetworkWalk.hpp"
#include "export/PageBlocks.hpp"
#include "export/PageColumns.hpp"
#include "export/ReportRow.hpp"
#include "export/RestrictionRows.hpp"
#include "export/html/pageParts.hpp"
#include "importer/RoadNetworkImporter.hpp"

using OpenStreetMap::Id;
using support::ModelId;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// Takes JSON and keeps it from ending the script element that it stands in.
struct JsonInPage {
  BufferedFile& file;

  void write(std::string_view text) {
    for (std::size_t end; (end = text.find('<')) != std::string_view::npos;) {
      file.write(text.substr(0, end));
      file.write("\\u003c");
      text.remove_prefix(end + 1);
    }
    file.write(text);
  }
};

// Where something stands in a list of ascending ids.
template <class Ids>
std::size_t placeIn(Ids const& ids, typename Ids::value_type id) {
  return static_cast<std::size_t>(std::lower_bound(ids.begin(), ids.end(), id) - ids.begin());
}

class PageWriter {
 public:
  PageWriter(RoadNetworkImporter const& importer, ImportReport const& report, BufferedFile& file)
      : importer_(importer), report_(report), file_(file), walk_(importer), blocks_(file) {}

  void write() {
    std::string_view rest = pageTemplate();
    for (auto const& [mark, writePart] :
         std::initializer_list<std::pair<std::string_view, void (PageWriter::*)()>>{
             {"@POLICY@", &PageWriter::policy},
             {"@STYLE@", &PageWriter::style},
             {"@DATA@", &PageWriter::data},
             {"@SCRIPT@", &PageWriter::script}}) {
      std::size_t const end = rest.find(mark);
      file_.write(rest.substr(0, end));
      (this->*writePart)();
      rest.remove_prefix(end + mark.size());
    }
    file_.write(rest);
  }

 private:
  void policy() {
    file_.write("default-src 'none'; script-src " + policyHash(pageScript()) + ' ' +
                policyHash(mapLibraryScript()) + "; style-src " + policyHash(pageStyle()) + ' ' +
                policyHash(mapLibraryStyle()) +
                "; img-src data: blob:; worker-src blob:; child-src blob:; connect-src 'none'; "
                "base-uri 'none'; form-action 'none'");
  }
  void style() { file_.write(pageStyle()); }
  void script() { file_.write(pageScript()); }

  void data() {
    blocks_.bytes("library.style", mapLibraryStyle());
    blocks_.bytes("library.script", mapLibraryScript());
    blocks_.bytes("library.licences", mapLibraryLicences());
    about();
    nodes();
    roads();
    restrictions();
    findings();
  }

  void about() {
    file_.write("<script type=\"application/json\" id=\"about\">");
    JsonInPage output{file_};
    JsonText json(output);
    auto const texts = [&](auto const& list) {
      json.list(list, [&](auto const& text) { json.text(std::string_view(text)); });
    };
    json.beginObject();
    json.member("tags");
    texts(importer_.options.tags);
    std::vector<std::string_view> kinds;
    for (std::size_t kind = 0; kind < Finding::kinds; ++kind) {
      kinds.push_back(describe(static_cast<Finding::Kind>(kind)).name);
    }
    json.member("kinds");
    texts(kinds);
    json.member("severities");
    texts(std::vector{nameOf(Severity::high), nameOf(Severity::medium), nameOf(Severity::low)});
    json.member("highwayWays").integer(report_.highwayWays);
    json.member("imported").integer(report_.importedWays);
    json.member("notARoad").integer(report_.notARoad.size());
    json.member("missingNodes").integer(report_.missingNodes.size());
    json.member("fewerThanTwoNodes").integer(report_.fewerThanTwoNodes.size());
    json.member("crossingsAreAll").boolean(report_.crossingsAreAll);
    json.endObject();
    file_.write("</script>\n");
  }

  void nodes() {
    PageIntegers ids;
    PageDecimals latitudes;
    PageDecimals longitudes;
    PageDecimals elevations;
    nodeIds_.reserve(importer_.roadNetwork->getNodes().size());
    walk_.forEachNode([&](Node const& node) {
      NodeRow const row = nodeRow(node);
      nodeIds_.push_back(node->getID());
      ids.add(row.id);
      latitudes.add(row.latitude);
      longitudes.add(row.longitude);
      elevations.add(row.elevation);
    });
    blocks_.column("nodes.id", ids);
    blocks_.column("nodes.latitude", latitudes);
    blocks_.column("nodes.longitude", longitudes);
    blocks_.column("nodes.elevation", elevations);
  }

  // One walk fills all columns: a road takes some tens of bytes in them.
  void roads() {
    PageIntegers ids;
    PageIntegers ends;
    PageIntegers directions;
    PageIntegers pieces;
    PageTexts names;
    PageTexts highways;
    std::vector<PageTexts> tags(importer_.options.tags.size());
    PageLists ways;
    PageIntegers sizes;
    PageDecimals latitudes;
    PageDecimals longitudes;
    PageDecimals elevations;
    RoadRows const rows(importer_);
    roadIds_.reserve(importer_.roadNetwork->getRoads().size());
    walk_.forEachRoad([&](Road const& road) {
      RoadRow const row = rows(road);
      roadIds_.push_back(row.id);
      ids.add(static_cast<std::int64_t>(row.id));
      ends.add(nodePlace(row.startNode));
      ends.add(nodePlace(row.endNode));
      directions.add(static_cast<std::int64_t>(row.direction));
      pieces.add(static_cast<std::int64_t>(row.pieces.size()));
      names.add(row.name);
      highways.add(row.highway);
      for (std::size_t i = 0; i < tags.size(); ++i) tags[i].add(row.tags[i]);
      ways.add(row.wayIds);
      // The ends of a centre line are the Nodes' positions.
      std::size_t const last = row.latitudes.size() - 1;
      sizes.add(static_cast<std::int64_t>(last + 1));
      latitudes.continueFrom(row.latitudes[0]);
      longitudes.continueFrom(row.longitudes[0]);
      for (std::size_t i = 1; i < last; ++i) {
        latitudes.add(row.latitudes[i]);
        longitudes.add(row.longitudes[i]);
      }
      for (double const elevation : row.elevations) elevations.add(elevation);
    });
    blocks_.column("roads.id", ids);
    blocks_.column("roads.ends", ends);
    blocks_.column("roads.direction", directions);
    blocks_.column("roads.pieces", pieces);
    blocks_.column("roads.name", names);
    blocks_.column("roads.highway", highways);
    for (std::size_t i = 0; i < tags.size(); ++i) {
      blocks_.column("roads.tag" + std::string(NumberText(i)), tags[i]);
    }
    blocks_.column("roads.ways", ways);
    blocks_.column("roads.sizes", sizes);
    blocks_.column("roads.latitude", latitudes);
    blocks_.column("roads.longitude", longitudes);
    blocks_.column("roads.elevation", elevations);
  }

  void restrictions() {
    PageTexts kinds;
    PageTexts vehicles;
    PageTexts conditions;
    PageTexts excepts;
    PageLists roads;  // the one from which, those via, the one to which
    PageLists nodes;
    PageIntegers relations;
    forEachRestriction(importer_, [&](RestrictionRow const& row) {
      TurnRestriction const& restriction = row.restriction;
      kinds.add(row.kind);
      vehicles.add(row.vehicles);
      conditions.add(row.condition);
      excepts.add(row.except);
      std::vector<std::size_t> path{roadPlace(restriction.from.road->getID())};
      for (ModelId const road : restriction.viaRoads) path.push_back(roadPlace(road));
      path.push_back(roadPlace(restriction.to.road->getID()));
      roads.add(path);
      nodes.add(nodePlaces(restriction.viaNodes));
      relations.add(restriction.relation);
    });
    blocks_.column("restrictions.kind", kinds);
    blocks_.column("restrictions.vehicles", vehicles);
    blocks_.column("restrictions.condition", conditions);
    blocks_.column("restrictions.except", excepts);
    blocks_.column("restrictions.roads", roads);
    blocks_.column("restrictions.nodes", nodes);
    blocks_.column("restrictions.relation", relations);
  }

  void findings() {
    PageIntegers kinds;
    PageIntegers severities;
    std::string texts;
    PageLists ways;
    PageLists nodes;
    PageLists roads;
    PageLists parts;  // how many points each line has; one part of one point for each point
    PageDecimals latitudes;
    PageDecimals longitudes;
    support::Steps steps(importer_.progress(), support::Stage::writingReport, report_.toCheck());
    for (auto const& ofKind : report_.findings) {
      for (Finding const& finding : ofKind) {
        ReportRow const row = reportRow(finding, importer_, steps);
        kinds.add(static_cast<std::int64_t>(finding.kind));
        severities.add(static_cast<std::int64_t>(finding.severity));
        (texts += row.text) += '\0';
        ways.add(row.wayIds);
        nodes.add(row.nodeIds);
        std::vector<std::size_t> places;
        for (ModelId const road : finding.roads) places.push_back(roadPlace(road));
        roads.add(places);
        std::vector<std::size_t> sizes(row.points.size(), 1);
        for (GeoLine const& line : row.lines) sizes.push_back(line.size());
        parts.add(sizes);
        auto const addPoint = [&](GeoPosition const& point) {
          latitudes.add(point.latitude);
          longitudes.add(point.longitude);
        };
        for (GeoPosition const& point : row.points) addPoint(point);
        for (GeoLine const& line : row.lines) std::for_each(line.begin(), line.end(), addPoint);
        steps.step();
      }
    }
    blocks_.column("findings.kind", kinds);
    blocks_.column("findings.severity", severities);
    blocks_.bytes("findings.texts", texts);
    blocks_.column("findings.ways", ways);
    blocks_.column("findings.nodes", nodes);
    blocks_.column("findings.roads", roads);
    blocks_.column("findings.parts", parts);
    blocks_.column("findings.latitude", latitudes);
    blocks_.column("findings.longitude", longitudes);
  }

  std::size_t roadPlace(ModelId road) const { return placeIn(roadIds_, road); }
  std::int64_t nodePlace(Id node) const {
    return static_cast<std::int64_t>(placeIn(nodeIds_, OpenStreetMap::modelId(node)));
  }
  std::vector<std::int64_t> nodePlaces(std::vector<Id> const& nodes) const {
    std::vector<std::int64_t> places;
    places.reserve(nodes.size());
    for (Id const node : nodes) places.push_back(nodePlace(node));
    return places;
  }

  RoadNetworkImporter const& importer_;
  ImportReport const& report_;
  BufferedFile& file_;
  NetworkWalk walk_;
  PageBlocks blocks_;
  std::vector<ModelId> nodeIds_;  // ascending, as the columns have them
  std::vector<ModelId> roadIds_;
};

}  // namespace

void writeHtml(RoadNetworkImporter const& importer, ImportReport const& report,
               BufferedFile& file) {
  PageWriter(importer, report, file).write();
}
