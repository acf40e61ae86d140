// The container that elements are created in.
#pragma once

#include <array>
#include <boost/uuid/uuid.hpp>
#include <cstddef>

#include "model/zero/ElementImpl.hpp"
#include "model/zero/Handle.hpp"
#include "model/zero/internal/Slab.hpp"
#include "model/zero/meta/Class.hpp"

namespace kb::zero {

class Model;
class ModelElementImpl;

/// Owns its elements: each stays until it is destroyed or the model goes. An element that a handle
/// keeps beyond that lives on by itself.
class ModelImpl final : public ElementImpl {
 public:
  ModelImpl();
  ~ModelImpl() override;

  /// How many elements it owns.
  std::size_t size() const noexcept { return size_; }

  /// For an element that outlives the model: whether `element`, of the model, has gone with it.
  bool isGone(ModelElementImpl const& element) const noexcept;

 private:
  friend class ModelElementImpl;
  friend class internal::Slab;
  template <class X>
  friend X createElement(Model const& model, boost::uuids::uuid const& uuid);

  // Those with room stand before those that are full.
  using Slabs = boost::intrusive::list<internal::Slab>;
  static constexpr std::size_t granularity = alignof(void*);
  static constexpr std::size_t largestElement = 512;

  template <class F>
  void forEach(F f) {
    for (Slabs& slabs : slabs_) {
      for (internal::Slab& slab : slabs) slab.forEach(f);
    }
  }
  Slabs& slabsOf(std::size_t elementSize) noexcept { return slabs_[elementSize / granularity]; }
  /// A slab with room for an element of that size. Throws std::bad_alloc.
  internal::Slab& slabWithRoom(std::size_t elementSize) {
    Slabs& slabs = slabsOf(elementSize);
    return !slabs.empty() && !slabs.front().isFull() ? slabs.front() : addSlab(elementSize);
  }
  internal::Slab& addSlab(std::size_t elementSize);
  /// Takes in an element that has just been made in the free place of the slab.
  void adopt(ModelElementImpl& element, internal::Slab& slab) noexcept;
  /// An element of the slab has gone.
  void hasRoom(internal::Slab& slab) noexcept;

  std::array<Slabs, largestElement / granularity + 1> slabs_;  // by the size of their elements
  boost::intrusive::set<internal::Slab> slabsByAddress_;       // while the model goes
  std::size_t size_ = 0;
  bool isGoing_ = false;  // in its destructor
};

class Model : public Handle<ModelImpl> {
 public:
  using Handle::Handle;
  using Impl = ModelImpl;

  /// A new, empty model.
  static Model create();
  static meta::Class const& metaClass();
};

}  // namespace kb::zero
