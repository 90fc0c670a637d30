#include "base/files/file.h"
#include "demo/demo_server.h"
#include "demo/forecasts/apple_weather_stand_in.h"
#include "demo/forecasts/wttr_stand_in.h"
#include "demo/forecasts/yr_no_stand_in.h"
#include "demo/world/demo_condition.h"
#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"
#include "model/process.h"
#include "model/weather_condition.h"
#include "platform/linux/http/curl_http_client.h"
#include "platform/linux/http/es256.h"
#include "providers/common/wmo_code.h"
#include "providers/metnorway/yr_no_client.h"
#include "providers/weatherkit/apple_weather_client.h"
#include "providers/wttr/wttr_client.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_key.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

/// How near a value comes through the texts of a record and the service's own rounding.
constexpr double kWholeNumber = 0.5 + 0.06;
constexpr double kTenth = 0.1 + 0.01;

struct PlaceAndTime {
  Coordinate place;
  char const* now;
};

void PrintTo(PlaceAndTime const& row, std::ostream* out) {
  *out << formatCoordinate(row.place) << " at " << row.now;
}

constexpr PlaceAndTime kCases[] = {
    {{52.52, 13.41}, "2026-11-21T09:20:00Z"},    {{52.52, 13.41}, "2026-10-23T21:59:00Z"},
    {{-33.87, 151.21}, "2026-03-01T13:30:00Z"},  {{69.65, 18.96}, "2026-01-10T00:00:00Z"},
    {{78.22, 15.65}, "2026-06-21T12:00:00Z"},    {{27.7, 85.32}, "2026-07-15T18:14:00Z"},
    {{-13.83, -171.77}, "2026-11-21T10:30:00Z"}, {{1.29, 103.85}, "2026-05-05T05:05:05Z"}};

ConditionCategory generated(DemoWeather const& weather) {
  return category(conditionOfWwoCode(wwoCodeOfWmo(weather.weatherCode)));
}

/// An hour of a forecast beside the weather it was made from.
void expectHour(HourlyForecast const& hour, DemoWeather const& weather) {
  EXPECT_NEAR(hour.tempC, weather.temperature, kWholeNumber);
  EXPECT_NEAR(hour.windSpeedKmph, weather.windSpeed, kWholeNumber + 0.2);
  EXPECT_NEAR(hour.pressure, weather.pressure, kWholeNumber);
  EXPECT_NEAR(hour.humidity, weather.humidity, 1.1);
  EXPECT_EQ(category(hour.condition), generated(weather)) << weather.weatherCode;
}

/// The weather of an hour of the place's clock, from a service that counts hours of Greenwich. Where the two
/// stand a quarter of an hour apart, as in Nepal, readings lie between those of two hours, amounts are their
/// parts, and the sky is that of the first.
DemoWeather betweenHours(Coordinate place, Instant begin) {
  auto const first = std::chrono::floor<std::chrono::hours>(begin);
  double const part = std::chrono::duration<double, std::ratio<3600>>(begin - first).count();
  DemoWeather weather = demoWeather(place, first);
  DemoWeather const next = demoWeather(place, first + 1h);
  for (auto const reading : {&DemoWeather::temperature, &DemoWeather::windSpeed, &DemoWeather::pressure,
                             &DemoWeather::humidity, &DemoWeather::visibility, &DemoWeather::precipitation}) {
    weather.*reading = std::lerp(weather.*reading, next.*reading, part);
  }
  return weather;
}

double generatedRain(Coordinate place, Instant begin, int hours) {
  double sum = 0;
  for (int i = 0; i < hours; ++i) sum += demoWeather(place, begin + i * 1h).precipitation;
  return sum;
}

/// Each client of ours against the server, over the network of the machine itself.
class ForecastStandIns : public testing::TestWithParam<PlaceAndTime> {
 protected:
  ForecastStandIns() : clock_(at(GetParam().now)) {
    auto server = DemoServer::start(clock_, {});
    EXPECT_TRUE(server) << server.error();
    server_ = std::move(*server);
  }

