// A sequence of primitive values that belongs to an element.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "model/zero/Handle.hpp"
#include "model/zero/internal/ReferenceCount.hpp"
#include "model/zero/internal/SequenceIteratorPrimitive.hpp"

namespace kb::zero {

template <class T, class Storage>
class SharedSequence;

/// The values never change; an element replaces the whole sequence. So several elements may hold
/// one sequence (see SharedSequence). The values stand right behind the object, in one piece of
/// memory with it. `Storage` is the contiguous standard container that such sequences are made of.
template <class T, class Storage>
class PrimitiveCollection {
 public:
  using value_type = T;
  using const_iterator = internal::SequenceIteratorPrimitive<T, false>;
  using const_reverse_iterator = internal::SequenceIteratorPrimitive<T, true>;

  PrimitiveCollection(PrimitiveCollection const&) = delete;
  PrimitiveCollection& operator=(PrimitiveCollection const&) = delete;

  virtual std::size_t size() const { return size_; }
  T const& operator[](std::size_t i) const { return first()[i]; }
  std::span<T const> values() const noexcept { return {first(), size_}; }

  const_iterator begin() const { return const_iterator(first()); }
  const_iterator end() const { return const_iterator(first() + size_); }
  const_reverse_iterator rbegin() const { return const_reverse_iterator(first() + size_); }
  const_reverse_iterator rend() const { return const_reverse_iterator(first()); }

  void addRef() const noexcept { references_.add(); }
  void removeRef() const noexcept {
    if (references_.remove()) destroy(this);
  }

 private:
  friend class SharedSequence<T, Storage>;
  static_assert(std::is_trivially_copyable_v<T>);

  explicit PrimitiveCollection(std::uint32_t size) noexcept : size_(size) {}
  virtual ~PrimitiveCollection() = default;

  static PrimitiveCollection const* create(std::span<T const> values);
  static void destroy(PrimitiveCollection const* sequence) noexcept;
  /// The sequence of no values, which is never counted: all threads share it.
  static PrimitiveCollection const& none() noexcept;

  T const* first() const noexcept {
    static_assert(sizeof(PrimitiveCollection) % alignof(T) == 0);
    return reinterpret_cast<T const*>(this + 1);
  }

  mutable internal::ReferenceCount references_;
  std::uint32_t size_;
};

template <class T, class Storage>
PrimitiveCollection<T, Storage> const* PrimitiveCollection<T, Storage>::create(
    std::span<T const> values) {
  if (values.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("a sequence of more than 4294967295 values");
  }
  void* const memory = ::operator new(sizeof(PrimitiveCollection) + values.size_bytes());
  auto* const sequence =
      new (memory) PrimitiveCollection(static_cast<std::uint32_t>(values.size()));
  std::uninitialized_copy(values.begin(), values.end(), const_cast<T*>(sequence->first()));
  return sequence;
}

template <class T, class Storage>
void PrimitiveCollection<T, Storage>::destroy(PrimitiveCollection const* sequence) noexcept {
  sequence->~PrimitiveCollection();
  ::operator delete(const_cast<PrimitiveCollection*>(sequence));
}

template <class T, class Storage>
PrimitiveCollection<T, Storage> const& PrimitiveCollection<T, Storage>::none() noexcept {
  static PrimitiveCollection const empty(0);
  return empty;
}

/// One pointer to a sequence. Copying shares the sequence, which takes no memory and can't fail;
/// the count of those who share it is not atomic, like that of elements.
template <class T, class Storage>
class SharedSequence {
 public:
  using Sequence = PrimitiveCollection<T, Storage>;

  SharedSequence() noexcept = default;  ///< of no values
  /// A new sequence. Throws std::bad_alloc, and std::length_error for 2^32 values or more.
  SharedSequence(std::span<T const> values)  // NOLINT: values are a sequence
      : sequence_(values.empty() ? nullptr : Sequence::create(values)) {}
  SharedSequence(Storage const& values)  // NOLINT: values are a sequence
      : SharedSequence(std::span<T const>(values)) {}
  /// The sequence of an element.
  SharedSequence(Sequence const& sequence) noexcept  // NOLINT: it is one
      : sequence_(sequence.values().empty() ? nullptr : &sequence) {}

  Sequence const& operator*() const noexcept {
    return sequence_ ? *sequence_.get() : Sequence::none();
  }
  Sequence const* operator->() const noexcept { return &**this; }

 private:
  Handle<Sequence const> sequence_;
};

// What has a virtual table must have it in the library that stays loaded.
extern template class PrimitiveCollection<double, std::vector<double>>;

}  // namespace kb::zero
