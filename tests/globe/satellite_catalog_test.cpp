// The catalogue, its feed and the layer, over element sets made up here.

#include "globe/satellite_layer.h"
#include "support/answers/made_satellites.h"
#include "support/instants.h"
#include "support/manual_clock.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nimbara {
namespace {

using Kind = SatelliteCatalog::Kind;

SGP4::TLE named(std::string name, double altitudeKm = 500, int number = 40'000) {
  test::Drawn draw;
  SGP4::TLE tle =
      test::madeElements(draw, {1, altitudeKm, altitudeKm + 1, 1e-4, 2e-4, 50, 51, -4.1, -4}, number);
  tle.epoch = test::at("2026-11-20T00:00:00Z");
  tle.name = std::move(name);
  return tle;
}

std::string text(std::vector<std::string> const& names) {
  std::string out;
  int number = 40'000;
  for (std::string const& name : names) out += SGP4::writeElements(named(name, 500, ++number)).value();
  return out;
}

TEST(ElementWriter, WhatIsWrittenReadsBack) {
  test::Drawn draw;
  for (int i = 0; i < 2000; ++i) {
    SGP4::TLE tle = test::madeElements(draw, {1, 200, 36'000, 0, 0.9, 0, 180, -9, -1}, i * 169);
    tle.epoch = test::at("2026-11-20T00:00:00Z");
    tle.name = "MADE " + std::to_string(i);
    tle.ndot = draw(-0.9, 0.9);
    tle.nddot = draw(-1e-4, 1e-4);
    auto const written = SGP4::writeElements(tle);
    ASSERT_TRUE(written) << written.error();
    auto const document = SGP4::readElements(*written);
    ASSERT_EQ(document.elements.size(), 1U) << document.problems[0].reason << "\n" << *written;
    SGP4::TLE const& read = document.elements[0];
    EXPECT_EQ(read.satnum, tle.satnum);
    EXPECT_EQ(read.name, tle.name);
    EXPECT_EQ(read.epochDay, tle.epochDay);
    EXPECT_NEAR(read.epochFraction, tle.epochFraction, 1e-12);
    EXPECT_NEAR(read.ecco, tle.ecco, 5.1e-8);
    EXPECT_NEAR(read.inclo, tle.inclo, 1e-6);
    EXPECT_NEAR(std::remainder(read.mo - tle.mo, 2 * std::numbers::pi), 0, 1e-6);
    EXPECT_NEAR(read.no_kozai, tle.no_kozai, 3e-11);
    EXPECT_NEAR(read.bstar, tle.bstar, std::abs(tle.bstar) * 1e-4);
    EXPECT_NEAR(read.ndot, tle.ndot, 5.1e-9);
  }
}

TEST(ElementWriter, SaysWhatColumnsCannotHold) {
  std::pair<void (*)(SGP4::TLE&), std::string_view> const rows[] = {
      {[](SGP4::TLE& t) { t.satnum = 340'000; }, "number"},
      {[](SGP4::TLE& t) { t.ecco = 1; }, "eccentricity"},
      {[](SGP4::TLE& t) { t.ecco = std::nan(""); }, "eccentricity"},
      {[](SGP4::TLE& t) { t.inclo = 4; }, "angles"},
      {[](SGP4::TLE& t) { t.no_kozai = 0; }, "mean motion"},
      {[](SGP4::TLE& t) { t.ndot = 1.5; }, "changes"},
      {[](SGP4::TLE& t) { t.epoch = test::at("2057-01-01T00:00:00Z"); }, "epoch"}};
  for (auto const& [spoil, word] : rows) {
    SGP4::TLE tle = named("X");
    spoil(tle);
    auto const written = SGP4::writeElements(tle);
    ASSERT_FALSE(written) << word;
    EXPECT_NE(written.error().find(word), std::string::npos) << written.error();
  }
}

TEST(SatelliteCatalog, KindsComeFromNamesOrbitsAndGroups) {
  struct Row {
    std::string name, group;
    double altitudeKm;
    Kind kind;
    bool isNamed;
  };
  Row const rows[] = {{"ISS (ZARYA)", "stations", 420, Kind::iss, true},
                      {"ISS (NAUKA)", "stations", 420, Kind::iss, false},
                      {"ISS DEB", "stations", 400, Kind::generic, false},
                      {"CSS (TIANHE)", "stations", 390, Kind::tiangong, true},
                      {"CSS (WENTIAN)", "stations", 390, Kind::tiangong, false},
                      {"HST", "stations", 510, Kind::hubble, true},
                      {"STARLINK-1007", "starlink", 550, Kind::starlink, false},
                      {"STARLINK-1007 DEB", "starlink", 550, Kind::generic, false},
                      {"CAPELLA-6 (WHITNEY)", "starlink", 550, Kind::generic, false},
                      {"ONEWEB-0012", "oneweb", 1200, Kind::oneweb, false},
                      {"GSAT0210 (GALILEO 13)", "galileo", 23'222, Kind::gps, false},
                      {"COSMOS 2456 (730)", "glo-ops", 19'130, Kind::gps, false},
                      {"NOAA 19", "weather", 850, Kind::generic, false},
                      {"METEOSAT-11", "weather", 35'786, Kind::geo, false},
                      {"COSMOS 2251 DEB", "cosmos-2251-debris", 780, Kind::generic, false}};
  for (auto const& [name, group, altitude, kind, isNamed] : rows) {
    EXPECT_EQ(SatelliteCatalog::kindOf(SGP4::initialise(named(name, altitude)), group), kind) << name;
    EXPECT_EQ(SatelliteCatalog::isNamed(name), isNamed) << name;
  }
  EXPECT_EQ(SatelliteCatalog::kindKey(Kind::geo, "weather"), "sat.kind.weather");
  EXPECT_EQ(SatelliteCatalog::kindKey(Kind::geo, "starlink"), "sat.kind.geo");
  EXPECT_EQ(SatelliteCatalog::kindKey(Kind::iss, "weather"), "sat.kind.iss");
}

TEST(SatelliteCatalog, TheDebrisCloudsAreOneInTheLegend) {
  auto const* const cosmos = SatelliteCatalog::group("cosmos-2251-debris");
  auto const* const fengyun = SatelliteCatalog::group("fengyun-1c-debris");
  ASSERT_TRUE(cosmos != nullptr && fengyun != nullptr);
  EXPECT_EQ(cosmos->colorIndex, fengyun->colorIndex);
  EXPECT_EQ(cosmos->display, "sat.group.debris");
  EXPECT_EQ(SatelliteCatalog::groups().size(), 9U);
  EXPECT_EQ(SatelliteCatalog::group("noaa"), nullptr);
}

TEST(SatelliteCatalog, RecordsThatCannotBeUsedAreCounted) {
  SGP4::TLE decayed = named("DECAYED");
  decayed.no_kozai = 17.5 * 2 * std::numbers::pi / 1440;
  auto const parsed =
      SatelliteCatalog::parse(text({"A", "B"}) + "BAD\n1 broken line that is long enough to count\n" +
                                  SGP4::writeElements(decayed).value(),
                              *SatelliteCatalog::group("weather"));
  EXPECT_EQ(parsed.entries.size(), 2U);
  EXPECT_EQ(parsed.dropped, 2U);
}

class Feed : public testing::Test {
 protected:
  SatelliteFeed feed() {
    return {[this](std::string_view group, std::stop_token const&) -> Result<ElementSets, ServiceFailure> {
              asked.emplace_back(group);
              return answer;
            },
            clock, folder.path() / "satellites"};
  }
  void willAnswer(std::string body) { answer = ElementSets{std::move(body), clock.now()}; }
  SatelliteCatalog::Group const& stations = *SatelliteCatalog::group("stations");

  test::TemporaryFolder folder;
  test::ManualClock clock{test::at("2026-11-21T06:00:00Z")};
  Result<ElementSets, ServiceFailure> answer = std::unexpected(ServiceFailure::answered(503));
  std::vector<std::string> asked;
};

TEST_F(Feed, AsksForTheGroupAndKeepsItsTextForSixHours) {
  willAnswer(text({"ISS (ZARYA)"}));
  auto const first = feed().load(stations);
  ASSERT_TRUE(first) << sentenceOf(first.error());
  EXPECT_EQ(first->source, SatelliteGroupLoad::Source::server);
  EXPECT_EQ(asked, std::vector<std::string>{"stations"});
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "satellites" / "stations.txt"));

  clock.advance(std::chrono::seconds(21'599));
  auto const second = feed().load(stations);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->source, SatelliteGroupLoad::Source::file);
  EXPECT_EQ(second->parsed.entries.size(), 1U);
  EXPECT_EQ(asked.size(), 1U);

  clock.advance(std::chrono::seconds(1));
  willAnswer(text({"ISS (ZARYA)", "HST"}));
  auto const third = feed().load(stations);
  ASSERT_TRUE(third);
  EXPECT_EQ(third->source, SatelliteGroupLoad::Source::server);
  EXPECT_EQ(third->parsed.entries.size(), 2U);
}

TEST_F(Feed, WhatIsNoElementSetOverwritesNothing) {
  willAnswer(text({"ISS (ZARYA)"}));
  ASSERT_TRUE(feed().load(stations));
  clock.advance(std::chrono::hours(7));
  for (char const* const body : {"", "\r\n", "No GP data found", "<html>log in</html>", "Invalid query"}) {
    willAnswer(body);
    auto const stale = feed().load(stations);
    ASSERT_TRUE(stale) << body;
    EXPECT_EQ(stale->source, SatelliteGroupLoad::Source::staleFile);
    EXPECT_EQ(stale->fetched, test::at("2026-11-21T06:00:00Z"));
    EXPECT_TRUE(stale->failure);
    EXPECT_EQ(stale->parsed.entries.size(), 1U);
  }
}

TEST_F(Feed, WithoutAnyTextThereIsAReason) {
  answer = std::unexpected(ServiceFailure::answered(503));
  auto const none = feed().load(stations);
  ASSERT_FALSE(none);
  EXPECT_EQ(none.error(), ServiceFailure::answered(503));
}

TEST_F(Feed, ATextIsAsOldAsItsSourceSays) {
  answer = ElementSets{text({"HST"}), clock.now() - std::chrono::hours(5)};
  EXPECT_EQ(feed().load(stations)->fetched, clock.now() - std::chrono::hours(5));
  clock.advance(std::chrono::minutes(59));
  EXPECT_EQ(feed().load(stations)->source, SatelliteGroupLoad::Source::file);
  clock.advance(std::chrono::minutes(1));
  feed().load(stations);
  EXPECT_EQ(asked.size(), 2U);
}

SatelliteGroupLoad loadOf(std::string const& group, std::vector<std::string> const& names) {
  auto const& found = *SatelliteCatalog::group(group);
  return {found, SatelliteGroupLoad::Source::server, {}, SatelliteCatalog::parse(text(names), found), {}};
}

std::vector<SatelliteGroupLoad> twoGroups() {
  std::vector<SatelliteGroupLoad> loads;
  loads.push_back(loadOf("stations", {"ISS (ZARYA)", "HST"}));
  loads.push_back(loadOf("weather", {"NOAA 19", "NOAA 20", "NOAA 21"}));
  return loads;
}

constexpr auto kNow = "2026-11-21T06:00:00Z";

TEST(SatelliteLayer, FillsFlatArraysForEveryEntry) {
  SatelliteLayer layer;
  layer.show(twoGroups());
  layer.activate();
  ASSERT_TRUE(layer.propagateNow(test::at(kNow)));
  ASSERT_EQ(layer.entries().size(), 5U);
  EXPECT_EQ(layer.frame().time, test::at(kNow));
  ASSERT_EQ(layer.frame().positions.size(), 15U);
  ASSERT_EQ(layer.frame().colorData.size(), 20U);
  EXPECT_EQ(layer.indicesByGroup()[1].indices, (std::vector<std::uint32_t>{2, 3, 4}));
  for (std::size_t i = 0; i < 5; ++i) {
    auto const info = layer.info(i, test::at(kNow));
    ASSERT_TRUE(info);
    float const* const p = &layer.frame().positions[3 * i];
    double const distance = std::hypot(std::hypot(p[0], p[1]), p[2]) * SGP4::kEarthRadiusKm;
    EXPECT_NEAR(distance - SGP4::kEarthRadiusKm, info->altitudeKm, 0.01);
    EXPECT_NEAR(std::atan2(p[1], p[0]) * 180 / std::numbers::pi, info->longitude, 1e-4);
    float const lit = layer.frame().litFactors[i];
    EXPECT_GE(lit, info->isSunlit ? 0.67F : SatelliteLayer::kShadowFactor);
    EXPECT_FLOAT_EQ(layer.frame().colorData[4 * i], layer.baseColors()[3 * i] * lit);
    EXPECT_EQ(layer.frame().colorData[4 * i + 3], 1);
  }
}

TEST(SatelliteLayer, LightFollowsTheSceneSun) {
  SatelliteLayer layer([](Instant) { return SatelliteLayer::Environment{{0, 0, 1}, {1, 2, 3}}; });
  layer.show(twoGroups());
  layer.activate();
  ASSERT_TRUE(layer.propagateNow(test::at(kNow)));
  EXPECT_EQ(layer.frame().cameraPosition, (Vector3{1, 2, 3}));
  for (std::size_t i = 0; i < 5; ++i) {
    if (layer.frame().positions[3 * i + 2] > 0) {
      EXPECT_EQ(layer.frame().litFactors[i], SatelliteLayer::kLitFactor);
    }
  }
}

TEST(SatelliteLayer, TicksOnlyWhenItMayAndDropsThemWhileBusy) {
  SatelliteLayer layer;
  EXPECT_FALSE(layer.tick(test::at(kNow))) << "not active";
  layer.activate();
  EXPECT_FALSE(layer.tick(test::at(kNow))) << "nothing to show";
  layer.show(twoGroups());
  layer.propagationPaused = true;
  EXPECT_FALSE(layer.tick(test::at(kNow))) << "paused";
  layer.propagationPaused = false;
  EXPECT_FALSE(layer.takeResult()) << "nothing was started";
  ASSERT_TRUE(layer.tick(test::at(kNow)));
  EXPECT_FALSE(layer.tick(test::at(kNow))) << "busy, or its result not taken";
  while (layer.propagationInFlight()) std::this_thread::yield();
  EXPECT_TRUE(layer.frame().positions[0] == 0) << "nothing changes before the swap";
  EXPECT_TRUE(layer.takeResult());
  EXPECT_FALSE(layer.takeResult());
  EXPECT_NE(layer.frame().positions[0], 0);
  layer.deactivate();
  EXPECT_FALSE(layer.tick(test::at(kNow)));
}

std::vector<SatelliteGroupLoad> everyGroup(std::size_t entries) {
  std::vector<SatelliteGroupLoad> loads;
  for (auto const& group : SatelliteCatalog::groups()) {
    loads.push_back(loadOf(std::string(group.id), std::vector<std::string>(entries, "ONE OF MANY")));
  }
  return loads;
}

/// For the thread sanitizer, too: all that an owner may do while a propagation goes on.
TEST(SatelliteLayer, GroupsAreSwitchedAndLayersClosedWhileATickRuns) {
  auto const groups = everyGroup(60);
  int taken = 0;
  for (int round = 0; round < 20; ++round) {
    SatelliteLayer layer;
    layer.activate();
    layer.show(groups);
    for (int second = 0; second < 3; ++second) {
      layer.tick(test::at(kNow) + std::chrono::seconds(second));
      for (int color = 0; color < 7; ++color) layer.setEnabled(color, (round + color + second) % 2 == 0);
      for (float const x : layer.frame().positions) ASSERT_TRUE(std::isfinite(x));
      layer.nearest({1, 0, 0}, 10);
      layer.showOrbit(static_cast<std::size_t>(round), test::at(kNow));
      if (round % 3 == 0) layer.show(groups);
      if (round % 4 == 0) layer.deactivate();
      taken += layer.takeResult() ? 1 : 0;
    }
  }
  EXPECT_LE(taken, 60);
}

TEST(SatelliteLayer, SwitchingAGroupOffKeepsItsEntries) {
  SatelliteLayer layer;
  layer.show(twoGroups());
  layer.activate();
  layer.setEnabled(3, false);
  EXPECT_TRUE(layer.isDrawn(layer.indicesByGroup()[0]));
  EXPECT_FALSE(layer.isDrawn(layer.indicesByGroup()[1]));
  EXPECT_EQ(layer.entries().size(), 5U);
  ASSERT_TRUE(layer.propagateNow(test::at(kNow)));
  float const* const p = &layer.frame().positions[9];
  Vector3 const towardsWeather{p[0], p[1], p[2]};
  auto const nearest = layer.nearest(towardsWeather, 180);
  EXPECT_TRUE(nearest && *nearest < 2);
  layer.setEnabled(3, true);
  EXPECT_GE(layer.nearest(towardsWeather, 1).value_or(0), 2U);
}

TEST(SatelliteLayer, WhatHasDecayedIsNotDrawnAndNeverNaN) {
  auto loads = twoGroups();
  auto& entries = loads[0].parsed.entries;
  SGP4::TLE falling = entries[0].satrec.tle;
  falling.bstar = 0.9;
  entries[0].satrec = SGP4::initialise(falling);
  SatelliteLayer layer;
  layer.show(std::move(loads));
  layer.activate();
  for (std::string const later : {"2026-12-21T06:00:00Z", "2056-11-21T06:00:00Z", "2126-11-21T06:00:00Z"}) {
    ASSERT_TRUE(layer.propagateNow(test::at(later)));
    for (float const number : layer.frame().positions) EXPECT_TRUE(std::isfinite(number));
    for (float const number : layer.frame().colorData) EXPECT_TRUE(std::isfinite(number));
    EXPECT_EQ(layer.frame().colorData[3], 0) << later;
    EXPECT_FALSE(layer.info(0, test::at(later)));
  }
}

TEST(SatelliteLayer, TheOrbitIsOnePeriodAndKnowsItsSatellite) {
  SatelliteLayer layer;
  layer.show(twoGroups());
  layer.activate();
  layer.showOrbit(1, test::at(kNow));
  EXPECT_EQ(layer.orbitSatelliteName(), "HST");
  ASSERT_EQ(layer.orbit().size(), 181U);
  EXPECT_EQ(layer.orbit().front().time, test::at(kNow));
  double const minutes = static_cast<double>((layer.orbit().back().time - test::at(kNow)).count()) / 60'000;
  EXPECT_NEAR(minutes, layer.entries()[1].satrec.periodMinutes(), 1e-4);
  EXPECT_NEAR(layer.orbit().back().latitude, layer.orbit().front().latitude, 0.5);
  layer.deactivate();
  EXPECT_TRUE(layer.orbit().empty());
  EXPECT_TRUE(layer.orbitSatelliteName().empty());
}

TEST(SatelliteInfo, SpeedIsThatOfTheCircle) {
  EXPECT_NEAR(circularSpeedKmh(SGP4::kEarthRadiusKm), 28459.33, 0.01);
  EXPECT_NEAR(circularSpeedKmh(42'164), 11'069, 1);
}

}  // namespace
}  // namespace nimbara
