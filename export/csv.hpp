// Lines of CSV (RFC 4180).
#pragma once

#include <cmath>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>

#include "export/BufferedFile.hpp"
#include "export/NumberText.hpp"

namespace csv {

/// In quotes where it has to be.
inline std::string field(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (char const c : text) {
    if (c == '"') quoted += c;
    quoted += c;
  }
  return quoted += '"';
}

inline std::string field(double value) {
  return std::isfinite(value) ? std::string(NumberText(value)) : "NaN";
}

inline std::string field(std::integral auto value) {
  return std::string(NumberText(value));
}

template <class Number>
std::string field(std::optional<Number> value) {
  return value ? std::string(NumberText(*value)) : std::string();
}

template <class... Fields>
std::string joined(Fields const&... fields) {
  std::string line;
  ((line += field(fields), line += ','), ...);
  line.pop_back();
  return line;
}

/// Ends in a line feed.
template <class... Fields>
void line(BufferedFile& file, Fields const&... fields) {
  file.write(joined(fields...) + '\n');
}

}  // namespace csv
