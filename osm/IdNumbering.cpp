#include "osm/IdNumbering.hpp"

#include <algorithm>
#include <stdexcept>

namespace OpenStreetMap {

void IdNumbering::assignNumbers() {
  std::sort(blocks_.begin(), blocks_.end(),
            [](Block const& a, Block const& b) { return a.key < b.key; });
  for (std::size_t i = 0; i < blocks_.size(); ++i) {
    Block& block = blocks_[i];
    block.first = static_cast<Number>(size_);
    std::size_t inBlock = 0;
    for (std::size_t word = 0; word < block.bits.size(); ++word) {
      block.before[word] = static_cast<std::uint16_t>(inBlock);
      inBlock += static_cast<std::size_t>(std::popcount(block.bits[word]));
    }
    size_ += inBlock;
    if (size_ >= none) throw std::length_error("more nodes of roads than can be numbered");
    places_[block.key] = i;
  }
}

std::size_t IdNumbering::makeBlock(std::uint64_t key) {
  auto const [place, isNew] = places_.try_emplace(key, blocks_.size());
  if (isNew) blocks_.push_back({key});
  return place->second;
}

}  // namespace OpenStreetMap
