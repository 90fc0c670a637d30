#include "base/time/calendar.h"
#include "gazetteer/gazetteer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

namespace nimbara {
namespace {

struct Row {
  std::string_view what;
  Coordinate at;
  std::string_view country;
  std::string_view zone;
};

TEST(PlaceFacts, TellCountryAndZoneEverywhere) {
  for (Row const& row : {
           Row{"Berlin", {52.52, 13.41}, "DE", "Europe/Berlin"},
           Row{"Kaliningrad", {54.7, 20.5}, "RU", "Europe/Kaliningrad"},
           Row{"Lesotho, in South Africa", {-29.5, 28.2}, "LS", "Africa/Maseru"},
           Row{"Vatican", {41.9029, 12.4534}, "VA", "Europe/Vatican"},
           Row{"Rome beside it", {41.9029, 12.47}, "IT", "Europe/Rome"},
           Row{"San Marino", {43.936, 12.447}, "SM", "Europe/San_Marino"},
           Row{"Monaco", {43.7347, 7.4206}, "MC", "Europe/Monaco"},
           Row{"Melilla", {35.29, -2.94}, "ES", "Africa/Ceuta"},
           Row{"Gran Canaria", {28.1, -15.43}, "ES", "Atlantic/Canary"},
           Row{"French Guiana", {4.93, -52.33}, "GF", "America/Cayenne"},
           Row{"Longyearbyen", {78.22, 15.65}, "SJ", "Arctic/Longyearbyen"},
           Row{"Pristina", {42.66, 21.16}, "XK", "Europe/Belgrade"},
           Row{"Detroit", {42.331, -83.046}, "US", "America/Detroit"},
           Row{"Windsor", {42.30, -83.02}, "CA", "America/Toronto"},
           Row{"south of the 49th parallel", {48.99, -122.75}, "US", "America/Los_Angeles"},
           Row{"north of it", {49.01, -122.75}, "CA", "America/Vancouver"},
           Row{"El Paso", {31.76, -106.49}, "US", "America/Denver"},
           Row{"Arizona", {33.45, -112.07}, "US", "America/Phoenix"},
           Row{"Navajo Nation", {36.73, -110.25}, "US", "America/Denver"},
           Row{"Hopi within it", {35.9, -110.6}, "US", "America/Phoenix"},
           Row{"Indianapolis", {39.77, -86.16}, "US", "America/Indiana/Indianapolis"},
           Row{"Gary", {41.59, -87.35}, "US", "America/Chicago"},
           Row{"Tell City", {37.95, -86.77}, "US", "America/Indiana/Tell_City"},
           Row{"Lord Howe", {-31.55, 159.08}, "AU", "Australia/Lord_Howe"},
           Row{"Eucla", {-31.68, 128.88}, "AU", "Australia/Eucla"},
           Row{"Broken Hill", {-31.96, 141.45}, "AU", "Australia/Broken_Hill"},
           Row{"Kathmandu", {27.7, 85.3}, "NP", "Asia/Kathmandu"},
           Row{"Chatham Islands", {-43.95, -176.55}, "NZ", "Pacific/Chatham"},
           Row{"Urumqi, by its official clock", {43.82, 87.6}, "CN", "Asia/Shanghai"},
           Row{"Taveuni, on the 180th meridian", {-16.85, 179.97}, "FJ", "Pacific/Fiji"},
           Row{"Taveuni, beyond it", {-16.85, -179.97}, "FJ", "Pacific/Fiji"},
           Row{"Kiritimati", {1.87, -157.4}, "KI", "Pacific/Kiritimati"},
           Row{"Easter Island", {-27.15, -109.43}, "CL", "Pacific/Easter"},
           Row{"Simferopol", {44.95, 34.1}, "UA", "Europe/Simferopol"},
           Row{"McMurdo", {-77.85, 166.67}, "AQ", "Antarctica/McMurdo"},
       }) {
    auto const facts = describePlace(row.at);
    EXPECT_EQ(facts.countryCode, row.country) << row.what;
    EXPECT_EQ(facts.timeZone, row.zone) << row.what;
    EXPECT_EQ(timeZoneAt(row.at), row.zone) << row.what;
  }
}

TEST(PlaceFacts, GiveTheSeaItsNauticalZone) {
  for (Row const& row :
       {Row{"Gulf of Guinea", {0, 0}, "", "Etc/GMT"}, Row{"east of 7.5", {-50, 7.51}, "", "Etc/GMT-1"},
        Row{"west of 7.5", {-50, 7.49}, "", "Etc/GMT"}, Row{"Atlantic", {40, -40}, "", "Etc/GMT+3"},
        Row{"180 E", {0, 180}, "", "Etc/GMT-12"}, Row{"180 W", {0, -180}, "", "Etc/GMT+12"},
        Row{"North Pole", {90, 0}, "", "Etc/GMT"}, Row{"North Pole", {90, 100}, "", "Etc/GMT-7"},
        Row{"within the box around Fiji", {-13, 175}, "", "Etc/GMT-12"}}) {
    auto const facts = describePlace(row.at);
    EXPECT_EQ(facts.countryCode, row.country) << row.what;
    EXPECT_EQ(facts.timeZone, row.zone) << row.what;
    EXPECT_TRUE(facts.regionNames.empty()) << row.what;
    EXPECT_TRUE(facts.nearest) << row.what;
  }
}

TEST(PlaceFacts, KeepTheCountryOffTheCoast) {
  for (Row const& row : {Row{"2 km off A Coruña", {43.41, -8.41}, "ES", "Europe/Madrid"},
                         Row{"2 km off Brighton", {50.80, -0.14}, "GB", "Europe/London"},
                         Row{"5 km off Copacabana", {-23.02, -43.17}, "BR", "America/Sao_Paulo"},
                         Row{"5 km off Chennai", {13.08, 80.34}, "IN", "Asia/Kolkata"}}) {
    auto const facts = describePlace(row.at);
    EXPECT_EQ(facts.countryCode, row.country) << row.what;
    EXPECT_EQ(facts.timeZone, row.zone) << row.what;
  }
}

TEST(PlaceFacts, NameRegionsFromDistrictToState) {
  EXPECT_THAT(describePlace({37.69, -97.34}).regionNames, testing::ElementsAre("Sedgwick County", "Kansas"));
  EXPECT_THAT(describePlace({38.7, -98.9}).regionNames, testing::ElementsAre("Kansas"))
      << "far from any city";
  EXPECT_THAT(describePlace({43.0, -107.5}).regionNames, testing::ElementsAre("Wyoming")) << "no city at all";
  EXPECT_THAT(describePlace({52.52, 13.41}).regionNames, testing::ElementsAre("State of Berlin"));
  EXPECT_THAT(describePlace({-23.55, -46.63}).regionNames, testing::Contains("São Paulo"));
  EXPECT_THAT(describePlace({-85, 60}).regionNames, testing::IsEmpty());
}

TEST(PlaceFacts, AreEmptyForWhatIsNoCoordinate) {
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (Coordinate const at : {Coordinate{kNan, 0}, Coordinate{0, kNan}, Coordinate{kInfinity, 0},
                              Coordinate{0, -kInfinity}, Coordinate{90.001, 0}, Coordinate{0, -180.001}}) {
    auto const facts = describePlace(at);
    EXPECT_EQ(facts.countryCode, "");
    EXPECT_EQ(facts.timeZone, "");
    EXPECT_EQ(timeZoneAt(at), "");
    EXPECT_FALSE(facts.nearest);
    EXPECT_FALSE(nearestCity(at));
  }
}

TEST(PlaceFacts, HaveAKnownZoneAndACityForEveryCoordinate) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> latitude(-90, 90);
  std::uniform_real_distribution<double> longitude(-180, 180);
  for (int round = 0; round < 2000; ++round) {
    Coordinate const at{latitude(random), longitude(random)};
    auto const facts = describePlace(at);
    EXPECT_TRUE(Calendar::forZone(facts.timeZone)) << formatCoordinate(at) << facts.timeZone;
    EXPECT_TRUE(facts.countryCode.empty() || facts.countryCode.size() == 2);
    ASSERT_TRUE(facts.nearest);
    EXPECT_NEAR(facts.nearest->km, haversineKm(at, facts.nearest->city.coordinate), 1e-9);
  }
}

TEST(NearestCity, LooksAcrossThe180thMeridianAndThePole) {
  EXPECT_EQ(nearestCity({52.52, 13.41})->city.name, "Berlin");
  EXPECT_LT(nearestCity({52.52, 13.41})->km, 1);
  EXPECT_EQ(nearestCity({-21.1, 179.9})->city.name, nearestCity({-21.1, -179.9})->city.name);
  EXPECT_EQ(nearestCity({90, 0})->city.name, nearestCity({90, 137})->city.name);
}

}  // namespace
}  // namespace nimbara
