// The iterator of a sequence of primitive values.
#pragma once

#include <cstddef>
#include <iterator>

namespace kb::zero::internal {

/// Random access to contiguous values; walks from first to last, or from last to first if
/// `Reverse`.
template <class T, bool Reverse>
class SequenceIteratorPrimitive {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = T;
  using difference_type = std::ptrdiff_t;
  using pointer = T const*;
  using reference = T const&;

  SequenceIteratorPrimitive() noexcept = default;
  /// `position` is the value that the iterator stands at, or the one after it if `Reverse`.
  explicit SequenceIteratorPrimitive(T const* position) noexcept : position_(position) {}

  reference operator*() const noexcept { return Reverse ? position_[-1] : *position_; }
  pointer operator->() const noexcept { return &**this; }
  reference operator[](difference_type n) const noexcept { return *(*this + n); }

  SequenceIteratorPrimitive& operator+=(difference_type n) noexcept {
    position_ += Reverse ? -n : n;
    return *this;
  }
  SequenceIteratorPrimitive& operator-=(difference_type n) noexcept { return *this += -n; }
  SequenceIteratorPrimitive& operator++() noexcept { return *this += 1; }
  SequenceIteratorPrimitive& operator--() noexcept { return *this -= 1; }
  SequenceIteratorPrimitive operator++(int) noexcept {
    SequenceIteratorPrimitive const before = *this;
    ++*this;
    return before;
  }
  SequenceIteratorPrimitive operator--(int) noexcept {
    SequenceIteratorPrimitive const before = *this;
    --*this;
    return before;
  }
  friend SequenceIteratorPrimitive operator+(SequenceIteratorPrimitive it,
                                             difference_type n) noexcept {
    return it += n;
  }
  friend SequenceIteratorPrimitive operator+(difference_type n,
                                             SequenceIteratorPrimitive it) noexcept {
    return it += n;
  }
  friend SequenceIteratorPrimitive operator-(SequenceIteratorPrimitive it,
                                             difference_type n) noexcept {
    return it -= n;
  }
  friend difference_type operator-(SequenceIteratorPrimitive a,
                                   SequenceIteratorPrimitive b) noexcept {
    return Reverse ? b.position_ - a.position_ : a.position_ - b.position_;
  }
  friend bool operator==(SequenceIteratorPrimitive a, SequenceIteratorPrimitive b) noexcept {
    return a.position_ == b.position_;
  }
  friend auto operator<=>(SequenceIteratorPrimitive a, SequenceIteratorPrimitive b) noexcept {
    return a - b <=> 0;
  }

 private:
  T const* position_ = nullptr;
};

}  // namespace kb::zero::internal
