#include "model/zero/Model.hpp"

#include <algorithm>
#include <functional>
#include <iterator>

#include "model/zero/ModelElement.hpp"

namespace kb::zero {

using internal::Slab;

ModelImpl::ModelImpl() = default;

ModelImpl::~ModelImpl() {
  // An element that goes may end others, in any slab, so the slabs themselves go last. What refers
  // to an element that is gone, mostly goes too: only what handles keep has to forget it.
  isGoing_ = true;
  for (Slabs& slabs : slabs_) {
    for (Slab& slab : slabs) slabsByAddress_.insert(slab);
  }
  forEach([](ModelElementImpl& element) { element.leaveModel(); });
  forEach([this](ModelElementImpl& element) { element.forgetGone(*this); });
  slabsByAddress_.clear();
  for (Slabs& slabs : slabs_) slabs.clear_and_dispose([](Slab* slab) { slab->giveUp(); });
}

bool ModelImpl::isGone(ModelElementImpl const& element) const noexcept {
  auto const next = slabsByAddress_.upper_bound(element, std::less<>());
  if (next == slabsByAddress_.begin()) return false;
  Slab const& slab = *std::prev(next);
  return slab.covers(element) && !slab.holds(element);
}

Slab& ModelImpl::addSlab(std::size_t elementSize) {
  Slabs& slabs = slabsOf(elementSize);
  // Each as large as all before it, so that neither a small nor a large model wastes much.
  auto const bits =
      static_cast<unsigned>(std::min<std::size_t>(Slab::smallest + slabs.size(), Slab::largest));
  slabs.push_front(*Slab::create(*this, elementSize, bits));
  return slabs.front();
}

void ModelImpl::adopt(ModelElementImpl& element, Slab& slab) noexcept {
  slab.occupy();
  if (slab.isFull()) {
    Slabs& slabs = slabsOf(slab.elementSize());
    slabs.splice(slabs.end(), slabs, slabs.iterator_to(slab));
  }
  element.slabBits_ = static_cast<std::uint8_t>(slab.bits());
  element.enterModel(*this);
}

void ModelImpl::hasRoom(Slab& slab) noexcept {
  if (isGoing_) return;
  Slabs& slabs = slabsOf(slab.elementSize());
  slabs.splice(slabs.begin(), slabs, slabs.iterator_to(slab));
  if (!slab.isEmpty()) return;
  // One empty slab may stay, lest an element that comes and goes takes one with it each time.
  auto const next = std::next(slabs.begin());
  if (next == slabs.end() || next->isFull()) return;
  slabs.pop_front();
  slab.giveUp();
}

Model Model::create() {
  return Model(new ModelImpl);
}

meta::Class const& Model::metaClass() {
  static meta::Class const record{"kb.zero.Model"};
  return record;
}

}  // namespace kb::zero
