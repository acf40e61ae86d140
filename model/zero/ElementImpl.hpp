// The reference count that models and their elements carry.
#pragma once

#include <cstddef>

#include "model/zero/internal/ReferenceCount.hpp"

namespace kb::zero {

/// Base of all objects that handles share. A new object has no reference; dropping the last one
/// deletes it. The count is not atomic: a model and all that belongs to it is for one thread at a
/// time.
class ElementImpl {
 public:
  ElementImpl() = default;
  ElementImpl(ElementImpl const&) = delete;
  ElementImpl& operator=(ElementImpl const&) = delete;
  virtual ~ElementImpl() = default;

  void addRef() const noexcept { references_.add(); }
  void removeRef() const noexcept {
    if (references_.remove()) const_cast<ElementImpl*>(this)->dispose();
  }
  /// How many references there are to this object.
  std::size_t references() const noexcept { return references_.value(); }

 private:
  /// Ends the object's life and gives its memory back.
  virtual void dispose() noexcept { delete this; }

  mutable internal::ReferenceCount references_;
};

}  // namespace kb::zero
