#include "app/places/places.h"

#include "app/places/place.h"
#include "app/places/place_resolver.h"
#include "app/places/place_search.h"
#include "app/places/postal_town.h"
#include "app/settings/settings_registry.h"
#include "support/fake_http_client.h"
#include "support/instants.h"
#include "support/memory_settings_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

Uuid id(int number) {
  Uuid uuid;
  uuid.bytes[0] = 0xA0;
  uuid.bytes[15] = static_cast<std::uint8_t>(number);
  return uuid;
}

SavedPlace place(int number, std::string name, Coordinate coordinate) {
  return {id(number), std::move(name), "DE", "Germany", "", coordinate, "Europe/Berlin"};
}

/// 1 Berlin, 2 Łódź, 3 Bergen; Berlin selected.
PlaceList threePlaces() {
  PlaceList list;
  EXPECT_TRUE(addPlace(list, place(1, "Berlin", {52.52, 13.41})));
  EXPECT_TRUE(addPlace(list, place(2, "Łódź", {51.76, 19.46})));
  EXPECT_TRUE(addPlace(list, place(3, "Bergen", {60.39, 5.32})));
  return list;
}

std::string order(PlaceList const& list) {
  std::string numbers;
  for (SavedPlace const& saved : list.places) numbers += std::to_string(saved.id.bytes[15]);
  return numbers;
}

TEST(PlaceList, RefusesAPlaceWithinAHundredMetres) {
  PlaceList list = threePlaces();
  constexpr double kDegreesPer100m = 0.1 / 111.19493;
  auto const near = addPlace(list, place(4, "Mitte", {52.52 + 0.999 * kDegreesPer100m, 13.41}));
  ASSERT_FALSE(near);
  EXPECT_EQ(near.error(), "the place is already saved as Berlin");
  EXPECT_TRUE(addPlace(list, place(4, "Mitte", {52.52 + 1.001 * kDegreesPer100m, 13.41})));
  EXPECT_FALSE(addPlace(list, place(5, "Nowhere", {91, 0})));
  EXPECT_TRUE(addPlace(list, place(5, " \n", {1, 2})));
  EXPECT_EQ(list.places.back().name, "1.00°N 2.00°E");
  EXPECT_EQ(order(list), "12345");
}

struct MoveRow {
  int number;
  int position;
  std::string_view order;  // empty: refused
};

TEST(PlaceList, MovesPlaces) {
  for (MoveRow const& row : {MoveRow{1, 1, "123"},
                             {1, 2, "213"},
                             {1, 3, "231"},
                             {3, 1, "312"},
                             {3, 2, "132"},
                             {2, 0, ""},
                             {2, 4, ""},
                             {9, 1, ""}}) {
    PlaceList list = threePlaces();
    bool const moved = movePlace(list, id(row.number), row.position).has_value();
    EXPECT_EQ(moved, !row.order.empty());
    EXPECT_EQ(order(list), moved ? row.order : "123") << row.number << " to " << row.position;
  }
}

TEST(PlaceList, SelectsTheFirstThatRemains) {
  PlaceList list = threePlaces();
  EXPECT_EQ(list.selected, id(1)) << "the first added";
  ASSERT_TRUE(selectPlace(list, id(2)));
  ASSERT_TRUE(removePlace(list, id(3)));
  EXPECT_EQ(list.selected, id(2));
  ASSERT_TRUE(removePlace(list, id(2)));
  EXPECT_EQ(list.selected, id(1));
  ASSERT_TRUE(removePlace(list, id(1)));
  EXPECT_EQ(list.selected, std::nullopt);
  EXPECT_FALSE(removePlace(list, id(1)));
  EXPECT_FALSE(selectPlace(list, id(1)));
}

TEST(PlaceList, OffersTheCurrentLocationOnRequest) {
  PlaceList list = threePlaces();
  LocationFix const fix{{48.1, 11.5}, 1500, test::at("2026-11-21T09:20:00Z")};
  ASSERT_TRUE(selectCurrentLocation(list, fix));
  EXPECT_EQ(std::get<Place>(*resolvePlace("", list)).coordinate, fix.coordinate);
  ASSERT_TRUE(removePlace(list, id(1)));
  EXPECT_EQ(list.selected, kCurrentLocation);
  ASSERT_TRUE(removeCurrentLocation(list));
  EXPECT_EQ(list.selected, id(2));
  EXPECT_EQ(list.lastFix, std::nullopt);
}

struct FindRow {
  std::string_view text;
  int number;  // 0: none
};

