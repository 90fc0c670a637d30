#include "globe/satellite_passes.h"

#include "base/sun_moon.h"
#include "globe/propagation/sgp4_batch.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kDarkBelow = -6;  // civil twilight
constexpr double kExactMinutes = 0.05 / 60;
/// Fine enough that no pass has two maxima between three samples, nor slips through between them.
constexpr double kSamplesPerPeriod = 180;
constexpr double kLongestStepMinutes = 5;
constexpr double kLongestPassMinutes = 1440;
constexpr double kBelowEverything = -90;
constexpr double kMillisecondsAMinute = 60'000;

/// The sky of one place with one satellite in it; times in minutes since `from`.
class Sky {
 public:
  Sky(SGP4::SatRec const& record, Coordinate place, Instant from)
      : record_(record),
        place_(place),
        observer_(place),
        from_(from),
        offset_(SGP4::minutesSince(record.tle, SGP4::momentOf(from))) {}

  Instant instant(double minutes) const {
    return from_ + std::chrono::milliseconds(std::llround(minutes * kMillisecondsAMinute));
  }

  LookAngles look(double minutes) const { return look(SGP4::propagate(record_, offset_ + minutes), minutes); }
  double elevation(double minutes) const { return look(minutes).elevation; }

  PassMoment moment(double minutes) const {
    LookAngles const angles = look(minutes);
    return {instant(minutes), angles.azimuth, angles.elevation};
  }

  bool isSunlit(double minutes) const {
    auto const state = SGP4::propagate(record_, offset_ + minutes);
    return nimbara::isSunlit(state.position, sunDirection(momentAt(minutes)));
  }

  bool isDark(double minutes) const { return sunPosition(instant(minutes), place_).altitude < kDarkBelow; }

  /// Lit, in a dark sky, and so many degrees high.
  bool isVisible(double minutes, double above) const {
    return elevation(minutes) >= above && isDark(minutes) && isSunlit(minutes);
  }

  /// The elevations at `first`, `first` + `step` ….
  std::vector<double> elevations(double first, double step, std::size_t count) const {
    std::vector<double> minutes(count);
    for (std::size_t i = 0; i < count; ++i) minutes[i] = offset_ + first + step * static_cast<double>(i);
    std::vector<SGP4::StateVector> states(count);
    SGP4::propagateMany(record_, minutes, states);
    std::vector<double> result(count);
    for (std::size_t i = 0; i < count; ++i) result[i] = look(states[i], minutes[i] - offset_).elevation;
    return result;
  }

 private:
  /// With all digits of a fraction of a day.
  SGP4::Moment momentAt(double minutes) const {
    SGP4::Moment moment = SGP4::momentOf(from_);
    moment.fraction += minutes / 1440;
    return moment;
  }

  LookAngles look(SGP4::StateVector const& state, double minutes) const {
    if (state.error != SGP4::errorCode::kNone) return {0, kBelowEverything, 0};
    return observer_.look(EarthRotation::at(momentAt(minutes)).toEarthFixed(state.position));
  }

  SGP4::SatRec const& record_;
  Coordinate place_;
  Observer observer_;
  Instant from_;
  double offset_;
};

/// Where the elevation is highest between `low` and `high`, by the golden section.
double culmination(Sky const& sky, double low, double high) {
  constexpr double kGolden = 0.6180339887498949;
  double a = high - kGolden * (high - low), b = low + kGolden * (high - low);
  double atA = sky.elevation(a), atB = sky.elevation(b);
  while (high - low > kExactMinutes) {
    if (atA < atB) {
      low = std::exchange(a, b);
      atA = atB;
      b = low + kGolden * (high - low);
      atB = sky.elevation(b);
    } else {
      high = std::exchange(b, a);
      atB = atA;
      a = high - kGolden * (high - low);
      atA = sky.elevation(a);
    }
  }
  return (low + high) / 2;
}

/// Where what holds at one moment ends on the way to one at which it does not.
template <class Holds>
double boundary(Holds const& holds, double inside, double outside) {
  while (std::abs(inside - outside) > kExactMinutes) {
    double const middle = (inside + outside) / 2;
    (holds(middle) ? inside : outside) = middle;
  }
  return (inside + outside) / 2;
}

