#include "desktop/views/globe/globe_view.h"

#include "app/engine/engine_globe.h"
#include "feeds/feed_source.h"
#include "feeds/quakes/earthquake_service.h"
#include "globe/satellite_feed.h"
#include "globe_states.h"
#include "support/answers/made_satellites.h"
#include "support/fake_http_client.h"
#include "support/manual_clock.h"
#include "support/manual_runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace nimbara {
namespace {

using namespace nimbara::test;
using testing::ElementsAre;
using testing::FloatNear;
using testing::IsEmpty;
using testing::SizeIs;

TEST(SatelliteRows, AreTheRenderersBytes) {
  std::vector<float> const positions{9, 9, 9, 1.5F, 0.25F, -0.5F};
  std::vector<float> const colors{1, 1, 1, 1, 0.1F, 0.2F, 0.3F, 1};
  auto const rows = satelliteRows(positions, colors, std::vector<std::uint32_t>{1}, 2);
  ASSERT_THAT(rows, SizeIs(1));
  // x of the scene is the frame's y, its y the frame's z, its z the frame's x.
  float const expected[] = {1, 0, 0, 25, 0, 1, 0, -50, 0, 0, 1, 150, 0.1F, 0.2F, 0.3F, 1, 2, 0, 0, 0};
  EXPECT_EQ(std::memcmp(rows.data(), expected, sizeof expected), 0);
}

TEST(SatelliteRows, LeaveOutWhatIsNowhere) {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  constexpr float kFar = std::numeric_limits<float>::infinity();
  std::vector<float> const positions{0, 0, 0, kNaN, 1, 1, 1, kFar, 1, 1, 1, 1, 1, 1, 1};
  std::vector<float> const colors{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1};
  auto const rows = satelliteRows(positions, colors, std::vector<std::uint32_t>{0, 1, 2, 3, 4}, 1);
  EXPECT_THAT(rows, SizeIs(1));
}

TEST(EarthquakeRows, LieOnTheGroundFromTheLeastMagnitudeOn) {
  std::vector<EarthquakeEvent> const events{quakeOf(2.49, {0, 0}), quakeOf(2.5, {0, 90}),
                                            quakeOf(6, {0, 90}, kNow - std::chrono::hours(24)),
                                            quakeOf(5, {200, 0}), quakeOf(std::nan(""), {0, 0})};
  auto const rows = earthquakeRows(events, kNow);
  ASSERT_THAT(rows, SizeIs(2));
  EXPECT_THAT(rows[0].row0[3], FloatNear(100.4F, 0.01F));
  EXPECT_THAT(rows[0].row1[3], FloatNear(0, 0.01F));
  // East of 90° east is the scene's -z, north its y.
  EXPECT_LT(rows[0].row2[0], 0);
  EXPECT_GT(rows[0].row1[1], 0);
  EXPECT_GT(rows[1].row1[1], rows[0].row1[1]) << "the stronger, the wider";
  EXPECT_LT(rows[1].color[3], rows[0].color[3]) << "the older, the paler";
}

TEST(OrbitRows, JoinEachPointToTheNext) {
  std::vector<OrbitPoint> const path{{kNow, 0, 0, SGP4::kEarthRadiusKm}, {kNow, 0, 90, 0}, {kNow, 90, 0, 0}};
  auto const rows = orbitRows(path, {1, 1, 1});
  ASSERT_THAT(rows, SizeIs(2));
  EXPECT_THAT(rows[0].row2[3], FloatNear(200, 0.01F));
  EXPECT_THAT(rows[0].data, ElementsAre(FloatNear(100, 0.01F), FloatNear(0, 0.01F), FloatNear(0, 0.01F), 0));
  EXPECT_THAT(rows[1].data[1], FloatNear(100, 0.01F));
  EXPECT_THAT(orbitRows(std::vector<OrbitPoint>(1), {1, 1, 1}), IsEmpty());
}

TEST(OrbitRows, PassThroughTheSatelliteThemselves) {
  Vector3 const satellite{0.7, 0.3, 0.9};
  auto const ground =
      groundPosition({satellite[0] * SGP4::kEarthRadiusKm, satellite[1] * SGP4::kEarthRadiusKm,
                      satellite[2] * SGP4::kEarthRadiusKm});
  Vector3 const back = spacePoint({kNow, ground.latitude, ground.longitude, ground.altitudeKm});
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(back[i], satellite[i], 2e-3);
}

std::vector<std::string> linesOf(std::vector<LegendRow> const& rows) {
  std::vector<std::string> lines;
  for (LegendRow const& row : rows) lines.push_back((row.isOn ? "+ " : "- ") + row.sentence);
  return lines;
}

TEST(Legend, TellsEachRowOnce) {
  GlobeStateMaker maker;
  maker.group("stations").satellite("ISS (ZARYA)", {0, 0}, 1.06, true);
  maker.group("iridium-33-debris").satellite("IRIDIUM 33 DEB", {0, 0}, 1.1);
  maker.group("cosmos-2251-debris")
      .satellite("COSMOS 2251 DEB", {0, 0}, 1.1)
      .satellite("COSMOS 2251 DEB", {0, 9}, 1.1);
  maker.state().hidden = {"debris", "earthquakes"};
  maker.state().groups[1].state = GlobeGroup::State::failed;
  maker.state().groups[1].failure = ServiceFailure::network({HttpError::Kind::unresolvedHost, ""});
  maker.state().groups[3].state = GlobeGroup::State::failed;
  maker.state().groups[4].state = GlobeGroup::State::waiting;
  maker.state().groups[7].state = GlobeGroup::State::failed;
  maker.state().hasEarthquakes = true;
  maker.state().groups[2].state = GlobeGroup::State::stale;
  maker.state().groups[2].fetched = kNow - std::chrono::hours(9);
  maker.state().earthquakes = std::make_shared<std::vector<EarthquakeEvent> const>(
      std::vector<EarthquakeEvent>{quakeOf(2.4, {0, 0}), quakeOf(2.5, {0, 0})});
  EXPECT_THAT(linesOf(legendRows(*maker.made(), contextAt(kNow))),
              ElementsAre("+ Space stations, 1", "+ Starlink, the server could not be found",
                          "+ OneWeb, 0, orbits from 9 h ago", "+ Weather satellites, unavailable",
                          "+ Galileo, not known yet", "+ GLONASS, 0", "- Debris, 2, unavailable",
                          "- Earthquakes, 1"));
  auto const rows = legendRows(*maker.made(), contextAt(kNow));
  EXPECT_EQ(rows[0].colour, "#ffd64d");
  EXPECT_EQ(rows[1].count, "–");
  EXPECT_EQ(rows[4].count, "–");
  EXPECT_EQ(rows[5].count, "0");
}

struct EarthquakeRow {
  bool areAsked;
  std::optional<ServiceFailure> failure;
  std::string expected;
};

TEST(Legend, KnowsNoEarthquakesFromNotKnown) {
  for (EarthquakeRow const& row :
       {EarthquakeRow{false, {}, "+ Earthquakes, not known yet"}, EarthquakeRow{true, {}, "+ Earthquakes, 0"},
        EarthquakeRow{true, ServiceFailure::network({HttpError::Kind::timedOut, ""}),
                      "+ Earthquakes, the service took too long to respond"}}) {
    GlobeStateMaker maker;
    maker.state().hasEarthquakes = row.areAsked;
    maker.state().earthquakeFailure = row.failure;
    EXPECT_EQ(linesOf(legendRows(*maker.made(), contextAt(kNow))).back(), row.expected);
  }
}

struct StatusRow {
  bool isLoading, hasFailed, hasSatellites;
  char const* expected;
};

TEST(GlobeStatus, SpeaksOnlyWithoutSatellites) {
  for (StatusRow const& row :
       {StatusRow{true, false, false, "Loading satellites…"},
        {true, false, true, ""},
        {false, true, true, ""},
        {false, true, false, "Could not fetch the satellites. Retrying in ten minutes."}}) {
    GlobeStateMaker maker;
    maker.state().isLoading = row.isLoading;
    if (row.hasFailed) maker.state().groups[3].state = GlobeGroup::State::failed;
    if (row.hasSatellites) maker.group("stations").satellite("A", {0, 0}, 2);
    EXPECT_EQ(globeStatus(*maker.made(), contextAt(kNow)), row.expected);
  }
}

ChosenSatellite chosenIss() {
  SatelliteInfo info{"25544", "ISS (ZARYA)", 25544,   "sat.kind.iss", "",   418.6,
                     27588.2, 52.516,        -13.389, 92.94,          false};
  info.longitude = 13.389;
  return {0, "sat.group.stations", info, {}};
}

TEST(SatelliteCard, IsInTheUsersUnits) {
  GlobeStateMaker maker;
  maker.group("stations").satellite("ISS (ZARYA)", {0, 0}, 1.06, true);
  EXPECT_EQ(satelliteCard(*maker.made(), contextAt(kNow)), SatelliteCard{});
  maker.state().chosen = chosenIss();
  SatelliteCard const card = satelliteCard(*maker.made(), contextAt(kNow));
  EXPECT_EQ(card.sentence,
            "ISS (ZARYA), International Space Station · Space stations, Altitude 419\u00A0km, Speed "
            "27588\u00A0km/h, Latitude 52.52°, Longitude 13.39°, Above Germany, Orbital period 92.9 min, "
            "Light in Earth's shadow, Catalog number 25544");
  ViewContext imperial = contextAt(kNow);
  imperial.units = Units::imperial();
  auto const rows = satelliteCardRows(*maker.made(), imperial);
  EXPECT_EQ(rows[0].value, "260\u00A0mi");
  EXPECT_EQ(rows[1].value, "17143\u00A0mph");
}

TEST(GlobeLabels, StandWhereTheyCanBeSeen) {
  GlobeStateMaker maker;
  maker.group("stations")
      .satellite("ISS (ZARYA)", {0, 0}, 1.06, true)
      .satellite("CSS (TIANHE)", {0, 180}, 1.06, true);
  maker.satellite("PROGRESS", {5, 5}, 1.06);
  GlobeCamera const camera{0, 0, 1, 800, 600};
  auto labels = globeLabels(*maker.made(), Place{{0, 10}, "Home", "", ""}, camera);
  ASSERT_THAT(labels, SizeIs(3));
  EXPECT_EQ(labels[0].text, "Home");
  EXPECT_TRUE(labels[0].isPlace && labels[0].isShown);
  EXPECT_EQ(labels[1].x, 400);
  EXPECT_FALSE(labels[2].isShown) << "beyond the earth";
  maker.state().hidden = {"stations"};
  maker.state().chosen = ChosenSatellite{2, "sat.group.stations", {}, {}};
  labels = globeLabels(*maker.made(), std::nullopt, camera);
  ASSERT_THAT(labels, SizeIs(1));
  EXPECT_EQ(labels[0].text, "PROGRESS") << "the chosen one is named whatever is hidden";
}

std::vector<std::string> namesOf(std::vector<SatelliteMatch> const& matches) {
  std::vector<std::string> names;
  for (SatelliteMatch const& match : matches) names.push_back(match.name);
  return names;
}

TEST(SatelliteMatches, PutWholeNamesFirst) {
  GlobeStateMaker maker;
  maker.group("weather")
      .satellite("OLD NOAA", {0, 0}, 1.1)
      .satellite("NOAA 15", {0, 0}, 1.1)
      .satellite("NOAA", {0, 0}, 1.1);
  maker.group("stations").satellite("ISS (ZARYA)", {0, 0}, 1.06, true);
  auto const state = maker.made();
  auto const of = [&](char const* text, std::size_t most) {
    return namesOf(satelliteMatches(*state, text, most, contextAt(kNow)));
  };
  EXPECT_THAT(of(" noaa ", 9), ElementsAre("NOAA", "NOAA 15", "OLD NOAA"));
  EXPECT_THAT(of("noaa", 1), ElementsAre("NOAA"));
  EXPECT_THAT(of("zarya", 9), ElementsAre("ISS (ZARYA)"));
  EXPECT_THAT(of("x", 9), IsEmpty());
  EXPECT_THAT(of("", 2), ElementsAre("ISS (ZARYA)", "OLD NOAA"));
}

TEST(HiddenRows, AreReadAsTheyAreWritten) {
  EXPECT_THAT(hiddenRows(""), IsEmpty());
  EXPECT_THAT(hiddenRows("debris, starlink,,"), ElementsAre("debris", "starlink"));
  EXPECT_EQ(hiddenSetting(hiddenRows(" starlink,debris")), "debris,starlink");
}

/// The core part with a server that answers from a list.
struct GlobeTest : testing::Test {
  static std::string elements(int count, int firstNumber) {
    Drawn draw;
    std::string text;
    for (int i = 0; i < count; ++i) {
      SGP4::TLE tle = madeElements(draw, {1, 400, 420, 1e-4, 2e-4, 51, 52, -4, -3.9}, firstNumber + i);
      tle.epochDay = 2461365.5;
      tle.name = "SAT-" + std::to_string(firstNumber + i);
      text += *SGP4::writeElements(tle);
    }
    return text;
  }