TEST(PlaceList, FindsNamesWhateverCaseAndAccents) {
  PlaceList list = threePlaces();
  ASSERT_TRUE(addPlace(list, place(4, "Ber", {1, 1})));
  ASSERT_TRUE(addPlace(list, place(5, "東京", {35.69, 139.69})));
  for (FindRow const& row : {FindRow{"berlin", 1},
                             {"BERLIN ", 1},
                             {"lodz", 2},
                             {"ŁÓDŹ", 2},
                             {"lo", 2},
                             {"ber", 4},
                             {"berg", 3},
                             {"be", 1},
                             {"東", 5},
                             {"北京", 0},
                             {"erlin", 0},
                             {"", 0},
                             {"berliner", 0},
                             {"a0000000-0000-0000-0000-000000000003", 3},
                             {"a0000000-0000-0000-0000-000000000009", 0}}) {
    SavedPlace const* const found = list.find(row.text);
    EXPECT_EQ(found == nullptr ? 0 : found->id.bytes[15], row.number) << row.text;
  }
}

TEST(ResolvePlace, PrefersCoordinatesThenSavedPlacesThenASearch) {
  PlaceList list = threePlaces();
  ASSERT_TRUE(renamePlace(list, id(3), "12"));
  auto const coordinate = [&](std::string_view text) { return std::get<Place>(*resolvePlace(text, list)); };
  EXPECT_EQ(coordinate("1,2"), (Place{{1, 2}, "", "", ""}));
  EXPECT_EQ(coordinate("lodz").name, "Łódź");
  EXPECT_EQ(coordinate("lodz").country, "Germany");
  EXPECT_EQ(coordinate("12").coordinate, (Coordinate{60.39, 5.32})) << "a saved name may be a number";
  EXPECT_EQ(coordinate(" ").name, "Berlin");
  EXPECT_EQ(std::get<PlaceName>(*resolvePlace("Oslo", list)).name, "Oslo");
  EXPECT_TRUE(resolvePlace("91,0", list).error().isMistake);
  EXPECT_TRUE(resolvePlace("13", list).error().isMistake);
  EXPECT_FALSE(resolvePlace("", PlaceList{}).error().isMistake);
}

class PlacesTest : public testing::Test {
 protected:
  test::MemorySettingsStore store_{settingsRegistry()};
  Places places_{store_};
};

TEST_F(PlacesTest, KeepsTheWholeList) {
  PlaceList expected = threePlaces();
  ASSERT_TRUE(movePlace(expected, id(3), 1));
  ASSERT_TRUE(selectCurrentLocation(expected, {{48.1, 11.5}, 1500.5, test::at("2026-11-21T09:20:00.250Z")}));
  auto const changed = places_.change([&](PlaceList& list) -> PlaceResult {
    list = expected;
    return {};
  });
  ASSERT_TRUE(changed);
  EXPECT_EQ(*changed, expected);
  EXPECT_EQ(*places_.list(), expected);
  EXPECT_TRUE(store_.settings().settings.registry().find("selected") == nullptr);
}

TEST_F(PlacesTest, KeepsWhatIsChosenForAPlace) {
  Places places(store_);
  ASSERT_TRUE(places.change([](PlaceList& list) { return addPlace(list, place(1, "Hill", {1, 2})); }));
  for (std::optional<PlaceChoice> const choice :
       {std::optional(PlaceChoice::official), std::optional(PlaceChoice::everything),
        std::optional<PlaceChoice>{}}) {
    ASSERT_TRUE(places.change([&](PlaceList& list) { return chooseNotifications(list, id(1), choice); }));
    EXPECT_EQ(places.list()->places.front().notifications, choice);
  }
  EXPECT_FALSE(places.change([](PlaceList& list) { return chooseNotifications(list, id(7), {}); }));
}

TEST_F(PlacesTest, KeepsTheSourceOfWarningsThatIsChosenForAPlace) {
  Coordinate const berlin{52.52, 13.41};
  ASSERT_TRUE(places_.change([&](PlaceList& list) { return addPlace(list, place(1, "Berlin", berlin)); }));
  EXPECT_EQ(places_.list()->places.front().warningSource, std::nullopt);
  auto const choose = [&](std::string_view name) {
    return places_.change([&](PlaceList& list) { return chooseWarningSource(list, id(1), name); });
  };
  ASSERT_TRUE(choose("brightsky"));
  EXPECT_EQ(places_.list()->places.front().warningSource, "brightsky");
  EXPECT_EQ(chosenWarningSource(store_, berlin), "brightsky");
  EXPECT_EQ(chosenWarningSource(store_, {48.1, 11.5}), "") << "no saved place";
  auto const refused = choose("nws");
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().message,
            "'nws' has no official warnings for Berlin; choose from meteoalarm, brightsky, wmo, fpas, usual");
  EXPECT_EQ(chosenWarningSource(store_, berlin), "brightsky");
  for (char const* const usual : {"usual", ""}) {
    ASSERT_TRUE(choose("wmo"));
    ASSERT_TRUE(choose(usual));
    EXPECT_EQ(chosenWarningSource(store_, berlin), "") << usual;
  }
}

