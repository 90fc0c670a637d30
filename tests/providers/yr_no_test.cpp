#include "base/apparent_temperature.h"
#include "base/files/file.h"
#include "base/sha256.h"
#include "base/text/number.h"
#include "base/time/http_date.h"
#include "model/process.h"
#include "model/weather_condition.h"
#include "providers/metnorway/yr_no_client.h"
#include "providers/metnorway/yr_no_join.h"
#include "providers/metnorway/yr_no_parser.h"
#include "providers/metnorway/yr_no_symbol.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/samples.h"
#include "support/temporary_folder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::zone;
using namespace std::chrono_literals;
using Condition = WeatherConditionCode;

constexpr Coordinate kOslo{59.91, 10.75};

TEST(YrNoSymbols, LeadToTheirConditions) {
  struct Row {
    std::string_view base;
    Condition condition;
  };
  constexpr Row kRows[] = {
      {"clearsky", Condition::sunny},
      {"fair", Condition::partlyCloudy},
      {"partlycloudy", Condition::partlyCloudy},
      {"cloudy", Condition::cloudy},
      {"fog", Condition::fog},
      {"lightrain", Condition::lightRain},
      {"rain", Condition::lightRain},
      {"heavyrain", Condition::heavyRain},
      {"lightrainshowers", Condition::lightShowers},
      {"rainshowers", Condition::heavyShowers},
      {"heavyrainshowers", Condition::heavyShowers},
      {"lightsleet", Condition::lightSleet},
      {"sleet", Condition::lightSleet},
      {"heavysleet", Condition::lightSleet},
      {"lightsleetshowers", Condition::lightSleet},
      {"sleetshowers", Condition::lightSleet},
      {"heavysleetshowers", Condition::lightSleet},
      {"lightsnow", Condition::lightSnow},
      {"snow", Condition::lightSnow},
      {"heavysnow", Condition::heavySnow},
      {"lightsnowshowers", Condition::lightSnowShowers},
      {"snowshowers", Condition::lightSnowShowers},
      {"heavysnowshowers", Condition::heavySnowShowers},
      {"lightrainandthunder", Condition::thunderyShowers},
      {"rainandthunder", Condition::thunderyShowers},
      {"heavyrainandthunder", Condition::thunderyHeavyRain},
      {"lightrainshowersandthunder", Condition::thunderyShowers},
      {"rainshowersandthunder", Condition::thunderyShowers},
      {"heavyrainshowersandthunder", Condition::thunderyHeavyRain},
      {"lightsleetandthunder", Condition::thunderySnowShowers},
      {"sleetandthunder", Condition::thunderySnowShowers},
      {"heavysleetandthunder", Condition::thunderySnowShowers},
      {"lightssleetshowersandthunder", Condition::thunderySnowShowers},
      {"sleetshowersandthunder", Condition::thunderySnowShowers},
      {"heavysleetshowersandthunder", Condition::thunderySnowShowers},
      {"lightsnowandthunder", Condition::thunderySnowShowers},
      {"snowandthunder", Condition::thunderySnowShowers},
      {"heavysnowandthunder", Condition::thunderySnowShowers},
      {"lightssnowshowersandthunder", Condition::thunderySnowShowers},
      {"snowshowersandthunder", Condition::thunderySnowShowers},
      {"heavysnowshowersandthunder", Condition::thunderySnowShowers},
      {"rainoffrogs", Condition::cloudy},
      {"", Condition::cloudy},
  };
  struct Suffix {
    std::string_view text;
    std::optional<bool> isDay;
  };
  for (Row const& row : kRows) {
    for (Suffix const& suffix : {Suffix{"", std::nullopt}, Suffix{"_day", true}, Suffix{"_night", false},
                                 Suffix{"_polartwilight", std::nullopt}}) {
      std::string const code = std::string(row.base) + std::string(suffix.text);
      YrNoSymbol const symbol = readYrNoSymbol(code);
      EXPECT_EQ(conditionOfWwoCode(symbol.condition.code), row.condition) << code;
      bool const known = row.base != "rainoffrogs" && !row.base.empty();
      EXPECT_EQ(symbol.isDay, known ? suffix.isDay : std::nullopt) << code;
      EXPECT_EQ(symbol.isSnow, row.base.find("snow") != std::string_view::npos) << code;
    }
  }
}

YrNoPeriod period(std::string symbol, double amount) {
  YrNoPeriod out;
  out.symbolCode = std::move(symbol);
  out.precipitationAmount = amount;
  return out;
}

YrNoStep step(std::string const& time, double temperature) {
  YrNoStep out;
  out.time = at(time);
  out.instant.airTemperature = temperature;
  return out;
}

