// What the moon and the sun do to an orbit: secular rates and periodic terms.

#include "globe/propagation/lunar_solar.h"

#include <cmath>
#include <numbers>

namespace nimbara::SGP4 {

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTwoPi = 2 * kPi;
/// Eccentricities and mean motions (radians per minute) of the sun's and the moon's orbits.
constexpr double kSolarEccentricity = 0.01675;
constexpr double kSolarMotion = 1.19459e-5;
constexpr double kLunarEccentricity = 0.05490;
constexpr double kLunarMotion = 1.5835218e-4;
/// Strengths of the two disturbances.
constexpr double kSolarStrength = 2.9864797e-6;
constexpr double kLunarStrength = 4.7968065e-7;
/// The sun's inclination (the ecliptic's) and argument of perigee.
constexpr double kSinSolarInclination = 0.39785416;
constexpr double kCosSolarInclination = 0.91744867;
constexpr double kCosSolarPerigee = 0.1945905;
constexpr double kSinSolarPerigee = -0.98088458;
/// Days from 1950 January 0.0 UT to the lunar theory's own zero of 1900, and the former as a Julian date.
constexpr double kLunarEpochOffset = 18261.5;
constexpr double k1950 = 2433281.5;
/// Below it, and as near to 180°, rates that are divided by the inclination's sine are left out.
constexpr double kNearlyEquatorial = 5.2359877e-2;
/// Below it the periodic terms are applied to Lyddane's variables.
constexpr double kLyddaneBelow = 0.2;

double squared(double x) {
  return x * x;
}

/// The orbit of a disturbing body against the satellite's node and the equator.
struct BodyOrbit {
  double sing, cosg;  // argument of perigee
  double sini, cosi;
  double sinh, cosh;  // node, counted from the satellite's
  double strength;
};

struct LunarOrbit {
  double sini, cosi, sinh, cosh, sing, cosg;
  double gam;
};

/// The moon's orbit on a day counted from the lunar theory's zero.
LunarOrbit lunarOrbit(double day) {
  double const xnodce = std::fmod(4.5236020 - 9.2422029e-4 * day, kTwoPi);
  double const stem = std::sin(xnodce);
  double const ctem = std::cos(xnodce);
  LunarOrbit moon{};
  moon.cosi = 0.91375164 - 0.03568096 * ctem;
  moon.sini = std::sqrt(1 - squared(moon.cosi));
  moon.sinh = 0.089683511 * stem / moon.sini;
  moon.cosh = std::sqrt(1 - squared(moon.sinh));
  moon.gam = 5.8351514 + 0.0019443680 * day;
  double const zx = kSinSolarInclination * stem / moon.sini;
  double const zy = moon.cosh * ctem + kCosSolarInclination * moon.sinh * stem;
  double const perigee = moon.gam + std::atan2(zx, zy) - xnodce;
  moon.sing = std::sin(perigee);
  moon.cosg = std::cos(perigee);
  return moon;
}

struct SatelliteOrbit {
  double sini, cosi, sino, coso;  // inclination, argument of perigee
  double em, emsq, betasq, rtemsq, nm;
};

BodyTerms bodyTerms(BodyOrbit const& body, SatelliteOrbit const& sat) {
  // Direction cosines of the body's orbit, in the frame of the satellite's node, then of its plane.
  double const a1 = body.cosg * body.cosh + body.sing * body.cosi * body.sinh;
  double const a3 = -body.sing * body.cosh + body.cosg * body.cosi * body.sinh;
  double const a7 = -body.cosg * body.sinh + body.sing * body.cosi * body.cosh;
  double const a8 = body.sing * body.sini;
  double const a9 = body.sing * body.sinh + body.cosg * body.cosi * body.cosh;
  double const a10 = body.cosg * body.sini;
  double const a2 = sat.cosi * a7 + sat.sini * a8;
  double const a4 = sat.cosi * a9 + sat.sini * a10;
  double const a5 = -sat.sini * a7 + sat.cosi * a8;
  double const a6 = -sat.sini * a9 + sat.cosi * a10;
  // The same towards the perigee.
  double const x1 = a1 * sat.coso + a2 * sat.sino;
  double const x2 = a3 * sat.coso + a4 * sat.sino;
  double const x3 = -a1 * sat.sino + a2 * sat.coso;
  double const x4 = -a3 * sat.sino + a4 * sat.coso;
  double const x5 = a5 * sat.sino, x6 = a6 * sat.sino, x7 = a5 * sat.coso, x8 = a6 * sat.coso;

  BodyTerms t{};
  double const e2 = sat.emsq;
  t.z31 = 12 * x1 * x1 - 3 * x3 * x3;
  t.z32 = 24 * x1 * x2 - 6 * x3 * x4;
  t.z33 = 12 * x2 * x2 - 3 * x4 * x4;
  t.z11 = -6 * a1 * a5 + e2 * (-24 * x1 * x7 - 6 * x3 * x5);
  t.z12 = -6 * (a1 * a6 + a3 * a5) + e2 * (-24 * (x2 * x7 + x1 * x8) - 6 * (x3 * x6 + x4 * x5));
  t.z13 = -6 * a3 * a6 + e2 * (-24 * x2 * x8 - 6 * x4 * x6);
  t.z21 = 6 * a2 * a5 + e2 * (24 * x1 * x5 - 6 * x3 * x7);
  t.z22 = 6 * (a4 * a5 + a2 * a6) + e2 * (24 * (x2 * x5 + x1 * x6) - 6 * (x4 * x7 + x3 * x8));
  t.z23 = 6 * a4 * a6 + e2 * (24 * x2 * x6 - 6 * x4 * x8);
  t.z1 = 2 * (3 * (a1 * a1 + a2 * a2) + t.z31 * e2) + sat.betasq * t.z31;
  t.z2 = 2 * (6 * (a1 * a3 + a2 * a4) + t.z32 * e2) + sat.betasq * t.z32;
  t.z3 = 2 * (3 * (a3 * a3 + a4 * a4) + t.z33 * e2) + sat.betasq * t.z33;
  t.s3 = body.strength / sat.nm;
  t.s2 = -0.5 * t.s3 / sat.rtemsq;
  t.s4 = t.s3 * sat.rtemsq;
  t.s1 = -15 * sat.em * t.s4;
  t.s5 = x1 * x3 + x2 * x4;
  t.s6 = x2 * x3 + x1 * x4;
  t.s7 = x2 * x4 - x1 * x3;
  return t;
}

/// The periodic coefficients of one body, in the order in which the record names them.
struct Periodic {
  double e2, e3, i2, i3, l2, l3, l4, gh2, gh3, gh4, h2, h3;
};

Periodic periodicOf(BodyTerms const& t, double bodyEccentricity, double emsq) {
  return {2 * t.s1 * t.s6,
          2 * t.s1 * t.s7,
          2 * t.s2 * t.z12,
          2 * t.s2 * (t.z13 - t.z11),
          -2 * t.s3 * t.z2,
          -2 * t.s3 * (t.z3 - t.z1),
          -2 * t.s3 * (-21 - 9 * emsq) * bodyEccentricity,
          2 * t.s4 * t.z32,
          2 * t.s4 * (t.z33 - t.z31),
          -18 * t.s4 * bodyEccentricity,
          -2 * t.s2 * t.z22,
          -2 * t.s2 * (t.z23 - t.z21)};
}

void setPeriodics(SatRec& rec, Periodic const& sun, Periodic const& moon) {
  rec.se2 = sun.e2, rec.se3 = sun.e3, rec.si2 = sun.i2, rec.si3 = sun.i3;
  rec.sl2 = sun.l2, rec.sl3 = sun.l3, rec.sl4 = sun.l4;
  rec.sgh2 = sun.gh2, rec.sgh3 = sun.gh3, rec.sgh4 = sun.gh4, rec.sh2 = sun.h2, rec.sh3 = sun.h3;
  rec.ee2 = moon.e2, rec.e3 = moon.e3, rec.xi2 = moon.i2, rec.xi3 = moon.i3;
  rec.xl2 = moon.l2, rec.xl3 = moon.l3, rec.xl4 = moon.l4;
  rec.xgh2 = moon.gh2, rec.xgh3 = moon.gh3, rec.xgh4 = moon.gh4, rec.xh2 = moon.h2, rec.xh3 = moon.h3;
}

/// Secular rates of one body: eccentricity, inclination, mean anomaly, perigee and node together, node.
struct Rates {
  double e, i, m, gh, h;
};

Rates ratesOf(BodyTerms const& t, double motion, SatelliteOrbit const& sat, bool equatorial) {
  return {t.s1 * motion * t.s5, t.s2 * motion * (t.z11 + t.z13),
          -motion * t.s3 * (t.z1 + t.z3 - 14 - 6 * sat.emsq), t.s4 * motion * (t.z31 + t.z33 - 6),
          equatorial ? 0 : -motion * t.s2 * (t.z21 + t.z23)};
}

void setRates(SatRec& rec, Rates const& sun, Rates const& moon, SatelliteOrbit const& sat) {
  auto const node = [&](double h) { return sat.sini != 0 ? h / sat.sini : h; };
  rec.dedt = sun.e + moon.e;
  rec.didt = sun.i + moon.i;
  rec.dmdt = sun.m + moon.m;
  rec.domdt = sun.gh - sat.cosi * node(sun.h) + moon.gh;
  if (sat.sini != 0) rec.domdt -= sat.cosi * node(moon.h);
  rec.dnodt = node(sun.h) + (sat.sini != 0 ? node(moon.h) : 0);
}

/// The sums of the sun's and the moon's waves at a moment.
struct Waves {
  double pe = 0, pinc = 0, pl = 0, pgh = 0, ph = 0;
};

void addWaves(Waves& waves, Periodic const& body, double meanAnomaly, double eccentricity) {
  double const zf = meanAnomaly + 2 * eccentricity * std::sin(meanAnomaly);
  double const sinzf = std::sin(zf);
  double const f2 = 0.5 * sinzf * sinzf - 0.25;
  double const f3 = -0.5 * sinzf * std::cos(zf);
  waves.pe += body.e2 * f2 + body.e3 * f3;
  waves.pinc += body.i2 * f2 + body.i3 * f3;
  waves.pl += body.l2 * f2 + body.l3 * f3 + body.l4 * sinzf;
  waves.pgh += body.gh2 * f2 + body.gh3 * f3 + body.gh4 * sinzf;
  waves.ph += body.h2 * f2 + body.h3 * f3;
}

Waves wavesAt(SatRec const& rec, double t) {
  Waves waves{-rec.peo, -rec.pinco, -rec.plo, -rec.pgho, -rec.pho};
  addWaves(waves,
           {rec.se2, rec.se3, rec.si2, rec.si3, rec.sl2, rec.sl3, rec.sl4, rec.sgh2, rec.sgh3, rec.sgh4,
            rec.sh2, rec.sh3},
           rec.zmos + kSolarMotion * t, kSolarEccentricity);
  addWaves(waves,
           {rec.ee2, rec.e3, rec.xi2, rec.xi3, rec.xl2, rec.xl3, rec.xl4, rec.xgh2, rec.xgh3, rec.xgh4,
            rec.xh2, rec.xh3},
           rec.zmol + kLunarMotion * t, kLunarEccentricity);
  return waves;
}

/// Low inclinations: node and inclination are disturbed as two components, which have no singularity.
void applyLyddane(Waves const& w, MeanElements& m) {
  double const sinip = std::sin(m.inclm), cosip = std::cos(m.inclm);
  double const sinop = std::sin(m.nodem), cosop = std::cos(m.nodem);
  double const alfdp = sinip * sinop + w.ph * cosop + w.pinc * cosip * sinop;
  double const betdp = sinip * cosop - w.ph * sinop + w.pinc * cosip * cosop;
  double const before = std::fmod(m.nodem, kTwoPi);
  double const xls = m.mm + m.argpm + cosip * before + w.pl + w.pgh - w.pinc * before * sinip;
  m.nodem = std::atan2(alfdp, betdp);
  // The node keeps to the turn in which it was.
  if (std::abs(before - m.nodem) > kPi) m.nodem += m.nodem < before ? kTwoPi : -kTwoPi;
  m.mm += w.pl;
  m.argpm = xls - m.mm - cosip * m.nodem;
}

}  // namespace

