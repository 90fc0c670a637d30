#include "providers/weatherkit/apple_weather_client.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "base/time/http_date.h"
#include "providers/common/service_answer.h"
#include "providers/weatherkit/apple_weather_join.h"
#include "providers/weatherkit/apple_weather_parser.h"

namespace nimbara {

namespace {

constexpr int kDays = 7;
constexpr int kUnauthorized = 401;

/// Nothing was sent, so no `transport`.
APIError unasked(std::string why) {
  return {APIError::Case::networkError, 0, std::move(why), {}, {}};
}

std::string ianaName(Calendar const& calendar, Instant now) {
  if (!calendar.zoneId().starts_with("GMT")) return calendar.zoneId();
  auto const offset = std::chrono::floor<std::chrono::hours>(calendar.offset(now)).count();
  if (offset == 0) return "Etc/GMT";
  return (offset > 0 ? "Etc/GMT-" : "Etc/GMT+") + std::to_string(std::abs(offset));
}

std::optional<Instant> serverTime(HttpResponse const& answer) {
  auto const text = answer.header("Date");
  return text ? parseHttpDate(*text) : std::nullopt;
}

}  // namespace

AppleWeatherQuery appleWeatherQuery(Coordinate place, Calendar const& calendar, Instant now) {
  Date const today = calendar.day(now);
  return {place,
          ianaName(calendar, now),
          {},
          calendar.startOfDay(today),
          calendar.startOfDay(addDays(today, kDays))};
}

std::string appleWeatherPath(AppleWeatherQuery const& query) {
  std::string const begin = percentEncoded(formatIso8601(query.begin));
  std::string const end = percentEncoded(formatIso8601(query.end));
  std::string path =
      "/api/v1/weather/en/" + plainDecimal(query.place.latitude) + "/" + plainDecimal(query.place.longitude) +
      "?dataSets=currentWeather,forecastHourly,forecastDaily&timezone=" + percentEncoded(query.timeZone);
  if (!query.countryCode.empty()) path += "&countryCode=" + percentEncoded(query.countryCode);
  return path + "&hourlyStart=" + begin + "&hourlyEnd=" + end + "&dailyStart=" + begin + "&dailyEnd=" + end;
}

Result<WttrResponse, APIError> readAppleWeatherAnswer(HttpResponse const& answer, Coordinate place,
                                                      Calendar const& calendar, Instant now) {
  if (auto refusal = refusalIn(answer)) return std::unexpected(std::move(*refusal));
  auto const response = parseAppleWeather(answer.body);
  if (!response) return std::unexpected(APIError::decoding(response.error()));
  return joinAppleWeather(*response, place, calendar, now);
}

Result<WttrResponse, APIError> AppleWeatherClient::fetch(Coordinate place, std::stop_token const& stop) {
  if (!isConfigured()) return std::unexpected(unasked("WeatherKit is not configured"));
  Calendar const calendar = placeCalendar(timeZone_, place);
  Instant const now = clock().now();
  auto answer = getSigned(appleWeatherPath(appleWeatherQuery(place, calendar, now)), stop);
  if (!answer) return std::unexpected(answer.error());
  return readAppleWeatherAnswer(*answer, place, calendar, clock().now());
}

/// The service says 401 to everything that is wrong with a token, so one refusal may be a token grown old or
/// a clock that is off; a second one is the key's.
Result<HttpResponse, APIError> AppleWeatherClient::getSigned(std::string const& path,
                                                             std::stop_token const& stop) {
  for (bool isRetry = false;; isRetry = true) {
    auto const token = token_.get();
    if (!token) return std::unexpected(unasked(token.error()));
    auto answer = get(path, {{"Authorization", "Bearer " + *token}}, stop);
    if (!answer || answer->status != kUnauthorized) return answer;
    token_.drop(serverTime(*answer));
    if (isRetry) return answer;
  }
}

}  // namespace nimbara
