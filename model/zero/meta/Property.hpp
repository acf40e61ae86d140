// The record that describes a property whose value is a collection of references, or the single
// reference at the other end of one.
#pragma once

#include <atomic>
#include <cstddef>

namespace kb::zero {
class ModelElementImpl;
}

namespace kb::zero::meta {

/// All models of the process share it, so references are counted atomically: models in different
/// threads know nothing of one another. The count tells who uses the property and owns nothing: a
/// property is a static object and is never deleted.
class Property final {
 public:
  /// The property at the other end of a relation that both ends know of; a function, because the
  /// two refer to each other.
  using Inverse = Property const& (*)();
  /// Whether an element is of the kind that the property holds.
  using Accepts = bool (*)(ModelElementImpl const&);

  /// `inverseProperty` is null when only this end knows of the relation.
  constexpr Property(char const* propertyName, bool composite, Accepts accepted,
                     Inverse inverseProperty) noexcept
      : name_(propertyName), composite_(composite), accepts_(accepted), inverse_(inverseProperty) {}
  Property(Property const&) = delete;
  Property& operator=(Property const&) = delete;

  void addRef() const noexcept { references_.fetch_add(1, std::memory_order_relaxed); }
  void removeRef() const noexcept { references_.fetch_sub(1, std::memory_order_relaxed); }
  std::size_t references() const noexcept { return references_; }

  char const* name() const noexcept { return name_; }
  /// Whether the elements live and die with their owner.
  bool isComposite() const noexcept { return composite_; }
  bool accepts(ModelElementImpl const& element) const { return accepts_(element); }
  Property const* inverse() const { return inverse_ == nullptr ? nullptr : &inverse_(); }

 private:
  char const* name_;
  bool composite_;
  Accepts accepts_;
  Inverse inverse_;
  mutable std::atomic<std::size_t> references_{0};
};

}  // namespace kb::zero::meta
