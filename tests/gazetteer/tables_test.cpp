#include "gazetteer/tables.h"

#include "base/time/calendar.h"
#include "gazetteer/country_outlines.h"
#include "gazetteer/zone_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace nimbara::gazetteer {
namespace {

bool isUpper(char c) {
  return c >= 'A' && c <= 'Z';
}

TEST(Tables, HoldSoundCitiesInOrderOfPopulation) {
  auto const cities = allCities();
  EXPECT_GT(cities.size(), 25'000U);
  EXPECT_TRUE(std::ranges::is_sorted(cities, std::greater(), &City::population));
  std::size_t small = 0;
  for (City const& city : cities) {
    EXPECT_FALSE(city.name.empty());
    EXPECT_TRUE(isValid(city.coordinate)) << city.name;
    EXPECT_TRUE(city.countryCode.size() == 2 && std::ranges::all_of(city.countryCode, isUpper)) << city.name;
    small += city.population < 15'000 ? 1 : 0;
  }
  EXPECT_GT(small, 5'000U) << "towns that many languages name";
  EXPECT_LT(small, 12'000U);
}

TEST(Tables, KnowTheCapitals) {
  auto const cities = allCities();
  std::size_t capitals = 0;
  for (std::size_t i = 0; i < cities.size(); ++i) {
    capitals += isCapital(i) ? 1 : 0;
    if (cities[i].name == "Vaduz" || cities[i].name == "Tokyo") EXPECT_TRUE(isCapital(i)) << cities[i].name;
    if (cities[i].name == "Mumbai") EXPECT_FALSE(isCapital(i));
  }
  EXPECT_GT(capitals, 200U);
  EXPECT_LT(capitals, 260U);
}

TEST(Tables, NameOnlyZonesThatTheCalendarKnows) {
  Table<std::uint32_t> const zones(Section::zones);
  ASSERT_GT(zones.size(), 400U);
  EXPECT_EQ(zoneName(kOpenSea), "");
  for (std::size_t zone = 1; zone < zones.size(); ++zone) {
    EXPECT_TRUE(Calendar::forZone(textAt(zones[zone]))) << textAt(zones[zone]);
  }
}

/// Two sources tell the country and the zone of each city: its own record and the outlines.
TEST(Tables, AgreeWithEachOther) {
  auto const now = *parseIso8601("2026-01-15T12:00:00Z");
  std::map<std::string_view, std::chrono::seconds> offsets;
  auto const offsetOf = [&](std::string_view zone) {
    auto const [entry, isNew] = offsets.try_emplace(zone);
    if (isNew) entry->second = Calendar::forZone(zone)->offset(now);
    return entry->second;
  };
  std::size_t otherCountry = 0;
  std::size_t otherClock = 0;
  auto const cities = allCities();
  for (City const& city : cities) {
    otherCountry += describePlace(city.coordinate).countryCode == city.countryCode ? 0 : 1;
    otherClock += offsetOf(timeZoneAt(city.coordinate)) == offsetOf(city.timeZone) ? 0 : 1;
  }
  EXPECT_LT(otherCountry * 500, cities.size()) << otherCountry;
  EXPECT_LT(otherClock * 500, cities.size()) << otherClock;
}

TEST(Tables, FindEveryCityUnderItsOwnName) {
  auto const cities = allCities();
  for (std::size_t i = 0; i < cities.size(); i += 97) {
    City const& city = cities[i];
    auto const found = searchCities(std::string(city.name) + "," + std::string(city.countryCode), 100);
    EXPECT_TRUE(std::ranges::find(found, city.coordinate, &City::coordinate) != found.end()) << city.name;
  }
}

TEST(Tables, FindEveryCityAsTheNearestToItself) {
  auto const cities = allCities();
  std::set<std::size_t> inTree;
  Table<std::uint16_t> const tree(Section::cityTree);
  for (std::size_t i = 0; i < tree.size(); ++i) inTree.insert(tree[i]);
  EXPECT_EQ(inTree.size(), tree.size());
  for (std::size_t const number : inTree) {
    if (number % 23 != 0) continue;
    EXPECT_LT(nearestCity(cities[number].coordinate)->km, 0.01) << cities[number].name;
  }
}

TEST(Tables, FindTheSameNearestCityAsAComparisonOfAll) {
  auto const cities = allCities();
  Table<std::uint16_t> const tree(Section::cityTree);
  for (double latitude = -89.5; latitude < 90; latitude += 17.9) {
    for (double longitude = -180; longitude <= 180; longitude += 36) {
      Coordinate const at{latitude, longitude};
      double least = 1e9;
      for (std::size_t i = 0; i < tree.size(); ++i)
        least = std::min(least, haversineKm(at, cities[tree[i]].coordinate));
      EXPECT_NEAR(nearestCity(at)->km, least, 0.01) << formatCoordinate(at);
    }
  }
}

TEST(Tables, CoverEveryRowOfTheZoneMapFromWestToEast) {
  Table<std::uint32_t> const rows(Section::zoneRows);
  Table<ZoneRun> const runs(Section::zoneRuns);
  ASSERT_EQ(rows.size(), kZoneRows + 1U);
  ASSERT_EQ(rows[kZoneRows], runs.size());
  std::size_t const zones = Table<std::uint32_t>(Section::zones).size();
  for (std::size_t row = 0; row < kZoneRows; ++row) {
    ASSERT_LT(rows[row], rows[row + 1]);
    ASSERT_EQ(firstColumnOf(runs[rows[row]]), 0U);
    for (std::uint32_t i = rows[row]; i < rows[row + 1]; ++i) {
      ASSERT_LT(zoneOf(runs[i]), zones);
      if (i + 1 < rows[row + 1]) {
        ASSERT_LT(firstColumnOf(runs[i]), firstColumnOf(runs[i + 1]));
      }
    }
  }
}

}  // namespace
}  // namespace nimbara::gazetteer
