#include "base/sun_moon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>
#include <span>
#include <tuple>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kJ2000 = 2451545.0;
constexpr double kUnixEpochJulianDate = 2440587.5;
/// Terrestrial time minus universal time in this decade; it moves by less than a second a year.
constexpr double kDeltaTSeconds = 69.2;
constexpr double kSunThreshold = -0.8333;  // refraction of 34' and a semidiameter of 16'
constexpr double kRefraction = 34.0 / 60;
constexpr double kMoonRadiusPerParallax = 0.7275;

double sinDeg(double degrees) {
  return std::sin(degrees * kRadians);
}
double cosDeg(double degrees) {
  return std::cos(degrees * kRadians);
}

double turned(double degrees) {
  // A remainder by division: exact enough for angles, and fmod is slow for the large ones of sidereal time.
  return degrees - 360 * std::floor(degrees / 360);
}

/// -180 to 180.
double signedAngle(double degrees) {
  return turned(degrees + 180) - 180;
}

double julianDate(Instant instant) {
  return kUnixEpochJulianDate + static_cast<double>(instant.time_since_epoch().count()) / 86'400'000.0;
}

/// Julian centuries of terrestrial time since J2000.
double centuries(Instant instant) {
  return (julianDate(instant) + kDeltaTSeconds / 86400 - kJ2000) / 36525;
}

struct Ecliptic {
  double longitude;
  double latitude;
  double distanceKm;
};

struct Equatorial {
  double rightAscension;  // degrees
  double declination;
  double distanceKm;
};

double ascendingNode(double t) {
  return 125.04452 - 1934.136261 * t;
}

/// Leading terms of nutation in longitude, degrees.
double nutationLongitude(double t) {
  double const sun = 280.4665 + 36000.7698 * t;
  double const moon = 218.3165 + 481267.8813 * t;
  return (-17.20 * sinDeg(ascendingNode(t)) - 1.32 * sinDeg(2 * sun) - 0.23 * sinDeg(2 * moon)) / 3600;
}

double obliquity(double t) {
  return 23.4392911 - 0.0130042 * t + 9.20 / 3600 * cosDeg(ascendingNode(t));
}

/// Geometric longitude with aberration, true equinox of the date.
double sunLongitude(double t) {
  double const mean = 280.46646 + 36000.76983 * t + 0.0003032 * t * t;
  double const anomaly = 357.52911 + 35999.05029 * t - 0.0001537 * t * t;
  double const centre = (1.914602 - 0.004817 * t) * sinDeg(anomaly) +
                        (0.019993 - 0.000101 * t) * sinDeg(2 * anomaly) + 0.000289 * sinDeg(3 * anomaly);
  constexpr double kAberration = 0.00569;
  return turned(mean + centre - kAberration + nutationLongitude(t));
}

/// A periodic term: multiples of D, M, M', F and the coefficients of longitude (1e-6 degrees) and distance
/// (metres).
struct LongitudeTerm {
  signed char d, m, moon, f;
  int sine;
  int cosine;
};

constexpr std::array kLongitudeTerms = std::to_array<LongitudeTerm>({
    {0, 0, 1, 0, 6288774, -20905355}, {2, 0, -1, 0, 1274027, -3699111}, {2, 0, 0, 0, 658314, -2955968},
    {0, 0, 2, 0, 213618, -569925},    {0, 1, 0, 0, -185116, 48888},     {0, 0, 0, 2, -114332, -3149},
    {2, 0, -2, 0, 58793, 246158},     {2, -1, -1, 0, 57066, -152138},   {2, 0, 1, 0, 53322, -170733},
    {2, -1, 0, 0, 45758, -204586},    {0, 1, -1, 0, -40923, -129620},   {1, 0, 0, 0, -34720, 108743},
    {0, 1, 1, 0, -30383, 104755},     {2, 0, 0, -2, 15327, 10321},      {0, 0, 1, 2, -12528, 0},
    {0, 0, 1, -2, 10980, 79661},      {4, 0, -1, 0, 10675, -34782},     {0, 0, 3, 0, 10034, -23210},
    {4, 0, -2, 0, 8548, -21636},      {2, 1, -1, 0, -7888, 24208},      {2, 1, 0, 0, -6766, 30824},
    {1, 0, -1, 0, -5163, -8379},      {1, 1, 0, 0, 4987, -16675},       {2, -1, 1, 0, 4036, -12831},
    {2, 0, 2, 0, 3994, -10445},       {4, 0, 0, 0, 3861, -11650},       {2, 0, -3, 0, 3665, 14403},
    {0, 1, -2, 0, -2689, -7003},      {2, 0, -1, 2, -2602, 0},          {2, -1, -2, 0, 2390, 10056},
    {1, 0, 1, 0, -2348, 6322},        {2, -2, 0, 0, 2236, -9884},       {0, 1, 2, 0, -2120, 5751},
    {0, 2, 0, 0, -2069, 0},           {2, -2, -1, 0, 2048, -4950},      {2, 0, 1, -2, -1773, 4130},
    {2, 0, 0, 2, -1595, 0},           {4, -1, -1, 0, 1215, -3958},      {0, 0, 2, 2, -1110, 0},
});

