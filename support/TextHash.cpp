#include "support/TextHash.hpp"

#include <sodium/crypto_shorthash_siphash24.h>

#include <cstring>
#include <tuple>

namespace support {

std::size_t TextHash::operator()(std::u16string_view text) const {
  static_assert(std::tuple_size_v<decltype(secret_)> == crypto_shorthash_siphash24_KEYBYTES);
  unsigned char hash[crypto_shorthash_siphash24_BYTES];
  crypto_shorthash_siphash24(hash, reinterpret_cast<unsigned char const*>(text.data()),
                             text.size() * sizeof(char16_t), secret_.data());
  std::size_t result = 0;
  std::memcpy(&result, hash, sizeof result);
  return result;
}

}  // namespace support