/// Steps of one hour, each with 0.5 mm of rain.
std::vector<YrNoStep> hourlySteps(std::string const& begin, int count) {
  std::vector<YrNoStep> steps;
  for (int i = 0; i < count; ++i) {
    steps.push_back(step(begin, i % 10));
    steps.back().time += i * 1h;
    steps.back().next1Hours = period("lightrain", 0.5);
  }
  return steps;
}

WttrResponse join(std::vector<YrNoStep> const& steps, Calendar const& calendar, Instant now,
                  Coordinate place = kOslo) {
  auto record = joinYrNo(steps, place, calendar, now);
  EXPECT_TRUE(record) << record.error().text();
  return record ? *record : WttrResponse{};
}

TEST(YrNoJoin, TurnsUnitsAndLeavesOutWhatIsNotGiven) {
  YrNoStep one = step("2026-11-21T09:00:00Z", 3.4);
  one.instant.windSpeed = 5;
  one.instant.windSpeedOfGust = 10;
  one.instant.windFromDirection = 225;
  one.instant.relativeHumidity = 81;
  one.instant.airPressureAtSeaLevel = 1013.25;
  one.instant.fogAreaFraction = 12.4;
  one.next1Hours = period("heavysnow_night", 2);
  one.next1Hours->probabilityOfThunder = 3.2;
  one.next6Hours = period("rain", 100);
  one.next6Hours->probabilityOfPrecipitation = 88.4;
  WttrResponse const record = join({one}, zone("Europe/Oslo"), at("2026-11-21T09:20:00Z"));
  EXPECT_EQ(record.timeZone, "Europe/Oslo");
  ASSERT_EQ(record.weather.size(), 1U);
  ASSERT_EQ(record.weather[0].hourly.size(), 1U);
  HourlyCondition const& hour = record.weather[0].hourly[0];
  EXPECT_EQ(hour.time, "1000");
  EXPECT_EQ(hour.windspeedKmph, "18");
  EXPECT_EQ(hour.windGustKmph, "36");
  EXPECT_EQ(hour.winddir16Point, "SW");
  EXPECT_EQ(hour.feelsLikeC, fmt::format("{:.0f}", apparentTemperature(3.4, 81, 18)));
  EXPECT_EQ(hour.precipMM, "2.0");
  EXPECT_EQ(hour.chanceofrain, "88");  // of the six hours, for want of the hour's own
  EXPECT_EQ(hour.chanceofthunder, "3");
  EXPECT_EQ(hour.chanceoffog, "12");
  EXPECT_EQ(hour.chanceofsnow, "100");
  EXPECT_EQ(firstText(hour.weatherDesc), "Heavy Snow");
  EXPECT_EQ(hour.visibility, "");
  EXPECT_EQ(hour.availableDetailFields,
            (DetailFields{WeatherDetailField::humidity, WeatherDetailField::pressure}));
  EXPECT_EQ(record.weather[0].totalSnowCm, "1.4");
  CurrentCondition const& current = record.currentCondition.at(0);
  EXPECT_EQ(current.isDay, false);  // by the symbol, although the sun is up
  EXPECT_EQ(current.observationTime, "2026-11-21T10:00");
  EXPECT_EQ(current.tempC, "3");
}

TEST(YrNoJoin, LaysLongStepsOutAsHours) {
  // 16:00 to 22:00 UTC is 17:00 to 23:00 in Oslo; the second step reaches over midnight.
  YrNoStep first = step("2026-11-21T16:00:00Z", 10);
  first.instant.windFromDirection = 350;
  first.next6Hours = period("rain", 6);
  YrNoStep second = step("2026-11-21T22:00:00Z", 4);
  second.instant.windFromDirection = 20;
  second.next6Hours = period("cloudy", 3);
  YrNoStep last = step("2026-11-22T04:00:00Z", 1);
  WttrResponse const record = join({first, second, last}, zone("Europe/Oslo"), at("2026-11-21T16:30:00Z"));
  ASSERT_EQ(record.weather.size(), 2U);
  std::vector<std::string> times, temperatures, amounts, directions;
  for (HourlyCondition const& hour : record.weather[0].hourly) {
    times.push_back(hour.time);
    temperatures.push_back(hour.tempC);
    amounts.push_back(hour.precipMM);
    directions.push_back(hour.winddirDegree);
  }
  EXPECT_EQ(times, (std::vector<std::string>{"1700", "1800", "1900", "2000", "2100", "2200", "2300"}));
  EXPECT_EQ(temperatures, (std::vector<std::string>{"10", "9", "8", "7", "6", "5", "4"}));
  EXPECT_EQ(amounts, (std::vector<std::string>{"1.0", "1.0", "1.0", "1.0", "1.0", "1.0", "0.5"}));
  EXPECT_EQ(directions, (std::vector<std::string>{"350", "355", "0", "5", "10", "15", "20"}));
  EXPECT_EQ(record.weather[1].hourly.size(), 6U);  // five of the second step and the last one's own
  EXPECT_EQ(record.weather[1].hourly.back().tempC, "1");
  EXPECT_EQ(record.weather[1].hourly.back().weatherCode, "");
}

