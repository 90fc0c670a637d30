#include "platform/linux/notification_text.h"

#include <array>
#include <cstdint>

namespace nimbara {

namespace {

constexpr char32_t kInvalid = 0xFFFD;

/// Takes one character off the front of `text`, which is not empty; one byte where it is not valid UTF-8.
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
  return valid ? character : kInvalid;
}

void append(std::string& out, char32_t character) {
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

/// Surrogates, numbers beyond the last character, and the noncharacters, which the bus library refuses.
bool maySend(char32_t character) {
  bool const isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  bool const isNoncharacter = (character >= 0xFDD0 && character <= 0xFDEF) || (character & 0xFFFE) == 0xFFFE;
  return character <= 0x10'FFFF && !isSurrogate && !isNoncharacter;
}

bool breaksLine(char32_t character) {
  return character == '\n' || character == 0x85 || character == 0x2028 || character == 0x2029;
}

bool isDropped(char32_t character) {
  bool const isControl = character < 0x20 || (character >= 0x7F && character <= 0x9F);
  bool const overridesDirection = character == 0x202D || character == 0x202E;
  return isControl || overridesDirection;
}

}  // namespace

std::string sendableText(std::string_view text, std::size_t limit, TextLines lines) {
  std::string out;
  std::size_t lastAt = 0;  // where the last character that may stay begins
  for (std::size_t count = 0; !text.empty();) {
    char32_t character = takeCharacter(text);
    if (!maySend(character)) character = kInvalid;
    if (breaksLine(character)) character = lines == TextLines::many ? '\n' : ' ';
    if (character == '\t') character = ' ';
    if (character != '\n' && isDropped(character)) continue;
    if (count == limit) return out.substr(0, lastAt) + "…";
    lastAt = out.size();
    append(out, character);
    ++count;
  }
  return out;
}

std::string markupEscaped(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char const letter : text) {
    switch (letter) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      default:
        out += letter;
    }
  }
  return out;
}

}  // namespace nimbara
