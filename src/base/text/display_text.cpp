#include "base/text/display_text.h"

#include "base/text/text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace nimbara {

namespace {

int cellsOf(UChar32 character) {
  constexpr UChar32 kVariationSelector16 = 0xFE0F;
  if (character < 0) return 1;
  if (character == kVariationSelector16) return 0;
  auto const mask = U_GET_GC_MASK(character);
  if ((mask & (U_GC_MN_MASK | U_GC_ME_MASK | U_GC_CF_MASK | U_GC_CC_MASK)) != 0) return 0;
  int const width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

/// Reads the character at `at` and moves behind it; negative for a broken sequence.
UChar32 nextCharacter(std::string_view text, std::size_t& at) {
  auto next = static_cast<std::int32_t>(at);
  auto const length = static_cast<std::int32_t>(text.size());
  UChar32 character = 0;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
  U8_NEXT(text.data(), next, length, character);
#pragma GCC diagnostic pop
  at = static_cast<std::size_t>(next);
  return character;
}

/// The part of `text` that fits into `width` cells.
std::string_view prefixWithin(std::string_view text, int width) {
  std::size_t end = 0;
  for (std::size_t next = 0; next < text.size(); end = next) {
    width -= cellsOf(nextCharacter(text, next));
    if (width < 0) break;
  }
  return text.substr(0, end);
}

struct Spelling {
  UChar32 character;
  std::string_view ascii;
};

constexpr Spelling kSpellings[] = {
    {U'ß', "ss"}, {U'æ', "ae"}, {U'Æ', "Ae"}, {U'ø', "o"},      {U'Ø', "O"},  {U'ł', "l"},   {U'Ł', "L"},
    {U'đ', "d"},  {U'Đ', "D"},  {U'ð', "d"},  {U'Ð', "D"},      {U'þ', "th"}, {U'Þ', "Th"},  {U'œ', "oe"},
    {U'Œ', "Oe"}, {U'ı', "i"},  {U'–', "-"},  {U'—', "-"},      {U'−', "-"},  {U'…', "..."}, {U'’', "'"},
    {U'‘', "'"},  {U'“', "\""}, {U'„', "\""}, {U'\u00a0', " "}, {U'«', "\""}, {U'»', "\""},  {U'”', "\""},
    {U'°', ""},   {U'·', "-"},  {U'µ', "u"},
};

void appendAscii(std::string& out, UChar32 character) {
  if (character >= 0 && character < 0x80) {
    out += static_cast<char>(character);
    return;
  }
  if (character >= 0 && cellsOf(character) == 0) return;
  auto const spelling = std::ranges::find(kSpellings, character, &Spelling::character);
  out += spelling == std::ranges::end(kSpellings) ? "?" : spelling->ascii;
}

/// Letters and their accents as separate characters; the text itself when it cannot be done.
std::string decomposed(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  icu::Normalizer2 const* const normalizer = icu::Normalizer2::getNFDInstance(status);
  std::string out;
  if (U_FAILURE(status)) return std::string(text);
  icu::StringByteSink<std::string> sink(&out);
  normalizer->normalizeUTF8(0, icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink,
                            nullptr, status);
  return U_SUCCESS(status) ? out : std::string(text);
}

}  // namespace

std::string asciiFolded(std::string_view text) {
  if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
    return std::string(text);
  std::string const letters = decomposed(text);
  std::string out;
  for (std::size_t next = 0; next < letters.size();) appendAscii(out, nextCharacter(letters, next));
  return out;
}

int displayWidth(std::string_view text) {
  int width = 0;
  for (std::size_t next = 0; next < text.size();) width += cellsOf(nextCharacter(text, next));
  return width;
}

std::string fitted(std::string_view text, int width, Align align) {
  int const taken = displayWidth(text);
  if (taken > width) {
    std::string cut(prefixWithin(text, width - 1));
    if (width > 0) cut += "…";
    return cut + std::string(static_cast<std::size_t>(std::max(0, width - displayWidth(cut))), ' ');
  }
  int const free = width - taken;
  int const before = align == Align::left ? 0 : align == Align::right ? free : free / 2;
  return std::string(static_cast<std::size_t>(before), ' ') + std::string(text) +
         std::string(static_cast<std::size_t>(free - before), ' ');
}

std::vector<std::string> wrapped(std::string_view text, int width) {
  std::vector<std::string> lines;
  for (std::string_view const word : split(text, ' ')) {
    bool const fits = !lines.empty() && displayWidth(lines.back()) + 1 + displayWidth(word) <= width;
    if (fits) {
      lines.back() += " " + std::string(word);
    } else {
      lines.push_back(displayWidth(word) <= width ? std::string(word) : fitted(word, width));
    }
  }
  return lines;
}

}  // namespace nimbara
