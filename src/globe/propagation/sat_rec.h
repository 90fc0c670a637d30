// The state of the published SGP4/SDP4 propagator for one satellite. Made once from an element set, never
// changed after that, so that any number of threads may propagate it. Member names are those of the published
// record; its equations are those of F. R. Hoots and R. L. Roehrich, "Spacetrack Report No. 3" (1980), with
// the corrections of D. A. Vallado, P. Crawford, R. Hujsak and T. S. Kelso, "Revisiting Spacetrack Report #3"
// (AIAA 2006-6753), improved mode, gravity model WGS-72.
#pragma once

#include "globe/tle.h"

#include <array>

namespace nimbara::SGP4 {

/// WGS-72.
inline constexpr double kMu = 398600.8;              ///< km³/s²
inline constexpr double kEarthRadiusKm = 6378.135;   ///< equatorial
inline constexpr double kXke = 0.07436691613317342;  ///< √µ in earth radii^1.5 per minute
inline constexpr double kJ2 = 0.001082616;
inline constexpr double kJ3 = -0.00000253881;
inline constexpr double kJ4 = -0.00000165597;
inline constexpr double kJ3OverJ2 = kJ3 / kJ2;
inline constexpr double kKmPerSecond = kEarthRadiusKm * kXke / 60;  ///< earth radii per 1/xke minutes
inline constexpr double kDeepSpacePeriodMinutes = 225;
/// Beyond it (1,900 years) no state is computed; nothing would be left of the orbit.
inline constexpr double kLongestSpanMinutes = 1e9;

/// The codes of the published implementation.
namespace errorCode {
inline constexpr int kNone = 0;
inline constexpr int kMeanEccentricity = 1;       ///< mean eccentricity out of [0, 1)
inline constexpr int kMeanMotion = 2;             ///< mean motion below zero
inline constexpr int kPerturbedEccentricity = 3;  ///< eccentricity with periodic terms out of [0, 1]
inline constexpr int kSemiLatusRectum = 4;        ///< below zero
inline constexpr int kDecayed = 6;                ///< the satellite is below the earth's surface
}  // namespace errorCode

/// "decayed" and the like, for people.
std::string_view errorText(int code);

struct SatRec {
  TLE tle;
  bool isDeepSpace = false;
  int error = 0;    ///< of the state at the epoch; 0 = fine
  double no = 0;    ///< un-Kozai'd mean motion, radians per minute
  double a = 0;     ///< semi-major axis, earth radii
  double alta = 0;  ///< height of apogee, earth radii
  double altp = 0;  ///< height of perigee, earth radii

  // Copies of the elements under the record's names.
  double bstar = 0, inclo = 0, nodeo = 0, ecco = 0, argpo = 0, mo = 0;

  // Near earth: secular and periodic coefficients.
  bool isimp = false;  ///< the simplified drag of low perigees and of deep space
  double aycof = 0, con41 = 0, cc1 = 0, cc4 = 0, cc5 = 0, d2 = 0, d3 = 0, d4 = 0;
  double delmo = 0, eta = 0, argpdot = 0, omgcof = 0, sinmao = 0;
  double t2cof = 0, t3cof = 0, t4cof = 0, t5cof = 0, x1mth2 = 0, x7thm1 = 0;
  double mdot = 0, nodedot = 0, xlcof = 0, xmcof = 0, nodecf = 0;

  // Deep space: resonance with the earth's rotation (0 none, 1 one day, 2 half a day), lunar-solar terms.
  int irez = 0;
  double d2201 = 0, d2211 = 0, d3210 = 0, d3222 = 0, d4410 = 0, d4422 = 0;
  double d5220 = 0, d5232 = 0, d5421 = 0, d5433 = 0;
  double dedt = 0, del1 = 0, del2 = 0, del3 = 0, didt = 0, dmdt = 0, dnodt = 0, domdt = 0;
  double e3 = 0, ee2 = 0, peo = 0, pgho = 0, pho = 0, pinco = 0, plo = 0;
  double se2 = 0, se3 = 0, sgh2 = 0, sgh3 = 0, sgh4 = 0, sh2 = 0, sh3 = 0, si2 = 0, si3 = 0;
  double sl2 = 0, sl3 = 0, sl4 = 0;
  double gsto = 0;  ///< Greenwich sidereal time at the epoch, radians
  double xfact = 0, xgh2 = 0, xgh3 = 0, xgh4 = 0, xh2 = 0, xh3 = 0, xi2 = 0, xi3 = 0;
  double xl2 = 0, xl3 = 0, xl4 = 0, xlamo = 0, zmol = 0, zmos = 0;
  double atime = 0, xli = 0, xni = 0;  ///< where the resonance's integration begins

  double periodMinutes() const;
};

/// Never fails: `error` tells whether the record can be used.
SatRec initialise(TLE const& tle);

/// In the true-equator, mean-equinox frame of the moment.
struct StateVector {
  std::array<double, 3> position{};  ///< km
  std::array<double, 3> velocity{};  ///< km/s
  int error = 0;  ///< after kDecayed the vectors are set all the same, after others they are zero
};

/// Where the integration of a resonance stands, so that the next moment goes on from there, and how longitude
/// and mean motion change there.
struct ResonanceState {
  double atime = 0, xli = 0, xni = 0;
  double xldot = 0, xndt = 0, xnddt = 0;
  bool isKnown = false;  ///< until the first moment nothing is
};

/// The state `tsince` minutes after the record's epoch: the reference path.
StateVector propagate(SatRec const& record, double tsince);

/// The same for a row of moments of one satellite. `resonance` begins as a copy of the record's.
StateVector propagate(SatRec const& rec, double tsince, ResonanceState& resonance);
inline ResonanceState resonanceStart(SatRec const& record) {
  return {.atime = record.atime, .xli = record.xli, .xni = record.xni};
}

/// A moment as days and the fraction of one, so that no digit is lost.
struct Moment {
  double day = 0;       ///< Julian date of a midnight
  double fraction = 0;  ///< of that day
};
Moment momentOf(Instant instant);

inline double minutesSince(TLE const& tle, Moment moment) {
  return ((moment.day - tle.epochDay) + (moment.fraction - tle.epochFraction)) * 1440.0;
}

/// Greenwich mean sidereal time of 1982, radians in [0, 2π).
double siderealTime(Moment moment);

}  // namespace nimbara::SGP4
