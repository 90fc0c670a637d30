#include "desktop/views/places/places_view.h"

#include "desktop/states/states.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::HasSubstr;

PlaceList listWithHere() {
  PlaceList list;
  list.offersCurrentLocation = true;
  list.lastFix = LocationFix{{52.52, 13.41}, 1000, kNow - std::chrono::minutes(5)};
  list.selected = kCurrentLocation;
  return list;
}

TEST(Here, IsAPlaceWithItsAge) {
  LocationState location;
  location.here = Place{{52.52, 13.41}, "Berlin", "Germany", "Berlin"};
  KeptForecasts const kept{{kCurrentLocation, std::make_shared<WeatherData const>(mildWeek())}};
  HereView const view = hereView(listWithHere(), location, kept, contextAt(kNow));
  EXPECT_TRUE(view.isOffered);
  EXPECT_TRUE(view.isSelected);
  EXPECT_EQ(view.name, "Berlin");
  EXPECT_EQ(view.area, "52.52°N 13.41°E  ·  found 5 min ago");
  EXPECT_EQ(view.temperature, "15°");
  EXPECT_THAT(view.sentence, HasSubstr("Current location, Berlin, 15°"));
}

TEST(Here, HasItsOwnNameFarFromEveryCity) {
  LocationState location;
  location.here = Place{{0, -30}, "", "", ""};
  EXPECT_EQ(hereView(listWithHere(), location, {}, contextAt(kNow)).name, "Current location");
}

struct PhaseRow {
  LocationState::Phase phase;
  char const* note;
  bool isAsking;
  bool isTroubled;
};

TEST(Here, SaysWhatBecameOfTheQuestion) {
  using Phase = LocationState::Phase;
  for (PhaseRow const& row : {PhaseRow{Phase::idle, "city-level accuracy", false, false},
                              PhaseRow{Phase::asking, "Finding your location", true, false},
                              PhaseRow{Phase::found, "", false, false},
                              PhaseRow{Phase::denied, "not allowed to use your location", false, true},
                              PhaseRow{Phase::unavailable, "could not be found", false, true}}) {
    HereView const view = hereView({}, {row.phase, "no GeoClue", {}}, {}, contextAt(kNow));
    EXPECT_THAT(view.note, HasSubstr(row.note));
    EXPECT_EQ(view.isAsking, row.isAsking) << row.note;
    EXPECT_EQ(view.isTroubled, row.isTroubled) << row.note;
    EXPECT_FALSE(view.isOffered);
  }
}

SavedPlace savedAt(char const* name, Coordinate coordinate) {
  SavedPlace place;
  place.id = Uuid::named(Uuid{}, name);
  place.name = name;
  place.coordinate = coordinate;
  return place;
}

/// One moment is told once, whatever the clocks of the places say.
TEST(Places, TellTheirChecksInTheReadersTime) {
  PlaceList list;
  list.places = {savedAt("Berlin", {52.52, 13.41}), savedAt("Lisbon", {38.72, -9.14})};
  SourceCoverage calm;
  calm.state = CoverageState::none;
  calm.checkedAt = kNow - std::chrono::minutes(5);
  std::vector<PlaceCoverage> coverage;
  for (SavedPlace const& place : list.places) coverage.push_back({place.coordinate, {calm}});
  auto const views = placeViews(list, {}, false, coverage, contextAt(kNow));
  ASSERT_EQ(views.size(), 2);
  EXPECT_EQ(views[0].warnings, "No official warnings, checked 12:15");
  EXPECT_EQ(views[1].warnings, views[0].warnings);
}

PlaceView viewOf(SavedPlace place, std::vector<PlaceCoverage> const& coverage = {}) {
  PlaceList list;
  list.places = {std::move(place)};
  return placeViews(list, {}, true, coverage, contextAt(kNow)).front();
}

TEST(PlaceView, HasThePlacesOwnClock) {
  EXPECT_EQ(viewOf(savedPlace("Tokyo", {35.68, 139.69})).localTime, "Sat 21:20");
  EXPECT_EQ(viewOf(savedPlace("Auckland", {-36.85, 174.76})).localTime, "Sun 01:20");
  EXPECT_EQ(viewOf(savedPlace("Denver", {39.74, -104.98})).localTime, "Sat 05:20");
}

struct MarkRow {
  char const* name;
  std::vector<std::pair<AlertSeverity, std::chrono::hours>> warnings;  ///< until when they last
  CoverageState state;
  char const* mark;
  char const* text;
};

