// One present on the page, in the status line and in its tooltip.
#include "cli/pages/forecast/forecast_report.h"
#include "cli/pages/forecast/line_text.h"
#include "support/forecasts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using testing::HasSubstr;
using testing::Not;
using namespace std::chrono_literals;
using Code = WeatherConditionCode;

struct Faces {
  std::string page;
  std::string line;
  std::string tip;
};

Faces facesOf(WeatherData data, Instant now) {
  ForecastAnswer answer;
  answer.answeredAt = data.fetchedAt;
  answer.data = std::move(data);
  static Texts const kTexts = Texts::load("en");
  ReportOptions options;
  options.now = now;
  KeptWarnings const official{{}, coverageOf({}, "JP")};
  LineContext const context{answer, official, kTexts, options.units, now, false};
  return {forecastReport(answer, options, kTexts, Calendar::utc()), *filledLine(kLineTemplate, context),
          tooltip(context)};
}

TEST(PresentFaces, TellTheHourOnceTheReadingIsOld) {
  WeatherData data = test::mildForecast(at("2026-11-21T10:00:00Z"), 30);
  data.fetchedAt = at("2026-11-21T10:15:00Z");
  data.current.observationTime = "2026-11-21T10:15";
  data.current.tempC = 20;
  for (HourlyForecast& hour : data.allHourly) {
    hour.tempC = -5;
    hour.condition = Code::heavySnow;
  }
  Faces const young = facesOf(data, at("2026-11-21T10:20:00Z"));
  EXPECT_THAT(young.page, HasSubstr("20 °C  Partly Cloudy"));
  EXPECT_THAT(young.line, HasSubstr("20° Partly Cloudy"));
  Faces const later = facesOf(data, at("2026-11-21T21:15:00Z"));
  EXPECT_THAT(later.page, HasSubstr("-5 °C  Heavy Snow"));
  EXPECT_THAT(later.page, Not(HasSubstr("20 °C")));
  EXPECT_THAT(later.line, HasSubstr("-5° Heavy Snow"));
  EXPECT_THAT(later.tip, HasSubstr("-5° Heavy Snow"));
}

TEST(PresentFaces, CallNoNightSunny) {
  WeatherData data = test::mildForecast(at("2026-11-21T22:00:00Z"), 24);
  data.current.condition = Code::sunny;
  data.current.conditionDescription = "Sunny";
  data.current.isDay = true;
  Faces const night = facesOf(data, at("2026-11-21T22:10:00Z"));
  EXPECT_THAT(night.page, HasSubstr("☾"));
  for (std::string const& face : {night.page, night.line, night.tip}) {
    EXPECT_THAT(face, HasSubstr("Clear"));
    EXPECT_THAT(face.substr(0, face.find("7-day forecast")), Not(HasSubstr("Sunny")));
  }
}

struct PolarRow {
  std::string now;
  std::string sun;
  bool hasMoons;
};

TEST(PresentFaces, KnowMidnightSunAndPolarNight) {
  for (PolarRow const& row : {PolarRow{"2026-06-21T22:10:00Z", "stays up all day", false},
                              PolarRow{"2026-12-21T12:10:00Z", "stays below the horizon all day", true}}) {
    WeatherData data = test::mildForecast(std::chrono::floor<std::chrono::hours>(at(row.now)), 24);
    data.location.latitude = 78.22;
    data.location.longitude = 15.65;
    data.current.condition = Code::sunny;
    for (HourlyForecast& hour : data.allHourly) hour.condition = Code::sunny;
    for (DailyForecast& day : data.daily) {
      day.astronomy = {"No sunrise", "No sunset", "No moonrise", "No moonset", "Full Moon", 100};
      for (HourlyForecast& hour : day.hourly) hour.condition = Code::sunny;
    }
    Faces const faces = facesOf(data, at(row.now));
    EXPECT_THAT(faces.page, HasSubstr(row.sun));
    EXPECT_THAT(faces.page, HasSubstr(row.hasMoons ? "☾" : "☀"));
    EXPECT_THAT(faces.page, Not(HasSubstr(row.hasMoons ? "☀" : "☾")));
    for (std::string const& face : {faces.page, faces.tip}) {
      EXPECT_THAT(face, HasSubstr(row.hasMoons ? "Clear" : "Sunny"));
      EXPECT_THAT(face, Not(HasSubstr(row.hasMoons ? "Sunny" : "Clear")));
    }
  }
}

TEST(PresentFaces, ShowNoUnknownValueAsZero) {
  WeatherData data = test::mildForecast(at("2026-11-21T10:00:00Z"), 30);
  auto const forget = [](HourlyForecast& hour) { hour.unknownValues = ForecastValues::all(); };
  std::ranges::for_each(data.allHourly, forget);
  for (DailyForecast& day : data.daily) std::ranges::for_each(day.hourly, forget);
  data.current.unknownValues = ForecastValues::all();
  data.daily.front().precipMM = 72;
  std::string const page = facesOf(data, at("2026-11-21T10:20:00Z")).page;
  for (char const* const hidden : {"0 %\n", "0.0 mm", "rain %", "km/h", "Wind", "Precipitation"}) {
    EXPECT_THAT(page, Not(HasSubstr(hidden)));
  }
  EXPECT_THAT(page, HasSubstr("72.0 mm"));
}

}  // namespace
}  // namespace nimbara
