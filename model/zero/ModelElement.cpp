#include "model/zero/ModelElement.hpp"

#include <atomic>

namespace kb::zero {
namespace {
std::atomic<std::size_t> liveElements{0};
}

ModelElementImpl::ModelElementImpl(boost::uuids::uuid const& uuid) noexcept : uuid_(uuid) {
  liveElements.fetch_add(1, std::memory_order_relaxed);
}

ModelElementImpl::~ModelElementImpl() {
  liveElements.fetch_sub(1, std::memory_order_relaxed);
}

std::size_t ModelElementImpl::liveCount() noexcept {
  return liveElements.load(std::memory_order_relaxed);
}

void ModelElementImpl::destroy() {
  ModelElement const keepUntilDone(this);
  detach();
  if (model_ != nullptr) model_->release(*this);
}

void ModelElementImpl::shareModelWith(ModelElementImpl& other) const {
  if (model_ != nullptr && other.model_ == nullptr) model_->adopt(ModelElement(&other));
}

ModelElement ModelElementImpl::resolve() const {
  return {};
}

bool ModelElementImpl::_inverseContainsThis(ModelElementImpl* element,
                                            meta::Property const& inverse) const {
  return element != nullptr && element->refersTo(inverse, *this);
}

}  // namespace kb::zero
