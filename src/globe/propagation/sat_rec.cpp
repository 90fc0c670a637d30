#include "globe/propagation/sat_rec.h"

#include "globe/propagation/deep_space.h"

#include <cmath>
#include <numbers>

namespace nimbara::SGP4 {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
constexpr double kTwoThirds = 2.0 / 3;
/// Heights in km at which the atmosphere's model changes.
constexpr double kSimplifiedDragBelow = 220;
constexpr double kDensityTop = 120;
constexpr double kDensityBase = 78;
constexpr double kLowPerigee = 156;
constexpr double kLowestPerigee = 98;
constexpr double kLowestBase = 20;
/// Below it terms that are divided by the eccentricity are left out.
constexpr double kNearlyCircular = 1e-4;

double squared(double x) {
  return x * x;
}
double cubed(double x) {
  return x * x * x;
}

/// What the equations of the initialisation share.
struct Start {
  double sinio, cosio, cosio2, cosio4;
  double eccsq, omeosq, rteosq;  // e², 1 - e², √(1 - e²)
  double ao, posq, rp;           // semi-major axis, (semi-latus rectum)², perigee, in earth radii
  double con42;
};

/// The mean motion of Brouwer's theory from that of Kozai's, which element sets hold.
double brouwerMeanMotion(double kozai, double cosio2, double omeosq, double rteosq) {
  double const ak = std::pow(kXke / kozai, kTwoThirds);
  double const d1 = 0.75 * kJ2 * (3 * cosio2 - 1) / (rteosq * omeosq);
  double const first = d1 / squared(ak);
  double const adel = ak * (1 - squared(first) - first * (1.0 / 3 + 134 * squared(first) / 81));
  return kozai / (1 + d1 / squared(adel));
}

Start startOf(SatRec& rec) {
  Start s{};
  s.sinio = std::sin(rec.inclo);
  s.cosio = std::cos(rec.inclo);
  s.cosio2 = squared(s.cosio);
  s.cosio4 = squared(s.cosio2);
  s.eccsq = squared(rec.ecco);
  s.omeosq = 1 - s.eccsq;
  s.rteosq = std::sqrt(s.omeosq);
  rec.no = brouwerMeanMotion(rec.tle.no_kozai, s.cosio2, s.omeosq, s.rteosq);
  s.ao = std::pow(kXke / rec.no, kTwoThirds);
  s.posq = squared(s.ao * s.omeosq);
  s.rp = s.ao * (1 - rec.ecco);
  s.con42 = 1 - 5 * s.cosio2;
  rec.con41 = 3 * s.cosio2 - 1;
  rec.x1mth2 = 1 - s.cosio2;
  rec.x7thm1 = 7 * s.cosio2 - 1;
  rec.a = s.ao;
  rec.alta = rec.a * (1 + rec.ecco) - 1;
  rec.altp = rec.a * (1 - rec.ecco) - 1;
  return s;
}

/// The lower bound of the atmosphere's density function, and (q0 - s)⁴, in earth radii.
struct Density {
  double sfour, qzms24;
};

Density densityOf(double perigeeKm) {
  double base = kDensityBase;
  if (perigeeKm < kLowPerigee) base = perigeeKm - kDensityBase;
  if (perigeeKm < kLowestPerigee) base = kLowestBase;
  return {base / kEarthRadiusKm + 1, squared(squared((kDensityTop - base) / kEarthRadiusKm))};
}

/// The powers of C1 that describe how drag grows with time; left out for low perigees and deep space.
void setDragSeries(SatRec& rec, double ao, double tsi, double sfour) {
  double const cc1sq = squared(rec.cc1);
  rec.d2 = 4 * ao * tsi * cc1sq;
  double const temp = rec.d2 * tsi * rec.cc1 / 3;
  rec.d3 = (17 * ao + sfour) * temp;
  rec.d4 = 0.5 * temp * ao * tsi * (221 * ao + 31 * sfour) * rec.cc1;
  rec.t3cof = rec.d2 + 2 * cc1sq;
  rec.t4cof = 0.25 * (3 * rec.d3 + rec.cc1 * (12 * rec.d2 + 10 * cc1sq));
  rec.t5cof =
      0.2 * (3 * rec.d4 + 12 * rec.cc1 * rec.d3 + 6 * squared(rec.d2) + 15 * cc1sq * (2 * rec.d2 + cc1sq));
}

void setDrag(SatRec& rec, Start const& s) {
  auto const [sfour, qzms24] = densityOf((s.rp - 1) * kEarthRadiusKm);
  double const tsi = 1 / (s.ao - sfour);
  rec.eta = s.ao * rec.ecco * tsi;
  double const etasq = squared(rec.eta);
  double const eeta = rec.ecco * rec.eta;
  double const psisq = std::abs(1 - etasq);
  double const coef = qzms24 * squared(squared(tsi));
  double const coef1 = coef / std::pow(psisq, 3.5);
  double const cc2 = coef1 * rec.no *
                     (s.ao * (1 + 1.5 * etasq + eeta * (4 + etasq)) +
                      0.375 * kJ2 * tsi / psisq * rec.con41 * (8 + 3 * etasq * (8 + etasq)));
  rec.cc1 = rec.bstar * cc2;
  bool const circular = rec.ecco <= kNearlyCircular;
  double const cc3 = circular ? 0 : -2 * coef * tsi * kJ3OverJ2 * rec.no * s.sinio / rec.ecco;
  double const shape = -3 * rec.con41 * (1 - 2 * eeta + etasq * (1.5 - 0.5 * eeta)) +
                       0.75 * rec.x1mth2 * (2 * etasq - eeta * (1 + etasq)) * std::cos(2 * rec.argpo);
  rec.cc4 = 2 * rec.no * coef1 * s.ao * s.omeosq *
            (rec.eta * (2 + 0.5 * etasq) + rec.ecco * (0.5 + 2 * etasq) - kJ2 * tsi / (s.ao * psisq) * shape);
  rec.cc5 = 2 * coef1 * s.ao * s.omeosq * (1 + 2.75 * (etasq + eeta) + eeta * etasq);
  rec.omgcof = rec.bstar * cc3 * std::cos(rec.argpo);
  rec.xmcof = circular ? 0 : -kTwoThirds * coef * rec.bstar / eeta;
  rec.t2cof = 1.5 * rec.cc1;
  rec.delmo = cubed(1 + rec.eta * std::cos(rec.mo));
  rec.sinmao = std::sin(rec.mo);
  if (!rec.isimp) setDragSeries(rec, s.ao, tsi, sfour);
}

/// What the earth's flattening does to node, perigee and mean anomaly.
void setSecularRates(SatRec& rec, Start const& s) {
  double const temp1 = 1.5 * kJ2 / s.posq * rec.no;
  double const temp2 = 0.5 * temp1 * kJ2 / s.posq;
  double const temp3 = -0.46875 * kJ4 / squared(s.posq) * rec.no;
  rec.mdot = rec.no + 0.5 * temp1 * s.rteosq * rec.con41 +
             0.0625 * temp2 * s.rteosq * (13 - 78 * s.cosio2 + 137 * s.cosio4);
  rec.argpdot = -0.5 * temp1 * s.con42 + 0.0625 * temp2 * (7 - 114 * s.cosio2 + 395 * s.cosio4) +
                temp3 * (3 - 36 * s.cosio2 + 49 * s.cosio4);
  double const xhdot1 = -temp1 * s.cosio;
  rec.nodedot = xhdot1 + (0.5 * temp2 * (4 - 19 * s.cosio2) + 2 * temp3 * (3 - 7 * s.cosio2)) * s.cosio;
  rec.nodecf = 3.5 * s.omeosq * xhdot1 * rec.cc1;
}

/// The eccentric longitude's sine and cosine by Newton's method, as the published implementation iterates.
struct Direction {
  double sine, cosine;
};

Direction solveKepler(double u, double axnl, double aynl) {
  constexpr double kAccuracy = 1e-12;
  constexpr double kLargestStep = 0.95;
  constexpr int kSteps = 10;
  Direction direction{};
  double longitude = u;
  double step = 1;
  for (int i = 0; i < kSteps && std::abs(step) >= kAccuracy; ++i) {
    direction = {std::sin(longitude), std::cos(longitude)};
    auto const [sine, cosine] = direction;
    step = (u - aynl * cosine + axnl * sine - longitude) / (1 - cosine * axnl - sine * aynl);
    step = std::clamp(step, -kLargestStep, kLargestStep);
    longitude += step;
  }
  return direction;
}

/// Gravity and drag that grow with time; the mean motion is not yet that of the moment.
struct Secular {
  MeanElements elements;
  double tempa, tempe, templ;
};

Secular secular(SatRec const& rec, double t) {
  double const xmdf = rec.mo + rec.mdot * t;
  double const argpdf = rec.argpo + rec.argpdot * t;
  double const t2 = t * t;
  Secular s{{rec.ecco, rec.inclo, rec.nodeo + rec.nodedot * t + rec.nodecf * t2, argpdf, xmdf, rec.no},
            1 - rec.cc1 * t,
            rec.bstar * rec.cc4 * t,
            rec.t2cof * t2};
  if (rec.isimp) return s;
  double const shift = rec.omgcof * t + rec.xmcof * (cubed(1 + rec.eta * std::cos(xmdf)) - rec.delmo);
  s.elements.mm = xmdf + shift;
  s.elements.argpm = argpdf - shift;
  double const t3 = t2 * t;
  double const t4 = t3 * t;
  s.tempa -= rec.d2 * t2 + rec.d3 * t3 + rec.d4 * t4;
  s.tempe += rec.bstar * rec.cc5 * (std::sin(s.elements.mm) - rec.sinmao);
  s.templ += rec.t3cof * t3 + t4 * (rec.t4cof + t * rec.t5cof);
  return s;
}

/// What depends on the inclination, which deep space changes.
struct Tilt {
  double sini, cosi, con41, x1mth2, x7thm1;
  LongPeriod longPeriod;
};

Tilt tiltOf(SatRec const& rec, double xincp) {
  double const sini = std::sin(xincp);
  double const cosi = std::cos(xincp);
  if (!rec.isDeepSpace) return {sini, cosi, rec.con41, rec.x1mth2, rec.x7thm1, {rec.aycof, rec.xlcof}};
  double const cosisq = squared(cosi);
  return {sini, cosi, 3 * cosisq - 1, 1 - cosisq, 7 * cosisq - 1, longPeriod(sini, cosi)};
}

StateVector failed(int code) {
  StateVector state;
  state.error = code;
  return state;
}

/// Long-period terms, Kepler's equation, short-period terms, and the vectors. `nm` is the mean motion of the
/// moment, `am` its semi-major axis.
StateVector vectorsOf(SatRec const& rec, MeanElements const& m, double am, double nm) {
  Tilt const tilt = tiltOf(rec, m.inclm);
  double const axnl = m.em * std::cos(m.argpm);
  double const perLatus = 1 / (am * (1 - squared(m.em)));
  double const aynl = m.em * std::sin(m.argpm) + perLatus * tilt.longPeriod.aycof;
  double const xl = m.mm + m.argpm + m.nodem + perLatus * tilt.longPeriod.xlcof * axnl;
  auto const [sine, cosine] = solveKepler(std::fmod(xl - m.nodem, kTwoPi), axnl, aynl);

  double const ecose = axnl * cosine + aynl * sine;
  double const esine = axnl * sine - aynl * cosine;
  double const el2 = squared(axnl) + squared(aynl);
  double const pl = am * (1 - el2);
  if (pl < 0) return failed(errorCode::kSemiLatusRectum);

  double const rl = am * (1 - ecose);
  double const rdotl = std::sqrt(am) * esine / rl;
  double const rvdotl = std::sqrt(pl) / rl;
  double const betal = std::sqrt(1 - el2);
  double const lag = esine / (1 + betal);
  double const sinu = am / rl * (sine - aynl - axnl * lag);
  double const cosu = am / rl * (cosine - axnl + aynl * lag);
  double const sin2u = 2 * cosu * sinu;
  double const cos2u = 1 - 2 * squared(sinu);
  double const temp1 = 0.5 * kJ2 / pl;
  double const temp2 = temp1 / pl;

  double const mrt = rl * (1 - 1.5 * temp2 * betal * tilt.con41) + 0.5 * temp1 * tilt.x1mth2 * cos2u;
  double const su = std::atan2(sinu, cosu) - 0.25 * temp2 * tilt.x7thm1 * sin2u;
  double const xnode = m.nodem + 1.5 * temp2 * tilt.cosi * sin2u;
  double const xinc = m.inclm + 1.5 * temp2 * tilt.cosi * tilt.sini * cos2u;
  double const mvt = rdotl - nm * temp1 * tilt.x1mth2 * sin2u / kXke;
  double const rvdot = rvdotl + nm * temp1 * (tilt.x1mth2 * cos2u + 1.5 * tilt.con41) / kXke;

  double const sinsu = std::sin(su), cossu = std::cos(su);
  double const snod = std::sin(xnode), cnod = std::cos(xnode);
  double const sini = std::sin(xinc), cosi = std::cos(xinc);
  double const xmx = -snod * cosi;
  double const xmy = cnod * cosi;
  std::array<double, 3> const radial{xmx * sinsu + cnod * cossu, xmy * sinsu + snod * cossu, sini * sinsu};
  std::array<double, 3> const along{xmx * cossu - cnod * sinsu, xmy * cossu - snod * sinsu, sini * cossu};
  StateVector state;
  for (std::size_t i = 0; i < 3; ++i) {
    state.position[i] = mrt * radial[i] * kEarthRadiusKm;
    state.velocity[i] = (mvt * radial[i] + rvdot * along[i]) * kKmPerSecond;
  }
  // Written so that what is no number counts as decayed, too.
  if (!(mrt >= 1)) state.error = errorCode::kDecayed;
  return state;
}

void copyElements(SatRec& rec) {
  rec.bstar = rec.tle.bstar;
  rec.inclo = rec.tle.inclo;
  rec.nodeo = rec.tle.nodeo;
  rec.ecco = rec.tle.ecco;
  rec.argpo = rec.tle.argpo;
  rec.mo = rec.tle.mo;
}

}  // namespace

