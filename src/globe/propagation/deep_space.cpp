#include "globe/propagation/deep_space.h"

#include "globe/propagation/lunar_solar.h"

#include <cmath>
#include <numbers>

namespace nimbara::SGP4 {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;
/// The earth's rotation, radians per minute.
constexpr double kRotation = 4.37526908801129966e-3;
/// Bounds of the mean motion (radians per minute) of the two resonances.
constexpr double kOneDayAbove = 0.0034906585;
constexpr double kOneDayBelow = 0.0052359877;
constexpr double kHalfDayFrom = 8.26e-3;
constexpr double kHalfDayTo = 9.24e-3;
constexpr double kHalfDayEccentricity = 0.5;
/// One step of the integration in minutes, and half its square.
constexpr double kStep = 720;
constexpr double kStepSquared = 259200;

double squared(double x) {
  return x * x;
}

/// c0 + c1 e + c2 e² + c3 e³.
struct Cubic {
  double c0, c1, c2, c3;
  double operator()(double e) const { return c0 + e * (c1 + e * (c2 + e * c3)); }
};

/// Eccentricity functions of the half-day resonance, fitted piecewise.
struct EccentricityFunctions {
  double g201, g211, g310, g322, g410, g422, g520, g521, g532, g533;
};

void setLowG(EccentricityFunctions& g, double e) {
  g.g211 = Cubic{3.616, -13.2470, 16.2900, 0}(e);
  g.g310 = Cubic{-19.302, 117.3900, -228.4190, 156.5910}(e);
  g.g322 = Cubic{-18.9068, 109.7927, -214.6334, 146.5816}(e);
  g.g410 = Cubic{-41.122, 242.6940, -471.0940, 313.9530}(e);
  g.g422 = Cubic{-146.407, 841.8800, -1629.014, 1083.4350}(e);
  g.g520 = Cubic{-532.114, 3017.977, -5740.032, 3708.2760}(e);
}

void setHighG(EccentricityFunctions& g, double e) {
  g.g211 = Cubic{-72.099, 331.819, -508.738, 266.724}(e);
  g.g310 = Cubic{-346.844, 1582.851, -2415.925, 1246.113}(e);
  g.g322 = Cubic{-342.585, 1554.908, -2366.899, 1215.972}(e);
  g.g410 = Cubic{-1052.797, 4758.686, -7193.992, 3651.957}(e);
  g.g422 = Cubic{-3581.690, 16178.110, -24462.770, 12422.520}(e);
  g.g520 =
      e > 0.715 ? Cubic{-5149.66, 29936.92, -54087.36, 31324.56}(e) : Cubic{1464.74, -4664.75, 3763.64, 0}(e);
}

EccentricityFunctions eccentricityFunctions(double e) {
  EccentricityFunctions g{};
  g.g201 = -0.306 - (e - 0.64) * 0.440;
  e <= 0.65 ? setLowG(g, e) : setHighG(g, e);
  if (e < 0.7) {
    g.g533 = Cubic{-919.22770, 4988.6100, -9064.7700, 5542.21}(e);
    g.g521 = Cubic{-822.71072, 4568.6173, -8491.4146, 5337.524}(e);
    g.g532 = Cubic{-853.66600, 4690.2500, -8624.7700, 5341.4}(e);
  } else {
    g.g533 = Cubic{-37995.780, 161616.52, -229838.20, 109377.94}(e);
    g.g521 = Cubic{-51752.104, 218913.95, -309468.16, 146349.42}(e);
    g.g532 = Cubic{-40023.880, 170470.89, -242699.48, 115605.82}(e);
  }
  return g;
}

/// Inclination functions of the half-day resonance.
struct InclinationFunctions {
  double f220, f221, f321, f322, f441, f442, f522, f523, f542, f543;
};

InclinationFunctions inclinationFunctions(double s, double c) {
  double const s2 = s * s, c2 = c * c;
  InclinationFunctions f{};
  f.f220 = 0.75 * (1 + 2 * c + c2);
  f.f221 = 1.5 * s2;
  f.f321 = 1.875 * s * (1 - 2 * c - 3 * c2);
  f.f322 = -1.875 * s * (1 + 2 * c - 3 * c2);
  f.f441 = 35 * s2 * f.f220;
  f.f442 = 39.3750 * s2 * s2;
  f.f522 = 9.84375 * s * (s2 * (1 - 2 * c - 5 * c2) + 0.33333333 * (-2 + 4 * c + 6 * c2));
  f.f523 = s * (4.92187512 * s2 * (-2 - 4 * c + 10 * c2) + 6.56250012 * (1 + 2 * c - 3 * c2));
  f.f542 = 29.53125 * s * (2 - 8 * c + c2 * (-12 + 8 * c + 10 * c2));
  f.f543 = 29.53125 * s * (-2 - 8 * c + c2 * (12 + 8 * c - 10 * c2));
  return f;
}

void initialiseHalfDay(SatRec& rec, LunarSolarTerms const& terms, double aonv) {
  constexpr double kRoot22 = 1.7891679e-6, kRoot32 = 3.7393792e-7, kRoot44 = 7.3636953e-9,
                   kRoot52 = 1.1428639e-7, kRoot54 = 2.1765803e-9;
  auto const g = eccentricityFunctions(rec.ecco);
  auto const f = inclinationFunctions(terms.sini, terms.cosi);
  double scale = 3 * squared(rec.no) * squared(aonv);
  rec.d2201 = scale * kRoot22 * f.f220 * g.g201;
  rec.d2211 = scale * kRoot22 * f.f221 * g.g211;
  scale *= aonv;
  rec.d3210 = scale * kRoot32 * f.f321 * g.g310;
  rec.d3222 = scale * kRoot32 * f.f322 * g.g322;
  scale *= aonv;
  rec.d4410 = 2 * scale * kRoot44 * f.f441 * g.g410;
  rec.d4422 = 2 * scale * kRoot44 * f.f442 * g.g422;
  scale *= aonv;
  rec.d5220 = scale * kRoot52 * f.f522 * g.g520;
  rec.d5232 = scale * kRoot52 * f.f523 * g.g532;
  rec.d5421 = 2 * scale * kRoot54 * f.f542 * g.g521;
  rec.d5433 = 2 * scale * kRoot54 * f.f543 * g.g533;
  rec.xlamo = std::fmod(rec.mo + 2 * rec.nodeo - 2 * rec.gsto, kTwoPi);
  rec.xfact = rec.mdot + rec.dmdt + 2 * (rec.nodedot + rec.dnodt - kRotation) - rec.no;
}

void initialiseOneDay(SatRec& rec, LunarSolarTerms const& terms, double aonv) {
  constexpr double kQ22 = 1.7891679e-6, kQ31 = 2.1460748e-6, kQ33 = 2.2123015e-7;
  double const e2 = terms.emsq;
  double const onePlusCos = 1 + terms.cosi;
  double const g200 = 1 + e2 * (-2.5 + 0.8125 * e2);
  double const g310 = 1 + 2 * e2;
  double const g300 = 1 + e2 * (-6 + 6.60937 * e2);
  double const f220 = 0.75 * squared(onePlusCos);
  double const f311 = 0.9375 * squared(terms.sini) * (1 + 3 * terms.cosi) - 0.75 * onePlusCos;
  double const f330 = 1.875 * onePlusCos * squared(onePlusCos);
  double const scale = 3 * squared(rec.no) * squared(aonv);
  rec.del1 = scale * f311 * g310 * kQ31 * aonv;
  rec.del2 = 2 * scale * f220 * g200 * kQ22;
  rec.del3 = 3 * scale * f330 * g300 * kQ33 * aonv;
  rec.xlamo = std::fmod(rec.mo + rec.nodeo + rec.argpo - rec.gsto, kTwoPi);
  rec.xfact = rec.mdot + rec.argpdot + rec.nodedot - kRotation + rec.dmdt + rec.domdt + rec.dnodt - rec.no;
}

int resonanceOf(SatRec const& rec) {
  if (rec.no > kOneDayAbove && rec.no < kOneDayBelow) return 1;
  bool const halfDay = rec.no >= kHalfDayFrom && rec.no <= kHalfDayTo;
  return halfDay && rec.ecco >= kHalfDayEccentricity ? 2 : 0;
}

/// An angle by its sine and cosine, so that sums of known angles need no further sines.
struct Angle {
  double sine, cosine;

