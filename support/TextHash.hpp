// The hash of every table keyed by text of a file.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "support/hashSecret.hpp"

namespace support {

/// SipHash-2-4 with this process's secret: made to withstand chosen keys.
class TextHash {
 public:
  /// Throws as `hashSecret` does.
  TextHash() : secret_(hashSecret().text) {}

  // Not noexcept: so the standard library's tables keep each hash instead of working it out again.
  std::size_t operator()(std::u16string_view text) const {
    return hash(text.data(), text.size() * sizeof(char16_t));
  }
  std::size_t operator()(std::string_view text) const { return hash(text.data(), text.size()); }

 private:
  std::size_t hash(void const* bytes, std::size_t size) const;

  std::array<unsigned char, 16> secret_;
};

}  // namespace support
