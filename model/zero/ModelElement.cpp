#include "model/zero/ModelElement.hpp"

#include <atomic>
#include <mutex>
#include <unordered_map>

namespace kb::zero {
namespace {

std::atomic<std::size_t> liveElements{0};

// Hardly any element has a uuid: it would take more room in each than most of what they hold.
struct Uuids {
  std::mutex mutex;  // models in different threads share the table
  std::unordered_map<ModelElementImpl const*, boost::uuids::uuid> byElement;
};

Uuids& uuids() {
  static auto* const table = new Uuids;  // never deleted: elements may outlive static objects
  return *table;
}

}  // namespace

ModelElementImpl::ModelElementImpl(boost::uuids::uuid const& uuid) {
  if (!uuid.is_nil()) {
    std::scoped_lock const lock(uuids().mutex);
    uuids().byElement.insert_or_assign(this, uuid);
    hasUuid_ = true;
  }
  liveElements.fetch_add(1, std::memory_order_relaxed);
}

ModelElementImpl::~ModelElementImpl() {
  liveElements.fetch_sub(1, std::memory_order_relaxed);
  if (!hasUuid_) return;
  std::scoped_lock const lock(uuids().mutex);
  uuids().byElement.erase(this);
}

boost::uuids::uuid const& ModelElementImpl::getUuid() const noexcept {
  static constexpr boost::uuids::uuid nil{};
  if (!hasUuid_) return nil;
  std::scoped_lock const lock(uuids().mutex);
  return uuids().byElement.find(this)->second;
}

std::size_t ModelElementImpl::liveCount() noexcept {
  return liveElements.load(std::memory_order_relaxed);
}

void ModelElementImpl::dispose() noexcept {
  if (slabBits_ == 0) {
    delete this;
    return;
  }
  internal::Slab& slab = internal::Slab::of(*this, slabBits_);
  this->~ModelElementImpl();
  slab.vacate(this);
}

ModelImpl* ModelElementImpl::home() const noexcept {
  ModelImpl* const model = origin();
  return model != nullptr && !model->isGoing_ ? model : nullptr;
}

ModelImpl* ModelElementImpl::origin() const noexcept {
  return slabBits_ == 0 ? nullptr : internal::Slab::of(*this, slabBits_).model();
}

bool ModelElementImpl::goesTogetherWith(ModelElementImpl const& other) const noexcept {
  ModelImpl const* const model = origin();
  return model != nullptr && model->isGoing_ && other.origin() == model;
}

void ModelElementImpl::enterModel(ModelImpl& model) noexcept {
  isInModel_ = true;
  ++model.size_;
  addRef();
}

void ModelElementImpl::leaveModel() noexcept {
  if (!isInModel_) return;
  isInModel_ = false;
  if (ModelImpl* const model = home()) --model->size_;
  removeRef();
}

void ModelElementImpl::destroy() {
  ModelElement const keepUntilDone(this);
  detach();
  leaveModel();
}

void ModelElementImpl::bringBack(ModelElementImpl& other) const noexcept {
  ModelImpl* const model = other.home();
  if (model != nullptr && model == home() && isInModel_ && !other.isInModel_) {
    other.enterModel(*model);
  }
}

ModelElement ModelElementImpl::resolve() const {
  return {};
}

bool ModelElementImpl::_inverseContainsThis(ModelElementImpl* element,
                                            meta::Property const& inverse) const {
  return element != nullptr && element->refersTo(inverse, *this);
}

}  // namespace kb::zero
