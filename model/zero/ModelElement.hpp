// What all elements of a model have in common.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>

#include "model/zero/ElementImpl.hpp"
#include "model/zero/Handle.hpp"
#include "model/zero/Model.hpp"
#include "model/zero/meta/Property.hpp"

namespace kb::zero {

class ModelElement;

/// An element: it belongs to the model that it was created in until it is destroyed or the model
/// goes. The model keeps it alive; so does every handle.
class ModelElementImpl : public ElementImpl {
 public:
  explicit ModelElementImpl(boost::uuids::uuid const& uuid) noexcept;
  ~ModelElementImpl() override;

  /// The identity given at creation; the nil uuid stays nil.
  boost::uuids::uuid const& getUuid() const noexcept { return uuid_; }

  /// The model that it belongs to; null when it was destroyed or the model is gone.
  Model getModel() const noexcept { return Model(model_); }

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
  /// Takes `other` into the model of this element; nothing happens when this one has no model or
  /// `other` has one. Throws std::bad_alloc.
  void shareModelWith(ModelElementImpl& other) const;

 private:
  friend class ModelImpl;
  friend class ReferenceCollection;

  boost::uuids::uuid uuid_;
  ModelImpl* model_ = nullptr;  // not counted: the model owns its elements
  std::size_t slot_ = 0;        // the element's place in the model
};

class ModelElement : public Handle<ModelElementImpl> {
 public:
  using Handle::Handle;
};

/// Makes an element of kind `X` inside `model`. Throws NullHandleError when the model handle is
/// null, std::bad_alloc when memory runs out.
template <class X>
X createElement(Model const& model, boost::uuids::uuid const& uuid) {
  ModelImpl* const owner = model.operator->();
  X element(new typename X::Impl(uuid));
  owner->adopt(element);
  return element;
}

}  // namespace kb::zero
