#include "tags/valueParts.hpp"

#include <algorithm>
#include <charconv>

#include "support/ustring.hpp"

namespace {

std::string_view trimmed(std::string_view text) {
  std::size_t const first = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

}  // namespace

std::vector<std::string> valueParts(std::u16string_view value) {
  std::string const text = support::ustring_to_utf8(value);
  std::vector<std::string> parts;
  std::string_view rest = text;
  for (std::size_t end = 0; end != rest.npos;) {
    end = rest.find(';');
    parts.emplace_back(trimmed(rest.substr(0, end)));
    if (end != rest.npos) rest.remove_prefix(end + 1);
  }
  return parts;
}

std::pair<double, std::string_view> leadingNumber(std::string_view text) {
  double number = 0.0;
  char const* const end = text.data() + text.size();
  // Not from_chars' "inf", "nan" and "-1".
  if (text.empty() || text[0] < '0' || text[0] > '9') return {0.0, text};
  auto const read = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (read.ec != std::errc()) return {0.0, text};
  return {number, trimmed({read.ptr, static_cast<std::size_t>(end - read.ptr)})};
}
