// Writes the parts of a JSON text (RFC 8259).
#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "export/BufferedFile.hpp"
#include "export/NumberText.hpp"
#include "support/ustring.hpp"

/// Numbers read back to the same bits; NaN is null, an infinite one 1e999.
class JsonWriter {
 public:
  explicit JsonWriter(BufferedFile& output) : output_(output) {}

  void raw(std::string_view text) { output_.write(text); }

  /// Begins an object with its first member; the value follows.
  void first(std::string_view name) { named("{\"", name); }
  /// The next member of the object; the value follows.
  void next(std::string_view name) { named(", \"", name); }

  void number(double value) {
    if (std::isnan(value)) return raw("null");
    if (std::isinf(value)) return raw(value > 0 ? "1e999" : "-1e999");
    NumberText const digits(value);
    raw(digits);
    // Without a point, some readers would take it for an integer and lose the sign of -0.
    if (std::string_view(digits).find_first_of(".e") == std::string_view::npos) raw(".0");
  }

  template <class Integer>
  void integer(Integer value) {
    raw(NumberText(value));
  }

  /// The id of an element, or null for none.
  template <class Handle>
  void reference(Handle const& element) {
    if (!element) return raw("null");
    integer(element->getID());
  }

  void text(std::string_view utf8) {
    raw("\"");
    std::size_t start = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
      auto const c = static_cast<unsigned char>(utf8[i]);
      if (c >= 0x20 && c != '"' && c != '\\') continue;
      raw(utf8.substr(start, i - start));
      escape(c);
      start = i + 1;
    }
    raw(utf8.substr(start));
    raw("\"");
  }
  void text(std::u16string_view utf16) { text(support::ustring_to_utf8(utf16)); }

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

  template <class Range>
  void integers(Range const& range) {
    list(range, [&](auto value) { integer(value); });
  }

 private:
  void named(std::string_view before, std::string_view name) {
    raw(before);
    raw(name);
    raw("\": ");
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

  BufferedFile& output_;
};
