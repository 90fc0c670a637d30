#include "desktop/views/hazards/quakes_view.h"

#include "app/words/hazards/quake_place.h"
#include "desktop/states/hazard_states.h"
#include "desktop/views/globe/world_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using namespace std::chrono_literals;
using testing::ElementsAre;

Place const kPlace{{0, 0}, "Testville", "", ""};
/// One degree on the equator.
constexpr double kDegreeKm = 111.195;

HazardsState stateWith(std::vector<EarthquakeEvent> events, QuakeFilter filter = {}) {
  HazardsState state = hazardsOf(checkOf(kPlace));
  state.quakes.data = std::move(events);
  state.filter = filter;
  return state;
}

std::vector<std::string> ids(std::vector<EarthquakeEvent> const& events) {
  std::vector<std::string> all;
  for (EarthquakeEvent const& event : events) all.push_back(event.id);
  return all;
}

TEST(ShownQuakes, AreThoseThatTheFilterLetsThrough) {
  HazardsState state = stateWith({quakeOf("near", 5, {0, 1}, 1h), quakeOf("far", 7, {0, 50}, 2h),
                                  quakeOf("weak", 2.44, {0, 0.5}, 3h), quakeOf("rounded", 2.45, {0, 0.5}, 4h),
                                  quakeOf("edge", 4, {0, 1}, 24h), quakeOf("old", 9, {0, 1}, 24h + 1ms)});
  auto const shown = [&](QuakeFilter filter, std::optional<Place> const& place) {
    state.filter = filter;
    return ids(shownQuakes(state, place, QuakeOrder::time, contextAt(kNow)));
  };
  EXPECT_THAT(shown({0, 2.5}, kPlace), ElementsAre("near", "far", "rounded", "edge"));
  EXPECT_THAT(shown({0, -10}, kPlace), ElementsAre("near", "far", "weak", "rounded", "edge"));
  EXPECT_THAT(shown({kDegreeKm + 0.01, 2.5}, kPlace), ElementsAre("near", "rounded", "edge"));
  EXPECT_THAT(shown({kDegreeKm - 0.01, 2.5}, kPlace), ElementsAre("rounded"));
  EXPECT_THAT(shown({100, 2.5}, std::nullopt), ElementsAre("near", "far", "rounded", "edge"));
}

TEST(ShownQuakes, AreAtMostTheNewestFiveHundred) {
  std::vector<EarthquakeEvent> many;
  for (int i = 0; i < 501; ++i) many.push_back(quakeOf(std::to_string(i), 3, {0, 0}, 1h));
  HazardsState const state = stateWith(many);
  auto const shown = shownQuakes(state, kPlace, QuakeOrder::time, contextAt(kNow));
  EXPECT_EQ(shown.size(), 500);
  EXPECT_EQ(quakesView(state, shown, kPlace, contextAt(kNow)).count, "Latest 500 earthquakes");
}

TEST(QuakeViews, TellDistanceAndDepthInTheUsersUnits) {
  EarthquakeEvent event = quakeOf("a", 5.25, {0, 10}, 25min);
  event.depthKm = 550.4;
  EarthquakeEvent above = quakeOf("b", -0.04, {0, 0}, 6h);
  above.depthKm = -1.2;
  ViewContext context = contextAt(kNow);
  auto const views = quakeViews({event, above}, kPlace, context);
  EXPECT_EQ(views[0].sentence, "Magnitude 5.3, somewhere, 1,112\u00A0km away, 550\u00A0km deep, 25 min ago");
  EXPECT_TRUE(views[0].isStrong);
  EXPECT_EQ(views[0].ageClass, 0);
  EXPECT_EQ(views[1].magnitude, "0.0");
  EXPECT_EQ(views[1].note, "0\u00A0km away, 0\u00A0km deep");
  EXPECT_EQ(views[1].ageClass, 2);
  context.units = Units::imperial();
  EXPECT_EQ(quakeViews({event}, kPlace, context)[0].note, "691\u00A0mi away, 342\u00A0mi deep");
  EXPECT_EQ(quakeViews({event}, std::nullopt, context)[0].note, "342\u00A0mi deep");
}

