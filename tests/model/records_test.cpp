#include "base/json/json.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_data.h"
#include "model/wttr_response.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

/// The members of a record as JSON texts, in the table's order.
struct Member {
  std::string key;
  std::string value;
  std::string wrongKind;
  bool required;
};

template <class T>
std::vector<Member> membersOf(T const& record) {
  std::vector<Member> members;
  jsonFields<T>.apply([&](auto const&... fields) {
    auto const add = [&]<class F>(F const& field) {
      using Content = std::remove_cvref_t<decltype(record.*(field.member))>;
      constexpr bool kNumber = std::is_arithmetic_v<Content> && !std::is_same_v<Content, bool>;
      constexpr bool kNumberInside =
          std::is_same_v<Content, std::optional<int>> || std::is_same_v<Content, std::optional<double>>;
      members.push_back({std::string(field.key), encodeJson(record.*(field.member)),
                         kNumber || kNumberInside ? "\"x\"" : "7", field.required});
    };
    (add(fields), ...);
  });
  return members;
}

std::string documentOf(std::vector<Member> const& members) {
  std::string document = "{\"an unknown key\":[1,{}]";
  for (Member const& member : members) document += ",\"" + member.key + "\":" + member.value;
  return document + "}";
}

/// The rules that hold for every record, whatever its fields.
template <class T>
void checkRecord(T const& record, std::string const& name) {
  SCOPED_TRACE(name);
  auto const again = decodeJson<T>(encodeJson(record));
  ASSERT_TRUE(again) << again.error().text();
  EXPECT_EQ(*again, record);
  std::vector<Member> const members = membersOf(record);
  ASSERT_TRUE(decodeJson<T>(documentOf(members)));
  for (std::size_t i = 0; i < members.size(); ++i) {
    std::vector<Member> without = members;
    without.erase(without.begin() + static_cast<std::ptrdiff_t>(i));
    auto const missing = decodeJson<T>(documentOf(without));
    EXPECT_EQ(missing.has_value(), !members[i].required) << members[i].key;
    EXPECT_TRUE(missing || missing.error().path == "/" + members[i].key) << missing.error().path;
    std::vector<Member> wrong = members;
    wrong[i].value = members[i].wrongKind;
    auto const refused = decodeJson<T>(documentOf(wrong));
    ASSERT_FALSE(refused) << members[i].key << " takes " << wrong[i].value;
    EXPECT_EQ(refused.error().path, "/" + members[i].key);
  }
}

TEST(Records, KeepTheRulesOfTheirTables) {
  checkRecord(WttrValue{"a"}, "WttrValue");
  checkRecord(WttrRequest{"1,2", "LatLon"}, "WttrRequest");
  checkRecord(NearestArea{{{"a"}}, {{"b"}}, {{"c"}}, {}, "1", "2", "0"}, "NearestArea");
  CurrentCondition current;
  current.isDay = false;
  checkRecord(current, "CurrentCondition");
  checkRecord(HourlyCondition{}, "HourlyCondition");
  checkRecord(Astronomy{"52", "Full Moon", "No moonrise", "", "07:33 AM", ""}, "Astronomy");
  WeatherDay day;
  day.hourly.resize(2);
  day.astronomy.resize(1);
  day.dailyPrecipitationChance = "40";
  checkRecord(day, "WeatherDay");
  WttrResponse response;
  response.currentCondition = {current};
  response.weather = {day};
  response.timeZone = "Europe/Berlin";
  checkRecord(response, "WttrResponse");
}

TEST(Records, KeepTheRulesOfTheProcessedForecast) {
  HourlyForecast hour;
  hour.date = test::at("2026-11-21T06:00:00Z");
  hour.condition = WeatherConditionCode::heavySnow;
  hour.availableDetailFields = DetailFields{WeatherDetailField::humidity, WeatherDetailField::dewPoint};
  checkRecord(hour, "HourlyForecast");
  DailyForecast day;
  day.hourly = {hour, hour};
  day.dailyPrecipitationChance = 0;
  day.date = test::at("2026-11-20T23:00:00Z");
  checkRecord(day, "DailyForecast");
  checkRecord(DailyForecast::ProcessedAstronomy{"a", "b", "c", "d", "e", 3}, "ProcessedAstronomy");
  WeatherData::ProcessedCurrent current;
  current.isDay = true;
  current.availableDetailFields = DetailFields{};
  checkRecord(current, "ProcessedCurrent");
  LocationInfo location{"Łódź \"x\"\n\\", "Poland", "", 51.77, 19.46, "Europe/Warsaw"};
  checkRecord(location, "LocationInfo");
  WeatherData data;
  data.location = location;
  data.current = current;
  data.daily = {day};
  data.allHourly = day.hourly;
  data.fetchedAt = test::at("2026-11-21T06:00:00.25Z");
  checkRecord(data, "WeatherData");
  EXPECT_NE(decodeJson<WeatherData>(encodeJson(data))->id.value, data.id.value);
}