  void answerAllGroups(int perGroup) {
    for (std::size_t i = 0; i < SatelliteCatalog::groups().size(); ++i)
      http.willAnswer(200, elements(perGroup, 1000 * (static_cast<int>(i) + 1)));
  }
  void propagate() {
    while (globe.tick()->frame->time != clock.now()) std::this_thread::yield();
  }

  FakeHttpClient http;
  FakeHttpClient quakeHttp;
  ManualClock clock{kNow};
  ManualRunner work;
  RelayFeedSource relay{http, clock, "http://feed.test"};
  RelayFeedSource quakeRelay{quakeHttp, clock, "http://feed.test"};
  SatelliteFeed feed{
      [this](std::string_view group, std::stop_token const& stop) -> Result<ElementSets, ServiceFailure> {
        auto body = relay.get({FeedKey::Kind::satellites, std::string(group)}, stop);
        if (!body) return std::unexpected(body.error());
        return ElementSets{body->body, body->fetchedAt};
      },
      clock,
      {}};
  EarthquakeService quakes{quakeRelay, clock, {{}, false}};
  int changes = 0;
  std::string saved;
  EngineGlobe globe{
      {feed, always(quakes), clock, work, [this] { ++changes; }, [this](std::string text) { saved = text; }},
      "debris"};
};

TEST_F(GlobeTest, AsksForNothingBeforeItIsShown) {
  globe.setShown(false);
  globe.tick();
  globe.choose(3);
  EXPECT_EQ(work.waiting(), 0U);
  EXPECT_THAT(http.requests, IsEmpty());
}

TEST_F(GlobeTest, LoadsGroupAfterGroupAndPropagates) {
  answerAllGroups(3);
  globe.setShown(true);
  globe.setShown(true);
  EXPECT_TRUE(globe.state()->isLoading);
  EXPECT_EQ(work.waiting(), 2U);
  work.runAll();
  auto state = globe.state();
  EXPECT_FALSE(state->isLoading);
  EXPECT_EQ(changes, 9 + 2);
  EXPECT_THAT(state->catalogue->names, SizeIs(27));
  EXPECT_EQ(state->frame->positions.size(), 81U);
  EXPECT_EQ(state->frame->time, kNow);
  auto const before = state->frame->positions;
  clock.advance(std::chrono::seconds(1));
  propagate();
  EXPECT_NE(globe.state()->frame->positions, before);
}

TEST_F(GlobeTest, RestsWhileItIsHidden) {
  answerAllGroups(1);
  globe.setShown(true);
  work.runAll();
  globe.setShown(false);
  clock.advance(std::chrono::hours(10));
  for (int i = 0; i < 3; ++i) globe.tick();
  EXPECT_EQ(globe.state()->frame->time, kNow);
  EXPECT_EQ(work.waiting(), 0U);
}

TEST_F(GlobeTest, AsksAgainForWhatFailedAfterTenMinutes) {
  globe.setShown(true);
  work.runAll();
  EXPECT_EQ(globe.state()->groups[0].state, GlobeGroup::State::failed);
  EXPECT_TRUE(globe.state()->earthquakeFailure);
  clock.advance(std::chrono::minutes(10) - std::chrono::milliseconds(1));
  globe.tick();
  EXPECT_EQ(work.waiting(), 1U) << "the earthquakes alone";
  work.runAll();
  clock.advance(std::chrono::milliseconds(1));
  answerAllGroups(1);
  globe.tick();
  work.runAll();
  EXPECT_THAT(globe.state()->catalogue->names, SizeIs(9));
}

TEST_F(GlobeTest, KeepsTheChosenSatelliteOverAReload) {
  answerAllGroups(2);
  globe.setShown(true);
  work.runAll();
  globe.choose(3);
  auto const chosen = globe.state()->chosen;
  ASSERT_TRUE(chosen);
  EXPECT_EQ(chosen->info.name, "SAT-2001");
  EXPECT_EQ(chosen->groupKey, "sat.group.starlink");
  EXPECT_EQ(chosen->orbit.size(), 181U);
  clock.advance(std::chrono::hours(6));
  answerAllGroups(5);
  globe.tick();
  work.runAll();
  EXPECT_EQ(globe.state()->chosen->info.name, "SAT-2001");
  EXPECT_EQ(globe.state()->chosen->entry, 6U);
  globe.choose(std::nullopt);
  EXPECT_FALSE(globe.state()->chosen);
  globe.choose(99'999);
  EXPECT_FALSE(globe.state()->chosen);
}

TEST_F(GlobeTest, SavesWhatIsHidden) {
  EXPECT_THAT(globe.state()->hidden, ElementsAre("debris"));
  globe.setHidden("starlink", true);
  EXPECT_EQ(saved, "debris,starlink");
  globe.setHidden("debris", false);
  EXPECT_EQ(saved, "starlink");
  EXPECT_THAT(globe.state()->hidden, ElementsAre("starlink"));
}

/// The frame in which satellites, sun and camera meet.
TEST_F(GlobeTest, HasTheSunAboveTheMeridianOfNoon) {
  ASSERT_EQ(kNow, at("2026-11-21T12:20:00Z"));
  auto const sun = groundPosition([&] {
    Vector3 direction = globe.state()->sun;
    for (double& part : direction) part *= SGP4::kEarthRadiusKm;
    return direction;
  }());
  // Twenty minutes past noon, and the equation of time of fourteen minutes.
  EXPECT_NEAR(sun.longitude, -8.5, 0.3);
  EXPECT_NEAR(sun.latitude, -20.0, 0.3);
}

}  // namespace
}  // namespace nimbara
