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

  /// Deletes the element from its model: afterwards no map, collection or element of the model
  /// refers to it. Handles that still point to it can only be released. Destroying twice does
  /// nothing more.
  void destroy();
  /// The same for an element that only its owner refers to, when the owner has let go of it.
  void destroyPart();

  /// Whether this stands in for an element that is not loaded yet.
  virtual bool isProxy() const { return false; }
  /// The element that a proxy stands for, or null when it can't be had.
  virtual ModelElement resolve() const;

  /// Whether `element` refers to this one through its property `inverse`.
  bool _inverseContainsThis(ModelElementImpl* element, meta::Property const& inverse) const;

  /// How many elements there are in this process, in any model or kept by handles alone.
  static std::size_t liveCount() noexcept;

 protected:
  /// Removes every reference to this element, and from it, that this kind of element knows of.
  virtual void detach() {}
  /// Drops the references that this element itself holds to `other`, which is being destroyed.
  virtual void forget(ModelElementImpl const& /*other*/) {}
  /// Whether this element's property `property` refers to `other`.
  virtual bool refersTo(meta::Property const& /*property*/,
                        ModelElementImpl const& /*other*/) const {
    return false;
  }
  /// Whether there may be elements that refer to this one without its knowing. Destroying it then
  /// lets all elements of the model forget it, in time proportional to the size of the model.
  virtual bool hasUnknownReferrers() const { return false; }

 private:
  friend class ModelImpl;

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
