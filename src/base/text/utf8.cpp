#include "base/text/utf8.h"

#include <array>
#include <cstdint>

namespace nimbara {

namespace {

bool isScalar(char32_t character) {
  bool const isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  return character <= 0x10'FFFF && !isSurrogate;
}

}  // namespace

char32_t takeCharacter(std::string_view& text) {
  auto const byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  std::uint8_t const lead = byteAt(0);
  std::size_t const size = lead < 0x80   ? 1
                           : lead < 0xC2 ? 0
                           : lead < 0xE0 ? 2
                           : lead < 0xF0 ? 3
                           : lead < 0xF5 ? 4
                                         : 0;
  constexpr std::array<std::uint8_t, 5> kLeadBits{0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x1'0000};
  char32_t character = lead & kLeadBits[size];
  bool valid = size != 0 && size <= text.size();
  for (std::size_t i = 1; valid && i < size; ++i) {
    valid = (byteAt(i) & 0xC0) == 0x80;
    character = character << 6 | (byteAt(i) & 0x3FU);
  }
  valid = valid && character >= kSmallest[size];
  text.remove_prefix(valid ? size : 1);
  return valid && isScalar(character) ? character : kReplacementCharacter;
}

void appendCharacter(std::string& out, char32_t character) {
  auto const put = [&](char32_t bits) { out += static_cast<char>(bits); };
  if (character < 0x80) return put(character);
  if (character < 0x800) {
    put(0xC0 | character >> 6);
  } else {
    if (character < 0x1'0000) {
      put(0xE0 | character >> 12);
    } else {
      put(0xF0 | character >> 18);
      put(0x80 | (character >> 12 & 0x3F));
    }
    put(0x80 | (character >> 6 & 0x3F));
  }
  put(0x80 | (character & 0x3F));
}

}  // namespace nimbara
