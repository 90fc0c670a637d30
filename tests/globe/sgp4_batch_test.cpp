// Every kernel that the machine can run against the reference path.

#include "globe/sgp4_batch.h"

#include "support/made_satellites.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace nimbara::SGP4 {
namespace {

constexpr double kDay = 1440;

double distance(std::array<double, 3> const& a, std::array<double, 3> const& b) {
  return std::sqrt(std::pow(a[0] - b[0], 2) + std::pow(a[1] - b[1], 2) + std::pow(a[2] - b[2], 2));
}

std::vector<SatRec> sample(std::string const& name) {
  auto const files = test::sampleFiles("tle");
  if (!files) return {};
  std::vector<SatRec> records;
  for (TLE const& tle : readElements(test::readFile(files->front().parent_path() / name)).elements) {
    records.push_back(initialise(tle));
  }
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

class EachKernel : public testing::TestWithParam<Kernel> {};
INSTANTIATE_TEST_SUITE_P(Machine, EachKernel, testing::ValuesIn(runnableKernels()),
                         [](auto const& tested) { return std::string(enumName(tested.param)); });

TEST_P(EachKernel, AgreesWithTheReferencePath) {
  struct Row {
    std::string name;
    std::vector<SatRec> records;
  };
  Row const rows[] = {{"made", test::madeNearEarth()},
                      {"starlink", sample("starlink-2022-01-09.txt")},
                      {"stations", sample("stations-2026-08-22.txt")},
                      {"oneweb", sample("oneweb-2022-01-09.txt")},
                      {"weather", sample("weather-2026-08-22.txt")}};
  for (auto const& [name, records] : rows) {
    Worst const week =
        compareAt(records, GetParam(), {-7 * kDay, -3.3 * kDay, -100, 0, 0.5, 1234.5, 7 * kDay});
    EXPECT_LE(week.position, 2e-5) << name;
    EXPECT_LE(week.velocity, 2e-8) << name;
    Worst const month = compareAt(records, GetParam(), {-30 * kDay, 17 * kDay, 30 * kDay});
    EXPECT_LE(month.position, 1e-4) << name;
    EXPECT_LE(month.velocity, 1e-7) << name;
    RecordProperty("week-" + name, std::to_string(week.position));
    std::printf("%s %s week %.3g m %.3g m/s month %.3g m %.3g m/s\n",
                std::string(enumName(GetParam())).c_str(), name.c_str(), week.position, week.velocity,
                month.position, month.velocity);
  }
}

}  // namespace
}  // namespace nimbara::SGP4
