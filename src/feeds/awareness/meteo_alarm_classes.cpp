#include "feeds/awareness/meteo_alarm_classes.h"

#include "base/text/search_text.h"
#include "base/text/text.h"
#include "feeds/awareness/meteo_alarm_keywords.h"

#include <algorithm>
#include <charconv>

namespace nimbara {

namespace {

using enum WarningKind;

constexpr WarningKind kKinds[] = {wind, snow,      thunderstorm, fog,  heat, cold, coast,
                                  fire, avalanche, rain,         rain, rain, other};
static_assert(std::size(kKinds) == enumNames<MeteoAlarmType>.size());

constexpr std::string_view kIssuedFor = " issued for";

std::optional<int> numberAtFront(std::string_view text) {
  text = trimmed(text);
  int number = 0;
  auto const error = std::from_chars(text.data(), text.data() + text.size(), number).ec;
  return error == std::errc{} ? std::optional(number) : std::nullopt;
}

std::optional<MeteoAlarmType> numberedType(std::string_view text) {
  constexpr int kTypes = 12;
  auto const number = numberAtFront(text);
  if (!number || *number < 1 || *number > kTypes) return std::nullopt;
  return static_cast<MeteoAlarmType>(*number - 1);
}

/// "Yellow Snow-ice Warning" of a title that goes on with a place; the place's name must not be classified.
std::string_view headOf(std::string_view title) {
  return title.substr(0, title.find(kIssuedFor));
}

/// The service's own word: "Snow-ice". Empty for a title of another form.
std::string_view tokenOf(std::string_view title) {
  constexpr std::string_view kWarning = " Warning";
  std::string_view token = headOf(title);
  auto const blank = token.find(' ');
  if (token.size() == title.size() || !token.ends_with(kWarning) || blank == std::string_view::npos)
    return {};
  token.remove_prefix(blank + 1);
  return token.size() > kWarning.size() ? token.substr(0, token.size() - kWarning.size())
                                        : std::string_view();
}

/// Short words count only as whole ones and middling ones at the beginning of one: "ice" stands in "notice",
/// "vents" in "events". Languages that join words have the long ones.
constexpr std::size_t kShortWord = 4;
constexpr std::size_t kMiddlingWord = 6;

bool isNamedIn(std::string_view paddedText, std::string_view word) {
  if (word.size() > kMiddlingWord) return paddedText.find(word) != std::string_view::npos;
  std::string const bounded = " " + std::string(word) + (word.size() > kShortWord ? "" : " ");
  return paddedText.find(bounded) != std::string_view::npos;
}

std::string colourOrNone(std::string const& word) {
  constexpr std::string_view kColours[] = {"green", "yellow", "orange", "red"};
  return std::ranges::find(kColours, word) == std::end(kColours) ? std::string() : word;
}

}  // namespace

WarningKind warningKindOf(MeteoAlarmType type) {
  return kKinds[static_cast<std::size_t>(type)];
}

MeteoAlarmType meteoAlarmTypeInWords(std::string_view text) {
  std::string const padded = " " + searchFolded(text) + " ";
  for (WarningWord const& word : warningWordsLongestFirst()) {
    if (isNamedIn(padded, word.folded)) return word.type;
  }
  return MeteoAlarmType::generic;
}

MeteoAlarmType meteoAlarmTypeOf(std::string_view event, std::string_view title) {
  if (auto const numbered = numberedType(event)) return *numbered;
  for (std::string_view const text : {tokenOf(title), event, headOf(title)}) {
    auto const type = text.empty() ? MeteoAlarmType::generic : meteoAlarmTypeInWords(text);
    if (type != MeteoAlarmType::generic) return type;
  }
  return MeteoAlarmType::generic;
}

std::optional<MeteoAlarmType> awarenessTypeOf(std::string_view parameter) {
  auto const parts = split(parameter, ';');
  for (std::string_view const part : parts) {
    auto const named = meteoAlarmTypeInWords(part);
    if (named != MeteoAlarmType::generic) return named;
  }
  constexpr int kFlooding = 12;
  constexpr int kRainFlood = 13;
  constexpr int kLastSame = 10;
  auto const number = numberAtFront(parts.front());
  if (number == kFlooding) return MeteoAlarmType::flood;
  if (number == kRainFlood) return MeteoAlarmType::rainFlood;
  if (!number || *number < 1 || *number > kLastSame) return std::nullopt;
  return static_cast<MeteoAlarmType>(*number - 1);
}

std::string colourOfTitle(std::string_view title) {
  std::string const folded = searchFolded(headOf(title));
  return colourOrNone(folded.substr(0, folded.find(' ')));
}

std::string colourOfLevel(std::string_view parameter) {
  auto const parts = split(parameter, ';');
  return parts.size() < 2 ? std::string() : colourOrNone(asciiLowered(trimmed(parts[1])));
}

bool isGreenTitle(std::string_view title) {
  return colourOfTitle(title) == "green";
}

}  // namespace nimbara