TEST(PlaceView, IsMarkedByItsHighestWarningThatLasts) {
  using enum AlertSeverity;
  using std::chrono::hours;
  for (MarkRow const& row : {
           MarkRow{"none", {}, CoverageState::none, "", ""},
           MarkRow{"one", {{advisory, hours(3)}}, CoverageState::warnings, "advisory", "Advisory: Gale 0"},
           MarkRow{"two",
                   {{critical, hours(1)}, {info, hours(9)}},
                   CoverageState::warnings,
                   "critical",
                   "Critical: Gale 0"},
           MarkRow{"the higher has ended",
                   {{critical, hours(0)}, {warning, hours(1)}},
                   CoverageState::warnings,
                   "warning",
                   "Warning: Gale 1"},
           MarkRow{"all ended", {{critical, hours(-1)}}, CoverageState::none, "", ""},
           MarkRow{"not checked", {}, CoverageState::unchecked, "unchecked", nullptr},
           MarkRow{
               "known before", {{warning, hours(2)}}, CoverageState::unchecked, "warning", "Warning: Gale 0"},
           MarkRow{"nobody warns here", {}, CoverageState::uncovered, "", ""},
       }) {
    SourceCoverage source;
    source.source = "nws";
    source.state = row.state;
    source.checkedAt = source.since = kNow;
    PlaceCoverage coverage{{10, 20}, {source}, {}};
    for (auto const& [severity, left] : row.warnings) {
      WeatherAlert alert = alertOf(severity, "Gale " + std::to_string(coverage.alerts.size()));
      alert.expires = kNow + left;
      coverage.alerts.push_back(std::move(alert));
    }
    PlaceView const view = viewOf(savedPlace("Somewhere", {10, 20}), {coverage});
    EXPECT_EQ(view.mark, row.mark) << row.name;
    EXPECT_EQ(view.markText, row.text == nullptr ? view.warnings : row.text) << row.name;
    EXPECT_EQ(viewOf(savedPlace("Elsewhere", {11, 20}), {coverage}).mark, "");
  }
}

TEST(FoundView, KnowsTheSavedPlaceThatItIs) {
  PlaceList list;
  list.places = {savedPlace("Home", {10, 20})};
  auto const views =
      foundViews({{"Near", "", "", "", {10, 20}, ""}, {"Far", "", "", "", {10, 21}, ""}}, list);
  EXPECT_EQ(views[0].savedId, list.places[0].id.text());
  EXPECT_EQ(views[1].savedId, "");
  FoundPlace const lisbon{"Lisbon", "Portugal", "PT", "", {38.72, -9.13}, "", "Lisboa"};
  EXPECT_EQ(foundViews({lisbon}, list).front().name, "Lisboa (Lisbon)") << "by which name it was found";
}

struct SavedRow {
  char const* what;
  FoundPlace found;
  bool isSaved;
};

TEST(FoundView, KnowsASavedPlaceFromAnotherCatalogue) {
  PlaceList list;
  list.places = {savedPlace("Tromsø", {69.65, 18.96})};
  list.places[0].country = "NO";
  for (SavedRow const& row : {
           SavedRow{"a little beside", {"Tromsø", "Norway", "NO", "", {69.649, 18.955}, ""}, true},
           SavedRow{"in other letters", {"TROMSO", "Norway", "NO", "", {69.649, 18.955}, ""}, true},
           SavedRow{"of no known country", {"Tromsø", "", "", "", {69.649, 18.955}, ""}, true},
           SavedRow{"beyond the border", {"Tromsø", "Sweden", "SE", "", {69.649, 18.955}, ""}, false},
           SavedRow{"a neighbour", {"Tromsdalen", "Norway", "NO", "", {69.649, 18.955}, ""}, false},
           SavedRow{"4.9 km away", {"Tromsø", "Norway", "NO", "", {69.694, 18.96}, ""}, true},
           SavedRow{"5.1 km away", {"Tromsø", "Norway", "NO", "", {69.696, 18.96}, ""}, false},
       }) {
    EXPECT_EQ(foundViews({row.found}, list)[0].isSaved, row.isSaved) << row.what;
  }
}

TEST(FoundView, SaysByWhichNameItWasFound) {
  FoundPlace lisbon{"Lisbon", "Portugal", "PT", "", {38.72, -9.14}, ""};
  EXPECT_EQ(foundViews({lisbon}, {})[0].sentence, "Lisbon, Portugal");
  lisbon.otherName = "Lisboa";
  EXPECT_EQ(foundViews({lisbon}, {})[0].name, "Lisboa (Lisbon)");
  EXPECT_EQ(foundViews({lisbon}, {})[0].sentence, "Lisboa (Lisbon), Portugal");
}

TEST(OnlineSearch, SaysWhatFailed) {
  APIError offline = APIError::of(APIError::Case::networkError);
  offline.transport = HttpError::Kind::connectionFailed;
  EXPECT_THAT(onlineNote(std::unexpected(offline), contextAt(kNow)), HasSubstr("appear to be offline"));
  EXPECT_THAT(onlineNote(std::unexpected(APIError::of(APIError::Case::noResults)), contextAt(kNow)),
              HasSubstr("No place found with that name"));
  EXPECT_EQ(onlineNote(std::unexpected(APIError::http(503, "busy")), contextAt(kNow)),
            "The search failed: the service returned an error (HTTP 503: busy).");
  EXPECT_THAT(onlineNote(std::vector<FoundPlace>{}, contextAt(kNow)), HasSubstr("Open-Meteo"));
}

}  // namespace
}  // namespace nimbara
