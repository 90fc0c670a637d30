#include "cli/service/place_query.h"

#include "cli/service/service_records.h"
#include "cli/service/warning_news.h"
#include "support/forecasts.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

Instant const kNow = at("2026-11-21T09:20:00Z");
Uuid const kHome = Uuid::named(kCurrentLocation, "home");

ServiceSnapshot known() {
  ServiceSnapshot snapshot;
  snapshot.list.places.push_back({kHome, "Lisbon Old Town", "PT", "Portugal", "", {38.71, -9.13}, ""});
  ServicePlace place;
  place.id = kHome.text();
  place.place = {{38.71, -9.13}, "Lisbon Old Town", "Portugal", ""};
  place.isSelected = true;
  auto forecast = std::make_shared<ForecastAnswer>();
  forecast->data = test::mildForecast(kNow, 30);
  forecast->answeredAt = kNow;
  place.forecast = forecast;
  place.official.coverage = coverageOf({}, "PT");
  snapshot.places.push_back(place);
  return snapshot;
}

struct QueryRow {
  char const* name;
  char const* text;
  char const* place;
  bool asksWeather;
};
void PrintTo(QueryRow const& row, std::ostream* out) {  // NOLINT(readability-identifier-naming)
  *out << row.text;
}

struct WordsForTheWeather : testing::TestWithParam<QueryRow> {};

TEST_P(WordsForTheWeather, AreToldFromThePlace) {
  PlaceQuery const query = placeQuery(GetParam().text);
  EXPECT_EQ(query.place, GetParam().place);
  EXPECT_EQ(query.asksWeather, GetParam().asksWeather);
}

INSTANTIATE_TEST_SUITE_P(Rows, WordsForTheWeather,
                         testing::Values(QueryRow{"english", "weather lisbon", "lisbon", true},
                                         QueryRow{"behind", "New York  Weather", "New York", true},
                                         QueryRow{"withJoint", "weather in Lisbon", "Lisbon", true},
                                         QueryRow{"aPlaceCalledLikeAJoint", "weather In", "In", true},
                                         QueryRow{"german", "Wetter für Köln", "Köln", true},
                                         QueryRow{"french", "météo paris", "paris", true},
                                         QueryRow{"spanish", "tiempo en León", "León", true},
                                         QueryRow{"italian", "meteo roma", "roma", true},
                                         QueryRow{"portuguese", "previsão Faro", "Faro", true},
                                         QueryRow{"dutch", "weer ede", "ede", true},
                                         QueryRow{"polish", "pogoda w Krakowie", "Krakowie", true},
                                         QueryRow{"japanese", "天気 東京", "東京", true},
                                         QueryRow{"japaneseJoined", "東京の天気", "東京", true},
                                         QueryRow{"chinese", "北京天气", "北京", true},
                                         QueryRow{"alone", "weather", "", true},
                                         QueryRow{"noWord", "lisbon", "lisbon", false},
                                         QueryRow{"nothing", "  ", "", false}),
                         [](auto const& row) { return row.param.name; });

std::vector<std::string> titles(std::string_view text) {
  std::vector<std::string> found;
  for (SearchHit const& hit : searchPlaces(text, known(), kNow)) found.push_back(hit.title);
  return found;
}

TEST(PlaceSearchOfTheDesktop, FindsSavedPlacesWithTheirWeatherAndCities) {
  EXPECT_THAT(titles("weather"), ElementsAre(HasSubstr("Lisbon Old Town: ")));
  EXPECT_THAT(titles("lisb"), ElementsAre(HasSubstr("Lisbon Old Town: ")));
  EXPECT_THAT(titles("wetter lissabon"), testing::Contains(HasSubstr("Lis")));
  EXPECT_THAT(titles("weather oslo"), testing::Contains("Oslo"));
  EXPECT_THAT(titles("oslo"), ElementsAre("Oslo")) << "its whole name";
  EXPECT_THAT(titles("osl"), IsEmpty()) << "anything may begin like this";
  EXPECT_THAT(titles("a"), IsEmpty());
  EXPECT_THAT(titles("?!"), IsEmpty());
  EXPECT_LE(titles("weather san").size(), 6U);
}

