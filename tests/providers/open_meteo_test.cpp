#include "base/json/json.h"
#include "model/process.h"
#include "providers/geocoder.h"
#include "providers/openmeteo/open_meteo_client.h"
#include "providers/openmeteo/open_meteo_request.h"
#include "support/answers/open_meteo_answer.h"
#include "support/fake_http_client.h"
#include "support/samples.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::OpenMeteoAnswer;
using Case = APIError::Case;

constexpr Coordinate kBerlin{52.52, 13.41};

Instant now() {
  return at("2026-11-21T09:20:00Z");
}

Result<WttrResponse, APIError> read(OpenMeteoAnswer const& answer) {
  return readOpenMeteoAnswer({200, {}, answer.body()}, kBerlin, now());
}

WttrResponse readOk(OpenMeteoAnswer const& answer) {
  auto response = read(answer);
  EXPECT_TRUE(response) << response.error().text();
  return response ? *response : WttrResponse{};
}

TEST(OpenMeteoRequest, HasItsQueryInOrder) {
  EXPECT_EQ(
      openMeteoPath({52.52, -0.00001}),
      "/v1/forecast?latitude=52.52&longitude=-0.00001"
      "&current=temperature_2m,relative_humidity_2m,apparent_temperature,weather_code,cloud_cover,pressure_"
      "msl,"
      "wind_speed_10m,wind_direction_10m,wind_gusts_10m,precipitation,is_day"
      "&hourly=temperature_2m,relative_humidity_2m,apparent_temperature,dew_point_2m,weather_code,cloud_"
      "cover,"
      "precipitation_probability,precipitation,snowfall,wind_speed_10m,wind_direction_10m,wind_gusts_10m,"
      "pressure_msl,visibility,uv_index,is_day"
      "&daily=weather_code,temperature_2m_max,temperature_2m_min,apparent_temperature_max,"
      "apparent_temperature_min,sunrise,sunset,uv_index_max,precipitation_sum,precipitation_probability_max,"
      "snowfall_sum,wind_speed_10m_max,wind_direction_10m_dominant"
      "&temperature_unit=celsius&wind_speed_unit=kmh&timezone=auto&forecast_days=7");
  EXPECT_TRUE(openMeteoPath(kBerlin, "a&b").ends_with("&forecast_days=7&apikey=a%26b"));
}

TEST(OpenMeteoAnswers, BecomeTheInterchangeRecord) {
  WttrResponse const response = readOk(OpenMeteoAnswer());
  EXPECT_EQ(response.timeZone, "Europe/Berlin");
  ASSERT_EQ(response.weather.size(), 7U);
  for (WeatherDay const& day : response.weather) EXPECT_EQ(day.hourly.size(), 24U);
  WeatherDay const& day = response.weather[0];
  EXPECT_EQ(day.date, "2026-11-21");
  EXPECT_EQ(day.maxtempC, "9");
  EXPECT_EQ(day.maxtempF, "47");
  EXPECT_EQ(day.mintempC, "-2");
  EXPECT_EQ(day.avgtempC, "4");
  EXPECT_EQ(day.uvIndex, "2");
  EXPECT_EQ(day.dailyPrecipitationChance, "65");
  EXPECT_EQ(day.totalSnowCm, "0.7");
  EXPECT_EQ(day.sunHour, "14.4");
  EXPECT_EQ(day.astronomy[0].sunrise, "07:33 AM");
  EXPECT_EQ(day.astronomy[0].sunset, "04:05 PM");
  EXPECT_EQ(day.hourly[9].time, "900");
  ASSERT_EQ(response.currentCondition.size(), 1U);
  CurrentCondition const& current = response.currentCondition[0];
  EXPECT_EQ(current.tempC, "3");
  EXPECT_EQ(current.winddir16Point, "SW");
  EXPECT_EQ(current.isDay, true);
  EXPECT_EQ(current.observationTime, "2026-11-21T10:15");
  EXPECT_EQ(current.localObsDateTime, "2026-11-21 10:15 AM");
  EXPECT_EQ(response.nearestArea[0].latitude, "52.52");  // the place, not the grid cell
  EXPECT_EQ(response.nearestArea[0].longitude, "13.41");
}

