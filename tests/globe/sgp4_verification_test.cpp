// The reference path against the published verification set, when the samples are there.

#include "globe/propagation/sat_rec.h"
#include "support/samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <optional>
#include <sstream>

namespace nimbara::SGP4 {
namespace {

struct Row {
  double minutes = 0;
  std::array<double, 3> position{};
  std::array<double, 3> velocity{};
};

struct Expected {
  int satnum = 0;
  std::vector<Row> rows;
};

struct Span {
  double start = 0, stop = 0, step = 0;
};

double distance(std::array<double, 3> const& a, std::array<double, 3> const& b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

std::vector<Expected> readRuns(std::string const& text) {
  std::vector<Expected> runs;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    if (line.find("xx") != std::string::npos) {
      words >> runs.emplace_back().satnum;
      continue;
    }
    Row row;
    words >> row.minutes >> row.position[0] >> row.position[1] >> row.position[2] >> row.velocity[0] >>
        row.velocity[1] >> row.velocity[2];
    if (words) runs.back().rows.push_back(row);
  }
  return runs;
}

/// Columns 70 on of each second line.
std::vector<Span> readSpans(std::string const& text) {
  std::vector<Span> spans;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("2 ")) continue;
    std::istringstream(line.substr(69)) >> spans.emplace_back().start >> spans.back().stop >>
        spans.back().step;
  }
  return spans;
}

class Verification : public testing::Test {
 protected:
  void SetUp() override {
    auto const files = test::sampleFiles("tle");
    if (!files) GTEST_SKIP() << "no samples are named";
    auto const folder = files->front().parent_path();
    std::string const text = test::readFile(folder / "sgp4-ver.tle");
    document = readElements(text, Checksums::reported);
    spans = readSpans(text);
    runs = readRuns(test::readFile(folder / "tcppver.out"));
    ASSERT_EQ(document.elements.size(), 33U);
    ASSERT_EQ(spans.size(), 33U);
    ASSERT_EQ(runs.size(), 33U);
  }

  TLEDocument document;
  std::vector<Span> spans;
  std::vector<Expected> runs;
};

TEST_F(Verification, EveryStateAgreesWithThePublishedOne) {
  std::size_t compared = 0;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    SatRec const record = initialise(document.elements[i]);
    ASSERT_EQ(record.tle.satnum, runs[i].satnum);
    double const limitKm = record.isDeepSpace ? 1.5e-7 : 1e-8;
    for (Row const& row : runs[i].rows) {
      StateVector const state = propagate(record, row.minutes);
      // The last row of a run that ends in decay holds the state below the ground.
      if (state.error != errorCode::kNone && state.error != errorCode::kDecayed) {
        EXPECT_EQ(&row, &runs[i].rows.back()) << record.tle.satnum << " at " << row.minutes;
        continue;
      }
      ++compared;
      EXPECT_LE(distance(state.position, row.position), limitKm)
          << record.tle.satnum << " at " << row.minutes;
      EXPECT_LE(distance(state.velocity, row.velocity), 1e-9) << record.tle.satnum << " at " << row.minutes;
    }
  }
  EXPECT_EQ(compared, 666U);
}

struct End {
  int satnum;
  double minutes;
  int code;

  bool operator==(End const&) const = default;
};

void PrintTo(End const& end, std::ostream* out) {
  *out << end.satnum << " at " << end.minutes << " code " << end.code;
}

/// The first error of a run, if there is one; checks the moments of the rows before it.
std::optional<End> endOf(SatRec const& record, Span const& span, Expected const& run) {
  std::size_t row = span.start == 0 ? 0 : 1;
  for (double t = span.start; t <= span.stop; t += span.step, ++row) {
    int const error = propagate(record, t).error;
    if (error != errorCode::kNone) {
      EXPECT_GE(row + 1, run.rows.size()) << record.tle.satnum << " goes on in the published output";
      return End{record.tle.satnum, std::round(t * 1000) / 1000, error};
    }
    EXPECT_LT(row, run.rows.size()) << record.tle.satnum << " has ended in the published output";
    if (row < run.rows.size()) {
      EXPECT_NEAR(run.rows[row].minutes, t, 1e-6) << record.tle.satnum;
    }
  }
  return std::nullopt;
}

TEST_F(Verification, RunsEndWhereThePropagatorReportsAnError) {
  std::vector<End> ends;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (auto const end = endOf(initialise(document.elements[i]), spans[i], runs[i])) ends.push_back(*end);
  }
  EXPECT_EQ(ends, (std::vector<End>{{22312, 494.203, errorCode::kMeanEccentricity},
                                    {28350, 1560, errorCode::kMeanEccentricity},
                                    {28872, 55, errorCode::kDecayed},
                                    {29141, 440, errorCode::kDecayed},
                                    {33333, 25, errorCode::kSemiLatusRectum},
                                    {33334, 0, errorCode::kPerturbedEccentricity},
                                    {20413, 1844345, errorCode::kDecayed}}));
}

}  // namespace
}  // namespace nimbara::SGP4
