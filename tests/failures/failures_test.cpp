// What fails while a file is imported through the extension, fails cleanly, wherever it is.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "gateway/ElementObject.hpp"
#include "gateway/importOSMRoadNetworkImpl.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"
#include "support/ustring.hpp"
#include "tests/failures/injected.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/Town.hpp"
#include "tests/fixture/packed.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadImpl;
using velora::roadnetwork::RoadNetwork;

namespace {

// A crossing, chains to join from both sides, a loop, long names and layers.
std::string xml() {
  Town town(R"(
      a--b--c--d--e
            |     |
      f--g--h--i--j--k
  )");
  town.way("ab", "name=A Street with a Name that is not Short").way("cb", "name=Übergang,layer=1");
  town.way("edc", "oneway=yes").way("jihgf", "name=Long Road").way("hc").way("ej", "oneway=-1");
  town.way("jk", "bridge=yes,layer=-2").way("kj", "highway=service,layer=yes");
  return town.xml();
}

std::string pbf(PbfPacking packing) {
  PbfBlock block;
  for (std::int64_t i = 1; i <= 9; ++i) {
    block.nodes.push_back({i, i * 1000, i * 900, {{"ref", std::to_string(i)}}});
  }
  std::vector<std::int64_t> const ways[] = {{1, 2, 3}, {4, 3}, {4, 5, 6}, {6, 7}, {8, 2, 9}};
  for (std::int64_t id = 1; auto const& nodes : ways) {
    block.ways.push_back({id++, nodes, {{"highway", "road"}, {"name", "Way of some length"}}});
  }
  block.relations.push_back({1, {{1, 1, "outer"}}, {{"type", "route"}}});
  return pbfFile({}, {block}, packing);
}

template <class Roads>
std::ptrdiff_t count(Roads const& roads, Road const& road) {
  return std::count(roads.begin(), roads.end(), road);
}

// What holds of a network at any time.
void checkWellFormed(RoadNetwork const& network) {
  for (Road const& road : network->getRoads()) {
    Node const start = road->getStartNode();
    Node const end = road->getEndNode();
    ASSERT_TRUE(start && end);
    EXPECT_EQ(count(start->getOutgoingRoads(), road), 1);
    EXPECT_EQ(count(end->getIncomingRoads(), road), 1);
    std::size_t const points = road->getCentersX().size();
    ASSERT_GE(points, 2u);
    ASSERT_EQ(road->getCentersY().size(), points);
    EXPECT_EQ(road->getCentersX()[0], start->getPosition()[0]);
    EXPECT_EQ(road->getCentersY()[points - 1], end->getPosition()[1]);
    EXPECT_LE(road->getRoadSegments().size(), 1u);
    for (auto const& segment : road->getRoadSegments()) {
      EXPECT_EQ(segment->getElevations().size(), points);
    }
  }
  std::size_t ends = 0;
  for (auto const& [id, node] : network->getNodes()) {
    EXPECT_EQ(node->getID(), id);
    ends += node->getIncomingRoads().size() + node->getOutgoingRoads().size();
  }
  EXPECT_EQ(ends, 2 * network->getRoads().size());  // so all are those of roads of the network
}

struct Case {
  char const* name;
  std::string bytes;
};

void PrintTo(Case const& file, std::ostream* out) {
  *out << file.name;
}

class Failures : public testing::TestWithParam<Case> {
 protected:
  void SetUp() override {
    ASSERT_NE(library, nullptr) << dlerror();
    import({});  // what libraries keep for the life of the process, they have now
    ASSERT_EQ(errorOf({}), "");
    ASSERT_GT(roads, 3u);
  }

  // Imports into a network of its own, which is checked whatever happens, and counts its roads.
  void import(injected::Plan const& plan) {
    auto const model = kb::zero::Model::create();
    auto const network = RoadNetwork::create(model, {});
    auto const m = host::createElementArray(model);
    auto const n = host::createElementArray(network);
    HostArray const* inputs[] = {m.get(), n.get(), name.get()};
    auto* const entry = reinterpret_cast<decltype(&importOSMRoadNetworkImpl)>(
        dlsym(library, "importOSMRoadNetworkImpl"));
    std::unique_ptr<HostArray> limits;
    error.clear();
    injected::follow(plan);
    try {
      entry(1, &limits, 3, inputs);
    } catch (std::exception const& failure) {
      error = failure.what();
    }
    allocationFailed = injected::follow({});
    EXPECT_EQ(limits == nullptr, !error.empty());
    checkWellFormed(network);
    roads = network->getRoads().size();
  }

