#include "base/sun_moon.h"

#include "support/instants.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nimbara {
namespace {

using test::at;
using test::date;
using test::zone;
using namespace std::chrono_literals;

struct PhaseRow {
  char const* moment;  // to the minute, UT, from published tables
  MoonPhase phase;
};

void PrintTo(PhaseRow const& row, std::ostream* out) {
  *out << row.moment;
}

class PrincipalPhases : public testing::TestWithParam<PhaseRow> {};

TEST_P(PrincipalPhases, FallWithinThreeMinutesOfTheAlmanac) {
  auto const [moment, phase] = GetParam();
  double const expected = static_cast<int>(phase) * 45.0;
  double const difference = std::remainder(moonState(at(moment)).elongation - expected, 360);
  constexpr double kDegreesPerMinute = 360 / (29.53 * 1440);
  EXPECT_LT(std::abs(difference), 3 * kDegreesPerMinute) << difference / kDegreesPerMinute << " min";
  auto const day = std::chrono::floor<std::chrono::days>(at(moment));
  EXPECT_EQ(moonPhase(day, day + 24h), phase);
  EXPECT_NE(moonPhase(day + 48h, day + 72h), phase);
}

INSTANTIATE_TEST_SUITE_P(Almanac, PrincipalPhases,
                         testing::Values(PhaseRow{"1999-08-11T11:09:00Z", MoonPhase::newMoon},
                                         PhaseRow{"2000-01-06T18:14:00Z", MoonPhase::newMoon},
                                         PhaseRow{"2000-01-14T13:34:00Z", MoonPhase::firstQuarter},
                                         PhaseRow{"2000-01-21T04:41:00Z", MoonPhase::fullMoon},
                                         PhaseRow{"2000-01-28T07:57:00Z", MoonPhase::lastQuarter},
                                         PhaseRow{"2017-08-21T18:30:00Z", MoonPhase::newMoon},
                                         PhaseRow{"2018-01-31T13:27:00Z", MoonPhase::fullMoon},
                                         PhaseRow{"2021-12-04T07:43:00Z", MoonPhase::newMoon},
                                         PhaseRow{"2022-11-08T11:02:00Z", MoonPhase::fullMoon},
                                         PhaseRow{"2024-04-08T18:21:00Z", MoonPhase::newMoon},
                                         PhaseRow{"2025-03-14T06:55:00Z", MoonPhase::fullMoon},
                                         PhaseRow{"2025-09-07T18:09:00Z", MoonPhase::fullMoon},
                                         PhaseRow{"2026-03-03T11:38:00Z", MoonPhase::fullMoon},
                                         PhaseRow{"2026-08-12T17:37:00Z", MoonPhase::newMoon}));

TEST(MoonState, IsDarkWhenNewAndBrightWhenFull) {
  EXPECT_LT(moonState(at("2024-04-08T18:21:00Z")).illumination, 0.001);
  EXPECT_GT(moonState(at("2025-03-14T06:55:00Z")).illumination, 0.999);
  EXPECT_NEAR(moonState(at("2000-01-14T13:34:00Z")).illumination, 0.5, 0.01);
}

/// Equinoxes and solstices are where the sun's height at noon tells its declination.
TEST(SunPosition, StandsWhereTheSeasonPutsIt) {
  EXPECT_NEAR(sunPosition(at("2026-06-21T12:02:00Z"), {51.48, 0}).altitude, 90 - 51.48 + 23.44, 0.02);
  EXPECT_NEAR(sunPosition(at("2026-12-21T11:58:00Z"), {51.48, 0}).altitude, 90 - 51.48 - 23.44, 0.02);
  EXPECT_NEAR(sunPosition(at("2026-06-21T12:02:00Z"), {51.48, 0}).azimuth, 180, 0.5);
  EXPECT_NEAR(sunPosition(at("2026-03-20T06:07:00Z"), {0, 0}).azimuth, 90, 0.2);
}

struct SunRow {
  char const* zone;
  char const* date;
  Coordinate place;
  char const* rise;  // local clock, as almanacs print it
  char const* set;
};

void PrintTo(SunRow const& row, std::ostream* out) {
  *out << row.zone << " on " << row.date;
}

class SunTimes : public testing::TestWithParam<SunRow> {};

TEST_P(SunTimes, AgreeWithTheAlmanacToTwoMinutes) {
  SunRow const& row = GetParam();
  Calendar const calendar = zone(row.zone);
  Instant const begin = calendar.startOfDay(date(row.date));
  RiseSet const sun = sunRiseSet(begin, begin + 24h, row.place);
  ASSERT_TRUE(sun.rise && sun.set);
  auto const distance = [&](Instant instant, char const* clock) {
    return std::chrono::abs(calendar.local(instant) - *parseLocalTime(std::string(row.date) + "T" + clock));
  };
  EXPECT_LE(distance(*sun.rise, row.rise), 2min) << formatIso8601(*sun.rise);
  EXPECT_LE(distance(*sun.set, row.set), 2min) << formatIso8601(*sun.set);
}

INSTANTIATE_TEST_SUITE_P(
    Almanac, SunTimes,
    testing::Values(SunRow{"Europe/London", "2026-06-21", {51.5, -0.13}, "04:43", "21:21"},
                    SunRow{"Europe/London", "2026-12-21", {51.5, -0.13}, "08:04", "15:53"},
                    SunRow{"Europe/Berlin", "2026-11-21", {52.52, 13.41}, "07:38", "16:06"},
                    SunRow{"America/New_York", "2026-12-21", {40.71, -74.01}, "07:17", "16:32"},
                    SunRow{"Australia/Sydney", "2026-12-22", {-33.87, 151.21}, "05:41", "20:05"}));

TEST(SunTimes, AreMissingWhereTheSunStaysUpOrDown) {
  Coordinate const tromso{69.65, 18.96};
  RiseSet const summer = sunRiseSet(at("2026-06-20T22:00:00Z"), at("2026-06-21T22:00:00Z"), tromso);
  EXPECT_FALSE(summer.rise || summer.set);
  EXPECT_TRUE(summer.alwaysUp);
  RiseSet const winter = sunRiseSet(at("2026-12-20T23:00:00Z"), at("2026-12-21T23:00:00Z"), tromso);
  EXPECT_FALSE(winter.rise || winter.set);
  EXPECT_FALSE(winter.alwaysUp);
}

TEST(MoonTimes, MissARiseOnceAMonthAndAgreeWithThePosition) {
  Coordinate const berlin{52.52, 13.41};
  int daysWithoutRise = 0;
  for (int day = 0; day < 30; ++day) {
    Instant const begin = at("2026-11-01T00:00:00Z") + day * 24h;
    RiseSet const moon = moonRiseSet(begin, begin + 24h, berlin);
    if (!moon.rise) ++daysWithoutRise;
    for (auto const& event : {moon.rise, moon.set}) {
      if (!event) continue;
      EXPECT_GE(*event, begin);
      EXPECT_LT(*event, begin + 24h);
      // The upper limb on the refracted horizon: the centre stands 34' + 15' below, give or take the moon's
      // size.
      EXPECT_NEAR(moonPosition(*event, berlin).altitude, -0.83, 0.05);
    }
    EXPECT_TRUE(!moon.rise || moonPosition(*moon.rise + 10min, berlin).altitude > -0.5);
    EXPECT_TRUE(!moon.set || moonPosition(*moon.set + 10min, berlin).altitude < -1);
  }
  EXPECT_EQ(daysWithoutRise, 1);
}

TEST(SunAndMoon, TakeTheEndsOfTheEarth) {
  for (Coordinate const place : {Coordinate{90, 0}, {-90, 0}, {0, 180}, {0, -180}, {66.56, -180}}) {
    Instant const begin = at("2026-03-20T00:00:00Z");
    for (RiseSet const& times :
         {sunRiseSet(begin, begin + 24h, place), moonRiseSet(begin, begin + 24h, place)}) {
      EXPECT_TRUE(!times.rise || (*times.rise >= begin && *times.rise < begin + 24h));
      EXPECT_TRUE(!times.set || (*times.set >= begin && *times.set < begin + 24h));
    }
    EXPECT_TRUE(std::isfinite(sunPosition(begin, place).altitude));
  }
}

}  // namespace
}  // namespace nimbara
