// Any elements that the columns of an element set can hold, near earth and in deep space, at any moment of
// half a year: every kernel's batch must agree with the reference path in error codes, positions and
// velocities.

#include "globe/propagation/sgp4_batch.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>

namespace {

using namespace nimbara::SGP4;

/// The input, two bytes a number; zeros when it is used up.
class Numbers {
 public:
  Numbers(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}

  bool isEmpty() const { return size_ == 0; }

  double within(double low, double high) {
    std::uint16_t value = 0;
    std::size_t const taken = std::min(size_, sizeof value);
    std::memcpy(&value, data_, taken);
    data_ += taken;
    size_ -= taken;
    return low + (high - low) * value / 65535.0;
  }

 private:
  std::uint8_t const* data_;
  std::size_t size_;
};

SatRec record(Numbers& numbers) {
  constexpr double kTurn = 2 * std::numbers::pi;
  TLE tle;
  tle.epochDay = 2461364.5;
  tle.epochJD = tle.epochDay;
  tle.ecco = numbers.within(0, 1) * numbers.within(0, 0.99);
  tle.inclo = numbers.within(0, kTurn / 2);
  tle.nodeo = numbers.within(0, kTurn);
  tle.argpo = numbers.within(0, kTurn);
  tle.mo = numbers.within(0, kTurn);
  tle.no_kozai = numbers.within(0.01, 18) * kTurn / 1440;
  tle.bstar = std::pow(10, numbers.within(-9, 0)) * (numbers.within(0, 1) < 0.1 ? -1 : 1);
  return initialise(tle);
}

double distance(std::array<double, 3> const& a, std::array<double, 3> const& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// How many radians the angles have gone: each costs some last digits.
double angles(SatRec const& rec, double t) {
  double const drag = std::abs(rec.t2cof) + std::abs(rec.t3cof * t) + std::abs(rec.t4cof * t * t) +
                      std::abs(rec.t5cof * t * t * t);
  return rec.no * (std::abs(t) + drag * t * t) + std::abs(rec.xmcof) * 8 + std::abs(rec.omgcof * t);
}

/// Where a limit is only just passed, rounding decides.
bool mayDiffer(SatRec const& rec, double minutes, int code) {
  for (double const nearby : {-1e-3, -1e-6, 1e-6, 1e-3}) {
    if (propagate(rec, minutes + nearby).error == code) return true;
  }
  return false;
}

void check(SatRec const& rec, double minutes, StateVector const& got) {
  StateVector const expected = propagate(rec, minutes);
  double const gone = angles(rec, minutes);
  if (!(gone < 1e6)) return;  // no orbit any more
  bool const sameCode = got.error == expected.error || mayDiffer(rec, minutes, got.error);
  double const away = std::hypot(expected.position[0], expected.position[1], expected.position[2]);
  double const limitKm = (1e-6 + away * (1e-11 + 1e-14 * gone)) / (1 - rec.ecco);
  bool const bothFine = got.error == errorCode::kNone && expected.error == errorCode::kNone;
  // Where a perigee lies within the earth the series give anything at all, and no digit of it means
  // something.
  bool const hasDigits = bothFine && rec.altp > 0;
  bool const agrees = !hasDigits || (distance(got.position, expected.position) <= limitKm &&
                                     distance(got.velocity, expected.velocity) <= limitKm / 100);
  if (sameCode && agrees) return;
  std::fprintf(stderr,
               "no %.17g ecco %.17g inclo %.17g nodeo %.17g argpo %.17g mo %.17g bstar %.17g at %.17g\n",
               rec.tle.no_kozai, rec.ecco, rec.inclo, rec.nodeo, rec.argpo, rec.mo, rec.bstar, minutes);
  std::fprintf(stderr, "codes %d %d, off by %g km of %g, limit %g, gone %g\n", got.error, expected.error,
               distance(got.position, expected.position), away, limitKm, gone);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Numbers numbers(data, size);
  double const halfYear = 183 * 1440;
  std::array const moments{numbers.within(-halfYear, halfYear), numbers.within(-halfYear, halfYear), 0.0};
  std::vector<SatRec> records;
  while (!numbers.isEmpty() && records.size() < 40) records.push_back(record(numbers));
  for (Kernel const kernel : runnableKernels()) {
    SatelliteBatch batch(records, kernel);
    for (double const minutes : moments) {
      batch.propagateSinceEpochs(minutes);
      for (std::size_t i = 0; i < records.size(); ++i) check(records[i], minutes, batch.state(i));
    }
  }
  return 0;
}
