#include "cli/printSummary.hpp"

#include <iomanip>
#include <ostream>
#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "importer/geographicLimits.hpp"
#include "report/roadLength.hpp"
#include "support/printable.hpp"

using velora::roadnetwork::Road;

namespace {

constexpr char const* listsThem = " (--report FILE lists them)";

// 1234567 as 1,234,567.
std::string grouped(std::size_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t i = digits.size(); i > 3;) digits.insert(i -= 3, ",");
  return digits;
}

std::string counted(std::size_t number, char const* word) {
  return grouped(number) + ' ' + word + (number == 1 ? "" : "s");
}

char const* joined(Joining joining) {
  switch (joining) {
    case Joining::all:
      return "joined";
    case Joining::compatible:
      return "joined where compatible";
    default:
      return "not joined";
  }
}

std::ostream& row(std::ostream& out, char const* label) {
  return out << "  " << std::left << std::setw(15) << label;
}

}  // namespace

void printSummary(RoadNetworkImporter const& importer, ImportReport const& report, Stopwatch& time,
                  std::ostream& out) {
  auto const& reader = importer.reader;
  auto const& network = importer.roadNetwork;
  std::size_t const nodes = network->getNodes().size();
  double metres = 0.0;
  for (Road const& road : network->getRoads()) metres += roadLength(road);
  std::vector<double> const limits = geographicLimits(importer);
  auto const& origin = network->getGeoReference();

  row(out, "file") << grouped(reader.counts().nodes) << " nodes, " << grouped(reader.counts().ways)
                   << " ways, " << grouped(reader.counts().relations) << " relations\n";
  row(out, "ways selected") << grouped(importer.selectedWays.size()) << " of "
                            << grouped(report.highwayWays) << " with a \"highway\" tag\n";
  row(out, "not imported") << grouped(report.notARoad.size()) << " no road, "
                           << grouped(report.missingNodes.size()) << " with nodes missing, "
                           << grouped(report.fewerThanTwoNodes.size())
                           << " with fewer than two nodes\n";
  row(out, "Nodes") << grouped(nodes) << '\n';
  row(out, "Roads") << grouped(network->getRoads().size()) << '\n';
  row(out, "joined Nodes") << grouped(importer.junctionNodeIds.size() - nodes) << '\n';
  out << std::fixed << std::setprecision(1);
  row(out, "total length") << metres / 1000.0 << " km\n";
  out << std::setprecision(7);
  if (limits.empty()) {
    row(out, "limits") << "unknown\n";
  } else {
    row(out, "limits") << "latitude " << limits[0] << " to " << limits[1] << ", longitude "
                       << limits[2] << " to " << limits[3] << '\n';
    row(out, "origin") << "latitude " << origin->getLatitude() << ", longitude "
                       << origin->getLongitude() << '\n';
  }
  row(out, "to check") << counted(report.toCheck(), "place") << listsThem << '\n';
  time.finished("summary");
  row(out, "time") << time.text() << '\n';
}

void printWritten(Options const& options, RoadNetworkImporter const& importer,
                  ImportReport const& report, std::ostream& out) {
  auto const& network = importer.roadNetwork;
  char const* const oneWays = options.import.oneWays == OneWays::implied ? "implied" : "tagged";
  out << (options.output == "-" ? "standard output" : support::printable(*options.output)) << ": "
      << counted(network->getNodes().size(), "Node") << ", "
      << counted(network->getRoads().size(), "Road") << " (" << joined(options.import.joining)
      << ", " << oneWays << " one-ways), " << counted(report.toCheck(), "place") << " to check"
      << (options.report ? "" : listsThem) << '\n';
  if (network->getRoads().size() > options.format->comfortableRoads) {
    out << "more than " << grouped(options.format->comfortableRoads)
        << " Roads are slow to open in a browser, if they open at all; QGIS shows them all from a "
           "GeoPackage (-o FILE.gpkg)\n";
  }
}
