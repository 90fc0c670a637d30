#include "base/uuid.h"

#include <cstring>
#include <nettle/sha1.h>
#include <random>

namespace nimbara {

namespace {

/// Seeded from the system's entropy once a thread; records are made by the hundred, so each must cost
/// nanoseconds.
std::mt19937_64& generator() {
  thread_local std::mt19937_64 engine = [] {
    std::random_device entropy;
    std::seed_seq seed{entropy(), entropy(), entropy(), entropy(),
                       entropy(), entropy(), entropy(), entropy()};
    return std::mt19937_64(seed);
  }();
  return engine;
}

Uuid stamped(Uuid uuid, int version) {
  uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | (version << 4));
  uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
  return uuid;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool hyphenBelongsAt(std::size_t position) {
  return position == 8 || position == 13 || position == 18 || position == 23;
}

}  // namespace

Uuid Uuid::random() {
  std::uint64_t const words[2] = {generator()(), generator()()};
  Uuid uuid;
  std::memcpy(uuid.bytes.data(), words, sizeof words);
  return stamped(uuid, 4);
}

Uuid Uuid::named(Uuid const& space, std::string_view name) {
  sha1_ctx sum;
  sha1_init(&sum);
  sha1_update(&sum, space.bytes.size(), space.bytes.data());
  sha1_update(&sum, name.size(), reinterpret_cast<unsigned char const*>(name.data()));
  std::array<unsigned char, SHA1_DIGEST_SIZE> digest{};
  sha1_digest(&sum, digest.size(), digest.data());
  Uuid uuid;
  std::memcpy(uuid.bytes.data(), digest.data(), uuid.bytes.size());
  return stamped(uuid, 5);
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
  if (text.size() != 36) return std::nullopt;
  Uuid uuid;
  std::size_t digit = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (hyphenBelongsAt(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    int const value = hexValue(text[i]);
    if (value < 0) return std::nullopt;
    auto& byte = uuid.bytes[digit++ / 2];
    byte = static_cast<std::uint8_t>((byte << 4) | value);
  }
  return uuid;
}

std::string Uuid::text() const {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string out;
  out.reserve(36);
  for (std::uint8_t const byte : bytes) {
    if (hyphenBelongsAt(out.size())) out += '-';
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
  }
  return out;
}

}  // namespace nimbara
