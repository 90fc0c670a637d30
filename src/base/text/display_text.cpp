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

bool mayBegin(UChar32 character) {
  switch (u_getIntPropertyValue(character, UCHAR_LINE_BREAK)) {
    case U_LB_CLOSE_PUNCTUATION:
    case U_LB_CLOSE_PARENTHESIS:
    case U_LB_CONDITIONAL_JAPANESE_STARTER:
    case U_LB_EXCLAMATION:
    case U_LB_NONSTARTER:
    case U_LB_QUOTATION:
      return false;
    default:
      return cellsOf(character) > 0;
  }
}

/// East Asian text has no blanks: a line may break between its characters, but for those that must not end or
/// begin one.
bool mayBreak(UChar32 before, UChar32 after) {
  bool const isWide = cellsOf(before) == 2 || cellsOf(after) == 2;
  if (!isWide || !mayBegin(after)) return false;
  auto const kind = u_getIntPropertyValue(before, UCHAR_LINE_BREAK);
  return kind != U_LB_OPEN_PUNCTUATION && kind != U_LB_QUOTATION;
}

/// What stays together of a word without blanks; what is wider than a line is broken anywhere.
std::vector<std::string_view> piecesOf(std::string_view word, int width) {
  std::vector<std::string_view> pieces;
  std::size_t begin = 0;
  UChar32 before = 0;
  for (std::size_t at = 0, next = 0; at < word.size(); at = next) {
    UChar32 const character = nextCharacter(word, next);
    bool const isTooWide = displayWidth(word.substr(begin, next - begin)) > width;
    if (at > begin && (mayBreak(before, character) || isTooWide)) {
      pieces.push_back(word.substr(begin, at - begin));
      begin = at;
    }
    before = character;
  }
  pieces.push_back(word.substr(begin));
  return pieces;
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
  int used = 0;
  for (std::string_view const word : split(text, ' ')) {
    bool isFirst = true;
    for (std::string_view const piece : piecesOf(word, width)) {
      int const cells = displayWidth(piece);
      int const blank = isFirst ? 1 : 0;
      if (!lines.empty() && used + blank + cells <= width) {
        lines.back().append(static_cast<std::size_t>(blank), ' ').append(piece);
        used += blank + cells;
      } else {
        lines.emplace_back(piece);
        used = cells;
      }
      isFirst = false;
    }
  }
  return lines;
}

}  // namespace nimbara