struct LatitudeTerm {
  signed char d, m, moon, f;
  int sine;
};

constexpr std::array kLatitudeTerms = std::to_array<LatitudeTerm>({
    {0, 0, 0, 1, 5128122}, {0, 0, 1, 1, 280602},  {0, 0, 1, -1, 277693}, {2, 0, 0, -1, 173237},
    {2, 0, -1, 1, 55413},  {2, 0, -1, -1, 46271}, {2, 0, 0, 1, 32573},   {0, 0, 2, 1, 17198},
    {2, 0, 1, -1, 9266},   {0, 0, 2, -1, 8822},   {2, -1, 0, -1, 8216},  {2, 0, -2, -1, 4324},
    {2, 0, 1, 1, 4200},    {2, 1, 0, -1, -3359},  {2, -1, -1, 1, 2463},  {2, -1, 0, 1, 2211},
    {2, -1, -1, -1, 2065}, {0, 1, -1, -1, -1870}, {4, 0, -1, -1, 1828},  {0, 1, 0, 1, -1794},
    {0, 0, 0, 3, -1749},   {0, 1, -1, 1, -1565},  {1, 0, 0, 1, -1491},   {0, 1, 1, 1, -1475},
    {0, 1, 1, -1, -1410},  {0, 1, 0, -1, -1344},  {1, 0, 0, -1, -1335},  {0, 0, 3, 1, 1107},
    {4, 0, 0, -1, 1021},
});

/// The cosines and sines of small multiples of an angle, so that a sum of multiples costs a few products.
class Multiples {
 public:
  explicit Multiples(double degrees) {
    std::complex<double> const unit = std::polar(1.0, degrees * kRadians);
    for (std::size_t i = 1; i <= kMost; ++i) {
      turns_[kMost + i] = turns_[kMost + i - 1] * unit;
      turns_[kMost - i] = std::conj(turns_[kMost + i]);
    }
  }
  std::complex<double> operator[](int multiple) const {
    return turns_[kMost + static_cast<std::size_t>(multiple)];
  }

 private:
  static constexpr std::size_t kMost = 4;
  std::array<std::complex<double>, 2 * kMost + 1> turns_{{0, 0, 0, 0, 1, 0, 0, 0, 0}};
};

/// The fundamental arguments of the moon's motion at one moment.
class MoonArguments {
 public:
  explicit MoonArguments(double t)
      : mean(218.3164477 + 481267.88123421 * t - 0.0015786 * t * t),
        moon(134.9633964 + 477198.8675055 * t + 0.0087414 * t * t),
        f(93.2720950 + 483202.0175233 * t - 0.0036539 * t * t),
        eccentricity_(1 - 0.002516 * t - 0.0000074 * t * t),
        d_(297.8501921 + 445267.1114034 * t - 0.0018819 * t * t),
        m_(357.5291092 + 35999.0502909 * t - 0.0001536 * t * t),
        moon_(moon),
        f_(f) {}

  /// Cosine and sine of a term's argument. Terms with the sun's anomaly shrink with the earth's eccentricity.
  template <class Term>
  std::complex<double> term(Term const& term) const {
    int const power = std::abs(term.m);
    double const factor = power == 0 ? 1 : power == 1 ? eccentricity_ : eccentricity_ * eccentricity_;
    return factor * (d_[term.d] * m_[term.m]) * (moon_[term.moon] * f_[term.f]);
  }

  double mean;  // longitude
  double moon;  // anomaly
  double f;     // argument of latitude

 private:
  double eccentricity_;
  Multiples d_, m_, moon_, f_;
};

/// Rises and settings need the place to a hundredth of a degree (a few seconds of time), phases all terms
/// that we have.
enum class Accuracy { riseSet, full };