TEST_F(PlacesTest, TakesTheRowsOfRemovedPlacesAway) {
  ASSERT_TRUE(places_.change([](PlaceList& list) -> PlaceResult {
    list = threePlaces();
    return {};
  }));
  ASSERT_TRUE(places_.change([](PlaceList& list) { return removePlace(list, id(2)); }));
  EXPECT_EQ(order(*places_.list()), "13");
  EXPECT_EQ(store_.read(StoreArea::places)->size(), 3U) << "two places and the selection";
}

TEST_F(PlacesTest, LeavesTheListAloneWhenTheChangeIsRefused) {
  auto const refused = places_.change([](PlaceList& list) {
    EXPECT_TRUE(addPlace(list, place(1, "Berlin", {52.52, 13.41})));
    return removePlace(list, id(7));
  });
  ASSERT_FALSE(refused);
  EXPECT_EQ(refused.error().kind, StoreError::Kind::refused);
  EXPECT_TRUE(places_.list()->places.empty());
}

TEST_F(PlacesTest, PassesOverRowsThatItCannotRead) {
  StoreChanges rows{
      {"selected", id(9).text()}, {"later", std::string("x")}, {"currentLocation", std::string("{}")}};
  int number = 0;
  for (char const* const row : {R"({"position":1,"name":"Good","latitude":1,"longitude":2})", "{", "[]", "7",
                                R"({"position":1,"name":"Far","latitude":91,"longitude":2})",
                                R"({"name":"NoPosition","latitude":1})"}) {
    rows[id(++number).text()] = std::string(row);
  }
  rows[id(++number).text()] = std::int64_t{5};
  ASSERT_TRUE(store_.update(StoreArea::places, [&](SettingValues const&) { return rows; }));
  auto const list = places_.list();
  ASSERT_TRUE(list);
  EXPECT_EQ(order(*list), "1");
  EXPECT_EQ(list->selected, std::nullopt) << "a place that is not there";
  EXPECT_TRUE(list->offersCurrentLocation);
  EXPECT_EQ(list->lastFix, std::nullopt);
  ASSERT_TRUE(places_.change([](PlaceList& changed) { return selectPlace(changed, id(1)); }));
  EXPECT_EQ(store_.read(StoreArea::places)->size(), rows.size()) << "kept for a later version";
}

TEST(PlaceSearch, AsksTheGazetteerFirst) {
  test::FakeHttpClient http;
  ServiceDirectory const services({}, "http://127.0.0.1:1");
  PlaceSearch search(http, services);
  FoundPlace const berlin = search.search("berlin", "pt", false)->front();
  EXPECT_EQ(berlin.name, "Berlin");
  EXPECT_EQ(berlin.country, "Alemanha");
  EXPECT_EQ(berlin.timeZone, "Europe/Berlin");
  EXPECT_EQ(search.search("san", "en", false)->size(), 10U);
  EXPECT_TRUE(http.requests.empty());
  std::string const answer = R"({"results":[{"name":"Online","latitude":1,"longitude":2}]})";
  http.willAnswer(200, answer);
  http.willAnswer(200, answer);
  EXPECT_EQ(search.search("Kleinkleckersdorf", "en", false)->front().name, "Online");
  EXPECT_EQ(search.search("Berlin", "en", true)->front().name, "Online");
}

TEST(PlaceSearch, AsksOnlineForOtherSpellingsAndPostalCodes) {
  test::FakeHttpClient http;
  ServiceDirectory const services({}, "http://127.0.0.1:1");
  PlaceSearch search(http, services);
  http.willAnswer(200, "{}");
  http.willAnswer(200, "{}");
  http.willAnswer(200, R"({"results":[{"name":"Sankt Nirgendwo","latitude":1,"longitude":2}]})");
  EXPECT_EQ(search.search("St. Nirgendwo", "en", false)->front().name, "Sankt Nirgendwo");
  ASSERT_EQ(http.requests.size(), 3U);
  EXPECT_NE(http.requests[1].url.find("name=Saint%20Nirgendwo"), std::string::npos);
  EXPECT_NE(http.requests[2].url.find("name=Sankt%20Nirgendwo"), std::string::npos);
  http.willAnswer(200, R"({"results":[{"name":"Berlin","latitude":52.5,"longitude":13.4}]})");
  EXPECT_EQ(search.search("10115", "en", false)->front().name, "Berlin");
  EXPECT_NE(http.requests[3].url.find("name=10115"), std::string::npos);
}

