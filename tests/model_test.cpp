// Tests of the model: reference counts, lifetimes, opposite references and the containers.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <functional>
#include <map>
#include <numeric>
#include <random>
#include <ranges>
#include <unordered_set>

#include "model/roadnetwork/RoadNetwork.hpp"

using namespace kb::zero;
using namespace velora::roadnetwork;
using testing::ElementsAre;

namespace {

constexpr boost::uuids::uuid nil{};
using Ids = std::vector<unsigned long>;
using Doubles = std::vector<double>;
using Names = std::vector<std::u16string>;
using Ends = std::map<unsigned long, std::array<Ids, 2>>;  // a node's incoming and outgoing roads

/// A network to work on; whatever a test does to it, no element may be left over.
class ModelTest : public testing::Test {
 protected:
  void TearDown() override {
    network = RoadNetwork();
    model = Model();
    EXPECT_EQ(ModelElementImpl::liveCount(), before);
  }
  void makeNetwork(Ids const& ids) {
    model = Model::create();
    network = RoadNetwork::create(model, nil);
    network->setGeoReference(GeoReference::create(model, nil));
    network->addNodes(ids, Names(ids.size()), Doubles(3 * ids.size()));
  }
  Node node(unsigned long id) const { return network->getNodes()[id]; }
  Road addRoad(unsigned long id, unsigned long start, unsigned long end) {
    Road const road = Road::create(model, nil);
    road->setID(id);
    road->setStartNode(node(start));
    road->setEndNode(node(end));
    network->addRoad(road);
    return road;
  }
  static RoadSegment addSegment(Road const& road, RoadSegmentNode const& bothEnds) {
    RoadSegment const segment = RoadSegment::create(bothEnds->getModel(), nil);
    segment->setStartNode(bothEnds);
    segment->setEndNode(bothEnds);
    road->addRoadSegment(segment);
    return segment;
  }
  Ends ends() const {
    Ends result;
    for (auto const& [id, n] : network->getNodes()) {
      for (Road const& road : n->getIncomingRoads()) result[id][0].push_back(road->getID());
      for (Road const& road : n->getOutgoingRoads()) result[id][1].push_back(road->getID());
    }
    return result;
  }

