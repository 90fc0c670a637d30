#include "analysis/brief/stated_numbers.h"

#include "base/text/utf8.h"
#include "base/words/number_words.h"

#include <algorithm>
#include <set>
#include <string>

namespace nimbara {

namespace {

/// The numbers of a text, a decimal comma as a point, with a minus that stands before no range.
std::set<std::string> numbersOf(std::string_view text) {
  std::set<std::string> numbers;
  std::string number;
  char32_t before = ' ';
  bool isNegative = false;
  auto const close = [&] {
    while (!number.empty() && number.back() == '.') number.pop_back();
    if (!number.empty()) numbers.insert((isNegative ? "-" : "") + number);
    number.clear();
    isNegative = false;
  };
  while (!text.empty()) {
    char32_t character = takeCharacter(text);
    if (character >= 0xFF10 && character <= 0xFF19) character -= 0xFF10 - U'0';
    bool const isDigit = character >= '0' && character <= '9';
    bool const isPoint = (character == '.' || character == ',') && !number.empty();
    if (!isDigit && !isPoint) {
      bool const isRange = !number.empty() || (before >= '0' && before <= '9');
      close();
      isNegative = !isRange && (character == '-' || character == 0x2212);
    } else {
      number += isPoint ? '.' : static_cast<char>(character);
    }
    before = character;
  }
  close();
  return numbers;
}

}  // namespace

bool hasOnlyNumbersOf(std::string_view text, std::string_view facts, std::string_view language) {
  std::set<std::string> known = numbersOf(facts);
  known.merge(numbersOf(withDigits(facts, language)));
  return std::ranges::includes(known, numbersOf(withDigits(text, language)));
}

}  // namespace nimbara