/// Where the elevation passes through 0 between a moment above the horizon and one below it.
double crossing(Sky const& sky, double above, double below) {
  return boundary([&](double minutes) { return sky.elevation(minutes) > 0; }, above, below);
}

/// The horizon on one side of a culmination, step by step; nothing when there is none within a day.
std::optional<double> horizon(Sky const& sky, double top, double step) {
  double above = top;
  for (double gone = 0; gone <= kLongestPassMinutes; gone += std::abs(step)) {
    double const next = above + step;
    if (sky.elevation(next) <= 0) return crossing(sky, above, next);
    above = next;
  }
  return std::nullopt;
}

/// The longest stretch between rise and set in which the satellite can be seen.
std::optional<PassSpan> visibleSpan(Sky const& sky, double rise, double set, double above) {
  constexpr double kStep = 10.0 / 60;
  auto const seen = [&](double minutes) {
    return minutes >= rise && minutes <= set && sky.isVisible(minutes, above);
  };
  std::optional<PassSpan> longest;
  std::optional<double> began;
  for (double t = rise; t <= set + kStep; t += kStep) {
    bool const isSeen = seen(t);
    if (isSeen && !began) began = boundary(seen, t, t - kStep);
    if (isSeen || !began) continue;
    PassSpan const span{sky.instant(*began), sky.instant(boundary(seen, t - kStep, t))};
    if (!longest || span.to - span.from > longest->to - longest->from) longest = span;
    began.reset();
  }
  return longest;
}

std::optional<SatellitePass> passAround(Sky const& sky, double top, double step, double visibleAbove) {
  auto const rise = horizon(sky, top, -step);
  auto const set = horizon(sky, top, step);
  if (!rise || !set) return std::nullopt;
  return SatellitePass{sky.moment(*rise), sky.moment(top), sky.moment(*set),
                       sky.isSunlit(top), sky.isDark(top), visibleSpan(sky, *rise, *set, visibleAbove)};
}

/// A wide orbit may stand highest twice in one pass; the higher one counts.
void add(std::vector<SatellitePass>& passes, SatellitePass const& pass) {
  constexpr std::chrono::seconds kSame{5};
  bool const again = !passes.empty() && std::chrono::abs(passes.back().rise.time - pass.rise.time) < kSame;
  if (!again) {
    passes.push_back(pass);
  } else if (pass.culmination.elevation > passes.back().culmination.elevation) {
    passes.back() = pass;
  }
}

}  // namespace

std::vector<SatellitePass> satellitePasses(SGP4::SatRec const& record, Coordinate place, Instant from,
                                           Instant to, double visibleAbove) {
  std::vector<SatellitePass> passes;
  if (!(record.no > 0) || to <= from) return passes;
  Sky const sky(record, place, from);
  double const period = std::min(record.periodMinutes(), kLongestPassMinutes);
  double const step = std::min(period / kSamplesPerPeriod, kLongestStepMinutes);
  double const span = static_cast<double>((to - from).count()) / kMillisecondsAMinute;
  // A pass that is going on may have culminated up to a period ago, one that begins may culminate after `to`.
  double const first = -period;
  auto const count = static_cast<std::size_t>((span + 2 * period) / step) + 3;
  std::vector<double> const elevations = sky.elevations(first, step, count);
  for (std::size_t i = 1; i + 1 < count; ++i) {
    bool const isPeak = elevations[i] > elevations[i - 1] && elevations[i] >= elevations[i + 1];
    if (!isPeak || elevations[i] < -step * 10) continue;
    double const middle = first + step * static_cast<double>(i);
    double const top = culmination(sky, middle - step, middle + step);
    if (sky.elevation(top) <= 0) continue;
    auto const pass = passAround(sky, top, step, visibleAbove);
    if (pass && pass->set.time > from && pass->rise.time < to) add(passes, *pass);
  }
  return passes;
}

}  // namespace nimbara
