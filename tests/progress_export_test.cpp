// How an import, and all that follows it, tells how far it has come; and how it is ended.
#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <stdexcept>
#include <typeinfo>

#include "export/NetworkColumns.hpp"
#include "export/NetworkExport.hpp"
#include "export/ReportExport.hpp"
#include "tests/fixture/Import.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/packed.hpp"

using support::Stage;
using velora::roadnetwork::Road;

namespace {

// Streets enough that most loops have more elements than they may pass without a word. One street
// crosses another without a junction.
PbfBlock grid() {
  constexpr std::int64_t side = 36;
  PbfBlock block;
  for (std::int64_t id = 1; id <= 2 * side + 1; ++id) {
    block.ways.push_back({.id = id, .tags = {{"highway", "road"}}});
    block.ways.back().tags.emplace_back(id % 3 == 0 ? "oneway" : "layer", id % 2 == 0 ? "1" : "-1");
  }
  auto const add = [&](std::int64_t latitude, std::int64_t longitude, std::size_t way) {
    auto const id = static_cast<std::int64_t>(block.nodes.size()) + 1;
    block.nodes.push_back({.id = id, .latitude = latitude, .longitude = longitude});
    block.ways[way].nodes.push_back(id);
    return id;
  };
  for (std::size_t i = 0; i < side * side; ++i) {
    block.ways[side + i % side].nodes.push_back(add(static_cast<std::int64_t>(i / side * 9),
                                                    static_cast<std::int64_t>(i % side * 9),
                                                    i / side));
  }
  add(4, 4, 2 * side);
  add(22, 5, 2 * side);
  block.relations = {{.id = 1,
                      .members = {{1, 2, "from"}, {0, side + 2, "via"}, {1, side + 2, "to"}},
                      .tags = {{"type", "restriction"}, {"restriction", "no_left_turn"}}}};
  return block;
}

std::string xmlOf(PbfBlock const& block) {
  std::string xml = "<osm version='0.6'>";
  for (PbfNode const& node : block.nodes) {
    xml += "<node id='" + std::to_string(node.id) + "' lat='" + std::to_string(node.latitude) +
           "e-7' lon='" + std::to_string(node.longitude) + "e-7'/>";
  }
  for (PbfWay const& way : block.ways) {
    xml += "<way id='" + std::to_string(way.id) + "'>";
    for (auto const node : way.nodes) xml += "<nd ref='" + std::to_string(node) + "'/>";
    for (auto const& [key, value] : way.tags) xml += "<tag k='" + key + "' v='" + value + "'/>";
    xml += "</way>";
  }
  return xml + "</osm>";
}

// Every stage there is.
void importAndWrite(Import& import, std::string const& file, std::string const& output) {
  import.importer.run(file);
  static_cast<void>(networkColumns(import.importer));
  NetworkExport network(*findFormat("geojson"), output, true);
  network.write(import.importer);
  ReportExport report(output, true);
  report.write(reportOn(import.importer), import.importer);
}

struct Cancelled : std::runtime_error {
  Cancelled() : std::runtime_error("cancelled") {}
};

void expectSound(velora::roadnetwork::RoadNetwork const& network) {
  std::size_t ends = 0;
  for (auto const& [id, node] : network->getNodes()) {
    ends += node->getIncomingRoads().size() + node->getOutgoingRoads().size();
  }
  EXPECT_EQ(ends, 2 * network->getRoads().size());
  for (Road const& road : network->getRoads()) {
    EXPECT_EQ(road->getCentersX().values().front(), road->getStartNode()->getPosition()[0]);
    EXPECT_EQ(road->getCentersY().values().back(), road->getEndNode()->getPosition()[1]);
  }
}

}  // namespace

TEST(Progress, OfEachStageGoesFromNothingToAll) {
  TemporaryFile const file(pbfFile("", {grid()}), ".pbf");
  TemporaryFile const output("", ".json");
  ImportOptions options;
  options.restrictions = true;
  Import import(options);
  std::set<Stage> stages;
  Stage last = Stage::reading;
  std::uint64_t lastDone = 0;
  std::uint64_t lastTotal = 0;
  import.importer.setProgress([&](Stage stage, std::uint64_t done, std::uint64_t total) {
    SCOPED_TRACE(nameOf(stage));
  stages.insert(stage);
  if (stage != last || done < lastDone) {
    EXPECT_EQ(lastDone, lastTotal) << "of " << nameOf(last);
    EXPECT_EQ(done, 0u);
  } else if (stage != Stage::reading && done != total) {
    EXPECT_LE(done - lastDone, 1024u);
    EXPECT_EQ(total, lastTotal);
  }
  EXPECT_LE(done, total);
  last = stage;
  lastDone = done;
  lastTotal = total;
});
importAndWrite(import, file.path(), output.path());
EXPECT_EQ(lastDone, lastTotal);
std::set<std::string_view> names;
for (Stage const stage : stages) names.insert(nameOf(stage));
EXPECT_EQ(names.size(), stages.size());
EXPECT_EQ(stages.size(), static_cast<std::size_t>(Stage::writingReport) + 1);
}

TEST(Progress, EndsTheImportWhereverItThrows) {
  PbfBlock const block = grid();
  for (auto const& [bytes, ending] :
       {std::pair{pbfFile("", {block}), ".pbf"}, std::pair{xmlOf(block), ".osm"},
        std::pair{gzip(xmlOf(block)), ".osm.gz"}, std::pair{bzip2(xmlOf(block)), ".osm.bz2"}}) {
    SCOPED_TRACE(ending);
    TemporaryFile const file(bytes, ending);
    bool const isPbf = ending == std::string_view(".pbf");
    bool isCancelled = true;
    for (std::size_t n = 1; isCancelled; ++n) {
      TemporaryFile const output("", ".json");
      ImportOptions options;
      options.restrictions = true;
      Import import(options);
      std::size_t calls = 0;
      isCancelled = false;
      import.importer.setProgress([&](Stage stage, std::uint64_t, std::uint64_t) {
        EXPECT_FALSE(isCancelled) << "called after it has thrown";
      isCancelled = ++calls == n && (isPbf || stage <= Stage::placingNodes);
      if (isCancelled) throw Cancelled();
    });
    try {
      importAndWrite(import, file.path(), output.path());
    } catch (std::exception const& error) {
      EXPECT_EQ(typeid(error), typeid(Cancelled)) << error.what();
    }
    expectSound(import.network);
    EXPECT_EQ(std::filesystem::file_size(output.path()), 0u);  // as it was
  }
  EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), 0u);
}
}

// Also where other errors get the name of the output.
TEST(Progress, EndsWritingInEachFormat) {
  TemporaryFile const file(pbfFile("", {grid()}), ".pbf");
  Import import;
  import.importer.run(file.path());
  ImportReport const report = reportOn(import.importer);
  import.importer.setProgress([](Stage, std::uint64_t done, std::uint64_t) {
    if (done > 0) throw Cancelled();
});
std::filesystem::path const output = file.path() + ".new";
for (Format const& format : formats()) {
  NetworkExport network(format, output, true);
  EXPECT_THROW(network.write(import.importer), Cancelled) << format.name();
}
for (char const* const ending : {".json", ".geojson", ".gpkg"}) {
  ReportExport written(output.string() + ending, true);
  EXPECT_THROW(written.write(report, import.importer), Cancelled) << ending;
  EXPECT_FALSE(std::filesystem::exists(output.string() + ending));
}
EXPECT_FALSE(std::filesystem::exists(output));
}
