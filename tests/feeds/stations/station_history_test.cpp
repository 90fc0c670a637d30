#include "feeds/stations/station_history.h"

#include "support/instants.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using enum StationQuantity;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using test::at;
using Kind = StationModuleKind;

constexpr char kNow[] = "2026-11-21T12:00:00Z";

StationReading station(std::string id, Instant observedAt, double celsius) {
  StationReading made{.id = std::move(id), .modules = {}};
  made.modules.push_back(
      {.kind = Kind::outdoor, .observedAt = observedAt, .values = {{temperature, celsius}}});
  return made;
}

TEST(StationSamples, AreOfWhatIsMeasuredOutdoorsNow) {
  Instant const now = at(kNow);
  StationReading made = station("s", now - minutes(4), 3.4);
  made.modules.push_back(
      {.kind = Kind::base, .observedAt = now, .values = {{temperature, 21}, {pressure, 1012}}});
  made.modules.push_back({.kind = Kind::wind, .observedAt = now - minutes(31), .values = {{windSpeed, 9}}});
  StationSample const expected{now, 3.4, std::nullopt, 1012};
  EXPECT_EQ(sampleOf(made, now), expected);
  EXPECT_EQ(sampleOf(station("s", now - minutes(31), 3.4), now), std::nullopt);
}

TEST(StationSamples, AreOneInFiveMinutesOfTheLastTwoDays) {
  Instant const now = at(kNow);
  std::vector<StationSample> samples;
  for (Instant then = now - hours(60); then <= now; then += minutes(1))
    samples = withSample(std::move(samples), {.at = then}, then);
  EXPECT_EQ(samples.size(), 48U * 12 + 1);
  EXPECT_EQ(samples.front().at, now - hours(48));
  EXPECT_EQ(samples.back().at, now);
  auto const set = withSample(samples, {.at = now - hours(5)}, now - hours(5));
  EXPECT_EQ(set.back().at, now - hours(5) + minutes(5)) << "the clock was set back";
}

TEST(StationHistory, IsOfOneStationAndOutlivesTheProgram) {
  test::TemporaryFolder const folder;
  Instant const now = at(kNow);
  auto const history = [&] { return StationHistory(folder.path() / "History.json"); };
  for (int i = 0; i < 3; ++i)
    history().note("account", station("s", now + minutes(10 * i), i), now + minutes(10 * i) + seconds(20));
  auto const kept = history().read("account", station("s", now, 0), now + minutes(20));
  ASSERT_EQ(kept.size(), 3U);
  EXPECT_EQ(kept.back(), (StationSample{.at = now + minutes(20), .temperature = 2}));
  EXPECT_TRUE(history().read("account", station("other", now, 0), now).empty());
  EXPECT_TRUE(history().read("around", station("s", now, 0), now).empty());
  EXPECT_TRUE(history().read("account", station("s", now, 0), now + hours(49)).empty());
  history().note("account", station("other", now, 7), now);
  EXPECT_EQ(history().read("account", station("other", now, 0), now).size(), 1U);
  EXPECT_TRUE(history().read("account", station("s", now, 0), now).empty());
  history().remove();
  EXPECT_TRUE(history().read("account", station("other", now, 0), now).empty());
  StationHistory("").note("account", station("s", now, 1), now);
}

}  // namespace
}  // namespace nimbara
