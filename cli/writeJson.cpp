#include "cli/writeJson.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "support/ustring.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadNetwork;
using velora::roadnetwork::RoadSegment;

namespace {

class JsonWriter {
 public:
  explicit JsonWriter(OutputFile& output) : output_(output) {}

  void raw(std::string_view text) { output_.write(text); }

  void number(double value) {
    if (std::isnan(value)) return raw("null");
    if (std::isinf(value)) return raw(value > 0 ? "1e999" : "-1e999");
    // Without a point, some readers would take it for an integer and lose the sign of -0.
    if (digits(value).find_first_of(".e") == std::string_view::npos) raw(".0");
  }

  void id(unsigned long value) { digits(value); }

  /// The id of an element, or null for none.
  template <class Handle>
  void reference(Handle const& element) {
    if (!element) return raw("null");
    id(element->getID());
  }

  void text(std::u16string const& value) {
    raw("\"");
    std::string const utf8 = support::ustring_to_utf8(value);
    std::size_t start = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
      auto const c = static_cast<unsigned char>(utf8[i]);
      if (c >= 0x20 && c != '"' && c != '\\') continue;
      raw(std::string_view(utf8).substr(start, i - start));
      escape(c);
      start = i + 1;
    }
    raw(std::string_view(utf8).substr(start));
    raw("\"");
  }

  template <class Range, class WriteItem>
  void list(Range const& range, WriteItem const& writeItem) {
    raw("[");
    char const* separator = "";
    for (auto const& item : range) {
      raw(separator);
      writeItem(item);
      separator = ", ";
    }
    raw("]");
  }

  template <class Range>
  void numbers(Range const& range) {
    list(range, [&](double value) { number(value); });
  }

 private:
  /// Writes the shortest digits that read back to the same number; they hold until the next call.
  template <class Number>
  std::string_view digits(Number value) {
    char* const end = std::to_chars(digits_, digits_ + sizeof digits_, value).ptr;
    std::string_view const written(digits_, static_cast<std::size_t>(end - digits_));
    raw(written);
    return written;
  }

  void escape(unsigned char c) {
    constexpr char hex[] = "0123456789abcdef";
    if (c < 0x20) {
      char const code[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 15]};
      raw({code, sizeof code});
    } else {
      char const code[] = {'\\', static_cast<char>(c)};
      raw({code, sizeof code});
    }
  }

  OutputFile& output_;
  char digits_[32];
};

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
