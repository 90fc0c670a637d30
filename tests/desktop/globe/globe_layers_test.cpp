#include "desktop/views/globe/globe_layers.h"

#include "globe_states.h"
#include "support/instants.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::FloatNear;
using testing::HasSubstr;
using testing::SizeIs;

double degreesOf(GlobeStroke const& stroke) {
  constexpr double kDegree = 180 / 3.14159265358979;
  double const cosine =
      dot(stroke.from, stroke.to) / std::sqrt(dot(stroke.from, stroke.from) * dot(stroke.to, stroke.to));
  return std::acos(std::min(1.0, cosine)) * kDegree;
}

double longest(std::vector<GlobeStroke> const& strokes) {
  double most = 0;
  for (GlobeStroke const& stroke : strokes) most = std::max(most, degreesOf(stroke));
  return most;
}

double allTogether(std::vector<GlobeStroke> const& strokes) {
  double sum = 0;
  for (GlobeStroke const& stroke : strokes) sum += degreesOf(stroke);
  return sum;
}

struct ExtentRow {
  char const* name;
  std::vector<GeoBox> boxes;
  double degrees;  ///< of all edges, around the equator
};

struct Extents : testing::TestWithParam<ExtentRow> {};

TEST_P(Extents, HaveNoEdgesWithin) {
  auto const strokes = extentStrokes(GetParam().boxes);
  EXPECT_NEAR(allTogether(strokes), GetParam().degrees, 0.01);
  EXPECT_LE(longest(strokes), 1.0001);
}

INSTANTIATE_TEST_SUITE_P(Boxes, Extents,
                         testing::Values(ExtentRow{"None", {}, 0}, ExtentRow{"One", {{-1, 0, 1, 4}}, 12},
                                         ExtentRow{"Equal", {{-1, 0, 1, 4}, {-1, 0, 1, 4}}, 12},
                                         ExtentRow{"Within", {{-1, 0, 1, 4}, {-0.5, 1, 0.5, 2}}, 12},
                                         ExtentRow{"SideBySide", {{-1, 0, 1, 2}, {-1, 2, 1, 4}}, 12},
                                         ExtentRow{"Apart", {{-1, 0, 1, 2}, {-1, 3, 1, 4}}, 14},
                                         ExtentRow{"ToTheDateLine", {{-1, 176, 1, 180}}, 12},
                                         ExtentRow{"FromTheDateLine", {{-1, -180, 1, -176}}, 12}),
                         [](auto const& each) { return std::string(each.param.name); });

TEST(RadarExtent, IsThatOfEachSupplierOnce) {
  std::vector<GlobeStroke> expected;
  for (RadarSource const source : {RadarSource::noaa, RadarSource::dwd, RadarSource::jma}) {
    auto const edges = extentStrokes(supplierOf(source).boxes);
    expected.insert(expected.end(), edges.begin(), edges.end());
  }
  EXPECT_EQ(radarExtent(), expected);
  EXPECT_EQ(radarRow({}, contextAt(kNow)).sentence,
            "Radar coverage, NOAA/NWS, Deutscher Wetterdienst, JMA; others on the map");
}

MapTrack trackOver(std::vector<Coordinate> points, std::size_t firstForecast, double galesKm = 0) {
  MapTrack track;
  track.galesKm.assign(points.size(), 0);
  track.galesKm[firstForecast - 1] = galesKm;
  track.points = std::move(points);
  track.firstForecast = firstForecast;
  track.label = "Nika";
  track.title = "Nika: Tropical Storm";
  track.note = "120 km NE";
  return track;
}

struct WayRow {
  char const* name;
  MapTrack track;
  double degrees;  ///< beyond those of a storm that rests
};

struct Ways : testing::TestWithParam<WayRow> {};

TEST_P(Ways, AreAsLongAsWhatIsDrawnOfThem) {
  auto const strokes = stormStrokes(std::vector{GetParam().track});
  double const sign = allTogether(stormStrokes(std::vector{trackOver({GetParam().track.at()}, 1)}));
  EXPECT_NEAR(allTogether(strokes) - sign, GetParam().degrees, 0.02);
  EXPECT_LE(longest(strokes), 1.3);
}

INSTANTIATE_TEST_SUITE_P(
    Storms, Ways,
    testing::Values(WayRow{"Past", trackOver({{0, 170}, {0, 176}}, 2), 6},
                    WayRow{"EastOverTheDateLine", trackOver({{0, 177}, {0, -177}}, 2), 6},
                    WayRow{"WestOverTheDateLine", trackOver({{0, -177}, {0, 177}}, 2), 6},
                    WayRow{"ForecastInDashes", trackOver({{0, 176.5}, {0, -177}}, 1), 6.5 * 4 / 7},
                    WayRow{"BothInTurn", trackOver({{0, 170}, {0, 176}, {0, -177.5}}, 2), 6 + 6.5 * 4 / 7},
                    WayRow{"OverThePole", trackOver({{87, 0}, {87, 180}}, 2), 6}),
    [](auto const& each) { return std::string(each.param.name); });

