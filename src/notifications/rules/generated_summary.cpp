#include "notifications/rules/generated_summary.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "model/condition_text.h"
#include "model/present.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kMorningToday =
    "Write a brief, friendly morning weather summary for a notification. Include today's high/low, "
    "conditions, and any rain or snow chance. Reply with the summary text only, as plain prose — no JSON, no "
    "markdown, no code fences.";
constexpr std::string_view kMorningAhead =
    "Write a brief, friendly morning weather summary for a notification that will be shown tomorrow morning. "
    "Include tomorrow's high/low, conditions, and any rain or snow chance. Reply with the summary text only, "
    "as plain prose — no JSON, no markdown, no code fences.";
constexpr std::string_view kEveningToday =
    "Write a brief, friendly evening weather summary for a notification. Mention tonight's low and "
    "tomorrow's "
    "forecast if available. Reply with the summary text only, as plain prose — no JSON, no markdown, no code "
    "fences.";
constexpr std::string_view kEveningAhead =
    "Write a brief, friendly evening weather summary for a notification that will be shown tomorrow evening. "
    "Mention that night's low and the following day's forecast if available. Reply with the summary text "
    "only, as plain prose — no JSON, no markdown, no code fences.";

/// Enough for the night and the day after.
constexpr std::chrono::hours kContextLength{36};
constexpr std::size_t kLongest = 600;
constexpr std::string_view kFence = "```";

std::string_view instruction(SummaryKind kind, bool isAhead) {
  if (kind == SummaryKind::morning) return isAhead ? kMorningAhead : kMorningToday;
  return isAhead ? kEveningAhead : kEveningToday;
}

std::string hourLine(RuleInputs const& inputs, TimeWords const& words, HourlyForecast const& hour) {
  std::string line = words.weekday(hour.date) + " " + words.hour(hour.date) + " " +
                     conditionText(hour.condition, isDayIn(*inputs.weather, hour), *inputs.texts) + " " +
                     temperatureText(inputs, hour.tempC);
  if (!hour.knows(ForecastValue::precipitationChance)) return line;
  if (hour.chanceOfRain > 0) line += " rain " + std::to_string(hour.chanceOfRain) + "%";
  if (hour.chanceOfSnow > 0) line += " snow " + std::to_string(hour.chanceOfSnow) + "%";
  return line;
}

std::string presentLines(RuleInputs const& inputs) {
  if (!inputs.present) return {};
  Present const& now = *inputs.present;
  std::string const humidity = now.humidity ? std::to_string(*now.humidity) : "unknown";
  return "Current temperature is " + display(now.tempC, inputs.units.temperature) + " degrees.\n" +
         "Current conditions: " + conditionText(now.condition, now.isDay, *inputs.texts) + "\n" +
         "Humidity: " + humidity +
         " percent. Wind: " + (now.knowsWind ? windText(inputs, now.windSpeedKmph) : "unknown") + "\n";
}

std::string_view withoutFences(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with(kFence)) {
    text.remove_prefix(kFence.size());
    if (text.starts_with("json")) text.remove_prefix(4);
  }
  text = trimmed(text);
  if (text.ends_with(kFence)) text.remove_suffix(kFence.size());
  return trimmed(text);
}

char unescaped(char escape) {
  return escape == 'n' || escape == 't' || escape == 'r' ? ' ' : escape;
}

/// The first value of a JSON object that is a text, as far as it goes: a model may have been cut short.
std::string firstJsonText(std::string_view json) {
  for (std::size_t at = json.find('"'); at != std::string_view::npos; at = json.find('"', at + 1)) {
    std::size_t const colon = json.find_first_not_of(" \t\r\n", at + 1);
    if (colon == std::string_view::npos || json[colon] != ':') continue;
    std::size_t const quote = json.find_first_not_of(" \t\r\n", colon + 1);
    if (quote == std::string_view::npos || json[quote] != '"') continue;
    std::string value;
    for (std::size_t i = quote + 1; i < json.size() && json[i] != '"'; ++i) {
      bool const isEscape = json[i] == '\\' && i + 1 < json.size();
      value += isEscape ? unescaped(json[++i]) : json[i];
    }
    return value;
  }
  return {};
}

/// Up to and with the last end of a sentence that is not inside a number.
std::string_view wholeSentences(std::string_view text) {
  constexpr std::string_view kEnds[] = {".", "!", "?", "。", "！", "？"};
  for (std::size_t end = text.size(); end > 0; --end) {
    std::string_view const head = text.substr(0, end);
    bool const isEnd =
        std::ranges::any_of(kEnds, [&](std::string_view mark) { return head.ends_with(mark); });
    bool const isInNumber = end < text.size() && text[end] >= '0' && text[end] <= '9';
    if (isEnd && !isInNumber) return head;
  }
  return {};
}

}  // namespace

std::string summaryPrompt(RuleInputs const& inputs, SummaryKind kind, bool isAhead) {
  TimeWords const words(*inputs.texts, inputs.calendar);
  std::string prompt =
      inputs.place.name + ":\n" + presentLines(inputs) + inputs.place.name + "'s hourly forecast: ";
  for (HourlyForecast const& hour : inputs.hoursWithin(kContextLength)) {
    prompt += hourLine(inputs, words, hour) + "; ";
  }
  return prompt + "\n" + std::string(instruction(kind, isAhead));
}

std::optional<std::string> cleanedSummary(std::string_view reply) {
  std::string text(withoutFences(reply));
  if (text.starts_with('{') || text.starts_with('[')) text = firstJsonText(text);
  text = oneLine(text, kLongest + kFence.size());
  std::string_view const cut = trimmed(wholeSentences(text));
  constexpr std::size_t kShortest = 8;
  if (cut.size() < kShortest) return std::nullopt;
  return std::string(cut);
}

}  // namespace nimbara
