#include "demo/feeds/firms_stand_in.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "demo/world/demo_draw.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;

constexpr double kCellDegrees = 1;
constexpr double kShareOfCells = 0.06;
constexpr std::int64_t kSpellDays = 5;
constexpr int kMostDays = 5;
constexpr hours kLatency{3};
constexpr double kFireRadius = 0.012;  // degrees, so that all of a fire's hot spots are near each other
/// When the satellite comes by, in the sun's time.
constexpr minutes kPasses[] = {minutes(90), minutes(810)};

enum Stream : std::uint64_t { kIsBurning = 121, kNorth, kEast, kSize, kSpotNorth, kSpotEast, kPower, kSure };

struct Box {
  double west, south, east, north;

  bool contains(Coordinate place) const {
    return place.latitude >= south && place.latitude <= north && place.longitude >= west &&
           place.longitude <= east;
  }
};

struct Fire {
  std::int64_t number = 0;
  Coordinate middle;
  int spots = 0;
};

std::int64_t dayOf(Instant instant) {
  return std::chrono::floor<days>(instant).time_since_epoch().count();
}

std::optional<Fire> fireOfCell(std::int64_t row, std::int64_t column, std::int64_t day) {
  std::int64_t const number = ((row + 90) * 360 + column + 180) * 10'000 + day / kSpellDays % 10'000;
  if (demoDraw(kIsBurning, number) >= kShareOfCells) return std::nullopt;
  Fire fire;
  fire.number = number;
  fire.middle = {static_cast<double>(row) + 0.1 + 0.8 * demoDraw(kNorth, number),
                 static_cast<double>(column) + 0.1 + 0.8 * demoDraw(kEast, number)};
  fire.spots = 2 + static_cast<int>(demoDraw(kSize, number) * 12);
  if (!isValid(fire.middle) || describePlace(fire.middle).countryCode.empty()) return std::nullopt;
  return fire;
}

std::vector<Fire> firesOfDay(Box const& box, std::int64_t day) {
  std::vector<Fire> fires;
  auto const cell = [](double degrees) {
    return static_cast<std::int64_t>(std::floor(degrees / kCellDegrees));
  };
  for (std::int64_t row = cell(box.south); row <= cell(box.north); ++row) {
    for (std::int64_t column = cell(box.west); column <= cell(box.east); ++column) {
      if (auto const fire = fireOfCell(row, column, day)) fires.push_back(*fire);
    }
  }
  return fires;
}

/// "730" for 07:30.
std::string passText(Instant pass) {
  auto const sinceMidnight = std::chrono::floor<minutes>(pass - std::chrono::floor<days>(pass)).count();
  return std::to_string(sinceMidnight / 60 * 100 + sinceMidnight % 60);
}

std::string_view sureness(double draw) {
  return draw < 0.15 ? "l" : draw < 0.85 ? "n" : "h";
}

std::string rowOf(Fire const& fire, int spot, Instant pass) {
  constexpr int kDecimals = 5;
  std::int64_t const index = fire.number * 1000 + dayOf(pass) % 10 * 100 + spot;
  double const north = fire.middle.latitude + kFireRadius * (2 * demoDraw(kSpotNorth, index) - 1);
  double const east = fire.middle.longitude + kFireRadius * (2 * demoDraw(kSpotEast, index) - 1);
  return fixedDecimal(north, kDecimals) + "," + fixedDecimal(east, kDecimals) + ",334.1,0.4,0.4," +
         formatDate(Date(std::chrono::floor<days>(pass))) + "," + passText(pass) + ",N20,VIIRS," +
         std::string(sureness(demoDraw(kSure, index))) + ",2.0NRT,291.2," +
         fixedDecimal(2 + 60 * demoDraw(kPower, index), 2) + ",D\n";
}

std::string tableOf(Box const& box, int dayCount, Instant now) {
  std::string table =
      "latitude,longitude,bright_ti4,scan,track,acq_date,acq_time,satellite,instrument,confidence,version,"
      "bright_ti5,frp,daynight\n";
  for (std::int64_t day = dayOf(now) - dayCount + 1; day <= dayOf(now); ++day) {
    for (Fire const& fire : firesOfDay(box, day)) {
      if (!box.contains(fire.middle)) continue;
      for (minutes const pass : kPasses) {
        // The pass of this day of Greenwich, whichever day it is there.
        auto const shift = minutes(std::lround(fire.middle.longitude * 4));
        auto const ofDay = (pass - shift + days(2)) % minutes(days(1));
        Instant const time = std::chrono::sys_days(days(day)) + ofDay;
        if (time + kLatency > now) continue;
        for (int spot = 0; spot < fire.spots; ++spot) table += rowOf(fire, spot, time);
      }
    }
  }
  return table;
}

std::optional<Box> boxOf(std::string_view text) {
  auto const parts = split(text, ',');
  if (parts.size() != 4) return std::nullopt;
  auto const southWest = demoCoordinate(parts[1], parts[0]);
  auto const northEast = demoCoordinate(parts[3], parts[2]);
  if (!southWest || !northEast) return std::nullopt;
  return Box{southWest->longitude, southWest->latitude, northEast->longitude, northEast->latitude};
}

}  // namespace

std::vector<Coordinate> demoFires(Coordinate southWest, Coordinate northEast, Instant now) {
  Box const box{southWest.longitude, southWest.latitude, northEast.longitude, northEast.latitude};
  std::vector<Coordinate> middles;
  for (Fire const& fire : firesOfDay(box, dayOf(now))) {
    if (box.contains(fire.middle)) middles.push_back(fire.middle);
  }
  return middles;
}

DemoAnswer fireTable(DemoRequest const& request, Instant now) {
  // "", "api", "area", "csv", key, source, box, days.
  auto const parts = split(request.path, '/');
  constexpr std::size_t kParts = 8;
  if (parts.size() != kParts || parts[4] == "wrong") return {200, "Invalid MAP_KEY.", {}};
  auto const box = boxOf(parts[6]);
  int const dayCount = parseInteger(parts[7]).value_or(0);
  if (!box) return {400, "Invalid area.", {}};
  if (dayCount < 1 || dayCount > kMostDays) return {400, "Invalid day range. Expects [1..5].", {}};
  return {200, tableOf(*box, dayCount, now), {}};
}

}  // namespace nimbara
