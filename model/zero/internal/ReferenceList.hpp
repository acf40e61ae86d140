// The references that a collection stores.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kb::zero {
class ModelElementImpl;
class ModelImpl;
}  // namespace kb::zero

namespace kb::zero::internal {

/// Elements in order, each either counted (the list holds a reference on it) or not (it takes
/// itself out of the list before it goes). Most lists hold one or two, which take no memory but the
/// list's own two words; in a long one, every operation still takes no more than logarithmic time.
class ReferenceList {
 public:
  ReferenceList() noexcept = default;
  ReferenceList(ReferenceList const&) = delete;
  ReferenceList& operator=(ReferenceList const&) = delete;
  ~ReferenceList() {
    if (words_[0] != 0) clear();
  }

  std::size_t size() const noexcept {
    if (isArray() || isMany()) return sizeOfMore();
    return words_[0] == 0 ? 0 : words_[1] == 0 ? 1 : 2;
  }
  /// `index` must be less than the size.
  ModelElementImpl& operator[](std::size_t index) const noexcept;
  bool contains(ModelElementImpl const& element) const noexcept;
  /// Has the processor fetch the elements, which are about to be used. Not those of a long list.
  void prefetch() const noexcept;

  /// Makes room for `size` elements in all, so that appending up to there can't fail. Throws
  /// std::bad_alloc.
  void reserve(std::size_t size);
  /// Adds `element` at the end. Throws std::bad_alloc where no room has been made.
  void append(ModelElementImpl& element, bool counted);
  /// Puts `element` in the place of another.
  void replace(std::size_t index, ModelElementImpl& element, bool counted) noexcept;
  /// Takes `element` out, wherever it stands; the others keep their order.
  void remove(ModelElementImpl const& element) noexcept;
  /// Takes the elements out that a model has taken with it; none of them may be counted.
  void removeGone(ModelImpl const& model) noexcept;
  void clear() noexcept;

 private:
  struct Many;
  // The address of an element, and in the lowest bit whether it is counted; 0 for none.
  using Reference = std::uintptr_t;

  bool isArray() const noexcept { return (words_[0] & arrayBit) != 0; }
  bool isMany() const noexcept { return (words_[0] & manyBit) != 0; }
  Many* many() const noexcept { return reinterpret_cast<Many*>(words_[0] & ~manyBit); }
  std::size_t sizeOfMore() const noexcept;  // than two
  Reference* few() noexcept;
  std::size_t capacity() const noexcept;
  void setSize(std::size_t size) noexcept;
  void grow(std::size_t capacity);
  void becomeMany();
  template <class Predicate>
  std::size_t removeFew(Predicate isToGo) noexcept;

  static constexpr std::uintptr_t arrayBit = 2;
  static constexpr std::uintptr_t manyBit = 4;

  // One or two references, each 0 where there is none; or a pointer to an array of references, and
  // its size and capacity; or a pointer to many.
  std::uintptr_t words_[2] = {0, 0};
};

}  // namespace kb::zero::internal
