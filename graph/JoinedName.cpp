#include "graph/JoinedName.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// Up to here a plain search is as fast.
constexpr std::size_t longName = 512;

// Whether `text` stands somewhere between the two, by the algorithm of Knuth, Morris and Pratt.
template <class Units, class Iterator>
bool standsIn(Units const& text, Iterator first, Iterator last) {
  std::vector<std::size_t> border(text.size() + 1, 0);  // of each prefix, by its length
  std::size_t matched = 0;
  auto const step = [&](char16_t unit) {
    while (matched > 0 && text[matched] != unit) matched = border[matched];
    if (text[matched] == unit) ++matched;
  };
  for (std::size_t i = 1; i < text.size(); ++i) {
    step(text[i]);
    border[i + 1] = matched;
  }
  matched = 0;
  for (; first != last && matched < text.size(); ++first) step(*first);
  return matched == text.size();
}

}  // namespace

void JoinedName::join(JoinedName& other) {
  if (!units_ && !other.units_ && whole_->size() + other.whole_->size() < longName) {
    if (whole_->find(*other.whole_) == std::u16string::npos) {
      whole_ = *whole_ + u'-' + *other.whole_;
    }
    return;
  }
  makeUnits();
  other.makeUnits();
  makeIndexIfLong();
  if (contains(*other.units_)) return;
  if (other.units_->size() <= units_->size()) {
    other.units_->push_front(u'-');
    append(*other.units_);
  } else {
    units_->push_back(u'-');
    other.prepend(*units_);
    std::swap(*this, other);
  }
}

kb::zero::SharedText JoinedName::text() const {
  return units_ ? std::u16string(units_->begin(), units_->end()) : whole_;
}

void JoinedName::makeUnits() {
  if (!units_) units_.emplace(whole_->begin(), whole_->end());
}

bool JoinedName::contains(Units const& text) const {
  if (text.empty()) return true;
  if (text.size() > units_->size()) return false;
  if (!index_) return standsIn(text, units_->begin(), units_->end());
  return index_->behind.contains(text.begin(), text.end()) ||
         index_->before.contains(text.rbegin(), text.rend()) || standsAcrossSeam(text);
}

bool JoinedName::standsAcrossSeam(Units const& text) const {
  std::size_t const reach = text.size() - 1;
  std::size_t const first = index_->seam - std::min(index_->seam, reach);
  std::size_t const last = std::min(index_->seam + reach, units_->size());
  auto const at = [&](std::size_t i) { return units_->begin() + static_cast<std::ptrdiff_t>(i); };
  return standsIn(text, at(first), at(last));
}

void JoinedName::makeIndexIfLong() {
  if (index_ || units_->size() <= longName) return;
  index_ = Index{{}, {}, 0};
  for (char16_t const unit : *units_) index_->behind.append(unit);
}

void JoinedName::append(Units const& text) {
  units_->insert(units_->end(), text.begin(), text.end());
  if (!index_) return;
  for (char16_t const unit : text) index_->behind.append(unit);
}

void JoinedName::prepend(Units const& text) {
  units_->insert(units_->begin(), text.begin(), text.end());
  if (!index_) return;
  for (auto unit = text.rbegin(); unit != text.rend(); ++unit) index_->before.append(*unit);
  index_->seam += text.size();
}
