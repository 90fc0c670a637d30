#include "gazetteer/gazetteer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

namespace nimbara {
namespace {

std::string labelOf(City const& city) {
  return std::string(city.name) + ", " + std::string(city.region) + ", " + std::string(city.countryCode);
}

std::string firstOf(std::string_view text) {
  auto const cities = searchCities(text, 5);
  return cities.empty() ? "" : labelOf(cities.front());
}

struct Row {
  std::string_view text;
  std::string_view first;
};

TEST(CitySearch, PutsTheCityFirstThatPeopleMean) {
  for (Row const& row : {Row{"Berlin", "Berlin, State of Berlin, DE"},
                         Row{"berl", "Berlin, State of Berlin, DE"},
                         Row{"  BERLIN  ", "Berlin, State of Berlin, DE"},
                         Row{"sao paulo", "São Paulo, São Paulo, BR"},
                         Row{"São Paulo", "São Paulo, São Paulo, BR"},
                         Row{"são pau", "São Paulo, São Paulo, BR"},
                         Row{"new york", "New York City, New York, US"},
                         Row{"york", "York, England, GB"},
                         Row{"Frankfurt", "Frankfurt am Main, Hesse, DE"},
                         Row{"oder", "Frankfurt (Oder), Brandenburg, DE"},
                         Row{"lodz", "Łódź, Łódź Voivodeship, PL"},
                         Row{"st louis", "St. Louis, Missouri, US"},
                         Row{"xian", "Xi’an, Shaanxi, CN"},
                         Row{"Washington DC", "Washington, District of Columbia, US"},
                         Row{"vaduz", "Vaduz, Vaduz, LI"},
                         Row{"Porto", "Porto, Porto, PT"},
                         Row{"Roma", "Rome, Lazio, IT"},
                         Row{"Zaragoza", "Zaragoza, Aragon, ES"},
                         Row{"Cádiz", "Cadiz, Andalusia, ES"},
                         Row{"CÁDIZ", "Cadiz, Andalusia, ES"},
                         Row{"Ca\u0301diz", "Cadiz, Andalusia, ES"},
                         Row{"Cadiz", "Cadiz, Western Visayas, PH"},
                         Row{"Sion", "Sion, Valais, CH"},
                         Row{"Sitten", "Sion, Valais, CH"},
                         Row{"Monaco", "Monaco, Municipality of Monaco, MC"},
                         Row{"Halle", "Halle (Saale), Saxony-Anhalt, DE"},
                         Row{"Halle, BE", "Halle, Flanders, BE"},
                         Row{"Dhāka", "Dhaka, Dhaka Division, BD"},
                         Row{"Mykolaiv", "Mykolayiv, Mykolaiv, UA"},
                         Row{"Milwaukie", "Milwaukie, Oregon, US"},
                         Row{"San Luis", "San Luis, San Luis, AR"},
                         Row{"Salisbury", "Salisbury, England, GB"}}) {
    EXPECT_EQ(firstOf(row.text), row.first) << row.text;
  }
}

TEST(CitySearch, KnowsNamesInOtherLanguages) {
  for (auto const& [text, name] :
       std::initializer_list<std::pair<std::string_view, std::string_view>>{{"München", "Munich"},
                                                                            {"Muenchen", "Munich"},
                                                                            {"Monaco di Baviera", "Munich"},
                                                                            {"Cologne", "Köln"},
                                                                            {"Colonia", "Köln"},
                                                                            {"Wien", "Vienna"},
                                                                            {"Lisboa", "Lisbon"},
                                                                            {"Lisbonne", "Lisbon"},
                                                                            {"東京", "Tokyo"},
                                                                            {"北京", "Beijing"},
                                                                            {"Москва", "Moscow"},
                                                                            {"Αθήνα", "Athens"},
                                                                            {"서울", "Seoul"},
                                                                            {"القاهرة", "Cairo"},
                                                                            {"Bozen", "Bolzano"}}) {
    auto const found = searchCities(text, 10);
    EXPECT_THAT(found, testing::Contains(testing::Field(&City::name, name))) << text;
  }
}

TEST(CitySearch, SaysByWhichOtherNameItFound) {
  struct Named {
    std::string_view text, name, otherName;
  };
  for (Named const& row :
       {Named{"Lisboa", "Lisbon", "lisboa"}, Named{"lisbon", "Lisbon", ""}, Named{"lisbo", "Lisbon", ""},
        Named{"Muenchen", "Munich", "muenchen"}, Named{"big app", "New York City", "big apple"},
        Named{"new york", "New York City", ""}, Named{"Frankfurt", "Frankfurt am Main", ""},
        Named{"Halle", "Halle (Saale)", ""}, Named{"Köln", "Köln", ""}}) {
    auto const found = searchCities(row.text, 5);
    ASSERT_FALSE(found.empty()) << row.text;
    EXPECT_EQ(found.front().name, row.name);
    EXPECT_EQ(found.front().otherName, row.otherName) << row.text;
  }
}

TEST(CitySearch, KnowsWhatPeopleAbbreviate) {
  struct Named {
    std::string_view text, name, otherName;
  };
  for (Named const& row : {Named{"NYC", "New York City", "NYC"}, Named{"nyc, us", "New York City", "NYC"},
                           Named{"ny", "New York City", "NY"}, Named{"L.A.", "Los Angeles", "LA"},
                           Named{"sf", "San Francisco", "SF"}, Named{"DC", "Washington", "DC"},
                           Named{"cdmx", "Mexico City", "CDMX"}, Named{"rio", "Rio de Janeiro", "Rio"},
                           Named{"BCN", "Barcelona", "BCN"}, Named{"FFM", "Frankfurt am Main", "FFM"},
                           Named{"cph", "Copenhagen", "CPH"}, Named{"spb", "Saint Petersburg", "SPb"},
                           Named{"KL", "Kuala Lumpur", "KL"}, Named{"HK", "Hong Kong", "HK"},
                           Named{"hcmc", "Ho Chi Minh City", "HCMC"}}) {
    auto const found = searchCities(row.text, 5);
    ASSERT_FALSE(found.empty()) << row.text;
    EXPECT_EQ(found.front().name, row.name);
    EXPECT_EQ(found.front().otherName, row.otherName);
  }
  EXPECT_NE(firstOf("LA, Nigeria"), "Los Angeles, California, US");
  EXPECT_THAT(searchCities("la", 10), testing::Contains(testing::Field(&City::name, "Lagos")));
}

TEST(CitySearch, IsNarrowedByCountryAndRegion) {
  for (Row const& row :
       {Row{"Paris", "Paris, Île-de-France, FR"}, Row{"Paris, US", "Paris, Texas, US"},
        Row{"Paris,us", "Paris, Texas, US"}, Row{"Paris, United States", "Paris, Texas, US"},
        Row{"Paris, Estados Unidos", "Paris, Texas, US"}, Row{"Paris, tex", "Paris, Texas, US"},
        Row{"Paris TX", "Paris, Texas, US"}, Row{"paris texas", "Paris, Texas, US"},
        Row{"Paris, Texas, USA", "Paris, Texas, US"}, Row{"Paris, , US", "Paris, Texas, US"},
        Row{"Paris,", "Paris, Île-de-France, FR"}, Row{"Paris, France", "Paris, Île-de-France, FR"},
        Row{"Paris, Texas, France", ""}, Row{"Paris, Narnia", ""},
        Row{"Springfield, Illinois", "Springfield, Illinois, US"},
        Row{"San Jose Costa Rica", "San José, San José, CR"}, Row{"london canada", "London, Ontario, CA"},
        Row{"Valencia, VE", "Valencia, Carabobo, VE"}}) {
    EXPECT_EQ(firstOf(row.text), row.first) << row.text;
  }
  auto const springfields = searchCities("springfield, us", 50);
  EXPECT_GE(springfields.size(), 5U);
  EXPECT_THAT(springfields, testing::Each(testing::Field(&City::countryCode, "US")));
}

TEST(CitySearch, FindsNothingWhereNothingIsNamed) {
  for (std::string const& text :
       {std::string(), std::string("   "), std::string("\t\n"), std::string(","), std::string(", US"),
        std::string("-"), std::string("nosuchplacexyz"), std::string("penhagen"), std::string("\xFF\xFE\x80"),
        std::string(100'000, 'a'), std::string("berlin\n\nnew york"), std::string("berlin,,,,,")}) {
    EXPECT_TRUE(searchCities(text, 10).empty()) << text.substr(0, 40);
  }
  EXPECT_TRUE(searchCities("berlin", 0).empty());
}

TEST(CitySearch, GivesNoMoreThanAskedAndNoCityTwice) {
  for (char const* const text : {"a", "s", "san", "new", "san jose", "paris", "berlin"}) {
    for (std::size_t const count : {1U, 7U, 100U}) {
      auto const cities = searchCities(text, count);
      std::set<std::pair<double, double>> places;
      for (City const& city : cities) places.emplace(city.coordinate.latitude, city.coordinate.longitude);
      EXPECT_LE(cities.size(), count);
      EXPECT_EQ(places.size(), cities.size()) << text << " " << count;
    }
  }
  EXPECT_EQ(searchCities("a", 100).size(), 100U);
}

TEST(CitySearch, PutsExactNamesBeforeLargerCities) {
  auto const cities = searchCities("bath", 10);
  ASSERT_FALSE(cities.empty());
  EXPECT_EQ(cities[0].name, "Bath");
  auto const isLarger = [&](City const& city) { return city.population > cities[0].population; };
  EXPECT_TRUE(std::ranges::any_of(cities, isLarger));
}

std::vector<std::string> namesOf(std::vector<City> const& cities) {
  std::vector<std::string> names;
  for (City const& city : cities) names.emplace_back(city.name);
  return names;
}

TEST(CitySearch, PutsCapitalsAndBeginningsBeforePartsOfLongerNames) {
  auto const paris = namesOf(searchCities("Paris", 5));
  EXPECT_THAT(paris, testing::Not(testing::Contains("New Orleans")));
  auto const news = namesOf(searchCities("New", 5));
  ASSERT_GE(news.size(), 2U);
  EXPECT_EQ(news[0], "New Delhi");
  EXPECT_EQ(news[1], "New York City");
  EXPECT_THAT(news, testing::Each(testing::StartsWith("New")));
}

TEST(CitySearch, KnowsSmallTownsThatManyLanguagesName) {
  for (Row const& row :
       {Row{"St. Moritz", "St. Moritz, Grisons, CH"}, Row{"st moritz", "St. Moritz, Grisons, CH"},
        Row{"Sankt Moritz", "St. Moritz, Grisons, CH"}, Row{"Zermatt", "Zermatt, Valais, CH"},
        Row{"St. Petersburg, RU", "Saint Petersburg, St.-Petersburg, RU"}}) {
    EXPECT_EQ(firstOf(row.text), row.first) << row.text;
  }
}

TEST(SimilarCities, AreWhatAMisspelledNameMayMean) {
  for (auto const& [text, name] : std::initializer_list<std::pair<std::string_view, std::string_view>>{
           {"Sprngfield", "Springfield"},
           {"zurch", "Zürich"},
           {"new yrok", "New York City"},
           {"Lodnon", "London"},
           {"Pariss", "Paris"},
           {"Copenhaggen", "Copenhagen"},
           {"Sprngfield, Illinois", "Springfield"},
           {"san fransi", "San Francisco"},
           {"copnhag", "Copenhagen"},
           {"Lizbo", "Lisbon"}}) {
    auto const similar = similarCities(text, 5);
    ASSERT_FALSE(similar.empty()) << text;
    EXPECT_EQ(similar.front().name, name) << text;
  }
  EXPECT_EQ(labelOf(similarCities("Sprngfield, Illinois", 5).front()), "Springfield, Illinois, US");
  for (std::string const& text : {std::string("nosuchplacexyz"), std::string("qx"), std::string("qxzw"),
                                  std::string(), std::string("\xFF\xFE\x80"), std::string(100'000, 'a'),
                                  std::string(", US"), std::string("Lodnon, Narnia")}) {
    EXPECT_TRUE(similarCities(text, 5).empty()) << text.substr(0, 40);
  }
}

TEST(SimilarCities, SayByWhichOtherNameTheyAreMeant) {
  auto const munich = similarCities("Muenchn", 1);
  ASSERT_EQ(munich.size(), 1U);
  EXPECT_EQ(munich[0].name, "Munich");
  EXPECT_EQ(munich[0].otherName, "muenchen");
  EXPECT_EQ(similarCities("Lodnon", 1).front().otherName, "");
  EXPECT_EQ(similarCities("new yrok", 1).front().otherName, "") << "the beginning of its own";
}

TEST(SimilarCities, HaveOneEditUpToFiveLettersAndTwoBeyond) {
  auto const finds = [](std::string_view text, std::string_view name) {
    auto const found = similarCities(text, 20);
    return std::ranges::find(found, name, &City::name) != found.end();
  };
  EXPECT_FALSE(finds("Osl", "Oslo")) << "three letters";
  EXPECT_TRUE(finds("Osol", "Oslo"));
  EXPECT_FALSE(finds("Oxyo", "Oslo")) << "two edits of four letters";
  EXPECT_TRUE(finds("Sprqngfxeld", "Springfield"));
  EXPECT_FALSE(finds("Sqrqngfxeld", "Springfield")) << "three";
}

TEST(CitySearch, TakesAnyBytes) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> length(0, 40);
  std::uniform_int_distribution<int> byte(0, 255);
  constexpr std::string_view kLikely = " ,.'-aeinorst\n";
  for (int round = 0; round < 500; ++round) {
    std::string text(static_cast<std::size_t>(length(random)), '\0');
    for (char& c : text) {
      auto const drawn = static_cast<std::size_t>(byte(random));
      c = round % 2 == 0 ? static_cast<char>(drawn) : kLikely[drawn % kLikely.size()];
    }
    for (City const& city : searchCities(text, 5)) EXPECT_FALSE(city.name.empty());
    if (round % 10 != 0) continue;
    for (City const& city : similarCities(text, 5)) EXPECT_FALSE(city.name.empty());
  }
}

}  // namespace
}  // namespace nimbara
