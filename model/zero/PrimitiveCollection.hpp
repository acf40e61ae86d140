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
/// one sequence (see SharedSequence), and a copy of a sequence shares its values, which takes no
/// memory and can't fail. The count of those who share them is not atomic, like that of elements.
///
/// `Storage` is the contiguous standard container that a sequence is made from.
template <class T, class Storage>
class PrimitiveCollection {
 public:
  using value_type = T;
  using const_iterator = internal::SequenceIteratorPrimitive<T, false>;
  using const_reverse_iterator = internal::SequenceIteratorPrimitive<T, true>;

  PrimitiveCollection() noexcept = default;  ///< of no values
  PrimitiveCollection(PrimitiveCollection const& other) noexcept
      : PrimitiveCollection(other.first_, other.size_) {
    if (size_ > 0) original()->addRef();
  }
  PrimitiveCollection& operator=(PrimitiveCollection const&) = delete;
  virtual ~PrimitiveCollection() {
    if (size_ > 0 && original() != this) original()->removeRef();
  }

  virtual std::size_t size() const { return size_; }
  T const& operator[](std::size_t i) const { return first_[i]; }
  std::span<T const> values() const noexcept { return {first_, size_}; }

  const_iterator begin() const { return const_iterator(first_); }
  const_iterator end() const { return const_iterator(first_ + size_); }
  const_reverse_iterator rbegin() const { return const_reverse_iterator(first_ + size_); }
  const_reverse_iterator rend() const { return const_reverse_iterator(first_); }

 private:
  friend class SharedSequence<T, Storage>;
  friend class Handle<PrimitiveCollection const>;
  static_assert(std::is_trivially_copyable_v<T>);

  PrimitiveCollection(T const* first, std::uint32_t size) noexcept : first_(first), size_(size) {}

  static PrimitiveCollection const* create(std::span<T const> values);
  static void destroy(PrimitiveCollection const* original) noexcept;
  static PrimitiveCollection const& none() noexcept;

  // Originals only.
  void addRef() const noexcept { references_.add(); }
  void removeRef() const noexcept {
    if (references_.remove()) destroy(this);
  }
  // The sequence in whose piece of memory the values are: they stand right behind it.
  PrimitiveCollection const* original() const noexcept {
    static_assert(sizeof(PrimitiveCollection) % alignof(T) == 0);
    return reinterpret_cast<PrimitiveCollection const*>(first_) - 1;
  }

  T const* first_ = nullptr;
  std::uint32_t size_ = 0;
  mutable internal::ReferenceCount references_;
};

template <class T, class Storage>
PrimitiveCollection<T, Storage> const* PrimitiveCollection<T, Storage>::create(
    std::span<T const> values) {
  if (values.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("a sequence of more than 4294967295 values");
  }
  void* const memory = ::operator new(sizeof(PrimitiveCollection) + values.size_bytes());
  auto* const first = reinterpret_cast<T*>(static_cast<PrimitiveCollection*>(memory) + 1);
  std::uninitialized_copy(values.begin(), values.end(), first);
  return new (memory) PrimitiveCollection(first, static_cast<std::uint32_t>(values.size()));
}

template <class T, class Storage>
void PrimitiveCollection<T, Storage>::destroy(PrimitiveCollection const* original) noexcept {
  original->~PrimitiveCollection();
  ::operator delete(const_cast<PrimitiveCollection*>(original));
}

template <class T, class Storage>
PrimitiveCollection<T, Storage> const& PrimitiveCollection<T, Storage>::none() noexcept {
  static PrimitiveCollection const empty;
  return empty;
}

/// One pointer to a sequence, by which elements hold it.
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
  /// A sequence that exists already.
  SharedSequence(Sequence const& sequence) noexcept  // NOLINT: it is one
      : sequence_(sequence.size_ == 0 ? nullptr : sequence.original()) {}

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
