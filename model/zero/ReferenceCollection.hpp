// An ordered list of references from one element to others.
#pragma once

#include <boost/container/small_vector.hpp>
#include <cstddef>
#include <iterator>
#include <stdexcept>

#include "model/zero/ModelElement.hpp"
#include "model/zero/meta/Property.hpp"

namespace kb::zero {

/// Belongs to an owner element and one of its properties. Each stored reference is an element or a
/// proxy for one; reading resolves a proxy lazily.
///
/// The references are counted, with one exception: in a collection that is not composite, elements
/// that refer back to the owner. Those take themselves out of the collection when they go, so that
/// two elements never keep each other alive.
class ReferenceCollection {
 public:
  /// `owner` may be null: then nothing can be resolved through an inverse.
  ReferenceCollection(ModelElementImpl* owner, meta::Property const& property) noexcept
      : owner_(owner), property_(&property) {}
  ReferenceCollection(ReferenceCollection const&) = delete;
  ReferenceCollection& operator=(ReferenceCollection const&) = delete;

  /// How many references are stored, proxies included.
  std::size_t size() const noexcept { return references_.size(); }
  bool isComposite() const noexcept { return property_->isComposite(); }
  /// The element that `proxy` stands for, or null.
  ModelElement resolveProxy(ModelElement const& proxy) const { return proxy->resolve(); }

  /// Makes room for `size` references in all, so that appending up to there can't fail.
  void reserve(std::size_t size) { references_.reserve(size); }
  /// Makes room for one more reference, in constant time on average.
  void reserveOneMore() {
    if (size() == references_.capacity()) reserve(2 * size());
  }
  /// Takes `element` out; the others keep their order. Does nothing when it is not stored. Fast
  /// for what stands near the end.
  void remove(ModelElementImpl const& element) noexcept;
  void clear() noexcept;
  /// Whether `element` itself is stored (proxies are not resolved).
  bool contains(ModelElementImpl const& element) const noexcept;

 protected:
  /// The element at `index`. A proxy is resolved, and the resolved element takes its place in the
  /// collection when it is valid, is no proxy itself and, where the property has an inverse and the
  /// collection is not composite, already refers to the owner; otherwise the proxy stays and is
  /// the result. Throws std::out_of_range; when the proxy throws, it stays in place.
  ModelElement read(std::size_t index) const;
  /// The element or proxy at `index` as it is stored. Throws std::out_of_range.
  ModelElement stored(std::size_t index) const {
    if (index >= size()) throw std::out_of_range("a collection has no such element");
    return ModelElement(references_[index].element);
  }
  void append(ModelElement const& element);

 private:
  struct Reference {
    ModelElementImpl* element;
    ModelElement keepAlive;  // null where the element is not counted
  };

  Reference makeReference(ModelElement const& element) const;
  bool mayReplaceProxy(ModelElement const& resolved) const;
  /// Whether the property has an inverse by which `element` refers to the owner.
  bool refersToOwner(ModelElement const& element) const;

  ModelElementImpl* owner_;
  meta::Property const* property_;
  // Most collections hold one or two elements, which need no memory of their own then.
  mutable boost::container::small_vector<Reference, 2> references_;
  mutable bool mayRepeat_ = false;  // one that was stored already has taken a proxy's place
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
    const_iterator(ReferenceCollectionOf const* collection, std::size_t index) noexcept
        : collection_(collection), index_(index) {}
    X operator*() const { return (*collection_)[index_]; }
    const_iterator& operator++() noexcept {
      ++index_;
      return *this;
    }
    const_iterator operator++(int) noexcept { return {collection_, index_++}; }
    friend bool operator==(const_iterator const&, const_iterator const&) noexcept = default;

   private:
    ReferenceCollectionOf const* collection_ = nullptr;
    std::size_t index_ = 0;
  };

  /// Adds a reference at the end. Throws NullHandleError when `element` is null.
  void append(X const& element) {
    element.operator->();
    ReferenceCollection::append(element);
  }
  const_iterator begin() const noexcept { return {this, 0}; }
  const_iterator end() const noexcept { return {this, size()}; }
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
