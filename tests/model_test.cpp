// Tests of the model: reference counts, lifetimes, opposite references and the containers.
#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <numeric>

#include "model/roadnetwork/RoadNetwork.hpp"

using namespace velora::roadnetwork;
using kb::zero::Handle;
using kb::zero::Model;
using kb::zero::ModelElement;
using kb::zero::ModelElementImpl;
using kb::zero::NullHandleError;
using kb::zero::meta::Property;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr boost::uuids::uuid nil{};
using Ids = std::vector<unsigned long>;
using Doubles = std::vector<double>;
using Names = std::vector<std::u16string>;
using Ends = std::map<unsigned long, std::array<Ids, 2>>;  // a node's incoming and outgoing roads

template <class Elements>
Ids idsOf(Elements const& elements) {
  Ids ids;
  for (auto const& element : elements) ids.push_back(element->getID());
  return ids;
}

/// A network to work on; whatever a test does to it, no element may be left over.
class ModelTest : public testing::Test {
 protected:
  void TearDown() override {
    network = RoadNetwork();
    model = Model();
    EXPECT_EQ(ModelElementImpl::liveCount(), before);
  }
  void addNodes(Ids const& ids) {
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
  RoadSegment addSegment(Road const& road, RoadSegmentNode const& bothEnds) {
    RoadSegment const segment = RoadSegment::create(model, nil);
    segment->setStartNode(bothEnds);
    segment->setEndNode(bothEnds);
    road->addRoadSegment(segment);
    return segment;
  }
  Ends ends() const {
    Ends result;
    for (auto const& [id, n] : network->getNodes()) {
      result[id] = {idsOf(n->getIncomingRoads()), idsOf(n->getOutgoingRoads())};
    }
    return result;
  }

  std::size_t before = ModelElementImpl::liveCount();
  Model model = Model::create();
  RoadNetwork network = RoadNetwork::create(model, nil);
};

TEST_F(ModelTest, HandlesCountReferences) {
  Road road = Road::create(model, {{1, 2, 3}});
  RoadImpl const& element = *road.get();
  {
    Road copy = road;
    ModelElement const base = copy;
    EXPECT_EQ(element.references(), 4u);
    Road const moved = std::move(copy);
    Road& self = road;
    road = std::move(self);
    copy = road;
    copy = Road::create(model, nil);
    EXPECT_EQ(element.references(), 4u);
  }
  EXPECT_EQ(element.getUuid(), (boost::uuids::uuid{{1, 2, 3}}));
  EXPECT_EQ(element.getModel(), model);
  model = Model();
  EXPECT_FALSE(element.getModel());
  EXPECT_EQ(element.references(), 1u);
  Road const null;
  null.addRef();
  null.removeRef();
  EXPECT_THROW(null->getID(), NullHandleError);
  EXPECT_THROW(Road::create(Model(), nil), NullHandleError);
  EXPECT_THROW(network->addRoad(null), NullHandleError);
  EXPECT_THROW(road->addRoadSegment(RoadSegment()), NullHandleError);
  EXPECT_THROW(addNodes({1}), NullHandleError);
}

TEST_F(ModelTest, OppositeEndsStayInStep) {
  addNodes({1, 2});
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
}

TEST_F(ModelTest, DestroyLeavesNothingThatRefersToTheElement) {
  addNodes({1, 2});
  Node const loop = node(2);
  Road const a = addRoad(7, 1, 2), b = addRoad(8, 2, 2);
  RoadSegmentNode const joint = RoadSegmentNode::create(model, nil);
  RoadSegment const s = addSegment(a, joint), t = addSegment(a, joint);
  GeoReference const origin = GeoReference::create(model, nil);
  network->setGeoReference(origin);
  auto const destroyTwice = [](ModelElementImpl* element) {
    for (int i = 0; i < 2; ++i) element->destroy();
    EXPECT_FALSE(element->getModel());
    EXPECT_EQ(element->references(), 1u);
  };
  destroyTwice(joint.get());
  EXPECT_FALSE(s->getStartNode() || s->getEndNode() || t->getEndNode());
  destroyTwice(t.get());
  EXPECT_EQ(a->getRoadSegments().size(), 1u);
  destroyTwice(origin.get());
  EXPECT_FALSE(network->getGeoReference());
  network->setGeoReference(GeoReference::create(model, nil));
  destroyTwice(loop.get());
  EXPECT_FALSE(a->getEndNode() || b->getStartNode() || b->getEndNode());
  EXPECT_EQ(ends(), (Ends{{1, {Ids{}, {7}}}}));
  EXPECT_THROW(a->addRoadSegment(s), std::invalid_argument);
  b->addRoadSegment(s);
  destroyTwice(a.get());
  EXPECT_EQ(b->getRoadSegments().size(), 0u);
  EXPECT_EQ(ends(), (Ends{{1, {}}}));
  EXPECT_THAT(network->getRoads(), ElementsAre(b));
  EXPECT_FALSE(s->getModel());
  destroyTwice(network.get());
  EXPECT_FALSE(b->getModel());
  EXPECT_EQ(network->getNodes().size() + network->getRoads().size() + model->size(), 0u);
}

// Iterators go by index: what a change leaves behind them is still read safely.
TEST_F(ModelTest, DestroyInTheMiddleOfAnIteration) {
  addNodes({1, 2});
  for (unsigned long id = 1; id <= 9; ++id) addRoad(id, 1, id < 4 ? 1 : 2);
  auto const& roads = node(1)->getOutgoingRoads();
  for (auto road = roads.begin(); road != roads.end();) {
    Road const current = *road;
    current->getID() % 3 == 0 ? static_cast<void>(++road) : current->destroy();
  }
  EXPECT_EQ(ends(), (Ends{{1, {Ids{3}, {3, 6, 9}}}, {2, {Ids{6, 9}, {}}}}));
  EXPECT_THROW(roads[3], std::out_of_range);
  model = Model();  // from here on the network alone keeps them
  while (!network->getRoads().empty()) network->getRoads().front()->destroy();
  EXPECT_EQ(ends(), (Ends{{1, {}}, {2, {}}}));
  EXPECT_THROW(roads.last(), std::out_of_range);
}

// All orders in which four handles can go; each bit of `destroyed` stands for one that is destroyed
// and not just released.
TEST_F(ModelTest, LifetimesInEveryOrderOfRelease) {
  network->destroy();
  for (unsigned destroyed = 0; destroyed < 8; ++destroyed) {
    std::array<unsigned, 4> order{0, 1, 2, 3};
    do {
      SCOPED_TRACE(testing::Message() << testing::PrintToString(order) << destroyed);
      model = Model::create();
      network = RoadNetwork::create(model, nil);
      network->setGeoReference(GeoReference::create(model, nil));
      addNodes({1, 2});
      Node start = node(1);
      Road road = addRoad(1, 1, 2);
      addRoad(2, 2, 2);
      RoadSegmentNode const joint = RoadSegmentNode::create(model, nil);
      addSegment(road, joint);
      std::array<bool, 3> stands{true, true, true};
      auto const drop = [&](unsigned bit, auto& handle) {
        stands[bit] = (destroyed >> bit & 1) == 0;
        if (!stands[bit]) handle->destroy();
        handle = {};
      };
      std::function<void()> const steps[] = {[&] { drop(0, network); }, [&] { drop(1, road); },
                                             [&] { drop(2, start); }, [&] { model = Model(); }};
      for (unsigned const step : order) {
        steps[step]();
        bool const roadStands = stands[0] && stands[1] && (model || network || road);
        ASSERT_TRUE(!start || start->getOutgoingRoads().size() == roadStands);
        if (!road) continue;
        ASSERT_EQ(bool(road->getStartNode()), stands[0] && stands[2]);
        ASSERT_EQ(bool(road->getEndNode()), stands[0]);
        ASSERT_EQ(road->getRoadSegments().size(), stands[0]);
      }
      ASSERT_EQ(joint->references(), 1u);
      ASSERT_EQ(ModelElementImpl::liveCount(), before + 1);
    } while (std::next_permutation(order.begin(), order.end()));
  }
}

// Recursion from one element to the next would run out of stack.
TEST_F(ModelTest, LifetimeOfALargeHubAndChainEndsWithoutDeepRecursion) {
  Ids ids(50'000);
  std::iota(ids.begin(), ids.end(), 0ul);
  for (bool const modelFirst : {true, false}) {
    model = Model::create();
    network = RoadNetwork::create(model, nil);
    addNodes(ids);
    for (unsigned long id = 1; id < ids.size(); ++id) addRoad(id, 0, id);
    for (unsigned long id = 1; id < ids.size(); ++id) addRoad(id, id - 1, id);
    Road const last = network->getRoads().back();
    modelFirst ? static_cast<void>(model = Model()) : network->destroy();
    network = RoadNetwork();
    model = Model();
    EXPECT_EQ(ModelElementImpl::liveCount(), before + (modelFirst ? 3 : 1));
  }
}

TEST_F(ModelTest, NodesAreKeyedByUnsignedId) {
  network->addNodes({5, ~0ul, 3, 5}, {u"a", u"b", u"c", u"d"}, Doubles(12, 1.5));
  network->addNodes({3, 4}, {u"e", u"f"}, {0, 0, 0, 1, 2, 3});
  Names names;
  for (auto const& [id, n] : network->getNodes()) names.push_back(n->getName());
  EXPECT_THAT(names, ElementsAre(u"c", u"f", u"a", u"b"));
  EXPECT_EQ(model->size(), 5u);  // nothing is made for an id that is taken
  EXPECT_THROW(network->addNodes({8}, {}, {1, 2, 3}), std::invalid_argument);
  EXPECT_THROW(network->addNodes({8}, {u"8"}, {1, 2}), std::invalid_argument);
  EXPECT_FALSE(node(8));
  EXPECT_EQ(node(5)->references(), 3u);
  EXPECT_THAT(node(4)->getPosition(), ElementsAre(1, 2, 3));
  EXPECT_EQ(node(4)->getElevation(), 3);
  node(4)->setPosition({1, 2});
  EXPECT_FALSE(node(4)->hasPosition());
  Doubles positions(120);
  std::iota(positions.begin(), positions.end(), 0.0);
  network->addNodes(Ids(40, 7), Names(40), positions);
  EXPECT_EQ(node(7)->getPosition()[0], 0.0);  // the first of many with one id
}

TEST_F(ModelTest, ARoadIsInOneNetworkOnce) {
  Road const road = addRoad(1, 0, 0);
  network->addRoad(road);
  RoadNetwork const other = RoadNetwork::create(model, nil);
  EXPECT_THROW(other->addRoad(road), std::invalid_argument);
  EXPECT_THAT(other->getRoads(), IsEmpty());
  EXPECT_THAT(network->getRoads(), ElementsAre(road));
}

using Sequence = RoadImpl::Sequence;
static_assert(std::random_access_iterator<Sequence::const_iterator>);
static_assert(std::random_access_iterator<Sequence::const_reverse_iterator>);
struct LongSequence : Sequence {
  std::size_t size() const override { return 42; }  // stays virtual
};

TEST_F(ModelTest, CentersKeepOneLengthAndAreReadInBothDirections) {
  Road const road = addRoad(1, 0, 0);
  Sequence const& x = road->getCentersX();
  EXPECT_EQ(x.rbegin(), x.rend());
  road->setCenters({9}, {9});
  road->setCenters({1, 2, 3, 4}, {5, 6, 7, 8});
  EXPECT_THROW(road->setCenters({1, 2}, {3}), std::invalid_argument);
  EXPECT_EQ(Doubles(x.rbegin(), x.rend()), (Doubles{4, 3, 2, 1}));
  EXPECT_EQ(Doubles(x.begin() + 1, std::prev(x.end())), (Doubles{2, 3}));
  EXPECT_THAT(road->getCentersY(), ElementsAre(5, 6, 7, 8));
}

/// An element of which the test decides what it refers to and, for a proxy, what it stands for.
class PartImpl : public ModelElementImpl {
 public:
  PartImpl() : ModelElementImpl(nil) {}
  bool isProxy() const override { return bool(onResolve); }
  ModelElement resolve() const override { return ++resolutions, onResolve(); }
  static bool isPart(ModelElementImpl const& e) { return dynamic_cast<PartImpl const*>(&e); }
  static Property const& wholeProperty() {
    static Handle<Property const> const property(new Property("whole", false, &isPart, nullptr));
    return *property.get();
  }

  std::function<ModelElement()> onResolve;
  ModelElementImpl const* whole = nullptr;
  mutable int resolutions = 0;

 protected:
  bool refersTo(Property const& property, ModelElementImpl const& other) const override {
    return &property == &wholeProperty() && &other == whole;
  }
};

using Part = Handle<PartImpl>;
using Parts = kb::zero::ReferenceCollectionOf<Part>;

class ModelProxy : public testing::Test {
 protected:
  static Handle<Property> parts(bool composite, bool inverse) {
    auto* const end = inverse ? &PartImpl::wholeProperty : nullptr;
    return Handle<Property>(new Property("parts", composite, &PartImpl::isPart, end));
  }
  static std::vector<Part> list(Parts const& parts) { return {parts.begin(), parts.end()}; }

  Part owner{new PartImpl}, first{new PartImpl}, proxy{new PartImpl}, real{new PartImpl},
      last{new PartImpl};
};

TEST_F(ModelProxy, IsReplacedWhereTheInverseAllowsIt) {
  struct Case {
    bool composite, inverse, hasOwner, refersBack, replaced;
    std::size_t counted;  // what refers back by itself is not counted, so that no cycle arises
  };
  constexpr bool o = false, x = true;
  // clang-format off
  Case const cases[] = {
      {o, o, x, o, x, 1}, {o, o, o, o, x, 1}, {o, x, x, x, x, 0}, {o, x, x, o, o, 0},
      {o, x, o, x, o, 0}, {x, x, x, o, x, 1}, {x, x, o, o, x, 1}, {x, x, x, x, x, 1},
      {x, o, x, o, x, 1}};
  // clang-format on
  proxy->onResolve = [&] { return ModelElement(real); };
  std::size_t const held = PartImpl::wholeProperty().references();
  for (Case const& c : cases) {
    SCOPED_TRACE(testing::Message() << c.composite << c.inverse << c.hasOwner << c.refersBack);
    proxy->resolutions = 0;
    real->whole = c.refersBack ? owner.get() : nullptr;
    {
      Handle<Property> const property = parts(c.composite, c.inverse);
      Parts collection(c.hasOwner ? owner.get() : nullptr, *property.get());
      for (Part const& p : {first, proxy, last}) collection.append(p);
      EXPECT_TRUE(collection.contains(*proxy.get()));
      EXPECT_EQ(proxy->resolutions, 0);
      for (int const time : {1, 2}) {
        EXPECT_THAT(list(collection), ElementsAre(first, c.replaced ? real : proxy, last));
        EXPECT_EQ(proxy->resolutions, c.replaced ? 1 : time);
      }
      EXPECT_EQ(collection.contains(*real.get()), c.replaced);
      EXPECT_EQ(real->references(), 1 + c.counted);
      EXPECT_EQ(proxy->references(), c.replaced ? 1u : 2u);
    }
    EXPECT_EQ(real->references() + proxy->references(), 2u);
    EXPECT_EQ(PartImpl::wholeProperty().references(), held);
  }
}

TEST_F(ModelProxy, StaysForAResultThatIsNoValidElement) {
  ModelElement const foreign(new RoadSegmentNodeImpl(nil));
  last->onResolve = [&] { return ModelElement(real); };
  Handle<Property> const property = parts(true, false);
  Parts collection(nullptr, *property.get());
  collection.append(proxy);
  ModelElementImpl* const results[] = {nullptr, proxy.get(), last.get(), foreign.get()};
  for (ModelElementImpl* const result : results) {
    proxy->onResolve = [&] { return ModelElement(result); };
    EXPECT_EQ(collection[0], proxy);
    EXPECT_EQ(collection.last(), proxy);
  }
  EXPECT_EQ(last->resolutions, 0);
  proxy->onResolve = []() -> ModelElement { throw std::runtime_error("not loaded"); };
  EXPECT_THROW(collection[0], std::runtime_error);
  EXPECT_EQ(collection.last(), proxy);
  EXPECT_THROW(collection.append(Part()), NullHandleError);
}

TEST_F(ModelProxy, MayChangeTheCollectionWhileItIsResolved) {
  struct Case {
    std::function<void(Parts&)> change;
    std::vector<Part> after;
  };
  // clang-format off
  Case const cases[] = {
      {[&](Parts& p) { p.remove(*proxy.get()), p.remove(*last.get()); }, {first}},
      {[&](Parts& p) { p.remove(*proxy.get()); }, {first, last}},
      {[&](Parts& p) { p.remove(*last.get()); }, {first, real}},
      {[&](Parts& p) { p.append(real); }, {first, real, last, real}},
      {[&](Parts& p) { p.append(last), p.append(last); }, {first, real, last, last, last}}};
  // clang-format on
  for (Case const& c : cases) {
    Handle<Property> const property = parts(true, false);
    Parts collection(nullptr, *property.get());
    for (Part const& p : {first, proxy, last}) collection.append(p);
    proxy->onResolve = [&] { return c.change(collection), ModelElement(real); };
    EXPECT_EQ(collection[1], real);
    EXPECT_EQ(list(collection), c.after);
    collection.remove(*real.get());  // wherever it stands
    EXPECT_FALSE(collection.contains(*real.get()));
  }
}

}  // namespace
