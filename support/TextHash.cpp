#include "support/TextHash.hpp"

#include <sodium/crypto_shorthash_siphash24.h>

#include <cstring>
#include <tuple>

namespace support {

std::size_t TextHash::hash(void const* bytes, std::size_t size) const {
  static_assert(std::tuple_size_v<decltype(secret_)> == crypto_shorthash_siphash24_KEYBYTES);
  unsigned char digest[crypto_shorthash_siphash24_BYTES];
  crypto_shorthash_siphash24(digest, static_cast<unsigned char const*>(bytes), size,
                             secret_.data());
  std::size_t result = 0;
  std::memcpy(&result, digest, sizeof result);
  return result;
}

}  // namespace support