TEST(OpenMeteoAnswers, FillThePresentFromItsHour) {
  OpenMeteoAnswer answer;
  answer.setHour("visibility", 10, "8000");
  answer.setHour("uv_index", 10, "4.6");
  CurrentCondition const full = readOk(answer).currentCondition.at(0);
  EXPECT_EQ(full.visibility, "8");
  EXPECT_EQ(full.uvIndex, "5");
  EXPECT_EQ(full.availableDetailFields, DetailFields::all());
  // What neither the present nor its hour knows is not made up.
  answer.setHour("visibility", 10, "null");
  answer.hourly["dew_point_2m"] = "";
  CurrentCondition const gap = readOk(answer).currentCondition.at(0);
  EXPECT_EQ(gap.visibility, "");
  EXPECT_FALSE(gap.availableDetailFields.contains(WeatherDetailField::visibility));
  EXPECT_FALSE(gap.availableDetailFields.contains(WeatherDetailField::dewPoint));
  EXPECT_TRUE(gap.availableDetailFields.contains(WeatherDetailField::uvIndex));
}

TEST(OpenMeteoAnswers, TakeThePresentFromTheClockWithoutACurrentBlock) {
  OpenMeteoAnswer answer;
  answer.hasCurrent = false;
  answer.setHour("temperature_2m", 10, "-7");  // 9:20 UTC is 10:20 of the place
  CurrentCondition const current = readOk(answer).currentCondition.at(0);
  EXPECT_EQ(current.tempC, "-7");
  EXPECT_EQ(current.observationTime, "2026-11-21T10:20");
  answer.setHour("temperature_2m", 10, "null");
  EXPECT_TRUE(readOk(answer).currentCondition.empty());
}

TEST(OpenMeteoAnswers, SurviveANullInEveryArrayInTurn) {
  for (auto const& [key, value] : OpenMeteoAnswer().hourly) {
    OpenMeteoAnswer answer;
    answer.setHour(key, 30, "null");
    WttrResponse const response = readOk(answer);
    bool const withoutTemperature = key == "temperature_2m";
    EXPECT_EQ(response.weather[1].hourly.size(), withoutTemperature ? 23U : 24U) << key;
    OpenMeteoAnswer missing;
    missing.hourly[key] = "";
    EXPECT_EQ(readOk(missing).weather.size(), 7U) << key;
  }
  for (auto const& [key, value] : OpenMeteoAnswer().daily) {
    OpenMeteoAnswer answer;
    answer.daily[key] = "null";
    EXPECT_EQ(readOk(answer).weather.size(), 7U) << key;
  }
  for (auto const& [key, value] : OpenMeteoAnswer().current) {
    OpenMeteoAnswer answer;
    answer.current[key] = "null";
    EXPECT_EQ(readOk(answer).currentCondition.size(), 1U) << key;
  }
}

TEST(OpenMeteoAnswers, NeverTurnANullVisibilityIntoFog) {
  OpenMeteoAnswer answer;
  answer.setHour("visibility", 5, "null");
  WttrResponse const response = readOk(answer);
  HourlyCondition const& hour = response.weather[0].hourly[5];
  EXPECT_EQ(hour.chanceoffog, "0");
  EXPECT_FALSE(hour.availableDetailFields.contains(WeatherDetailField::visibility));
  HourlyForecast const processed = process(response, Calendar::utc(), now()).daily[0].hourly[5];
  EXPECT_FALSE(processed.has(WeatherDetailField::visibility));
  EXPECT_TRUE(processed.has(WeatherDetailField::humidity));
}

TEST(OpenMeteoAnswers, CarryAMissingCodeFromANeighbourAtMostThreeHoursAway) {
  OpenMeteoAnswer answer;
  for (std::size_t hour = 10; hour < 17; ++hour) answer.setHour("weather_code", hour, "null");
  answer.setHour("weather_code", 9, "95");
  answer.setHour("weather_code", 17, "0");
  auto const hours = readOk(answer).weather[0].hourly;
  EXPECT_EQ(hours[12].weatherCode, "200");
  EXPECT_EQ(hours[13].weatherCode, "");
  EXPECT_EQ(firstText(hours[13].weatherDesc), "Unknown");
  EXPECT_EQ(hours[14].weatherCode, "113");
}