TEST(QuakesView, TellsAnEmptyListFromOneThatIsNotKnown) {
  struct Row {
    bool isChecked, hasData, hasFailed;
    char const* count;
    char const* notice;
  };
  for (Row const& row :
       {Row{true, false, false, "No matching earthquakes in the last 24 hours.", ""},
        Row{true, true, false, "One earthquake in the last 24 hours", ""},
        Row{false, false, false, "Loading earthquakes…", ""},
        Row{false, false, true, "",
            "Earthquakes could not be fetched. Reason: the service returned an error (HTTP 503)."},
        Row{false, true, true, "One earthquake in the last 24 hours",
            "The earthquake list could not be updated. Showing the last known one. Reason: the service "
            "returned an error (HTTP 503)."},
        Row{true, true, true, "One earthquake in the last 24 hours",
            "The earthquake list could not be updated since 12:15. Reason: the service returned an error "
            "(HTTP 503)."}}) {
    HazardsState state = stateWith({});
    if (row.hasData) state.quakes.data = {quakeOf("a", 5, {0, 0}, 1h)};
    if (!row.isChecked) state.quakes.checkedAt.reset();
    if (row.hasFailed) state.quakes.failure = ServiceFailure::answered(503);
    QuakesView const view = quakesView(state, shownQuakes(state, kPlace, QuakeOrder::time, contextAt(kNow)),
                                       kPlace, contextAt(kNow));
    EXPECT_EQ(view.count, row.count) << row.notice;
    EXPECT_EQ(view.notice, row.notice);
  }
}

std::vector<std::string> texts(std::vector<ChoiceView> const& choices) {
  std::vector<std::string> all;
  for (ChoiceView const& choice : choices) all.push_back((choice.isChosen ? "*" : "") + choice.text);
  return all;
}

TEST(QuakeFilters, OfferTheUsualValuesAndTheChosenOne) {
  ViewContext context = contextAt(kNow);
  EXPECT_THAT(texts(radiusChoices({500, 2.5}, context)),
              ElementsAre("250\u00A0km", "*500\u00A0km", "1,000\u00A0km", "2,500\u00A0km", "World"));
  EXPECT_THAT(
      texts(radiusChoices({300, 2.5}, context)),
      ElementsAre("250\u00A0km", "500\u00A0km", "1,000\u00A0km", "2,500\u00A0km", "World", "*300\u00A0km"));
  EXPECT_THAT(texts(magnitudeChoices({0, 2.5}, context)), ElementsAre("All", "*2.5+", "4.5+", "6.0+"));
  context.units = Units::imperial();
  EXPECT_THAT(texts(radiusChoices({0, 2.5}, context)),
              ElementsAre("150\u00A0mi", "300\u00A0mi", "600\u00A0mi", "1,500\u00A0mi", "*World"));
  EXPECT_THAT(texts(radiusChoices({500, 2.5}, context)),
              ElementsAre("150\u00A0mi", "*300\u00A0mi", "600\u00A0mi", "1,500\u00A0mi", "World"))
      << "chosen as 500 km";
}

TEST(QuakeFilters, HoldWhatTheySayInTheUsersUnit) {
  HazardsState const state = stateWith({quakeOf("near", 5, {0, 490 / kDegreeKm}, 1h)}, {500, 2.5});
  ViewContext context = contextAt(kNow);
  EXPECT_EQ(shownQuakes(state, kPlace, QuakeOrder::time, context).size(), 1);
  EXPECT_EQ(quakeMap({}, state, kPlace, context).radiusKm, 500);
  context.units = Units::imperial();
  EXPECT_EQ(shownQuakes(state, kPlace, QuakeOrder::time, context).size(), 0) << "304 miles";
  EXPECT_NEAR(quakeMap({}, state, kPlace, context).radiusKm, 482.8, 0.1);
}

