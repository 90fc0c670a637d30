#include "desktop/views/map/map_layers.h"

#include "support/instants.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct MapLayersTest : testing::Test {
  Texts texts = Texts::load("en");
  ViewContext context{texts, {}, at("2026-11-21T09:20:00Z"), Calendar::utc(), ""};
  SupplementState state{.place = {{14.6, 121}, "Manila"}, .country = "PH"};
  Instant const checked = at("2026-11-21T09:10:00Z");

  TropicalStorm storm(std::string name, StormCategory category) const {
    TropicalStorm made;
    made.name = std::move(name);
    made.category = category;
    made.coordinate = {15, 179};
    made.lastUpdate = at("2026-11-21T06:00:00Z");
    made.past = {{at("2026-11-21T00:00:00Z"), {15, 178}, {}}, {at("2026-11-21T06:00:00Z"), {15, 179}, {}}};
    made.track = {{at("2026-11-21T06:00:00Z"), {15, 179}, {}},
                  {at("2026-11-21T12:00:00Z"), {15, 180}, {}, 200},
                  {at("2026-11-21T18:00:00Z"), {15, -179}, {}}};
    return made;
  }
};

TEST_F(MapLayersTest, AStormStandsBetweenWhereItCameFromAndWhereItGoes) {
  state.activeStorms = {FeedState::current, {{storm("Nika", StormCategory::storm)}, {}}, checked, {}, {}};
  auto const tracks = mapTracks(state, context);
  ASSERT_EQ(tracks.size(), 1U);
  EXPECT_THAT(tracks[0].points, ElementsAre(Coordinate{15, 178}, Coordinate{15, 179}, Coordinate{15, 180},
                                            Coordinate{15, -179}));
  EXPECT_EQ(tracks[0].firstForecast, 2U);
  EXPECT_EQ(tracks[0].at(), (Coordinate{15, 179}));
  EXPECT_THAT(tracks[0].galesKm, ElementsAre(0, 0, 200, 0));
  EXPECT_EQ(tracks[0].label, "Nika");
  EXPECT_EQ(tracks[0].title, "Nika: Tropical Storm");
}

TEST_F(MapLayersTest, TheStrongestStormLiesOnTopAndOneWithoutAPlaceNowhere) {
  auto lost = storm("Lost", StormCategory::five);
  lost.coordinate.latitude = 95;
  state.activeStorms.data.storms = {storm("Strong", StormCategory::four), lost,
                                    storm("Weak", StormCategory::depression)};
  auto const tracks = mapTracks(state, context);
  ASSERT_EQ(tracks.size(), 2U);
  EXPECT_EQ(tracks[0].label, "Weak");
  EXPECT_EQ(tracks[1].label, "Strong");
}

TEST_F(MapLayersTest, MarksGoFromWeakFiresToNewStrikes) {
  FireDetection weak, strong;
  weak.coordinate = {14, 121}, weak.frp = 1;
  strong.coordinate = {15, 121}, strong.frp = 5000;
  state.activeFires.data = {strong, weak};
  state.lightning.data = {{context.now, {14.5, 121}},
                          {context.now - std::chrono::minutes(45), {14.6, 121}},
                          {context.now, {14.5, 200}}};
  std::vector<std::pair<MapMarkKind, double>> kinds;
  for (MapMark const& mark : mapMarks(state, context)) kinds.emplace_back(mark.kind, mark.strength);
  using enum MapMarkKind;
  EXPECT_THAT(kinds, ElementsAre(std::pair(fire, 0.0), std::pair(fire, 1.0), std::pair(lightning, 0.25),
                                 std::pair(lightning, 1.0)));
}

TEST_F(MapLayersTest, TellsNoneFromNotCheckedAndNotSet) {
  EXPECT_THAT(layerNote(MapLayerKind::storms, state, context), IsEmpty());
  state.activeStorms = {FeedState::current, {}, checked, {}, {}};
  state.activeFires = notConfiguredReading<std::vector<FireDetection>>("no key");
  state.lightning.failure = ServiceFailure::answered(500);
  state.lightning.failedSince = checked;
  EXPECT_THAT(layerNote(MapLayerKind::storms, state, context), HasSubstr("No tropical storms reported"));
  EXPECT_THAT(layerNote(MapLayerKind::fires, state, context), HasSubstr("need your own free key"));
  EXPECT_THAT(layerNote(MapLayerKind::lightning, state, context), HasSubstr("could not be checked since"));
  EXPECT_THAT(layerNote(MapLayerKind::quakes, state, context), IsEmpty());
}

}  // namespace
}  // namespace nimbara
