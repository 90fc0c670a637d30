// Every kernel that the machine can run against the reference path.

#include "globe/propagation/sgp4_batch.h"

#include "globe/earth_frame.h"
#include "support/answers/made_satellites.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>

namespace nimbara::SGP4 {

void PrintTo(Kernel kernel, std::ostream* out) {
  *out << enumName(kernel);
}

namespace {

constexpr double kDay = 1440;

double distance(std::array<double, 3> const& a, std::array<double, 3> const& b) {
  return std::sqrt(std::pow(a[0] - b[0], 2) + std::pow(a[1] - b[1], 2) + std::pow(a[2] - b[2], 2));
}

std::vector<SatRec> sample(std::string const& name) {
  auto const files = test::sampleFiles("tle");
  if (!files) return {};
  std::vector<SatRec> records;
  auto const text = test::readFile(files->front().parent_path() / name);
  for (TLE const& tle : readElements(text, Checksums::reported).elements) records.push_back(initialise(tle));
  return records;
}

std::vector<SatRec> only(bool deep, std::vector<SatRec> records) {
  std::erase_if(records, [&](SatRec const& record) { return record.isDeepSpace != deep; });
  return records;
}

struct Worst {
  double position = 0;  ///< m
  double velocity = 0;  ///< m/s
  std::size_t compared = 0;
};

void compare(Worst& worst, StateVector const& got, StateVector const& expected, std::string const& what) {
  ASSERT_EQ(got.error, expected.error) << what;
  if (expected.error != errorCode::kNone) return;
  ++worst.compared;
  worst.position = std::max(worst.position, 1000 * distance(got.position, expected.position));
  worst.velocity = std::max(worst.velocity, 1000 * distance(got.velocity, expected.velocity));
}

Worst compareAt(std::vector<SatRec> const& records, Kernel kernel, std::vector<double> const& moments) {
  SatelliteBatch batch(records, kernel);
  Worst worst;
  for (double const minutes : moments) {
    batch.propagateSinceEpochs(minutes);
    for (std::size_t i = 0; i < records.size(); ++i) {
      compare(worst, batch.state(i), propagate(records[i], minutes),
              std::to_string(records[i].tle.satnum) + " at " + std::to_string(minutes));
    }
  }
  return worst;
}

struct Row {
  std::string name;
  std::vector<SatRec> records;
};

class EachKernel : public testing::TestWithParam<Kernel> {};
INSTANTIATE_TEST_SUITE_P(Machine, EachKernel, testing::ValuesIn(runnableKernels()),
                         [](auto const& tested) { return std::string(enumName(tested.param)); });

TEST_P(EachKernel, AgreesWithTheReferencePath) {
  Row const rows[] = {{"made", test::madeNearEarth()},
                      {"starlink", sample("starlink-2022-01-09.txt")},
                      {"stations", sample("stations-2026-08-22.txt")},
                      {"oneweb", sample("oneweb-2022-01-09.txt")},
                      {"weather", only(false, sample("weather-2026-08-22.txt"))}};
  for (auto const& [name, records] : rows) {
    Worst const week =
        compareAt(records, GetParam(), {-7 * kDay, -3.3 * kDay, -100, 0, 0.5, 1234.5, 7 * kDay});
    EXPECT_LE(week.position, 2e-5) << name;
    EXPECT_LE(week.velocity, 2e-8) << name;
    Worst const month = compareAt(records, GetParam(), {-30 * kDay, 17 * kDay, 30 * kDay});
    EXPECT_LE(month.position, 1e-4) << name;
    EXPECT_LE(month.velocity, 1e-7) << name;
  }
}

/// Moments on both sides of the epoch, towards it and away from it, so that resonances go on and begin again.
TEST_P(EachKernel, DeepSpaceAgreesWithTheReferencePath) {
  // The reference path ends Kepler's equation 1e-12 rad from its root: 4e-5 m for the geostationary.
  constexpr double kLimit = 1e-4;
  Row const rows[] = {{"made", test::madeSatellites({{40, 35'780, 35'800, 1e-5, 1e-3, 0, 12, -5, -4},
                                                     {40, 19'000, 23'300, 1e-4, 1e-2, 50, 65, -5, -4},
                                                     {40, 500, 600, 0.7, 0.72, 60, 65, -5, -4}})},
                      {"galileo", sample("galileo-2026-08-22.txt")},
                      {"glo-ops", sample("glo-ops-2020-04-02.txt")},
                      {"weather", only(true, sample("weather-2026-08-22.txt"))},
                      {"verification", only(true, sample("sgp4-ver.tle"))}};
  for (auto const& [name, records] : rows) {
    Worst const worst = compareAt(records, GetParam(),
                                  {0, 0.5, 719, 720, 721, 7 * kDay, 6.7 * kDay, -100, -7 * kDay, 30 * kDay});
    EXPECT_LE(worst.position, kLimit) << name;
    EXPECT_LE(worst.velocity, kLimit / 1000) << name;
  }
}

/// Near earth, resonant and other deep space, hopeless, below the ground, and drag that blows an orbit up.
std::vector<SatRec> mixture() {
  auto records = test::madeSatellites({{21, 300, 900, 1e-4, 0.02, 0, 120, -5, -3},
                                       {3, 400, 500, 0.3, 0.5, 20, 70, -5, -3},
                                       {3, 35'780, 35'790, 1e-5, 1e-4, 0, 1, -5, -4},
                                       {3, 19'000, 20'000, 1e-4, 1e-2, 50, 65, -5, -4},
                                       {3, 500, 600, 0.7, 0.72, 60, 65, -5, -4},
                                       {2, -200, -50, 1e-3, 2e-3, 40, 60, -4, -3},
                                       {3, 120, 170, 1e-3, 2e-2, 40, 60, -3, -1}});
  TLE hopeless = records.front().tle;
  hopeless.no_kozai = 0;
  records.insert(records.begin() + 2, initialise(hopeless));
  return records;
}

TEST_P(EachKernel, MixturesKeepTheirOrderAndTheirErrors) {
  std::vector<SatRec> const records = mixture();
  std::set<int> codes;
  for (SatRec const& record : records) codes.insert(propagate(record, 3 * kDay).error);
  EXPECT_GE(codes.size(), 3U);
  Worst const worst =
      compareAt(records, GetParam(), {-3 * kDay, 0, 20, 3 * kDay, 2 * kDay, -kDay, 200 * kDay});
  EXPECT_GT(worst.compared, 100U);
  EXPECT_LE(worst.position, 1e-4);
}

TEST_P(EachKernel, EveryCountFillsItsBlocks) {
  std::vector<SatRec> const all = mixture();
  for (std::size_t count = 0; count <= 18; ++count) {
    compareAt({all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)}, GetParam(), {77});
  }
}

TEST_P(EachKernel, OneSatelliteAtManyMoments) {
  for (SatRec const& record : mixture()) {
    std::vector<double> minutes;
    for (int i = 0; i < 43; ++i) minutes.push_back(-1000 + 77.7 * i);
    std::vector<StateVector> states(minutes.size());
    propagateMany(record, minutes, states, GetParam());
    Worst worst;
    for (std::size_t i = 0; i < minutes.size(); ++i) {
      compare(worst, states[i], propagate(record, minutes[i]), std::to_string(record.tle.satnum));
    }
    EXPECT_LE(worst.position, record.isDeepSpace ? 1e-4 : 2e-5) << record.tle.satnum;
  }
}

TEST_P(EachKernel, TimesACenturyAwayAreFiniteOrErrors) {
  auto const records = test::madeNearEarth();
  SatelliteBatch batch(records, GetParam());
  for (double const minutes : {-5e7, 5e7, 2e9, std::nan("")}) {
    batch.propagateSinceEpochs(minutes);
    for (std::size_t i = 0; i < batch.size(); i += 7) {
      StateVector const state = batch.state(i);
      EXPECT_TRUE(state.error != errorCode::kNone || std::isfinite(state.position[0])) << minutes;
    }
  }
}

TEST_P(EachKernel, MomentsLoseNoDigits) {
  std::vector<SatRec> const records = sample("starlink-2022-01-09.txt");
  if (records.empty()) GTEST_SKIP() << "no samples are named";
  SatelliteBatch batch(records, GetParam());
  for (std::size_t i = 0; i < 20; ++i) {
    TLE const& tle = records[i].tle;
    batch.propagate({tle.epochDay + 1, tle.epochFraction});
    EXPECT_LE(1000 * distance(batch.state(i).position, propagate(records[i], kDay).position), 2e-5);
  }
}

TEST_P(EachKernel, PointsAreTheStatesTurnedAndLit) {
  std::vector<SatRec> const records = mixture();
  SatelliteBatch batch(records, GetParam());
  auto const [umbra, penumbra] = shadowSlopes();
  std::set<float> lights;
  for (double const minutes : {20.0, 3 * kDay}) {
    batch.propagateSinceEpochs(minutes);
    for (double longitude = 0; longitude < 6.28; longitude += 0.02) {
      EarthRotation const rotation{std::sin(longitude), std::cos(longitude)};
      Vector3 const sun{0.6 * std::cos(longitude), 0.6 * std::sin(longitude), 0.8};
      auto const points =
          batch.points({rotation.sine, rotation.cosine, sun[0], sun[1], sun[2], umbra, penumbra});
      for (std::size_t i = 0; i < records.size(); ++i) {
        PointBlock const& block = points[batch.slot(i) / kLanes];
        std::size_t const lane = batch.slot(i) % kLanes;
        StateVector const state = batch.state(i);
        bool const drawn = state.error == errorCode::kNone;
        Vector3 const fixed = drawn ? rotation.toEarthFixed(state.position) : Vector3{};
        EXPECT_EQ(block.drawn[lane], drawn ? 1 : 0);
        EXPECT_FLOAT_EQ(block.x[lane], static_cast<float>(fixed[0] / kEarthRadiusKm));
        EXPECT_FLOAT_EQ(block.y[lane], static_cast<float>(fixed[1] / kEarthRadiusKm));
        EXPECT_FLOAT_EQ(block.z[lane], static_cast<float>(fixed[2] / kEarthRadiusKm));
        EXPECT_NEAR(block.lit[lane], drawn ? litFraction(state.position, sun) : 0, 1e-6);
        lights.insert(block.lit[lane]);
      }
    }
  }
  EXPECT_GT(lights.size(), 2U) << "no penumbra was met";
}

TEST(Kernels, TheBestIsTheLastThatRunsHere) {
  EXPECT_EQ(bestKernel(), runnableKernels().back());
  EXPECT_EQ(runnableKernels().front(), Kernel::scalar);
  EXPECT_EQ(SatelliteBatch(std::vector<SatRec>()).kernel(), bestKernel());
}

}  // namespace
}  // namespace nimbara::SGP4
