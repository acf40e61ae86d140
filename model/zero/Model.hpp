// The container that elements are created in.
#pragma once

#include <vector>

#include "model/zero/ElementImpl.hpp"
#include "model/zero/Handle.hpp"
#include "model/zero/meta/Class.hpp"

namespace kb::zero {

class ModelElementImpl;

/// Owns its elements: each stays until it is destroyed or the model goes. Elements that a handle
/// keeps beyond that live on by themselves.
class ModelImpl final : public ElementImpl {
 public:
  ModelImpl();
  ~ModelImpl() override;

  /// Takes a new element in. Throws std::bad_alloc.
  void adopt(Handle<ModelElementImpl> const& element);
  /// Lets go of one of its elements.
  void release(ModelElementImpl& element) noexcept;

  std::size_t size() const noexcept { return elements_.size(); }

 private:
  friend class ModelElementImpl;

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
