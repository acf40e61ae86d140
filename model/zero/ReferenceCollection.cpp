#include "model/zero/ReferenceCollection.hpp"

namespace kb::zero {

ModelElement ReferenceCollection::read(std::size_t index) const {
  ModelElement found = stored(index);
  if (!found->isProxy()) return found;
  ModelElement resolved = resolveProxy(found);
  if (!mayReplaceProxy(resolved)) return found;
  // Resolving may have changed the collection.
  if (index < size() && &(*references_)[index] == found.get()) {
    references_->replace(index, *resolved.get(), isComposite() || !refersToOwner(resolved));
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

}  // namespace kb::zero
