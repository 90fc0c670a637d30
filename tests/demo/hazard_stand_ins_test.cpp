#include "demo/demo_server.h"
#include "demo/feeds/firms_stand_in.h"
#include "demo/forecasts/air_quality_stand_in.h"
#include "demo/world/demo_weather.h"
#include "feeds/air/air_quality_service.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/quakes/emsc_service.h"
#include "feeds/storms/lightning_source.h"
#include "feeds/storms/tropical_storm_service.h"
#include "feeds/storms/typhoon_service.h"
#include "feeds/travel/travel_advisory_service.h"
#include "platform/linux/http/curl_http_client.h"
#include "support/instants.h"
#include "support/manual_clock.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

namespace nimbara {
namespace {

using test::at;
using namespace std::chrono_literals;

class HazardStandIns : public testing::Test {
 protected:
  TropicalStormService storms() { return {http_, clock_, {server_->baseUrl(), server_->baseUrl()}}; }

  test::ManualClock clock_{at("2026-11-21T09:20:00Z")};
  CurlHttpClient http_{{"nimbara-test/1", {}}};
  std::unique_ptr<DemoServer> server_ = *DemoServer::start(clock_, {});
};

TEST_F(HazardStandIns, ForecastTheAir) {
  Coordinate const berlin{52.52, 13.405};
  AirQualityService service(http_, clock_, {server_->baseUrl(), ""});
  auto const reading = service.fetchForecast(berlin);
  ASSERT_TRUE(reading.isCurrent()) << reading.problem();
  ASSERT_EQ(reading.data.hours.size(), 120);
  EXPECT_EQ(reading.data.hours.front().time, at("2026-11-21T00:00:00Z"));
  EXPECT_TRUE(reading.data.hours[96].pm25);
  EXPECT_FALSE(reading.data.hours[97].pm25) << "beyond the model's end";
  EXPECT_NEAR(reading.data.pm25.value_or(-1), demoFineDust(berlin, at("2026-11-21T09:00:00Z")), 0.051);
  EXPECT_EQ(reading.data.pm25, reading.data.hours[9].pm25);
  EXPECT_TRUE(reading.data.usAqi && reading.data.europeanAqi);
}

TEST_F(HazardStandIns, HaveCleanAndHazyDays) {
  int hazy = 0;
  int clean = 0;
  for (int day = 0; day < 60; ++day) {
    for (double const east : {-100.0, -3.0, 13.4, 77.2, 116.4}) {
      double const dust = demoFineDust({40, east}, clock_.now() + day * 24h);
      EXPECT_GT(dust, 0);
      EXPECT_LT(dust, 250);
      hazy += dust >= 35 ? 1 : 0;
      clean += dust < 12 ? 1 : 0;
    }
  }
  EXPECT_GT(hazy, 5) << "of 300";
  EXPECT_GT(clean, 100);
}

TEST_F(HazardStandIns, AlwaysHaveAStormInEachOcean) {
  for (int step = 0; step < 12; ++step) {
    auto service = storms();
    auto const reading = service.fetchStorms();
    ASSERT_TRUE(reading.isCurrent()) << reading.problem();
    std::set<std::string> ids;
    std::set<TropicalBasin> basins;
    for (TropicalStorm const& storm : reading.data) {
      EXPECT_TRUE(ids.insert(storm.id).second) << storm.id;
      basins.insert(storm.basin);
      ASSERT_TRUE(storm.lastUpdate);
      EXPECT_LE(*storm.lastUpdate, clock_.now());
      EXPECT_GT(*storm.lastUpdate, clock_.now() - 6h);
      ASSERT_FALSE(storm.track.empty()) << storm.id << " at " << formatIso8601(clock_.now());
      EXPECT_LT(haversineKm(storm.track.front().coordinate, storm.coordinate), 20) << storm.id;
      EXPECT_EQ(storm.track.front().time, *storm.lastUpdate - 3h);
    }
    EXPECT_TRUE(basins.contains(TropicalBasin::atlantic));
    EXPECT_TRUE(basins.contains(TropicalBasin::easternPacific));
    clock_.advance(24h * 31 + 5h);
  }
}

TEST_F(HazardStandIns, MoveAStormWhereItsForecastSaid) {
  auto before = storms();
  auto const first = before.fetchStorms();
  ASSERT_FALSE(first.data.empty());
  clock_.advance(24h);
  auto after = storms();
  auto const second = after.fetchStorms();
  int compared = 0;
  for (TropicalStorm const& storm : second.data) {
    auto const old = std::ranges::find(first.data, storm.id, &TropicalStorm::id);
    if (old == first.data.end()) continue;
    auto const point = std::ranges::find(old->track, *storm.lastUpdate - 3h, &TropicalTrackPoint::time);
    ASSERT_NE(point, old->track.end()) << storm.id;
    EXPECT_LT(haversineKm(point->coordinate, storm.coordinate), 20) << storm.id;
    ++compared;
  }
  EXPECT_GT(compared, 0);
}

TEST_F(HazardStandIns, BurnHereAndThere) {
  auto const middles = demoFires({36, -120}, {48, -95}, clock_.now());
  ASSERT_GE(middles.size(), 5);
  WildfireService service(http_, clock_, {server_->baseUrl(), "any"});
  auto const reading = service.fetchFires(middles.front(), 50);
  ASSERT_TRUE(reading.isCurrent()) << reading.problem();
  ASSERT_FALSE(reading.data.empty());
  EXPECT_LT(haversineKm(reading.data.front().coordinate, middles.front()), 2);
  EXPECT_GT(reading.data.front().hotSpots, 1);
  clock_.advance(12h);
  auto const later = service.fetchFires(middles.front(), 50);
  ASSERT_FALSE(later.data.empty());
  EXPECT_EQ(later.data.front().id, reading.data.front().id);
  WildfireService wrong(http_, clock_, {server_->baseUrl(), "wrong"});
  EXPECT_NE(wrong.fetchFires(middles.front(), 50).problem().find("Invalid MAP_KEY"), std::string::npos);
}

TEST_F(HazardStandIns, AdviseTravellers) {
  TravelAdvisoryService service(http_, clock_, {server_->baseUrl(), {}});
  auto const reading = service.fetchAdvisories();
  ASSERT_TRUE(reading.isCurrent()) << reading.problem();
  EXPECT_EQ(reading.data.size(), 63);
  std::map<std::string, int> levels;
  for (TravelAdvisory const& advisory : reading.data) levels[advisory.country] = advisory.level;
  for (char const* const country : {"DE", "CN", "AT", "CH", "NE", "NG", "CD", "GM", "GB", "MM", "SV"}) {
    EXPECT_TRUE(levels.contains(country)) << country;
  }
  EXPECT_EQ(levels["AF"], 4);
  EXPECT_EQ(reading.data[0].summary.find('<'), std::string::npos) << reading.data[0].summary;
  clock_.advance(7h);
  EXPECT_TRUE(service.fetchAdvisories().isCurrent()) << "by a 304";
  CurlHttpClient nameless({"", {}});
  TravelAdvisoryService anonymous(nameless, clock_, {server_->baseUrl(), {}});
  EXPECT_EQ(anonymous.fetchAdvisories().state, FeedState::failed);
}

TEST_F(HazardStandIns, StrikeInThunderstormsOnly) {
  clock_.set(at("2026-07-15T00:00:00Z"));
  HttpLightningSource source(http_, clock_, server_->baseUrl());
  Coordinate const place{45.46, 9.19};
  int storms = 0;
  for (int hour = 0; hour < 24 * 10; ++hour) {
    clock_.advance(1h);
    int thunder = 0;
    for (auto back = 10min; back <= 50min; back += 10min) {
      thunder += demoWeather(place, clock_.now() - back).weatherCode >= 95 ? 1 : 0;
    }
    if (thunder != 0 && thunder != 5) continue;
    auto const reading = source.fetchStrikes(place, 30.5, clock_.now() - 50min);
    ASSERT_TRUE(reading.isCurrent()) << reading.problem();
    EXPECT_EQ(reading.data.size(), 4 * thunder) << formatIso8601(clock_.now());
    storms += thunder == 5 ? 1 : 0;
  }
  EXPECT_GT(storms, 0);
}

/// A feed of the row's service at a base, and whether it has failed.
struct FaultRow {
  Service service;
  std::function<bool(HttpClient&, Clock const&, std::string const& base)> hasFailed;
};

template <class Reading>
bool hasFailed(Reading const& reading) {
  return !reading.isCurrent() && !reading.checkedAt && reading.failure &&
         reading.data == decltype(Reading::data){};
}

std::vector<FaultRow> faultRows() {
  auto const advisories = [](AdvisorySource source) {
    return [source](HttpClient& http, Clock const& clock, std::string const& base) {
      TravelAdvisoryService service(http, clock, {base, {}, base, base, base});
      return hasFailed(service.fetchAdvisories(source, "JP"));
    };
  };
  return {
      {Service::airQuality,
       [](auto& http, auto& clock, auto& base) {
         return hasFailed(AirQualityService(http, clock, {base, ""}).fetchForecast({50, 10}));
       }},
      {Service::nhc,
       [](auto& http, auto& clock, auto& base) {
         return hasFailed(TropicalStormService(http, clock, {base, base}).fetchStorms());
       }},
      {Service::jtwc, [](auto& http, auto& clock,
                         auto& base) { return hasFailed(TyphoonService(http, clock, base).fetchStorms()); }},
      {Service::gdacs,
       [](auto& http, auto& clock, auto& base) {
         return hasFailed(GdacsStormService(http, clock, base).fetchStorms());
       }},
      {Service::emsc,
       [](auto& http, auto& clock, auto& base) {
         return hasFailed(EmscService(http, clock, base).fetchEarthquakes());
       }},
      {Service::firms,
       [](auto& http, auto& clock, auto& base) {
         return hasFailed(WildfireService(http, clock, {base, "any"}).fetchFires({50, 10}, 50));
       }},
      {Service::lightning,
       [](auto& http, auto& clock, auto& base) {
         return hasFailed(
             HttpLightningSource(http, clock, base).fetchStrikes({50, 10}, 50, clock.now() - 1h));
       }},
      {Service::travelAdvisories, advisories(AdvisorySource::us)},
      {Service::advisoriesCanada, advisories(AdvisorySource::ca)},
      {Service::advisoriesBritain, advisories(AdvisorySource::uk)},
      {Service::advisoriesGermany, advisories(AdvisorySource::de)},
  };
}

TEST_F(HazardStandIns, MisbehaveWhenTold) {
  for (FaultRow const& row : faultRows()) {
    for (DemoFault::Kind const kind :
         {DemoFault::Kind::status500, DemoFault::Kind::garbage, DemoFault::Kind::drop, DemoFault::Kind::loop,
          DemoFault::Kind::exception, DemoFault::Kind::status403}) {
      auto const faulty = *DemoServer::start(clock_, {{row.service, kind}});
      EXPECT_TRUE(row.hasFailed(http_, clock_, faulty->baseUrl()))
          << enumName(kind) << " " << static_cast<int>(row.service);
    }
  }
  auto const mapless = *DemoServer::start(clock_, {{Service::nhcMaps, DemoFault::Kind::garbage}});
  TropicalStormService storms(http_, clock_, {mapless->baseUrl(), mapless->baseUrl()});
  auto const reading = storms.fetchStorms();
  EXPECT_TRUE(reading.isCurrent());
  ASSERT_FALSE(reading.data.empty());
  EXPECT_TRUE(reading.data.front().track.empty());
}

}  // namespace
}  // namespace nimbara
