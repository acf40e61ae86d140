// The container that elements are created in.
#pragma once

#include <boost/uuid/uuid.hpp>
#include <cstddef>
#include <vector>

#include "model/zero/ElementImpl.hpp"
#include "model/zero/Handle.hpp"
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
  std::size_t size() const noexcept { return elements_.size(); }

 private:
  friend class ModelElementImpl;
  template <class X>
  friend X createElement(Model const& model, boost::uuids::uuid const& uuid);

  /// Takes in an element that is in no model. Throws std::bad_alloc.
  void adopt(Handle<ModelElementImpl> const& element);
  /// Lets go of one of its elements.
  void release(ModelElementImpl& element) noexcept;

  std::vector<Handle<ModelElementImpl>> elements_;
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
