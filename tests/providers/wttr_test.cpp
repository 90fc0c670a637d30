#include "model/process.h"
#include "providers/wttr/wttr_client.h"
#include "providers/wttr/wttr_join.h"
#include "providers/wttr/wttr_parser.h"
#include "support/answers/bad_bytes.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/samples.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>

namespace nimbara {
namespace {

using test::at;

constexpr Coordinate kBerlin{52.52, 13.41};

std::string inBerlin(Coordinate) {
  return "Europe/Berlin";
}

using Members = std::map<std::string, std::string>;

std::string object(Members const& members) {
  std::string out;
  for (auto const& [key, value] : members) {
    if (!value.empty()) out += (out.empty() ? "\"" : ",\"") + key + "\":" + value;
  }
  return "{" + out + "}";
}

/// An answer of the service, made up: one day of eight entries. An empty text takes a member away.
struct WttrAnswer {
  Members current{{"temp_C", R"("3")"},
                  {"temp_F", R"("37")"},
                  {"FeelsLikeC", R"("0")"},
                  {"FeelsLikeF", R"("32")"},
                  {"humidity", R"("81")"},
                  {"cloudcover", R"("75")"},
                  {"pressure", R"("1013")"},
                  {"visibility", R"("10")"},
                  {"uvIndex", "1"},
                  {"weatherCode", R"(" 116 ")"},
                  {"weatherDesc", R"([{"value":"Partly cloudy "}])"},
                  {"localObsDateTime", R"("2026-11-21 10:14 AM")"},
                  {"observation_time", R"("09:14 AM")"},
                  {"winddirDegree", R"("225")"},
                  {"winddir16Point", R"("SW")"}};
  Members hour{{"tempC", R"("5")"},      {"tempF", R"("41")"},     {"humidity", R"("70")"},
               {"precipMM", R"("0.6")"}, {"DewPointC", R"("-0")"}, {"weatherCode", R"("266")"}};
  Members day{{"date", R"("2026-11-21")"},
              {"maxtempC", R"("9")"},
              {"mintempC", R"("-2")"},
              {"totalSnow_cm", R"("0.0")"},
              {"astronomy", R"([{"moonrise":"No moonrise","moonset":"02:11 PM","sunrise":"07:33 AM",
                  "sunset":"04:05 PM","moon_phase":"Waxing Gibbous","moon_illumination":"88"}])"}};
  Members area{{"latitude", R"("52.517")"},
               {"longitude", R"("13.400")"},
               {"areaName", R"([{"value":"Berlin"}])"},
               {"country", R"([{"value":"Germany"}])"},
               {"region", R"([{"value":"Berlin"}])"}};
  std::vector<std::string> times{"0", "300", "600", "900", "1200", "1500", "1800", "2100"};

