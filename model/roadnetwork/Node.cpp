#include "model/roadnetwork/Node.hpp"

#include <algorithm>
#include <charconv>
#include <limits>
#include <stdexcept>

#include "model/roadnetwork/Road.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"

namespace velora::roadnetwork {

using kb::zero::meta::Property;

// There are nearly as many as roads.
static_assert(sizeof(NodeImpl) <= 96);

namespace {

// The digits of an id, as a Node has them for its name.
class Decimal {
 public:
  explicit Decimal(support::ModelId id) noexcept
      : end_(std::to_chars(text_.begin(), text_.end(), static_cast<std::int64_t>(id)).ptr) {}
  char const* begin() const noexcept { return text_.begin(); }
  char const* end() const noexcept { return end_; }

 private:
  std::array<char, 20> text_{};
  char const* end_;
};

}  // namespace

NodeImpl::NodeImpl(boost::uuids::uuid const& uuid) : ModelElementImpl(uuid) {}

NodeImpl::~NodeImpl() = default;

std::u16string NodeImpl::getName() const {
  if (name_) return *name_;
  Decimal const id(id_);
  return {id.begin(), id.end()};
}

void NodeImpl::setName(std::u16string const& name) {
  Decimal const id(id_);
  bool const isId = std::equal(id.begin(), id.end(), name.begin(), name.end());
  name_ = isId ? kb::zero::SharedText() : kb::zero::SharedText(name);
}

bool NodeImpl::hasPosition() const {
  return positionSize_ == position_.size();
}

std::span<double const> NodeImpl::getPosition() const {
  return {position_.data(), positionSize_};
}

void NodeImpl::setPosition(std::vector<double> const& position) {
  if (position.size() > position_.size())
    throw std::invalid_argument("a position has three values");
  std::copy(position.begin(), position.end(), position_.begin());
  positionSize_ = static_cast<std::uint8_t>(position.size());
}

double NodeImpl::getElevation() const {
  return hasPosition() ? position_[2] : std::numeric_limits<double>::quiet_NaN();
}

void NodeImpl::reserveRoads() {
  std::size_t const all = incomingRoads_.size() + outgoingRoads_.size();
  incomingRoads_.reserve(all);
  outgoingRoads_.reserve(all);
}

void NodeImpl::detach() {
  for (auto* roads : {&incomingRoads_, &outgoingRoads_}) {
    for (std::size_t i = 0; i < roads->size(); ++i) {
      static_cast<RoadImpl&>((*roads)[i]).forgetNode(*this);
    }
    roads->clear();
  }
  if (network_ != nullptr) network_->removeNode(*this);
}

void NodeImpl::forgetGone(kb::zero::ModelImpl const& model) noexcept {
  incomingRoads_.removeGone(model);
  outgoingRoads_.removeGone(model);
}

// The resolved road refers to this node already, or it would not have taken the proxy's place.
void NodeImpl::replaced(Property const& property, ModelElementImpl& proxy, ModelElementImpl&) {
  auto& road = static_cast<RoadImpl&>(proxy);
  (&property == &incomingRoadsProperty() ? road.endNode_ : road.startNode_) = Node();
}

bool NodeImpl::refersTo(Property const& property, kb::zero::ModelElementImpl const& other) const {
  if (&property == &incomingRoadsProperty()) return incomingRoads_.contains(other);
  if (&property == &outgoingRoadsProperty()) return outgoingRoads_.contains(other);
  return false;
}

bool NodeImpl::isNode(ModelElementImpl const& element) {
  return dynamic_cast<NodeImpl const*>(&element) != nullptr;
}

Property const& NodeImpl::incomingRoadsProperty() {
  static Property const property("incomingRoads", false, &RoadImpl::isRoad,
                                 &RoadImpl::endNodeProperty);
  return property;
}

Property const& NodeImpl::outgoingRoadsProperty() {
  static Property const property("outgoingRoads", false, &RoadImpl::isRoad,
                                 &RoadImpl::startNodeProperty);
  return property;
}

}  // namespace velora::roadnetwork
