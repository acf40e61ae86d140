#include "model/zero/internal/ReferenceList.hpp"

#include <algorithm>
#include <bit>
#include <boost/multi_index/hashed_index.hpp>
#include <boost/multi_index/mem_fun.hpp>
#include <boost/multi_index/member.hpp>
#include <boost/multi_index/ranked_index.hpp>
#include <boost/multi_index_container.hpp>
#include <memory>
#include <span>
#include <utility>

#include "model/zero/ModelElement.hpp"

namespace kb::zero::internal {
namespace {

using Reference = std::uintptr_t;

constexpr Reference countedBit = 1;
constexpr std::size_t inlineCapacity = 2;
// Up to here going through all of them is faster than anything else.
constexpr std::size_t fewCapacity = 32;
constexpr unsigned sizeBits = 32;  // of the word that holds the size and the capacity of an array

ModelElementImpl* elementOf(Reference reference) noexcept {
  return reinterpret_cast<ModelElementImpl*>(reference & ~countedBit);
}

Reference take(ModelElementImpl& element, bool counted) noexcept {
  if (counted) element.addRef();
  return reinterpret_cast<Reference>(&element) | (counted ? countedBit : 0);
}

void drop(Reference reference) noexcept {
  if ((reference & countedBit) != 0) elementOf(reference)->removeRef();
}

}  // namespace

/// References that are found both by their rank and by their element. Room for more of them is made
/// by entries without an element, which stand behind all others.
struct ReferenceList::Many {
  struct Entry {
    std::size_t place;  // ascending
    Reference reference;
    // Of its own for each entry without an element: many with one key would make one long chain.
    std::uintptr_t key() const noexcept {
      return reference == 0 ? place << 1 | 1 : keyOf(*elementOf(reference));
    }
  };
  struct ByRank;
  struct ByElement;
  using Entries = boost::multi_index_container<
      Entry, boost::multi_index::indexed_by<
                 boost::multi_index::ranked_unique<
                     boost::multi_index::tag<ByRank>,
                     boost::multi_index::member<Entry, std::size_t, &Entry::place>>,
                 boost::multi_index::hashed_non_unique<
                     boost::multi_index::tag<ByElement>,
                     boost::multi_index::const_mem_fun<Entry, std::uintptr_t, &Entry::key>>>>;

  static std::uintptr_t keyOf(ModelElementImpl const& element) noexcept {
    return reinterpret_cast<std::uintptr_t>(&element);
  }

  void reserve(std::size_t capacity) {
    while (entries.size() < capacity) {
      entries.insert({nextPlace, 0});
      ++nextPlace;
    }
  }
  Reference at(std::size_t index) const noexcept {
    return entries.get<ByRank>().nth(index)->reference;
  }
  Reference exchange(std::size_t index, Reference reference) noexcept {
    auto& byRank = entries.get<ByRank>();
    auto const entry = byRank.nth(index);
    Reference const before = entry->reference;
    byRank.modify(entry, [&](Entry& changed) { changed.reference = reference; });
    return before;
  }

  /// Returns how many of the references were counted. What they took is room again.
  std::size_t remove(ModelElementImpl const& element) noexcept {
    auto& byElement = entries.get<ByElement>();
    std::size_t counted = 0;
    for (auto entry = byElement.find(keyOf(element)); entry != byElement.end();
         entry = byElement.find(keyOf(element))) {
      counted += entry->reference & countedBit;
      byElement.modify(entry, [&](Entry& changed) { changed = {nextPlace, 0}; });
      ++nextPlace;
      --size;
    }
    return counted;
  }

