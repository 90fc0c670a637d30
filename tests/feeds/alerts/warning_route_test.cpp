#include "feeds/alerts/routing/warning_route.h"

#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/routing/source_rest.h"
#include "feeds/alerts/routing/us_waters.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using Kind = ServiceFailure::Kind;
using std::chrono::minutes;

std::string list(std::vector<std::string_view> const& names) {
  return namesOf(names);
}

struct RouteRow {
  char const* name;
  Coordinate place;
  char const* route;
};

void PrintTo(RouteRow const& row, std::ostream* out) {
  *out << row.name;
}

constexpr char kWorld[] = "wmo, fpas";
constexpr char kNorwegian[] = "metalerts, wmo, fpas";

struct Routes : testing::TestWithParam<RouteRow> {};

TEST_P(Routes, LeadToWhoWarnsThere) {
  EXPECT_EQ(list(warningRoute(govAlertPlace(GetParam().place))), GetParam().route)
      << govAlertPlace(GetParam().place).countryCode;
}

INSTANTIATE_TEST_SUITE_P(
    World, Routes,
    testing::Values(
        RouteRow{"Denver", {39.74, -104.99}, "nws"}, RouteRow{"Anchorage", {61.22, -149.90}, "nws"},
        RouteRow{"Honolulu", {21.31, -157.86}, "nws"}, RouteRow{"SanJuan", {18.47, -66.11}, "nws"},
        RouteRow{"Guam", {13.47, 144.75}, "nws"}, RouteRow{"PagoPago", {-14.28, -170.70}, "nws"},
        RouteRow{"SaintThomas", {18.34, -64.93}, "nws"}, RouteRow{"Palau", {7.37, 134.53}, "nws"},
        RouteRow{"BeaufortSea", {71.0, -150.0}, "nws"}, RouteRow{"BeringSea", {57.0, -172.5}, "nws"},
        RouteRow{"RussianBeringSea", {61.5, 178.0}, kWorld}, RouteRow{"GulfOfAlaska", {56.0, -148.0}, "nws"},
        RouteRow{"CanadianBeaufortSea", {70.5, -132.0}, kWorld},
        RouteRow{"OffCarolina", {33.0, -75.5}, "nws"}, RouteRow{"LakeOntarioSouth", {43.40, -77.50}, "nws"},
        RouteRow{"LakeOntarioNorth", {43.75, -78.50}, "eccc"}, RouteRow{"Toronto", {43.65, -79.38}, "eccc"},
        RouteRow{"Iqaluit", {63.75, -68.52}, "eccc"}, RouteRow{"SaintPierre", {46.78, -56.18}, kWorld},
        RouteRow{"Nuuk", {64.18, -51.72}, kWorld}, RouteRow{"Torshavn", {62.01, -6.77}, kWorld},
        RouteRow{"Mexico", {19.43, -99.13}, kWorld}, RouteRow{"Havana", {23.13, -82.38}, kWorld},
        RouteRow{"Hamilton", {32.29, -64.78}, kWorld}, RouteRow{"Guadeloupe", {16.24, -61.53}, kWorld},
        RouteRow{"Martinique", {14.61, -61.08}, kWorld}, RouteRow{"FrenchGuiana", {4.94, -52.33}, kWorld},
        RouteRow{"Curacao", {12.11, -68.93}, kWorld}, RouteRow{"Brasilia", {-15.79, -47.88}, kWorld},
        RouteRow{"BuenosAires", {-34.60, -58.38}, kWorld}, RouteRow{"Falklands", {-51.69, -57.85}, kWorld}),
    [](auto const& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Europe, Routes,
    testing::Values(
        RouteRow{"Berlin", {52.52, 13.41}, "meteoalarm"}, RouteRow{"Paris", {48.86, 2.35}, "meteoalarm"},
        RouteRow{"London", {51.51, -0.13}, "meteoalarm"}, RouteRow{"Kyiv", {50.45, 30.52}, "meteoalarm"},
        RouteRow{"Reykjavik", {64.15, -21.94}, "meteoalarm"},
        RouteRow{"Tel_Aviv", {32.08, 34.78}, "meteoalarm"}, RouteRow{"Andorra", {42.51, 1.52}, "meteoalarm"},
        RouteRow{"Oslo", {59.91, 10.75}, "meteoalarm"},
        RouteRow{"GranCanaria", {28.12, -15.43}, "meteoalarm"},
        RouteRow{"Azores", {37.74, -25.67}, "meteoalarm"}, RouteRow{"Madeira", {32.65, -16.91}, "meteoalarm"},
        RouteRow{"Ceuta", {35.89, -5.31}, "meteoalarm"}, RouteRow{"Aland", {60.10, 19.93}, "meteoalarm"},
        RouteRow{"Corsica", {41.93, 8.74}, "meteoalarm"}, RouteRow{"Svalbard", {78.22, 15.65}, kNorwegian},
        RouteRow{"JanMayen", {70.98, -8.30}, kNorwegian}, RouteRow{"OffNorway", {64.5, 6.5}, kNorwegian},
        RouteRow{"BarentsSea", {72.5, 27.0}, kNorwegian}, RouteRow{"GreenlandSea", {76.0, -6.0}, kNorwegian},
        RouteRow{"WestOfGreenlandSea", {76.0, -10.1}, kWorld},
        RouteRow{"NorwegianSea", {66.5, -3.0}, kNorwegian},
        RouteRow{"NorthOfSvalbard", {81.6, 20.0}, kNorwegian}, RouteRow{"FartherNorth", {82.6, 20.0}, kWorld},
        RouteRow{"KildinBank", {70.40, 35.23}, kNorwegian}, RouteRow{"EastOfIt", {70.40, 37.1}, kWorld},
        RouteRow{"Tromso", {69.65, 18.96}, "meteoalarm"}, RouteRow{"Rost", {67.52, 12.11}, "meteoalarm"},
        RouteRow{"Vardo", {70.37, 31.11}, "meteoalarm"}, RouteRow{"Sognefjord", {61.10, 6.50}, "meteoalarm"},
        RouteRow{"Oslofjord", {59.30, 10.60}, "meteoalarm"}, RouteRow{"OffBergen", {60.4, 4.2}, kNorwegian},
        RouteRow{"OffStad", {62.3, 4.7}, kNorwegian}, RouteRow{"Ekofisk", {56.55, 3.21}, kNorwegian},
        RouteRow{"Skagerrak", {58.0, 9.5}, kNorwegian}, RouteRow{"BearIsland", {74.44, 19.02}, kNorwegian},
        RouteRow{"Hopen", {76.51, 25.01}, kNorwegian}, RouteRow{"Kvitoya", {80.15, 32.6}, kNorwegian},
        RouteRow{"Isfjorden", {78.25, 14.6}, kNorwegian}, RouteRow{"BouvetIsland", {-54.42, 3.36}, kWorld},
        RouteRow{"Troll", {-72.01, 2.53}, kWorld}, RouteRow{"NorthSeaBritain", {58.0, 1.0}, kWorld},
        RouteRow{"IrishSea", {53.8, -5.0}, "meteoalarm"}, RouteRow{"OffTexel", {53.2, 4.2}, "meteoalarm"},
        RouteRow{"Kattegat", {56.9, 11.8}, "meteoalarm"}, RouteRow{"KielBight", {54.6, 10.5}, "meteoalarm"},
        RouteRow{"Kvarner", {44.5, 13.8}, "meteoalarm"}, RouteRow{"AegeanSea", {38.3, 25.2}, kWorld},
        RouteRow{"GulfOfBothnia", {65.2, 23.5}, kWorld}, RouteRow{"DoggerBank", {54.5, 4.0}, kWorld},
        RouteRow{"Crimea", {44.95, 34.10}, "meteoalarm"}, RouteRow{"Kosovo", {42.66, 21.17}, kWorld},
        RouteRow{"Vatican", {41.9029, 12.4534}, kWorld}, RouteRow{"Monaco", {43.733, 7.418}, kWorld},
        RouteRow{"SanMarino", {43.936, 12.447}, kWorld}, RouteRow{"Gibraltar", {36.14, -5.35}, kWorld},
        RouteRow{"Liechtenstein", {47.14, 9.52}, kWorld}, RouteRow{"Tirana", {41.33, 19.82}, kWorld},
        RouteRow{"Minsk", {53.90, 27.57}, kWorld}, RouteRow{"Jersey", {49.19, -2.11}, kWorld},
        RouteRow{"Moscow", {55.75, 37.62}, kWorld}),
    [](auto const& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Elsewhere, Routes,
    testing::Values(
        RouteRow{"Istanbul", {41.01, 28.98}, kWorld}, RouteRow{"Beijing", {39.90, 116.40}, kWorld},
        RouteRow{"HongKong", {22.30, 114.17}, kWorld}, RouteRow{"Macau", {22.19, 113.54}, kWorld},
        RouteRow{"Taipei", {25.03, 121.56}, kWorld}, RouteRow{"Tokyo", {35.68, 139.69}, kWorld},
        RouteRow{"Delhi", {28.61, 77.21}, kWorld}, RouteRow{"Anadyr", {64.73, 177.51}, kWorld},
        RouteRow{"Manila", {14.60, 120.98}, kWorld}, RouteRow{"Kabul", {34.53, 69.17}, kWorld},
        RouteRow{"Cairo", {30.04, 31.24}, kWorld}, RouteRow{"Lagos", {6.45, 3.39}, kWorld},
        RouteRow{"Nairobi", {-1.29, 36.82}, kWorld}, RouteRow{"CapeTown", {-33.93, 18.42}, kWorld},
        RouteRow{"Laayoune", {27.15, -13.20}, kWorld}, RouteRow{"Reunion", {-20.88, 55.45}, kWorld},
        RouteRow{"Mayotte", {-12.78, 45.23}, kWorld}, RouteRow{"SaintHelena", {-15.92, -5.72}, kWorld},
        RouteRow{"Sydney", {-33.87, 151.21}, kWorld}, RouteRow{"Auckland", {-36.85, 174.76}, kWorld},
        RouteRow{"NewCaledonia", {-22.27, 166.44}, kWorld}, RouteRow{"Tahiti", {-17.54, -149.57}, kWorld},
        RouteRow{"Suva", {-18.14, 178.44}, kWorld}, RouteRow{"Antarctica", {-77.85, 166.67}, kWorld},
        RouteRow{"AtlanticOcean", {30.0, -45.0}, kWorld}, RouteRow{"PacificOcean", {-30.0, -120.0}, kWorld},
        RouteRow{"IndianOcean", {-30.0, 80.0}, kWorld}, RouteRow{"ArcticOcean", {87.0, 150.0}, kWorld},
        RouteRow{"SouthernOcean", {-62.0, 20.0}, kWorld}, RouteRow{"Pole", {-90.0, 0.0}, kWorld}),
    [](auto const& row) { return row.param.name; });

struct ChoiceRow {
  char const* name;
  Coordinate place;
  char const *chosen, *route;
};

constexpr Coordinate kBerlin{52.52, 13.41};
constexpr Coordinate kTokyo{35.68, 139.69};

TEST(ChosenRoutes, BeginWithTheChosenSource) {
  for (ChoiceRow const& row :
       {ChoiceRow{"Own", kBerlin, "brightsky", "brightsky"},
        ChoiceRow{"Usual", kBerlin, "meteoalarm", "meteoalarm"},
        ChoiceRow{"Centre", kBerlin, "wmo", "wmo, fpas"}, ChoiceRow{"Server", kTokyo, "fpas", "fpas, wmo"},
        ChoiceRow{"UsualOfTheWorld", kTokyo, "wmo", "wmo, fpas"},
        ChoiceRow{"Norway", {59.91, 10.75}, "metalerts", "metalerts"},
        ChoiceRow{"SvalbardByEurope", {78.22, 15.65}, "meteoalarm", "meteoalarm"},
        ChoiceRow{"OfAnotherCountry", kTokyo, "brightsky", "wmo, fpas"},
        ChoiceRow{"Unknown", kBerlin, "weather", "meteoalarm"}}) {
    SCOPED_TRACE(row.name);
    GovAlertPlace place = govAlertPlace(row.place);
    place.chosenSource = row.chosen;
    EXPECT_EQ(list(warningRoute(place)), row.route);
  }
}

TEST(WarningRoute, SaysWhatMayBeChosen) {
  auto const possible = [](Coordinate place) { return list(possibleSources(govAlertPlace(place))); };
  EXPECT_EQ(possible(kBerlin), "meteoalarm, brightsky, wmo, fpas");
  EXPECT_EQ(possible({39.74, -104.99}), "nws, wmo, fpas");
  EXPECT_EQ(possible(kTokyo), "wmo, fpas");
  EXPECT_EQ(possible({78.22, 15.65}), "metalerts, meteoalarm, wmo, fpas");
  EXPECT_THAT(possibleSources({{91, 0}, "DE", {}}), IsEmpty());
  EXPECT_THAT(warningRoute({{91, 0}, "DE", {}}), IsEmpty());
}

/// "UK" and "EL" are how some services write them.
TEST(WarningRoute, TakesACountryHoweverItIsWritten) {
  for (char const* const country : {"GB", "uk", "EL", "gr"})
    EXPECT_THAT(warningRoute({{52, 0}, country, {}}), ElementsAre("meteoalarm")) << country;
}

TEST(OfficialSources, HaveARowForEveryNameOfARoute) {
  for (OfficialSource const& source : officialSources()) {
    EXPECT_EQ(officialSource(source.name), &source);
    EXPECT_THAT(source.rest.count(), AnyOf(2, 5, 10)) << source.name;
  }
  for (std::string_view const name : possibleSources(govAlertPlace(kBerlin)))
    EXPECT_NE(officialSource(name), nullptr);
  EXPECT_EQ(officialSource(""), nullptr);
}

ServiceFailure noAnswer(HttpError::Kind kind) {
  return ServiceFailure::network({kind, ""});
}

TEST(RestAfterFailure, GrowsToAnHour) {
  constexpr std::pair<int, int> kRows[] = {{-1, 0}, {0, 0},  {1, 10}, {2, 20},
                                           {3, 40}, {4, 60}, {5, 60}, {1'000'000, 60}};
  for (auto const& [failures, rest] : kRows)
    EXPECT_EQ(restAfterFailure(ServiceFailure::answered(503), failures), minutes(rest)) << failures;
}

TEST(RestAfterFailure, IsForWhatIsTheServicesOwnFault) {
  using enum HttpError::Kind;
  std::pair<ServiceFailure, bool> const rows[] = {
      {ServiceFailure::answered(404), true},
      {ServiceFailure::of(Kind::unreadable), true},
      {ServiceFailure::of(Kind::incomplete), false},
      {ServiceFailure::of(Kind::noSuchPlace), false},
      {noAnswer(timedOut), true},
      {noAnswer(truncated), true},
      {noAnswer(tlsFailed), true},
      {noAnswer(unresolvedHost), false},
      {noAnswer(connectionFailed), false},
      {noAnswer(cancelled), false},
  };
  for (auto const& [failure, rests] : rows)
    EXPECT_EQ(restAfterFailure(failure, 1), minutes(rests ? 10 : 0)) << sentenceOf(failure);
}

struct Row {
  char const* name;
  Coordinate place;
  bool hasWater;
};

TEST(UsWaters, LieOffCoastsBaysAndGreatLakes) {
  for (Row const& row :
       {Row{"Chicago", {41.8781, -87.6298}, true},       Row{"Cleveland", {41.4993, -81.6944}, true},
        Row{"Duluth", {46.7867, -92.1005}, true},        Row{"Buffalo", {42.8864, -78.8784}, true},
        Row{"Oswego", {43.4553, -76.5105}, true},        Row{"Green Bay", {44.5133, -88.0133}, true},
        Row{"Bay City", {43.5945, -83.8889}, true},      Row{"Miami", {25.7617, -80.1918}, true},
        Row{"New York", {40.7128, -74.0060}, true},      Row{"Boston", {42.3601, -71.0589}, true},
        Row{"Annapolis", {38.9784, -76.4922}, true},     Row{"Galveston", {29.3013, -94.7977}, true},
        Row{"Seattle", {47.6062, -122.3321}, true},      Row{"San Francisco", {37.7749, -122.4194}, true},
        Row{"San Diego", {32.7157, -117.1611}, true},    Row{"Anchorage", {61.2181, -149.9003}, true},
        Row{"Honolulu", {21.3069, -157.8583}, true},     Row{"San Juan", {18.4655, -66.1057}, true},
        Row{"Hagåtña", {13.4745, 144.7504}, true},       Row{"Denver", {39.7392, -104.9903}, false},
        Row{"Indianapolis", {39.7684, -86.1581}, false}, Row{"Madison", {43.0731, -89.4012}, false},
        Row{"El Paso", {31.7619, -106.4850}, false},     Row{"Grand Rapids", {42.9634, -85.6681}, false},
        Row{"Grand Forks", {47.9253, -97.0329}, false},  Row{"Berlin", {52.52, 13.41}, false}}) {
    auto const water = usWatersOff(row.place);
    EXPECT_EQ(water.has_value(), row.hasWater) << row.name;
    if (!water) continue;
    EXPECT_TRUE(isValid(*water)) << row.name;
    EXPECT_LE(haversineKm(row.place, *water), 15) << row.name;
  }
}

/// Westwards from the shore of Lake Michigan in Chicago.
TEST(UsWaters, AreAskedForWithinTenKilometres) {
  constexpr Coordinate kShore{41.8819, -87.6100};
  constexpr double kKmPerLongitude = 82.8;
  EXPECT_TRUE(usWatersOff({kShore.latitude, kShore.longitude - 7 / kKmPerLongitude}));
  EXPECT_FALSE(usWatersOff({kShore.latitude, kShore.longitude - 14 / kKmPerLongitude}));
}

TEST(UsWaters, HaveZonesOfTheirOwn) {
  for (std::string_view const code : {"LMZ741", "ANZ338", "PZZ130", "GMZ530", "AMZ651", "PKZ740", "PHZ110"})
    EXPECT_TRUE(isMarineZone(code)) << code;
  for (std::string_view const code :
       {"ILZ014", "IAC113", "LMC741", "LMZ74", "LMZ7411", "", "MIZ001", "PRZ001"})
    EXPECT_FALSE(isMarineZone(code)) << code;
}

}  // namespace
}  // namespace nimbara
