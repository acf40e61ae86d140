// The hash table of element records.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "support/IdHash.hpp"
#include "support/lookup.hpp"

namespace OpenStreetMap {

/// Maps an id to its record, for a `Record` that is trivially copyable and has a member `id`.
///
/// Records stand in blocks, in the order in which they came, and never move. The index over them is
/// an open-addressing table with linear probing of (record number, lower half of the id): eight
/// bytes a slot, and a record is looked at only when 32 bits of its id match.
///
/// Files are mostly sorted by id. While the ids ascend there is no index: none is needed to see
/// that a record is new, and making it at the end, in one go, costs a third of making it on the
/// way.
template <class Record>
class ElementTable {
 public:
  using key_type = std::int64_t;
  using mapped_type = Record;

  ElementTable() = default;
  ElementTable(ElementTable const&) = delete;
  ElementTable& operator=(ElementTable const&) = delete;

  /// Walks the records in the order in which they came.
  class const_iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Record;
    using difference_type = std::ptrdiff_t;
    using pointer = Record const*;
    using reference = Record const&;

    const_iterator() noexcept = default;
    const_iterator(ElementTable const* table, std::size_t number) noexcept
        : table_(table), number_(number) {}
    reference operator*() const noexcept { return table_->record(number_); }
    pointer operator->() const noexcept { return &**this; }
    const_iterator& operator++() noexcept {
      ++number_;
      return *this;
    }
    const_iterator operator++(int) noexcept {
      const_iterator const before = *this;
      ++number_;
      return before;
    }
    friend bool operator==(const_iterator const&, const_iterator const&) noexcept = default;

   private:
    ElementTable const* table_ = nullptr;
    std::size_t number_ = 0;
  };

  std::size_t size() const noexcept { return size_; }
  bool empty() const noexcept { return size_ == 0; }
  const_iterator begin() const noexcept { return {this, 0}; }
  const_iterator end() const noexcept { return {this, size_}; }

  /// The record with this id, or null.
  Record const* find(std::int64_t id) const noexcept {
    std::size_t const number = search(id);
    return number < size_ ? &record(number) : nullptr;
  }
  /// Throws std::out_of_range("_Map_base::at") when there is no such id.
  Record const& at(std::int64_t id) const {
    Record const* const found = find(id);
    if (found == nullptr) support::throwMissing();
    return *found;
  }

  /// Stores a record unless its id is taken. Returns the stored record, or null. Throws
  /// std::length_error beyond some four thousand million records, std::bad_alloc.
  Record* insert(Record const& newRecord) {
    if (size_ == maxSize) {
      throw std::length_error("more elements of one kind than a table can hold");
    }
    if (slots_.empty() && (size_ == 0 || record(size_ - 1).id < newRecord.id)) {
      return append(newRecord);
    }
    if (2 * (size_ + 1) > slots_.size()) makeIndex(size_ + 1);
    std::size_t const at = slotOf(newRecord.id);
    if (slots_[at].occupied()) return nullptr;
    Record* const stored = append(newRecord);
    slots_[at] = Slot(size_ - 1, newRecord.id);
    return stored;
  }

  /// Makes lookups fast, once all records are in.
  void makeIndex() {
    if (slots_.empty() && size_ > 0) makeIndex(size_);
  }

  void clear() noexcept {
    blocks_.clear();
    slots_.clear();
    size_ = 0;
  }

 private:
  static constexpr std::size_t blockSize = 4096;
  static constexpr std::size_t firstSlots = 1024;
  static constexpr std::size_t ahead = 16;
  static constexpr std::size_t maxSize = std::numeric_limits<std::uint32_t>::max() - 1;

  union Storage {
    Storage() noexcept {}
    Record record;
  };

  class Slot {
   public:
    Slot() noexcept = default;
    Slot(std::size_t number, std::int64_t id) noexcept
        : number_(static_cast<std::uint32_t>(number) + 1), tag_(tagOf(id)) {}
    bool occupied() const noexcept { return number_ != 0; }
    std::uint32_t number() const noexcept { return number_ - 1; }
    bool mayHold(std::int64_t id) const noexcept { return tag_ == tagOf(id); }

   private:
    static std::uint32_t tagOf(std::int64_t id) noexcept { return static_cast<std::uint32_t>(id); }
    std::uint32_t number_ = 0;  // of the record, counted from 1; 0 is a free slot
    std::uint32_t tag_ = 0;
  };

  Record& record(std::size_t number) const noexcept {
    return blocks_[number / blockSize][number % blockSize].record;
  }

  Record* append(Record const& newRecord) {
    if (size_ == blocks_.size() * blockSize) {
      blocks_.push_back(std::make_unique_for_overwrite<Storage[]>(blockSize));
    }
    return std::construct_at(&record(size_++), newRecord);
  }

  // The number of the record with this id, or a number beyond the last.
  std::size_t search(std::int64_t id) const noexcept {
    if (!slots_.empty()) {
      Slot const slot = slots_[slotOf(id)];
      return slot.occupied() ? slot.number() : size_;
    }
    std::size_t first = 0;
    for (std::size_t last = size_; first < last;) {
      std::size_t const middle = first + (last - first) / 2;
      (record(middle).id < id ? first : last) = record(middle).id < id ? middle + 1 : middle;
    }
    return first < size_ && record(first).id == id ? first : size_;
  }

  // The place of the slot that holds `id`, or of the free slot where it belongs. There must be one.
  std::size_t slotOf(std::int64_t id) const noexcept {
    std::size_t const mask = slots_.size() - 1;
    std::size_t at = hash_(id) & mask;
    while (slots_[at].occupied() &&
           !(slots_[at].mayHold(id) && record(slots_[at].number()).id == id)) {
      at = (at + 1) & mask;
    }
    return at;
  }

  // Half full at most with `count` records.
  void makeIndex(std::size_t count) {
    std::vector<Slot> slots(std::max(firstSlots, std::bit_ceil(2 * count)));
    std::size_t const mask = slots.size() - 1;
    auto const home = [&](std::size_t number) { return hash_(record(number).id) & mask; };
    for (std::size_t number = 0; number < size_; ++number) {
      // The slots are all over the memory: the ones to come are fetched meanwhile.
      if (number + ahead < size_) __builtin_prefetch(&slots[home(number + ahead)], 1);
      std::size_t at = home(number);
      while (slots[at].occupied()) at = (at + 1) & mask;
      slots[at] = Slot(number, record(number).id);
    }
    slots_ = std::move(slots);
  }

  std::vector<std::unique_ptr<Storage[]>> blocks_;
  std::vector<Slot> slots_;
  std::size_t size_ = 0;
  support::IdHash hash_;
};

}  // namespace OpenStreetMap
