#include "export/writeJson.hpp"

#include <algorithm>

#include "export/JsonWriter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadNetwork;
using velora::roadnetwork::RoadSegment;

namespace {

void writeNode(JsonWriter& json, Node const& node) {
  auto const roadId = [&](Road const& road) { json.reference(road); };
  json.raw("{\"id\": ");
  json.reference(node);
  json.raw(", \"name\": ");
  json.text(node->getName());
  json.raw(", \"position\": ");
  json.numbers(node->getPosition());
  json.raw(", \"incomingRoads\": ");
  json.list(node->getIncomingRoads(), roadId);
  json.raw(", \"outgoingRoads\": ");
  json.list(node->getOutgoingRoads(), roadId);
  json.raw("}");
}

void writeSegment(JsonWriter& json, RoadSegment const& segment) {
  json.raw("{\"id\": ");
  json.reference(segment);
  json.raw(", \"startNode\": ");
  json.reference(segment->getStartNode());
  json.raw(", \"endNode\": ");
  json.reference(segment->getEndNode());
  json.raw(", \"centersX\": ");
  json.numbers(segment->getCentersX());
  json.raw(", \"centersY\": ");
  json.numbers(segment->getCentersY());
  json.raw(", \"elevations\": ");
  json.numbers(segment->getElevations());
  json.raw(", \"bankingAngles\": ");
  json.numbers(segment->getBankingAngles());
  json.raw(", \"headings\": ");
  json.numbers(segment->getHeadings());
  json.raw("}");
}

void writeRoad(JsonWriter& json, Road const& road) {
  json.raw("{\"id\": ");
  json.reference(road);
  json.raw(", \"name\": ");
  json.text(road->getName());
  json.raw(", \"weight\": ");
  json.number(road->getWeight());
  json.raw(", \"direction\": ");
  json.id(static_cast<unsigned long>(road->getDirection()));
  json.raw(", \"startNode\": ");
  json.reference(road->getStartNode());
  json.raw(", \"endNode\": ");
  json.reference(road->getEndNode());
  json.raw(", \"centersX\": ");
  json.numbers(road->getCentersX());
  json.raw(", \"centersY\": ");
  json.numbers(road->getCentersY());
  json.raw(", \"segments\": ");
  json.list(road->getRoadSegments(), [&](RoadSegment const& s) { writeSegment(json, s); });
  json.raw("}");
}

std::vector<Road> roadsById(RoadNetwork const& network) {
  std::vector<Road> roads = network->getRoads();
  std::sort(roads.begin(), roads.end(),
            [](Road const& a, Road const& b) { return a->getID() < b->getID(); });
  return roads;
}

}  // namespace

void writeJson(RoadNetwork const& network, std::vector<double> const& limits, OutputFile& output) {
  JsonWriter json(output);
  auto const& origin = network->getGeoReference();
  json.raw("{\"limits\": ");
  json.numbers(limits);
  json.raw(",\n \"geoReference\": {\"latitude\": ");
  json.number(origin->getLatitude());
  json.raw(", \"longitude\": ");
  json.number(origin->getLongitude());
  json.raw(", \"altitude\": ");
  json.number(origin->getAltitude());
  json.raw("},\n \"nodes\": [");
  char const* separator = "\n  ";
  for (auto const& [id, node] : network->getNodes()) {
    json.raw(separator);
    writeNode(json, node);
    separator = ",\n  ";
  }
  json.raw("],\n \"roads\": [");
  separator = "\n  ";
  for (Road const& road : roadsById(network)) {
    json.raw(separator);
    writeRoad(json, road);
    separator = ",\n  ";
  }
  json.raw("]}\n");
}