  template <class Client, class... More>
  WeatherData fetch(More&&... more) {
    Client client(http_, clock_, {server_->baseUrl(), ""}, demoTimeZone, std::forward<More>(more)...);
    auto const answer = client.fetchForecast(place_.latitude, place_.longitude);
    EXPECT_TRUE(answer) << answer.error().text();
    WeatherData data = answer ? process(*answer, Calendar::utc(), clock_.now()) : WeatherData{};
    EXPECT_EQ(data.location.timeZone, demoTimeZone(place_));
    EXPECT_FALSE(data.daily.empty());
    if (!data.daily.empty()) {
      Calendar const calendar = calendarOf(data, Calendar::utc());
      EXPECT_EQ(calendar.day(data.daily[0].date), calendar.day(clock_.now()));
    }
    return data;
  }

  Coordinate place_ = GetParam().place;
  FixedClock clock_;
  CurlHttpClient http_{{"nimbara-test/1", {}}};
  std::unique_ptr<DemoServer> server_;
};

TEST_P(ForecastStandIns, MetNorwayIsReadAsItWasGenerated) {
  WeatherData const data = fetch<YrNoClient>();
  ASSERT_EQ(data.daily.size(), 7U);
  Instant const hourlyEnd = clock_.now() + 59h;
  Instant const firstStep = std::chrono::floor<std::chrono::hours>(clock_.now());
  for (HourlyForecast const& hour : data.allHourly) {
    // The first hour may have begun before the first step.
    if (hour.date > hourlyEnd || hour.date < firstStep) continue;
    DemoWeather const weather = betweenHours(place_, hour.date);
    expectHour(hour, weather);
    EXPECT_NEAR(hour.precipMM, weather.precipitation, kTenth);
  }
  DemoWeather const present = demoWeather(place_, std::chrono::floor<std::chrono::hours>(clock_.now()));
  EXPECT_NEAR(data.current.tempC, present.temperature, kWholeNumber);
  // Of the six-hourly days: the sums and the extremes.
  for (std::size_t i = 4; i < 7; ++i) {
    DailyForecast const& day = data.daily[i];
    double sum = 0;
    for (HourlyForecast const& hour : day.hourly) sum += hour.precipMM;
    auto const hours = static_cast<int>(day.hourly.size());
    EXPECT_GE(hours, 23);
    // A step at either end of the day is shared evenly with its neighbour.
    double const most = generatedRain(place_, day.date - 5h, hours + 10);
    double const least = generatedRain(place_, day.date + 5h, hours - 10);
    EXPECT_GE(sum, least - hours * 0.06);
    EXPECT_LE(sum, most + hours * 0.06);
    for (int hour = 6; hour < 18; ++hour) {
      double const temperature = demoWeather(place_, day.date + hour * 1h).temperature;
      EXPECT_LE(temperature, day.maxTempC + kWholeNumber);
      EXPECT_GE(temperature, day.minTempC - kWholeNumber);
    }
  }
}

TEST_P(ForecastStandIns, WttrIsReadAsItWasGenerated) {
  WeatherData const data = fetch<WttrAPIClient>();
  ASSERT_EQ(data.daily.size(), 3U);
  for (DailyForecast const& day : data.daily) {
    EXPECT_EQ(
        static_cast<int>(day.hourly.size()),
        calendarOf(data, Calendar::utc()).lengthOfDay(calendarOf(data, Calendar::utc()).day(day.date)) / 1h);
    double sum = 0;
    double generatedSum = 0;
    for (HourlyForecast const& hour : day.hourly) {
      sum += hour.precipMM;
      bool const beginsEntry = hour.hour % 3 == 0;
      if (!beginsEntry) continue;
      expectHour(hour, demoWeather(place_, hour.date));
      generatedSum += generatedRain(place_, hour.date, 3);
    }
    EXPECT_NEAR(sum, generatedSum, 8 * 0.051);
  }
  EXPECT_NEAR(data.current.tempC, demoWeather(place_, clock_.now()).temperature, kWholeNumber);
}

TEST_P(ForecastStandIns, WeatherKitIsReadAsItWasGenerated) {
  test::TestKey const key;
  test::TemporaryFolder const folder;
  auto const keyFile = folder.path() / "key.p8";
  ASSERT_TRUE(writeFileAtomically(keyFile, key.pem()));
  WeatherData const data =
      fetch<AppleWeatherClient>(AppleWeatherCredentials{keyFile, "KEY", "TEAM", "SERVICE", signEs256});
  ASSERT_EQ(data.daily.size(), 7U);
  EXPECT_GE(data.allHourly.size(), 7U * 24 - 1);
  for (HourlyForecast const& hour : data.allHourly) {
    DemoWeather const weather = betweenHours(place_, hour.date);
    expectHour(hour, weather);
    EXPECT_NEAR(hour.precipMM, weather.precipitation, kTenth);
    EXPECT_NEAR(hour.visibilityKm, weather.visibility / 1000, kWholeNumber);
  }
  EXPECT_EQ(data.current.isDay, demoWeather(place_, clock_.now()).isDay);
}