LunarSolarTerms initialiseLunarSolar(SatRec& rec) {
  // By the epoch as one number, like the published implementation: 40 µs of the moon's way show in
  // millimetres for orbits as wide as the moon's, and nothing else depends on them.
  double const day = rec.tle.epochJD - k1950 + kLunarEpochOffset;
  LunarOrbit const moon = lunarOrbit(day);
  double const emsq = squared(rec.ecco);
  SatelliteOrbit const sat{std::sin(rec.inclo),
                           std::cos(rec.inclo),
                           std::sin(rec.argpo),
                           std::cos(rec.argpo),
                           rec.ecco,
                           emsq,
                           1 - emsq,
                           std::sqrt(1 - emsq),
                           rec.no};
  double const snod = std::sin(rec.nodeo), cnod = std::cos(rec.nodeo);
  BodyTerms const sunTerms = bodyTerms({kSinSolarPerigee, kCosSolarPerigee, kSinSolarInclination,
                                        kCosSolarInclination, snod, cnod, kSolarStrength},
                                       sat);
  BodyTerms const moonTerms =
      bodyTerms({moon.sing, moon.cosg, moon.sini, moon.cosi, snod * moon.cosh - cnod * moon.sinh,
                 moon.cosh * cnod + moon.sinh * snod, kLunarStrength},
                sat);
  rec.zmol = std::fmod(4.7199672 + 0.22997150 * day - moon.gam, kTwoPi);
  rec.zmos = std::fmod(6.2565837 + 0.017201977 * day, kTwoPi);
  setPeriodics(rec, periodicOf(sunTerms, kSolarEccentricity, emsq),
               periodicOf(moonTerms, kLunarEccentricity, emsq));
  bool const equatorial = rec.inclo < kNearlyEquatorial || rec.inclo > kPi - kNearlyEquatorial;
  setRates(rec, ratesOf(sunTerms, kSolarMotion, sat, equatorial),
           ratesOf(moonTerms, kLunarMotion, sat, equatorial), sat);
  return {sat.sini, sat.cosi, emsq};
}

void addLunarSolarPeriodics(SatRec const& rec, double t, MeanElements& m) {
  Waves const w = wavesAt(rec, t);
  m.inclm += w.pinc;
  m.em += w.pe;
  if (m.inclm >= kLyddaneBelow) {
    double const ph = w.ph / std::sin(m.inclm);
    m.argpm += w.pgh - std::cos(m.inclm) * ph;
    m.nodem += ph;
    m.mm += w.pl;
  } else {
    applyLyddane(w, m);
  }
  if (m.inclm < 0) {
    m.inclm = -m.inclm;
    m.nodem += kPi;
    m.argpm -= kPi;
  }
}

}  // namespace nimbara::SGP4