TEST(YrNoJoin, LetsTheNextStepTakeOver) {
  YrNoStep long_ = step("2026-11-21T10:00:00Z", 0);
  long_.next6Hours = period("rain", 6);
  YrNoStep const next = step("2026-11-21T12:00:00Z", 2);
  WttrResponse const record = join({long_, next}, Calendar::utc(), at("2026-11-21T10:00:00Z"));
  ASSERT_EQ(record.weather.at(0).hourly.size(), 3U);
  EXPECT_EQ(record.weather[0].hourly[1].tempC, "1");
  EXPECT_EQ(record.weather[0].hourly[1].precipMM, "1.0");
}

TEST(YrNoJoin, TakesExtremesOfLongStepsThatLieInOneDay) {
  YrNoStep noon = step("2026-11-21T12:00:00Z", 10);
  noon.next6Hours = period("fair_day", 0);
  noon.next6Hours->airTemperatureMax = 15;
  noon.next6Hours->airTemperatureMin = 9;
  YrNoStep evening = step("2026-11-21T20:00:00Z", 8);
  evening.next6Hours = period("fair_night", 0);
  evening.next6Hours->airTemperatureMin = -20;  // perhaps after midnight
  WttrResponse const record = join({noon, evening}, Calendar::utc(), at("2026-11-21T12:00:00Z"));
  EXPECT_EQ(record.weather.at(0).maxtempC, "15");
  EXPECT_EQ(record.weather[0].mintempC, "8");
}

TEST(YrNoJoin, WritesSevenDaysFromToday) {
  auto const steps = hourlySteps("2026-11-20T21:00:00Z", 24 * 10);
  struct Row {
    char const* now;
    char const* first;
    std::size_t hours;
  };
  for (Row const& row :
       {Row{"2026-11-20T21:10:00Z", "2026-11-20", 2}, Row{"2026-11-20T23:00:00Z", "2026-11-21", 24},
        Row{"2020-01-01T00:00:00Z", "2026-11-20", 2}, Row{"2030-01-01T00:00:00Z", "2026-11-20", 2}}) {
    WttrResponse const record = join(steps, zone("Europe/Oslo"), at(row.now));
    ASSERT_EQ(record.weather.size(), 7U) << row.now;
    EXPECT_EQ(record.weather[0].date, row.first) << row.now;
    EXPECT_EQ(record.weather[0].hourly.size(), row.hours) << row.now;
    EXPECT_EQ(record.currentCondition.size(), std::string_view(row.now).starts_with("2026") ? 1U : 0U);
  }
}

TEST(YrNoJoin, KnowsDaysOf23And25Hours) {
  struct Row {
    char const* begin;
    std::size_t hours;
  };
  for (Row const& row : {Row{"2026-03-28T23:00:00Z", 23}, Row{"2026-10-24T22:00:00Z", 25}}) {
    WttrResponse const record = join(hourlySteps(row.begin, 48), zone("Europe/Oslo"), at(row.begin));
    EXPECT_EQ(record.weather.at(0).hourly.size(), row.hours);
    WeatherData const data = process(record, Calendar::utc(), at(row.begin));
    for (std::size_t i = 0; i < data.allHourly.size(); ++i) {
      EXPECT_EQ(data.allHourly[i].date, at(row.begin) + static_cast<int>(i) * 1h) << i;
    }
  }
}

struct HalfHourZone {
  char const* zone;
  std::vector<std::string> begins;        ///< of the first day's hours
  std::vector<std::string> temperatures;  ///< °C, on the line between steps that grow by 4 an hour
  std::vector<std::string> amounts;       ///< mm
};

void PrintTo(HalfHourZone const& row, std::ostream* out) {
  *out << row.zone;
}

class YrNoHalfHourZones : public testing::TestWithParam<HalfHourZone> {};

