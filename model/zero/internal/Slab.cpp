#include "model/zero/internal/Slab.hpp"

#include <bit>
#include <new>

#include "model/zero/Model.hpp"
#include "model/zero/ModelElement.hpp"

// The sanitizer is to notice when an element is used that is no more.
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#endif
#endif
#ifndef ASAN_POISON_MEMORY_REGION
#define ASAN_POISON_MEMORY_REGION(address, size) static_cast<void>(0)
#define ASAN_UNPOISON_MEMORY_REGION(address, size) static_cast<void>(0)
#endif

namespace kb::zero::internal {
namespace {

constexpr std::size_t wordBits = 64;

std::align_val_t alignment(unsigned bits) {
  return std::align_val_t(std::size_t{1} << bits);
}

}  // namespace

Slab* Slab::create(ModelImpl& model, std::size_t elementSize, unsigned bits) {
  void* const memory = ::operator new (std::size_t{1} << bits, alignment(bits));
  return new (memory) Slab(model, elementSize, bits);
}

Slab::Slab(ModelImpl& model, std::size_t elementSize, unsigned bits) noexcept
    : model_(&model),
      elementSize_(static_cast<std::uint32_t>(elementSize)),
      bits_(static_cast<std::uint8_t>(bits)) {
  std::size_t const room = (std::size_t{1} << bits) - sizeof(Slab) - sizeof(std::uint64_t);
  capacity_ = static_cast<std::uint32_t>(room * 8 / (elementSize * 8 + 1));
  std::size_t const words = (capacity_ + wordBits - 1) / wordBits;
  for (std::size_t i = 0; i < words; ++i) freeBits()[i] = ~std::uint64_t{0};
  if (capacity_ % wordBits != 0) freeBits()[words - 1] >>= wordBits - capacity_ % wordBits;
  places_ = reinterpret_cast<std::byte*>(freeBits() + words);
  // The analyzer takes the bits for members.
  // NOLINTNEXTLINE(clang-analyzer-optin.cplusplus.UninitializedObject)
  ASAN_POISON_MEMORY_REGION(places_, capacity_ * elementSize);
}

Slab& Slab::of(ModelElementImpl const& element, unsigned bits) noexcept {
  auto const address = reinterpret_cast<std::uintptr_t>(&element);
  return *reinterpret_cast<Slab*>(address >> bits << bits);
}

void* Slab::freePlace() noexcept {
  while (freeBits()[wordWithRoom_] == 0) ++wordWithRoom_;
  auto const bit = static_cast<std::size_t>(std::countr_zero(freeBits()[wordWithRoom_]));
  void* const place = at(wordWithRoom_ * wordBits + bit);
  ASAN_UNPOISON_MEMORY_REGION(place, elementSize_);
  return place;
}

void Slab::occupy() noexcept {
  freeBits()[wordWithRoom_] &= freeBits()[wordWithRoom_] - 1;
  ++live_;
}

void Slab::vacate(void* element) noexcept {
  std::uint32_t const place = placeOf(element);
  ASAN_POISON_MEMORY_REGION(element, elementSize_);
  std::uint32_t const word = place / wordBits;
  freeBits()[word] |= std::uint64_t{1} << place % wordBits;
  if (word < wordWithRoom_) wordWithRoom_ = word;
  --live_;
  if (model_ != nullptr) {
    model_->hasRoom(*this);
  } else {
    deleteUnlessNeeded();
  }
}

void Slab::giveUp() noexcept {
  model_ = nullptr;
  isGivenUp_ = true;
  deleteUnlessNeeded();
}

void Slab::deleteUnlessNeeded() noexcept {
  if (!isGivenUp_ || live_ > 0) return;
  unsigned const bits = bits_;
  ASAN_UNPOISON_MEMORY_REGION(places_, std::size_t{capacity_} * elementSize_);
  this->~Slab();
  ::operator delete(this, alignment(bits));
}

}  // namespace kb::zero::internal
