#include "report/sentence.hpp"

#include <array>
#include <charconv>
#include <limits>

#include "support/printable.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Way;

namespace {

// With one digit behind the point, whatever the locale.
std::string decimal(double value) {
  std::array<char, std::numeric_limits<double>::max_exponent10 + 8> digits{};
  auto const [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                          std::chars_format::fixed, 1);
  return {digits.data(), end};
}

std::string metresOrMore(double metres) {
  return metres < 1000.0 ? decimal(metres) + " m" : decimal(metres / 1000.0) + " km";
}

std::string counted(std::int64_t count, char const* one) {
  return std::to_string(count) + ' ' + one + (count == 1 ? "" : "s");
}

template <class Value>
Value detail(Finding const& finding, std::string_view name) {
  for (auto const& [key, value] : finding.details) {
    if (key == name) return std::get<Value>(value);
  }
  return Value();
}

std::string listOfWays(std::vector<Way const*> const& ways) {
  std::string text = ways.size() == 1 ? "way " : "ways ";
  for (std::size_t i = 0; i < ways.size(); ++i) {
    if (i > 0) text += ", ";
    text += std::to_string(ways[i]->id);
  }
  return text;
}

std::string valueOf(Way const& way, std::u16string_view key) {
  auto const tag = way.tags.find(key);
  return tag == way.tags.end() ? "" : support::printable(support::ustring_to_utf8(tag->second));
}

std::string named(Way const& way) {
  std::string const name = valueOf(way, u"name");
  std::string const text = "way " + std::to_string(way.id);
  return name.empty() ? text + " has no name" : text + " is \"" + name + '"';
}

std::string directionOf(std::int64_t direction) {
  constexpr std::array<char const*, 3> texts{"one-way from its start to its end",
                                             "one-way from its end to its start", "two-way"};
  return texts.at(static_cast<std::size_t>(direction - 1));
}

std::string trapOf(Finding const& finding) {
  auto const nodes = detail<std::int64_t>(finding, "nodeCount");
  return "By the directions of travel, one " +
         std::string(detail<std::string_view>(finding, "trap")) +
         (nodes == 1 ? " this Node." : " these " + std::to_string(nodes) + " Nodes.");
}

}  // namespace

std::string sentence(Finding const& finding, double metres) {
  auto const& ways = finding.ways;
  switch (finding.kind) {
    case Finding::Kind::droppedDirections:
      return "The road is " + directionOf(detail<std::int64_t>(finding, "direction")) +
             ", unlike its " + listOfWays(ways) + " over " + metresOrMore(metres) + '.';
    case Finding::Kind::traps:
      return trapOf(finding);
    case Finding::Kind::crossings:
      if (finding.severity == Severity::low) {
        return "Two roads, of " + listOfWays(ways) + ", cross on different layers, but only " +
               decimal(metres) + " m apart in height: the ramps of the network are too flat.";
      }
      return "Two roads, of " + listOfWays(ways) + ", cross without a common node, " +
             (metres == 0.0 ? "on one level." : decimal(metres) + " m apart in height.");
    case Finding::Kind::islands:
      return counted(detail<std::int64_t>(finding, "roadCount"), "road") + ", " +
             metresOrMore(metres) + " long, not connected with the rest of the network.";
    case Finding::Kind::impliedOneway:
      return "No \"oneway\" tag where one is implied: imported as two-way.";
    case Finding::Kind::unknownOneway:
      return "oneway=" + valueOf(*ways[0], u"oneway") + " is not understood: imported as two-way.";
    case Finding::Kind::unmappedRestrictions:
      return "Turn restriction " + std::to_string(detail<std::int64_t>(finding, "relation")) +
             " has no place in the network: " +
             std::string(detail<std::string_view>(finding, "reason")) + '.';
    case Finding::Kind::sharedNodes:
      return "A node in the middle of " + listOfWays(ways) +
             ", which are on different layers, connects them.";
    case Finding::Kind::oddLayers:
      return "layer=" + valueOf(*ways[0], u"layer") + " is not a number from -5 to 5.";
    case Finding::Kind::levelBridges:
      return "A bridge or tunnel without a \"layer\" tag, at the height of the ground.";
    case Finding::Kind::lowClearance:
      return "Two roads, of " + listOfWays(ways) + ", cross " + decimal(metres) +
             " m apart in height, too little for a lorry.";
    case Finding::Kind::areas:
      return "An area, imported as a road around it.";
    case Finding::Kind::steep:
      return "The road rises or falls by up to " + decimal(detail<double>(finding, "percent")) +
             " %, and by more than 15 % over " + metresOrMore(metres) + '.';
    case Finding::Kind::differentNames:
    case Finding::Kind::nameAndNone:
      return "One road, but " + named(*ways[0]) + " and " + named(*ways[1]) + '.';
  }
  return {};
}
