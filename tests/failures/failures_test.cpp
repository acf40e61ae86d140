// What fails while a file is imported through the extension, fails cleanly, wherever it is.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "gateway/ElementObject.hpp"
#include "gateway/importOSMRoadNetworkImpl.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"
#include "osm/ReadError.hpp"
#include "support/ustring.hpp"
#include "tests/failures/injected.hpp"
#include "tests/fixture/PbfFile.hpp"
#include "tests/fixture/TemporaryFile.hpp"
#include "tests/fixture/Town.hpp"
#include "tests/fixture/packed.hpp"

using injected::Mode;
using kb::zero::ModelElementImpl;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
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
  town.way("cde", "oneway=yes").way("jihgf", "name=Long Road").way("ch").way("ej", "oneway=-1");
  town.way("jk", "bridge=yes,layer=-2").way("kj", "highway=service,layer=yes");
  return town.xml();
}

std::string pbf(PbfPacking packing) {
  PbfBlock block;
  for (std::int64_t i = 1; i <= 9; ++i) {
    block.nodes.push_back({i, i * 1000, i * 900, {{"ref", std::to_string(i)}}});
  }
  std::vector<std::int64_t> const ways[] = {{1, 2, 3}, {4, 3}, {4, 5, 6}, {6, 7}, {8, 2, 9}};
  for (auto const& nodes : ways) {
    auto const id = static_cast<std::int64_t>(block.ways.size()) + 1;
    block.ways.push_back({id, nodes, {{"highway", "road"}, {"name", "Way of some length"}}});
  }
  block.relations.push_back({1, {{1, 1, "outer"}}, {{"type", "route"}}});
  return pbfFile({}, {block}, packing);
}

std::ptrdiff_t descriptors() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
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
    EXPECT_EQ(network->getNodes()[start->getID()], start);
    EXPECT_EQ(network->getNodes()[end->getID()], end);
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
  for (auto const& [id, node] : network->getNodes()) {
    EXPECT_EQ(node->getID(), id);
    for (Road const& road : node->getIncomingRoads()) {
      EXPECT_EQ(road->getEndNode(), node);
      EXPECT_EQ(count(network->getRoads(), road), 1);
    }
    for (Road const& road : node->getOutgoingRoads()) {
      EXPECT_EQ(road->getStartNode(), node);
      EXPECT_EQ(count(network->getRoads(), road), 1);
    }
  }
}

struct Case {
  char const* name;
  std::function<std::string()> bytes;
};

void PrintTo(Case const& fileCase, std::ostream* out) {
  *out << fileCase.name;
}

class Failures : public testing::TestWithParam<Case> {
 protected:
  void SetUp() override {
    ASSERT_NE(library, nullptr) << dlerror();
    entry = reinterpret_cast<decltype(entry)>(dlsym(library, "importOSMRoadNetworkImpl"));
    import();  // what libraries keep for the life of the process, they have now
    roads = import();
    ASSERT_GT(roads, 3u);
    elements = ModelElementImpl::liveCount();
  }
  void TearDown() override {
    injected::failAllocation(0, Mode::once);
    injected::setReading({});
  }

  // Imports into a network of its own, which is checked whatever happens. Returns its roads.
  std::size_t import(std::function<void()> const& beginFailing = [] {}) {
    auto const model = kb::zero::Model::create();
    auto const network = RoadNetwork::create(model, {});
    auto const m = host::createElementArray(model);
    auto const n = host::createElementArray(network);
    HostArray const* inputs[] = {m.get(), n.get(), name.get()};
    std::unique_ptr<HostArray> limits;
    beginFailing();
    try {
      entry(1, &limits, 3, inputs);
    } catch (...) {
      injected::failAllocation(0, Mode::once);
      injected::setReading({});
      EXPECT_EQ(limits, nullptr);
      EXPECT_EQ(model->references(), 2u);
      checkWellFormed(network);
      throw;
    }
    injected::failAllocation(0, Mode::once);
    injected::setReading({});
    checkWellFormed(network);
    return network->getRoads().size();
  }

  // Whether nothing is left over, and the process can go on.
  void checkAfterwards(std::ptrdiff_t piecesBefore, std::ptrdiff_t filesBefore) {
    EXPECT_EQ(ModelElementImpl::liveCount(), elements);
    EXPECT_EQ(injected::piecesInUse(), piecesBefore);
    EXPECT_EQ(descriptors(), filesBefore);
  }

  TemporaryFile file{GetParam().bytes()};
  std::unique_ptr<HostArray> name = [&] {
    std::u16string const path = support::to_ustring(file.path());
    return host::createCharacterArray({1, path.size()}, path);
  }();
  void* library = dlopen(EXTENSION, RTLD_NOW | RTLD_LOCAL);  // stays: errors may be of it
  decltype(&importOSMRoadNetworkImpl) entry = nullptr;
  std::size_t roads = 0;
  std::size_t elements = 0;
};

}  // namespace

TEST_P(Failures, OfEachAllocationIsBadAlloc) {
  for (Mode const mode : {Mode::once, Mode::fromThenOn}) {
    bool done = false;
    std::size_t failures = 0;
    for (std::size_t n = 1; !done && !HasFailure(); ++n) {
      SCOPED_TRACE("allocation " + std::to_string(n));
      std::ptrdiff_t const files = descriptors();
      std::ptrdiff_t const pieces = injected::piecesInUse();
      try {
        import([&] { injected::failAllocation(n, mode);
      });
      done = !injected::allocationFailed();
    }
    catch (std::bad_alloc const&) {
      ++failures;
    }
    checkAfterwards(pieces, files);
  }
  EXPECT_GT(failures, 100u);
  EXPECT_EQ(import(), roads);
}
}

TEST_P(Failures, OfReadingNameFileAndPlace) {
  injected::setReading({});
  std::size_t calls = 0;
  import([] { injected::setReading({50, false, 0});
});
for (std::size_t n = 1; n < 6; ++n) {
  std::ptrdiff_t const files = descriptors();
  std::ptrdiff_t const pieces = injected::piecesInUse();
  try {
      import([&] { injected::setReading({50, false, n});
  });
  ADD_FAILURE() << "read " << n;
}
catch (OpenStreetMap::ReadError const& error) {
  std::string const start =
      file.path() + ": byte " + std::to_string(50 * (n - 1)) + ": can't read: ";
  EXPECT_THAT(error.what(), testing::StartsWith(start));
  ++calls;
}
checkAfterwards(pieces, files);
}
EXPECT_EQ(calls, 5u);
}

TEST_P(Failures, AreNotShortOrInterruptedReads) {
  EXPECT_EQ(import([] { injected::setReading({1, true, 0}); }), roads);
}

INSTANTIATE_TEST_SUITE_P(Formats, Failures,
                         testing::Values(Case{"xml", xml}, Case{"gzip", [] { return gzip(xml()); }},
                                         Case{"bzip2", [] { return bzip2(xml()); }},
                                         Case{"raw", [] { return pbf(PbfPacking::raw); }},
                                         Case{"zlib", [] { return pbf(PbfPacking::zlib); }},
                                         Case{"lz4", [] { return pbf(PbfPacking::lz4); }},
                                         Case{"zstd", [] { return pbf(PbfPacking::zstd); }}),
                         [](auto const& param) { return std::string(param.param.name); });
