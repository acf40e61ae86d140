// Writes a JSON text (RFC 8259).
#pragma once

#include <cmath>
#include <string>
#include <string_view>

#include "export/BufferedFile.hpp"
#include "export/NumberText.hpp"
#include "support/ustring.hpp"

/// Puts in the separators; that everything that begins also ends, and that each member or item has
/// one value, is the caller's part. Numbers read back to the same bits; NaN is null, an infinite
/// one 1e999. `Output` has a function `write` that takes a std::string_view.
template <class Output>
class JsonText {
 public:
  explicit JsonText(Output& output) : output_(output) {}

  void beginObject() { begin("{"); }
  void endObject() { end("}"); }
  void beginList() { begin("["); }
  void endList() { end("]"); }

  /// The next member of an object. Its value follows.
  JsonText& member(std::string_view name) {
    if (!isFirst_) output_.write(", ");
    return named(name);
  }
  /// The same on a new line.
  JsonText& memberLine(std::string_view name) {
    newLine();
    return named(name);
  }
  /// The next item of a list. Its value follows.
  JsonText& item() {
    if (!isFirst_) output_.write(", ");
    isFirst_ = false;
    return *this;
  }
  /// The same on a new line.
  JsonText& itemLine() {
    newLine();
    return *this;
  }
  /// After a whole text.
  void endLine() { output_.write("\n"); }

  void boolean(bool value) { output_.write(value ? "true" : "false"); }
  void null() { output_.write("null"); }

  void number(double value) {
    if (std::isnan(value)) return null();
    if (std::isinf(value)) return output_.write(value > 0 ? "1e999" : "-1e999");
    NumberText const digits(value);
    output_.write(digits);
    // Without a point, some readers would take it for an integer and lose the sign of -0.
    if (std::string_view(digits).find_first_of(".e") == std::string_view::npos) output_.write(".0");
  }

  template <class Integer>
  void integer(Integer value) {
    output_.write(NumberText(value));
  }

  /// The id of an element, or null for none.
  template <class Handle>
  void reference(Handle const& element) {
    if (!element) return null();
    integer(element->getID());
  }

  void text(std::string_view utf8) {
    output_.write("\"");
    std::size_t start = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
      auto const c = static_cast<unsigned char>(utf8[i]);
      if (c >= 0x20 && c != '"' && c != '\\') continue;
      output_.write(utf8.substr(start, i - start));
      escape(c);
      start = i + 1;
    }
    output_.write(utf8.substr(start));
    output_.write("\"");
  }
  void text(std::u16string_view utf16) { text(support::ustring_to_utf8(utf16)); }

  template <class Range, class WriteItem>
  void list(Range const& range, WriteItem const& writeItem) {
    beginList();
    for (auto const& value : range) {
      item();
      writeItem(value);
    }
    endList();
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
  void begin(std::string_view bracket) {
    output_.write(bracket);
    ++depth_;
    isFirst_ = true;
  }

  void end(std::string_view bracket) {
    output_.write(bracket);
    --depth_;
    isFirst_ = false;
  }

  void newLine() {
    output_.write(isFirst_ ? "\n" : ",\n");
    for (std::size_t i = 0; i < depth_; ++i) output_.write(" ");
    isFirst_ = false;
  }

  JsonText& named(std::string_view name) {
    text(name);
    output_.write(": ");
    isFirst_ = false;
    return *this;
  }

  void escape(unsigned char c) {
    constexpr char hex[] = "0123456789abcdef";
    if (c < 0x20) {
      char const code[] = {'\\', 'u', '0', '0', hex[c >> 4], hex[c & 15]};
      output_.write({code, sizeof code});
    } else {
      char const code[] = {'\\', static_cast<char>(c)};
      output_.write({code, sizeof code});
    }
  }

  Output& output_;
  std::size_t depth_ = 0;
  bool isFirst_ = true;  // nothing stands in the innermost object or list
};

using JsonWriter = JsonText<BufferedFile>;