  Entries entries;
  std::size_t size = 0;
  std::size_t nextPlace = 0;
};

ReferenceList::Reference* ReferenceList::few() noexcept {
  return isArray() ? reinterpret_cast<Reference*>(words_[0] & ~arrayBit) : words_;
}

std::size_t ReferenceList::sizeOfMore() const noexcept {
  return isMany() ? many()->size : words_[1] & ((std::uintptr_t{1} << sizeBits) - 1);
}

std::size_t ReferenceList::capacity() const noexcept {
  if (isMany()) return many()->entries.size();
  return isArray() ? words_[1] >> sizeBits : inlineCapacity;
}

void ReferenceList::setSize(std::size_t size) noexcept {
  if (isArray()) words_[1] = capacity() << sizeBits | size;
}

ModelElementImpl& ReferenceList::operator[](std::size_t index) const noexcept {
  return *elementOf(isMany() ? many()->at(index) : const_cast<ReferenceList*>(this)->few()[index]);
}

bool ReferenceList::contains(ModelElementImpl const& element) const noexcept {
  if (isMany()) return many()->entries.get<Many::ByElement>().count(Many::keyOf(element)) > 0;
  std::span<Reference const> const all(const_cast<ReferenceList*>(this)->few(), size());
  return std::any_of(all.begin(), all.end(),
                     [&](Reference reference) { return elementOf(reference) == &element; });
}

void ReferenceList::prefetch() const noexcept {
  if (isMany()) return;
  for (Reference const reference : std::span(const_cast<ReferenceList*>(this)->few(), size())) {
    ModelElementImpl::prefetch(elementOf(reference));
  }
}

void ReferenceList::reserve(std::size_t size) {
  if (size <= capacity()) return;
  if (size > fewCapacity && !isMany()) becomeMany();
  if (isMany()) {
    many()->reserve(size);
  } else {
    grow(std::bit_ceil(size));
  }
}

void ReferenceList::grow(std::size_t capacity) {
  auto* const larger = new Reference[capacity];
  std::size_t const count = size();
  std::copy_n(few(), count, larger);
  if (isArray()) delete[] few();
  words_[0] = reinterpret_cast<std::uintptr_t>(larger) | arrayBit;
  words_[1] = capacity << sizeBits | count;
}

void ReferenceList::becomeMany() {
  auto larger = std::make_unique<Many>();
  for (std::size_t i = 0; i < size(); ++i) {
    larger->entries.insert({larger->nextPlace++, few()[i]});
    ++larger->size;
  }
  if (isArray()) delete[] few();
  words_[0] = reinterpret_cast<std::uintptr_t>(larger.release()) | manyBit;
}

void ReferenceList::append(ModelElementImpl& element, bool counted) {
  std::size_t const count = size();
  reserve(count + 1);
  Reference const reference = take(element, counted);
  if (isMany()) {
    many()->exchange(count, reference);
    ++many()->size;
  } else {
    few()[count] = reference;
    setSize(count + 1);
  }
}

void ReferenceList::replace(std::size_t index, ModelElementImpl& element, bool counted) noexcept {
  Reference const reference = take(element, counted);
  drop(isMany() ? many()->exchange(index, reference) : std::exchange(few()[index], reference));
}

void ReferenceList::remove(ModelElementImpl const& element) noexcept {
  std::size_t counted = 0;
  if (isMany()) {
    counted = many()->remove(element);
  } else {
    counted = removeFew([&](Reference reference) { return elementOf(reference) == &element; });
  }
  // Last of all: the element may go, and what it was in with it.
  for (; counted > 0; --counted) element.removeRef();
}

void ReferenceList::removeGone(ModelImpl const& model) noexcept {
  auto const isGone = [&](Reference reference) { return model.isGone(*elementOf(reference)); };
  if (!isMany()) {
    removeFew(isGone);
    return;
  }
  for (std::size_t i = size(); i-- > 0;) {
    if (i >= size()) continue;  // what stood there was the same element as the one before
    if (isGone(many()->at(i))) many()->remove(*elementOf(many()->at(i)));
  }
}

// Returns how many of the references were counted.
template <class Predicate>
std::size_t ReferenceList::removeFew(Predicate isToGo) noexcept {
  std::size_t counted = 0;
  std::span<Reference> const all(few(), size());
  auto const kept = std::remove_if(all.begin(), all.end(), [&](Reference reference) {
    if (!isToGo(reference)) return false;
    counted += reference & countedBit;
    return true;
  });
  if (!isArray()) std::fill(kept, all.end(), 0);
  setSize(static_cast<std::size_t>(kept - all.begin()));
  return counted;
}

void ReferenceList::clear() noexcept {
  // What goes with the references must find the list empty.
  ReferenceList gone;
  std::swap(words_, gone.words_);
  if (gone.isMany()) {
    std::unique_ptr<Many> const many(gone.many());
    for (Many::Entry const& entry : many->entries) drop(entry.reference);
  } else {
    std::unique_ptr<Reference[]> const array(gone.isArray() ? gone.few() : nullptr);
    for (Reference const reference : std::span(gone.few(), gone.size())) drop(reference);
  }
  gone.words_[0] = 0;
}

}  // namespace kb::zero::internal
