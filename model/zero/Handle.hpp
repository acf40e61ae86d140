// The one place where references are counted.
#pragma once

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <stdexcept>
#include <utility>

namespace kb::zero {

/// Thrown by an operation through a handle that is null.
class NullHandleError : public std::logic_error {
 public:
  NullHandleError() : std::logic_error("operation on an empty model handle") {}
};

/// One counted reference to an implementation object, or null. Copying adds a reference, dropping
/// removes it. `ImplType` has `addRef` and `removeRef` and must be complete where members are used.
template <class ImplType>
class Handle {
 public:
  using Impl = ImplType;

  Handle() noexcept = default;
  explicit Handle(ImplType* impl) noexcept : impl_(impl) { addRef(); }
  Handle(Handle const& other) noexcept : impl_(other.impl_) { addRef(); }
  Handle(Handle&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
  template <class Derived>
  requires std::derived_from<Derived, ImplType> Handle(Handle<Derived> const& other)
  noexcept : Handle(other.get()) {}
  Handle& operator=(Handle other) noexcept {
    std::swap(impl_, other.impl_);
    return *this;
  }
  ~Handle() { removeRef(); }

  explicit operator bool() const noexcept { return impl_ != nullptr; }
  ImplType* get() const noexcept { return impl_; }
  /// Throws NullHandleError when the handle is null.
  ImplType* operator->() const {
    if (impl_ == nullptr) throw NullHandleError();
    return impl_;
  }

  /// Adds or removes a reference by hand, for a host that keeps a bare pointer of its own.
  void addRef() const noexcept {
    if (impl_ != nullptr) impl_->addRef();
  }
  void removeRef() const noexcept {
    if (impl_ != nullptr) impl_->removeRef();
  }

  /// Identity of the object, not equality of its contents; the order is by address.
  friend bool operator==(Handle const& a, Handle const& b) noexcept { return a.impl_ == b.impl_; }
  friend bool operator==(Handle const& a, std::nullptr_t) noexcept { return a.impl_ == nullptr; }
  friend std::strong_ordering operator<=>(Handle const& a, Handle const& b) noexcept {
    return std::compare_three_way()(a.impl_, b.impl_);
  }

 private:
  ImplType* impl_ = nullptr;
};

/// A Handle, or a class derived from one, such as Model.
template <class X>
concept AnyHandle = std::derived_from<X, Handle<typename X::Impl>>;

}  // namespace kb::zero

template <kb::zero::AnyHandle X>
struct std::hash<X> {
  std::size_t operator()(X const& handle) const noexcept {
    return std::hash<typename X::Impl*>()(handle.get());
  }
};