TEST(Records, KeepTheIdentityOfAlerts) {
  WeatherAlert alert;
  alert.severity = AlertSeverity::critical;
  alert.title = "t";
  alert.description = "";
  alert.instruction = "i";
  alert.source = "s";
  alert.areaDesc = "a";
  alert.onset = test::at("2026-11-21T06:00:00Z");
  alert.expires = test::at("2026-11-21T07:00:00Z");
  checkRecord(alert, "WeatherAlert");
  EXPECT_EQ(decodeJson<WeatherAlert>(encodeJson(alert))->id, alert.id);
}

TEST(Records, WriteExactlyTheirKeys) {
  auto const keysOf = [](auto const& record) {
    std::string keys;
    for (Member const& member : membersOf(record)) keys += member.key + " ";
    return keys;
  };
  EXPECT_EQ(keysOf(WeatherData{}), "location current daily allHourly fetchedAt ");
  EXPECT_EQ(keysOf(WttrResponse{}), "current_condition nearest_area request weather _nimbaraTimeZone ");
  // A full answer carries no word of our extensions.
  EXPECT_EQ(encodeJson(HourlyForecast{}).find("_nimbara"), std::string::npos);
  EXPECT_EQ(encodeJson(WttrResponse{}).find("_nimbara"), std::string::npos);
  EXPECT_NE(encodeJson(CurrentCondition{}).find("\"temp_C\""), std::string::npos);
  EXPECT_NE(encodeJson(HourlyCondition{}).find("\"tempC\""), std::string::npos);
}

TEST(Records, NameThePlaceOfAnError) {
  WttrResponse response;
  response.weather.resize(3);
  response.weather[2].hourly.resize(1);
  response.weather[2].hourly[0].tempC = "MARK";
  std::string document = encodeJson(response);
  document.replace(document.find("\"MARK\""), 6, "null");
  auto const refused = decodeJson<WttrResponse>(document);
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().path, "/weather[2]/hourly[0]/tempC");
}

TEST(Records, AssumeAllDetailsWhereNothingIsSaidAndPassOverUnknownOnes) {
  EXPECT_EQ(decodeJson<CurrentCondition>(encodeJson(CurrentCondition{}))->availableDetailFields,
            DetailFields::all());
  std::string document = encodeJson(CurrentCondition{});
  auto const begin = document.find("[\"humidity\"");
  document.replace(begin, document.find(']', begin) - begin, "[\"pollen\",\"pressure\"");
  EXPECT_EQ(decodeJson<CurrentCondition>(document)->availableDetailFields,
            DetailFields{WeatherDetailField::pressure});
}

TEST(Records, TakeAnyBytesWithoutHarm) {
  std::string const document = encodeJson(WttrResponse{{CurrentCondition{}}, {}, {}, {WeatherDay{}}, "UTC"});
  for (std::size_t cut = 0; cut < document.size(); ++cut) {
    EXPECT_FALSE(decodeJson<WttrResponse>(std::string_view(document).substr(0, cut))) << cut;
  }
  for (std::string const& hostile :
       {std::string(100'000, '['), std::string(100'000, '{'), std::string("\0\0", 2),
        std::string("\xef\xbb\xbf{}"), std::string("\"\\ud800\""), std::string("1e999"), std::string("null"),
        std::string("[]"), document + "x"}) {
    EXPECT_FALSE(decodeJson<WttrResponse>(hostile));
  }
}

TEST(Severities, PutTheNearBehindTheHereOfEqualSeverity) {
  std::vector<WeatherAlert> alerts(4);
  AlertSeverity const severities[] = {AlertSeverity::warning, AlertSeverity::info, AlertSeverity::info,
                                      AlertSeverity::warning};
  for (std::size_t i = 0; i < alerts.size(); ++i) {
    alerts[i].severity = severities[i];
    alerts[i].title = std::to_string(i);
    if (i < 2) alerts[i].distanceKm = 20;
  }
  sortMostSevereFirst(alerts);
  std::string order;
  for (WeatherAlert const& alert : alerts) order += alert.title;
  EXPECT_EQ(order, "3021");
}

TEST(Severities, SortMostSevereFirstAndKeepTheOrderOfEquals) {
  std::vector<WeatherAlert> alerts(5);
  AlertSeverity const severities[] = {AlertSeverity::info, AlertSeverity::warning, AlertSeverity::critical,
                                      AlertSeverity::warning, AlertSeverity::advisory};
  for (std::size_t i = 0; i < alerts.size(); ++i) {
    alerts[i].severity = severities[i];
    alerts[i].title = std::to_string(i);
  }
  sortMostSevereFirst(alerts);
  std::string order;
  for (WeatherAlert const& alert : alerts) order += alert.title;
  EXPECT_EQ(order, "21340");
}

}  // namespace
}  // namespace nimbara
