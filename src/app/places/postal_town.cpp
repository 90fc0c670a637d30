#include "app/places/postal_town.h"

#include "base/text/text.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLatinLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Digits, with letters and hyphens among them.
bool isCode(std::string_view word) {
  bool const isPlain =
      std::ranges::all_of(word, [](char c) { return isDigit(c) || isLatinLetter(c) || c == '-'; });
  return isPlain && std::ranges::any_of(word, isDigit);
}

/// The second half of a Dutch code: "AB" of "1012 AB".
bool isEndOfCode(std::string_view word, std::string_view code) {
  constexpr std::size_t kDigits = 4;
  return word.size() == 2 && std::ranges::all_of(word, isLatinLetter) && code.size() == kDigits &&
         std::ranges::all_of(code, isDigit);
}

void append(std::string& text, std::string_view word) {
  if (!text.empty()) text += ' ';
  text += word;
}

bool isLongEnough(std::string_view code) {
  constexpr std::ptrdiff_t kFewest = 3;
  return std::ranges::count_if(code, [](char c) { return c != ' '; }) >= kFewest;
}

}  // namespace

std::optional<PostalTown> postalTownIn(std::string_view text) {
  PostalTown found;
  for (std::string_view const part : split(text, ',')) {
    std::string town;
    for (std::string_view const word : split(part, ' ')) {
      if (word.empty()) continue;
      bool const belongsToCode = isCode(word) || isEndOfCode(word, found.code);
      append(belongsToCode ? found.code : town, word);
    }
    if (!town.empty()) found.town += (found.town.empty() ? "" : ", ") + town;
  }
  if (found.town.empty() || !isLongEnough(found.code)) return std::nullopt;
  return found;
}

}  // namespace nimbara
