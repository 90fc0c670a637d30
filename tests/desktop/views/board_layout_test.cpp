#include "desktop/views/board_layout.h"

#include "desktop/views/sky/sky_colours.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace nimbara {
namespace {

using testing::ElementsAre;

struct SpanRow {
  std::vector<double> weights;
  double width;
  std::vector<LaneSpan> expected;
};

TEST(Lanes, ShareTheWidthByTheirWeights) {
  for (SpanRow const& row :
       {SpanRow{{1}, 960, {{0, 960}}}, SpanRow{{}, 960, {{0, 960}}},
        SpanRow{{1, 1}, 1016, {{0, 500}, {516, 500}}}, SpanRow{{3, 1}, 1016, {{0, 750}, {766, 250}}},
        SpanRow{{1, 1, 1}, 1033, {{0, 333}, {349, 333}, {698, 335}}},
        SpanRow{{1, 1}, 10, {{0, 0}, {16, 0}}}}) {
    EXPECT_EQ(laneSpans(row.weights, row.width, 16), row.expected) << row.width;
  }
}

struct BoardRow {
  char const* why;
  std::vector<BoardEntry> entries;
  std::size_t lanes;
  BoardTops expected;
};

void PrintTo(BoardRow const& row, std::ostream* out) {
  *out << row.why;
}

struct Boards : testing::TestWithParam<BoardRow> {};

TEST_P(Boards, StackEntriesInTheirLanes) {
  EXPECT_EQ(boardTops(GetParam().entries, GetParam().lanes, 10), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Boards,
    testing::Values(BoardRow{"empty", {}, 2, {{}, 0}},
                    BoardRow{"oneLane", {{0, 100}, {1, 50}, {2, 20}}, 1, {{0, 110, 170}, 190}},
                    BoardRow{"twoLanes", {{0, 100}, {1, 50}, {1, 20}, {0, 5}}, 2, {{0, 0, 60, 110}, 115}},
                    BoardRow{"beyondTheLast", {{0, 100}, {7, 50}}, 2, {{0, 0}, 100}},
                    BoardRow{"acrossAll",
                             {{-1, 30}, {0, 100}, {1, 50}, {-1, 5}, {1, 7}},
                             2,
                             {{0, 40, 40, 150, 165}, 172}}),
    [](auto const& row) { return std::string(row.param.why); });

TEST(TemperatureColours, GrowWithoutJumpsAndEndSomewhere) {
  auto const distance = [](Colour24 a, Colour24 b) {
    return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
  };
  for (double celsius = -60; celsius < 60; celsius += 0.5) {
    EXPECT_LE(distance(temperatureColour(celsius), temperatureColour(celsius + 0.5)), 16) << celsius;
  }
  EXPECT_EQ(temperatureColour(-30), temperatureColour(-80));
  EXPECT_EQ(temperatureColour(40), temperatureColour(60));
  EXPECT_EQ(temperatureColour(std::numeric_limits<double>::quiet_NaN()), temperatureColour(-30));
  EXPECT_GT(distance(temperatureColour(-10), temperatureColour(10)), 60);
  EXPECT_GT(distance(temperatureColour(10), temperatureColour(25)), 60);
}

}  // namespace
}  // namespace nimbara
