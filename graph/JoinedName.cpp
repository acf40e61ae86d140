#include "graph/JoinedName.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

// Up to here a plain search is as fast.
constexpr std::size_t longName = 512;

// The gram that begins at each place, of as many as there are.
std::uint64_t gramAt(std::deque<char16_t> const& text, std::size_t place) {
  auto const unit = [&](std::size_t i) { return std::uint64_t{text[place + i]}; };
  return unit(0) << 48 | unit(1) << 32 | unit(2) << 16 | unit(3);
}

}  // namespace

void JoinedName::join(JoinedName& other) {
  if (contains(other.units_)) return;
  if (other.units_.size() <= units_.size()) {
    other.units_.push_front(u'-');
    append(other.units_);
  } else {
    units_.push_back(u'-');
    other.prepend(units_);
    std::swap(*this, other);
  }
}

bool JoinedName::contains(std::deque<char16_t> const& text) const {
  if (text.size() > units_.size()) return false;
  if (!indexed_ || text.size() < gramSize) {
    return std::search(units_.begin(), units_.end(), text.begin(), text.end()) != units_.end() ||
           text.empty();
  }
  // The text can only stand where its rarest gram does.
  std::vector<std::int64_t> const* rarest = nullptr;
  std::size_t offset = 0;
  std::size_t i = 0;
  do {
    auto const found = places_.find(gramAt(text, i));
    if (found == places_.end()) return false;
    if (rarest == nullptr || found->second.size() < rarest->size()) {
      rarest = &found->second;
      offset = i;
    }
  } while (++i + gramSize <= text.size());
  return std::any_of(rarest->begin(), rarest->end(), [&](std::int64_t place) {
    std::size_t const at = static_cast<std::size_t>(place) + origin_;
    return at >= offset && standsAt(at - offset, text);
  });
}

bool JoinedName::standsAt(std::size_t at, std::deque<char16_t> const& text) const {
  auto const first = units_.begin() + static_cast<std::ptrdiff_t>(at);
  return text.size() <= units_.size() - at && std::equal(text.begin(), text.end(), first);
}

void JoinedName::append(std::deque<char16_t> const& text) {
  std::size_t const before = units_.size();
  units_.insert(units_.end(), text.begin(), text.end());
  index(before < gramSize ? 0 : before - gramSize + 1, units_.size());
}

void JoinedName::prepend(std::deque<char16_t> const& text) {
  units_.insert(units_.begin(), text.begin(), text.end());
  if (indexed_) origin_ += text.size();
  index(0, text.size());
}

void JoinedName::index(std::size_t first, std::size_t last) {
  if (units_.size() <= longName) return;
  if (!std::exchange(indexed_, true)) {
    first = 0;
    last = units_.size();
  }
  last = std::min(last, units_.size() - gramSize + 1);
  for (std::size_t i = first; i < last; ++i) {
    places_[gramAt(units_, i)].push_back(static_cast<std::int64_t>(i) -
                                         static_cast<std::int64_t>(origin_));
  }
}
