#include "base/sun_moon.h"
#include "demo/forecasts/open_meteo_stand_in.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"
#include "model/process.h"
#include "providers/common/service_answer.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/openmeteo/open_meteo_request.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

bool isSnowCode(int code) {
  return (code >= 71 && code <= 77) || code == 85 || code == 86;
}
bool isWetCode(int code) {
  return code >= 51;
}

/// The rules that generated weather never breaks.
void checkConsistency(DemoWeather const& weather) {
  EXPECT_LE(weather.dewPoint, weather.temperature);
  EXPECT_GE(weather.windGusts, weather.windSpeed);
  EXPECT_EQ(weather.precipitation > 0, isWetCode(weather.weatherCode)) << weather.weatherCode;
  EXPECT_EQ(weather.snowfall > 0, isSnowCode(weather.weatherCode)) << weather.weatherCode;
  EXPECT_EQ(weather.visibility < 1000, weather.weatherCode == 45 || weather.weatherCode == 48);
  EXPECT_TRUE(weather.snowfall == 0 || weather.temperature < 0.5);
  EXPECT_TRUE(weather.weatherCode != 77 || weather.temperature > -8) << weather.temperature;
  EXPECT_TRUE(weather.uvIndex == 0 || weather.isDay);
  EXPECT_TRUE(weather.precipitation == 0 || weather.precipitationProbability >= 50);
  struct Range {
    double value, least, most;
  };
  for (Range const& range :
       {Range{weather.temperature, -60, 50}, Range{weather.humidity, 5, 100},
        Range{weather.pressure, 950, 1050}, Range{weather.cloudCover, 0, 100},
        Range{weather.windSpeed, 0, 200}, Range{weather.windDirection, 0, 360},
        Range{weather.visibility, 50, 60000}, Range{weather.uvIndex, 0, 13},
        Range{weather.precipitationProbability, 0, 100}, Range{weather.precipitation, 0, 60}}) {
    EXPECT_GE(range.value, range.least);
    EXPECT_LE(range.value, range.most);
  }
}

TEST(DemoWeather, IsConsistentAndShowsEveryCodeSomewhere) {
  std::set<int> codes;
  for (double latitude = -85; latitude <= 85; latitude += 5) {
    for (double longitude = -175; longitude <= 175; longitude += 25) {
      for (int hour = 0; hour < 7 * 24; hour += 2) {
        DemoWeather const weather =
            demoWeather({latitude, longitude}, at("2026-11-21T00:00:00Z") + hour * 1h);
        codes.insert(weather.weatherCode);
        checkConsistency(weather);
        ASSERT_FALSE(HasFailure()) << latitude << "," << longitude << " " << hour << " h, code "
                                   << weather.weatherCode;
      }
    }
  }
  std::set<int> const all{0,  1,  2,  3,  45, 48, 51, 53, 55, 56, 57, 61, 63, 65,
                          66, 67, 71, 73, 75, 77, 80, 81, 82, 85, 86, 95, 96, 99};
  EXPECT_EQ(codes, all);
}

TEST(DemoWeather, FollowsSeasonAndDay) {
  auto const meanOf = [](Coordinate place, char const* from) {
    double sum = 0;
    for (int hour = 0; hour < 14 * 24; ++hour) sum += demoWeather(place, at(from) + hour * 1h).temperature;
    return sum / (14 * 24);
  };
  for (double const longitude : {-100.0, 10.0, 140.0}) {
    EXPECT_GT(meanOf({50, longitude}, "2026-07-10T00:00:00Z"),
              meanOf({50, longitude}, "2026-01-10T00:00:00Z") + 10);
    EXPECT_LT(meanOf({-45, longitude}, "2026-07-10T00:00:00Z"),
              meanOf({-45, longitude}, "2026-01-10T00:00:00Z") - 8);
    EXPECT_GT(meanOf({0, longitude}, "2026-07-10T00:00:00Z"), 20);
  }
}

TEST(DemoWeather, IsTheSameEachTimeAndSmooth) {
  Coordinate const place{52.52, 13.41};
  for (int hour = 0; hour < 500; ++hour) {
    Instant const instant = at("2026-03-01T00:00:00Z") + hour * 1h;
    double const temperature = demoWeather(place, instant).temperature;
    EXPECT_EQ(demoWeather(place, instant).temperature, temperature);
    EXPECT_NEAR(demoWeather(place, instant + 1h).temperature, temperature, 4);
    EXPECT_NEAR(demoWeather(place, instant + 1h).pressure, demoWeather(place, instant).pressure, 4);
  }
}