TEST_P(YrNoHalfHourZones, HaveHoursOfTheirOwnClock) {
  std::vector<YrNoStep> steps = hourlySteps("2026-11-21T10:00:00Z", 4);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    steps[i].instant.airTemperature = 4.0 * static_cast<double>(i);
    steps[i].next1Hours->precipitationAmount = i == 1 ? 4.0 : 0.0;
    steps[i].next1Hours->probabilityOfPrecipitation = i == 1 ? 90 : 10;
  }
  Instant const now = at("2026-11-21T10:05:00Z");
  WttrResponse const record = join(steps, zone(GetParam().zone), now, {28.6, 77.2});
  WeatherData const data = process(record, Calendar::utc(), now);
  std::vector<std::string> begins, temperatures, amounts;
  for (HourlyForecast const& hour : data.allHourly) {
    begins.push_back(formatIso8601(hour.date).substr(11, 5));
    temperatures.push_back(roundedText(hour.tempC));
    amounts.push_back(fixedDecimal(hour.precipMM, 1));
    EXPECT_EQ(hour.chanceOfRain, hour.precipMM > 0 ? 90 : 10);
  }
  EXPECT_EQ(begins, GetParam().begins);
  EXPECT_EQ(temperatures, GetParam().temperatures);
  EXPECT_EQ(amounts, GetParam().amounts);
  EXPECT_EQ(record.currentCondition.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Rows, YrNoHalfHourZones,
                         testing::Values(HalfHourZone{"UTC",
                                                      {"10:00", "11:00", "12:00", "13:00"},
                                                      {"0", "4", "8", "12"},
                                                      {"0.0", "4.0", "0.0", "0.0"}},
                                         HalfHourZone{"Asia/Kolkata",
                                                      {"09:30", "10:30", "11:30", "12:30", "13:30"},
                                                      {"0", "2", "6", "10", "12"},
                                                      {"0.0", "2.0", "2.0", "0.0", "0.0"}},
                                         HalfHourZone{"Asia/Kathmandu",
                                                      {"09:15", "10:15", "11:15", "12:15", "13:15"},
                                                      {"0", "1", "5", "9", "12"},
                                                      {"0.0", "1.0", "3.0", "0.0", "0.0"}},
                                         HalfHourZone{"Australia/Eucla",
                                                      {"09:15", "10:15", "11:15", "12:15", "13:15"},
                                                      {"0", "1", "5", "9", "12"},
                                                      {"0.0", "1.0", "3.0", "0.0", "0.0"}},
                                         // The first hour is the last one of the day before.
                                         HalfHourZone{"Pacific/Chatham",
                                                      {"09:15", "10:15", "11:15", "12:15", "13:15"},
                                                      {"0", "1", "5", "9", "12"},
                                                      {"0.0", "1.0", "3.0", "0.0", "0.0"}}));

TEST(YrNoJoin, TakesTheSkyOfTheLongerPartOfAnHour) {
  for (auto const& [zoneId, wetIsFirst, condition] :
       {std::tuple{"Asia/Kathmandu", true, "Rain"}, std::tuple{"Asia/Kathmandu", false, "Cloudy"},
        std::tuple{"Asia/Kolkata", true, "Rain"}, std::tuple{"Asia/Kolkata", false, "Rain"}}) {
    auto steps = hourlySteps("2026-11-21T10:00:00Z", 2);
    steps[0].next1Hours = wetIsFirst ? period("rain", 1) : period("cloudy", 0);
    steps[1].next1Hours = wetIsFirst ? period("cloudy", 0) : period("rain", 1);
    WttrResponse const record = join(steps, zone(zoneId), at("2026-11-21T10:05:00Z"));
    EXPECT_EQ(firstText(record.weather.at(0).hourly.at(1).weatherDesc), condition) << zoneId;
  }
}

TEST(YrNoJoin, KnowsNoAmountOfAnHourOfWhichAPartIsUnknown) {
  auto steps = hourlySteps("2026-11-21T10:00:00Z", 3);
  steps[1].next1Hours->precipitationAmount.reset();
  WttrResponse const record = join(steps, zone("Asia/Kolkata"), at("2026-11-21T10:05:00Z"));
  std::vector<std::string> amounts;
  for (HourlyCondition const& hour : record.weather.at(0).hourly) amounts.push_back(hour.precipMM);
  EXPECT_EQ(amounts, (std::vector<std::string>{"0.3", "", "", "0.2"}));
}

