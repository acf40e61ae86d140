// Writes the parts of a JSON text (RFC 8259).
#pragma once

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

#include "export/OutputFile.hpp"
#include "support/ustring.hpp"

/// Numbers read back to the same bits; NaN is null, an infinite one 1e999.
class JsonWriter {
 public:
  explicit JsonWriter(OutputFile& output) : output_(output) {}

  void raw(std::string_view text) { output_.write(text); }

  void number(double value) {
    if (std::isnan(value)) return raw("null");
    if (std::isinf(value)) return raw(value > 0 ? "1e999" : "-1e999");
    // Without a point, some readers would take it for an integer and lose the sign of -0.
    if (digits(value).find_first_of(".e") == std::string_view::npos) raw(".0");
  }

  void id(unsigned long value) { digits(value); }

  /// The id of an element, or null for none.
  template <class Handle>
  void reference(Handle const& element) {
    if (!element) return raw("null");
    id(element->getID());
  }

  void text(std::u16string const& value) {
    raw("\"");
    std::string const utf8 = support::ustring_to_utf8(value);
    std::size_t start = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
      auto const c = static_cast<unsigned char>(utf8[i]);
      if (c >= 0x20 && c != '"' && c != '\\') continue;
      raw(std::string_view(utf8).substr(start, i - start));
      escape(c);
      start = i + 1;
    }
    raw(std::string_view(utf8).substr(start));
    raw("\"");
  }

  template <class Range, class WriteItem>
  void list(Range const& range, WriteItem const& writeItem) {
    raw("[");
    char const* separator = "";
    for (auto const& item : range) {
      raw(separator);
      writeItem(item);
      separator = ", ";
    }
    raw("]");
  }

  template <class Range>
  void numbers(Range const& range) {
    list(range, [&](double value) { number(value); });
  }

 private:
  /// Writes the shortest digits that read back to the same number; they hold until the next call.
  template <class Number>
  std::string_view digits(Number value) {
    char* const end = std::to_chars(digits_, digits_ + sizeof digits_, value).ptr;
    std::string_view const written(digits_, static_cast<std::size_t>(end - digits_));
    raw(written);
    return written;
  }

  void escape(unsigned char c) {
    constexpr char hex[] = "0123456789abcdef";
    if (c < 0x20) {
      char const code[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 15]};
      raw({code, sizeof code});
    } else {
      char const code[] = {'\\', static_cast<char>(c)};
      raw({code, sizeof code});
    }
  }

  OutputFile& output_;
  char digits_[32];
};
