#include "desktop/views/places_view.h"

#include "states.h"

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
