// An ordered list of references from one element to others.
#pragma once

#include <cstddef>
#include <iterator>
#include <stdexcept>

#include "model/zero/ModelElement.hpp"
#include "model/zero/internal/ReferenceList.hpp"
#include "model/zero/meta/Property.hpp"

namespace kb::zero {

/// Belongs to an owner element and one of its properties. Each stored reference is an element or a
/// proxy for one; reading resolves a proxy lazily.
///
/// The references are counted, with one exception: in a collection that is not composite, elements
/// that refer back to the owner. Those take themselves out of the collection when they go, so that
/// two elements never keep each other alive.
///
/// This is the owner's own collection as others see it, not a copy: it changes when the owner
/// changes it, and must not be used when the owner is gone.
class ReferenceCollection {
 public:
  ReferenceCollection() noexcept = default;  ///< of no owner; only to be assigned to
  /// `owner` may be null: then nothing can be resolved through an inverse.
  ReferenceCollection(ModelElementImpl* owner, meta::Property const& property,
                      internal::ReferenceList& references) noexcept
      : owner_(owner), property_(&property), references_(&references) {}

  /// How many references are stored, proxies included.
  std::size_t size() const noexcept { return references_->size(); }
  bool isComposite() const noexcept { return property_->isComposite(); }
  /// The element that `proxy` stands for, or null.
  ModelElement resolveProxy(ModelElement const& proxy) const { return proxy->resolve(); }
  /// Whether `element` itself is stored (proxies are not resolved).
  bool contains(ModelElementImpl const& element) const noexcept {
    return references_->contains(element);
  }

  friend bool operator==(ReferenceCollection const&, ReferenceCollection const&) = default;

 protected:
  /// The element at `index`. A proxy is resolved, and the resolved element takes its place in the
  /// collection when it is valid, is no proxy itself and, where the property has an inverse and the
  /// collection is not composite, already refers to the owner; otherwise the proxy stays and is
  /// the result. Throws std::out_of_range; when the proxy throws, it stays in place.
  ModelElement read(std::size_t index) const;
  /// The element or proxy at `index` as it is stored. Throws std::out_of_range.
  ModelElement stored(std::size_t index) const {
    if (index >= size()) throw std::out_of_range("a collection has no such element");
    return ModelElement(&(*references_)[index]);
  }

 private:
  bool mayReplaceProxy(ModelElement const& resolved) const;
  /// Whether the property has an inverse by which `element` refers to the owner.
  bool refersToOwner(ModelElement const& element) const;

  ModelElementImpl* owner_ = nullptr;
  meta::Property const* property_ = nullptr;
  internal::ReferenceList* references_ = nullptr;
};

/// A collection of elements of kind `X`.
template <class X>
class ReferenceCollectionOf : public ReferenceCollection {
 public:
  using ReferenceCollection::ReferenceCollection;

  /// Walks by index, so that a change of the collection never leaves it dangling. It makes a handle
  /// for each element, which older algorithms take for an input iterator only.
  class const_iterator {
   public:
    using iterator_concept = std::forward_iterator_tag;
    using iterator_category = std::input_iterator_tag;
    using value_type = X;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = X;

    const_iterator() noexcept = default;
    const_iterator(ReferenceCollectionOf const& collection, std::size_t index) noexcept
        : collection_(collection), index_(index) {}
    X operator*() const { return collection_[index_]; }
    const_iterator& operator++() noexcept {
      ++index_;
      return *this;
    }
    const_iterator operator++(int) noexcept { return {collection_, index_++}; }
    friend bool operator==(const_iterator const&, const_iterator const&) noexcept = default;

   private:
    ReferenceCollectionOf collection_;
    std::size_t index_ = 0;
  };

  const_iterator begin() const noexcept { return {*this, 0}; }
  const_iterator end() const noexcept { return {*this, size()}; }
  /// Throws std::out_of_range.
  X operator[](std::size_t index) const { return cast(read(index)); }
  /// The element or proxy at `index` as it is stored. Throws std::out_of_range.
  X stored(std::size_t index) const { return cast(ReferenceCollection::stored(index)); }

 private:
  // Only handles of kind X, and what passes Property::accepts, are ever stored.
  static X cast(ModelElement const& element) {
    return X(static_cast<typename X::Impl*>(element.get()));
  }
};

}  // namespace kb::zero