LongPeriod longPeriod(double sini, double cosi) {
  constexpr double kLeast = 1.5e-12;  // instead of the zero of an inclination of 180°
  double const divisor = std::abs(cosi + 1) > kLeast ? 1 + cosi : kLeast;
  return {-0.5 * kJ3OverJ2 * sini, -0.25 * kJ3OverJ2 * sini * (3 + 5 * cosi) / divisor};
}

SatRec initialise(TLE const& tle) {
  SatRec rec;
  rec.tle = tle;
  copyElements(rec);
  if (!(tle.no_kozai > 0) || !(tle.ecco < 1)) {
    rec.error = tle.ecco < 1 ? errorCode::kMeanMotion : errorCode::kMeanEccentricity;
    return rec;
  }
  Start const start = startOf(rec);
  rec.isDeepSpace = kTwoPi / rec.no >= kDeepSpacePeriodMinutes;
  rec.isimp = rec.isDeepSpace || start.rp < kSimplifiedDragBelow / kEarthRadiusKm + 1;
  rec.gsto = siderealTime({tle.epochDay, tle.epochFraction});
  setDrag(rec, start);
  setSecularRates(rec, start);
  auto const [aycof, xlcof] = longPeriod(start.sinio, start.cosio);
  rec.aycof = aycof;
  rec.xlcof = xlcof;
  if (rec.isDeepSpace) initialiseDeepSpace(rec);
  rec.error = propagate(rec, 0).error;
  return rec;
}

