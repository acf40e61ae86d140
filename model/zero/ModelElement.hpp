// What all elements of a model have in common.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <cstdint>
#include <new>

#include "model/zero/ElementImpl.hpp"
#include "model/zero/Handle.hpp"
#include "model/zero/Model.hpp"
#include "model/zero/meta/Property.hpp"

namespace kb::zero {

class ModelElement;

/// An element: it belongs to the model that it was created in until it is destroyed or the model
/// goes. The model keeps it alive; so does every handle. One that is made by itself, without
/// `createElement`, is never in a model.
class ModelElementImpl : public ElementImpl {
 public:
  /// Throws std::bad_alloc, but not for the nil uuid.
  explicit ModelElementImpl(boost::uuids::uuid const& uuid);
  ~ModelElementImpl() override;

  /// The identity given at creation; the nil uuid stays nil.
  boost::uuids::uuid const& getUuid() const noexcept;

  /// The model that it belongs to; null when it was destroyed or the model is gone.
  Model getModel() const noexcept { return Model(isInModel_ ? home() : nullptr); }

  /// Takes the element out of its model and away from all others: afterwards no map, collection or
  /// element refers to it, nor it to them, whether or not its model is still there. Handles that
  /// point to it should only be released. Destroying twice does nothing more.
  void destroy();

  /// Whether this stands in for an element that is not loaded yet.
  virtual bool isProxy() const { return false; }
  /// The element that a proxy stands for; null when there is none to be had.
  virtual ModelElement resolve() const;

  /// Whether `element` refers to this one through its property `inverse`.
  bool _inverseContainsThis(ModelElementImpl* element, meta::Property const& inverse) const;

  /// Has the processor fetch an element that is about to be used, if there is one: elements that
  /// were made one after the other lie side by side, but who goes from one to its neighbours steps
  /// all over memory.
  static void prefetch(ModelElementImpl const* element) noexcept {
    if (element == nullptr) return;
    constexpr std::size_t cacheLine = 64;
    __builtin_prefetch(element);
    __builtin_prefetch(reinterpret_cast<char const*>(element) + cacheLine);
  }

  /// How many elements there are in this process: in any model, or kept by handles alone.
  static std::size_t liveCount() noexcept;

 protected:
  /// Removes every reference from other elements to this one, and from it to others.
  virtual void detach() {}
  /// Called when `resolved` has taken the place of `proxy` in this element's collection `property`:
  /// the proxy is to refer back no more, the resolved element is.
  virtual void replaced(meta::Property const& /*property*/, ModelElementImpl& /*proxy*/,
                        ModelElementImpl& /*resolved*/) {}
  /// Whether this element's property `property` refers to `other`.
  virtual bool refersTo(meta::Property const& /*property*/,
                        ModelElementImpl const& /*other*/) const {
    return false;
  }
  /// Whether this element and `other` are of one model, which is going. Then an element that ends
  /// need not take itself out of the other: that goes too, or forgets what is gone.
  bool goesTogetherWith(ModelElementImpl const& other) const noexcept;
  /// Called for an element that outlives its model: what it refers to without a count may be gone.
  virtual void forgetGone(ModelImpl const& /*model*/) noexcept {}
  /// Brings `other` back into the model that it was created in, when that is the one that this
  /// element belongs to.
  void bringBack(ModelElementImpl& other) const noexcept;

 private:
  friend class ModelImpl;
  friend class ReferenceCollection;

  void dispose() noexcept final;
  // The model that the element was created in, unless it is gone or going.
  ModelImpl* home() const noexcept;
  ModelImpl* origin() const noexcept;  // also when it is going
  void enterModel(ModelImpl& model) noexcept;
  void leaveModel() noexcept;

  // In what the reference count leaves of its word; there is room for two bytes of a derived class.
  std::uint8_t slabBits_ = 0;  // the size of its slab; 0: it lies in none
  bool isInModel_ : 1 = false;
  bool hasUuid_ : 1 = false;
};

class ModelElement : public Handle<ModelElementImpl> {
 public:
  using Handle::Handle;
};

/// Makes an element of kind `X` inside `model`. Throws NullHandleError when the model handle is
/// null, std::bad_alloc when memory runs out.
template <class X>
X createElement(Model const& model, boost::uuids::uuid const& uuid) {
  using Impl = typename X::Impl;
  static_assert(sizeof(Impl) <= ModelImpl::largestElement);
  static_assert(alignof(Impl) == ModelImpl::granularity);
  ModelImpl* const owner = model.operator->();
  internal::Slab& slab = owner->slabWithRoom(sizeof(Impl));
  auto* const element = new (slab.freePlace()) Impl(uuid);
  owner->adopt(*element, slab);
  return X(element);
}

}  // namespace kb::zero
