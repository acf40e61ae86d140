#include "osm/IdNumbering.hpp"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace OpenStreetMap {

void IdNumbering::assignNumbers(support::Steps& steps) {
  order_.resize(blocks_.size());
  std::iota(order_.begin(), order_.end(), Place{0});
  std::sort(order_.begin(), order_.end(),
            steps.polling([this](Place a, Place b) { return blocks_[a].key < blocks_[b].key; }));
  for (Place const place : order_) {
    steps.poll();
    Block& block = blocks_[place];
    block.first = static_cast<Number>(size_);
    std::size_t inBlock = 0;
    for (std::size_t word = 0; word < block.bits.size(); ++word) {
      block.before[word] = static_cast<std::uint16_t>(inBlock);
      inBlock += static_cast<std::size_t>(std::popcount(block.bits[word]));
    }
    size_ += inBlock;
    if (size_ >= none) throw std::length_error("more nodes than can be numbered");
  }
}

IdNumbering::Place IdNumbering::makeBlock(std::uint64_t key) {
  auto const [place, isNew] = places_.try_emplace(key, static_cast<Place>(blocks_.size()));
  if (isNew) blocks_.push_back({key});
  return place->second;
}

}  // namespace OpenStreetMap
