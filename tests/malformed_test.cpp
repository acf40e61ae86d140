// Odd and broken files of all formats, and what a good reader makes of each: one test for a row of
// the table that comes with them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <map>
#include <sstream>

#include "osm/ReadError.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/Import.hpp"

using velora::roadnetwork::Road;

namespace {

struct Row {
  std::string file;      // empty where the table is absent
  std::string expected;  // accept, reject or any
  std::string graph;     // what the import makes of it; may be empty
  std::size_t number = 0;
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.file;
}

std::string const folder = TEST_DATA "/malformed/";

std::vector<Row> rows() {
  std::vector<Row> result;
  std::ifstream manifest(folder + "MANIFEST.tsv");
  std::string line;
  for (std::getline(manifest, line); std::getline(manifest, line);) {
    Row row;
    std::string contents;
    std::istringstream cells(line);
    std::getline(cells, row.file, '\t');
    std::getline(cells, row.expected, '\t');
    std::getline(cells, contents, '\t');
    std::getline(cells, row.graph, '\t');
    row.number = result.size() + 1;
    result.push_back(row);
  }
  if (result.empty()) result.emplace_back();
  return result;
}

// A file may have several rows, so the number of the row is part of the name.
std::string testName(testing::TestParamInfo<Row> const& info) {
  if (info.param.file.empty()) return "absent";
  std::string name = "row" + std::to_string(info.param.number) + "_" + info.param.file;
  for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  return name;
}

std::string list(std::vector<OpenStreetMap::Id> const& ids) {
  std::string text;
  for (auto const id : ids) text += (text.empty() ? "" : ", ") + std::to_string(id);
  return "[" + text + "]";
}

// The ids of the nodes under a road's points.
std::vector<OpenStreetMap::Id> nodesOf(Road const& road, OpenStreetMap::NodeTable const& all) {
  auto const start = static_cast<OpenStreetMap::Id>(road->getStartNode()->getID());
  auto const end = static_cast<OpenStreetMap::Id>(road->getEndNode()->getID());
  std::vector<OpenStreetMap::Id> ids{start};
  for (std::size_t i = 1; i + 1 < road->getCentersX().size(); ++i) {
    ids.push_back(0);
    for (auto const& node : all) {
      if (node.first != road->getCentersX()[i] || node.second != road->getCentersY()[i]) continue;
      // Where nodes share a place, an end of the road is the less likely one.
      if (ids.back() == 0 || (node.id != start && node.id != end)) ids.back() = node.id;
    }
  }
  ids.push_back(end);
  return ids;
}

// The network in the words of the table. `shortly`: only count the roads; `named`: only their
// names.
std::string describe(Import const& import, bool shortly, bool named) {
  double pieces = 0.0;
  std::map<unsigned long, std::string> roads;
  for (Road const& road : import.network()->getRoads()) {
    pieces += road->getWeight();
    std::string const id = std::to_string(road->getID());
    std::string const direction = std::to_string(static_cast<int>(road->getDirection()));
    roads[road->getID()] = named ? "\"" + support::ustring_to_utf8(road->getName()) + "\""
                                 : id + ":" + list(nodesOf(road, import.importer().reader.nodes)) +
                                       " dir" + direction + " ways" +
                                       list(waysOf(import.importer(), road->getID()));
  }
  std::string all;
  for (auto const& [id, road] : roads) all += (all.empty() ? "" : "; ") + road;
  if (named) return "ACCEPT; " + all;
  if (shortly) all = std::to_string(roads.size()) + " roads";
  std::ostringstream text;
  text << "ACCEPT; junctions " << import.importer().junctionNodeIds.size() << ", roads cut "
       << pieces << " -> Nodes " << import.network()->getNodes().size() << ", roads "
       << roads.size() << " [" << all << "]";
  return text.str();
}

class Malformed : public testing::TestWithParam<Row> {};

TEST_P(Malformed, File) {
  Row const& row = GetParam();
  if (row.file.empty()) GTEST_SKIP() << "there is no " << folder;
  ASSERT_THAT(row.expected, testing::AnyOf("accept", "reject", "any"));
  std::string const path = folder + row.file;
  ASSERT_TRUE(std::ifstream(path)) << path;
  try {
    Import const import(path);
    EXPECT_NE(row.expected, "reject");
    if (row.graph.empty()) return;
    EXPECT_EQ(describe(import, row.graph.ends_with(" roads]"), row.graph.starts_with("ACCEPT; \"")),
              row.graph);
  } catch (OpenStreetMap::ReadError const& error) {
    EXPECT_NE(row.expected, "accept") << error.what();
    EXPECT_THAT(error.what(), testing::StartsWith(path + ": "));
    EXPECT_EQ(std::string(error.what()).find_first_of("\r\n"), std::string::npos) << error.what();
  }
}

INSTANTIATE_TEST_SUITE_P(Manifest, Malformed, testing::ValuesIn(rows()), testName);

}  // namespace
