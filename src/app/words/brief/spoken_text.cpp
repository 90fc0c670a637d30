#include "app/words/brief/spoken_text.h"

#include "base/text/number.h"

#include <algorithm>

namespace nimbara {

namespace {

struct SpokenUnit {
  std::string_view symbol;
  std::string_view key;
};

/// The longer before those that they begin with.
constexpr SpokenUnit kUnits[] = {{"°C", "spoken.degrees"}, {"°F", "spoken.degrees"}, {"°", "spoken.degrees"},
                                 {"km/h", "spoken.kmh"},   {"km", "spoken.km"},      {"mph", "spoken.mph"},
                                 {"m/s", "spoken.ms"},     {"mm", "spoken.mm"},      {"cm", "spoken.cm"},
                                 {"in", "spoken.inches"},  {"%", "spoken.percent"}};
constexpr std::string_view kSpaces[] = {" ", "\u00A0", "\u202F"};
constexpr std::string_view kMinuses[] = {"-", "\u2212"};

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool isPoint(char character) {
  return character == '.' || character == ',';
}

/// The length of the number at the beginning; 0 without one.
std::size_t numberLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length])) ++length;
  bool const hasFraction =
      length > 0 && length + 1 < text.size() && isPoint(text[length]) && isDigit(text[length + 1]);
  if (!hasFraction) return length;
  for (++length; length < text.size() && isDigit(text[length]);) ++length;
  return length;
}

/// Takes what begins the text off it.
template <std::size_t N>
bool take(std::string_view& text, std::string_view const (&beginnings)[N]) {
  auto const found =
      std::ranges::find_if(beginnings, [&](auto beginning) { return text.starts_with(beginning); });
  if (found == std::end(beginnings)) return false;
  text.remove_prefix(found->size());
  return true;
}

/// The unit behind a number, taken off the text; null where there is none.
SpokenUnit const* takeUnit(std::string_view& text, Units const& units) {
  std::string_view rest = text;
  take(rest, kSpaces);
  for (SpokenUnit const& unit : kUnits) {
    bool const isWord =
        unit.symbol == symbol(PrecipitationUnit::inch) && units.precipitation != PrecipitationUnit::inch;
    if (!rest.starts_with(unit.symbol) || isWord) continue;
    std::string_view const behind = rest.substr(unit.symbol.size());
    // "2 inside" has no inches.
    if (!behind.empty() && isLetter(behind.front()) && isLetter(unit.symbol.back())) continue;
    text = behind;
    return &unit;
  }
  return nullptr;
}

std::string counted(std::string_view key, std::string_view number, Texts const& texts) {
  auto const whole = parseInteger(number);
  return whole ? texts.format(key, *whole) : texts.format(key, std::string(number));
}

}  // namespace

std::string spokenText(std::string_view text, Units const& units, Texts const& texts) {
  std::string out;
  while (!text.empty()) {
    bool const isInWord =
        !out.empty() && (isDigit(out.back()) || isLetter(out.back()) || isPoint(out.back()));
    std::string_view rest = text;
    bool const isMinus = !isInWord && take(rest, kMinuses);
    std::size_t const length = isInWord && !isMinus && isDigit(out.back()) ? 0 : numberLength(rest);
    if (length == 0) {
      out += text.front();
      text.remove_prefix(1);
      continue;
    }
    std::string_view const number = rest.substr(0, length);
    text = rest.substr(length);
    SpokenUnit const* const unit = takeUnit(text, units);
    std::string const said = unit == nullptr ? std::string(number) : counted(unit->key, number, texts);
    out += isMinus ? texts.format("spoken.minus", said) : said;
  }
  return out;
}

}  // namespace nimbara
