#include "feeds/meteoalarm/meteo_alarm_selection.h"

#include "feeds/regions/meteo_alarm_countries.h"
#include "support/instants.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <random>

namespace nimbara {
namespace {

using test::at;

constexpr Coordinate kBerlin{52.52, 13.405};
Instant const kNow = at("2026-11-21T12:00:00Z");

RawEntry areaEntry(std::string area, std::vector<std::string> nuts3 = {},
                   std::vector<RegionCode> others = {}) {
  RawEntry entry;
  entry.areaDesc = std::move(area);
  entry.nuts3Codes = std::move(nuts3);
  entry.otherCodes = std::move(others);
  entry.title = "Yellow Wind Warning issued for Testland";
  return entry;
}

std::size_t countSelected(RawEntry entry, Coordinate place, PlaceRegions const& regions = {}) {
  return selectedEntries(feedOf({std::move(entry)}), place, regions).size();
}

Coordinate northOf(Coordinate place, double km) {
  return {place.latitude + km / kEarthRadiusKm * 180 / std::numbers::pi, place.longitude};
}

TEST(MeteoAlarmSelection, TakesCirclesFiftyKilometresFurther) {
  struct Row {
    double km;
    bool isKept;
  };
  for (auto const& [km, isKept] :
       {Row{0, true}, Row{5, true}, Row{54.99, true}, Row{55.01, false}, Row{60, false}}) {
    RawEntry entry;
    entry.circles = {{northOf(kBerlin, km), 5}};
    EXPECT_EQ(countSelected(entry, kBerlin), isKept ? 1U : 0U) << km;
  }
}

TEST(MeteoAlarmSelection, TellsWhatIsHereFromWhatIsNear) {
  WarningPolygon const square{{52.4, 13.3}, {52.6, 13.3}, {52.6, 13.5}, {52.4, 13.5}};
  RawEntry circle;
  circle.circles = {{kBerlin, 5}};
  RawEntry polygon;
  polygon.polygons = {square};
  RawEntry both = circle;
  both.polygons = {square};
  RawEntry coded = polygon;
  coded.nuts3Codes = {"DE300"};
  Coordinate const corner = square[1];
  struct Row {
    std::string why;
    RawEntry entry;
    Coordinate place;
    std::optional<double> distanceKm;
  };
  for (Row const& row : {Row{"in a circle", circle, northOf(kBerlin, 4.9), {}},
                         {"near a circle", circle, northOf(kBerlin, 25), 20},
                         {"in a polygon", polygon, {52.5, 13.4}, {}},
                         {"near a corner", polygon, northOf(corner, 30), 30},
                         {"on a corner", polygon, corner, {}},
                         {"in the one, near the other", both, northOf(kBerlin, 5.5), {}},
                         {"nearer to the one than to the other", both, northOf(corner, 10), 10},
                         {"of the place's code, whatever the outline", coded, northOf(corner, 30), {}},
                         {"by name", areaEntry("Berlin"), kBerlin, {}}}) {
    MeteoAlarmFeed const feed = feedOf({row.entry});
    auto const selected =
        selectedEntries(feed, row.place, PlaceRegions{"DE", {"Berlin"}, {{"NUTS3", "DE300"}}});
    ASSERT_EQ(selected.size(), 1) << row.why;
    ASSERT_EQ(selected[0].distanceKm.has_value(), row.distanceKm.has_value()) << row.why;
    EXPECT_NEAR(selected[0].distanceKm.value_or(0), row.distanceKm.value_or(0), 1e-6) << row.why;
  }
}

TEST(MeteoAlarmSelection, TakesPolygonsFromInsideOrNearACorner) {
  WarningPolygon const wide{{50, 10}, {55, 10}, {55, 17}, {50, 17}};
  RawEntry entry;
  entry.polygons = {wide};
  EXPECT_EQ(countSelected(entry, {52.5, 13.5}), 1U);  // every corner is more than 50 km away
  EXPECT_EQ(countSelected(entry, northOf({55, 10}, 49.9)), 1U);
  EXPECT_EQ(countSelected(entry, northOf({55, 10}, 50.1)), 0U);
  EXPECT_EQ(countSelected(entry, northOf({55, 13.5}, 10)), 0U);  // near an edge, far from corners
}

TEST(MeteoAlarmSelection, TakesCodesOfEveryRegistry) {
  PlaceRegions const emma{"DE", {}, {{"EMMA_ID", "DE356"}}};
  PlaceRegions const nuts{"FR", {}, {{"NUTS3", "FR718"}}};
  struct Row {
    RawEntry entry;
    PlaceRegions regions;
    bool isKept;
  };
  for (auto const& [entry, regions, isKept] : {Row{areaEntry("x", {}, {{"EMMA_ID", "DE356"}}), emma, true},
                                               {areaEntry("x", {}, {{"EMMA_ID", "DE357"}}), emma, false},
                                               {areaEntry("x", {}, {{"EMMA_ID", "de356"}}), emma, false},
                                               {areaEntry("x", {"FR718"}), nuts, true},
                                               {areaEntry("x", {"FR717", "FR718"}), nuts, true},
                                               {areaEntry("x", {"FR71"}), nuts, false},
                                               {areaEntry("x", {"DE356"}), emma, true},
                                               {areaEntry("x"), emma, false}})
    EXPECT_EQ(countSelected(entry, kBerlin, regions), isKept ? 1U : 0U) << entry.areaDesc;
}

TEST(MeteoAlarmSelection, ComparesNamesOnlyWhereNothingElseDecides) {
  PlaceRegions const unknown{"FR", {"Haute-Savoie"}, {}};
  PlaceRegions const nuts{"FR", {"Haute-Savoie"}, {{"NUTS3", "FR718"}}};
  PlaceRegions const emma{"FR", {"Haute-Savoie"}, {{"EMMA_ID", "FR035"}}};
  struct Row {
    std::string why;
    RawEntry entry;
    PlaceRegions regions;
    bool isKept;
  };
  RawEntry shaped = areaEntry("Haute Savoie");
  shaped.circles = {{{0, 0}, 1}};
  for (auto const& [why, entry, regions, isKept] :
       {Row{"equal but for letter case and hyphens", areaEntry("HAUTE SAVOIE"), unknown, true},
        {"the area has the name in it", areaEntry("Massifs de Haute-Savoie nord"), unknown, true},
        {"the name has the area in it", areaEntry("Savoie"), unknown, true},
        {"another name", areaEntry("Isere"), unknown, false},
        {"no area", areaEntry(""), unknown, false},
        {"no names", areaEntry("Haute Savoie"), {"FR", {}, {}}, false},
        {"an empty name", areaEntry("Haute Savoie"), {"FR", {"", "-"}, {}}, false},
        {"geometry decides", shaped, unknown, false},
        {"the place's code is unknown", areaEntry("Haute Savoie", {"FR717"}), unknown, true},
        {"the place's code is another", areaEntry("Haute Savoie", {"FR717"}), nuts, false},
        {"the entry has no code", areaEntry("Haute Savoie"), nuts, true},
        {"codes of a registry unknown here", areaEntry("Haute Savoie", {}, {{"EMMA_ID", "FR036"}}), nuts,
         true},
        {"codes of a registry known here", areaEntry("Haute Savoie", {}, {{"EMMA_ID", "FR036"}}), emma,
         false},
        {"one of two registries known", areaEntry("Haute Savoie", {"FR717"}, {{"EMMA_ID", "FR036"}}), emma,
         false}})
    EXPECT_EQ(countSelected(entry, kBerlin, regions), isKept ? 1U : 0U) << why;
}

/// The rules as they are told, without any short cut.
bool referenceKeeps(RawEntry const& entry, Coordinate place, double radiusKm) {
  auto const radians = [](double degrees) { return degrees * std::numbers::pi / 180; };
  auto const distance = [&](Coordinate a, Coordinate b) {
    double const north = std::sin(radians(b.latitude - a.latitude) / 2);
    double const east = std::sin(radians(b.longitude - a.longitude) / 2);
    double const h =
        north * north + std::cos(radians(a.latitude)) * std::cos(radians(b.latitude)) * east * east;
    return 2 * std::atan2(std::sqrt(h), std::sqrt(1 - h)) * 6371;
  };
  for (WarningCircle const& circle : entry.circles) {
    if (distance(place, circle.center) <= circle.radiusKm + radiusKm) return true;
  }
  for (WarningPolygon const& polygon : entry.polygons) {
    int crossings = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
      Coordinate const a = polygon[i], b = polygon[(i + 1) % polygon.size()];
      bool const apart = (a.latitude > place.latitude) != (b.latitude > place.latitude);
      if (!apart) continue;
      double const edge = a.longitude + (b.longitude - a.longitude) * (place.latitude - a.latitude) /
                                            (b.latitude - a.latitude);
      if (place.longitude < edge) ++crossings;
    }
    if (crossings % 2 == 1) return true;
    for (Coordinate const corner : polygon) {
      if (distance(place, corner) <= radiusKm) return true;
    }
  }
  return false;
}

TEST(MeteoAlarmSelection, AgreesWithThePlainRulesOnRandomGeometry) {
  std::mt19937 random(20261121);
  std::uniform_real_distribution<double> unit(0, 1);
  int kept = 0;
  constexpr int kRounds = 20'000;
  for (int round = 0; round < kRounds; ++round) {
    Coordinate const place{unit(random) * 180 - 90, unit(random) * 360 - 180};
    auto const nearby = [&] {
      return Coordinate{std::clamp(place.latitude + unit(random) * 4 - 2, -90.0, 90.0),
                        std::clamp(place.longitude + unit(random) * 6 - 3, -180.0, 180.0)};
    };
    RawEntry entry;
    if (round % 3 == 0) entry.circles = {{nearby(), unit(random) * 100}};
    WarningPolygon polygon;
    for (int corner = 0; corner < 3 + round % 7; ++corner) polygon.push_back(nearby());
    entry.polygons = {polygon};
    bool const expected = referenceKeeps(entry, place, kProximityRadiusKm);
    kept += expected ? 1 : 0;
    ASSERT_EQ(countSelected(entry, place), expected ? 1U : 0U) << round;
  }
  EXPECT_GT(kept, kRounds / 10);
  EXPECT_LT(kept, kRounds * 9 / 10);
}

TEST(MeteoAlarmSelection, StaysSaneAtTheEdgesOfTheMap) {
  WarningPolygon const aroundPole{{80, -180}, {80, -90}, {80, 0}, {80, 90}, {80, 180}};
  WarningPolygon const bowTie{{0, 0}, {10, 10}, {0, 10}, {10, 0}};
  WarningPolygon const overAntimeridian{{10, 179}, {20, 179}, {20, -179}, {10, -179}};
  RawEntry entry;
  entry.polygons = {aroundPole, bowTie, overAntimeridian};
  entry.circles = {{{90, 0}, 10}, {{0, 180}, 10}};
  for (Coordinate const place : {Coordinate{90, 0}, Coordinate{-90, 0}, Coordinate{0, 180},
                                 Coordinate{0, -180}, Coordinate{90, 180}, Coordinate{15, 180}})
    EXPECT_LE(countSelected(entry, place), 1U);
  EXPECT_EQ(countSelected(entry, {0, -180}), 1U);  // the circle reaches over the antimeridian
  EXPECT_EQ(countSelected(entry, {90, 123}), 1U);  // one pole, whatever the longitude
  EXPECT_EQ(countSelected(entry, {-90, 0}), 0U);
}

TEST(MeteoAlarmSelection, LeavesOutOnlyWhatSaysThatItIsNoWarning) {
  struct Row {
    std::string title, status, type, onset, expires;
    bool isWarning;
  };
  std::string const yellow = "Yellow Wind Warning issued for A";
  for (Row const& row :
       {Row{yellow, "Actual", "Alert", "", "", true},
        {yellow, "", "", "", "", true},
        {"", "", "", "", "", true},
        {yellow, "actual", "Update", "", "", true},
        {yellow, "Test", "Alert", "", "", false},
        {yellow, "Exercise", "Alert", "", "", false},
        {yellow, "Draft", "Alert", "", "", false},
        {yellow, "System", "Alert", "", "", false},
        {yellow, "Actual", "Cancel", "", "", false},
        {"Green Wind Warning issued for A", "Actual", "Update", "", "", false},
        {"GREEN", "Actual", "Update", "", "", false},
        {"Yellow Wind Warning issued for Green Valley", "Actual", "Alert", "", "", true},
        {"Greenland storm", "Actual", "Alert", "", "", true},
        {yellow, "Actual", "Alert", "2026-11-21T06:00:00Z", "2026-11-21T12:00:00.001Z", true},
        {yellow, "Actual", "Alert", "2026-11-21T06:00:00Z", "2026-11-21T12:00:00Z", false},
        {yellow, "Actual", "Alert", "2026-11-22T06:00:00Z", "2026-11-22T06:00:00Z", false},
        {yellow, "Actual", "Alert", "2026-11-23T06:00:00Z", "2026-11-22T06:00:00Z", true}}) {
    RawEntry entry;
    entry.title = row.title;
    entry.status = row.status;
    entry.messageType = row.type;
    entry.onset = parseIso8601(row.onset);
    entry.expires = parseIso8601(row.expires);
    EXPECT_EQ(isCurrentWarning(entry, kNow), row.isWarning)
        << row.title << row.status << row.type << row.expires;
  }
}

TEST(MeteoAlarmSeverity, FollowsTheProtocolsWords) {
  for (auto const& [text, severity] :
       {std::pair{"Extreme", AlertSeverity::critical}, std::pair{"EXTREME", AlertSeverity::critical},
        std::pair{"severe", AlertSeverity::warning}, std::pair{"Moderate", AlertSeverity::advisory},
        std::pair{"Minor", AlertSeverity::info}, std::pair{"Unknown", AlertSeverity::info},
        std::pair{"", AlertSeverity::info}})
    EXPECT_EQ(severityOfCap(text), severity) << text;
}

TEST(MeteoAlarmCountries, HaveTheServicesFeedNames) {
  EXPECT_EQ(meteoAlarmCountries().size(), 39U);
  for (auto const& [code, name] : {std::pair<std::string_view, std::string_view>{"DE", "germany"},
                                   {"de", "germany"},
                                   {"GB", "united-kingdom"},
                                   {"UK", "united-kingdom"},
                                   {"el", "greece"},
                                   {"CZ", "czechia"},
                                   {"MK", "republic-of-north-macedonia"},
                                   {"AD", "andorra"},
                                   {"UA", "ukraine"}})
    EXPECT_EQ(meteoAlarmFeedName(code), name) << code;
  for (std::string_view const code : {"", "TR", "AL", "LI", "XK", "US", "DEU", "ZZ"})
    EXPECT_FALSE(meteoAlarmFeedName(code)) << code;
}

}  // namespace
}  // namespace nimbara
