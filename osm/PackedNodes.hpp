// The nodes of a file, one after the other, in little memory.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <vector>

namespace OpenStreetMap {

/// A list of ids and positions that can only be added to and walked through. What most files hold,
/// ids in small steps and seven decimals, takes some ten bytes a node; anything else is kept as
/// exactly, and takes more.
class PackedNodes {
 public:
  using Id = std::int64_t;

  /// Whether each id is greater than the one before.
  bool isAscending() const noexcept { return isAscending_; }

  std::size_t size() const noexcept { return size_; }

  /// Positions are in degrees and come back to the last bit.
  void add(Id id, double latitude, double longitude) {
    if (size_ % chunkSize == 0) chunks_.emplace_back();
    Chunk& chunk = chunks_.back();
    isAscending_ = isAscending_ && (size_ == 0 || last_ < id);
    addStep(chunk, static_cast<std::uint64_t>(id) - static_cast<std::uint64_t>(last_));
    last_ = id;
    Units const units{unitsOf(latitude), unitsOf(longitude)};
    if (units.latitude == none || units.longitude == none) {
      chunk.odd.push_back({latitude, longitude});
      chunk.units.push_back({none, none});
    } else {
      chunk.units.push_back(units);
    }
    ++size_;
  }

  /// Calls `action(id, latitude, longitude)` for each node, in order.
  template <class Action>
  void forEach(Action const& action) const {
    std::uint64_t id = 0;
    for (Chunk const& chunk : chunks_) {
      std::uint8_t const* steps = chunk.steps.data();
      auto odd = chunk.odd.begin();
      for (Units const units : chunk.units) {
        id += takeStep(steps);
        bool const isOdd = units.latitude == none;
        Position const position =
            isOdd ? *odd++ : Position{degreesOf(units.latitude), degreesOf(units.longitude)};
        action(static_cast<Id>(id), position.latitude, position.longitude);
      }
    }
  }

 private:
  struct Units {  // of 100 nanodegrees
    std::int32_t latitude;
    std::int32_t longitude;
  };
  struct Position {
    double latitude;
    double longitude;
  };
  struct Chunk {
    std::vector<std::uint8_t> steps;  // from id to id: zigzag, seven bits a byte, the lowest first
    std::vector<Units> units;
    std::vector<Position> odd;  // positions that units can't tell exactly
  };

  static constexpr std::size_t chunkSize = 4096;
  static constexpr std::int32_t none = std::numeric_limits<std::int32_t>::min();

  // Rounds as the decimal number in a text file would be.
  static double degreesOf(std::int32_t units) noexcept {
    return static_cast<double>(std::int64_t{units} * 100) / 1e9;
  }
  static std::int32_t unitsOf(double degrees) noexcept {
    auto const units = static_cast<std::int32_t>(degrees * 1e7 + std::copysign(0.5, degrees));
    bool const isExact =
        std::bit_cast<std::uint64_t>(degreesOf(units)) == std::bit_cast<std::uint64_t>(degrees);
    return isExact ? units : none;
  }

  static void addStep(Chunk& chunk, std::uint64_t step) {
    std::uint64_t zigzag = step << 1 ^ (step >> 63 != 0 ? ~std::uint64_t{0} : 0);
    for (; zigzag > 0x7F; zigzag >>= 7) {
      chunk.steps.push_back(static_cast<std::uint8_t>(zigzag | 0x80));
    }
    chunk.steps.push_back(static_cast<std::uint8_t>(zigzag));
  }
  static std::uint64_t takeStep(std::uint8_t const*& steps) noexcept {
    std::uint64_t zigzag = 0;
    unsigned shift = 0;
    for (; (*steps & 0x80) != 0; shift += 7) zigzag |= std::uint64_t{*steps++ & 0x7FU} << shift;
    zigzag |= std::uint64_t{*steps++} << shift;
    return zigzag >> 1 ^ ((zigzag & 1) != 0 ? ~std::uint64_t{0} : 0);
  }

  std::deque<Chunk> chunks_;
  std::size_t size_ = 0;
  Id last_ = 0;
  bool isAscending_ = true;
};

}  // namespace OpenStreetMap
