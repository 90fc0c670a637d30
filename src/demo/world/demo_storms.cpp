#include "demo/world/demo_storms.h"

#include "base/time/calendar.h"
#include "demo/world/demo_draw.h"

#include <cmath>
#include <numbers>
#include <optional>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;

constexpr hours kLife{192};
constexpr hours kReportEvery{6};
constexpr double kKmInADegree = 111.2;
constexpr int kNumbers = 49;

enum Stream : std::uint64_t { kStrength = 111, kSidestep = 113 };

constexpr DemoStormLane kLanes[] = {
    {"al", "AT1", {13.0, -42.0}, {33.0, -73.0}, hours(0), false},
    {"al", "AT2", {16.5, -80.0}, {29.5, -89.5}, hours(70), true},
    {"ep", "EP1", {12.5, -97.0}, {21.5, -121.0}, hours(110), false},
    {"cp", "CP1", {13.5, -146.0}, {20.5, -166.0}, hours(30), true},
    {"wp", "", {10.0, 148.0}, {33.0, 134.0}, hours(50), false},
    {"io", "", {10.0, 90.0}, {21.0, 87.0}, hours(150), true},
    {"sh", "", {-11.0, 72.0}, {-22.0, 58.0}, hours(90), false},
};

constexpr std::string_view kNames[] = {"Alder",  "Birch",  "Cedar", "Dahlia",  "Elm",  "Fern",
                                       "Ginkgo", "Hazel",  "Iris",  "Juniper", "Kelp", "Laurel",
                                       "Maple",  "Nettle", "Olive", "Pine"};

bool isInSeason(Instant instant) {
  auto const month = static_cast<unsigned>(Date(std::chrono::floor<days>(instant)).month());
  return month >= 6 && month <= 11;
}

std::optional<DemoStorm> stormOf(DemoStormLane const& lane, Instant instant) {
  std::int64_t const number = (instant.time_since_epoch() - lane.shift) / milliseconds(kLife);
  DemoStorm const storm{&lane, number, Instant(number * milliseconds(kLife) + lane.shift)};
  if (lane.isInSeasonOnly && !isInSeason(storm.begin)) return std::nullopt;
  return storm;
}

std::int64_t drawIndex(DemoStorm const& storm) {
  return storm.number * 10 + (storm.lane - std::begin(kLanes));
}

Coordinate placeOf(DemoStorm const& storm, double age) {
  Coordinate const& from = storm.lane->begin;
  Coordinate const& to = storm.lane->end;
  double const aside = 4 * (demoDraw(kSidestep, drawIndex(storm)) - 0.5) * age;
  // First to the west, then more and more to the pole.
  return {from.latitude + (to.latitude - from.latitude) * std::pow(age, 1.5) + aside,
          from.longitude + (to.longitude - from.longitude) * std::pow(age, 0.9)};
}

}  // namespace

Instant DemoStorm::end() const {
  return begin + kLife;
}

DemoStormMoment demoStormMoment(DemoStorm const& storm, Instant instant) {
  double const age = std::chrono::duration<double>(instant - storm.begin) / kLife;
  double const later = age + std::chrono::duration<double>(hours(1)) / kLife;
  DemoStormMoment moment;
  moment.place = placeOf(storm, age);
  double const peak = 45 + 100 * demoDraw(kStrength, drawIndex(storm));
  moment.knots = 5 * std::round((25 + (peak - 25) * std::sin(std::numbers::pi * age)) / 5);
  Coordinate const next = placeOf(storm, later);
  double const north = (next.latitude - moment.place.latitude) * kKmInADegree;
  double const east = (next.longitude - moment.place.longitude) * kKmInADegree *
                      std::cos(moment.place.latitude * std::numbers::pi / 180);
  moment.direction = std::round(std::fmod(std::atan2(east, north) * 180 / std::numbers::pi + 360, 360));
  moment.speedMph = std::round(std::hypot(north, east) / 1.609344);
  return moment;
}

std::string demoStormId(DemoStorm const& storm) {
  std::int64_t const number = (2 * storm.number + (storm.lane - std::begin(kLanes)) % 2) % kNumbers + 1;
  std::string const year = formatDate(Date(std::chrono::floor<days>(storm.begin))).substr(0, 4);
  return std::string(storm.lane->basin) + (number < 10 ? "0" : "") + std::to_string(number) + year;
}

std::string_view demoStormName(DemoStorm const& storm) {
  // Seven steps on for each later storm: no two of a moment, whose lanes are fewer, have the same.
  auto const lane = static_cast<std::size_t>(storm.lane - std::begin(kLanes));
  return kNames[(static_cast<std::size_t>(storm.number) * 7 + lane) % std::size(kNames)];
}

Instant demoStormRun(Instant now) {
  return Instant((now.time_since_epoch() - kDemoReportDelay) / kReportEvery * kReportEvery);
}

std::vector<DemoStorm> demoStormsAt(Instant now) {
  std::vector<DemoStorm> storms;
  for (DemoStormLane const& lane : kLanes) {
    if (auto const storm = stormOf(lane, demoStormRun(now))) storms.push_back(*storm);
  }
  return storms;
}

}  // namespace nimbara
