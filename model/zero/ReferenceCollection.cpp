#include "model/zero/ReferenceCollection.hpp"

#include <algorithm>
#include <utility>

namespace kb::zero {

void ReferenceCollection::append(ModelElement const& element) {
  references_.push_back(makeReference(element));
}

void ReferenceCollection::remove(ModelElementImpl const& element) noexcept {
  auto const isElement = [&](Reference const& r) { return r.element == &element; };
  if (mayRepeat_) {
    references_.erase(std::remove_if(references_.begin(), references_.end(), isElement),
                      references_.end());
    return;
  }
  // From the end: what came last is mostly what goes first.
  auto const found = std::find_if(references_.rbegin(), references_.rend(), isElement);
  if (found != references_.rend()) references_.erase(std::next(found).base());
}

void ReferenceCollection::clear() noexcept {
  // What goes with the references must find the collection empty.
  auto const gone = std::exchange(references_, {});
}

bool ReferenceCollection::contains(ModelElementImpl const& element) const noexcept {
  return std::any_of(references_.begin(), references_.end(),
                     [&](Reference const& r) { return r.element == &element; });
}

ModelElement ReferenceCollection::read(std::size_t index) const {
  ModelElement found = stored(index);
  if (!found->isProxy()) return found;
  ModelElement resolved = resolveProxy(found);
  if (!mayReplaceProxy(resolved)) return found;
  // Resolving may have changed the collection.
  if (index < references_.size() && references_[index].element == found.get()) {
    mayRepeat_ = mayRepeat_ || contains(*resolved.get());
    references_[index] = makeReference(resolved);
    if (owner_ != nullptr) owner_->replaced(*property_, *found.get(), *resolved.get());
  }
  return resolved;
}

bool ReferenceCollection::mayReplaceProxy(ModelElement const& resolved) const {
  if (!resolved || resolved->isProxy() || !property_->accepts(*resolved.get())) return false;
  return isComposite() || property_->inverse() == nullptr || refersToOwner(resolved);
}

bool ReferenceCollection::refersToOwner(ModelElement const& element) const {
  Handle<meta::Property const> const inverse(property_->inverse());
  return inverse && owner_ != nullptr &&
         owner_->_inverseContainsThis(element.get(), *inverse.get());
}

ReferenceCollection::Reference ReferenceCollection::makeReference(
    ModelElement const& element) const {
  bool const counted = isComposite() || !refersToOwner(element);
  return {element.get(), counted ? element : ModelElement()};
}

}  // namespace kb::zero