  // The error of an import that leaves nothing over.
  std::string const& errorOf(injected::Plan const& plan) {
    auto const descriptors = [] {
      return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
    };
    std::ptrdiff_t const files = descriptors();
    std::ptrdiff_t const pieces = injected::piecesInUse();
    import(plan);
    EXPECT_EQ(injected::piecesInUse(), pieces);
    EXPECT_EQ(descriptors(), files);
    return error;
  }

  TemporaryFile file{GetParam().bytes};
  std::u16string path = support::to_ustring(file.path());
  std::unique_ptr<HostArray> name = host::createCharacterArray({1, path.size()}, path);
  void* library = dlopen(EXTENSION, RTLD_NOW | RTLD_LOCAL);  // stays: errors may be of it
  std::string error = std::string(1000, ' ');                // needs no more memory later on
  std::size_t roads = 0;
  bool allocationFailed = false;
};

}  // namespace

TEST_P(Failures, OfEachAllocationAreBadAlloc) {
  std::size_t const all = roads;
  for (bool const allAfterItToo : {false, true}) {
    std::size_t failures = 0;
    std::size_t n = 0;
    do {
      SCOPED_TRACE("allocation " + std::to_string(++n));
      EXPECT_THAT(errorOf({.failingAllocation = n, .allAfterItToo = allAfterItToo}),
                  testing::AnyOf("", "std::bad_alloc"));
      failures += error.empty() ? 0 : 1;
    } while (allocationFailed && !HasFailure());
    EXPECT_GT(failures, 100u);
    EXPECT_EQ(roads, all);
  }
}

TEST_P(Failures, OfReadingNameFileAndPlaceAndAreNotShortReads) {
  std::size_t const all = roads;
  for (std::size_t n = 1; n < 6; ++n) {
    std::string const place = ": byte " + std::to_string(50 * (n - 1)) + ": can't read: ";
    EXPECT_THAT(errorOf({.failingRead = n, .largestRead = 50}),
                testing::StartsWith(file.path() + place));
  }
  EXPECT_EQ(errorOf({.largestRead = 1, .interrupted = true}), "");
  EXPECT_EQ(roads, all);
}

TEST(ModelFailures, LeaveARoadAtItsNodes) {
  auto const model = kb::zero::Model::create();
  auto const network = RoadNetwork::create(model, {});
  network->addNodes({1, 2}, {u"", u""}, std::vector<double>(6));
  for (unsigned long const node : {1U, 1U, 2U}) {  // for one more each, the lists need memory
    auto const road = Road::create(model, {});
    road->setStartNode(network->getNodes()[node]);
    road->setEndNode(network->getNodes()[node]);
    road->setCenters({0, 0}, {0, 0});
    network->addRoad(road);
  }
  Road const last = network->getRoads().back();
  for (auto const set : {&RoadImpl::setStartNode, &RoadImpl::setEndNode}) {
    injected::follow({.failingAllocation = 1});
    EXPECT_THROW((last.get()->*set)(network->getNodes().begin()->second), std::bad_alloc);
    injected::follow({});
    EXPECT_EQ(last->getStartNode()->getID() + last->getEndNode()->getID(), 4u);
    checkWellFormed(network);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, Failures,
    testing::Values(Case{"xml", xml()}, Case{"gzip", gzip(xml())}, Case{"bzip2", bzip2(xml())},
                    Case{"raw", pbf(PbfPacking::raw)}, Case{"zlib", pbf(PbfPacking::zlib)},
                    Case{"lz4", pbf(PbfPacking::lz4)}, Case{"zstd", pbf(PbfPacking::zstd)}),
    [](auto const& param) { return std::string(param.param.name); });
