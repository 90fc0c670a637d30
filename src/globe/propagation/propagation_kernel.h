// The propagation as one branch-free template over double and vectors of doubles: near earth wholly, deep
// space from its mean elements on. The branches that are left lead to rare cases and are taken by whole
// vectors. It computes what the reference path computes (sat_rec.cpp), with less arithmetic:
//  - √am = √ao · |tempa|, so the powers of the semi-major axis need no pow;
//  - angles are not reduced to a turn, as sine and cosine do that themselves;
//  - the drag's shift of the mean anomaly, the steps of Kepler's equation and the short-period changes are
//    small angles: known sines and cosines are turned by them instead of being recomputed;
//  - sine and cosine of the argument of latitude come out of Kepler's equation, so it needs no atan2;
//  - divisions by two quantities share one quotient: 1/a = b · (1/ab).
// Four full sine-cosine pairs, five divisions and one root are left.
#pragma once

#include "globe/propagation/block_access.h"

namespace nimbara::SGP4::lanes {

// WGS-72, as in sat_rec.h.
inline constexpr double kernelXke = 0.07436691613317342;
inline constexpr double kernelJ2 = 0.001082616;

/// Up to this angle the short series below are exact to 1e-15.
inline constexpr double kTinyAngle = 5e-3;
/// The short series for the drag's shift, whose sine counts for little, holds up to here.
inline constexpr double kSmallShift = 0.05;
/// Near-earth orbits end at 4.5 radii even when they are as long as they can be.
inline constexpr double kFarthestRadii = 8;
/// sineCosineNearZero holds up to here, with a margin.
inline constexpr double kQuarterOfPi = 0.78;

/// (sine, cosine) of an angle turned on by a tiny one.
template <class V>
NIMBARA_INLINE SineCosine<V> turnedTiny(SineCosine<V> const& angle, V by) {
  V const y = by * by;
  V const s = by - by * y * (1.0 / 6 - y * (1.0 / 120));
  V const c = 1 - y * (0.5 - y * (1.0 / 24));
  return {angle.sine * c + angle.cosine * s, angle.cosine * c - angle.sine * s};
}

template <class V>
NIMBARA_INLINE SineCosine<V> turned(SineCosine<V> const& angle, SineCosine<V> const& by) {
  return {angle.sine * by.cosine + angle.cosine * by.sine, angle.cosine * by.cosine - angle.sine * by.sine};
}

/// Sine of `angle` turned by the drag's shift.
template <class V>
NIMBARA_INLINE V shiftedSine(SineCosine<V> const& angle, V shift) {
  if (any(magnitude(shift) > kSmallShift)) [[unlikely]]
    return turned(angle, sineCosine(shift)).sine;
  V const y = shift * shift;
  V const s = shift - shift * y * (1.0 / 6 - y * (1.0 / 120));
  V const c = 1 - y * (0.5 - y * (1.0 / 24 - y * (1.0 / 720)));
  return angle.sine * c + angle.cosine * s;
}

/// The step from E towards the root of Kepler's equation, by the series of the inverse function up to the
/// third power of Newton's step: what is left is of its fourth power.
template <class V>
NIMBARA_INLINE V keplerStep(V remainder, V esine, V ecose) {
  V const slope = 1 / (1 - ecose);
  V const n = remainder * slope;
  V const bend = esine * slope;
  return n - n * n * (0.5 * bend + n * (ecose * slope * (1.0 / 6) - 0.5 * bend * bend));
}

/// Newton's method as the reference path has it, lane by lane at the pace of the slowest.
template <class V>
NIMBARA_INLINE SineCosine<V> solveKeplerSlowly(V u, V axnl, V aynl) {
  V longitude = u;
  SineCosine<V> e = sineCosine(longitude);
  for (int i = 0; i < 10; ++i) {
    V step = (u - aynl * e.cosine + axnl * e.sine - longitude) / (1 - e.cosine * axnl - e.sine * aynl);
    step = select(step > 0.95, step * 0 + 0.95, step);
    step = select(step < -0.95, step * 0 - 0.95, step);
    longitude = longitude + step;
    e = sineCosine(longitude);
    if (!any(magnitude(step) >= 1e-12)) break;
  }
  return e;
}

/// Sine and cosine of the eccentric longitude.
template <class V>
NIMBARA_INLINE SineCosine<V> solveKepler(V u, V axnl, V aynl) {
  SineCosine<V> const start = sineCosine(u);
  V const esine = axnl * start.sine - aynl * start.cosine;
  V const first = keplerStep<V>(esine, esine, axnl * start.cosine + aynl * start.sine);
  SineCosine<V> const near = turned(start, sineCosineNearZero(first));
  V const nearEsine = axnl * near.sine - aynl * near.cosine;
  V const second = keplerStep<V>(nearEsine - first, nearEsine, axnl * near.cosine + aynl * near.sine);
  if (any((magnitude(first) > kQuarterOfPi) | (magnitude(second) > 1e-3))) [[unlikely]] {
    return solveKeplerSlowly(u, axnl, aynl);
  }
  return turnedTiny(near, second);
}

/// The short-period changes of argument of latitude, node and inclination, applied to their sines and
/// cosines.
template <class V>
struct Orientation {
  SineCosine<V> u, node, inclination;