  std::string body() const {
    std::string hours;
    for (std::string const& time : times) {
      Members one = hour;
      one["time"] = "\"" + time + "\"";
      hours += (hours.empty() ? "" : ",") + object(one);
    }
    Members whole = day;
    whole["hourly"] = "[" + hours + "]";
    return fmt::format(R"({{"current_condition":[{}],"nearest_area":[{}],"request":[],"weather":[{}]}})",
                       object(current), object(area), object(whole));
  }
};

Result<WttrResponse, APIError> read(std::string body, Coordinate place = kBerlin,
                                    TimeZoneLookup const& timeZone = inBerlin) {
  return readWttrAnswer({200, {}, std::move(body)}, place, timeZone);
}

WttrResponse readOk(WttrAnswer const& answer) {
  auto record = read(answer.body());
  EXPECT_TRUE(record) << record.error().text();
  return record ? *record : WttrResponse{};
}

TEST(WttrAnswers, KeepTheirShapeAndAreMadeFit) {
  WttrResponse const record = readOk({});
  EXPECT_EQ(record.timeZone, "Europe/Berlin");
  EXPECT_EQ(record.nearestArea.at(0).latitude, "52.52");  // the place, not the service's town
  EXPECT_EQ(firstText(record.nearestArea[0].areaName), "Berlin");
  EXPECT_EQ(record.request.at(0).query, "52.52,13.41");
  WeatherData const data = process(record, Calendar::utc(), at("2026-11-21T09:20:00Z"));
  EXPECT_EQ(data.current.condition, WeatherConditionCode::partlyCloudy);
  EXPECT_EQ(data.current.conditionDescription, "Partly cloudy");
  EXPECT_EQ(data.current.isDay, std::nullopt);
  EXPECT_EQ(data.current.uvIndex, 1);
  EXPECT_EQ(data.current.availableDetailFields, std::nullopt);  // all six
  ASSERT_EQ(data.allHourly.size(), 24U);
  EXPECT_EQ(data.allHourly[1].date, at("2026-11-21T00:00:00Z"));
  EXPECT_EQ(data.allHourly[1].feelsLikeC, 5);
  EXPECT_EQ(data.allHourly[1].dewPointF, 32);
  EXPECT_FALSE(data.allHourly[1].has(WeatherDetailField::pressure));
  EXPECT_TRUE(data.allHourly[1].has(WeatherDetailField::dewPoint));
  EXPECT_EQ(data.daily.at(0).maxTempF, 48);
  EXPECT_EQ(data.daily[0].avgTempC, 4);
  EXPECT_EQ(data.daily[0].astronomy.moonrise, "No moonrise");
  EXPECT_EQ(data.daily[0].astronomy.moonIllumination, 88);
}

TEST(WttrAnswers, AreReadWhateverStandsInAMember) {
  WttrAnswer const whole;
  for (char const* const odd :
       {"", "null", "\"\"", "\"n/a\"", "\"NaN\"", "[]", "{}", "[1]", "true", "1e308", "-1"}) {
    for (auto const& [key, value] : whole.current) {
      WttrAnswer answer;
      answer.current[key] = odd;
      WttrResponse const record = readOk(answer);
      EXPECT_EQ(record.currentCondition.size(), 1U) << key << " " << odd;
      EXPECT_EQ(record.weather.at(0).hourly.size(), 24U);
    }
    for (auto const& [key, value] : whole.hour) {
      WttrAnswer answer;
      answer.hour[key] = odd;
      EXPECT_EQ(readOk(answer).weather.at(0).hourly.size(), 24U) << key << " " << odd;
    }
    for (auto const& [key, value] : whole.day) {
      if (key == "date") continue;
      WttrAnswer answer;
      answer.day[key] = odd;
      EXPECT_EQ(readOk(answer).weather.size(), 1U) << key << " " << odd;
    }
  }
}

TEST(WttrAnswers, CountOnlyNumbersAsReadings) {
  WttrAnswer answer;
  answer.current["temp_C"] = R"("")";
  answer.current["visibility"] = R"("far")";
  answer.hour["DewPointC"] = "";
  CurrentCondition const current = readOk(answer).currentCondition.at(0);
  EXPECT_EQ(current.tempC, "3");  // 37 °F
  EXPECT_FALSE(current.availableDetailFields.contains(WeatherDetailField::visibility));
  EXPECT_FALSE(current.availableDetailFields.contains(WeatherDetailField::dewPoint));
  answer.current["temp_F"] = "";
  EXPECT_TRUE(readOk(answer).currentCondition.empty());
}

TEST(WttrAnswers, LeaveOutWhatHasNoPlaceInTimeOrNoTemperature) {
  WttrAnswer answer;
  answer.times = {"900", "0", "noon", "2400", "-300", ""};
  WttrResponse const record = readOk(answer);
  ASSERT_EQ(record.weather.at(0).hourly.size(), 6U);
  EXPECT_EQ(record.weather[0].hourly[2].time, "200");
  EXPECT_EQ(record.weather[0].hourly[3].time, "900");
  answer.day["date"] = R"("21.11.2026")";
  EXPECT_TRUE(readOk(answer).weather.empty());
  WttrAnswer cold;
  cold.hour["tempC"] = cold.hour["tempF"] = "";
  EXPECT_TRUE(readOk(cold).weather.at(0).hourly.empty());
  cold.day["maxtempC"] = "";
  EXPECT_TRUE(readOk(cold).weather.empty());
  cold.current.clear();
  EXPECT_EQ(read(cold.body()).error().kind, APIError::Case::noResults);
}

TEST(WttrAnswers, TakeMissingExtremesFromTheHours) {
  WttrAnswer answer;
  answer.day["maxtempC"] = answer.day["mintempC"] = "";
  WeatherDay const day = readOk(answer).weather.at(0);
  EXPECT_EQ(day.maxtempC, "5");
  EXPECT_EQ(day.mintempF, "41");
  EXPECT_EQ(day.avgtempC, "5");
}

TEST(WttrAnswers, AreRefusedForAnotherPlace) {
  // 0.9 degrees of latitude are 100.08 km, 0.899 are 99.96.
  struct Row {
    char const* latitude;
    bool accepted;
  };
  for (Row const& row : {Row{R"("0.899")", true}, Row{R"("0.9")", false}, Row{"52.5", false},
                         Row{R"("somewhere")", true}, Row{"", true}}) {
    WttrAnswer answer;
    answer.area["latitude"] = row.latitude;
    answer.area["longitude"] = "0";
    auto const record = read(answer.body(), {0, 0});
    EXPECT_EQ(record.has_value(), row.accepted) << row.latitude;
    EXPECT_TRUE(record || record.error().kind == APIError::Case::noResults);
  }
}

TEST(WttrAnswers, TellThePlacesOffsetByTheirTwoClocks) {
  struct Row {
    char const* local;
    char const* greenwich;
    double longitude;
    char const* zone;
  };
  for (Row const& row :
       {Row{"2026-11-21 10:14 AM", "09:14 AM", 13.4, "GMT+01:00"},
        Row{"2026-11-21 12:14 AM", "06:29 PM", 85.3, "GMT+05:45"},
        Row{"2026-11-20 11:14 PM", "04:14 AM", -77, "GMT-05:00"},
        Row{"2026-11-21 11:00 PM", "10:00 AM", 174.8, "GMT+13:00"},
        Row{"2026-11-20 11:00 PM", "10:00 AM", -171, "GMT-11:00"},
        Row{"2026-11-21 11 o'clock", "10:00 AM", 30, "GMT+02:00"}, Row{"", "", -30, "GMT-02:00"},
        // Clocks of two moments say nothing.
        Row{"2026-11-21 10:14 AM", "09:02 AM", 30, "GMT+02:00"}}) {
    WttrAnswer answer;
    answer.area["longitude"] = fmt::format("\"{}\"", row.longitude);
    answer.current["localObsDateTime"] = "\"" + std::string(row.local) + "\"";
    answer.current["observation_time"] = "\"" + std::string(row.greenwich) + "\"";
    auto const record = read(answer.body(), {52.52, row.longitude}, {});
    ASSERT_TRUE(record);
    EXPECT_EQ(record->timeZone, row.zone) << row.local;
  }
}

TEST(WttrAnswers, HoldForTheirHoursWhereTheZoneSaysAnotherOffset) {
  struct Row {
    char const* known;
    char const* local;
    char const* greenwich;
    char const* zone;
  };
  for (Row const& row :
       {Row{"Europe/Berlin", "2026-11-21 10:14 AM", "09:14 AM", "Europe/Berlin"},
        Row{"Europe/Berlin", "2026-11-21 11:14 AM", "09:14 AM", "GMT+02:00"},
        Row{"Europe/Berlin", "2026-10-25 11:14 AM", "09:14 AM", "Europe/Berlin"},  // of before the change
        Row{"Europe/Berlin", "2026-11-21 10:20 AM", "09:14 AM", "Europe/Berlin"},
        Row{"Pacific/Kiritimati", "2026-11-22 12:14 AM", "10:14 AM", "Pacific/Kiritimati"},
        Row{"Pacific/Chatham", "2026-11-21 11:59 PM", "10:14 AM", "Pacific/Chatham"}}) {
    WttrAnswer answer;
    answer.current["localObsDateTime"] = "\"" + std::string(row.local) + "\"";
    answer.current["observation_time"] = "\"" + std::string(row.greenwich) + "\"";
    auto const record = read(answer.body(), kBerlin, [&](Coordinate) { return row.known; });
    ASSERT_TRUE(record);
    EXPECT_EQ(record->timeZone, row.zone) << row.local;
  }
}

/// A day of entries with the given amounts and temperatures.
WttrResponse laidOut(std::string const& date, std::vector<std::string> times, std::string const& zoneId,
                     std::vector<std::string> const& amounts,
                     std::vector<std::string> const& temperatures = {}) {
  WeatherDay day;
  day.date = date;
  day.maxtempC = "9";
  day.mintempC = "1";
  for (std::size_t i = 0; i < times.size(); ++i) {
    HourlyCondition hour;
    hour.time = times[i];
    hour.tempC = temperatures.empty() ? "5" : temperatures[i];
    hour.precipMM = amounts[i];
    hour.chanceofrain = std::to_string(10 * i);
    hour.winddirDegree = i == 0 ? "350" : "20";
    hour.winddir16Point = i == 0 ? "N" : "NNE";
    day.hourly.push_back(hour);
  }
  WttrResponse answer;
  answer.weather = {day};
  auto record = joinWttr(answer, kBerlin, [&](Coordinate) { return zoneId; });
  EXPECT_TRUE(record);
  return record ? *record : WttrResponse{};
}

template <class Member>
std::vector<std::string> textsOf(WttrResponse const& record, Member member) {
  std::vector<std::string> texts;
  for (HourlyCondition const& hour : record.weather.at(0).hourly) texts.push_back(hour.*member);
  return texts;
}

TEST(WttrAnswers, LayThreeHoursOutAsHours) {
  using Texts = std::vector<std::string>;
  WttrResponse const record =
      laidOut("2026-11-21", {"1500", "1800", "2100"}, "UTC", {"10.0", "0.1", "0.0"}, {"3", "9", "0"});
  EXPECT_EQ(textsOf(record, &HourlyCondition::time),
            (Texts{"1500", "1600", "1700", "1800", "1900", "2000", "2100", "2200", "2300"}));
  EXPECT_EQ(textsOf(record, &HourlyCondition::precipMM),
            (Texts{"3.3", "3.4", "3.3", "0.0", "0.1", "0.0", "0.0", "0.0", "0.0"}));
  EXPECT_EQ(textsOf(record, &HourlyCondition::tempC), (Texts{"3", "5", "7", "9", "6", "3", "0", "0", "0"}));
  EXPECT_EQ(textsOf(record, &HourlyCondition::chanceofrain),
            (Texts{"0", "0", "0", "10", "10", "10", "20", "20", "20"}));
  EXPECT_EQ(record.weather[0].hourly[1].winddirDegree, "0");
  EXPECT_EQ(record.weather[0].hourly[2].winddir16Point, "N");
  EXPECT_EQ(record.weather[0].hourly[3].winddirDegree, "20");
  EXPECT_EQ(record.weather[0].hourly[0].precipInches, "0.13");
}

TEST(WttrAnswers, ReachNoFartherThanThreeHoursAndLeaveHourlyEntriesAsTheyAre) {
  using Texts = std::vector<std::string>;
  EXPECT_EQ(textsOf(laidOut("2026-11-21", {"0", "600", "2300"}, "UTC", {"3", "n/a", "3.25"}),
                    &HourlyCondition::precipMM),
            (Texts{"1.0", "1.0", "1.0", "n/a", "n/a", "n/a", "3.25"}));
  EXPECT_EQ(textsOf(laidOut("2026-11-21", {"100", "200", "300"}, "UTC", {"1", "2", "3"}),
                    &HourlyCondition::precipMM),
            (Texts{"1", "2", "1.0", "1.0", "1.0"}));
}

TEST(WttrAnswers, HaveTheHoursOfDaysWithAClockChange) {
  struct Row {
    char const* date;
    char const* zone;
    std::size_t hours;
    Instant second;  // the begin of the second entry
  };
  for (Row const& row : {Row{"2026-03-29", "Europe/Berlin", 5, at("2026-03-29T01:00:00Z")},
                         Row{"2026-10-25", "Europe/Berlin", 7, at("2026-10-25T02:00:00Z")},
                         Row{"2026-10-26", "Europe/Berlin", 6, at("2026-10-26T02:00:00Z")},
                         Row{"2026-10-04", "Australia/Lord_Howe", 6, at("2026-10-03T16:00:00Z")},
                         Row{"2026-11-21", "Asia/Kolkata", 6, at("2026-11-20T21:30:00Z")}}) {
    WttrResponse const record = laidOut(row.date, {"0", "300"}, row.zone, {"6.0", "3.0"});
    WeatherData const data = process(record, Calendar::utc(), row.second);
    ASSERT_EQ(data.allHourly.size(), row.hours) << row.date;
    double sum = 0;
    for (HourlyForecast const& hour : data.allHourly) sum += hour.precipMM;
    EXPECT_NEAR(sum, 9, 1e-9);
    EXPECT_EQ(data.allHourly[row.hours - 3].date, row.second) << row.zone;
    for (std::size_t i = 1; i < row.hours; ++i) {
      EXPECT_LT(data.allHourly[i - 1].date, data.allHourly[i].date);
    }
  }
}

TEST(WttrFailures, AreNamed) {
  struct Row {
    int status;
    char const* body;
    char const* text;
  };
  for (Row const& row :
       {Row{200, "Unknown location; please try ~52.52,13.41\n",
            "Failed to decode response: it is not a forecast but the text \"Unknown location; please try "
            "~52.52,13.41\""},
        Row{200, "weather data source\x1b[31m not available",
            "Failed to decode response: it is not a forecast but the text \"weather data source [31m not "
            "available\""},
        Row{200, "{}", "Failed to decode response: /weather and /current_condition are both empty"},
        Row{200, R"({"weather":{},"current_condition":"none"})",
            "Failed to decode response: /weather and /current_condition are both empty"},
        Row{200, "\n", "The server returned an empty response."},
        Row{503, "busy", "Server returned HTTP 503"}, Row{404, "", "Server returned HTTP 404"}}) {
    auto const record = readWttrAnswer({row.status, {}, row.body}, kBerlin, inBerlin);
    ASSERT_FALSE(record) << row.body;
    EXPECT_EQ(record.error().text(), row.text);
  }
  EXPECT_EQ(read("<html>log in</html>").error().kind, APIError::Case::decodingError);
}

TEST(WttrParser, TakesAnyBytesWithoutHarm) {
  std::string const whole = WttrAnswer().body();
  for (std::string const& bytes : test::damagedForms(whole, 3)) {
    auto const record = read(bytes);
    EXPECT_TRUE(record || !record.error().text().empty());
    if (record) process(*record, Calendar::utc(), at("2026-11-21T09:20:00Z"));
  }
  for (std::size_t cut = 0; cut < whole.size(); cut += 100) EXPECT_FALSE(read(whole.substr(0, cut)));
}

TEST(WttrClient, AsksItsAddress) {
  test::FakeHttpClient http;
  FixedClock const clock(at("2026-11-21T09:20:00Z"));
  WttrAPIClient client(http, clock, {"https://wttr.example", ""}, inBerlin);
  http.willAnswer(200, WttrAnswer().body());
  EXPECT_TRUE(client.fetchForecast(52.52, 13.41));
  EXPECT_EQ(http.requests.at(0).url, "https://wttr.example/52.52,13.41?format=j1");
  http.willFail({HttpError::Kind::timedOut, "no answer"});
  EXPECT_EQ(client.fetchForecast(52.52, 13.41).error().transport, HttpError::Kind::timedOut);
}

TEST(WttrRecordedAnswers, BecomeAForecast) {
  auto const files = test::sampleFiles("wttr");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  ASSERT_FALSE(files->empty());
  auto const record = read(test::readFile(files->front()), {49.13, 11.12});
  ASSERT_TRUE(record) << record.error().text();
  WeatherData const data = process(*record, Calendar::utc(), at("2026-04-03T20:40:00Z"));
  EXPECT_EQ(data.location.areaName, "Heideck");
  EXPECT_EQ(data.current.tempC, 9);
  EXPECT_EQ(data.current.condition, WeatherConditionCode::overcast);
  ASSERT_EQ(data.daily.size(), 3U);
  for (DailyForecast const& day : data.daily) EXPECT_EQ(day.hourly.size(), 24U);
  EXPECT_EQ(data.daily[0].hourly[0].conditionDescription, "Clear");
  EXPECT_EQ(data.daily[0].hourly[0].date, at("2026-04-02T22:00:00Z"));
  EXPECT_EQ(read(test::readFile(files->front()), kBerlin).error().kind, APIError::Case::noResults);
}

}  // namespace
}  // namespace nimbara