TEST(PlaceSearch, AsksOnlineForATownWithItsPostalCode) {
  struct Row {
    std::vector<std::string_view> answers;
    std::vector<std::string_view> asked;
    std::string_view first;
  };
  constexpr std::string_view kMitte = R"({"results":[{"name":"Mitte","latitude":52.52,"longitude":13.4}]})";
  constexpr std::string_view kElsewhere = R"({"results":[{"name":"Nowhere","latitude":1,"longitude":2}]})";
  constexpr std::string_view kBerlin = R"({"results":[{"name":"Berlin","latitude":52.5,"longitude":13.4}]})";
  for (Row const& row : {Row{{"{}", kMitte}, {"10115%20Berlin", "10115"}, "Mitte"},
                         Row{{"{}", kElsewhere, kBerlin}, {"10115%20Berlin", "10115", "Berlin"}, "Berlin"},
                         Row{{"{}", "{}", kBerlin}, {"10115%20Berlin", "10115", "Berlin"}, "Berlin"}}) {
    test::FakeHttpClient http;
    ServiceDirectory const services({}, "http://127.0.0.1:1");
    PlaceSearch search(http, services);
    for (std::string_view const answer : row.answers) http.willAnswer(200, std::string(answer));
    auto const found = search.search("10115 Berlin", "en", true);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->front().name, row.first);
    ASSERT_EQ(http.requests.size(), row.asked.size());
    for (std::size_t i = 0; i < row.asked.size(); ++i) {
      EXPECT_THAT(http.requests[i].url, testing::HasSubstr("name=" + std::string(row.asked[i]) + "&"));
    }
  }
}

TEST(OfflineSearch, UnderstandsWhatPeopleType) {
  struct Row {
    std::string_view text, name, otherName, country;
  };
  for (Row const& row :
       {Row{"Berlin", "Berlin", "", "DE"}, Row{"Lisboa", "Lisbon", "Lisboa", "PT"},
        Row{"LISBOA, Portugal", "Lisbon", "Lisboa", "PT"}, Row{"münchen", "Munich", "München", "DE"},
        Row{"lissabo", "Lisbon", "Lissabon", "PT"}, Row{"monaco di bav", "Munich", "Monaco di Baviera", "DE"},
        Row{"nyc", "New York City", "NYC", "US"}, Row{"St. Moritz", "St. Moritz", "", "CH"},
        Row{"10115 Berlin", "Berlin", "", "DE"}, Row{"1000-205 Lisboa", "Lisbon", "Lisboa", "PT"},
        Row{"London SW1A 1AA", "London", "", "GB"}, Row{"38.72, -9.14", "Lisbon", "", "PT"},
        Row{"40,-40", "40.00°N 40.00°W", "", ""}}) {
    auto const found = searchOffline(row.text, "en");
    ASSERT_FALSE(found.empty()) << row.text;
    EXPECT_EQ(found.front().name, row.name);
    EXPECT_EQ(found.front().otherName, row.otherName) << row.text;
    EXPECT_EQ(found.front().countryCode, row.country) << row.text;
    EXPECT_FALSE(found.front().timeZone.empty()) << row.text;
  }
  auto const here = searchOffline("38.72, -9.14", "en");
  EXPECT_EQ(here.size(), 1U);
  EXPECT_EQ(here.front().coordinate, (Coordinate{38.72, -9.14})) << "the one that was typed";
  EXPECT_EQ(foundName(searchOffline("Lisboa", "en").front()), "Lisboa (Lisbon)");
  EXPECT_EQ(foundName(searchOffline("Lisbon", "en").front()), "Lisbon");
  EXPECT_TRUE(searchOffline("10115", "en").empty()) << "only the service knows codes";
  EXPECT_EQ(similarPlaces("10115 Berln", "en").front().name, "Berlin");
}

