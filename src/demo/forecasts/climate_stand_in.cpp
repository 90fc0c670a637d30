#include "demo/forecasts/climate_stand_in.h"

#include "base/json/json.h"
#include "base/text/number.h"
#include "base/time/calendar.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::sys_days;

constexpr double kArchiveIsColder = 0.8;
constexpr days kArchiveDelay{5};
constexpr days kMostDays{15'000};
constexpr int kMostPastDays = 92;
constexpr hours kStep{6};

DemoAnswer refusal(std::string const& reason) {
  return {400, R"({"error":true,"reason":")" + reason + "\"}", {}};
}

struct Span {
  Coordinate place;
  sys_days first, last, known;
  double correction = 0;
};

void writeDays(JsonWriter& json, Span const& span) {
  std::vector<std::string> times;
  std::vector<std::optional<double>> warmest, coldest;
  hours const noon{static_cast<int>(std::lround(12 - span.place.longitude / 15))};
  for (sys_days day = span.first; day <= span.last; day += days(1)) {
    times.push_back(formatDate(Date(day)));
    double least = 1000;
    double most = -1000;
    for (hours hour{-6}; hour <= hours(12); hour += kStep) {
      double const celsius = demoWeather(span.place, Instant(day) + noon + hour).temperature;
      least = std::min(least, celsius);
      most = std::max(most, celsius);
    }
    bool const isKnown = day <= span.known;
    auto const tenths = [&](double value) {
      return isKnown ? std::optional(std::round((value - span.correction) * 10) / 10) : std::nullopt;
    };
    warmest.push_back(tenths(most));
    coldest.push_back(tenths(least));
  }
  json.key("daily");
  json.beginObject();
  json.member("time", times);
  json.member("temperature_2m_max", warmest);
  json.member("temperature_2m_min", coldest);
  json.endObject();
}

DemoAnswer answerOf(Span const& span) {
  JsonWriter json;
  json.beginObject();
  json.member("latitude", span.place.latitude);
  json.member("longitude", span.place.longitude);
  json.member("utc_offset_seconds", 0);
  writeDays(json, span);
  json.endObject();
  return {200, json.take(), {}};
}

}  // namespace

DemoAnswer openMeteoArchive(DemoRequest const& request, Instant now) {
  auto const asked = demoCoordinate(request.query("latitude"), request.query("longitude"));
  auto const first = parseDate(request.query("start_date"));
  auto const last = parseDate(request.query("end_date"));
  if (!asked || !first || !last) return refusal("Parameters are missing or out of range.");
  auto const known = std::chrono::floor<days>(now) - kArchiveDelay;
  Span const span{request.answeredPlace(*asked), sys_days(*first), sys_days(*last), known, kArchiveIsColder};
  if (span.last < span.first || span.last - span.first > kMostDays) return refusal("Invalid date range.");
  return answerOf(span);
}

DemoAnswer openMeteoPastDays(DemoRequest const& request, Instant now) {
  auto const asked = demoCoordinate(request.query("latitude"), request.query("longitude"));
  int const past = parseInteger(request.query("past_days")).value_or(-1);
  int const ahead = parseInteger(request.query("forecast_days")).value_or(7);
  if (!asked || past < 0 || past > kMostPastDays || ahead < 1 || ahead > 16) return refusal("Out of range.");
  auto const today = std::chrono::floor<days>(now);
  sys_days const last = today + days(ahead - 1);
  return answerOf({request.answeredPlace(*asked), today - days(past), last, last, 0});
}

}  // namespace nimbara
