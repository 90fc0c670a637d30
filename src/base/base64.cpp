#include "base/base64.h"

#include <cstdint>

namespace nimbara {

std::string base64UrlEncoded(std::string_view bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
  std::string out;
  out.reserve((bytes.size() * 4 + 2) / 3);
  std::uint32_t bits = 0;
  int count = 0;
  for (char const c : bytes) {
    bits = (bits << 8) | static_cast<unsigned char>(c);
    for (count += 8; count >= 6; count -= 6) out += kDigits[(bits >> (count - 6)) & 63];
  }
  if (count > 0) out += kDigits[(bits << (6 - count)) & 63];
  return out;
}

}  // namespace nimbara