TEST(PostalTown, IsATownBesideItsCode) {
  struct Row {
    std::string_view text, code, town;
  };
  for (Row const& row :
       {Row{"10115 Berlin", "10115", "Berlin"}, Row{"Berlin 10115", "10115", "Berlin"},
        Row{"10115, Berlin", "10115", "Berlin"}, Row{"D-10115 Berlin", "D-10115", "Berlin"},
        Row{"1012 AB Amsterdam", "1012 AB", "Amsterdam"}, Row{"Amsterdam 1012 ab", "1012 ab", "Amsterdam"},
        Row{"London SW1A 1AA", "SW1A 1AA", "London"}, Row{"110 00 Praha", "110 00", "Praha"},
        Row{"Portland, OR 97201", "97201", "Portland, OR"}, Row{"01000 St. Gallen", "01000", "St. Gallen"}}) {
    EXPECT_EQ(postalTownIn(row.text), (PostalTown{std::string(row.code), std::string(row.town)})) << row.text;
  }
  for (std::string_view const none : {"", " , ", "10115", "Berlin", "Route 66", "1012 AB", "Área 51", ",,"}) {
    EXPECT_EQ(postalTownIn(none), std::nullopt) << none;
  }
}

TEST(PlaceSearch, SuggestsWhatMayHaveBeenMeant) {
  EXPECT_EQ(suggestionFor("zurch", "en"), "did you mean Zürich, Zurich, Switzerland?");
  std::string const springfield = suggestionFor("Sprngfield", "en");
  EXPECT_NE(springfield.find("Springfield, Illinois, United States"), std::string::npos) << springfield;
  EXPECT_EQ(suggestionFor("nosuchplacexyz", "en"), "");
  APIError const nothing = APIError::of(APIError::Case::noResults);
  EXPECT_EQ(notFoundSentence("nosuchplacexyz", nothing, "en"), "no place called 'nosuchplacexyz' was found");
  EXPECT_EQ(notFoundSentence("zurch", nothing, "en"),
            "no place called 'zurch' was found; did you mean Zürich, Zurich, Switzerland?");
}

TEST(DescribedPlace, TakesTheNameOfTheCityInWhichItLies) {
  Place const berlin = describedPlace({52.52, 13.41}, "en");
  EXPECT_EQ(berlin.name, "Berlin");
  EXPECT_EQ(berlin.country, "Germany");
  Place const sea = describedPlace({40, -40}, "en");
  EXPECT_EQ(sea, (Place{{40, -40}, "", "", ""}));
  Place const desert = describedPlace({23, 10}, "en");
  EXPECT_EQ(desert.name, "");
  EXPECT_EQ(desert.country, "Algeria");
  EXPECT_EQ(offlineTimeZone({27.7, 85.3}), "Asia/Kathmandu");
}

TEST(Places, AreCoordinatesOrNames) {
  auto const coordinate = [](std::string_view text) { return std::get<Coordinate>(*parsePlace(text)); };
  EXPECT_EQ(coordinate("52.52,13.41"), (Coordinate{52.52, 13.41}));
  EXPECT_EQ(coordinate(" -90 , +180 "), (Coordinate{-90, 180}));
  for (char const* const name : {"Berlin", "Łódź", "東京", "Washington, DC", "St. John's", "10115 Berlin",
                                 "10115", "110 00", "1000-205", "SW1A 1AA", "Nan", "Nan, Thailand",
                                 "Stuttgart, 70173", "10115, Berlin", "100 Mile House, BC"}) {
    EXPECT_EQ(std::get<PlaceName>(*parsePlace(name)).name, name);
  }
}

TEST(Places, RefuseWhatIsNeither) {
  struct Row {
    std::string_view text;
    std::string_view problem;
  };
  for (Row const& row :
       {Row{"90.01,0", "latitude"},    Row{"-91,0", "latitude"},   Row{"0,180.01", "longitude"},
        Row{"0,-181", "longitude"},    Row{"", "neither"},         Row{" ", "neither"},
        Row{"52.52", "neither"},       Row{"52.52,", "neither"},   Row{",", "neither"},
        Row{"1,2,3", "neither"},       Row{"52.5,abc", "neither"}, Row{"12,abc", "neither"},
        Row{"12", "neither"},          Row{"1 2 345", "neither"},  Row{"-10115", "neither"},
        Row{"12345678901", "neither"}, Row{"--", "neither"},       Row{"1e999,0", "neither"},
        Row{"nan,nan", "neither"},     Row{"13,NaN", "neither"},   Row{"-inf,+Infinity", "neither"},
        Row{"52.5N,13.4E", "neither"}}) {
    auto const place = parsePlace(row.text);
    ASSERT_FALSE(place) << row.text;
    EXPECT_NE(place.error().find(row.problem), std::string::npos) << place.error();
    EXPECT_NE(place.error().find("'"), std::string::npos);
  }
}

}  // namespace
}  // namespace nimbara