TEST(YrNoJoin, KnowsAClockChangeOfHalfAnHour) {
  struct Row {
    char const* begin;
    std::size_t hours;
    double millimetres;
  };
  // 02:00 becomes 02:30, and 02:00 becomes 01:30: the hour of the change lasts 30 and 90 minutes.
  for (Row const& row : {Row{"2026-10-03T13:30:00Z", 24, 11.75}, Row{"2026-04-04T13:00:00Z", 24, 12.25}}) {
    auto const steps = hourlySteps("2026-04-03T00:00:00Z", 24 * 200);
    WttrResponse const record = join(steps, zone("Australia/Lord_Howe"), at(row.begin), {-31.5, 159.1});
    WeatherData const data = process(record, Calendar::utc(), at(row.begin));
    auto const& day = data.daily.at(0).hourly;
    EXPECT_EQ(day.size(), row.hours);
    EXPECT_EQ(day.front().date, at(row.begin));
    double sum = 0;
    for (std::size_t i = 0; i < day.size(); ++i) {
      sum += day[i].precipMM;
      if (i > 0) {
        EXPECT_LT(day[i - 1].date, day[i].date);
      }
    }
    EXPECT_NEAR(sum, row.millimetres, 0.051) << row.begin;
  }
}

TEST(YrNoJoin, KeepsTheSumOfALongStep) {
  for (double const amount : {0.0, 0.1, 0.2, 0.4, 1.0, 2.9, 10.0}) {
    YrNoStep one = step("2026-11-21T10:00:00Z", 0);
    one.next6Hours = period("rain", amount);
    double sum = 0;
    for (HourlyCondition const& hour : join({one}, Calendar::utc(), one.time).weather.at(0).hourly) {
      sum += lenientDouble(hour.precipMM);
    }
    EXPECT_NEAR(sum, amount, 1e-9);
  }
}

TEST(YrNoJoin, ComputesDaylightNearThePoleAndBeyondTheDateLine) {
  constexpr Coordinate kLongyearbyen{78.22, 15.65};
  for (auto const& [begin, isDay] :
       {std::pair{"2026-06-21T00:00:00Z", true}, std::pair{"2026-12-21T12:00:00Z", false}}) {
    auto steps = hourlySteps(begin, 3);
    steps[0].next1Hours->symbolCode = "fair_polartwilight";
    WttrResponse const record = join(steps, zone("Arctic/Longyearbyen"), at(begin), kLongyearbyen);
    EXPECT_EQ(record.currentCondition.at(0).isDay, isDay);
    EXPECT_EQ(record.weather.at(0).astronomy.at(0).sunrise, "No sunrise");
  }
  // Kiritimati, fourteen hours ahead: 10:00 UTC is midnight of the next day.
  WttrResponse const record = join(hourlySteps("2026-11-21T10:00:00Z", 24), zone("Pacific/Kiritimati"),
                                   at("2026-11-21T10:00:00Z"), {1.87, -157.4});
  ASSERT_EQ(record.weather.size(), 1U);
  EXPECT_EQ(record.weather[0].date, "2026-11-22");
  EXPECT_EQ(record.weather[0].hourly.size(), 24U);
}

TEST(YrNoJoin, FindsNothingWhereNothingIs) {
  EXPECT_EQ(joinYrNo({}, kOslo, Calendar::utc(), at("2026-11-21T10:00:00Z")).error().kind,
            APIError::Case::noResults);
  YrNoStep empty;
  empty.time = at("2026-11-21T10:00:00Z");
  EXPECT_EQ(joinYrNo({empty}, kOslo, Calendar::utc(), empty.time).error().kind, APIError::Case::noResults);
}

std::string body(std::string_view temperature = "3.4", std::string_view time = "2026-11-21T09:00:00Z") {
  return fmt::format(
      R"({{"type":"Feature","properties":{{"meta":{{"units":{{}}}},"timeseries":[{{"time":"{}","data":{{
      "instant":{{"details":{{"air_temperature":{},"wind_speed":4.2,"relative_humidity":80.1}}}},
      "next_1_hours":{{"summary":{{"symbol_code":"lightrain"}},"details":{{"precipitation_amount":0.3}}}},
      "next_12_hours":{{"summary":{{}},"details":{{}}}}}}}},{{"time":"2026-11-21T10:00:00Z","data":{{"instant":{{
      "details":{{"air_temperature":2}}}}}}}}]}}}})",
      time, temperature);
}

