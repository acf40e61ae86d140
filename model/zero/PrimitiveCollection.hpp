// A sequence of primitive values that belongs to an element.
#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <cstddef>
#include <utility>

#include "model/zero/internal/SequenceIteratorPrimitive.hpp"

namespace kb::zero {

/// Its values never change; an element replaces the whole sequence. So copies share their values:
/// copying takes no memory and can't fail. The count of those who share is not atomic, like that of
/// elements. `Storage` is a contiguous standard container of `T`.
template <class T, class Storage>
class PrimitiveCollection {
 public:
  using value_type = T;
  using const_iterator = internal::SequenceIteratorPrimitive<T, false>;
  using const_reverse_iterator = internal::SequenceIteratorPrimitive<T, true>;

  PrimitiveCollection() = default;
  PrimitiveCollection(Storage values)  // NOLINT: values are a sequence
      : shared_(values.empty() ? nullptr : new Shared(std::move(values))) {}
  PrimitiveCollection(PrimitiveCollection const&) noexcept = default;
  PrimitiveCollection(PrimitiveCollection&&) noexcept = default;
  PrimitiveCollection& operator=(PrimitiveCollection const&) noexcept = default;
  PrimitiveCollection& operator=(PrimitiveCollection&&) noexcept = default;
  virtual ~PrimitiveCollection() = default;

  virtual std::size_t size() const { return values().size(); }
  T const& operator[](std::size_t i) const { return shared_->values[i]; }
  Storage const& values() const noexcept { return shared_ ? shared_->values : none(); }

  const_iterator begin() const { return const_iterator(first()); }
  const_iterator end() const { return const_iterator(first() + size()); }
  const_reverse_iterator rbegin() const { return const_reverse_iterator(first() + size()); }
  const_reverse_iterator rend() const { return const_reverse_iterator(first()); }

 private:
  struct Shared : boost::intrusive_ref_counter<Shared, boost::thread_unsafe_counter> {
    explicit Shared(Storage from) noexcept : values(std::move(from)) {}
    Storage const values;
  };

  static Storage const& none() noexcept {
    static Storage const empty;
    return empty;
  }
  T const* first() const { return values().data(); }

  boost::intrusive_ptr<Shared const> shared_;
};

}  // namespace kb::zero
