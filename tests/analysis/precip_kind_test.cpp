#include "analysis/precip_kind.h"

#include "support/instants.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using test::at;

TEST(PrecipKind, IsSnowInTheColdAndRainInTheWarmth) {
  EXPECT_EQ(fallAt(-0.41), Fall::snow);
  EXPECT_EQ(fallAt(-0.4), Fall::sleet);
  EXPECT_EQ(fallAt(2.4), Fall::sleet);
  EXPECT_EQ(fallAt(2.41), Fall::rain);
}

TEST(PrecipKind, TakesTheTemperatureOfTheHourOfAStepsMiddle) {
  Instant const start = at("2026-11-21T14:00:00Z");
  std::vector<HourlyForecast> hourly(2);
  for (int i = 0; i < 2; ++i) hourly[static_cast<std::size_t>(i)].date = start + hours(i);
  hourly[0].tempC = -5;
  hourly[1].tempC = 5;
  auto const step = [&](int from, double rate, Fall fall = Fall::unknown) {
    return NowcastStep{start + minutes(from), start + minutes(from + 15), rate, fall};
  };
  Nowcast nowcast{"brightSky", NowcastKind::radar, start, {}};
  nowcast.steps = {step(-15, 1), step(0, 1),  step(30, 0.1), step(30, 0.09),
                   step(52, 1),  step(53, 1), step(60, 1),   step(60, 1, Fall::sleet),
                   step(120, 1)};
  nowcast.steps.push_back({start, start + minutes(15), std::nullopt, Fall::unknown});
  nameFall(nowcast, hourly);
  Fall const expected[] = {Fall::unknown, Fall::snow, Fall::snow,  Fall::unknown, Fall::snow,
                           Fall::rain,    Fall::rain, Fall::sleet, Fall::unknown, Fall::unknown};
  for (std::size_t i = 0; i < std::size(expected); ++i) EXPECT_EQ(nowcast.steps[i].fall, expected[i]) << i;
}

}  // namespace
}  // namespace nimbara
