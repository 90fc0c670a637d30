#include "feeds/air/air_quality.h"

#include "base/text/text.h"
#include "feeds/air/us_index.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <map>
#include <string>

namespace nimbara {

namespace {

/// The values of one variable: one of the present, many of the hours. What is no number is absent.
struct Column {
  std::vector<std::optional<double>> numbers;
  std::vector<std::optional<std::string>> texts;
};

using Block = std::map<std::string, Column, std::less<>>;

struct Answer {
  std::optional<std::string> reason;
  Lenient<double> utcOffset;
  Lenient<Block> current;
  Lenient<Block> hourly;
};

}  // namespace

namespace json_detail {

inline void append(dom::element element, Column& column) {
  double number = 0;
  std::string_view text;
  column.numbers.push_back(element.get(number) == simdjson::SUCCESS ? std::optional(number) : std::nullopt);
  column.texts.push_back(element.get(text) == simdjson::SUCCESS ? std::optional(std::string(text))
                                                                : std::nullopt);
}

inline bool read(dom::element element, Column& column, Failure&) {
  column = {};
  dom::array list;
  if (element.get(list) != simdjson::SUCCESS) {
    append(element, column);
    return true;
  }
  for (dom::element const member : list) append(member, column);
  return true;
}

}  // namespace json_detail

template <>
inline constexpr auto jsonFields<Answer> =
    FieldList{field("reason", &Answer::reason), fieldOr("utc_offset_seconds", &Answer::utcOffset),
              fieldOr("current", &Answer::current), fieldOr("hourly", &Answer::hourly)};

namespace {

constexpr double kFarthestOffset = 86'400;
constexpr double kHighestUv = 50;

constexpr std::array<std::string_view, enumNames<Pollutant>.size()> kPollutants{
    "pm2_5", "pm10", "nitrogen_dioxide", "ozone", "sulphur_dioxide"};

std::optional<double> plausible(std::optional<double> value, double most = 1e5) {
  return value && *value >= 0 && *value <= most ? value : std::nullopt;
}

std::optional<double> valueAt(Block const& block, std::string_view name, std::size_t index) {
  auto const column = block.find(name);
  bool const isThere = column != block.end() && index < column->second.numbers.size();
  return isThere ? column->second.numbers[index] : std::nullopt;
}

AirLevels levelsAt(Block const& block, std::size_t index) {
  AirLevels levels;
  for (std::size_t i = 0; i < kPollutants.size(); ++i) {
    std::string const name(kPollutants[i]);
    levels.pollutants[i] = plausible(valueAt(block, name, index));
    levels.usParts[i] = plausible(valueAt(block, "us_aqi_" + name, index));
  }
  for (std::size_t i = 0; i < levels.pollen.size(); ++i) {
    levels.pollen[i] = plausible(valueAt(block, std::string(enumNames<PollenKind>[i]) + "_pollen", index));
  }
  levels.europeanAqi = plausible(valueAt(block, "european_aqi", index));
  levels.usAqi = plausible(valueAt(block, "us_aqi", index));
  levels.uvIndex = plausible(valueAt(block, "uv_index", index), kHighestUv);
  levels.uvIndexClearSky = plausible(valueAt(block, "uv_index_clear_sky", index), kHighestUv);
  return levels;
}

std::optional<Instant> instantOf(std::optional<std::string> const& text, double offset) {
  auto const local = text ? parseLocalTime(*text) : std::nullopt;
  if (!local) return std::nullopt;
  return Instant(local->time_since_epoch() - std::chrono::seconds(static_cast<std::int64_t>(offset)));
}

std::vector<AirQualityHour> hoursOf(Block const& block, double offset) {
  std::vector<AirQualityHour> hours;
  auto const& times = block.find("time")->second.texts;
  hours.reserve(times.size());
  for (std::size_t i = 0; i < times.size(); ++i) {
    auto const time = instantOf(times[i], offset);
    if (!time) continue;
    AirLevels const levels = levelsAt(block, i);
    auto const pm25 = levels.pollutants[static_cast<std::size_t>(Pollutant::pm25)];
    hours.push_back({*time, pm25, levels});
  }
  std::ranges::stable_sort(hours, {}, &AirQualityHour::time);
  return hours;
}

/// One place's answer stands alone, those of several in a list.
Result<Answer, DecodeError> firstAnswer(std::string_view body) {
  if (!trimmed(body).starts_with('[')) return decodeJson<Answer>(body);
  auto answers = decodeJson<std::vector<Answer>>(body);
  if (!answers) return std::unexpected(std::move(answers.error()));
  if (answers->empty()) return std::unexpected(DecodeError{"", "the list is empty"});
  return std::move(answers->front());
}

}  // namespace

std::string airVariables() {
  std::string names = "european_aqi,us_aqi,uv_index,uv_index_clear_sky";
  for (std::string_view const name : kPollutants) {
    names += "," + std::string(name) + ",us_aqi_" + std::string(name);
  }
  for (std::string_view const kind : enumNames<PollenKind>) names += "," + std::string(kind) + "_pollen";
  return names;
}

Result<AirQualityForecast, DecodeError> parseAirQuality(std::string_view body) {
  auto const answer = firstAnswer(body);
  if (!answer) return std::unexpected(answer.error());
  auto const& [reason, utcOffset, current, hourly] = *answer;
  if (reason) return std::unexpected(DecodeError{"", oneLine(*reason)});
  bool const hasHours = hourly.value && hourly.value->contains("time");
  if (!current.value && !hasHours) {
    return std::unexpected(DecodeError{"", "there are neither present nor hourly values"});
  }
  double const offset = std::clamp(utcOffset.value.value_or(0), -kFarthestOffset, kFarthestOffset);
  AirQualityForecast forecast;
  if (hasHours) forecast.hours = hoursOf(*hourly.value, offset);
  if (current.value) {
    forecast.now = levelsAt(*current.value, 0);
    forecast.pm25 = forecast.now.pollutants[static_cast<std::size_t>(Pollutant::pm25)];
    forecast.usAqi = forecast.now.usAqi;
    forecast.europeanAqi = forecast.now.europeanAqi;
  }
  std::optional<Instant> time;
  if (auto const shown = current.value ? current.value->find("time") : Block::const_iterator();
      current.value && shown != current.value->end() && !shown->second.texts.empty())
    time = instantOf(shown->second.texts.front(), offset);
  fillUsParts(forecast, time);
  return forecast;
}

}  // namespace nimbara
