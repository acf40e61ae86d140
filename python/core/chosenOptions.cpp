#include "python/core/chosenOptions.hpp"

#include <array>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "export/exportedTags.hpp"
#include "export/writeGmns.hpp"

namespace {

template <class Value, std::size_t count>
Value chosen(std::string_view what, std::string const& name,
             std::array<std::pair<char const*, Value>, count> const& choices) {
  std::string names;
  for (auto const& [known, value] : choices) {
    if (name == known) return value;
    (names += names.empty() ? "" : ", ") += known;
  }
  throw std::invalid_argument(std::string(what) + " is \"" + name + "\"; it may be " + names);
}

}  // namespace

ImportOptions optionsOf(std::string const& join, std::string const& oneway,
                        std::optional<std::vector<std::string>> tags) {
  ImportOptions options;
  options.joining = chosen(
      "join", join,
      std::array{std::pair{"all", Joining::all}, std::pair{"compatible", Joining::compatible},
                 std::pair{"none", Joining::none}});
  options.oneWays = chosen(
      "oneway", oneway,
      std::array{std::pair{"tagged", OneWays::tagged}, std::pair{"implied", OneWays::implied}});
  try {
    options.tags = tags ? checkedTags(std::move(*tags)) : usualTags();
  } catch (std::invalid_argument const& error) {
    throw std::invalid_argument(std::string("tags: ") + error.what());
  }
  options.keptTags = gmnsTags();  // it may be written later
  options.restrictions = true;
  return options;
}