TEST(StormStrokes, SayHowFarGalesReachNow) {
  double const degrees = 200 / 111.195;
  auto const rest = stormStrokes(std::vector{trackOver({{0, 10}}, 1)});
  auto const windy = stormStrokes(std::vector{trackOver({{0, 10}}, 1, 200)});
  ASSERT_GT(windy.size(), rest.size());
  Vector3 const& edge = windy[0].from;
  EXPECT_NEAR(degreesOf({directionTo({0, 10}), edge, 0}), degrees, 0.01);
  EXPECT_LT(windy[0].rgba & 0xff, rest[0].rgba & 0xff);
}

TEST(StormStrokes, OfOppositePlacesAreStillOnTheGround) {
  for (GlobeStroke const& stroke : stormStrokes(std::vector{trackOver({{0, 0}, {0, 180}}, 2)}))
    EXPECT_NEAR(dot(stroke.to, stroke.to), 1.006, 0.001);
}

TEST(StrokeRows, AreTheRenderersStrokes) {
  auto const rows = strokeRows(std::vector{GlobeStroke{{1, 0, 0}, {0, 1, 0}, 0x336699ff}});
  ASSERT_THAT(rows, SizeIs(1));
  EXPECT_EQ(rows[0].row2[3], 100);
  EXPECT_THAT(rows[0].data, ElementsAre(100, 0, 0, 0));
  EXPECT_THAT(rows[0].color,
              ElementsAre(FloatNear(0.2F, 1e-6F), FloatNear(0.4F, 1e-6F), FloatNear(0.6F, 1e-6F), 1));
}

TEST(SeenStroke, EndsAtTheLimb) {
  GlobeSight const sight(GlobeCamera{0, 180, 1, 800, 600});
  auto const over = [](Coordinate from, Coordinate to) {
    return GlobeStroke{directionTo(from), directionTo(to), 0};
  };
  auto const seen = seenStroke(over({0, 179.5}, {0, -179.5}), sight);
  ASSERT_TRUE(seen);
  EXPECT_NEAR(seen->first.x + seen->second.x, 800, 1e-6);
  EXPECT_LT(seen->first.x, seen->second.x) << "east is on the right on both sides of the date line";
  EXPECT_FALSE(seenStroke(over({0, -1}, {0, 1}), sight)) << "behind the earth";
  EXPECT_FALSE(seenStroke(over({0, 105}, {0, 80}), sight)) << "from the seen side to the other";
}

TEST(StormLabels, AreSpokenInFullWhereTheStormIsSeen) {
  auto const tracks = std::vector{trackOver({{10, 179}}, 1), trackOver({{10, 0}}, 1)};
  auto const labels = stormLabels(tracks, GlobeCamera{0, -179, 1, 800, 600});
  ASSERT_THAT(labels, SizeIs(2));
  EXPECT_EQ(labels[0].text, "Nika");
  EXPECT_EQ(labels[0].spoken, "Nika: Tropical Storm, 120 km NE");
  EXPECT_TRUE(labels[0].isShown && labels[0].isStorm && !labels[0].isPlace);
  EXPECT_FALSE(labels[1].isShown) << "beyond the earth";
}

TEST(StormLegend, TellsNoneFromNotKnownFromNotChecked) {
  GlobeState globe;
  globe.hidden = {"storms"};
  SupplementState state;
  auto const sentence = [&] { return stormRow(globe, &state, contextAt(kNow)).sentence; };
  EXPECT_EQ(stormRow(globe, nullptr, contextAt(kNow)).sentence, "Tropical storms, not known yet");
  EXPECT_EQ(sentence(), "Tropical storms, not known yet");
  state.activeStorms.failure = ServiceFailure::network({HttpError::Kind::timedOut, ""});
  EXPECT_EQ(sentence(), "Tropical storms, the service took too long to respond");
  state.activeStorms.data.storms.resize(2);
  EXPECT_EQ(sentence(), "Tropical storms, 2, the service took too long to respond");
  state.activeStorms = {FeedState::current, {}, kNow, {}, {}};
  EXPECT_EQ(sentence(), "Tropical storms, 0");
  state.activeStorms.data.misses = {{StormCentre::nhc, ServiceFailure::answered(503)}};
  EXPECT_THAT(sentence(), HasSubstr("Tropical storms, 0, Not checked: National Hurricane Center"));
  EXPECT_FALSE(stormRow(globe, &state, contextAt(kNow)).isOn);
}

}  // namespace
}  // namespace nimbara
