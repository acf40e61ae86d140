// A sequence of primitive values that belongs to an element.
#pragma once

#include <cstddef>

#include "model/zero/internal/SequenceIteratorPrimitive.hpp"

namespace kb::zero {

/// A read-only view for everybody but its element, which replaces the whole with `assign`.
/// `Storage` is a contiguous standard container of `T`.
template <class T, class Storage>
class PrimitiveCollection {
 public:
  using value_type = T;
  using const_iterator = internal::SequenceIteratorPrimitive<T, false>;
  using const_reverse_iterator = internal::SequenceIteratorPrimitive<T, true>;

  PrimitiveCollection() = default;
  virtual ~PrimitiveCollection() = default;

  virtual std::size_t size() const { return values_.size(); }
  T const& operator[](std::size_t i) const { return values_[i]; }
  Storage const& values() const noexcept { return values_; }

  const_iterator begin() const { return const_iterator(first()); }
  const_iterator end() const { return const_iterator(first() + values_.size()); }
  const_reverse_iterator rbegin() const { return const_reverse_iterator(first() + values_.size()); }
  const_reverse_iterator rend() const { return const_reverse_iterator(first()); }

  /// Memory for `size` values, so that assigning as many can't fail.
  void reserve(std::size_t size) { values_.reserve(size); }
  /// Replaces all values, in the memory that there is where it suffices.
  void assign(Storage const& values) { values_ = values; }

 private:
  T const* first() const { return values_.data(); }

  Storage values_;
};

}  // namespace kb::zero