Ecliptic moonEcliptic(double t, Accuracy accuracy) {
  constexpr std::size_t kCoarseLongitude = 24;
  constexpr std::size_t kCoarseLatitude = 13;
  bool const full = accuracy == Accuracy::full;
  MoonArguments const arguments(t);
  auto const [mean, moon, f] = std::tuple(arguments.mean, arguments.moon, arguments.f);
  double longitude = 0;
  double distance = 0;
  double latitude = 0;
  for (LongitudeTerm const& term :
       std::span(kLongitudeTerms).first(full ? kLongitudeTerms.size() : kCoarseLongitude)) {
    auto const value = arguments.term(term);
    longitude += term.sine * value.imag();
    distance += term.cosine * value.real();
  }
  for (LatitudeTerm const& term :
       std::span(kLatitudeTerms).first(full ? kLatitudeTerms.size() : kCoarseLatitude))
    latitude += term.sine * arguments.term(term).imag();
  if (!full) return {turned(mean + longitude / 1e6), latitude / 1e6, 385000.56 + distance / 1000};
  // Venus, Jupiter and the flattening of the earth.
  double const a1 = 119.75 + 131.849 * t;
  double const a2 = 53.09 + 479264.290 * t;
  double const a3 = 313.45 + 481266.484 * t;
  longitude += 3958 * sinDeg(a1) + 1962 * sinDeg(mean - f) + 318 * sinDeg(a2);
  latitude += -2235 * sinDeg(mean) + 382 * sinDeg(a3) + 175 * sinDeg(a1 - f) + 175 * sinDeg(a1 + f) +
              127 * sinDeg(mean - moon) - 115 * sinDeg(mean + moon);
  return {turned(mean + longitude / 1e6), latitude / 1e6, 385000.56 + distance / 1000};
}

Equatorial equatorial(Ecliptic const& body, double t) {
  double const longitude = body.longitude * kRadians;
  double const latitude = body.latitude * kRadians;
  double const tilt = obliquity(t) * kRadians;
  double const x = std::cos(latitude) * std::cos(longitude);
  double const y =
      std::cos(latitude) * std::sin(longitude) * std::cos(tilt) - std::sin(latitude) * std::sin(tilt);
  double const z =
      std::cos(latitude) * std::sin(longitude) * std::sin(tilt) + std::sin(latitude) * std::cos(tilt);
  return {turned(std::atan2(y, x) / kRadians), std::asin(std::clamp(z, -1.0, 1.0)) / kRadians,
          body.distanceKm};
}

Equatorial sunEquatorial(Instant instant) {
  double const t = centuries(instant);
  constexpr double kAstronomicalUnitKm = 149597870.7;
  return equatorial({sunLongitude(t), 0, kAstronomicalUnitKm}, t);
}

Equatorial moonEquatorial(Instant instant, Accuracy accuracy) {
  double const t = centuries(instant);
  Ecliptic moon = moonEcliptic(t, accuracy);
  moon.longitude += nutationLongitude(t);
  return equatorial(moon, t);
}

/// Mean sidereal time at Greenwich, degrees.
double siderealTime(Instant instant) {
  double const days = julianDate(instant) - kJ2000;
  return turned(280.46061837 + 360.98564736629 * days);
}

/// The sine of the altitude alone, which is all that a search for the horizon needs.
class Altimeter {
 public:
  explicit Altimeter(Coordinate place)
      : sine_(sinDeg(place.latitude)), cosine_(cosDeg(place.latitude)), longitude_(place.longitude) {}

  double sine(Equatorial const& body, Instant instant) const {
    double const hourAngle = siderealTime(instant) + longitude_ - body.rightAscension;
    return sine_ * sinDeg(body.declination) + cosine_ * cosDeg(body.declination) * cosDeg(hourAngle);
  }

 private:
  double sine_;
  double cosine_;
  double longitude_;
};

HorizontalPosition horizontal(Equatorial const& body, Instant instant, Coordinate place) {
  double const hourAngle = siderealTime(instant) + place.longitude - body.rightAscension;
  double const sine = Altimeter(place).sine(body, instant);
  double const south = cosDeg(hourAngle) * sinDeg(place.latitude) -
                       std::tan(body.declination * kRadians) * cosDeg(place.latitude);
  return {std::asin(std::clamp(sine, -1.0, 1.0)) / kRadians,
          turned(std::atan2(sinDeg(hourAngle), south) / kRadians + 180)};
}

double horizontalParallax(double distanceKm) {
  constexpr double kEquatorialRadiusKm = 6378.14;
  return std::asin(kEquatorialRadiusKm / distanceKm) / kRadians;
}

/// Places of a body that moves smoothly, computed at a few knots of a span and interpolated by a parabola
/// between.
class Track {
 public:
  Track(Instant begin, Instant end, Equatorial (*body)(Instant))
      : begin_(begin), step_((end - begin) / (kKnots - 1)) {
    for (int i = 0; i < kKnots; ++i) {
      knots_[static_cast<std::size_t>(i)] = body(begin + i * step_);
      if (i == 0) continue;
      auto& knot = knots_[static_cast<std::size_t>(i)];
      double const before = knots_[static_cast<std::size_t>(i) - 1].rightAscension;
      knot.rightAscension = before + signedAngle(knot.rightAscension - before);
    }
  }

