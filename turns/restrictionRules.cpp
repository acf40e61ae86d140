#include "turns/restrictionRules.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

using OpenStreetMap::Tags;

namespace {

using Text = std::u16string_view;

constexpr Text prefix = u"restriction:";
constexpr Text conditional = u"conditional";

constexpr std::array<Text, 10> kinds{
    u"no_left_turn",    u"no_right_turn",    u"no_straight_on", u"no_u_turn", u"only_left_turn",
    u"only_right_turn", u"only_straight_on", u"only_u_turn",    u"no_entry",  u"no_exit"};

Text trimmed(Text text) {
  auto const first = text.find_first_not_of(u' ');
  if (first == Text::npos) return {};
  return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

// Up to the next semicolon that stands in no brackets.
std::size_t lengthOfStatement(Text text) {
  std::size_t depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'(') ++depth;
    if (text[i] == u')' && depth > 0) --depth;
    if (text[i] == u';' && depth == 0) return i;
  }
  return text.size();
}

// Once there were tags for the hours and days: day_on=Monday, hour_off=19:00.
std::u16string oldCondition(Tags const& tags) {
  std::u16string condition;
  for (Text const key : {u"day_on", u"day_off", u"hour_on", u"hour_off"}) {
    auto const tag = tags.find(key);
    if (tag == tags.end()) continue;
    if (!condition.empty()) condition += u"; ";
    (condition += key) += u'=';
    condition += tag->second;
  }
  return condition;
}

class RuleReader {
 public:
  explicit RuleReader(Tags const& tags) {
    auto const except = tags.find(u"except");
    if (except != tags.end()) except_ = except->second;
    oldCondition_ = oldCondition(tags);
    auto const type = tags.find(u"type");
    if (type != tags.end() && type->second.starts_with(prefix)) {
      vehiclesOfType_ = Text(type->second).substr(prefix.size());
    }
    for (auto const& [key, value] : tags) read(key, value);
    if (rules_.known.empty()) rules_.hasUnknown = true;
  }

  RestrictionRules take() { return std::move(rules_); }

 private:
  void read(Text key, Text value) {
    if (key == u"restriction") return add(value, vehiclesOfType_, oldCondition_);
    if (!key.starts_with(prefix)) return;
    Text vehicles = key.substr(prefix.size());
    bool const isConditional = vehicles.ends_with(conditional);
    if (!isConditional) return add(value, vehicles, oldCondition_);
    vehicles.remove_suffix(conditional.size());
    if (vehicles.empty()) return addConditional(value, vehiclesOfType_);
    vehicles.remove_suffix(1);
    addConditional(value, vehicles);
  }

  // no_left_turn @ (Mo-Fr 07:00-09:00); no_u_turn @ (Sa,Su)
  void addConditional(Text value, Text vehicles) {
    while (!trimmed(value).empty() && rules_.known.size() <= mostRules) {
      std::size_t const length = lengthOfStatement(value);
      Text const statement = value.substr(0, length);
      value.remove_prefix(std::min(value.size(), length + 1));
      std::size_t const at = statement.find(u'@');
      if (at == Text::npos || trimmed(statement.substr(at + 1)).empty()) {
        rules_.hasUnknown = true;
      } else {
        add(statement.substr(0, at), vehicles, trimmed(statement.substr(at + 1)));
      }
    }
  }

  void add(Text kind, Text vehicles, Text condition) {
    kind = trimmed(kind);
    if (rules_.known.size() > mostRules) return;
    if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) {
      rules_.hasUnknown = true;
    } else {
      rules_.known.push_back(
          {std::u16string(kind), std::u16string(vehicles), std::u16string(condition), except_});
    }
  }

  std::u16string except_;
  std::u16string oldCondition_;
  Text vehiclesOfType_;
  RestrictionRules rules_;
};

}  // namespace

RestrictionRules restrictionRules(Tags const& tags) {
  return RuleReader(tags).take();
}
