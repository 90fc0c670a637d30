#include "base/sha256.h"

#include <array>
#include <nettle/sha2.h>

namespace nimbara {

std::string sha256Hex(std::string_view bytes) {
  sha256_ctx sum;
  sha256_init(&sum);
  sha256_update(&sum, bytes.size(), reinterpret_cast<unsigned char const*>(bytes.data()));
  std::array<unsigned char, SHA256_DIGEST_SIZE> digest{};
  sha256_digest(&sum, digest.size(), digest.data());
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string hex;
  hex.reserve(2 * digest.size());
  for (unsigned char const byte : digest) {
    hex += kDigits[byte >> 4];
    hex += kDigits[byte & 15];
  }
  return hex;
}

}  // namespace nimbara
