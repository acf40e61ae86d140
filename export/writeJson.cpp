#include "export/writeJson.hpp"

#include <utility>

#include "export/JsonWriter.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "importer/geographicLimits.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadSegment;

namespace {

void writeNode(JsonWriter& json, Node const& node) {
  auto const roadId = [&](Road const& road) { json.reference(road); };
  json.first("id");
  json.reference(node);
  json.next("name");
  json.text(node->getName());
  json.next("position");
  json.numbers(node->getPosition());
  json.next("incomingRoads");
  json.list(node->getIncomingRoads(), roadId);
  json.next("outgoingRoads");
  json.list(node->getOutgoingRoads(), roadId);
  json.raw("}");
}

void writeSegment(JsonWriter& json, RoadSegment const& segment) {
  json.first("id");
  json.reference(segment);
  json.next("startNode");
  json.reference(segment->getStartNode());
  json.next("endNode");
  json.reference(segment->getEndNode());
  json.next("centersX");
  json.numbers(segment->getCentersX());
  json.next("centersY");
  json.numbers(segment->getCentersY());
  json.next("elevations");
  json.numbers(segment->getElevations());
  json.next("bankingAngles");
  json.numbers(segment->getBankingAngles());
  json.next("headings");
  json.numbers(segment->getHeadings());
  json.raw("}");
}

void writeRoad(JsonWriter& json, Road const& road) {
  json.first("id");
  json.reference(road);
  json.next("name");
  json.text(road->getName());
  json.next("weight");
  json.number(road->getWeight());
  json.next("direction");
  json.integer(static_cast<unsigned long>(road->getDirection()));
  json.next("startNode");
  json.reference(road->getStartNode());
  json.next("endNode");
  json.reference(road->getEndNode());
  json.next("centersX");
  json.numbers(road->getCentersX());
  json.next("centersY");
  json.numbers(road->getCentersY());
  json.next("segments");
  json.list(road->getRoadSegments(), [&](RoadSegment const& s) { writeSegment(json, s); });
  json.raw("}");
}

}  // namespace

void writeJson(RoadNetworkImporter const& importer, BufferedFile& file, Progress const& progress) {
  JsonWriter json(file);
  NetworkWalk walk(importer.roadNetwork, progress);
  auto const& origin = importer.roadNetwork->getGeoReference();
  json.first("limits");
  json.numbers(geographicLimits(importer));
  json.raw(",\n \"geoReference\": ");
  json.first("latitude");
  json.number(origin->getLatitude());
  json.next("longitude");
  json.number(origin->getLongitude());
  json.next("altitude");
  json.number(origin->getAltitude());
  json.raw("},\n \"nodes\": [");
  char const* separator = "\n  ";
  walk.forEachNode([&](Node const& node) {
    json.raw(std::exchange(separator, ",\n  "));
    writeNode(json, node);
  });
  json.raw("],\n \"roads\": [");
  separator = "\n  ";
  walk.forEachRoad([&](Road const& road) {
    json.raw(std::exchange(separator, ",\n  "));
    writeRoad(json, road);
  });
  json.raw("]}\n");
}
