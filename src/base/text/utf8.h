// Single characters of UTF-8 texts that anybody may have written.
#pragma once

#include <string>
#include <string_view>

namespace nimbara {

/// What stands for bytes that are no character.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// Takes one character off the front of `text`, which is not empty. Where it is not valid UTF-8, one byte for
/// a replacement character; surrogates and numbers beyond the last character are taken whole for one.
char32_t takeCharacter(std::string_view& text);

/// `character` is at most U+10FFFF.
void appendCharacter(std::string& out, char32_t character);

/// Of both ranges, and DEL.
constexpr bool isControl(char32_t character) {
  return character < 0x20 || (character >= 0x7F && character <= 0x9F);
}

}  // namespace nimbara
