#include "app/state/supplement_state.h"

#include "app/engine/engine_hazards.h"
#include "app/services/feed_services.h"
#include "app/settings/service_directory.h"
#include "app/settings/settings_registry.h"
#include "demo/demo_server.h"
#include "platform/linux/http/curl_http_client.h"
#include "platform/settings/scratch_settings_store.h"
#include "support/instants.h"
#include "support/manual_runner.h"

#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

using test::at;

Place const kTokyo{{35.69, 139.69}, "Tokyo", "Japan", "Tokyo"};
Instant const kNow = at("2026-11-21T09:20:00Z");

/// What was shown last of a refresh, with the earthquakes of the world.
struct Shown {
  std::shared_ptr<SupplementState const> supplement;
  FeedReading<std::vector<EarthquakeEvent>> quakes;
};

Shown refreshed(std::vector<DemoFault> faults) {
  FixedClock const clock(kNow);
  CurlHttpClient http{{"nimbara-test/1", {}}};
  auto const server = *DemoServer::start(clock, std::move(faults));
  FeedServices feeds(http, clock, ServiceDirectory({}, server->baseUrl()),
                     {"me", {}, {}, std::make_shared<Texts const>(Texts::load("en"))});
  ScratchSettingsStore store{settingsRegistry()};
  test::ManualRunner runner;
  Shown shown;
  EngineHazards hazards(
      always(feeds), store, runner,
      {[](Place const&, std::vector<WeatherAlert> const&) {}, [] {}, [] { return std::vector<Place>(); },
       [&](Place const& place, std::shared_ptr<SupplementState const> state) {
         EXPECT_EQ(place, kTokyo);
         shown.supplement = std::move(state);
       },
       [] { return kNow; }});
  std::ignore = hazards.refresh(kTokyo, {});
  shown.quakes = hazards.state()->quakes;
  return shown;
}

/// The readings that are not current, by name; of the others the moment of the check is this one.
std::set<std::string> notCurrent(Shown const& shown) {
  std::set<std::string> names;
  auto const look = [&](std::string const& name, auto const& reading) {
    if (!reading.isCurrent()) {
      names.insert(name);
      EXPECT_TRUE(reading.failure) << name << " does not say why";
      EXPECT_FALSE(reading.checkedAt) << name << " was never checked";
    } else {
      EXPECT_EQ(reading.checkedAt, kNow) << name;
    }
  };
  look("air", shown.supplement->airQuality);
  look("storms", shown.supplement->activeStorms);
  look("fires", shown.supplement->activeFires);
  look("lightning", shown.supplement->lightning);
  look("advisories", shown.supplement->advisories);
  look("climate", shown.supplement->climate);
  look("quakes", shown.quakes);
  return names;
}

TEST(SupplementState, IsFilledWholeWithTheMomentOfEachCheck) {
  Shown const shown = refreshed({});
  ASSERT_TRUE(shown.supplement);
  EXPECT_EQ(notCurrent(shown), std::set<std::string>());
  SupplementState const& state = *shown.supplement;
  EXPECT_EQ(state.place, kTokyo);
  EXPECT_EQ(state.country, "JP");
  EXPECT_TRUE(state.airQuality.data.now.usAqi);
  EXPECT_FALSE(state.activeStorms.data.storms.empty());
  EXPECT_TRUE(state.activeStorms.data.misses.empty());
  EXPECT_TRUE(state.climate.data.usual && state.climate.data.today && state.climate.data.anomaly());
  EXPECT_FALSE(shown.quakes.data.empty());
  EXPECT_TRUE(std::ranges::any_of(shown.quakes.data,
                                  [](auto const& quake) { return quake.emscMagnitude.has_value(); }));
}

struct FaultRow {
  Service service;
  DemoFault::Kind kind;
  std::set<std::string> missing;
  std::optional<StormCentre> miss = {};
};

/// A source that fails takes its own part and no other.
TEST(SupplementState, LosesOnlyWhatASourceHad) {
  using enum DemoFault::Kind;
  FaultRow const rows[] = {{Service::airQuality, garbage, {"air"}},
                           {Service::firms, status500, {"fires"}},
                           {Service::lightning, drop, {"lightning"}},
                           {Service::travelAdvisories, garbage, {"advisories"}},
                           {Service::openMeteoArchive, status500, {"climate"}},
                           {Service::usgs, drop, {"quakes"}},
                           {Service::emsc, garbage, {}},
                           {Service::nhc, drop, {"storms"}, StormCentre::nhc},
                           {Service::jtwc, garbage, {}, StormCentre::jtwc},
                           {Service::gdacs, status500, {}, StormCentre::gdacs}};
  for (FaultRow const& row : rows) {
    SCOPED_TRACE(enumName(row.service));
    Shown const shown = refreshed({{row.service, row.kind}});
    ASSERT_TRUE(shown.supplement);
    EXPECT_EQ(notCurrent(shown), row.missing);
    auto const& misses = shown.supplement->activeStorms.data.misses;
    ASSERT_EQ(misses.size(), row.miss ? 1 : 0);
    if (row.miss) EXPECT_EQ(misses.front().centre, *row.miss);
  }
}

}  // namespace
}  // namespace nimbara
