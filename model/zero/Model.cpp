#include "model/zero/Model.hpp"

#include <utility>

#include "model/zero/ModelElement.hpp"

namespace kb::zero {

ModelImpl::ModelImpl() = default;

ModelImpl::~ModelImpl() {
  // The youngest first: what was created later refers to what was there before, and is found at
  // the end of its collections. An element that goes may destroy others, which changes the list.
  while (!elements_.empty()) {
    Handle<ModelElementImpl> const youngest = std::move(elements_.back());
    elements_.pop_back();
    youngest->model_ = nullptr;
  }
}

void ModelImpl::adopt(Handle<ModelElementImpl> const& element) {
  elements_.push_back(element);
  element->model_ = this;
  element->slot_ = elements_.size() - 1;
}

void ModelImpl::release(ModelElementImpl& element) noexcept {
  std::size_t const slot = element.slot_;
  element.model_ = nullptr;
  std::swap(elements_[slot], elements_.back());
  elements_[slot]->slot_ = slot;
  elements_.pop_back();
}

Model Model::create() {
  return Model(new ModelImpl);
}

meta::Class const& Model::metaClass() {
  static meta::Class const record{"kb.zero.Model"};
  return record;
}

}  // namespace kb::zero
