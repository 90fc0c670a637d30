#include "feeds/quakes/emsc.h"

#include "feeds/quakes/felt_intensity.h"
#include "support/answers/bad_bytes.h"
#include "support/instants.h"
#include "support/samples.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;

EarthquakeEvent quake(double magnitude, Coordinate place, int seconds = 0) {
  EarthquakeEvent event;
  event.id = "a";
  event.magnitude = magnitude;
  event.time = at("2026-10-03T02:00:00Z") + std::chrono::seconds(seconds);
  event.latitude = place.latitude;
  event.longitude = place.longitude;
  return event;
}

TEST(Emsc, ReadsTheRecordedList) {
  auto const files = test::sampleFiles("emsc");
  if (!files) GTEST_SKIP() << "NIMBARA_SAMPLES is not set";
  std::string const body = test::readFile(files->front());
  auto const events = parseEmscEarthquakes(body);
  ASSERT_TRUE(events) << events.error().text();
  ASSERT_EQ(events->size(), 11);
  EXPECT_EQ(events->front().place, "Pyrenees");
  EXPECT_EQ(events->front().time, at("2026-10-03T02:02:32.710Z"));
  EXPECT_EQ((*events)[1].depthKm, 7.1) << "downward, unlike the third coordinate";
  for (std::string const& damaged : test::damagedForms(body, 61)) parseEmscEarthquakes(damaged);
}

TEST(Emsc, TellsNoneFromNoList) {
  EXPECT_TRUE(parseEmscEarthquakes("")->empty()) << "status 204";
  EXPECT_TRUE(parseEmscEarthquakes(R"({"features":[]})")->empty());
  for (std::string const body : {"<html>", "[]", "{}", R"({"features":1})"})
    EXPECT_FALSE(parseEmscEarthquakes(body)) << body;
  EXPECT_TRUE(
      parseEmscEarthquakes(R"({"features":[{"properties":{"mag":3}},{"properties":null}]})")->empty());
}

struct SameRow {
  double magnitude;
  double latitude;
  int seconds;
  bool same;
};

TEST(Emsc, CountsOneEarthquakeOnce) {
  // 0.899° of latitude are 99.96 km.
  for (SameRow const& row : {SameRow{4.5, 0.899, 90, true},
                             {4.51, 0, 0, false},
                             {4, 0.9, 0, false},
                             {4, 0, 91, false},
                             {3.5, 0, -90, true}}) {
    EarthquakeEvent other = quake(row.magnitude, {row.latitude, 0}, row.seconds);
    other.emscMagnitude = row.magnitude;
    auto const merged = mergedEarthquakes({quake(4, {0, 0})}, {other});
    ASSERT_EQ(merged.size(), row.same ? 1 : 2) << row.magnitude << " " << row.latitude << " " << row.seconds;
    if (row.same) EXPECT_EQ(merged.front().emscMagnitude, row.magnitude);
  }
}

TEST(FeltIntensity, FallsWithDistance) {
  EXPECT_NEAR(feltIntensity(6, 0, 10), 2.085 + 8.568 - 1.402 * std::log(std::hypot(10, 5.3417)), 0.001);
  EXPECT_NEAR(feltDistanceKm(5, 10), 86.5, 1);
  EXPECT_EQ(feltDistanceKm(1, 10), 0);
  EXPECT_EQ(feltDistanceKm(5, 130), 0) << "too deep";
}

}  // namespace
}  // namespace nimbara
