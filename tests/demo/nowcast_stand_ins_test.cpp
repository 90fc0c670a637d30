#include "demo/forecasts/nowcast_stand_in.h"
#include "demo/forecasts/open_meteo_stand_in.h"
#include "demo/world/demo_weather.h"
#include "feeds/nowcast/bright_sky_radar.h"
#include "feeds/nowcast/met_nowcast.h"
#include "feeds/nowcast/open_meteo_quarters.h"
#include "support/instants.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace nimbara {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using test::at;

constexpr Coordinate kOslo{59.9139, 10.7522};
constexpr Coordinate kBerlin{52.52, 13.41};
constexpr Coordinate kNewYork{40.7128, -74.006};

/// A request for a path with its query, as a client sends it.
DemoRequest requestFor(std::string const& url) {
  auto values = std::make_shared<std::map<std::string, std::string, std::less<>>>();
  std::string rest = url.substr(url.find('?') + 1) + "&";
  for (auto end = rest.find('&'); end != std::string::npos; end = rest.find('&')) {
    auto const sign = rest.find('=');
    (*values)[rest.substr(0, sign)] = rest.substr(sign + 1, end - sign - 1);
    rest.erase(0, end + 1);
  }
  return {url.substr(0, url.find('?')),
          [values](std::string_view name) {
            auto const found = values->find(name);
            return found == values->end() ? std::string() : found->second;
          },
          [](std::string_view) { return std::string("nimbara"); }};
}

/// The first hour from which on the forecast of the place has rain or snow to tell of.
Instant wetHour(Coordinate place) {
  Instant hour = at("2026-11-01T00:00:00Z");
  while (demoWeather(place, hour).precipitation < 1) hour += hours(1);
  return hour;
}

struct Row {
  std::string name;
  Coordinate place;
  std::string (*url)(Coordinate, Instant);
  DemoStandIn standIn;
  NowcastParser parse;
  minutes step;
};

class NowcastStandIns : public testing::TestWithParam<Row> {};

TEST_P(NowcastStandIns, HaveTheRainOfTheForecast) {
  Row const& row = GetParam();
  Instant const hour = wetHour(row.place);
  DemoAnswer const answer = row.standIn(requestFor(row.url(row.place, hour)), hour);
  ASSERT_EQ(answer.status, 200);
  auto const reply = row.parse(answer.body);
  ASSERT_TRUE(reply) << reply.error().text();
  auto const& steps = reply->nowcast.steps;
  EXPECT_GE(steps.back().to, hour + minutes(115));
  for (NowcastStep const& step : steps) {
    EXPECT_EQ(step.to - step.from, row.step);
    ASSERT_TRUE(step.mmPerHour);
    EXPECT_NEAR(*step.mmPerHour, demoWeather(row.place, step.from + row.step / 2).precipitation, 0.07);
  }
  auto const now = std::ranges::find_if(steps, [hour](auto const& step) { return step.to > hour; });
  EXPECT_NEAR(*now->mmPerHour, demoWeather(row.place, hour).precipitation, 0.5) << "the hour's own value";
  EXPECT_TRUE(isWet(*now));
}

INSTANTIATE_TEST_SUITE_P(
    Demo, NowcastStandIns,
    testing::Values(
        Row{"MetNorway", kOslo, [](Coordinate place, Instant) { return metNowcastPath(place); },
            metNorwayNowcast, parseMetNowcast, minutes(5)},
        Row{"BrightSky", kBerlin, brightSkyRadarPath, brightSkyRadar, parseBrightSkyRadar, minutes(5)},
        Row{"OpenMeteo", kNewYork, [](Coordinate place, Instant) { return openMeteoQuartersPath(place); },
            openMeteoForecast, parseOpenMeteoQuarters, minutes(15)}),
    [](auto const& info) { return info.param.name; });

TEST(NowcastAnswers, RefuseWhatTheyDoNotCover) {
  Instant const now = at("2026-11-21T09:20:00Z");
  EXPECT_EQ(metNorwayNowcast(requestFor(metNowcastPath(kBerlin)), now).status, 422);
  DemoAnswer const outside = brightSkyRadar(requestFor(brightSkyRadarPath(kOslo, now)), now);
  EXPECT_EQ(outside.status, 404);
  EXPECT_TRUE(isOutsideBrightSkyRadar(outside.body));
}

TEST(NowcastAnswers, EndTheRadarInAnHourWhereNoTimeIsAskedFor) {
  Instant const now = at("2026-11-21T09:20:00Z");
  DemoAnswer const answer = brightSkyRadar(requestFor("/radar?lat=52.52&lon=13.41&format=plain"), now);
  auto const reply = parseBrightSkyRadar(answer.body);
  ASSERT_TRUE(reply);
  EXPECT_EQ(reply->nowcast.steps.back().to, now + hours(1));
}

}  // namespace
}  // namespace nimbara