TEST(ShownQuakes, StandBySignificanceOrByTime) {
  HazardsState const state = stateWith(
      {quakeOf("new", 4, {0, 50}, 1h), quakeOf("felt", 3.5, {0, 0.1}, 2h), quakeOf("great", 8.3, {0, 90}, 3h),
       quakeOf("newer", 8.3, {0, 90}, 2h), quakeOf("feltMore", 4.5, {0, 0.2}, 4h)});
  ViewContext const context = contextAt(kNow);
  auto const shown = [&](QuakeOrder order, std::optional<Place> const& place) {
    return ids(shownQuakes(state, place, order, context));
  };
  EXPECT_THAT(shown(QuakeOrder::significance, kPlace),
              ElementsAre("feltMore", "felt", "newer", "great", "new"));
  EXPECT_THAT(shown(QuakeOrder::significance, std::nullopt),
              ElementsAre("newer", "great", "feltMore", "new", "felt"));
  EXPECT_THAT(shown(QuakeOrder::time, kPlace), ElementsAre("new", "felt", "great", "newer", "feltMore"));
  auto const events = shownQuakes(state, kPlace, QuakeOrder::significance, context);
  EXPECT_EQ(quakesView(state, events, kPlace, context).headline, "M 8.3, somewhere, 2 h ago");
  EXPECT_THAT(quakeViews(events, kPlace, context)[0].note, testing::EndsWith("may be felt here"));
  EXPECT_THAT(quakeViews(events, kPlace, context)[2].note, testing::HasSubstr("felt within about 3,100"));
}

TEST(Quakes, AreFeltTheFartherTheStrongerTheyAre) {
  struct Row {
    double magnitude, depthKm, feltKm, silentKm;
  };
  for (Row const& row : {Row{3, 5, 9, 11}, Row{5, 10, 85, 88}, Row{6, 130, 200, 230}, Row{7, 10, 745, 765}}) {
    EXPECT_TRUE(couldBeFelt(row.magnitude, row.feltKm, row.depthKm)) << row.magnitude;
    EXPECT_FALSE(couldBeFelt(row.magnitude, row.silentKm, row.depthKm)) << row.magnitude;
  }
  EXPECT_FALSE(couldBeFelt(1, 0, -3));
}

TEST(QuakePlaces, TellDistancesInTheUsersUnit) {
  for (auto const& [place, expected] : {std::pair("75 km SE of Parkfield, CA", "47 mi SE of Parkfield, CA"),
                                        {"1 km N of X", "1 mi N of X"},
                                        {"off the coast of Chile", "off the coast of Chile"},
                                        {"75 kmSE", "75 kmSE"},
                                        {"75", "75"},
                                        {"", ""},
                                        {" km of X", " km of X"}}) {
    EXPECT_EQ(quakePlace(place, DistanceUnit::miles, english()), expected);
    EXPECT_EQ(quakePlace(place, DistanceUnit::km, english()), place);
  }
  EXPECT_EQ(quakePlace("1234 km S of Y", DistanceUnit::km, english()), "1,234 km S of Y");
  EXPECT_EQ(quakePlace("1234 km S of Y", DistanceUnit::km, Texts::load("de")), "1.234 km S of Y");
  EXPECT_EQ(quakePlace("1234 km S of Y", DistanceUnit::km, Texts::load("pl")), "1234 km S of Y");
  EXPECT_EQ(quakePlace("12345 km S of Y", DistanceUnit::km, Texts::load("pl")), "12\u00A0345 km S of Y");
  EXPECT_EQ(quakePlace("1234567 km S of Y", DistanceUnit::km, english()), "1,234,567 km S of Y");
}

TEST(QuakePlaces, AreNamedAfterTheNearestTownWhereTheServiceHasNoWords) {
  EarthquakeEvent event;
  event.place = "12 km SE of Somewhere";
  event.latitude = -20.5;
  event.longitude = -70.6;
  auto const said = [&](char const* language, DistanceUnit unit = DistanceUnit::km) {
    return quakePlace(event, unit, Texts::load(language));
  };
  EXPECT_EQ(said("en"), "12 km SE of Somewhere");
  EXPECT_THAT(said("de"), testing::MatchesRegex("[0-9]+ km (WSW|SW|W) von Iquique, Chile"));
  EXPECT_THAT(said("fr", DistanceUnit::miles), testing::MatchesRegex("Iquique, Chili, à [0-9]+ mi .*O.*"));
  event.latitude = 35.01;
  event.longitude = 135.76;
  EXPECT_THAT(said("es"), testing::EndsWith("Japón")) << "in the town there is no direction";
  EXPECT_THAT(said("es"), testing::Not(testing::HasSubstr("km")));
  event.latitude = 200;
  EXPECT_EQ(said("de"), "12 km SE of Somewhere") << "no coordinate";
}

