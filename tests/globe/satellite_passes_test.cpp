// Passes against a fine scan by the reference path.

#include "globe/satellite_passes.h"

#include "base/sun_moon.h"
#include "support/answers/made_satellites.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace nimbara {
namespace {

using std::chrono::milliseconds;

double elevationAt(SGP4::SatRec const& record, Observer const& observer, Instant instant) {
  SGP4::Moment const moment = SGP4::momentOf(instant);
  auto const state = SGP4::propagate(record, SGP4::minutesSince(record.tle, moment));
  return observer.look(EarthRotation::at(moment).toEarthFixed(state.position)).elevation;
}

struct Scanned {
  Instant rise, top, set;
  double elevation = -90;
};

/// Steps of half a second; only passes that lie wholly within the span.
std::vector<Scanned> scan(SGP4::SatRec const& record, Coordinate place, Instant from, Instant to) {
  Observer const observer(place);
  std::vector<Scanned> passes;
  bool wasUp = true, counts = false;
  Scanned current;
  for (Instant t = from; t < to; t += milliseconds(500)) {
    double const elevation = elevationAt(record, observer, t);
    bool const isUp = elevation > 0;
    if (isUp && !wasUp) {
      current = {t, t, t, -90};
      counts = true;
    }
    if (isUp && elevation > current.elevation) {
      current.elevation = elevation;
      current.top = t;
    }
    if (!isUp && wasUp && counts) {
      current.set = t;
      passes.push_back(current);
      counts = false;
    }
    wasUp = isUp;
  }
  return passes;
}

double secondsBetween(Instant a, Instant b) {
  return std::abs(static_cast<double>((a - b).count())) / 1000;
}

TEST(SatellitePasses, AgreeWithAFineScan) {
  Instant const from = test::at("2026-11-21T00:00:00Z"), to = test::at("2026-11-22T06:00:00Z");
  auto const records = test::madeSatellites({{2, 400, 420, 1e-4, 1e-3, 51, 52, -4, -3.5},
                                             {1, 540, 560, 1e-4, 1e-3, 97, 98, -4, -3.5},
                                             {1, 600, 800, 0.05, 0.06, 30, 40, -5, -4},
                                             {1, 500, 600, 0.7, 0.72, 62, 64, -6, -5},
                                             {1, 20'000, 20'300, 1e-3, 1e-2, 55, 56, -6, -5}});
  for (Coordinate const place :
       {Coordinate{52.52, 13.41}, Coordinate{-0.2, -78.5}, Coordinate{-77.8, 166.7}}) {
    for (auto const& record : records) {
      auto const expected = scan(record, place, from, to);
      auto passes = satellitePasses(record, place, from, to);
      std::erase_if(passes, [&](auto const& pass) { return pass.rise.time < from || pass.set.time > to; });
      std::string const what = std::to_string(record.tle.satnum) + " at " + formatCoordinate(place);
      ASSERT_EQ(passes.size(), expected.size()) << what;
      for (std::size_t i = 0; i < passes.size(); ++i) {
        EXPECT_LE(secondsBetween(passes[i].rise.time, expected[i].rise), 1) << what;
        EXPECT_LE(secondsBetween(passes[i].set.time, expected[i].set), 1) << what;
        EXPECT_NEAR(passes[i].culmination.elevation, expected[i].elevation, 0.01) << what;
        if (record.periodMinutes() < 225) {
          EXPECT_LE(secondsBetween(passes[i].culmination.time, expected[i].top), 1) << what;
        }
        EXPECT_NEAR(passes[i].rise.elevation, 0, 0.01) << what;
        EXPECT_NEAR(passes[i].set.elevation, 0, 0.01) << what;
      }
    }
  }
}

TEST(SatellitePasses, OneThatIsGoingOnAtTheBeginningCounts) {
  auto const record = test::madeSatellites({{1, 400, 420, 1e-4, 1e-3, 51, 52, -4, -3.5}}).front();
  Coordinate const place{47, 8};
  Instant const from = test::at("2026-11-21T00:00:00Z");
  auto const passes = satellitePasses(record, place, from, from + std::chrono::days(1));
  ASSERT_FALSE(passes.empty());
  for (auto const moment :
       {passes[0].rise.time + std::chrono::seconds(5), passes[0].set.time - std::chrono::seconds(5)}) {
    auto const again = satellitePasses(record, place, moment, moment + std::chrono::minutes(1));
    ASSERT_EQ(again.size(), 1U);
    EXPECT_LE(secondsBetween(again[0].culmination.time, passes[0].culmination.time), 1);
  }
  Instant const after = passes[0].set.time + std::chrono::seconds(5);
  EXPECT_TRUE(satellitePasses(record, place, after, after + std::chrono::minutes(1)).empty());
}

TEST(SatellitePasses, WhatNeverRisesOrNeverSetsHasNone) {
  auto const still = test::madeSatellites({{1, 35'786, 35'787, 1e-5, 2e-5, 0, 0.01, -6, -5}}).front();
  Instant const from = test::at("2026-11-21T00:00:00Z"), to = from + std::chrono::days(2);
  for (double longitude = -180; longitude < 180; longitude += 60) {
    EXPECT_TRUE(satellitePasses(still, {0, longitude}, from, to).empty()) << longitude;
  }
  auto const low = test::madeSatellites({{1, 400, 420, 1e-4, 1e-3, 10, 11, -4, -3.5}}).front();
  EXPECT_TRUE(satellitePasses(low, {60, 10}, from, to).empty());
  EXPECT_TRUE(satellitePasses(low, {0, 10}, to, from).empty());
}

/// Second by second: the longest row in which the satellite is lit and so many degrees high in a dark sky.
std::optional<PassSpan> scanVisible(SGP4::SatRec const& record, Coordinate place, SatellitePass const& pass,
                                    double above) {
  Observer const observer(place);
  auto const seen = [&](Instant t) {
    SGP4::Moment const moment = SGP4::momentOf(t);
    auto const state = SGP4::propagate(record, SGP4::minutesSince(record.tle, moment));
    return elevationAt(record, observer, t) >= above && isSunlit(state.position, sunDirection(moment)) &&
           sunPosition(t, place).altitude < -6;
  };
  std::optional<PassSpan> longest, current;
  for (Instant t = pass.rise.time; t <= pass.set.time; t += std::chrono::seconds(1)) {
    if (!seen(t)) {
      current.reset();
      continue;
    }
    current = PassSpan{current ? current->from : t, t};
    if (!longest || current->to - current->from > longest->to - longest->from) longest = current;
  }
  return longest;
}

TEST(SatellitePasses, VisibleIsWhatAScanSees) {
  Instant const from = test::at("2026-11-21T00:00:00Z"), to = from + std::chrono::days(3);
  auto const records = test::madeSatellites({{2, 400, 420, 1e-4, 1e-3, 51, 52, -4, -3.5},
                                             {1, 1190, 1210, 1e-4, 4e-4, 87.8, 88, -4, -3},
                                             {1, 500, 600, 0.7, 0.72, 62, 64, -6, -5}});
  int whole = 0, partly = 0, notOnTop = 0, none = 0;
  for (Coordinate const place : {Coordinate{52.52, 13.41}, Coordinate{-0.2, -78.5}}) {
    for (auto const& record : records) {
      for (auto const& pass : satellitePasses(record, place, from, to)) {
        auto const expected = scanVisible(record, place, pass, kVisibleAbove);
        // What lasts only as long as a step may be missed.
        if (expected && expected->to - expected->from <= std::chrono::seconds(10)) continue;
        std::string const what = formatIso8601(pass.culmination.time) + " at " + formatCoordinate(place);
        ASSERT_EQ(pass.visible.has_value(), expected.has_value()) << what;
        if (!expected) {
          ++none;
          continue;
        }
        EXPECT_LE(secondsBetween(pass.visible->from, expected->from), 1.1) << what;
        EXPECT_LE(secondsBetween(pass.visible->to, expected->to), 1.1) << what;
        bool const isAll =
            pass.visible->from < pass.culmination.time && pass.culmination.time < pass.visible->to;
        ++(isAll ? whole : partly);
        notOnTop += pass.sunlit && pass.skyDark ? 0 : 1;
      }
    }
  }
  EXPECT_GT(whole, 0);
  EXPECT_GT(partly, 0);
  EXPECT_GT(notOnTop, 0);
  EXPECT_GT(none, 0);
}

TEST(SatellitePasses, TheElevationDecidesWhatIsVisible) {
  auto const record = test::madeSatellites({{1, 1190, 1210, 1e-4, 4e-4, 87.8, 88, -4, -3}}).front();
  Instant const from = test::at("2026-11-21T00:00:00Z"), to = from + std::chrono::days(3);
  Coordinate const place{52.52, 13.41};
  auto const all = satellitePasses(record, place, from, to, 0);
  for (double const above : {5.0, 30.0}) {
    auto const some = satellitePasses(record, place, from, to, above);
    ASSERT_EQ(some.size(), all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (!some[i].visible) continue;
      ASSERT_TRUE(all[i].visible);
      EXPECT_LE(all[i].visible->from, some[i].visible->from);
      EXPECT_GE(some[i].culmination.elevation, above);
      for (Instant const end : {some[i].visible->from, some[i].visible->to}) {
        EXPECT_GE(elevationAt(record, Observer(place), end), above - 0.05);
      }
    }
  }
}

}  // namespace
}  // namespace nimbara