TEST(DemoPlaces, GiveZonesAndNames) {
  for (DemoPlace const& place : demoPlaces())
    EXPECT_TRUE(Calendar::forZone(place.timeZone)) << place.timeZone;
  EXPECT_EQ(demoTimeZone({52.4, 13.1}), "Europe/Berlin");
  EXPECT_EQ(demoTimeZone({28.61, 77.21}), "Asia/Kolkata");
  EXPECT_EQ(demoTimeZone({64.18, -51.72}), "America/Nuuk");
  EXPECT_EQ(demoTimeZone({43.25, 76.92}), "Asia/Almaty");
  EXPECT_EQ(demoTimeZone({16.81, 96.16}), "Asia/Yangon");
  EXPECT_EQ(demoTimeZone({0, -30}), "Etc/GMT+2");
  EXPECT_EQ(demoTimeZone({-50, 100}), "Etc/GMT-7");
  EXPECT_EQ(demoTimeZone({-50, 2}), "Etc/GMT");
  EXPECT_EQ(findDemoPlaces("london", 10).size(), 2U);
  EXPECT_EQ(findDemoPlaces("london", 10).front()->country, "United Kingdom");
  EXPECT_EQ(findDemoPlaces("TROMSO", 10).size(), 1U);
  EXPECT_EQ(findDemoPlaces("b", 10).size(), 0U);
  EXPECT_EQ(findDemoPlaces("", 10).size(), 0U);
}

DemoRequest requestOf(std::map<std::string, std::string, std::less<>> values) {
  DemoRequest request;
  request.query = [values = std::move(values)](std::string_view name) {
    auto const found = values.find(name);
    return found == values.end() ? std::string() : found->second;
  };
  return request;
}

TEST(OpenMeteoStandIn, RefusesAsTheServiceDoes) {
  struct Row {
    std::map<std::string, std::string, std::less<>> query;
    std::string_view reason;
  };
  for (Row const& row :
       {Row{{{"latitude", "91"}, {"longitude", "0"}}, "Latitude must be in range of -90 to 90°. Given: 91."},
        Row{{{"latitude", "1"}, {"longitude", "x"}}, "Longitude must be in range"}, Row{{}, "Latitude"},
        Row{{{"latitude", "1"}, {"longitude", "1"}, {"hourly", "rain_of_frogs"}}, "rain_of_frogs"},
        Row{{{"latitude", "1"}, {"longitude", "1"}, {"forecast_days", "17"}}, "Forecast days"},
        Row{{{"latitude", "1"}, {"longitude", "1"}, {"forecast_days", "0"}}, "Forecast days"}}) {
    DemoAnswer const answer = openMeteoForecast(requestOf(row.query), at("2026-11-21T06:00:00Z"));
    EXPECT_EQ(answer.status, 400);
    EXPECT_NE(errorReason(answer.body).find(row.reason), std::string::npos) << answer.body;
  }
}

/// The stand-in answers our own query; what the client makes of it must hold together.
WeatherData forecastFor(Coordinate place, Instant now) {
  std::string const path = openMeteoPath(place);
  std::map<std::string, std::string, std::less<>> values;
  std::string const query = path.substr(path.find('?') + 1);
  std::size_t begin = 0;
  while (begin < query.size()) {
    auto const end = std::min(query.find('&', begin), query.size());
    auto const equals = query.find('=', begin);
    values[query.substr(begin, equals - begin)] = query.substr(equals + 1, end - equals - 1);
    begin = end + 1;
  }
  DemoAnswer const answer = openMeteoForecast(requestOf(values), now);
  auto const response = readOpenMeteoAnswer({answer.status, {}, answer.body}, place, now);
  EXPECT_TRUE(response) << response.error().text();
  return response ? process(*response, Calendar::utc(), now) : WeatherData{};
}

TEST(OpenMeteoStandIn, AnswersInTheServicesShapeEverywhere) {
  struct Row {
    Coordinate place;
    char const* now;
    std::size_t hours;
  };
  for (Row const& row :
       {Row{{52.52, 13.41}, "2026-11-21T09:20:00Z", 168}, Row{{78.22, 15.65}, "2026-06-21T12:00:00Z", 168},
        Row{{78.22, 15.65}, "2026-12-21T12:00:00Z", 168}, Row{{-33.87, 151.21}, "2026-07-01T23:59:59Z", 168},
        Row{{27.7, 85.32}, "2026-11-21T18:14:00Z", 168}, Row{{0, 180}, "2026-11-21T12:00:00Z", 168},
        Row{{90, 0}, "2026-11-21T12:00:00Z", 168}, Row{{-90, -180}, "2026-11-21T12:00:00Z", 168},
        // The clocks of Berlin change within these weeks.
        Row{{52.52, 13.41}, "2026-10-23T09:00:00Z", 168}, Row{{52.52, 13.41}, "2026-03-27T09:00:00Z", 167}}) {
    SCOPED_TRACE(row.now);
    Instant const now = at(row.now);
    WeatherData const data = forecastFor(row.place, now);
    EXPECT_EQ(data.daily.size(), 7U);
    EXPECT_EQ(data.allHourly.size(), row.hours);
    EXPECT_TRUE(data.current.isReading());
    EXPECT_EQ(data.current.availableDetailFields, std::nullopt);
    Calendar const calendar = calendarOf(data, Calendar::utc());
    EXPECT_EQ(calendar.day(data.daily[0].date), calendar.day(now));
    for (std::size_t i = 1; i < data.allHourly.size(); ++i) {
      EXPECT_EQ(data.allHourly[i].date - data.allHourly[i - 1].date, 1h);
    }
    bool const sunKnown = parseClock12(data.daily[0].astronomy.sunrise).has_value();
    auto const sun = sunRiseSet(data.daily[0].date, data.daily[0].date + 24h, row.place);
    EXPECT_EQ(sunKnown, sun.rise && sun.set);
  }
}

}  // namespace
}  // namespace nimbara