TEST(WorldMap, ShowsTheWholeWorldWithoutARadius) {
  for (MapFrame const& frame : {frameAround(std::nullopt, 500, 2), frameAround(kPlace.coordinate, 0, 2)}) {
    EXPECT_EQ(frame.degreesWide, 360);
    EXPECT_EQ(frame.degreesHigh, 180);
    EXPECT_DOUBLE_EQ(frame.at({90, -180}).x, 0);
    EXPECT_DOUBLE_EQ(frame.at({-90, 0}).y, 1);
    EXPECT_DOUBLE_EQ(frame.at({45, 90}).x, 0.75);
  }
  EXPECT_EQ(frameAround(std::nullopt, 0, 4).degreesWide, 720) << "a wide picture has room beside the world";
  EXPECT_EQ(frameAround(std::nullopt, 0, 1).degreesHigh, 360);
}

struct FrameRow {
  Coordinate place;
  double radiusKm;
  double aspect;
};

void PrintTo(FrameRow const& row, std::ostream* out) {
  *out << row.radiusKm << " km around " << formatCoordinate(row.place);
}

struct Frames : testing::TestWithParam<FrameRow> {};

TEST_P(Frames, HoldTheCircleWithRoomBesideIt) {
  FrameRow const& row = GetParam();
  MapFrame const frame = frameAround(row.place, row.radiusKm, row.aspect);
  EXPECT_LE(frame.degreesWide, 360.000001);
  EXPECT_LE(frame.degreesHigh, 180.000001);
  double lowest = 1, highest = 0, left = 1, right = 0;
  for (Coordinate const& point : circleAround(row.place, row.radiusKm)) {
    EXPECT_NEAR(
        haversineKm(row.place, {point.latitude, std::remainder(row.place.longitude + point.longitude, 360)}),
        row.radiusKm, 0.5);
    MapPoint const at = frame.atOffset(point.longitude, point.latitude);
    lowest = std::min(lowest, at.y);
    highest = std::max(highest, at.y);
    left = std::min(left, at.x);
    right = std::max(right, at.x);
  }
  EXPECT_GE(lowest, 0);
  EXPECT_LE(highest, 1);
  EXPECT_GE(left, 0);
  EXPECT_LE(right, 1);
  EXPECT_GT(std::max(highest - lowest, right - left), 0.7) << "and not much room";
}

INSTANTIATE_TEST_SUITE_P(Rows, Frames,
                         testing::Values(FrameRow{{0, 0}, 500, 2}, FrameRow{{52, 21}, 1000, 2},
                                         FrameRow{{52, 21}, 250, 0.8}, FrameRow{{-17, 179.9}, 2500, 2},
                                         FrameRow{{64, -150}, 1000, 2}));

TEST(WorldMap, LiesAcrossThe180thMeridian) {
  MapFrame const frame = frameAround(Coordinate{-17, 179.5}, 500, 2);
  EXPECT_NEAR(frame.at({-17, -179.5}).x, 0.5 + 1 / frame.degreesWide, 1e-9);
  EXPECT_NEAR(frame.at({-17, 178.5}).x, 0.5 - 1 / frame.degreesWide, 1e-9);
}

TEST(WorldMap, EndsAtThePoles) {
  MapFrame const frame = frameAround(Coordinate{89, 0}, 1000, 2);
  EXPECT_NEAR(frame.at({90, 0}).y, 0, 1e-9);
  EXPECT_TRUE(std::isfinite(frame.degreesWide));
}

TEST(QuakeMap, HasThePointsInTheOrderOfTheList) {
  HazardsState const state = stateWith(
      {quakeOf("a", 5, {1, 2}, 59min), quakeOf("b", 3, {3, 4}, 1h), quakeOf("c", 3, {5, 6}, 6h)}, {900, 2.5});
  auto const shown = shownQuakes(state, kPlace, QuakeOrder::time, contextAt(kNow));
  QuakeMap const map = quakeMap(shown, state, kPlace, contextAt(kNow));
  EXPECT_THAT(map.points,
              ElementsAre(QuakePoint{{1, 2}, 5, 0}, QuakePoint{{3, 4}, 3, 1}, QuakePoint{{5, 6}, 3, 2}));
  EXPECT_EQ(map.radiusKm, 900);
  EXPECT_EQ(quakeMap(shown, state, std::nullopt, contextAt(kNow)).radiusKm, 0);
}

}  // namespace
}  // namespace nimbara