  NIMBARA_INLINE void turn(V du, V dnode, V dinclination, V largest) {
    if (any(magnitude(largest) > kTinyAngle)) [[unlikely]] {
      u = turned(u, sineCosine(du));
      node = turned(node, sineCosine(dnode));
      inclination = turned(inclination, sineCosine(dinclination));
      return;
    }
    u = turnedTiny(u, du);
    node = turnedTiny(node, dnode);
    inclination = turnedTiny(inclination, dinclination);
  }
};

/// MeanBlock's fields in one V each.
template <class V>
struct MeanLanes {
  V am, sqrtam, em, argpm, node, u;
  V sini, cosi, aycof, xlcof;
};

/// A sound state, or the reference path's error code.
template <class V>
struct Completed {
  V mrt, error;
};

/// From mean elements to the vectors.
template <class V>
NIMBARA_INLINE Completed<V> completeLanes(MeanLanes<V> const& m, BlockLanes<V, StateBlock> const& out) {
  // Long-period terms. perLatus is 1/(am (1 - em²)).
  V const omeosq = 1 - m.em * m.em;
  V const perLatus = 1 / (m.am * omeosq);
  V const perAm = perLatus * omeosq;
  SineCosine<V> const perigee = sineCosine(m.argpm);
  V const axnl = m.em * perigee.cosine;
  V const aynl = m.em * perigee.sine + perLatus * m.aycof;
  SineCosine<V> const e = solveKepler<V>(m.u + perLatus * m.xlcof * axnl, axnl, aynl);

  // Distance, speeds and direction within the orbit's plane. `quotient` is 1/(betal² (1 + betal)).
  V const ecose = axnl * e.cosine + aynl * e.sine;
  V const esine = axnl * e.sine - aynl * e.cosine;
  V const betalsq = 1 - axnl * axnl - aynl * aynl;
  V const betal = squareRoot(betalsq);
  V const quotient = 1 / (betalsq * (1 + betal));
  V const perPl = perAm * quotient * (1 + betal);
  V const perRadius = 1 / (1 - ecose);
  V const rl = m.am * (1 - ecose);
  V const speed = m.sqrtam * perAm * perRadius;
  V const lag = esine * quotient * betalsq;
  V const sinu = perRadius * (e.sine - aynl - axnl * lag);
  V const cosu = perRadius * (e.cosine - axnl + aynl * lag);

  // Short-period terms.
  V const cosisq = m.cosi * m.cosi;
  V const x1mth2 = 1 - cosisq;
  V const con41 = 3 * cosisq - 1;
  V const sin2u = 2 * cosu * sinu;
  V const cos2u = 1 - 2 * sinu * sinu;
  V const temp1 = 0.5 * kernelJ2 * perPl;
  V const temp2 = temp1 * perPl;
  V const mrt = rl * (1 - 1.5 * temp2 * betal * con41) + 0.5 * temp1 * x1mth2 * cos2u;
  V const motion = temp1 * m.sqrtam * perAm * perAm;
  V const mvt = speed * esine - motion * x1mth2 * sin2u;
  V const rvdot = speed * betal + motion * (x1mth2 * cos2u + 1.5 * con41);
  Orientation<V> o{{sinu, cosu}, sineCosine(m.node), {m.sini, m.cosi}};
  o.turn(-0.25 * temp2 * (7 * cosisq - 1) * sin2u, 1.5 * temp2 * m.cosi * sin2u,
         1.5 * temp2 * m.cosi * m.sini * cos2u, 1.5 * temp2);

  // Vectors and error codes.
  V const xmx = -o.node.sine * o.inclination.cosine;
  V const xmy = o.node.cosine * o.inclination.cosine;
  V const radialX = xmx * o.u.sine + o.node.cosine * o.u.cosine;
  V const radialY = xmy * o.u.sine + o.node.sine * o.u.cosine;
  V const radialZ = o.inclination.sine * o.u.sine;
  V const alongX = xmx * o.u.cosine - o.node.cosine * o.u.sine;
  V const alongY = xmy * o.u.cosine - o.node.sine * o.u.sine;
  V const alongZ = o.inclination.sine * o.u.cosine;
  V const km = mrt * kernelRadiusKm;
  constexpr double kKernelKmPerSecond = kernelRadiusKm * kernelXke / 60;
  V const outward = mvt * kKernelKmPerSecond;
  V const onward = rvdot * kKernelKmPerSecond;
  out.set(&StateBlock::x, km * radialX);
  out.set(&StateBlock::y, km * radialY);
  out.set(&StateBlock::z, km * radialZ);
  out.set(&StateBlock::vx, outward * radialX + onward * alongX);
  out.set(&StateBlock::vy, outward * radialY + onward * alongY);
  out.set(&StateBlock::vz, outward * radialZ + onward * alongZ);
  V const none{};
  V const decayed = select(mrt >= 1, none, none + 6);
  return {mrt, select(betalsq < 0, none + 4, decayed)};
}

/// States at `t` minutes since the epochs. Tells whether a lane was left to the reference path.
template <class V>
NIMBARA_INLINE bool propagateLanes(BlockLanes<V, NearEarthBlock const> const& in, V t,
                                   BlockLanes<V, StateBlock> const& out) {
  using B = NearEarthBlock;

  // Gravity and drag that grow with time.
  V const xmdf = in.get(&B::mo) + in.get(&B::mdot) * t;
  V const argpdf = in.get(&B::argpo) + in.get(&B::argpdot) * t;
  V const node = in.get(&B::nodeo) + t * (in.get(&B::nodedot) + t * in.get(&B::nodecf));
  SineCosine<V> const anomaly = sineCosine(xmdf);
  V const delm = 1 + in.get(&B::eta) * anomaly.cosine;
  V const shift = in.get(&B::omgcof) * t + in.get(&B::xmcof) * (delm * delm * delm - in.get(&B::delmo));
  V const argpm = argpdf - shift;
  V const tempe =
      in.get(&B::bcc4) * t + in.get(&B::bcc5) * (shiftedSine(anomaly, shift) - in.get(&B::sinmao));
  V const tempa =
      1 - t * (in.get(&B::cc1) + t * (in.get(&B::d2) + t * (in.get(&B::d3) + t * in.get(&B::d4))));
  V const templ =
      t * t * (in.get(&B::t2cof) + t * (in.get(&B::t3cof) + t * (in.get(&B::t4cof) + t * in.get(&B::t5cof))));
  V const meanEccentricity = in.get(&B::ecco) - tempe;
  auto const soundEccentricity = (meanEccentricity < 1) & (meanEccentricity >= -0.001);
  V const em = select(meanEccentricity < 1e-6, V{} + 1e-6, meanEccentricity);
  V const am = in.get(&B::ao) * tempa * tempa;
  V const sqrtam = in.get(&B::sqrtao) * magnitude(tempa);

  V const u = xmdf + argpdf + in.get(&B::no) * templ;
  MeanLanes<V> const mean{am,
                          sqrtam,
                          em,
                          argpm,
                          node,
                          u,
                          in.get(&B::sini),
                          in.get(&B::cosi),
                          in.get(&B::aycof),
                          in.get(&B::xlcof)};
  auto const [mrt, error] = completeLanes(mean, out);
  V const none{};
  auto const left = magnitude(mrt) > kFarthestRadii;
  out.set(&StateBlock::error,
          select(left, none + kLeftToReference, select(soundEccentricity, error, none + 1)));
  return any(left);
}

template <class V>
bool propagateBlocks(NearEarthBlock const* blocks, std::size_t stride, double const* minutes,
                     std::size_t count, StateBlock* states) {
  bool left = false;
  forEachVector<V>(count, [&](std::size_t i, std::size_t lane) __attribute__((always_inline)) {
    left |= propagateLanes<V>({blocks[i * stride], lane, stride}, load<V>(minutes + i * kLanes + lane),
                              {states[i], lane});
  });
  return left;
}

template <class V>
void completeBlocks(MeanBlock const* means, std::size_t count, StateBlock* states) {
  using B = MeanBlock;
  forEachVector<V>(count, [&](std::size_t i, std::size_t lane) __attribute__((always_inline)) {
    BlockLanes<V, MeanBlock const> const in{means[i], lane};
    BlockLanes<V, StateBlock> const out{states[i], lane};
    V const am = in.get(&B::am);
    MeanLanes<V> const mean{am,
                            squareRoot(am),
                            in.get(&B::em),
                            in.get(&B::argpm),
                            in.get(&B::nodem),
                            in.get(&B::u),
                            in.get(&B::sini),
                            in.get(&B::cosi),
                            in.get(&B::aycof),
                            in.get(&B::xlcof)};
    out.set(&StateBlock::error, completeLanes(mean, out).error);
  });
}

}  // namespace nimbara::SGP4::lanes
