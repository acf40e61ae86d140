// Memory for the elements of a model.
#pragma once

#include <boost/intrusive/list.hpp>
#include <boost/intrusive/set.hpp>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace kb::zero {
class ModelElementImpl;
class ModelImpl;
}  // namespace kb::zero

namespace kb::zero::internal {

/// A piece of memory in which elements of one size and one model lie in a row. It starts at a
/// multiple of its own size, a power of two, so an element finds it by its own address: what is
/// the same for all of them is kept here once.
///
/// It goes when its model has given it up and its last element is gone, whichever comes last.
class Slab : public boost::intrusive::list_base_hook<>, public boost::intrusive::set_base_hook<> {
 public:
  static constexpr unsigned smallest = 12;  // a power of two: 4 KiB
  static constexpr unsigned largest = 21;   // 2 MiB, for which the system can use a huge page

  /// A slab of 2 to the power of `bits` bytes, for elements of `elementSize` bytes, a multiple of
  /// 8. Throws std::bad_alloc.
  static Slab* create(ModelImpl& model, std::size_t elementSize, unsigned bits);
  Slab(Slab const&) = delete;
  Slab& operator=(Slab const&) = delete;
  /// The slab, of 2 to the power of `bits` bytes, that `element` lies in.
  static Slab& of(ModelElementImpl const& element, unsigned bits) noexcept;

  ModelImpl* model() const noexcept { return model_; }  ///< null where it is gone
  std::size_t elementSize() const noexcept { return elementSize_; }
  unsigned bits() const noexcept { return bits_; }
  bool isFull() const noexcept { return live_ == capacity_; }
  bool isEmpty() const noexcept { return live_ == 0; }

  /// Where the next element is to be made. Only when the slab is not full.
  void* freePlace() noexcept;
  /// An element has been made in `freePlace()`.
  void occupy() noexcept;
  /// An element has ended its life. The slab may be gone afterwards.
  void vacate(void* element) noexcept;

  /// The slab goes, now or with its last element. It must be in no list of the model's.
  void giveUp() noexcept;

  /// The order of addresses.
  friend bool operator<(Slab const& a, Slab const& b) noexcept {
    return std::less<>()(static_cast<void const*>(&a), static_cast<void const*>(&b));
  }
  friend bool operator<(ModelElementImpl const& element, Slab const& slab) noexcept {
    return std::less<>()(static_cast<void const*>(&element), static_cast<void const*>(&slab));
  }

  /// Whether `element` lies, or has lain, in this slab.
  bool covers(ModelElementImpl const& element) const noexcept {
    return (reinterpret_cast<std::uintptr_t>(&element) ^ reinterpret_cast<std::uintptr_t>(this)) >>
               bits_ ==
           0;
  }
  /// Whether an element that lay in this slab is still there.
  bool holds(ModelElementImpl const& element) const noexcept { return !isFree(placeOf(&element)); }

  /// Calls `f` for each element, which may end elements.
  template <class F>
  void forEach(F f) {
    for (std::uint32_t place = 0; place < capacity_; ++place) {
      if (!isFree(place)) f(*at(place));
    }
  }

 private:
  Slab(ModelImpl& model, std::size_t elementSize, unsigned bits) noexcept;
  ~Slab() = default;
  void deleteUnlessNeeded() noexcept;

  ModelElementImpl* at(std::size_t place) noexcept {
    return reinterpret_cast<ModelElementImpl*>(places_ + place * elementSize_);
  }
  std::uint32_t placeOf(void const* element) const noexcept {
    auto const offset = static_cast<std::byte const*>(element) - places_;
    return static_cast<std::uint32_t>(offset) / elementSize_;
  }
  bool isFree(std::uint32_t place) const noexcept {
    return (freeBits()[place / 64] >> place % 64 & 1) != 0;
  }
  // A bit for each place, set where it is free, stands behind the slab itself.
  std::uint64_t* freeBits() noexcept { return reinterpret_cast<std::uint64_t*>(this + 1); }
  std::uint64_t const* freeBits() const noexcept {
    return reinterpret_cast<std::uint64_t const*>(this + 1);
  }

  ModelImpl* model_;
  std::byte* places_ = nullptr;
  std::uint32_t elementSize_;
  std::uint32_t capacity_ = 0;
  std::uint32_t live_ = 0;
  std::uint32_t wordWithRoom_ = 0;  // no word of bits before it has any
  std::uint8_t bits_;
  bool isGivenUp_ = false;
};

}  // namespace kb::zero::internal
