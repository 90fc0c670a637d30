#include "demo/world/demo_satellites.h"

#include "globe/propagation/sat_rec.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;

/// Numbers in [low, high), the same in every run.
class Draw {
 public:
  explicit Draw(std::uint64_t seed) : state_(seed) {}

  double operator()(double low, double high) {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return low + (high - low) * static_cast<double>(state_ >> 11) / 9007199254740992.0;
  }

 private:
  std::uint64_t state_;
};

/// How the satellites of one part of a group are called.
using Naming = std::string (*)(std::string_view name, int index);

std::string plainName(std::string_view name, int) {
  return std::string(name);
}
std::string numberedName(std::string_view name, int index) {
  return std::string(name) + std::to_string(1000 + index);
}
std::string galileoName(std::string_view, int index) {
  std::string const number = std::to_string(index + 1);
  return "GSAT02" + std::string(number.size() < 2 ? "0" : "") + number + " (GALILEO " + number + ")";
}
std::string glonassName(std::string_view, int index) {
  return "COSMOS " + std::to_string(2425 + index) + " (" + std::to_string(715 + index) + ")";
}

/// A part of a group: `planes` planes with evenly spread nodes and as many satellites in each, or, with no
/// planes, orbits drawn around the given one with the given spread.
struct Part {
  std::string_view name;
  Naming naming;
  int count;
  int firstNumber;
  double altitudeKm, eccentricity, inclination;
  int planes;
  double altitudeSpread, inclinationSpread;
  double bstar;
};

constexpr Part kStations[] = {{"ISS (ZARYA)", plainName, 1, 25544, 418, 0.0006, 51.63, 0, 0, 0, 2.5e-4},
                              {"ISS (NAUKA)", plainName, 1, 49044, 418, 0.0006, 51.63, 0, 0, 0, 2.5e-4},
                              {"CSS (TIANHE)", plainName, 1, 48274, 388, 0.0004, 41.47, 0, 0, 0, 3e-4},
                              {"HST", plainName, 1, 20580, 500, 0.0002, 28.47, 0, 0, 0, 1.5e-4}};
constexpr Part kStarlink[] = {{"STARLINK-", numberedName, 3600, 50000, 550, 1e-4, 53.05, 72, 0, 0, 3e-4},
                              {"STARLINK-", numberedName, 2800, 54000, 540, 1e-4, 53.22, 70, 0, 0, 3e-4},
                              {"STARLINK-", numberedName, 2000, 57000, 530, 1e-4, 43.0, 50, 0, 0, 3e-4},
                              {"STARLINK-", numberedName, 600, 100010, 570, 1e-4, 70.0, 20, 0, 0, 3e-4}};
constexpr Part kOneWeb[] = {{"ONEWEB-", numberedName, 648, 44057, 1200, 2e-4, 87.9, 12, 0, 0, 1e-4}};
constexpr Part kWeather[] = {{"DEMOSAT POLAR-", numberedName, 24, 28054, 830, 1e-3, 98.75, 0, 15, 0.1, 5e-5},
                             {"DEMOSAT GEO-", numberedName, 18, 41866, 35786.5, 1e-4, 0.05, 0, 0.5, 0.03, 0}};
constexpr Part kGalileo[] = {{"", galileoName, 27, 37846, 23222, 2e-4, 56.0, 3, 0, 0, 0}};
constexpr Part kGlonass[] = {{"", glonassName, 24, 29670, 19130, 1e-3, 64.8, 3, 0, 0, 0}};
constexpr Part kCosmos[] = {{"COSMOS 2251 DEB", plainName, 584, 33757, 780, 0.012, 74.0, 0, 70, 0.3, 1e-3}};
constexpr Part kIridium[] = {{"IRIDIUM 33 DEB", plainName, 111, 34400, 760, 0.01, 86.4, 0, 60, 0.2, 1e-3}};
constexpr Part kFengyun[] = {{"FENGYUN 1C DEB", plainName, 1200, 29712, 850, 0.015, 98.9, 0, 100, 0.6, 1e-3}};

struct DemoGroup {
  std::string_view id;
  std::span<Part const> parts;
};

constexpr DemoGroup kGroups[] = {
    {"stations", kStations},         {"starlink", kStarlink},         {"oneweb", kOneWeb},
    {"weather", kWeather},           {"galileo", kGalileo},           {"glo-ops", kGlonass},
    {"cosmos-2251-debris", kCosmos}, {"iridium-33-debris", kIridium}, {"fengyun-1c-debris", kFengyun}};

double turned(double degrees) {
  return (degrees - 360 * std::floor(degrees / 360)) * kRadians;
}

/// Node and anomaly: by the pattern of planes, or drawn. Satellites that share their name's beginning (the
/// two modules) stand together.
void setPlace(SGP4::TLE& tle, Part const& part, int index, Draw& draw) {
  if (part.planes == 0) {
    bool const single = part.count == 1;
    tle.nodeo = turned(single ? part.inclination * 4 : draw(0, 360));
    tle.mo = turned(single ? part.inclination * 3 : draw(0, 360));
    return;
  }
  int const inPlane = part.count / part.planes;
  int const plane = index / inPlane;
  tle.nodeo = turned(360.0 * plane / part.planes + part.altitudeKm);
  tle.mo = turned(360.0 * (index % inPlane) / inPlane + 360.0 * plane / part.count);
}

SGP4::TLE elements(Part const& part, int index, SGP4::Moment epoch, Draw& draw) {
  SGP4::TLE tle;
  tle.name = part.naming(part.name, index);
  tle.satnum = part.firstNumber + index;
  tle.intldesg = "26001A";
  tle.epochDay = epoch.day;
  tle.epochFraction = epoch.fraction;
  double const altitude = part.altitudeKm + part.altitudeSpread * (draw(-1, 1) + draw(-1, 1));
  double const radii = 1 + altitude / SGP4::kEarthRadiusKm;
  tle.no_kozai = SGP4::kXke / std::pow(radii, 1.5);
  tle.ecco = part.eccentricity * draw(0.5, 1.5);
  tle.inclo = std::abs(part.inclination + part.inclinationSpread * draw(-1, 1)) * kRadians;
  tle.argpo = turned(part.planes == 0 && part.count > 1 ? draw(0, 360) : 90);
  tle.bstar = part.bstar;
  tle.ndot = part.bstar / 10;
  setPlace(tle, part, index, draw);
  return tle;
}

/// Some hours back, as elements that were measured are.
SGP4::Moment epochFor(Instant now) {
  Instant const hour = std::chrono::floor<std::chrono::hours>(now) - std::chrono::hours(5);
  return SGP4::momentOf(hour);
}

std::chrono::year_month_day dateOf(SGP4::Moment moment) {
  return std::chrono::sys_days(std::chrono::days(static_cast<int>(moment.day - 2440587.5)));
}

}  // namespace

std::optional<std::vector<SGP4::TLE>> demoSatellites(std::string_view wanted, Instant now) {
  auto const group = std::ranges::find(kGroups, wanted, &DemoGroup::id);
  if (group == std::ranges::end(kGroups)) return std::nullopt;
  SGP4::Moment const epoch = epochFor(now);
  Draw draw(group->id.size() * 977);
  std::vector<SGP4::TLE> satellites;
  for (Part const& part : group->parts) {
    for (int i = 0; i < part.count; ++i) {
      satellites.push_back(elements(part, i, epoch, draw));
      satellites.back().epoch = std::chrono::sys_days(dateOf(epoch));
    }
  }
  return satellites;
}

}  // namespace nimbara
