#include "support/hashSecret.hpp"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace support {
namespace {

HashSecret drawSecret() {
  HashSecret secret{};
  if (::getentropy(&secret, sizeof secret) != 0) {
    throw std::system_error(errno, std::generic_category(), "no random numbers");
  }
  return secret;
}

}  // namespace

HashSecret const& hashSecret() {
  static HashSecret const secret = drawSecret();
  return secret;
}

}  // namespace support
