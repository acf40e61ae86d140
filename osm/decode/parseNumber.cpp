#include "osm/decode/parseNumber.hpp"

#include <charconv>
#include <cmath>
#include <stdexcept>
#include <string>
#include <system_error>

namespace OpenStreetMap {

std::string quoted(std::string_view text) {
  constexpr std::size_t shown = 40;
  if (text.size() <= shown) return '"' + std::string(text) + '"';
  return '"' + std::string(text.substr(0, shown)) + "...\"";
}

namespace {

template <class Number>
Number parse(char const* name, std::string_view text, char const* kind) {
  Number number{};
  char const* const end = text.data() + text.size();
  auto const [stop, error] = std::from_chars(text.data(), end, number);
  if (error == std::errc() && stop == end) return number;
  bool const tooLarge = error == std::errc::result_out_of_range;
  throw std::runtime_error(std::string(name) + ' ' + quoted(text) +
                           (tooLarge ? " is out of range" : std::string(" is not ") + kind));
}

}  // namespace

Id parseId(char const* name, std::string_view text) {
  return parse<Id>(name, text, "a whole number");
}

double parseDegrees(char const* name, std::string_view text, double limit) {
  auto const degrees = parse<double>(name, text, "a number");
  if (!(std::abs(degrees) <= limit)) {  // also when it is not a number
    throw std::runtime_error(std::string(name) + ' ' + quoted(text) + " is out of range");
  }
  return degrees;
}

}  // namespace OpenStreetMap