TEST(YrNoParser, ToleratesGapsAndNamesWhatIsWrong) {
  for (char const* const text :
       {R"({"properties":{"timeseries":[]}})",
        R"({"properties":{"timeseries":[{"time":"2026-11-21T09:00:00Z"}]}})",
        R"({"properties":{"timeseries":[{"time":"2026-11-21T09:00:00Z","data":null}]}})",
        R"({"properties":{"timeseries":[{"time":"2026-11-21T09:00:00Z","data":{"instant":null,
            "next_1_hours":{"summary":null,"details":null},"next_6_hours":null}}]}})",
        R"({"properties":{"timeseries":[{"time":"2026-11-21T09:00:00Z","data":{"instant":{"details":
            {"air_temperature":null}},"next_1_hours":{"summary":{"symbol_code":null}}}}]}})"}) {
    EXPECT_TRUE(parseYrNo(text)) << text;
  }
  EXPECT_EQ(parseYrNo(body("\"warm\"")).error().text(),
            "/properties/timeseries[0]/data/instant/details/air_temperature: a number is expected");
  EXPECT_EQ(parseYrNo(body("1", "soon")).error().text(),
            "/properties/timeseries[0]/time: a date in ISO 8601 is expected");
  EXPECT_EQ(parseYrNo("{}").error().text(), "/properties: the key is missing");
  // Out of order, and one moment twice.
  auto const steps = parseYrNo(body("1", "2026-11-21T11:00:00Z"));
  EXPECT_EQ(steps->front().time, at("2026-11-21T10:00:00Z"));
  EXPECT_EQ(parseYrNo(body("1", "2026-11-21T10:00:00Z"))->size(), 1U);
}

TEST(YrNoParser, TakesAnyBytesWithoutHarm) {
  for (std::string const& bytes : test::damagedForms(body(), 1)) {
    if (auto const steps = parseYrNo(bytes)) {
      auto const record = joinYrNo(*steps, kOslo, Calendar::utc(), at("2026-11-21T09:00:00Z"));
      EXPECT_TRUE(record || record.error().kind == APIError::Case::noResults);
    }
  }
  for (char const* const huge : {"1e308", "-1e308", "-237.7", "1e-320"}) {
    auto const steps = parseYrNo(body(huge));
    ASSERT_TRUE(steps);
    EXPECT_TRUE(joinYrNo(*steps, kOslo, Calendar::utc(), at("2026-11-21T09:00:00Z")));
  }
}

TEST(YrNoPath, HasFourDecimalsAtMost) {
  EXPECT_EQ(yrNoPath({59.91391234, 10.752245}),
            "/weatherapi/locationforecast/2.0/complete?lat=59.9139&lon=10.7522");
  EXPECT_EQ(yrNoPath({-0.00001, -180}), "/weatherapi/locationforecast/2.0/complete?lat=0&lon=-180");
  EXPECT_EQ(yrNoPath({52.52, 13.41}), "/weatherapi/locationforecast/2.0/complete?lat=52.52&lon=13.41");
}

/// A client with a folder of its own for its answers.
class YrNoClientTest : public testing::Test {
 protected:
  std::unique_ptr<YrNoClient> make(bool withFolder) {
    auto made = std::make_unique<YrNoClient>(
        http_, clock_, ServiceAddress{"https://met.example", ""}, [](Coordinate) { return "Europe/Oslo"; },
        withFolder ? folder_.path() / "yr" : std::filesystem::path());
    made->onWarning([this](std::string_view text) { warnings_.emplace_back(text); });
    return made;
  }

  static HttpHeaders validFor(std::chrono::minutes life) {
    return {{"Date", "Sat, 21 Nov 2026 09:20:00 GMT"},
            {"Expires", formatHttpDate(at("2026-11-21T09:20:00Z") + life)},
            {"Last-Modified", kModified}};
  }
  std::filesystem::path keptFile() const {
    return folder_.path() / "yr" / (sha256Hex(yrNoPath(kOslo)) + ".yrno");
  }
  static std::string temperature(Result<WttrResponse, APIError> const& answer) {
    return answer ? answer->currentCondition.at(0).tempC : answer.error().text();
  }
  static std::optional<std::string> condition(HttpRequest const& request) {
    for (auto const& [name, value] : request.headers) {
      if (name == "If-Modified-Since") return value;
    }
    return std::nullopt;
  }

  static constexpr char const* kModified = "Sat, 21 Nov 2026 08:41:13 GMT";
  test::TemporaryFolder folder_;
  test::FakeHttpClient http_;
  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  std::vector<std::string> warnings_;
};

