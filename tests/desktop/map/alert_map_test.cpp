#include "desktop/views/hazards/alert_map.h"

#include "desktop/states/hazard_states.h"
#include "desktop/views/hazards/elsewhere_view.h"
#include "feeds/regions/regions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using namespace nimbara::test;
using namespace std::chrono_literals;
using testing::DoubleNear;
using testing::IsEmpty;

constexpr Coordinate kWarsaw{52.23, 21.01};

WeatherAlert ofEvent(std::string event) {
  WeatherAlert alert;
  alert.event = std::move(event);
  return alert;
}

TEST(AlertMaps, TakeTheRegionFromTheOutlines) {
  auto const outlines = embeddedRegions();
  ASSERT_NE(outlines, nullptr);
  auto const here = placeRegionsOf(kWarsaw, outlines).codes;
  ASSERT_FALSE(here.empty());
  std::string const region = here[0].registry + ":" + here[0].code;
  auto const map = alertMap(ofEvent("PL|wind|" + region), kWarsaw, outlines.get());
  ASSERT_FALSE(map.area.rings.empty());
  MapFrame const frame = frameOf(map, 1.5);
  for (auto const& ring : map.area.rings) {
    for (Coordinate const& corner : ring) {
      EXPECT_THAT(frame.at(corner).x, DoubleNear(0.5, 0.5));
      EXPECT_THAT(frame.at(corner).y, DoubleNear(0.5, 0.5));
    }
  }
  for (std::string const event :
       {"PL|wind|EMMA_ID:none", "PL|wind|Northern hills", "nws|KLOT.WS.A.0001", ""}) {
    EXPECT_THAT(alertMap(ofEvent(event), kWarsaw, outlines.get()).area.rings, IsEmpty()) << event;
  }
  EXPECT_THAT(alertMap({}, kWarsaw, outlines.get()).area.rings, IsEmpty()) << "of the forecast";
  EXPECT_THAT(alertMap(ofEvent("PL|wind|" + region), kWarsaw, nullptr).area.rings, IsEmpty());
}

struct FrameRow {
  char const* why;
  Coordinate place;
  std::vector<Coordinate> corners;
  double aspect;
  Coordinate centre;
  double high;
};

void PrintTo(FrameRow const& row, std::ostream* out) {
  *out << row.why;
}

struct AlertFrames : testing::TestWithParam<FrameRow> {};

TEST_P(AlertFrames, HoldThePlaceAndTheArea) {
  FrameRow const& row = GetParam();
  MapFrame const frame = frameOf({{{row.corners}}, row.place}, row.aspect);
  EXPECT_NEAR(frame.centre.latitude, row.centre.latitude, 1e-6);
  EXPECT_NEAR(frame.centre.longitude, row.centre.longitude, 1e-6);
  EXPECT_NEAR(frame.degreesHigh, row.high, 1e-3);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AlertFrames,
    testing::Values(FrameRow{"small", {0, 10}, {{0, 10}, {0.1, 10}, {0.1, 10.1}}, 1, {0.05, 10.05}, 1.3},
                    FrameRow{"tall", {0, 10}, {{0, 10}, {4, 10}, {4, 11}}, 1, {2, 10.5}, 5.2},
                    FrameRow{"flat", {0, 10}, {{0, 10}, {0, 14}, {1, 14}}, 2, {0.5, 12}, 2.6},
                    FrameRow{"besideThePlace", {0, 10}, {{2, 12}, {4, 12}, {4, 14}}, 1, {2, 12}, 5.2},
                    FrameRow{
                        "acrossTheDateLine", {0, 179}, {{0, -179}, {1, -179}, {1, 179}}, 1, {0.5, 180}, 2.6}),
    [](auto const& row) { return std::string(row.param.why); });

struct ElsewhereRow {
  char const* why;
  std::vector<std::pair<char const*, AlertSeverity>> alerts;  ///< of the second place, the most severe first
  std::chrono::minutes left;
  std::vector<std::string> expected;
};

void PrintTo(ElsewhereRow const& row, std::ostream* out) {
  *out << row.why;
}

struct Elsewhere : testing::TestWithParam<ElsewhereRow> {};

TEST_P(Elsewhere, AreTheWarningsOfOtherPlaces) {
  ElsewhereRow const& row = GetParam();
  auto const snapshot = snapshotOf(stateOf(mildWeek()));
  std::vector<PlaceCoverage> all(2);
  for (std::size_t i = 0; i < 2; ++i) {
    all[i].coordinate = snapshot->places.places[i].coordinate;
    for (auto const& [title, severity] : row.alerts) {
      all[i].alerts.push_back(alertOf(severity, title));
      all[i].alerts.back().expires = kNow + row.left;
    }
  }
  std::vector<std::string> texts;
  for (auto const& view : elsewhereViews(snapshot->places, all, snapshot->place, contextAt(kNow))) {
    EXPECT_EQ(view.placeId, snapshot->places.places[1].id.text()) << "not of the one that is shown";
    texts.push_back(view.sentence);
  }
  EXPECT_EQ(texts, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Elsewhere,
    testing::Values(ElsewhereRow{"none", {}, 1min, {}},
                    ElsewhereRow{
                        "one", {{"Cold", AlertSeverity::warning}}, 1min, {"Elsewhere, Cold, Warning"}},
                    ElsewhereRow{"ended", {{"Cold", AlertSeverity::warning}}, 0min, {}},
                    ElsewhereRow{"several",
                                 {{"Cold", AlertSeverity::critical}, {"Wind", AlertSeverity::advisory}},
                                 1min,
                                 {"Elsewhere, Cold and 1 more, Critical"}}),
    [](auto const& row) { return std::string(row.param.why); });

}  // namespace
}  // namespace nimbara
