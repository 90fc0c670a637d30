#include "feeds/outlook/outlook_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kFarthestCelsius = 100;
constexpr double kMostMM = 2'000;
constexpr double kMostKmph = 500;
constexpr int kLastCode = 99;

using Column = std::optional<std::vector<Lenient<double>>>;

struct OutlookColumns {
  std::vector<Lenient<std::string>> time;
  Column code, highest, lowest, amount, chance, wind;
};

struct OutlookAnswer {
  std::optional<std::string> reason;
  std::optional<OutlookColumns> daily;
};

}  // namespace

template <>
inline constexpr auto jsonFields<OutlookColumns> = FieldList{
    field("time", &OutlookColumns::time),
    field("weather_code", &OutlookColumns::code),
    field("temperature_2m_max", &OutlookColumns::highest),
    field("temperature_2m_min", &OutlookColumns::lowest),
    field("precipitation_sum", &OutlookColumns::amount),
    field("precipitation_probability_max", &OutlookColumns::chance),
    field("wind_speed_10m_max", &OutlookColumns::wind),
};
template <>
inline constexpr auto jsonFields<OutlookAnswer> =
    FieldList{field("reason", &OutlookAnswer::reason), field("daily", &OutlookAnswer::daily)};

namespace {

/// The value of a column that may be short or missing; nothing where it is impossible.
std::optional<double> valueAt(Column const& column, std::size_t index, double least, double most) {
  if (!column || index >= column->size() || !(*column)[index].value) return std::nullopt;
  double const value = *(*column)[index].value;
  return value >= least && value <= most ? std::optional(value) : std::nullopt;
}

std::optional<int> whole(std::optional<double> value) {
  return value ? std::optional(static_cast<int>(std::lround(*value))) : std::nullopt;
}

std::optional<OutlookDay> dayOf(OutlookColumns const& daily, std::size_t index) {
  auto const date = daily.time[index].value ? parseDate(*daily.time[index].value) : std::nullopt;
  auto const lowest = valueAt(daily.lowest, index, -kFarthestCelsius, kFarthestCelsius);
  auto const highest = valueAt(daily.highest, index, -kFarthestCelsius, kFarthestCelsius);
  if (!date || !lowest || !highest || *lowest > *highest) return std::nullopt;
  return OutlookDay{*date,
                    *lowest,
                    *highest,
                    whole(valueAt(daily.code, index, 0, kLastCode)),
                    whole(valueAt(daily.chance, index, 0, 100)),
                    valueAt(daily.amount, index, 0, kMostMM),
                    valueAt(daily.wind, index, 0, kMostKmph)};
}

}  // namespace

Result<std::vector<OutlookDay>, DecodeError> parseOutlook(std::string_view body) {
  auto const answer = decodeJson<OutlookAnswer>(body);
  if (!answer) return std::unexpected(answer.error());
  if (answer->reason) return std::unexpected(DecodeError{"", oneLine(*answer->reason)});
  if (!answer->daily) return std::unexpected(DecodeError{"/daily", "there are no daily values"});
  std::size_t const count =
      std::min(answer->daily->time.size(), static_cast<std::size_t>(OutlookService::kDays));
  std::vector<OutlookDay> days;
  days.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    auto const day = dayOf(*answer->daily, i);
    if (day && (days.empty() || days.back().date < day->date)) days.push_back(*day);
  }
  return days;
}

OutlookService::OutlookService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

FeedReading<std::vector<OutlookDay>> OutlookService::fetch(Coordinate place, std::stop_token const& stop) {
  constexpr std::chrono::seconds kPatience{20};
  constexpr std::size_t kLargestAnswer = std::size_t{256} << 10;
  if (!isValid(place)) return placelessReading<std::vector<OutlookDay>>();
  std::lock_guard const turn(turn_);
  std::string const at =
      "latitude=" + plainDecimal(place.latitude) + "&longitude=" + plainDecimal(place.longitude);
  FeedQuestion question;
  question.request.url =
      options_.base + "/v1/forecast?" + at +
      "&daily=weather_code,temperature_2m_max,temperature_2m_min,precipitation_sum,"
      "precipitation_probability_max,wind_speed_10m_max&temperature_unit=celsius&wind_speed_unit=kmh"
      "&timezone=auto&forecast_days=" +
      std::to_string(kDays);
  if (!options_.apiKey.empty()) question.request.url += "&apikey=" + percentEncoded(options_.apiKey);
  question.request.timeout = kPatience;
  question.request.maxBodyBytes = kLargestAnswer;
  question.expected = "forecast of days";
  question.life = kLife;
  return places_.of(at).read(http_, clock_, question, parseOutlook, stop);
}

}  // namespace nimbara