TEST_F(YrNoClientTest, AsksAgainOnlyWhenTheAnswerHasExpired) {
  auto const client = make(false);
  http_.willAnswer(200, body("3"), validFor(15min));
  EXPECT_EQ(temperature(client->fetchForecast(59.91, 10.75)), "3");
  clock_.advance(15min - 1ms);
  EXPECT_EQ(temperature(client->fetchForecast(59.91001, 10.74999)), "3");
  EXPECT_EQ(http_.requests.size(), 1U);
  EXPECT_EQ(condition(http_.requests[0]), std::nullopt);
  clock_.advance(1ms);
  http_.willAnswer(304, "", validFor(10min));
  EXPECT_EQ(temperature(client->fetchForecast(59.91, 10.75)), "3");
  ASSERT_EQ(http_.requests.size(), 2U);
  EXPECT_EQ(condition(http_.requests[1]), kModified);
  clock_.advance(9min);
  EXPECT_EQ(temperature(client->fetchForecast(59.91, 10.75)), "3");
  EXPECT_EQ(http_.requests.size(), 2U);
  clock_.advance(1min);
  http_.willAnswer(200, body("7"), validFor(15min));
  EXPECT_EQ(temperature(client->fetchForecast(59.91, 10.75)), "7");
  EXPECT_EQ(http_.requests.size(), 3U);
  // Another place has an answer of its own.
  http_.willAnswer(200, body("9"));
  EXPECT_EQ(temperature(client->fetchForecast(60, 11)), "9");
  EXPECT_EQ(http_.requests.back().url, "https://met.example" + yrNoPath({60, 11}));
}

TEST_F(YrNoClientTest, TrustsNoAnswerFromTheFuture) {
  auto const client = make(false);
  http_.willAnswer(200, body("3"), validFor(15min));
  EXPECT_TRUE(client->fetchForecast(59.91, 10.75));
  clock_.set(at("2026-11-21T09:19:59Z"));
  http_.willAnswer(304, "", validFor(15min));
  EXPECT_TRUE(client->fetchForecast(59.91, 10.75));
  EXPECT_EQ(http_.requests.size(), 2U);
}

TEST_F(YrNoClientTest, KeepsAnswersBeyondItsEnd) {
  http_.willAnswer(200, body("3"), validFor(15min));
  EXPECT_TRUE(make(true)->fetchForecast(59.91, 10.75));
  EXPECT_TRUE(std::filesystem::exists(keptFile()));
  clock_.advance(5min);
  EXPECT_EQ(temperature(make(true)->fetchForecast(59.91, 10.75)), "3");
  EXPECT_EQ(http_.requests.size(), 1U);
  clock_.advance(10min);
  http_.willAnswer(304, "", validFor(15min));
  EXPECT_EQ(temperature(make(true)->fetchForecast(59.91, 10.75)), "3");
  EXPECT_EQ(condition(http_.requests.at(1)), kModified);
  EXPECT_EQ(temperature(make(true)->fetchForecast(59.91, 10.75)), "3");
  EXPECT_EQ(http_.requests.size(), 2U);
}