MeanMoment meanElementsAt(SatRec const& rec, double tsince, ResonanceState& resonance) {
  auto const failed = [](int code) { return MeanMoment{.error = code}; };
  if (!(rec.no > 0)) return failed(rec.error);
  if (!(std::abs(tsince) <= kLongestSpanMinutes)) return failed(errorCode::kDecayed);
  Secular s = secular(rec, tsince);
  MeanElements& m = s.elements;
  if (rec.isDeepSpace) addDeepSpaceSecular(rec, tsince, m, resonance);
  if (m.nm <= 0) return failed(errorCode::kMeanMotion);
  double const am = std::pow(kXke / m.nm, kTwoThirds) * squared(s.tempa);
  m.em -= s.tempe;
  if (m.em >= 1 || m.em < -0.001) return failed(errorCode::kMeanEccentricity);
  m.em = std::max(m.em, 1e-6);
  m.mm += rec.no * s.templ;
  double const xlm = std::fmod(m.mm + m.argpm + m.nodem, kTwoPi);
  m.nodem = std::fmod(m.nodem, kTwoPi);
  m.argpm = std::fmod(m.argpm, kTwoPi);
  m.mm = std::fmod(xlm - m.argpm - m.nodem, kTwoPi);
  if (rec.isDeepSpace) {
    addLunarSolarPeriodics(rec, tsince, m);
    if (m.em < 0 || m.em > 1) return failed(errorCode::kPerturbedEccentricity);
  }
  return {m, am, errorCode::kNone};
}