TEST(OpenMeteoAnswers, TakeDaysWithoutExtremesFromTheHoursOrLeaveThemOut) {
  OpenMeteoAnswer answer;
  answer.daily["temperature_2m_max"] = "[1,2,3,4,5,6,null]";
  answer.setHour("temperature_2m", 6 * 24 + 3, "19");
  EXPECT_EQ(readOk(answer).weather.at(6).maxtempC, "19");
  answer.hasHourly = false;
  EXPECT_EQ(readOk(answer).weather.size(), 6U);
  answer.hasDaily = false;
  WttrResponse const present = readOk(answer);
  EXPECT_TRUE(present.weather.empty());
  EXPECT_EQ(present.currentCondition.size(), 1U);
  answer.hasCurrent = false;
  EXPECT_EQ(read(answer).error().kind, Case::noResults);
}

TEST(OpenMeteoAnswers, CutBlocksToTheirShortestArray) {
  OpenMeteoAnswer answer;
  answer.hourly["uv_index"] = "[1,2,3]";
  WttrResponse const response = readOk(answer);
  EXPECT_EQ(response.weather[0].hourly.size(), 3U);
  EXPECT_TRUE(response.weather[1].hourly.empty());
}

TEST(OpenMeteoAnswers, BelieveTheUnitsBlocks) {
  std::string body = OpenMeteoAnswer().body();
  std::string const metric = "\"hourly_units\":{\"visibility\":\"m\"}";
  body.replace(
      body.find(metric), metric.size(),
      "\"hourly_units\":{\"visibility\":\"ft\",\"temperature_2m\":\"°F\",\"wind_speed_10m\":\"mp/h\","
      "\"precipitation\":\"inch\"}");
  auto const response = readOpenMeteoAnswer({200, {}, body}, kBerlin, now());
  ASSERT_TRUE(response);
  HourlyCondition const& hour = response->weather[0].hourly[0];
  EXPECT_EQ(hour.tempC, "-15");     // 5.5 °F
  EXPECT_EQ(hour.visibility, "7");  // 24,140 ft
  EXPECT_EQ(hour.windspeedMiles, "20");
  EXPECT_EQ(hour.precipMM, "7.6");
}

TEST(OpenMeteoAnswers, KeepAllHoursOverAClockChange) {
  // The clocks go back on 25 October at 3:00; the answer keeps the summer offset throughout.
  OpenMeteoAnswer autumn("2026-10-24", 3);
  autumn.frame["utc_offset_seconds"] = "7200";
  WttrResponse const back = readOk(autumn);
  EXPECT_EQ(back.weather.at(0).hourly.size(), 24U);
  EXPECT_EQ(back.weather.at(1).hourly.size(), 25U);
  EXPECT_EQ(back.weather.at(2).hourly.size(), 23U);
  EXPECT_EQ(back.weather[2].astronomy[0].sunrise, "06:33 AM");  // 7:33 in summer time
  WeatherData const data = process(back, Calendar::utc(), now());
  for (std::size_t i = 1; i < data.allHourly.size(); ++i) {
    EXPECT_EQ(data.allHourly[i].date - data.allHourly[i - 1].date, std::chrono::hours(1)) << i;
  }
  // They go forward on 29 March; the last hour of the answer belongs to a day that it does not list.
  OpenMeteoAnswer spring("2026-03-28", 3);
  WttrResponse const forward = readOk(spring);
  EXPECT_EQ(forward.weather.at(1).hourly.size(), 23U);
  EXPECT_EQ(forward.weather.at(1).hourly[2].time, "300");
  EXPECT_EQ(forward.weather.at(2).hourly.size(), 24U);
}

TEST(OpenMeteoAnswers, FallBackToTheOffsetOfAnUnknownZone) {
  OpenMeteoAnswer answer;
  answer.frame["timezone"] = "\"Mars/Olympus\"";
  answer.frame["utc_offset_seconds"] = "20700";
  WttrResponse const response = readOk(answer);
  EXPECT_EQ(response.timeZone, "GMT+05:45");
  EXPECT_EQ(response.weather[0].hourly.size(), 24U);
  answer.frame["timezone"] = "\"Europe/Berlin\"";
  answer.frame["utc_offset_seconds"] = "";
  EXPECT_EQ(readOk(answer).weather[0].hourly.size(), 24U);
}