TEST_F(YrNoClientTest, IgnoresDamagedFiles) {
  http_.willAnswer(200, body("3"), validFor(15min));
  EXPECT_TRUE(make(true)->fetchForecast(59.91, 10.75));
  std::string const whole = *readFile(keptFile(), 100'000);
  std::string otherBody = whole;
  otherBody.replace(otherBody.find("timeseries"), 10, "TIMESERIES");
  for (std::string const& damaged : {std::string(), whole.substr(0, whole.size() / 2), std::string("null"),
                                     std::string("{}"), otherBody}) {
    ASSERT_TRUE(writeFileAtomically(keptFile(), damaged));
    http_.willAnswer(200, body("5"), validFor(15min));
    EXPECT_EQ(temperature(make(true)->fetchForecast(59.91, 10.75)), "5");
    EXPECT_EQ(condition(http_.requests.back()), std::nullopt);
  }
}

TEST_F(YrNoClientTest, KeepsNothingThatDoesNotDecode) {
  auto const client = make(true);
  http_.willAnswer(200, "<html>Please log in</html>", validFor(15min));
  EXPECT_EQ(client->fetchForecast(59.91, 10.75).error().kind, APIError::Case::decodingError);
  EXPECT_FALSE(std::filesystem::exists(keptFile()));
  http_.willAnswer(200, body("3"), validFor(0min));
  EXPECT_TRUE(client->fetchForecast(59.91, 10.75));
  // The good answer stays when a bad one follows.
  http_.willAnswer(200, body("3").substr(0, 200), validFor(15min));
  EXPECT_EQ(client->fetchForecast(59.91, 10.75).error().kind, APIError::Case::decodingError);
  http_.willAnswer(304, "", validFor(15min));
  EXPECT_EQ(temperature(client->fetchForecast(59.91, 10.75)), "3");
}

TEST_F(YrNoClientTest, WarnsOfADeprecatedVersionAndOfAFolderItCannotUse) {
  auto const client = make(false);
  http_.willAnswer(203, body("3"));
  EXPECT_EQ(temperature(client->fetchForecast(59.91, 10.75)), "3");
  ASSERT_EQ(warnings_.size(), 1U);
  EXPECT_NE(warnings_[0].find("deprecated"), std::string::npos);
  ASSERT_TRUE(writeFileAtomically(folder_.path() / "yr", "a file where the folder should be"));
  http_.willAnswer(200, body("3"));
  EXPECT_EQ(temperature(make(true)->fetchForecast(59.91, 10.75)), "3");
  ASSERT_EQ(warnings_.size(), 2U);
  EXPECT_NE(warnings_[1].find("cannot be written"), std::string::npos);
}

TEST_F(YrNoClientTest, NamesFailures) {
  auto const client = make(false);
  for (int const status : {304, 403, 404, 422, 429, 500, 502}) {
    http_.willAnswer(status, "");
    auto const answer = client->fetchForecast(59.91, 10.75);
    ASSERT_FALSE(answer);
    EXPECT_EQ(answer.error(), APIError::http(status));
  }
  http_.willAnswer(200, " ");
  EXPECT_EQ(client->fetchForecast(59.91, 10.75).error().kind, APIError::Case::noData);
  http_.willAnswer(200, R"({"properties":{"timeseries":[]}})");
  EXPECT_EQ(client->fetchForecast(59.91, 10.75).error().kind, APIError::Case::noResults);
  http_.willFail({HttpError::Kind::timedOut, "no answer"});
  EXPECT_EQ(client->fetchForecast(59.91, 10.75).error().transport, HttpError::Kind::timedOut);
  EXPECT_EQ(client->fetchForecast(-90.1, 10.75).error().kind, APIError::Case::invalidURL);
}

TEST(YrNoZones, FallBackToTheNauticalOne) {
  struct Row {
    double longitude;
    char const* zone;
  };
  for (Row const& row : {Row{7.49, "GMT+00:00"}, Row{7.5, "GMT+01:00"}, Row{-7.5, "GMT-01:00"},
                         Row{-180, "GMT-12:00"}, Row{179, "GMT+12:00"}}) {
    EXPECT_EQ(placeCalendar([](Coordinate) { return ""; }, {0, row.longitude}).zoneId(), row.zone);
    EXPECT_EQ(placeCalendar({}, {0, row.longitude}).zoneId(), row.zone);
    EXPECT_EQ(placeCalendar([](Coordinate) { return "Mars/Olympus"; }, {0, row.longitude}).zoneId(),
              row.zone);
  }
}

TEST(YrNoRecordedAnswers, BecomeAForecast) {
  auto const files = test::sampleFiles("met-norway");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  ASSERT_FALSE(files->empty());
  std::string const recorded = test::readFile(files->front());
  auto const steps = parseYrNo(recorded);
  ASSERT_TRUE(steps) << steps.error().text();
  EXPECT_EQ(steps->size(), 93U);
  Instant const now = at("2024-05-16T13:40:00Z");
  WeatherData const data =
      process(join(*steps, zone("Europe/Vienna"), now, {47.27, 11.39}), Calendar::utc(), now);
  ASSERT_EQ(data.daily.size(), 7U);
  EXPECT_EQ(data.current.tempC, 20);
  EXPECT_EQ(data.current.windSpeedKmph, 11);
  EXPECT_EQ(data.daily[0].hourly.size(), 9U);
  for (std::size_t day = 1; day < 7; ++day) EXPECT_EQ(data.daily[day].hourly.size(), 24U) << day;
  // The sums of the steps from midnight to midnight in Vienna, the one that reaches over the end in part.
  double sum = 0;
  double expected = 0;
  for (YrNoStep const& one : *steps) {
    auto const first = at("2024-05-19T22:00:00Z");
    if (!one.next6Hours || one.next1Hours) continue;
    for (int hour = 0; hour < 6; ++hour) {
      auto const begin = one.time + hour * 1h;
      if (begin >= first && begin < first + 24h) expected += *one.next6Hours->precipitationAmount / 6;
    }
  }
  for (HourlyForecast const& hour : data.daily[4].hourly) sum += hour.precipMM;
  EXPECT_NEAR(sum, expected, 24 * 0.05);
  for (std::string const& bytes : test::damagedForms(recorded, 1013)) {
    if (auto const damaged = parseYrNo(bytes)) {
      auto const record = joinYrNo(*damaged, {47.27, 11.39}, Calendar::utc(), now);
      EXPECT_TRUE(record || !record.error().text().empty());
    }
  }
}

}  // namespace
}  // namespace nimbara
