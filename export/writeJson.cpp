#include "export/writeJson.hpp"

#include "export/JsonWriter.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "importer/geographicLimits.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadSegment;

namespace {

void writeNode(JsonWriter& json, Node const& node) {
  auto const roadId = [&](Road const& road) { json.reference(road); };
  json.beginObject();
  json.member("id").reference(node);
  json.member("name").text(node->getName());
  json.member("position").numbers(node->getPosition());
  json.member("incomingRoads").list(node->getIncomingRoads(), roadId);
  json.member("outgoingRoads").list(node->getOutgoingRoads(), roadId);
  json.endObject();
}

void writeSegment(JsonWriter& json, RoadSegment const& segment) {
  json.beginObject();
  json.member("id").reference(segment);
  json.member("startNode").reference(segment->getStartNode());
  json.member("endNode").reference(segment->getEndNode());
  json.member("centersX").numbers(segment->getCentersX());
  json.member("centersY").numbers(segment->getCentersY());
  json.member("elevations").numbers(segment->getElevations());
  json.member("bankingAngles").numbers(segment->getBankingAngles());
  json.member("headings").numbers(segment->getHeadings());
  json.endObject();
}

void writeRoad(JsonWriter& json, Road const& road) {
  json.beginObject();
  json.member("id").reference(road);
  json.member("name").text(road->getName());
  json.member("weight").number(road->getWeight());
  json.member("direction").integer(static_cast<unsigned long>(road->getDirection()));
  json.member("startNode").reference(road->getStartNode());
  json.member("endNode").reference(road->getEndNode());
  json.member("centersX").numbers(road->getCentersX());
  json.member("centersY").numbers(road->getCentersY());
  json.member("segments").list(road->getRoadSegments(), [&](RoadSegment const& s) {
    writeSegment(json, s);
  });
  json.endObject();
}

}  // namespace

void writeJson(RoadNetworkImporter const& importer, BufferedFile& file) {
  JsonWriter json(file);
  NetworkWalk walk(importer);
  auto const& origin = importer.roadNetwork->getGeoReference();
  json.beginObject();
  json.member("limits").numbers(geographicLimits(importer));
  json.memberLine("geoReference").beginObject();
  json.member("latitude").number(origin->getLatitude());
  json.member("longitude").number(origin->getLongitude());
  json.member("altitude").number(origin->getAltitude());
  json.endObject();
  json.memberLine("nodes").beginList();
  walk.forEachNode([&](Node const& node) {
    json.itemLine();
    writeNode(json, node);
  });
  json.endList();
  json.memberLine("roads").beginList();
  walk.forEachRoad([&](Road const& road) {
    json.itemLine();
    writeRoad(json, road);
  });
  json.endList();
  json.endObject();
  json.endLine();
}