TEST(OpenMeteoAnswers, HoldForTheirHoursWhereTheZoneSaysAnotherOffset) {
  struct Row {
    char const* first;
    int offset;  // s
    char const* zone;
  };
  for (Row const& row : {Row{"2026-11-21", 3600, "Europe/Berlin"}, Row{"2026-11-21", 7200, "GMT+02:00"},
                         Row{"2026-11-21", 0, "GMT+00:00"}, Row{"2026-07-01", 3600, "GMT+01:00"},
                         // On the day of a change the answer may be older or newer than it.
                         Row{"2026-10-24", 7200, "Europe/Berlin"}, Row{"2026-10-25", 7200, "Europe/Berlin"},
                         Row{"2026-10-25", 3600, "Europe/Berlin"}, Row{"2026-10-27", 7200, "GMT+02:00"},
                         Row{"2026-10-23", 3600, "GMT+01:00"}}) {
    OpenMeteoAnswer answer(row.first, 3);
    answer.frame["utc_offset_seconds"] = std::to_string(row.offset);
    WttrResponse const record = readOk(answer);
    EXPECT_EQ(record.timeZone, row.zone) << row.first << " " << row.offset;
    if (!std::string_view(row.zone).starts_with("GMT")) continue;
    WeatherData const data = process(record, Calendar::utc(), now());
    ASSERT_EQ(data.allHourly.size(), 72U);
    EXPECT_EQ(data.allHourly[0].date,
              at(std::string(row.first) + "T00:00:00Z") - std::chrono::seconds(row.offset));
  }
}

TEST(OpenMeteoAnswers, KeepTheirHoursInPlaceOverAChangeOfHalfAnHour) {
  OpenMeteoAnswer answer("2026-10-03", 3);  // at two o'clock of the second day clocks go to half past two
  answer.frame["timezone"] = "\"Australia/Lord_Howe\"";
  answer.frame["utc_offset_seconds"] = "37800";
  WeatherData const data = process(readOk(answer), Calendar::utc(), now());
  ASSERT_EQ(data.daily.size(), 3U);
  EXPECT_EQ(data.daily[0].hourly[23].date, at("2026-10-03T12:30:00Z"));
  EXPECT_EQ(data.daily[1].hourly[2].date, at("2026-10-03T15:30:00Z"));
  EXPECT_EQ(data.daily[1].hourly[3].date, at("2026-10-03T16:00:00Z"));
  EXPECT_EQ(data.daily[1].hourly.size(), 24U);
  EXPECT_EQ(data.daily[2].hourly[0].date, at("2026-10-04T13:00:00Z"));
}

TEST(OpenMeteoAnswers, SayNothingOfASunThatDoesNotRise) {
  OpenMeteoAnswer answer("2026-12-21", 3);
  answer.setSun(0, "2026-12-21T00:00", "2026-12-21T00:00");
  answer.setSun(1, "1970-01-01T00:00", "1970-01-01T00:00");
  answer.setSun(2, "2026-12-23T00:00", "2026-12-24T00:00");
  auto const response = readOpenMeteoAnswer({200, {}, answer.body()}, {78.22, 15.65}, now());
  ASSERT_TRUE(response);
  for (WeatherDay const& day : response->weather) {
    EXPECT_EQ(day.astronomy[0].sunrise, "No sunrise");
    EXPECT_EQ(day.astronomy[0].sunset, "No sunset");
  }
}

struct FailureRow {
  int status;
  std::string body;
  Case kind;
  std::string text;
};

TEST(OpenMeteoFailures, AreNamed) {
  std::string const whole = OpenMeteoAnswer().body();
  for (FailureRow const& row :
       {FailureRow{400, R"({"error":true,"reason":"Latitude must be\nin range."})", Case::httpError,
                   "Server returned HTTP 400: Latitude must be in range."},
        FailureRow{400, R"({"reason":"x","error":true})", Case::httpError, "Server returned HTTP 400: x"},
        FailureRow{429, R"({"error":true,"reason":"Daily API request limit exceeded."})", Case::httpError,
                   "Server returned HTTP 429: Daily API request limit exceeded."},
        FailureRow{502, "<html>", Case::httpError, "Server returned HTTP 502"},
        FailureRow{199, "{}", Case::httpError, "Server returned HTTP 199"},
        FailureRow{300, "", Case::httpError, "Server returned HTTP 300"},
        FailureRow{200, "", Case::noData, "The server returned an empty response."},
        FailureRow{204, " \n", Case::noData, "The server returned an empty response."}}) {
    auto const answer = readOpenMeteoAnswer({row.status, {}, row.body}, kBerlin, now());
    ASSERT_FALSE(answer) << row.body;
    EXPECT_EQ(answer.error().kind, row.kind) << row.body;
    EXPECT_EQ(answer.error().text(), row.text);
  }
  for (std::string const& body :
       {std::string("<html>log in</html>"), whole.substr(0, whole.size() / 2), std::string("[]"),
        std::string("null"), std::string(R"({"error":true})"),
        std::string("{\"latitude\":1,\"longitude\":2,\"elevation\":3,\"timezone\":4}")}) {
    auto const answer = readOpenMeteoAnswer({200, {}, body}, kBerlin, now());
    ASSERT_FALSE(answer) << body.substr(0, 40);
    EXPECT_EQ(answer.error().kind, Case::decodingError) << body.substr(0, 40);
  }
  EXPECT_TRUE(readOpenMeteoAnswer({299, {}, whole}, kBerlin, now()));
}

