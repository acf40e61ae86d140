// Consecutive numbers for a set of ids.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/IdMap.hpp"
#include "support/Progress.hpp"

namespace OpenStreetMap {

/// A set of ids, each of which gets a number when all of them are in: from 0 on, in the ascending
/// order of the ids as unsigned numbers, which is that of a network's Nodes.
///
/// Ids stand in blocks of 512 that follow one another, a bit each, and a block knows the number of
/// its first: a succinct rank structure (Jacobson 1989). Ids that are neighbours, as those of a
/// way's nodes mostly are, share a block, which takes some 100 bytes.
class IdNumbering {
 public:
  using Id = std::int64_t;
  using Number = std::uint32_t;
  using Place = std::uint32_t;
  static constexpr Number none = std::numeric_limits<Number>::max();

 private:
  static constexpr unsigned blockBits = 9;
  static constexpr unsigned wordBits = 6;

  static std::uint64_t keyOf(Id id) noexcept { return static_cast<std::uint64_t>(id) >> blockBits; }
  static std::size_t wordOf(Id id) noexcept {
    return static_cast<std::uint64_t>(id) >> wordBits & ((1U << (blockBits - wordBits)) - 1);
  }
  static std::uint64_t bitOf(Id id) noexcept {
    return std::uint64_t{1} << (static_cast<std::uint64_t>(id) & 63);
  }

  struct Block {
    std::uint64_t key;  // the ids without their lowest bits
    std::array<std::uint64_t, 1U << (blockBits - wordBits)> bits{};
    std::array<std::uint16_t, 1U << (blockBits - wordBits)> before{};  // ids before each word
    Number first = 0;                                                  // number of its first id

    Number numberOf(Id id) const noexcept {
      std::size_t const word = wordOf(id);
      std::uint64_t const bit = bitOf(id);
      if ((bits[word] & bit) == 0) return none;
      auto const inWord = static_cast<Number>(std::popcount(bits[word] & (bit - 1)));
      return first + before[word] + inWord;
    }
  };

 public:
  /// Puts an id into the set. Returns whether it is new.
  bool insert(Id id) {
    std::uint64_t const key = keyOf(id);
    if (blocks_.empty() || blocks_[last_].key != key) last_ = makeBlock(key);
    std::uint64_t& word = blocks_[last_].bits[wordOf(id)];
    bool const isNew = (word & bitOf(id)) == 0;
    word |= bitOf(id);
    return isNew;
  }
  /// The same; returns where the id stands, for `numberAt`.
  Place add(Id id) {
    insert(id);
    return last_;
  }

  /// Gives the numbers; nothing can be added any more. Throws std::length_error for more than some
  /// four thousand million ids, and what the steps throw.
  void assignNumbers(support::Steps& steps);

  /// The number of an id that was added, by what `add` returned: without looking it up.
  Number numberAt(Place place, Id id) const noexcept { return blocks_[place].numberOf(id); }

  /// How many ids have numbers.
  std::size_t size() const noexcept { return size_; }

  /// Finds numbers, fastest for an id that is near the one before.
  class Finder {
   public:
    explicit Finder(IdNumbering const& numbering) noexcept : numbering_(&numbering) {}
    /// `none` for an id that is not in the set.
    Number operator()(Id id) noexcept {
      std::uint64_t const key = keyOf(id);
      if (key != key_) {
        block_ = numbering_->findBlock(key);
        key_ = key;
      }
      return block_ == nullptr ? none : block_->numberOf(id);
    }

   private:
    IdNumbering const* numbering_;
    std::uint64_t key_ = ~std::uint64_t{0};  // no block's: keys are shorter
    Block const* block_ = nullptr;
  };

  /// Calls `action` with each id, in the order of their numbers.
  template <class Action>
  void forEach(Action const& action) const {
    for (Place const place : order_) {
      Block const& block = blocks_[place];
      for (std::size_t word = 0; word < block.bits.size(); ++word) {
        for (std::uint64_t bits = block.bits[word]; bits != 0; bits &= bits - 1) {
          auto const bit = static_cast<std::uint64_t>(std::countr_zero(bits));
          action(static_cast<Id>(block.key << blockBits | word << wordBits | bit));
        }
      }
    }
  }

 private:
  Place makeBlock(std::uint64_t key);
  Block const* findBlock(std::uint64_t key) const noexcept {
    auto const found = places_.find(key);
    return found == places_.end() ? nullptr : &blocks_[found->second];
  }

  std::vector<Block> blocks_;          // in the order in which they came
  support::ModelIdMap<Place> places_;  // of blocks, by their keys
  std::vector<Place> order_;           // of their keys, once there are numbers
  Place last_ = 0;                     // the block of the last id
  std::size_t size_ = 0;
};

}  // namespace OpenStreetMap