  Equatorial at(Instant instant) const {
    double const position =
        static_cast<double>((instant - begin_).count()) / static_cast<double>(step_.count());
    auto const middle = static_cast<std::size_t>(std::clamp(std::lround(position), 1L, long{kKnots - 2}));
    double const u = position - static_cast<double>(middle);
    auto const between = [&](double Equatorial::* part) {
      double const before = knots_[middle - 1].*part;
      double const centre = knots_[middle].*part;
      double const after = knots_[middle + 1].*part;
      return centre + u / 2 * (after - before + u * (after - 2 * centre + before));
    };
    return {between(&Equatorial::rightAscension), between(&Equatorial::declination),
            between(&Equatorial::distanceKm)};
  }

 private:
  static constexpr int kKnots = 7;

  Instant begin_;
  milliseconds step_;
  std::array<Equatorial, kKnots> knots_{};
};

/// The moment between `low` and `high` at which `height` passes zero.
template <class Height>
Instant crossing(Instant low, Instant high, Height const& height) {
  bool const rising = height(low) < 0;
  while (high - low > milliseconds(500)) {
    Instant const middle = low + (high - low) / 2;
    ((height(middle) < 0) == rising ? low : high) = middle;
  }
  return low + (high - low) / 2;
}

/// Looks for the first rise and the first setting. `height` is positive above the body's threshold.
template <class Height>
RiseSet riseSet(Instant begin, Instant end, Height const& height) {
  constexpr minutes kStep{30};
  RiseSet found;
  found.alwaysUp = height(begin) >= 0;
  Instant before = begin;
  double heightBefore = height(begin);
  while (before < end && !(found.rise && found.set)) {
    Instant const after = std::min<Instant>(before + kStep, end);
    double const heightAfter = height(after);
    bool const rises = heightBefore < 0 && heightAfter >= 0;
    bool const sets = heightBefore >= 0 && heightAfter < 0;
    if (rises && !found.rise) found.rise = crossing(before, after, height);
    if (sets && !found.set) found.set = crossing(before, after, height);
    before = after;
    heightBefore = heightAfter;
  }
  if (found.rise && *found.rise >= end) found.rise.reset();
  if (found.set && *found.set >= end) found.set.reset();
  return found;
}

MoonPhase phaseOfQuarter(int quarter) {
  return static_cast<MoonPhase>(quarter % 4 * 2);
}

}  // namespace

HorizontalPosition sunPosition(Instant instant, Coordinate place) {
  return horizontal(sunEquatorial(instant), instant, place);
}

HorizontalPosition moonPosition(Instant instant, Coordinate place) {
  Equatorial const moon = moonEquatorial(instant, Accuracy::full);
  HorizontalPosition position = horizontal(moon, instant, place);
  position.altitude -= horizontalParallax(moon.distanceKm) * cosDeg(position.altitude);
  return position;
}

RiseSet sunRiseSet(Instant begin, Instant end, Coordinate place) {
  Track const track(begin, end, sunEquatorial);
  Altimeter const altimeter(place);
  double const threshold = sinDeg(kSunThreshold);
  return riseSet(begin, end,
                 [&](Instant instant) { return altimeter.sine(track.at(instant), instant) - threshold; });
}

RiseSet moonRiseSet(Instant begin, Instant end, Coordinate place) {
  Track const track(begin, end, [](Instant instant) { return moonEquatorial(instant, Accuracy::riseSet); });
  Altimeter const altimeter(place);
  // The parallax moves by a thousandth of a degree an hour: one threshold serves the span.
  double const parallax = horizontalParallax(track.at(begin + (end - begin) / 2).distanceKm);
  double const threshold = sinDeg(kMoonRadiusPerParallax * parallax - kRefraction);
  return riseSet(begin, end,
                 [&](Instant instant) { return altimeter.sine(track.at(instant), instant) - threshold; });
}

MoonState moonState(Instant instant) {
  double const t = centuries(instant);
  Ecliptic const moon = moonEcliptic(t, Accuracy::full);
  double const elongation = turned(moon.longitude + nutationLongitude(t) - sunLongitude(t));
  double const separation = cosDeg(moon.latitude) * cosDeg(elongation);
  // The sun is so far away that the phase angle is the supplement of the elongation to a fraction of a
  // degree.
  return {elongation, (1 - separation) / 2};
}

MoonPhase moonPhase(Instant begin, Instant end) {
  double const first = moonState(begin).elongation;
  double const advance = turned(moonState(end).elongation - first);
  int const quarter = static_cast<int>(first / 90);
  bool const reachesNext = first + advance >= (quarter + 1) * 90;
  if (reachesNext) return phaseOfQuarter(quarter + 1);
  return static_cast<MoonPhase>(quarter * 2 + 1);
}

}  // namespace nimbara
