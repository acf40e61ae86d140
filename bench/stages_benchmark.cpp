// Time of each stage of an import, and of releasing what it made.
//
//   stages_benchmark FILE... [--benchmark_... options]
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "graph/chainRoads.hpp"
#include "graph/createNodes.hpp"
#include "graph/createRoads.hpp"
#include "importer/OwnImport.hpp"
#include "importer/setGeographicReference.hpp"
#include "segments/assignSegmentElevations.hpp"
#include "segments/createRoadSegments.hpp"
#include "support/ustring.hpp"
#include "ways/collectWayAttributes.hpp"
#include "ways/selectHighwayWays.hpp"

namespace {

// Each round is a whole import, so the library must not choose by the time of a short stage.
constexpr int rounds = 5;

struct Stage {
  char const* name;
  void (*run)(std::optional<OwnImport>&, std::u16string const& file);
};

constexpr Stage stages[] = {
    {"read",
     [](std::optional<OwnImport>& import, std::u16string const& file) {
       import->importer.reader.setFile(file);
       import->importer.reader.populate(import->importer.reader.ways);
     }},
    {"selectHighwayWays",
     [](std::optional<OwnImport>& import, std::u16string const&) {
       import->importer.selectedWays = selectHighwayWays(import->importer.reader);
     }},
    {"collectWayAttributes", [](std::optional<OwnImport>& import,
                                std::u16string const&) { collectWayAttributes(import->importer); }},
    {"createNodes", [](std::optional<OwnImport>& import,
                       std::u16string const&) { createNodes(import->importer); }},
    {"createRoads", [](std::optional<OwnImport>& import,
                       std::u16string const&) { createRoads(import->importer); }},
    {"chainRoads",
     [](std::optional<OwnImport>& import, std::u16string const&) { chainRoads(import->importer); }},
    {"createRoadSegments", [](std::optional<OwnImport>& import,
                              std::u16string const&) { createRoadSegments(import->importer); }},
    {"assignSegmentElevations",
     [](std::optional<OwnImport>& import, std::u16string const&) {
       assignSegmentElevations(import->importer);
     }},
    {"setGeographicReference",
     [](std::optional<OwnImport>& import, std::u16string const&) {
       setGeographicReference(import->importer);
     }},
    {"release", [](std::optional<OwnImport>& import, std::u16string const&) { import.reset(); }},
};

// Runs the whole import, but takes the time of one stage alone; of all of them when `timed` is
// null.
void runStage(benchmark::State& state, std::string const& path, Stage const* timed) {
  std::u16string const file = support::to_ustring(path);
  for ([[maybe_unused]] auto _ : state) {
    std::optional<OwnImport> import(std::in_place);
    std::chrono::duration<double> total{};
    for (Stage const& stage : stages) {
      auto const start = std::chrono::steady_clock::now();
      stage.run(import, file);
      if (timed == nullptr || timed == &stage) total += std::chrono::steady_clock::now() - start;
    }
    state.SetIterationTime(total.count());
  }
}

// Makes the elements of a finished import once more in a model of their own, and releases them:
// what the result costs without finding out what it is.
void runModelAlone(benchmark::State& state, std::string const& path) {
  using namespace velora::roadnetwork;
  OwnImport import;
  import.importer.run(path);
  for ([[maybe_unused]] auto _ : state) {
    auto const start = std::chrono::steady_clock::now();
    {
      OwnImport copy;
      std::vector<unsigned long> ids;
      std::vector<std::u16string> names;
      std::vector<double> positions;
      for (auto const& [id, node] : import.network->getNodes()) {
        ids.push_back(id);
        names.push_back(node->getName());
        auto const position = node->getPosition();
        positions.insert(positions.end(), position.begin(), position.end());
      }
      copy.network->addNodes(ids, names, positions);
      std::vector<RoadSegmentNode> ends;
      for (std::size_t i = 0; i < ids.size(); ++i) {
        ends.push_back(RoadSegmentNode::create(copy.model, boost::uuids::uuid{}));
      }
      auto nextEnd = ends.begin();
      auto nextNode = copy.network->getNodes().begin();
      for (Road const& original : import.network->getRoads()) {
        // Any Nodes do: those in a row are found without a step into far memory.
        Node const node = nextNode->second;
        Road const road = Road::create(copy.model, boost::uuids::uuid{});
        road->setName(original->getName());
        road->setStartNode(node);
        road->setEndNode(node);
        auto const& x = original->getCentersX();
        auto const& y = original->getCentersY();
        road->setCenters({x.begin(), x.end()}, {y.begin(), y.end()});
        copy.network->addRoad(road);
        RoadSegment const segment = RoadSegment::create(copy.model, boost::uuids::uuid{});
        segment->setStartNode(*nextEnd);
        segment->setEndNode(*nextEnd);
        auto const zeros = original->getRoadSegments()[0]->getBankingAngles();
        segment->setGeometry(road->getCentersX(), road->getCentersY(), zeros, zeros, zeros);
        road->addRoadSegment(segment);
        if (++nextNode == copy.network->getNodes().end()) {
          nextNode = copy.network->getNodes().begin();
          nextEnd = ends.begin();
        } else {
          ++nextEnd;
        }
      }
    }
    state.SetIterationTime(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (argc < 2) {
    std::fprintf(stderr, "usage: stages_benchmark FILE... [--benchmark_...]\n");
    return 2;
  }
  for (int i = 1; i < argc; ++i) {
    std::string const path = argv[i];
    std::string const name = std::filesystem::path(path).filename().string() + "/";
    for (Stage const& stage : stages) {
      benchmark::RegisterBenchmark(
          (name + stage.name).c_str(),
          [path, &stage](benchmark::State& state) { runStage(state, path, &stage); })
          ->UseManualTime()
          ->Iterations(rounds)
          ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark((name + "model alone").c_str(),
                                 [path](benchmark::State& state) { runModelAlone(state, path); })
        ->UseManualTime()
        ->Iterations(rounds)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        (name + "total").c_str(),
        [path](benchmark::State& state) { runStage(state, path, nullptr); })
        ->UseManualTime()
        ->Iterations(rounds)
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::RunSpecifiedBenchmarks();
}