StateVector propagate(SatRec const& rec, double tsince, ResonanceState& resonance) {
  auto const [elements, am, error] = meanElementsAt(rec, tsince, resonance);
  if (error != errorCode::kNone) return failed(error);
  return vectorsOf(rec, elements, am, kXke / std::pow(am, 1.5));
}

StateVector propagate(SatRec const& record, double tsince) {
  ResonanceState resonance = resonanceStart(record);
  return propagate(record, tsince, resonance);
}

double SatRec::periodMinutes() const {
  return kTwoPi / no;
}

std::string_view errorText(int code) {
  switch (code) {
    case errorCode::kNone:
      return "fine";
    case errorCode::kMeanEccentricity:
      return "the mean eccentricity is out of range";
    case errorCode::kMeanMotion:
      return "the mean motion is out of range";
    case errorCode::kPerturbedEccentricity:
      return "the perturbed eccentricity is out of range";
    case errorCode::kSemiLatusRectum:
      return "the semi-latus rectum is below zero";
    default:
      return "the satellite has decayed";
  }
}

Moment momentOf(Instant instant) {
  constexpr double kUnixEpochJulianDate = 2440587.5;
  auto const day = std::chrono::floor<std::chrono::days>(instant);
  return {kUnixEpochJulianDate + static_cast<double>(day.time_since_epoch().count()),
          static_cast<double>((instant - day).count()) / 86'400'000.0};
}

double siderealTime(Moment moment) {
  constexpr double kJ2000 = 2451545.0;
  double const days = (moment.day - kJ2000) + moment.fraction;
  double const t = days / 36525;
  // The rotation's whole turns are those of the days; left out, they cost no digits.
  double const turns = std::fmod(moment.day - kJ2000, 1.0) + moment.fraction;
  double const seconds = 67310.54841 + t * (8640184.812866 + t * (0.093104 - 6.2e-6 * t)) + turns * 86400;
  double const angle = std::fmod(seconds / 86400 * kTwoPi, kTwoPi);
  return angle < 0 ? angle + kTwoPi : angle;
}

}  // namespace nimbara::SGP4