  std::size_t before = ModelElementImpl::liveCount();
  Model model;
  RoadNetwork network;
};

TEST_F(ModelTest, OutlivedAndNullHandlesAreRefused) {
  makeNetwork({});
  Road const road = Road::create(model, {{1, 2, 3}}), null;
  EXPECT_EQ(road->getUuid(), (boost::uuids::uuid{{1, 2, 3}}));
  EXPECT_TRUE(null == nullptr && road != nullptr && null < road);
  EXPECT_EQ((std::unordered_set<Road>{road, null, Road(road.get())}.size()), 2u);
  EXPECT_EQ(road->getModel(), model);
  model = Model();
  EXPECT_FALSE(road->getModel());
  EXPECT_EQ(road->references(), 1u);
  null.addRef();
  null.removeRef();
  EXPECT_THROW(null->getID(), NullHandleError);
  EXPECT_THROW(Road::create(model, nil), NullHandleError);
  EXPECT_THROW(network->addRoad(null), NullHandleError);
  EXPECT_THROW(road->addRoadSegment(RoadSegment()), NullHandleError);
  EXPECT_THROW(network->addNodes({1}, {u""}, {1, 2, 3}), NullHandleError);
}

// Iterators of collections go by index: what a change leaves behind them is still read safely.
TEST_F(ModelTest, OppositeEndsStayInStep) {
  makeNetwork({1, 2});
  Road const a = addRoad(7, 1, 2), b = addRoad(8, 1, 2);
  a->setStartNode(node(1));  // the same again keeps its place
  a->setEndNode(node(2));
  EXPECT_EQ(ends(), (Ends{{1, {Ids{}, {7, 8}}}, {2, {Ids{7, 8}, {}}}}));
  a->setEndNode(node(1));
  EXPECT_EQ(ends(), (Ends{{1, {Ids{7}, {7, 8}}}, {2, {Ids{8}, {}}}}));
  a->setStartNode(node(2));
  b->setStartNode(Node());
  EXPECT_EQ(ends(), (Ends{{1, {Ids{7}, {}}}, {2, {Ids{8}, {7}}}}));
  EXPECT_FALSE(b->getStartNode());
  EXPECT_EQ(node(2)->references(), 5u);  // model, network, both roads and the handle here
  EXPECT_EQ(a->references(), 3u);        // model, network and the handle here, but no node
  for (unsigned long id = 1; id <= 6; ++id) addRoad(id, 1, 1);
  auto const& roads = node(1)->getOutgoingRoads();
  for (auto road = roads.begin(); road != roads.end();) {
    Road const current = *road;
    current->getID() % 3 == 0 ? static_cast<void>(++road) : current->destroy();
  }
  EXPECT_EQ(ends(), (Ends{{1, {Ids{7, 3, 6}, {3, 6}}}, {2, {Ids{8}, {7}}}}));
  model = Model();  // from here on the network alone keeps them
  while (!network->getRoads().empty()) network->getRoads().front()->destroy();
  EXPECT_EQ(ends(), Ends());
  EXPECT_THROW(roads[0], std::out_of_range);
  EXPECT_THROW(roads.stored(0), std::out_of_range);
}

// All orders in which five things can go. Three bits of `traits` each stand for one that is
// destroyed and not just released, the fourth for parts in a model of their own. What is destroyed,
// nothing refers to.
TEST_F(ModelTest, LifetimesInEveryOrderOfRelease) {
  for (unsigned traits = 0; traits < 16; ++traits) {
    std::string order = "mnprs";  // model, network, parts, a road and its start node
    do {
      SCOPED_TRACE(order + std::to_string(traits));
      makeNetwork({1, 2});
      Node start = node(1);
      Road road = addRoad(1, 1, 2);
      addRoad(2, 1, 1);
      addRoad(3, 2, 1);
      Model partsModel = traits & 8 ? Model::create() : model;
      RoadSegmentNode const joint = RoadSegmentNode::create(partsModel, nil);
      RoadSegment const first = addSegment(road, joint), second = addSegment(road, joint);
      addSegment(network->getRoads().back(), joint);
      GeoReference const origin = GeoReference::create(partsModel, nil);
      network->setGeoReference(origin);
      bool firstStands = true;
      std::array<bool, 3> stands{true, true, true};
      auto const destroy = [](auto const& handle) {
        for (int time = 0; time < 2; ++time) handle->destroy();
        ASSERT_FALSE(handle->getModel());
        ASSERT_EQ(handle->references(), 1u);
      };
      auto const drop = [&](unsigned bit, auto& handle) {
        stands[bit] = (traits >> bit & 1) == 0;
        if (!stands[bit]) destroy(handle);
        handle = {};
      };
      for (char const step : order) {
        if (step == 'm') model = Model(), partsModel = traits & 8 ? partsModel : Model();
        if (step == 'n') drop(0, network);
        if (step == 'r') drop(1, road);
        if (step == 's') drop(2, start);
        if (step == 'p') {
          destroy(joint);
          ASSERT_FALSE(first->getStartNode() || first->getEndNode() || second->getEndNode());
          destroy(first);
          firstStands = false;
          destroy(origin);
          ASSERT_FALSE(network && network->getGeoReference());
        }
        bool const loopStands = stands[0] && (model || network);
        bool const roadStands = stands[0] && stands[1] && (model || network || road);
        ASSERT_TRUE(!start ||
                    start->getOutgoingRoads().size() == std::size_t{loopStands} + roadStands);
        if (!road) continue;
        ASSERT_EQ(bool(road->getStartNode()), stands[0] && stands[2]);
        ASSERT_EQ(bool(road->getEndNode()), stands[0]);
        ASSERT_EQ(road->getRoadSegments().size(), stands[0] * (1u + firstStands));
      }
      partsModel = Model();
      ASSERT_EQ(ModelElementImpl::liveCount(), before + 4);  // the parts that have handles
    } while (std::next_permutation(order.begin(), order.end()));
  }
}

// Unused ends stay in the model until they have been used; a handle does not keep them in it.
TEST_F(ModelTest, EndsAndOriginsLeaveTheModelWithTheirLastUser) {
  makeNetwork({});
  Road const road = addRoad(1, 0, 0);
  std::map<char, RoadSegmentNode> nodes;
  for (char const letter : {'a', 'b', 'c'}) nodes[letter] = RoadSegmentNode::create(model, nil);
  RoadSegment const one = addSegment(road, nodes['a']), two = addSegment(road, nodes['a']);
  std::pair<std::function<void()>, std::string> const steps[] = {
      {[&] { one->setStartNode(nodes['a']); }, "abc"},
      {[&] { RoadSegment::create(Model::create(), nil)->setStartNode(nodes['b']); }, "ac"},
      {[&] { one->setStartNode(nodes['b']), one->setEndNode(nodes['b']); }, "abc"},
      {[&] { two->setStartNode(nodes['c']), two->setEndNode(nodes['c']); }, "bc"},
      {[&] { one->setStartNode(nodes['a']); }, "abc"},
      {[&] { one->setEndNode(RoadSegmentNode()); }, "ac"},
      {[&] { one->destroy(); }, "c"},
      {[&] { road->destroy(); }, ""}};
  for (auto const& [change, expected] : steps) {
    change();
    std::string inModel;
    for (auto const& [letter, end] : nodes)
      inModel += end->getModel() ? std::string(1, letter) : "";
    EXPECT_EQ(inModel, expected);
  }
  Model const another = Model::create();  // in which nothing comes back that was made elsewhere
  RoadSegment::create(another, nil)->setStartNode(nodes['a']);
  EXPECT_FALSE(nodes['a']->getModel());
  GeoReference const first = network->getGeoReference(), other = GeoReference::create(model, nil);
  RoadNetwork::create(Model::create(), nil)->setGeoReference(other);
  EXPECT_FALSE(other->getModel());
  for (GeoReference const& origin : {other, first, GeoReference()}) {
    network->setGeoReference(origin);
    EXPECT_EQ(first->getModel(), origin == first ? model : Model());
    EXPECT_EQ(model->size(), origin ? 2u : 1u);
  }
  network->setGeoReference(other);
  EXPECT_THROW(RoadNetwork::create(model, nil)->setGeoReference(other), std::invalid_argument);
}

// Recursion from one element to the next would run out of stack; a search for each would take some
// minutes of processor time, not a second.
TEST_F(ModelTest, ALargeHubAndChainGoInLinearTimeWithoutDeepRecursion) {
  Ids ids(50'000);
  std::iota(ids.begin(), ids.end(), 0ul);
  std::function<void()> const ways[] = {[&] { model = Model(); }, [&] { network->destroy(); },
                                        [&] { network->clear(); },
                                        [&] {
                                          auto roads = network->getRoads();
                                          std::shuffle(roads.begin(), roads.end(), std::mt19937(1));
                                          for (Road const& road : roads) road->destroy();
                                          network->clear();
                                        }};
  std::clock_t const start = std::clock();
  for (auto const& end : ways) {
    makeNetwork(ids);
    for (unsigned long id = 1; id < ids.size(); ++id) addRoad(id, 0, id);
    for (unsigned long id = 1; id < ids.size(); ++id) addRoad(id, id - 1, id);
    RoadSegmentNode const hub = RoadSegmentNode::create(model, nil);
    std::vector<RoadSegment> segments;
    for (Road const& road : network->getRoads()) segments.push_back(addSegment(road, hub));
    segments.resize(ids.size());
    for (RoadSegment const& segment : segments) segment->destroy();
    Road const last = network->getRoads().back();
    end();
    ASSERT_TRUE(!model || model->size() == (network->getModel() ? 1u : 0u));
    network = RoadNetwork();
    model = Model();
  }
  EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
}

TEST_F(ModelTest, NodesAreKeyedByUnsignedId) {
  makeNetwork({});
  network->addNodes({5, ~0ul, 3, 5}, {u"a", u"b", u"c", u"d"}, Doubles(12, 1.5));
  network->addNodes({3, 4}, {u"e", u"f"}, {0, 0, 0, 1, 2, 3});
  Names names;
  for (auto const& [id, n] : network->getNodes()) names.push_back(n->getName());
  EXPECT_THAT(names, ElementsAre(u"c", u"f", u"a", u"b"));
  EXPECT_EQ(model->size(), 6u);  // nothing is made for an id that is taken
  EXPECT_THROW(network->addNodes({8}, {}, {1, 2, 3}), std::invalid_argument);
  EXPECT_THROW(network->addNodes({8}, {u"8"}, {1, 2}), std::invalid_argument);
  EXPECT_FALSE(node(8));
  EXPECT_EQ(network->getNodes().find(8), network->getNodes().end());
  EXPECT_EQ(network->getNodes().find(4)->second, node(4));
  EXPECT_EQ(node(5)->references(), 3u);
  EXPECT_EQ(node(4)->getElevation(), 3);
  node(4)->setPosition({1, 2});
  EXPECT_FALSE(node(4)->hasPosition());
  Doubles positions(120);
  std::iota(positions.begin(), positions.end(), 0.0);
  network->addNodes(Ids(40, 7), Names(40), positions);
  EXPECT_EQ(node(7)->getPosition()[0], 0.0);  // the first of many with one id
  network->addNodes({20, 21, 22}, {u"20", u"021", u""}, Doubles(9));
  EXPECT_EQ(node(20)->getName() + node(21)->getName() + node(22)->getName(), u"20021");
  EXPECT_EQ(network->addNode(~1ul, {1, 2, 3})->getName(), u"-2");
  EXPECT_EQ(network->addNode(4, {0, 0, 0}), node(4));
  EXPECT_EQ(node(4)->getName(), u"f");
}

static_assert(std::ranges::random_access_range<RoadImpl::Sequence const>);
static_assert(std::ranges::forward_range<ReferenceCollectionOf<Road> const>);

TEST_F(ModelTest, RoadsKeepWhatTheyAreGiven) {
  makeNetwork({});
  Road const road = addRoad(1, 0, 0), other = addRoad(2, 0, 0);
  network->addRoad(road);
  EXPECT_THROW(RoadNetwork::create(model, nil)->addRoad(road), std::invalid_argument);
  EXPECT_THAT(network->getRoads(), ElementsAre(road, other));
  RoadSegment const segment = RoadSegment::create(model, nil);
  other->addRoadSegment(segment);
  EXPECT_THROW(road->addRoadSegment(segment), std::invalid_argument);
  road->setCenters({1, 2}, {5, 6});
  EXPECT_THROW(road->setCenters({1, 2}, {3}), std::invalid_argument);
  EXPECT_THAT(road->getCentersY(), ElementsAre(5, 6));
  segment->setGeometry(road->getCentersX(), Doubles{7}, {}, {}, road->getCentersY());
  EXPECT_EQ(&segment->getCentersX(), &road->getCentersX());
  auto const copy = road->getCentersX();
  road->setCenters({}, {});
  EXPECT_THAT(segment->getHeadings(), ElementsAre(5, 6));
  segment->setGeometry({}, Doubles{7}, {}, {}, segment->getHeadings());
  segment->setGeometry(copy, segment->getCentersY(), {}, {}, segment->getHeadings());
  EXPECT_EQ(segment->getCentersX().values().data(), copy.values().data());
  EXPECT_THAT(copy, ElementsAre(1, 2));
  EXPECT_THAT(segment->getCentersY(), ElementsAre(7));
  EXPECT_EQ(segment->getElevations().size() + road->getCentersX().size(), 0u);
  road->setName(SharedText(u"a"));
  EXPECT_EQ(road->getName() + other->getName(), u"a");
}

/// An element of which the test decides what it refers to and, for a proxy, what it stands for.
class PartImpl : public ModelElementImpl {
 public:
  explicit PartImpl(char nameInLists) : ModelElementImpl(nil), letter(nameInLists) {}
  bool isProxy() const override { return bool(onResolve); }
  ModelElement resolve() const override { return ++resolutions, onResolve(); }
  static bool isPart(ModelElementImpl const& e) { return dynamic_cast<PartImpl const*>(&e); }
  static meta::Property const& wholeProperty() {
    static meta::Property const p("whole", false, &isPart, nullptr);
    return p;
  }

  char letter;
  std::function<ModelElement()> onResolve;
  ModelElementImpl const* whole = nullptr;
  mutable int resolutions = 0;

 protected:
  bool refersTo(meta::Property const& property, ModelElementImpl const& other) const override {
    return &property == &wholeProperty() && &other == whole;
  }
};

using Part = Handle<PartImpl>;
using Parts = ReferenceCollectionOf<Part>;
using internal::ReferenceList;

TEST(ModelProxy, IsReplacedByAValidElementWhereTheInverseAllowsIt) {
  Part const owner(new PartImpl('o')), first(new PartImpl('f')), proxy(new PartImpl('p')),
      real(new PartImpl('r')), last(new PartImpl('l')), otherProxy(new PartImpl('q'));
  ModelElement const foreign(new RoadSegmentNodeImpl(nil));
  otherProxy->onResolve = [&] { return ModelElement(real); };
  auto *const p = proxy.get(), *const q = otherProxy.get(), *const r = real.get();
  struct Case {
    std::string traits;  // composite, inverse, owned, the real element refers back
    ModelElementImpl* result;
    std::string after;
    std::size_t counted;  // what refers back by itself is not counted, so that no cycle arises
    std::function<void(ReferenceList&)> whileResolved = [](ReferenceList&) {};
  };
  // clang-format off
  Case const cases[] = {
      {"", r, "frl", 1},     {"o", r, "frl", 1},    {"io", r, "fpl", 0},   {"ir", r, "fpl", 0},
      {"ior", r, "frl", 0},  {"ci", r, "frl", 1},   {"cio", r, "frl", 1},  {"cior", r, "frl", 1},
      {"cor", r, "frl", 1},  {"c", p, "fpl", 0},    {"c", q, "fpl", 0},    {"c", nullptr, "fpl", 0},
      {"c", foreign.get(), "fpl", 0},
      {"c", r, "fl", 0, [&](ReferenceList& parts) { parts.remove(*p); }},
      {"c", r, "f", 0, [&](ReferenceList& parts) { parts.remove(*p), parts.remove(*last.get()); }},
      {"c", r, "fr", 1, [&](ReferenceList& parts) { parts.remove(*last.get()); }},
      {"c", r, "frlr", 2, [&](ReferenceList& parts) { parts.append(*r, true); }},
      {"c", r, "frlll", 1, [&](ReferenceList& parts) { parts.append(*last.get(), true), parts.append(*last.get(), true); }}};
  // clang-format on
  std::size_t const held = PartImpl::wholeProperty().references();
  for (auto const& [traits, result, after, counted, whileResolved] : cases) {
    SCOPED_TRACE(traits + after);
    auto const has = [&, &all = traits](char trait) { return all.find(trait) != all.npos; };
    bool const stays = after == "fpl";
    proxy->resolutions = 0;
    real->whole = has('r') ? owner.get() : nullptr;
    {
      meta::Property const property("parts", has('c'), &PartImpl::isPart,
                                    has('i') ? &PartImpl::wholeProperty : nullptr);
      ReferenceList list;
      Parts const parts(has('o') ? owner.get() : nullptr, property, list);
      proxy->onResolve = [&, &change = whileResolved, to = result] {
        return change(list), ModelElement(to);
      };
      for (Part const& part : {first, proxy, last}) list.append(*part.get(), true);
      EXPECT_TRUE(parts.contains(*p));
      EXPECT_EQ(proxy->resolutions, 0);
      EXPECT_EQ(parts[1], stays ? proxy : real);
      std::string letters;
      for (Part const& part : parts) letters += part->letter;
      EXPECT_EQ(letters, after);
      EXPECT_EQ(proxy->resolutions, stays ? 2 : 1);
      EXPECT_EQ(real->references(), 1 + counted);
      EXPECT_EQ(proxy->references(), 1u + stays);
      list.remove(*r);  // wherever it stands
      EXPECT_FALSE(parts.contains(*r));
    }
    EXPECT_EQ(real->references() + proxy->references(), 2u);
    EXPECT_EQ(PartImpl::wholeProperty().references(), held);
  }
  EXPECT_EQ(otherProxy->resolutions, 0);
  ReferenceList list;
  Parts const parts(nullptr, PartImpl::wholeProperty(), list);
  list.append(*p, true);
  proxy->onResolve = []() -> ModelElement { throw std::runtime_error("not loaded"); };
  EXPECT_THROW(parts[0], std::runtime_error);
  EXPECT_EQ(parts.stored(0), proxy);
}

// Up to two, up to 32 and more of them are stored in different ways, and nobody is to notice.
TEST(ModelReferences, AreKeptInOrderWhateverTheirNumber) {
  std::vector<Part> parts;
  for (int i = 0; i < 150; ++i) parts.emplace_back(new PartImpl('p'));
  std::mt19937 random(1);
  for (std::size_t const longest : {2U, 6U, 40U, 150U}) {
    ReferenceList list;
    std::vector<std::pair<PartImpl*, bool>> expected;
    for (int step = 0; step < 3000; ++step) {
      PartImpl* const part = parts[random() % longest].get();
      bool const counted = random() % 2 == 0;
      if (auto const act = random() % 8; act < 5 && expected.size() < longest) {
        if (act == 0) list.reserve(random() % longest);
        list.append(*part, counted);
        expected.emplace_back(part, counted);
      } else if (act == 5 && !expected.empty()) {
        std::size_t const index = random() % expected.size();
        list.replace(index, *part, counted);
        expected[index] = {part, counted};
      } else {
        list.remove(*part);
        std::erase_if(expected, [&](auto const& one) { return one.first == part; });
      }
      ASSERT_EQ(list.size(), expected.size());
      std::map<PartImpl*, std::size_t> references;
      for (std::size_t i = 0; i < list.size(); ++i) {
        ASSERT_EQ(&list[i], expected[i].first);
        references[expected[i].first] += expected[i].second;
      }
      ASSERT_EQ(list.contains(*part), references.count(part) == 1);
      ASSERT_EQ(part->references(), 1 + references[part]);
    }
    list.clear();
    for (Part const& part : parts) ASSERT_EQ(part->references(), 1u);
  }
}

/// A road or segment that is not loaded yet.
template <class X>
struct Unloaded : X::Impl {
  explicit Unloaded(X const& element) : X::Impl(nil), loaded(element) {}
  bool isProxy() const override { return true; }
  ModelElement resolve() const override { return loaded; }
  X loaded;
};

TEST_F(ModelTest, WhatAProxyStoodForTakesItsPlaceForGood) {
  makeNetwork({1});
  Road const road = addRoad(1, 1, 1), proxy(new Unloaded(road));
  proxy->setStartNode(node(1));
  proxy->setEndNode(node(1));
  EXPECT_EQ(node(1)->getOutgoingRoads()[1], road);
  EXPECT_EQ(proxy->getEndNode(), node(1));  // whose incoming roads nobody has read
  EXPECT_FALSE(proxy->getStartNode());
  RoadSegment const segment = RoadSegment::create(model, nil), part(new Unloaded(segment));
  proxy->addRoadSegment(segment);
  road->addRoadSegment(part);
  EXPECT_EQ(road->getRoadSegments()[0], segment);
  EXPECT_EQ(proxy->getRoadSegments().size(), 0u);  // a segment is in one road
  proxy->addRoadSegment(part);                     // which is in no road any more
  segment->destroy();
  EXPECT_EQ(road->getRoadSegments().size(), 0u);
}

}  // namespace
