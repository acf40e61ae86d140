#include "export/PageColumns.hpp"

#include <bit>

void PageIntegers::addBytes(std::uint64_t value) {
  for (std::size_t i = 0; value != 0 || i < planes_.size(); ++i, value >>= 8) {
    if (i == planes_.size()) planes_.emplace_back(size_, '\0');
    planes_[i].push_back(static_cast<char>(value & 0xFF));
  }
  ++size_;
}

std::string PageIntegers::bytes() const {
  std::string all;
  all.reserve(size_ * planes_.size());
  for (std::string const& plane : planes_) all += plane;
  return all;
}

void PageDecimals::add(double value) {
  std::int64_t const near = nearest(value);
  if (std::bit_cast<std::uint64_t>(static_cast<double>(near) / scale) !=
      std::bit_cast<std::uint64_t>(value)) {
    exceptionPlaces_.add(static_cast<std::int64_t>(scaled_.size()));
    exceptionBits_.add(std::bit_cast<std::int64_t>(value));
  }
  scaled_.add(near);
}

void PageTexts::add(std::string_view text) {
  auto const [entry, isNew] =
      known_.try_emplace(std::string(text), static_cast<std::int64_t>(known_.size()));
  if (isNew) (texts_ += text) += '\0';
  numbers_.add(entry->second);
}