TEST(OpenMeteoFailures, NameThePlaceInTheAnswer) {
  OpenMeteoAnswer answer;
  answer.setHour("cloud_cover", 7, "\"many\"");
  EXPECT_EQ(read(answer).error().text(),
            "Failed to decode response: /hourly/cloud_cover[7]: a number or null is expected");
  OpenMeteoAnswer frame;
  frame.frame["timezone"] = "";
  EXPECT_EQ(read(frame).error().text(), "Failed to decode response: /timezone: the key is missing");
}

TEST(OpenMeteoParser, TakesAnyBytesWithoutHarm) {
  std::string const whole = OpenMeteoAnswer("2026-11-21", 1).body();
  for (std::size_t cut = 0; cut < whole.size(); ++cut)
    EXPECT_FALSE(parseOpenMeteo(std::string_view(whole).substr(0, cut)));
  for (std::size_t i = 0; i < whole.size(); ++i) {
    std::string damaged = whole;
    damaged[i] = static_cast<char>(damaged[i] ^ 0x15);
    auto const answer = readOpenMeteoAnswer({200, {}, damaged}, kBerlin, now());
    EXPECT_TRUE(answer || !answer.error().text().empty());
  }
  OpenMeteoAnswer hostile;
  hostile.hourly["weather_code"] = "1e308";
  hostile.hourly["temperature_2m"] = "-1e308";
  hostile.hourly["wind_direction_10m"] = "1e300";
  hostile.hourly["visibility"] = "1e300";
  hostile.frame["utc_offset_seconds"] = "99999999999";
  EXPECT_TRUE(read(hostile));
}

TEST(OpenMeteoClient, AsksItsAddressAndPassesFailuresOn) {
  test::FakeHttpClient http;
  FixedClock const clock(now());
  OpenMeteoClient client(http, clock, {"https://paid.example", "key"});
  http.willAnswer(200, OpenMeteoAnswer().body());
  EXPECT_TRUE(client.fetchForecast(52.52, 13.41));
  ASSERT_EQ(http.requests.size(), 1U);
  EXPECT_EQ(http.requests[0].url, "https://paid.example" + openMeteoPath(kBerlin, "key"));
  EXPECT_EQ(http.requests[0].maxBodyBytes, std::size_t{4} << 20);
  http.willFail({HttpError::Kind::unresolvedHost, "could not resolve host paid.example"});
  auto const failed = client.fetchForecast(52.52, 13.41);
  EXPECT_EQ(failed.error().text(), "Network error: could not resolve host paid.example");
  EXPECT_EQ(failed.error().transport, HttpError::Kind::unresolvedHost);
  http.willFail({HttpError::Kind::invalidUrl, "x"});
  EXPECT_EQ(client.fetchForecast(52.52, 13.41).error().kind, Case::invalidURL);
  EXPECT_EQ(client.fetchForecast(91, 0).error().kind, Case::invalidURL);
  EXPECT_EQ(http.requests.size(), 3U);  // none was made for the impossible place
}

