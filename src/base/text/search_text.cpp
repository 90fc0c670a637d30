#include "base/text/search_text.h"

#include "base/text/display_text.h"
#include "base/text/text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace nimbara {

namespace {

/// The form that `normalizer` gives; the text itself where ICU has no data.
icu::UnicodeString normalized(icu::Normalizer2 const* normalizer, icu::UnicodeString const& text) {
  UErrorCode status = U_ZERO_ERROR;
  if (normalizer == nullptr) return text;
  icu::UnicodeString form = normalizer->normalize(text, status);
  return U_SUCCESS(status) ? form : text;
}

icu::Normalizer2 const* compatibilityDecomposition() {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFKDInstance(status);
}

icu::Normalizer2 const* composition() {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFCInstance(status);
}

bool isMark(UChar32 character) {
  return (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
}

/// Dots and apostrophes stand inside words: "St.", "D.C.", "Xi'an".
bool vanishes(UChar32 character) {
  constexpr std::u32string_view kInsideWords = U".'’‘ʼʻ`´";
  return isMark(character) ||
         kInsideWords.find(static_cast<char32_t>(character)) != std::u32string_view::npos;
}

/// Latin letters that do not decompose ("ß", "ø") are spelled, all others turned into lower case.
icu::UnicodeString plainLetter(UChar32 letter) {
  constexpr UChar32 kEndOfLatin = 0x250;
  icu::UnicodeString lower(u_foldCase(letter, U_FOLD_CASE_DEFAULT));
  if (letter < 0x80 || letter >= kEndOfLatin) return lower;
  std::string utf8;
  std::string const spelled = asciiFolded(icu::UnicodeString(letter).toUTF8String(utf8));
  bool const known = !spelled.empty() && spelled != "?";
  return known ? icu::UnicodeString::fromUTF8(asciiLowered(spelled)) : lower;
}

/// Between the words of towns' names in the languages that write them small.
constexpr std::string_view kSmallWords[] = {
    "a",  "am", "an", "auf", "bei", "da", "das", "de",  "del", "der",  "di",  "do", "dos", "en", "im",
    "in", "la", "le", "les", "of",  "on", "sur", "the", "und", "upon", "van", "y",  "ob",  "nad"};

bool isSmallWord(std::string_view word) {
  return std::ranges::find(kSmallWords, word) != std::ranges::end(kSmallWords);
}

}  // namespace

std::string searchFolded(std::string_view text) {
  icu::StringPiece const bytes(text.data(), static_cast<std::int32_t>(text.size()));
  auto const letters = normalized(compatibilityDecomposition(), icu::UnicodeString::fromUTF8(bytes));
  icu::UnicodeString folded;
  bool wordEnded = false;
  for (std::int32_t at = 0; at < letters.length(); at = letters.moveIndex32(at, 1)) {
    UChar32 const character = letters.char32At(at);
    if (vanishes(character)) continue;
    if (u_isalnum(character) != 0) {
      if (wordEnded && !folded.isEmpty()) folded.append(u' ');
      folded.append(plainLetter(character));
    }
    wordEnded = u_isalnum(character) == 0;
  }
  std::string utf8;
  normalized(composition(), folded).toUTF8String(utf8);
  return utf8;
}

std::string accentsKept(std::string_view text) {
  text = trimmed(text);
  icu::StringPiece const bytes(text.data(), static_cast<std::int32_t>(text.size()));
  std::string utf8;
  normalized(composition(), icu::UnicodeString::fromUTF8(bytes).foldCase()).toUTF8String(utf8);
  return utf8;
}

std::string capitalized(std::string_view name) {
  std::string const lower = accentsKept(name);
  std::string out;
  for (std::string_view const word : split(lower, ' ')) {
    if (!out.empty()) out += ' ';
    auto letters = icu::UnicodeString::fromUTF8({word.data(), static_cast<std::int32_t>(word.size())});
    bool const isSmall = !out.empty() && isSmallWord(word);
    if (!isSmall && !letters.isEmpty()) {
      UChar32 const first = letters.char32At(0);
      letters.replace(0, U16_LENGTH(first), u_totitle(first));
    }
    letters.toUTF8String(out);
  }
  return out;
}

}  // namespace nimbara
