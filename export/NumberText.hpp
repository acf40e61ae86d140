// Numbers as text, whatever the locale.
#pragma once

#include <charconv>
#include <string_view>

/// The shortest decimal digits that read back to the same number: 5, 0.1, 1e-07. "nan", "inf" or
/// "-inf" for what is not finite.
class NumberText {
 public:
  template <class Number>
  explicit NumberText(Number value)
      : end_(std::to_chars(digits_, digits_ + sizeof digits_, value).ptr) {}
  NumberText(NumberText const&) = delete;
  NumberText& operator=(NumberText const&) = delete;

  operator std::string_view() const {  // NOLINT: it is one
    return {digits_, static_cast<std::size_t>(end_ - digits_)};
  }

 private:
  char digits_[32];
  char* end_;
};