  static Angle of(double radians) { return {std::sin(radians), std::cos(radians)}; }
  Angle operator+(Angle const& o) const {
    return {sine * o.cosine + cosine * o.sine, cosine * o.cosine - sine * o.sine};
  }
  Angle operator-(Angle const& o) const { return *this + Angle{-o.sine, o.cosine}; }
};

/// Sums coefficient × sine, and multiple × coefficient × cosine, of the terms.
struct Sums {
  double sines = 0;
  double cosines = 0;

  void add(double coefficient, Angle const& angle, double multiple) {
    sines += coefficient * angle.sine;
    cosines += multiple * coefficient * angle.cosine;
  }
};

/// The phases of the terms.
Angle const kPhase2 = Angle::of(0.13130908), kPhase4 = Angle::of(2 * 2.8843198),
            kPhase6 = Angle::of(3 * 0.37448087);
Angle const kG22 = Angle::of(5.7686396), kG32 = Angle::of(0.95240898), kG44 = Angle::of(1.8014998),
            kG52 = Angle::of(1.0508330), kG54 = Angle::of(4.4108898);

Sums oneDayTerms(SatRec const& rec, double xli) {
  Angle const once = Angle::of(xli), twice = once + once;
  Sums sums;
  sums.add(rec.del1, once - kPhase2, 1);
  sums.add(rec.del2, twice - kPhase4, 2);
  sums.add(rec.del3, twice + once - kPhase6, 3);
  return sums;
}

Sums halfDayTerms(SatRec const& rec, double atime, double xli) {
  Angle const perigee = Angle::of(rec.argpo + rec.argpdot * atime), perigee2 = perigee + perigee;
  Angle const once = Angle::of(xli), twice = once + once;
  Sums sums;
  sums.add(rec.d2201, perigee2 + once - kG22, 1);
  sums.add(rec.d2211, once - kG22, 1);
  sums.add(rec.d3210, once + perigee - kG32, 1);
  sums.add(rec.d3222, once - perigee - kG32, 1);
  sums.add(rec.d4410, perigee2 + twice - kG44, 2);
  sums.add(rec.d4422, twice - kG44, 2);
  sums.add(rec.d5220, once + perigee - kG52, 1);
  sums.add(rec.d5232, once - perigee - kG52, 1);
  sums.add(rec.d5421, twice + perigee - kG54, 2);
  sums.add(rec.d5433, twice - perigee - kG54, 2);
  return sums;
}

/// Sets the changes of longitude and mean motion, and the latter's own change, to those of the state.
void differentiate(SatRec const& rec, ResonanceState& at) {
  auto const [sines, cosines] =
      rec.irez == 1 ? oneDayTerms(rec, at.xli) : halfDayTerms(rec, at.atime, at.xli);
  at.xldot = at.xni + rec.xfact;
  at.xndt = sines;
  at.xnddt = cosines * at.xldot;
}

/// Mean motion and longitude of a resonant orbit at `t`, by steps of half a day from the epoch.
struct Resonant {
  double nm, xl;
};

Resonant integrate(SatRec const& rec, double t, ResonanceState& s) {
  // What was reached on the other side of the epoch, or beyond the moment, is of no use.
  if (!s.isKnown || t * s.atime < 0 || std::abs(t) < std::abs(s.atime)) {
    s = {.atime = 0, .xli = rec.xlamo, .xni = rec.no, .isKnown = true};
    differentiate(rec, s);
  }
  double const step = t > 0 ? kStep : -kStep;
  while (std::abs(t - s.atime) >= kStep) {
    s.xli += s.xldot * step + s.xndt * kStepSquared;
    s.xni += s.xndt * step + s.xnddt * kStepSquared;
    s.atime += step;
    differentiate(rec, s);
  }
  double const ft = t - s.atime;
  return {s.xni + s.xndt * ft + s.xnddt * ft * ft * 0.5, s.xli + s.xldot * ft + s.xndt * ft * ft * 0.5};
}

}  // namespace

void initialiseDeepSpace(SatRec& rec) {
  LunarSolarTerms const terms = initialiseLunarSolar(rec);
  rec.irez = resonanceOf(rec);
  if (rec.irez == 0) return;
  double const aonv = std::pow(rec.no / kXke, 2.0 / 3);
  rec.irez == 2 ? initialiseHalfDay(rec, terms, aonv) : initialiseOneDay(rec, terms, aonv);
  rec.xli = rec.xlamo;
  rec.xni = rec.no;
}

void addDeepSpaceSecular(SatRec const& rec, double t, MeanElements& m, ResonanceState& state) {
  m.em += rec.dedt * t;
  m.inclm += rec.didt * t;
  m.argpm += rec.domdt * t;
  m.nodem += rec.dnodt * t;
  m.mm += rec.dmdt * t;
  if (rec.irez == 0) return;
  auto const [nm, xl] = integrate(rec, t, state);
  double const theta = std::fmod(rec.gsto + t * kRotation, kTwoPi);
  m.nm = nm;
  m.mm = rec.irez == 1 ? xl - m.nodem - m.argpm + theta : xl - 2 * m.nodem + 2 * theta;
}

}  // namespace nimbara::SGP4