TEST(Geocoder, ReadsWhatTheServiceSends) {
  test::FakeHttpClient http;
  OpenMeteoGeocoder geocoder(http, {"https://geo.example", ""});
  http.willAnswer(
      200, R"({"results":[{"id":1,"name":"Testdorf","latitude":50.1,"longitude":8.2,"country":"Germany",
      "country_code":"DE","admin1":"Hesse","timezone":"Europe/Berlin","population":null},
      {"id":2,"name":"Nowhere"},{"id":3,"name":"Far","latitude":95,"longitude":0}],"generationtime_ms":0.6})");
  auto const found = geocoder.search("Test dorf&x", "de");
  ASSERT_TRUE(found) << found.error().text();
  EXPECT_EQ(http.requests[0].url,
            "https://geo.example/v1/search?name=Test%20dorf%26x&count=10&language=de&format=json");
  ASSERT_EQ(found->size(), 1U);
  EXPECT_EQ(found->front(),
            (GeocodedPlace{"Testdorf", "Germany", "DE", "Hesse", {50.1, 8.2}, "Europe/Berlin"}));
  http.willAnswer(200, R"({"generationtime_ms":0.6})");
  EXPECT_EQ(geocoder.search("x", "en").error().kind, Case::noResults);
  http.willAnswer(200, "<html>");
  EXPECT_EQ(geocoder.search("x", "en").error().kind, Case::decodingError);
}

TEST(RecordedAnswers, BecomeAForecastOrAClearError) {
  auto const files = test::sampleFiles("open-meteo");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  EXPECT_GE(files->size(), 8U);
  for (auto const& file : *files) {
    SCOPED_TRACE(file.filename());
    bool const isError = file.filename().string().starts_with("error");
    auto const answer = readOpenMeteoAnswer({isError ? 400 : 200, {}, test::readFile(file)}, kBerlin, now());
    ASSERT_EQ(answer.has_value(), !isError);
    if (isError) {
      EXPECT_EQ(answer.error().text(),
                "Server returned HTTP 400: Latitude must be in range of -90 to 90°. Given: 200.0.");
      continue;
    }
    WeatherData const data = process(*answer, Calendar::utc(), now());
    EXPECT_FALSE(data.daily.empty() && !data.current.isReading());
    for (DailyForecast const& day : data.daily) {
      EXPECT_LE(day.minTempC, day.maxTempC);
      EXPECT_GT(day.minTempC, -40);
      EXPECT_LT(day.maxTempC, 45);  // those recorded in °F are °C here
    }
    for (HourlyForecast const& hour : data.allHourly) {
      EXPECT_GT(hour.tempC, -40);
      EXPECT_LT(hour.tempC, 45);
      EXPECT_LT(hour.visibilityKm, 100);
      EXPECT_LT(hour.windSpeedKmph, 150);
    }
  }
}

/// What stands in single recorded answers, looked up by eye.
TEST(RecordedAnswers, GiveTheValuesThatStandInThem) {
  auto const files = test::sampleFiles("open-meteo");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  auto const forecastOf = [&](std::string const& name) {
    for (auto const& file : *files) {
      if (file.filename() != name) continue;
      auto const answer = readOpenMeteoAnswer({200, {}, test::readFile(file)}, kBerlin, now());
      if (answer) return process(*answer, Calendar::utc(), now());
    }
    ADD_FAILURE() << name;
    return WeatherData{};
  };
  EXPECT_EQ(forecastOf("frederick-daily-nulls-2026-08-09.json").daily.size(), 7U);  // the eighth day is null
  WeatherData const bucharest = forecastOf("bucharest-winter-2026-01-16.json");
  EXPECT_EQ(bucharest.daily.size(), 8U);  // from its hours, beginning with yesterday
  EXPECT_EQ(bucharest.allHourly.size(), 192U);
  EXPECT_EQ(bucharest.current.tempC, -5);
  WeatherData const london = forecastOf("london-hourly-dewpoint-2026-05-12.json");
  EXPECT_EQ(london.allHourly.size(), 24U);
  EXPECT_EQ(london.daily.size(), 2U);
  EXPECT_EQ(forecastOf("copenhagen-rain-2026-07-26.json").current.windSpeedKmph, 9);        // 2.5 m/s
  EXPECT_NEAR(forecastOf("london-current-daily-2026-05-11.json").current.tempC, 8.5, 0.5);  // 47.3 °F
  EXPECT_EQ(forecastOf("anchorage-daily-winter-2026-01-20.json").allHourly.size(), 0U);
  EXPECT_FALSE(forecastOf("anchorage-daily-winter-2026-01-20.json").current.isReading());
}

}  // namespace
}  // namespace nimbara
