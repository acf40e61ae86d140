// Model elements as objects of the host's.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gateway/HostArray.hpp"

namespace host {

/// The interface to a model or element behind a handle of kind `X` (kb::zero::Model,
/// velora::roadnetwork::RoadNetwork); holds one reference on it.
template <class X>
class ElementObject final : public ObjectInterface {
 public:
  static InterfacePointer create(X element) {
    return InterfacePointer(new ElementObject(std::move(element)));
  }

  void acquire() noexcept override { ++references_; }
  void release() noexcept override {
    if (--references_ == 0) delete this;
  }
  void* implementation(ClassName name) noexcept override {
    return name && name.text() == X::metaClass().name ? element_.get() : nullptr;
  }

 private:
  explicit ElementObject(X element) : element_(std::move(element)) {}
  ~ElementObject() override = default;

  X element_;
  std::size_t references_ = 1;
};

/// A 1-by-1 object array that holds `element`.
template <class X>
std::unique_ptr<HostArray> createElementArray(X const& element) {
  std::vector<InterfacePointer> elements;
  elements.push_back(ElementObject<X>::create(element));
  return createObjectArray({1, 1}, X::metaClass().name, std::move(elements));
}

}  // namespace host
