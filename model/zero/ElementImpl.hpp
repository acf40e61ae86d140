// The reference count that models and their elements carry.
#pragma once

#include <cstddef>

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

  void addRef() const noexcept { ++references_; }
  void removeRef() const noexcept {
    if (--references_ == 0) delete this;
  }
  /// How many references there are to this object.
  std::size_t references() const noexcept { return references_; }

 private:
  mutable std::size_t references_ = 0;
};

}  // namespace kb::zero