INSTANTIATE_TEST_SUITE_P(Places, ForecastStandIns, testing::ValuesIn(kCases));

DemoRequest requestOf(std::string path, std::map<std::string, std::string, std::less<>> query,
                      std::map<std::string, std::string, std::less<>> headers = {}) {
  auto const lookup = [](auto values) {
    return [values = std::move(values)](std::string_view name) {
      auto const found = values.find(name);
      return found == values.end() ? std::string() : found->second;
    };
  };
  return {std::move(path), lookup(std::move(query)), lookup(std::move(headers))};
}

TEST(YrNoStandIn, HasTheServicesHabits) {
  Instant const now = at("2026-11-21T09:20:00Z");
  auto const ask = [now](std::string latitude, std::map<std::string, std::string, std::less<>> headers) {
    return yrNoForecast(requestOf("/", {{"lat", std::move(latitude)}, {"lon", "13.41"}}, std::move(headers)),
                        now);
  };
  DemoAnswer const answer = ask("52.5200", {{"User-Agent", "nimbara"}});
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(ask("52.52", {{"User-Agent", "nimbara"}, {"If-Modified-Since", "Sat, 21 Nov 2026 09:00:00 GMT"}})
                .status,
            304);
  EXPECT_EQ(ask("52.52", {{"User-Agent", "nimbara"}, {"If-Modified-Since", "Sat, 21 Nov 2026 08:00:00 GMT"}})
                .status,
            200);
  EXPECT_EQ(ask("52.52", {}).status, 403);
  EXPECT_EQ(ask("52.52001", {{"User-Agent", "nimbara"}}).status, 403);
  EXPECT_EQ(ask("north", {{"User-Agent", "nimbara"}}).status, 400);
}

TEST(WttrStandIn, ReportsFailuresAsTheServiceDoes) {
  Instant const now = at("2026-11-21T09:20:00Z");
  for (auto const& [path, format] :
       {std::pair{"/91,0", "j1"}, std::pair{"/a,b", "j1"}, std::pair{"/52.52,13.41", ""}}) {
    DemoAnswer const answer = wttrForecast(requestOf(path, {{"format", format}}), now);
    EXPECT_EQ(answer.status, 200);
    EXPECT_FALSE(answer.body.starts_with("{")) << path;
  }
}

TEST(AppleWeatherStandIn, WantsATokenAndGivesWhatIsAskedFor) {
  Instant const now = at("2026-11-21T09:20:00Z");
  std::string const path = "/api/v1/weather/en/52.52/13.41";
  for (char const* const token : {"", "Bearer", "Bearer a.b", "Basic a.b.c"}) {
    EXPECT_EQ(appleWeatherForecast(requestOf(path, {}, {{"Authorization", token}}), now).status, 401);
  }
  DemoAnswer const empty =
      appleWeatherForecast(requestOf(path, {}, {{"Authorization", "Bearer a.b.c"}}), now);
  EXPECT_EQ(empty.body, "{}");
  DemoAnswer const bad =
      appleWeatherForecast(requestOf("/api/v1/weather/en/x/y", {}, {{"Authorization", "Bearer a.b.c"}}), now);
  EXPECT_EQ(bad.status, 400);
}

TEST(DemoConditions, SayTheSameToEveryService) {
  for (int const wmo : {0,  1,  2,  3,  45, 48, 51, 53, 55, 56, 57, 61, 63, 65,
                        66, 67, 71, 73, 75, 77, 80, 81, 82, 85, 86, 95, 96, 99}) {
    EXPECT_EQ(demoCondition(wmo).wmo, wmo);
    EXPECT_EQ(category(conditionOfWwoCode(demoCondition(wmo).wwo)),
              category(conditionOfWwoCode(wwoCodeOfWmo(wmo))))
        << wmo;
  }
}

}  // namespace
}  // namespace nimbara
