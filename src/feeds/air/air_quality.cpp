#include "feeds/air/air_quality.h"

#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>

namespace nimbara {

namespace {

struct Current {
  Lenient<double> pm25, usAqi, europeanAqi;
};

struct Hourly {
  std::vector<Lenient<std::string>> time;
  std::vector<Lenient<double>> pm25;
};

struct Answer {
  std::optional<std::string> reason;
  Lenient<double> utcOffset;
  Lenient<Current> current;
  Lenient<Hourly> hourly;
};

}  // namespace

template <>
inline constexpr auto jsonFields<Current> =
    FieldList{fieldOr("pm2_5", &Current::pm25), fieldOr("us_aqi", &Current::usAqi),
              fieldOr("european_aqi", &Current::europeanAqi)};
template <>
inline constexpr auto jsonFields<Hourly> =
    FieldList{field("time", &Hourly::time), fieldOr("pm2_5", &Hourly::pm25)};
template <>
inline constexpr auto jsonFields<Answer> =
    FieldList{field("reason", &Answer::reason), fieldOr("utc_offset_seconds", &Answer::utcOffset),
              fieldOr("current", &Answer::current), fieldOr("hourly", &Answer::hourly)};

namespace {

constexpr double kFarthestOffset = 86'400;

std::optional<double> plausible(std::optional<double> value) {
  constexpr double kMost = 1e5;
  return value && *value >= 0 && *value <= kMost ? value : std::nullopt;
}

std::optional<Instant> instantOf(std::optional<std::string> const& text, double offset) {
  auto const local = text ? parseLocalTime(*text) : std::nullopt;
  if (!local) return std::nullopt;
  return Instant(local->time_since_epoch() - std::chrono::seconds(static_cast<std::int64_t>(offset)));
}

std::vector<AirQualityHour> hoursOf(Hourly const& hourly, double offset) {
  std::vector<AirQualityHour> hours;
  hours.reserve(hourly.time.size());
  for (std::size_t i = 0; i < hourly.time.size(); ++i) {
    auto const time = instantOf(hourly.time[i].value, offset);
    auto const pm25 = i < hourly.pm25.size() ? plausible(hourly.pm25[i].value) : std::nullopt;
    if (time) hours.push_back({*time, pm25});
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

Result<AirQualityForecast, DecodeError> parseAirQuality(std::string_view body) {
  auto const answer = firstAnswer(body);
  if (!answer) return std::unexpected(answer.error());
  auto const& [reason, utcOffset, current, hourly] = *answer;
  if (reason) return std::unexpected(DecodeError{"", oneLine(*reason)});
  if (!current.value && !hourly.value) {
    return std::unexpected(DecodeError{"", "there are neither present nor hourly values"});
  }
  double const offset = std::clamp(utcOffset.value.value_or(0), -kFarthestOffset, kFarthestOffset);
  AirQualityForecast forecast;
  if (hourly.value) forecast.hours = hoursOf(*hourly.value, offset);
  if (current.value) {
    forecast.pm25 = plausible(current.value->pm25.value);
    forecast.usAqi = plausible(current.value->usAqi.value);
    forecast.europeanAqi = plausible(current.value->europeanAqi.value);
  }
  return forecast;
}

}  // namespace nimbara
