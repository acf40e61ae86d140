#include "tags/lanes.hpp"

#include <algorithm>
#include <string_view>

#include "tags/valueParts.hpp"

using OpenStreetMap::Tags;

namespace {

constexpr double mostLanes = 1000.0;

std::optional<int> countOf(Tags const& tags, std::u16string_view key) {
  auto const value = tags.find(key);
  if (value == tags.end()) return std::nullopt;
  auto const parts = valueParts(value->second);
  auto const [number, rest] = leadingNumber(parts.front());
  bool const isCount = parts.size() == 1 && rest.empty() && number >= 1.0 && number <= mostLanes;
  auto const count = isCount ? static_cast<int>(number) : 0;
  return isCount && count == number ? std::optional(count) : std::nullopt;
}

}  // namespace

std::optional<int> laneCount(Tags const& tags, bool isOneway, bool isForward) {
  auto const all = countOf(tags, u"lanes");
  if (isOneway && all) return all;
  auto const mine = countOf(tags, isForward ? u"lanes:forward" : u"lanes:backward");
  if (mine || !all) return mine;
  auto const others = countOf(tags, isForward ? u"lanes:backward" : u"lanes:forward");
  return std::max(1, others ? *all - *others : *all / 2);
}
