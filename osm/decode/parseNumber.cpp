#include "osm/decode/parseNumber.hpp"

#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "support/printable.hpp"

namespace OpenStreetMap {
namespace {

std::runtime_error failure(char const* name, std::string_view text, std::string const& what) {
  return std::runtime_error(std::string(name) + ' ' + support::quoted(text) + what);
}

// std::from_chars does not tell a number that is too large from one that is too near to 0.
bool roundsToZero(double& number, std::string_view text) {
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  return bool(stream >> number) && number == 0.0;
}
bool roundsToZero(Id&, std::string_view) {
  return false;
}

template <class Number>
Number parse(char const* name, std::string_view text, char const* kind) {
  Number number{};
  char const* const end = text.data() + text.size();
  auto const [stop, error] = std::from_chars(text.data(), end, number);
  bool const outOfRange = error == std::errc::result_out_of_range;
  if (outOfRange && !roundsToZero(number, text)) throw failure(name, text, " is out of range");
  if ((error != std::errc() && !outOfRange) || stop != end) {
    throw failure(name, text, std::string(" is not ") + kind);
  }
  return number;
}

}  // namespace

Id parseId(char const* name, std::string_view text) {
  return parse<Id>(name, text, "a whole number");
}

double parseDegrees(char const* name, std::string_view text, double limit) {
  auto const degrees = parse<double>(name, text, "a number");
  if (!(std::abs(degrees) <= limit)) {  // also when it is not a number
    throw failure(name, text, " is out of range");
  }
  return degrees;
}

}  // namespace OpenStreetMap