TEST(PlaceSearchOfTheDesktop, FindsASavedCityOnce) {
  ServiceSnapshot snapshot = known();
  snapshot.places.front().place = {{38.72, -9.13}, "Lisbon", "Portugal", ""};
  auto const hits = searchPlaces("weather lisbon", snapshot, kNow);
  auto const count = std::ranges::count_if(hits, [](SearchHit const& hit) {
    return hit.title == "Lisbon" && hit.description.ends_with("Portugal");
  });
  ASSERT_FALSE(hits.empty());
  EXPECT_EQ(hits.front().id, kHome.text());
  EXPECT_EQ(count, 0) << "the gazetteer's, beside it";
}

TEST(PlaceSearchOfTheDesktop, KnowsAgainWhatItFound) {
  for (std::string_view const text : {"weather lisb", "weather oslo"}) {
    SearchHit const hit = searchPlaces(text, known(), kNow).front();
    auto const again = foundPlace(hit.id, known(), kNow);
    ASSERT_TRUE(again) << hit.id;
    EXPECT_EQ(again->title, hit.title);
  }
  EXPECT_FALSE(foundPlace("no such thing", known(), kNow));
}

TEST(ServiceRecords, SayNothingWhereNothingIsKnown) {
  ServicePlace place = known().places.front();
  place.forecast.reset();
  ServiceRecord const record = currentRecord(place, {}, kNow);
  EXPECT_EQ(std::get<std::string>(record.at("state")), "unknown");
  EXPECT_FALSE(record.contains("temperatureC"));
  EXPECT_THAT(hourRecords(place, {}, kNow), IsEmpty());
  EXPECT_EQ(std::get<std::string>(nowcastOf(place, {}, kNow).summary.at("state")), "unknown");
  EXPECT_EQ(searchHit(place, {}, kNow, 1).title, "Lisbon Old Town");
}

TEST(ServiceRecords, TellADayOfHours) {
  auto const hours = hourRecords(known().places.front(), {}, kNow);
  ASSERT_EQ(hours.size(), 24U);
  EXPECT_EQ(std::get<std::int64_t>(hours[1].at("time")) - std::get<std::int64_t>(hours[0].at("time")), 3600);
}

TEST(WarningNews, TellsBeginningChangeAndEnd) {
  auto const with = [](std::vector<std::pair<char const*, char const*>> const& warnings) {
    ServiceSnapshot snapshot = known();
    for (auto const& [id, title] : warnings) {
      WeatherAlert alert;
      alert.id = Uuid::named(kHome, id);
      alert.title = title;
      alert.expires = kNow + std::chrono::hours(std::string_view(id) == "short" ? 1 : 9);
      snapshot.places.front().official.alerts.push_back(alert);
    }
    return snapshot;
  };
  auto const told = [](ServiceSnapshot const& before, ServiceSnapshot const& after, Instant now) {
    std::string text;
    for (WarningNews const& news : warningNews(before, after, now)) {
      text += std::string(enumName(news.kind)) + " " + std::get<std::string>(news.warning.at("title")) + ", ";
    }
    return text;
  };
  auto const storm = with({{"storm", "Storm"}});
  EXPECT_EQ(told({}, storm, kNow), "created Storm, ") << "a new place";
  EXPECT_EQ(told(storm, storm, kNow), "");
  EXPECT_EQ(told(storm, with({{"storm", "Hurricane"}, {"ice", "Ice"}}), kNow),
            "updated Hurricane, created Ice, ");
  EXPECT_EQ(told(storm, with({}), kNow), "ended Storm, ");
  auto const brief = with({{"short", "Short"}});
  EXPECT_EQ(told(brief, brief, kNow + std::chrono::hours(2)), "ended Short, ") << "over, though still listed";
}

}  // namespace
}  // namespace nimbara
